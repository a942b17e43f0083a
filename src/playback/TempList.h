#pragma once

// "templist.m3u": the list a player is started with on the command-line road, in the data
// folder (a player's own folder is not writable here).

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "util/FileIo.h"

namespace jk {

inline constexpr std::string_view kTempListName = "templist.m3u";

std::string TempListPath(std::string_view dataFolder);

// The line of one song: WinPlay3 (kind 1) takes the short path, the others the trimmed path. A
// line whose third and fourth characters are "\\" loses the second backslash (paths of the
// older Windows form). A path that holds a line end could not stand on one line, so it is
// written as its file:// address.
std::string TempListLine(std::string_view song, std::int16_t kind);

// Writes the songs' lines, each ending in CR LF, in place of the file at `path`.
IoResult WriteTempList(const std::string& path, std::span<const std::string> songs,
                       std::int16_t kind);

}  // namespace jk
