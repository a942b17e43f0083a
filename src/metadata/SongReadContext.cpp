#include "metadata/SongReadContext.h"

#include "metadata/ExactStream.h"
#include "metadata/MpegAnalysis.h"
#include "util/Text.h"
#include "util/TimeHelpers.h"
#include "util/Utf8.h"

namespace jk {

Outcome<Done> FillBitrateAndTime(SongInfo& song, ByteSource& source, bool exactTimes) {
    if (exactTimes) {
        const Outcome<StreamFacts> facts = ReadStreamExactly(source);
        if (!facts) {
            return facts.Fault();
        }
        song.Bitrate = std::to_string(facts->bitrate);
        song.Time = FormatSeconds(facts->seconds);
        return Done{};
    }
    const Outcome<std::int16_t> bitrate = GetBitrate(source);
    if (!bitrate) {
        return bitrate.Fault();
    }
    const Outcome<std::int16_t> seconds = GetSongSeconds(source.Size(), *bitrate);
    if (!seconds) {
        return seconds.Fault();
    }
    song.Bitrate = std::to_string(*bitrate);
    song.Time = FormatSeconds(*seconds);
    return Done{};
}

Outcome<Done> ReadUntaggedSongInto(ByteSource& source, const SongReadContext& context,
                                   SongInfo& song) {
    song.Genre = "Unknown";
    song.Year = "    ";
    return FillBitrateAndTime(song, source, context.exactTimes);
}

Outcome<SongInfo> ReadUntaggedSong(ByteSource& source, const SongReadContext& context) {
    SongInfo song;
    if (const Outcome<Done> read = ReadUntaggedSongInto(source, context, song); !read) {
        return read.Fault();
    }
    return song;
}

double DigitsVal(std::string_view text) {
    if (text.empty() || text.size() > 9) {
        return Val(text);
    }
    std::int32_t value = 0;
    for (const char c : text) {
        if (c < '0' || c > '9') {
            return Val(text);
        }
        value = value * 10 + (c - '0');
    }
    return value;
}

std::string DecodeTagText(const SingleByteCodepage& page, std::string_view bytes) {
    std::string out(bytes.size(), '\0');
    std::size_t i = 0;
    for (; i < bytes.size(); ++i) {
        const auto b = static_cast<unsigned char>(bytes[i]);
        if (b >= 0x80 || page.CharOf(b) != b) {
            break;
        }
        out[i] = bytes[i];
    }
    if (i == bytes.size()) {
        return out;
    }
    // From the first character of more than one byte on, Decode's own rule, byte by byte.
    out.resize(i + (bytes.size() - i) * 4);
    char* end = out.data() + i;
    for (; i < bytes.size(); ++i) {
        const auto b = static_cast<unsigned char>(bytes[i]);
        if (b < 0x80 && page.CharOf(b) == b) {
            *end++ = bytes[i];
        } else {
            end = WriteUtf8(end, page.CharOf(b));
        }
    }
    out.resize(static_cast<std::size_t>(end - out.data()));
    return out;
}

}  // namespace jk
