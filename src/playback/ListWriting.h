#pragma once

// Writing the playlist as an m3u file: one path a line, nothing else, lines ended by CR LF,
// UTF-8. Files are written atomically, so a failed save leaves the old file as it was.

#include <string>
#include <string_view>

#include "listing/ListRow.h"
#include "playback/PlaylistState.h"
#include "util/FileIo.h"

namespace jk {

struct ListText {
    std::string text;
    std::string error;  // one line for the user; empty when every row could be written
    bool Ok() const { return error.empty(); }
};

// The path a row is written with before it is made relative: the short form when the player
// is WinPlay ("winplay" in its path, in any case), which here is the path unchanged.
std::string PathForPlayer(std::string_view path, std::string_view playerExe);

// The lines of a list file at `listPath` for the rows, in row order: each row's path through
// PathForPlayer and MakeRelativePath (relative when RelativePaths is 1).
ListText ListFileText(const RowList& rows, std::string_view listPath, const ListSettings& settings);

// Writes the rows as the list file at `listPath`.
IoResult WriteListFile(const std::string& listPath, const RowList& rows,
                       const ListSettings& settings);

// Writes "lastlist.m3u" in the data folder: every row's path as it stands, absolute. When it
// fails, the caller shows SaveFailedMessage() and goes on closing down.
IoResult SaveLastList(std::string_view appPath, const RowList& rows);

// What the user is told when a list could not be saved (an information box); a list saved by
// name then stays unsaved.
UserMessage SaveFailedMessage();

}  // namespace jk
