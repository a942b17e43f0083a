#pragma once

// What the three ways of reading a song share: the code page of tag text and the choice of
// bitrate and time analysis.

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

}  // namespace jk
