#pragma once

// The lines of a playlist file as other programs write them: m3u and m3u8, UTF-8 (with or
// without a byte order mark), windows-1252 or UTF-16, lines ended by CR LF, LF or CR, the last
// one perhaps without an end, and "file://" addresses in place of paths.

#include <cstddef>
#include <string>
#include <string_view>

namespace jk {

// The file's bytes made ready for splitting: a UTF-8 byte order mark dropped, UTF-16 (told by
// its byte order mark) turned into UTF-8. Other bytes stay as they are.
std::string PrepareListText(std::string bytes);

// Steps through the lines of `text` from `pos`: CR LF, LF and CR each end a line; a line end at
// the very end of the text adds no empty line. False when no line is left.
bool NextListLine(std::string_view text, std::size_t& pos, std::string_view& line);

// Extended m3u information ("#EXTM3U", "#EXTINF:..."): the first four characters, upper-cased,
// are "#EXT". Other lines, comments and empty ones included, name songs.
bool IsExtendedInfoLine(std::string_view line);

// A "file:" address of this machine as a path, its percent escapes decoded ("file:///C:/x"
// gives "C:/x"). False, with `path` untouched, for anything else, an address of another host
// included.
bool FileUrlToPath(std::string_view line, std::string& path);

}  // namespace jk
