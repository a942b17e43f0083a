#pragma once

// The exact-times extension: bitrate and playing time from the audio itself. The audio begins
// behind every leading ID3v2 tag (all 28 size bits, the footer too) and ends ahead of the tags
// at the end (ID3v1, Lyrics3 2.00, APEv2). The first frame is sought through the first 64 KiB of
// the audio and confirmed by the header of the frame behind it; a Xing, "Info" or VBRI header
// in that frame gives the frame count. Arithmetic is 64-bit and never fails.

#include <cstdint>
#include <optional>

#include "metadata/ByteSource.h"

namespace jk {

struct MpegFrameHeader {
    bool mpeg1 = true;    // else MPEG-2 or MPEG-2.5
    int versionBits = 3;  // 3 MPEG-1, 2 MPEG-2, 0 MPEG-2.5
    int layer = 3;        // 1, 2 or 3
    int bitrate = 0;      // kbit/s
    int sampleRate = 0;   // Hz
    int channelMode = 0;  // 3 = mono
    int frameLength = 0;  // bytes, padding included
    int samplesPerFrame = 0;
};

// A full header test: sync, no reserved version, layer, bitrate index (free format is refused)
// or sampling index. Needs four bytes.
std::optional<MpegFrameHeader> ParseMpegFrameHeader(ByteView bytes);

struct StreamFacts {
    std::int32_t bitrate = 128;  // kbit/s, never 0
    std::int32_t seconds = 0;
};

// Where the audio begins: behind every ID3v2 tag at the head (some writers stack them).
Outcome<std::int64_t> AudioStart(ByteSource& source);
// Where the audio ends: ahead of ID3v1, a Lyrics3 2.00 block and an APEv2 tag at the end.
Outcome<std::int64_t> AudioEnd(ByteSource& source);

// How far behind the audio's start the first frame is sought.
inline constexpr std::int64_t kSyncSearchBytes = std::int64_t{64} << 10;
// The search's first look behind the audio's start: a candidate is judged by what lies within
// it, and the whole search window is looked at only when that leaves the search open. (Only the
// bytes the search looks at are read.)
inline constexpr std::int64_t kSyncProbeBytes = 8192;

// Fails only when the file can't be read.
Outcome<StreamFacts> ReadStreamExactly(ByteSource& source);

}  // namespace jk
