#pragma once

// The ten-byte header of an ID3v2 tag, read in full (all 28 size bits and the footer), for the
// extensions. The bitrate search of MpegAnalysis.h keeps its own 16-bit reading.

#include <cstdint>
#include <optional>

#include "metadata/ByteSource.h"

namespace jk {

inline constexpr std::int64_t kID3v2HeaderBytes = 10;

struct ID3v2HeaderInfo {
    int major = 0;  // 2, 3 or 4 for the versions we read; others are skipped whole
    int revision = 0;
    std::uint8_t flags = 0;
    std::int64_t bodySize = 0;   // the bytes behind the header, footer not counted
    std::int64_t totalSize = 0;  // header, body and footer

    bool Unsynchronised() const { return (flags & 0x80) != 0; }
    bool HasExtendedHeader() const { return (flags & 0x40) != 0; }
};

// The header when the bytes begin with one: "ID3", version and revision bytes below 255, size
// bytes below 128. Fewer than ten bytes are no header.
std::optional<ID3v2HeaderInfo> ParseID3v2Header(ByteView bytes);

// A 28-bit "synchsafe" integer from four bytes of seven bits each.
std::uint32_t SynchsafeInt(std::uint8_t b0, std::uint8_t b1, std::uint8_t b2, std::uint8_t b3);

}  // namespace jk
