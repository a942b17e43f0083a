#pragma once

// What a double click and the Delete key do in the two list panes, as the settings choose
// (DoubleClickFiles, DoubleClickList, FilesDelKey, SongsDelKey), and the texts of the delete
// command.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "util/UserMessage.h"

namespace jk {

// The actions, in the order of the Setup Browser's lists.
enum class PaneAction : std::uint8_t {
    AddToList,       // "Add file to list"
    PlaySingle,      // "Play single file"
    PlayFromHere,    // "Play from current position"
    SelectAll,       // "Select all files"
    Queue,           // "Queue into player"
    RemoveFromList,  // "Remove file from list"
    DeleteFile,      // "Delete file"
    DeselectAll,     // "Deselect all files"
    Nothing,
};

// A double click: the key's value is the action's place in the list (0..4).
PaneAction DoubleClickAction(std::int16_t value);
// The Delete key: the Setup Browser's list for it holds the last three actions (0..2).
PaneAction DeleteKeyAction(std::int16_t value);

// Which panes show, from the View section's keys (1: shown). A settings file without the keys
// reads 0 for all three; a window without a pane could not be used, so then all three show.
struct PaneVisibility {
    bool files = true;
    bool folders = true;
    bool playlist = true;

    friend bool operator==(const PaneVisibility&, const PaneVisibility&) = default;
};
PaneVisibility VisiblePanes(std::int16_t files, std::int16_t folders, std::int16_t playlist);

// DelMode: 0 asks before files go to the trash, 1 does not, 2 switches deleting off.
inline constexpr std::int16_t kDelModeWithWarning = 0;
inline constexpr std::int16_t kDelModeWithoutWarning = 1;
inline constexpr std::int16_t kDelModeDisabled = 2;

bool DeleteEnabled(std::int16_t delMode);
bool DeleteAsks(std::int16_t delMode);

// The question before files go to the trash (Yes and No).
UserMessage DeleteQuestion(std::size_t count, std::string_view firstName);
// What the user is told of files that could not be moved to the trash, copied or moved.
UserMessage FileFailuresMessage(std::string_view verb, std::size_t count, std::string_view details);

}  // namespace jk
