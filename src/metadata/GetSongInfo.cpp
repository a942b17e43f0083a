#include "metadata/GetSongInfo.h"

#include <ctime>
#include <limits>

#include "catalogue/SongCache.h"
#include "util/StringHelpers.h"
#include "util/Text.h"
#include "util/TimeHelpers.h"
#include "util/Utf8.h"

namespace jk {
namespace {

std::string NowOf(const SongLookupContext& ctx) {
    if (ctx.now) {
        return ctx.now();
    }
    // The stamp changes once a second, and a walk asks for it for every file.
    thread_local std::time_t second = -1;
    thread_local std::string stamp;
    const std::time_t now = std::time(nullptr);
    if (now != second) {
        second = now;
        stamp = FormatStamp14(static_cast<std::int64_t>(now));
    }
    return stamp;
}

// The counters are 32-bit: counting past the top is a run-time failure, as it always was.
bool Count(std::int32_t& counter) {
    if (counter == std::numeric_limits<std::int32_t>::max()) {
        return false;
    }
    ++counter;
    return true;
}

}  // namespace

void ApplyTrackSuffix(SongInfo& song) {
    if (song.Track > 0) {
        song.Album = std::string(RTrim(CutAtNull(song.Album)))
                         .append(" - ")
                         .append(FormatZeroPadded(song.Track, 2));
        return;
    }
    if (song.Track != 0) {
        return;
    }
    const std::size_t count = CharCount(song.Album);
    if (count < 4) {
        return;
    }
    const bool marked =
        count == 4 ? CharLeft(song.Album, 2) == "- " : CharMid(song.Album, count - 4, 3) == " - ";
    if (marked) {
        song.Track = ToInt16(Val(CharRight(song.Album, 2))).value_or(0);
    }
}

SongInfo ReadSongFile(const std::string& path, const FileStatus& status, bool noCache,
                      SongLookupContext& ctx, const PrefetchedBytes* prefetched) {
    if (!status.exists || !status.isRegular) {
        return NonExistantSong();
    }
    SongInfo song = ReadSongFromDisk(path, status, ctx.options, prefetched);
    if (!noCache && !IsNonExistant(song)) {
        CacheAdd(ctx.cache, song, FormatStamp14(status.modifiedSeconds), NowOf(ctx),
                 ctx.options.exactTimes);
    }
    return song;
}

SongInfo ReadSongFile(const std::string& path, bool noCache, SongLookupContext& ctx) {
    return ReadSongFile(path, StatPath(path), noCache, ctx);
}

SongInfo GetSongInfo(std::string& path, bool noCache, SongLookupContext& ctx,
                     const PrefetchedBytes* prefetched) {
    const std::string_view trimmed = Trim(path);
    if (trimmed.size() != path.size()) {
        path = std::string(trimmed);
    }
    // One status for existence, size and date; a folder named like a song is no song.
    const FileStatus status = prefetched != nullptr ? prefetched->status : StatPath(path);
    if (!status.exists || !status.isRegular || status.size < kSmallestSongFile) {
        return NonExistantSong();
    }
    if (!Count(ctx.totalCacheHits)) {
        return NonExistantSong();
    }
    SongCache& cache = ctx.cache;
    const std::int64_t index = cache.UpperBound() > 0 ? CacheFind(cache, CacheKeyOf(path)) : -1;
    SongInfo song;
    if (index == -1) {
        song = ReadSongFile(path, status, noCache, ctx, prefetched);
    } else {
        // A stale slot counts as a hit too: the count comes before the date test.
        if (!Count(ctx.cacheHits)) {
            return NonExistantSong();
        }
        if (cache.DateOf(index) == FormatStamp14(status.modifiedSeconds)) {
            song = cache.Record(index);
            song.Path = path;
            song.Time = ShownTime(song.Time, ctx.options.exactTimes);
            // The slot's stamp is the file's own date, so its locale text is that of the date.
            song.Date = FormatLocaleDateTime(status.modifiedSeconds);
            cache.SetLastUsed(index, NowOf(ctx));
        } else {
            // The stale slot stays; optimising the cache removes it later.
            song = ReadSongFile(path, status, noCache, ctx, prefetched);
        }
    }
    if (IsNonExistant(song)) {
        return song;
    }
    ApplyTrackSuffix(song);
    return song;
}

}  // namespace jk
