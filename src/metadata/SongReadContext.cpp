#include "metadata/SongReadContext.h"

#include "metadata/ExactStream.h"
#include "metadata/MpegAnalysis.h"
#include "util/TimeHelpers.h"

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

Outcome<SongInfo> ReadUntaggedSong(ByteSource& source, const SongReadContext& context) {
    SongInfo song;
    song.Genre = "Unknown";
    song.Year = "    ";
    if (const Outcome<Done> timed = FillBitrateAndTime(song, source, context.exactTimes); !timed) {
        return timed.Fault();
    }
    return song;
}

}  // namespace jk
