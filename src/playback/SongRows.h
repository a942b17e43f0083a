#pragma once

// How a song becomes a row of a list pane, and where songs come from when a list is read.

#include <functional>
#include <string>
#include <string_view>

#include "metadata/SongInfo.h"
#include "playback/ListRow.h"

namespace jk {

// Gives the song at `path`, trimming the path in place as GetSongInfo does; a file that can't
// be read gives the "File non-existant" record.
using SongSource = std::function<SongInfo(std::string& path)>;

// The file name of a path without its extension, each "_" shown as a blank. A path of a
// Windows form ("d:\...", "\\server\...") is cut at its last "\" as well.
std::string DisplayNameOf(std::string_view path);

// The row of a song that exists: Title with trailing blanks cut (the display name when that
// leaves nothing), then Artist, Album, Year, Genre, Time, Bitrate as the panes show it (cut or
// padded to four characters), the path, Comment, Size, Date and Volume.
ListRow SongRow(const SongInfo& song, std::string_view path);

// The row of a line that points nowhere: "* " and the display name, the path in column 7,
// every other column empty.
ListRow GhostRow(std::string_view path);

}  // namespace jk
