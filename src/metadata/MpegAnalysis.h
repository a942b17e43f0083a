#pragma once

// Bitrate and playing time of an MPEG audio file from its first bytes, without decoding: the
// size of a leading ID3v2 tag, a three-byte search for a frame header behind it, and the Xing
// VBR header where the first frame would stand. The quirks (a 16-bit tag size, 98 windows,
// 32-bit products) are kept on purpose; the exact-times extension lives in ExactStream.h.

#include <array>
#include <cstdint>

#include "metadata/ByteSource.h"

namespace jk {

struct XingHeader {
    std::int32_t h_id = 0;      // 1 = MPEG-1, 0 = MPEG-2
    std::int32_t samprate = 0;  // Hz, halved for MPEG-2
    std::int32_t flags = 0;
    std::int32_t frames = 0;              // when flag bit 0 is set
    std::int32_t bytes = 0;               // when flag bit 1 is set
    std::int32_t vbr_scale = 0;           // -1 when flag bit 3 is clear
    std::array<std::int32_t, 100> toc{};  // when flag bit 2 is set
};

// The wanted wrap of a 16-bit signed sum: 32768 becomes -32768.
std::int16_t WrapInt16(std::int32_t value);

// Bytes to skip at the head of the file: the ID3v2 size from its three lower size bytes, summed
// and then "+ 10" in 16 bits (a tag of 32758 bytes or more comes out negative). 0 when no tag.
std::int16_t GetID3v2Size(ByteSource& source);

// Table look-up of kbit/s for a three-byte header window (the first byte is not looked at).
std::int16_t FrameBitrate(std::uint8_t b0, std::uint8_t b1, std::uint8_t b2);

// True when the three bytes pass the header test of the bitrate search.
bool IsHeaderWindow(std::uint8_t b0, std::uint8_t b1, std::uint8_t b2);

// Four bytes, big-endian; fails when the first is 0x80 or more (a 32-bit overflow).
Outcome<std::int32_t> ReadXingInt(ByteCursor& cursor);

// Reads a Xing header at the one place it is sought; false when "Xing" is not there.
Outcome<bool> ReadXingHeader(XingHeader& header, ByteSource& source);

// kbit/s of a Xing file of `fileLength` bytes (tags included); 128 when the frame count is 0.
Outcome<std::int32_t> XingBitrate(const XingHeader& header, std::int64_t fileLength);

// kbit/s: the Xing header's, else the first header found in the 98 windows behind the tag,
// else 128.
Outcome<std::int16_t> GetBitrate(ByteSource& source);

// Whole-file length over the bitrate, in seconds, as a 16-bit value.
Outcome<std::int16_t> GetSongSeconds(std::int64_t fileLength, std::int16_t bitrate);

}  // namespace jk
