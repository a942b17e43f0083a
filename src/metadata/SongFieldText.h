#pragma once

// One field of a song as the text lists and pages print, chosen by a field code. The codes are
// those of the twelve list columns, with the parent folder as the thirteenth; they are not the
// sort keys of the song cache (SongField in catalogue/SongFields.h).

#include <string>

#include "metadata/SongInfo.h"

namespace jk {

// Codes: 1 Title, 2 Artist, 3 Album, 4 Year, 5 Genre, 6 Time, 7 Bitrate, 8 the file name (the
// bare name, or the whole Path with `fullPath`), 9 Comment, 10 Size, 11 Date, 12 Volume, 13 the
// parent folder. With `cutTrackSuffix` an Album of 5 or more characters that ends in " - NN"
// loses that suffix and is trimmed. An empty text, and any other code, gives "-".
std::string SongFieldText(int code, const SongInfo& song, bool fullPath, bool cutTrackSuffix);

}  // namespace jk
