#pragma once

#include <cstdint>
#include <string>

#include "metadata/SongInfo.h"

// The " - NN" an Album carries for its track. ApplyTrackSuffix (SongInfo.h) adds it to or takes
// the track back from every record a lookup gives; these add it where a record is saved and take
// it off where a record is edited. All three live in SongInfo.cpp, beside one another.

namespace jk {

// Album cut of its trailing blanks, then " - " and the track in two digits (or more).
void AppendTrackSuffix(std::string& album, std::int16_t track);

// Takes the " - NN" of the song's Track (above 0) off the end of Album, and empties an Album
// that is only "- NN", so that writing the record back (with the track in its own byte) does
// not store the number in Album a second time.
void StripTrackSuffix(SongInfo& song);

}  // namespace jk
