#pragma once

// The playlist's File menu commands as routines: what happens to the playlist state once the
// window has asked its questions and shown its dialogs. The window then sets its title from
// WindowTitle and its recent-list items from UpdateLastLists.

#include <functional>
#include <string>

#include "playback/ListReading.h"
#include "playback/PlaylistState.h"
#include "playback/SongRows.h"

namespace jk {

// NewList_Click: an empty, untitled list with nothing to save.
void NewList(PlaylistState& state);

// OpenList_Click and OpenAndPlayList_Click with the chosen path ("" when the dialog was
// cancelled: nothing happens). On success the list is named after the file, saved, and first
// among the recent lists. When the reading fails the list stays untitled and unsaved.
ListReadResult OpenList(PlaylistState& state, const std::string& path, const SongSource& songs,
                        const ListSettings& settings);

// LastList_Click: opens recent list `menuIndex` (0 for the first item, RecentLists entry 1).
ListReadResult OpenRecentList(PlaylistState& state, std::size_t menuIndex, const SongSource& songs,
                              const ListSettings& settings);

// AppendToList_Click with the chosen path: the list's rows go behind the others, unsaved.
ListReadResult AppendToList(PlaylistState& state, const std::string& path, const SongSource& songs,
                            const ListSettings& settings);

enum class SaveOutcome {
    Saved,
    Unchanged,  // nothing changed since the last save, so nothing was written
    Cancelled,  // no name was chosen
    Failed,     // the file could not be written; the list stays unsaved
};

struct SaveResult {
    SaveOutcome outcome = SaveOutcome::Unchanged;
    std::string reason;  // why it failed, for a detail line
};

// SaveList_Click: writes an unsaved list to RecentLists entry 1; an untitled list is saved as
// a new file, named by `chooseSavePath` ("" when the user cancels).
SaveResult SaveList(PlaylistState& state, const ListSettings& settings,
                    const std::function<std::string()>& chooseSavePath);

// SaveAsList_Click with the chosen path ("" when cancelled: nothing changes).
SaveResult SaveAsList(PlaylistState& state, const std::string& path, const ListSettings& settings);

// RemoveFromList: drops the selected rows; a list with rows is then unsaved.
void RemoveFromList(PlaylistState& state);

// Asking before a command drops the list (New, Open, Open & Play, a recent list).

// Nothing is lost when the list is saved, or untitled and empty.
bool NothingToLose(const PlaylistState& state);

// "Playlist not saved.  Would you like to save it?", titled "Save list?", with the buttons Yes,
// No and Cancel and a question mark.
UserMessage SaveQuestion();

struct DropListFrontEnd {
    std::function<SaveAnswer(const UserMessage&)> ask;
    std::function<std::string()> chooseSavePath;  // "" when the user cancels
    std::function<void(const UserMessage&, const std::string& reason)> tell;
};

// True when the command may go on and drop the list: nothing to lose, or the user answered No,
// or Yes and the list was saved (or the name dialog was cancelled, as the save itself would
// have it). Cancel, or a save that failed (the user is told), keeps everything in place.
bool ReadyToDropList(PlaylistState& state, const ListSettings& settings,
                     const DropListFrontEnd& frontEnd);

}  // namespace jk
