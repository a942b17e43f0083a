#pragma once

// What the finders' windows ask of the main window: its panes' rows, its file operations and
// the player. The main window fills it in when it opens a finder; tests fill it with stand-ins.
// A member left empty makes the command that needs it do nothing.

#include <functional>
#include <string>
#include <vector>

#include "app/Settings.h"
#include "browse/DriveRoot.h"
#include "finders/RealSearch.h"
#include "listing/ListRow.h"
#include "util/UserMessage.h"

namespace jk {

class CatalogueView;

// What a result list asks of the player: "En&queue all results", "Enqueue selecte&d", "&Play
// selected", "P&lay all results", "&Jukarra results" (every row shuffled).
enum class PlayRequest { EnqueueAll, EnqueueSelected, PlaySelected, PlayAll, Shuffle };

struct FinderHost {
    Settings* Options = nullptr;  // the session's settings, read and stored by the windows
    // The panes' rows: the finders read them and set their selected flags, nothing more.
    RowList* Files = nullptr;                  // the files pane's rows
    RowList* Playlist = nullptr;               // the playlist's rows
    const CatalogueView* Catalogue = nullptr;  // null: no catalogued discs
    std::string CurrentFolder;                 // the files pane's folder
    const DriveList* Drives = nullptr;         // the drives "Real drives" walks
    const RealFileSetup* RealFiles = nullptr;  // how real folders are listed and songs read

    // Main's status panel 5.
    std::function<void(const std::string& text)> PanelStatus;
    // Rows added to the playlist (its model told, then ReLabel and ListStats), the playlist
    // emptied, and the panes' selected flags changed (the views and statistics follow).
    std::function<void(RowList rows)> AddToPlaylist;
    std::function<void()> WipePlaylist;
    std::function<void()> SelectionChanged;
    // The main window's file operations: copy or move the files to a folder it asks for.
    std::function<void(const std::vector<std::string>& paths, bool move)> CopyOrMove;
    // The player bridge, handed the result rows with their selected flags set.
    std::function<void(const RowList& rows, PlayRequest how)> Play;
    // A question (true for Yes) and a message; a window shows its own boxes when they are empty.
    std::function<bool(const UserMessage& question)> Ask;
    std::function<void(const UserMessage& message)> Tell;
    // Moves a file to the trash; false with the reason when it cannot.
    std::function<bool(const std::string& path, std::string& why)> Trash;
    // The folder "Browse..." asks for ("" when the user cancels).
    std::function<std::string(const std::string& question)> ChooseFolder;
};

}  // namespace jk
