#pragma once

// What the three ways of reading a song share: the code page of tag text and the choice of
// bitrate and time analysis.

#include <string>
#include <string_view>

#include "metadata/ByteSource.h"
#include "metadata/SongInfo.h"
#include "util/Codepage.h"

namespace jk {

struct SongReadContext {
    const SingleByteCodepage& codepage;
    bool exactTimes = false;
};

// Bitrate and Time of the song: the header search and whole-file time, or with exact times the
// audio's own frame count and length.
Outcome<Done> FillBitrateAndTime(SongInfo& song, ByteSource& source, bool exactTimes);

// A song with no tag: Genre "Unknown", Year four blanks, the texts empty, Track 0, and the
// bitrate and time.
Outcome<SongInfo> ReadUntaggedSong(ByteSource& source, const SongReadContext& context);
// The same into `song`, a blank record (the readers fill one record in place rather than pass
// copies up); on a failure its fields are left half filled.
Outcome<Done> ReadUntaggedSongInto(ByteSource& source, const SongReadContext& context,
                                   SongInfo& song);

// The numeric value of a text (Val), worked out directly when the text is a few digits only
// (sizes and track numbers nearly always are).
double DigitsVal(std::string_view text);

// Tag text in a code page, as page.Decode gives it, ASCII copied without a call per character.
std::string DecodeTagText(const SingleByteCodepage& page, std::string_view bytes);

}  // namespace jk
