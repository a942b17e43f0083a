#pragma once

// The text forms that came before the VBASE container: lines ended by carriage return and line
// feed (a bare line feed is taken too), fields ended by the character 8 (backspace), in the order
// 1 Path, 2 LastUsed, 3 Date, 4 Title, 5 Artist, 6 Album, 7 Year, 8 Genre, 9 Comment, 10 Bitrate,
// 11 Time, 12 Size, 13 Volume. The cache and the drive database begin with a line holding the
// record count and one holding the field count; any other file only with the field count.

#include <functional>
#include <string_view>

#include "catalogue/PackedSong.h"

namespace jk {

// Calls `onRecord` with the fields of each record line (in key order, texts decoded as in every
// data file). A line whose first field is empty is no record. The record count line, where the
// form has one, is passed over: the lines themselves tell how many records there are.
void ReadOlderVBaseForm(std::string_view bytes, bool withCountLine,
                        const std::function<void(const SongFieldViews&)>& onRecord);

}  // namespace jk
