#include "metadata/MpegAnalysis.h"

#include <algorithm>

#include "util/Text.h"

namespace jk {
namespace {

// kbit/s by bitrate index (rows) and V1 L1, V1 L2, V1 L3, V2 L1, V2 L2, V2 L3 (columns).
constexpr std::int16_t kBitrates[16][6] = {
    {0, 0, 0, 0, 0, 0},
    {32, 32, 32, 32, 8, 8},
    {64, 48, 40, 48, 16, 16},
    {96, 56, 48, 56, 24, 24},
    {128, 64, 56, 64, 32, 32},
    {160, 80, 64, 80, 40, 40},
    {192, 96, 80, 96, 48, 48},
    {224, 112, 96, 112, 56, 56},
    {256, 128, 112, 128, 64, 64},
    {288, 160, 128, 144, 80, 80},
    {320, 192, 160, 160, 96, 96},
    {352, 224, 192, 176, 112, 112},
    {384, 256, 224, 192, 128, 128},
    {416, 320, 256, 224, 144, 144},
    {448, 384, 320, 256, 160, 160},
    {0, 0, 0, 0, 0, 0},
};

// The Xing reader's sampling rates by the two sampling bits; the last is a filler.
constexpr std::int32_t kXingRates[4] = {44100, 48000, 32000, 99999};

// The bitrate search looks at header windows that begin within this many bytes behind the tag:
// it stops once the last byte read lies 100 bytes behind it.
constexpr std::int64_t kSearchStop = 100;

constexpr std::int16_t kDefaultBitrate = 128;

std::uint8_t AsciiUpperByte(std::uint8_t b) {
    return (b >= 'a' && b <= 'z') ? static_cast<std::uint8_t>(b - 'a' + 'A') : b;
}

}  // namespace

std::int16_t WrapInt16(std::int32_t value) {
    return static_cast<std::int16_t>(static_cast<std::uint16_t>(static_cast<std::uint32_t>(value)));
}

std::int16_t GetID3v2Size(ByteSource& source) {
    if (source.Size() < 10) {
        return 0;
    }
    const Outcome<ByteView> head = source.View(0, 10);
    if (!head) {
        return 0;
    }
    const ByteView b = *head;
    const bool marked =
        AsciiUpperByte(b[0]) == 'I' && AsciiUpperByte(b[1]) == 'D' && AsciiUpperByte(b[2]) == '3';
    if (!marked || b[3] >= 255 || b[4] >= 255 || b[6] >= 128 || b[7] >= 128 || b[8] >= 128 ||
        b[9] >= 128) {
        return 0;
    }
    // The highest size byte (b[6]) takes no part: only the lower three enter the sum.
    const std::int32_t sum = (b[7] * 128 + b[8]) * 128 + b[9];
    return WrapInt16(WrapInt16(sum) + 10);
}

std::int16_t FrameBitrate(std::uint8_t /*b0*/, std::uint8_t b1, std::uint8_t b2) {
    int column = 3;
    switch (b1 & 6) {
        case 2:
            column = 3;
            break;
        case 4:
            column = 2;
            break;
        case 6:
            column = 1;
            break;
        default:
            column = 3;
            break;
    }
    if ((b1 & 8) == 0) {
        column += 3;  // MPEG-2 and MPEG-2.5 share the V2 columns
    }
    return kBitrates[b2 / 16][column - 1];
}

bool IsHeaderWindow(std::uint8_t b0, std::uint8_t b1, std::uint8_t b2) {
    return b0 == 255 && b1 > 16 && b1 != 255 && ((b1 & 2) + (b1 & 4)) > 0 && b2 != 255 && b2 > 0;
}

Outcome<std::int32_t> ReadXingInt(ByteCursor& cursor) {
    const Outcome<ByteView> bytes = cursor.Read(4);
    if (!bytes) {
        return bytes.Fault();
    }
    const ByteView b = *bytes;
    if (b[0] >= 0x80) {
        return ReadFault::Overflow32;
    }
    return static_cast<std::int32_t>((static_cast<std::uint32_t>(b[0]) << 24) |
                                     (static_cast<std::uint32_t>(b[1]) << 16) |
                                     (static_cast<std::uint32_t>(b[2]) << 8) | b[3]);
}

Outcome<bool> ReadXingHeader(XingHeader& header, ByteSource& source) {
    ByteCursor cursor(source);
    if (const auto skipped = cursor.Skip(GetID3v2Size(source)); !skipped) {
        return skipped.Fault();
    }
    // Four single bytes: read in one piece, which fails as the first byte past the end would.
    std::uint8_t bytes[4] = {};
    if (const Outcome<ByteView> read = cursor.Read(4); read) {
        std::copy(read->begin(), read->end(), bytes);
    } else {
        return read.Fault();
    }
    const std::int32_t id = (bytes[1] / 8) & 1;
    const std::int32_t samplingIndex = (bytes[2] / 4) & 3;
    const std::int32_t mode = (bytes[3] / 64) & 3;
    std::int64_t sideInfo = 0;
    if (id == 1) {
        sideInfo = mode != 3 ? 32 : 17;
    } else {
        sideInfo = mode != 3 ? 17 : 9;
    }
    if (const auto skipped = cursor.Skip(sideInfo); !skipped) {
        return skipped.Fault();
    }
    const Outcome<ByteView> mark = cursor.Read(4);
    if (!mark) {
        return mark.Fault();
    }
    const ByteView m = *mark;
    if (!(m[0] == 'X' && m[1] == 'i' && m[2] == 'n' && m[3] == 'g')) {
        return false;
    }
    header.h_id = id;
    header.samprate = kXingRates[samplingIndex];
    if (id == 0) {
        header.samprate /= 2;
    }
    const Outcome<std::int32_t> flags = ReadXingInt(cursor);
    if (!flags) {
        return flags.Fault();
    }
    header.flags = *flags;
    if ((header.flags & 1) != 0) {
        const Outcome<std::int32_t> frames = ReadXingInt(cursor);
        if (!frames) {
            return frames.Fault();
        }
        header.frames = *frames;
    }
    if ((header.flags & 2) != 0) {
        const Outcome<std::int32_t> count = ReadXingInt(cursor);
        if (!count) {
            return count.Fault();
        }
        header.bytes = *count;
    }
    if ((header.flags & 4) != 0 && header.toc[0] == 0) {
        const Outcome<ByteView> toc = cursor.Read(100);
        if (!toc) {
            return toc.Fault();
        }
        for (std::size_t i = 0; i < 100; ++i) {
            header.toc[i] = (*toc)[i];
        }
    }
    header.vbr_scale = -1;
    if ((header.flags & 8) != 0) {
        const Outcome<std::int32_t> scale = ReadXingInt(cursor);
        if (!scale) {
            return scale.Fault();
        }
        header.vbr_scale = *scale;
    }
    return true;
}

Outcome<std::int32_t> XingBitrate(const XingHeader& header, std::int64_t fileLength) {
    const std::int64_t samples = static_cast<std::int64_t>(header.frames) * 1152;
    if (samples > INT32_MAX || samples < INT32_MIN) {
        return ReadFault::Overflow32;
    }
    if (header.samprate == 0) {
        return ReadFault::DivideByZero;
    }
    const double seconds =
        RoundHalfEven(static_cast<double>(samples) / static_cast<double>(header.samprate));
    if (seconds < 1) {
        return std::int32_t{kDefaultBitrate};
    }
    const std::int64_t bits = fileLength * 8;
    if (bits > INT32_MAX) {
        return ReadFault::Overflow32;
    }
    const std::optional<std::int32_t> rate = ToInt32(static_cast<double>(bits) / 1000.0 / seconds);
    if (!rate) {
        return ReadFault::Overflow32;
    }
    return *rate == 0 ? std::int32_t{kDefaultBitrate} : *rate;
}

Outcome<std::int16_t> GetBitrate(ByteSource& source) {
    XingHeader xing;
    const Outcome<bool> hasXing = ReadXingHeader(xing, source);
    if (!hasXing) {
        return hasXing.Fault();
    }
    if (*hasXing) {
        const Outcome<std::int32_t> rate = XingBitrate(xing, source.Size());
        if (!rate) {
            return rate.Fault();
        }
        const std::optional<std::int16_t> narrow = ToInt16(*rate);
        if (!narrow) {
            return ReadFault::Overflow16;
        }
        return *narrow;
    }

    const std::int16_t tagSize = GetID3v2Size(source);
    ByteCursor cursor(source);
    if (const auto skipped = cursor.Skip(tagSize); !skipped) {
        return skipped.Fault();
    }
    const Outcome<ByteView> start = cursor.Read(2);
    if (!start) {
        return start.Fault();
    }
    // The window: b0 b1 b2, filled from the right; `filled` counts the bytes it holds.
    std::uint8_t b0 = 0;
    std::uint8_t b1 = (*start)[0];
    std::uint8_t b2 = (*start)[1];
    int filled = 2;
    std::int16_t result = kDefaultBitrate;
    bool found = false;
    // The bytes the search may read, looked at in memory; where they can't be had in one piece
    // the search reads byte by byte, failing where a byte fails.
    const std::int64_t from = cursor.Position();
    const std::int64_t until = std::max(from, std::min(source.Size(), tagSize + kSearchStop));
    if (const Outcome<ByteView> ahead = source.View(from, until - from); ahead) {
        for (const std::uint8_t next : *ahead) {
            b0 = b1;
            b1 = b2;
            b2 = next;
            filled = 3;
            if (IsHeaderWindow(b0, b1, b2)) {
                result = FrameBitrate(b0, b1, b2);
                break;
            }
        }
    } else {
        while (!cursor.AtEnd() && !found && cursor.Position() - tagSize < kSearchStop) {
            const Outcome<std::uint8_t> next = cursor.ReadByte();
            if (!next) {
                return next.Fault();
            }
            b0 = b1;
            b1 = b2;
            b2 = *next;
            filled = 3;
            if (IsHeaderWindow(b0, b1, b2)) {
                result = FrameBitrate(b0, b1, b2);
                found = true;
            }
        }
    }
    // A window of two bytes (the file ended right behind them) has no bitrate byte.
    if (filled < 3 || FrameBitrate(b0, b1, b2) == 0) {
        result = kDefaultBitrate;
    }
    return result;
}

Outcome<std::int16_t> GetSongSeconds(std::int64_t fileLength, std::int16_t bitrate) {
    const std::int64_t bits = fileLength * 8;
    if (bits > INT32_MAX) {
        return ReadFault::Overflow32;
    }
    if (bitrate == 0) {
        return ReadFault::DivideByZero;
    }
    const std::optional<std::int16_t> seconds =
        ToInt16(static_cast<double>(bits) / 1000.0 / bitrate);
    if (!seconds) {
        return ReadFault::Overflow16;
    }
    return *seconds;
}

}  // namespace jk
