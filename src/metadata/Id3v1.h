#pragma once

// The 128-byte ID3v1(.1) tag at a file's end.

#include "metadata/ByteSource.h"
#include "metadata/SongInfo.h"
#include "metadata/SongReadContext.h"

namespace jk {

inline constexpr std::int64_t kID3v1Bytes = 128;

// True when the last 128 bytes begin with "TAG" (case counts). A file below 128 bytes has none.
bool HasID3Tag(ByteSource& source);

// The tag's texts (trimmed, then cut at the first NUL; Year only cut), the ID3v1.1 track byte,
// the genre through the table, and the bitrate and time.
Outcome<SongInfo> ReadID3Song(ByteSource& source, const SongReadContext& context);
// The same into `song`, a blank record.
Outcome<Done> ReadID3SongInto(ByteSource& source, const SongReadContext& context, SongInfo& song);

}  // namespace jk
