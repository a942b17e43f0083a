#pragma once

// What the finders' windows ask of the main window: its panes' rows, its file operations and
// the player. The main window fills it in when it opens a finder; tests fill it with stand-ins.
// A member left empty makes the command that needs it do nothing.

#include <functional>
#include <string>
#include <vector>

#include "app/Settings.h"
#include "browse/DriveRoot.h"
#include "browse/FolderScan.h"
#include "listing/ListRow.h"
#include "util/UserMessage.h"

namespace jk {

class CatalogueView;

// How paths are handed to the player ("Enqueue...", "Play...", "&Jukarra results").
enum class PlayRequest { Enqueue, Play, Shuffle };

struct FinderHost {
    Settings* Options = nullptr;  // the session's settings, read and stored by the windows
    RowList* Files = nullptr;     // the files pane's rows
    RowList* Playlist = nullptr;  // the playlist's rows
    const CatalogueView* Catalogue = nullptr;  // null: no catalogued discs
    std::string CurrentFolder;                 // the files pane's folder
    const DriveList* Drives = nullptr;         // the drives "Real drives" walks
    const ScanSetup* RealFiles = nullptr;      // how real folders are listed and songs read

    // Main's status panel 5.
    std::function<void(const std::string& text)> PanelStatus;
    // The playlist's rows changed (ReLabel and ListStats); the panes' selections changed.
    std::function<void()> PlaylistChanged;
    std::function<void()> SelectionChanged;
    // The main window's file operations: copy or move the files to a folder it asks for.
    std::function<void(const std::vector<std::string>& paths, bool move)> CopyOrMove;
    // The player bridge.
    std::function<void(const std::vector<std::string>& paths, PlayRequest how)> Play;
    // A question (true for Yes) and a message; a window shows its own boxes when they are empty.
    std::function<bool(const UserMessage& question)> Ask;
    std::function<void(const UserMessage& message)> Tell;
    // Moves a file to the trash; false with the reason when it cannot (platform/Trash.h).
    std::function<bool(const std::string& path, std::string& why)> Trash;
    // The folder "Browse..." asks for ("" when the user cancels).
    std::function<std::string(const std::string& question)> ChooseFolder;
};

}  // namespace jk
