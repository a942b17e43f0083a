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
        // RTrim(CutAtNull(Album)) is a beginning of Album: cut it there, in place.
        song.Album.resize(RTrim(CutAtNull(song.Album)).size());
        song.Album.append(" - ");
        if (song.Track < 100) {
            song.Album.push_back(static_cast<char>('0' + song.Track / 10));
            song.Album.push_back(static_cast<char>('0' + song.Track % 10));
        } else {
            song.Album.append(FormatZeroPadded(song.Track, 2));
        }
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

namespace {

// Reads the file (from `file` when the caller has it open) into `song` and adds the record under
// `key`.
void ReadAndAdd(const std::string& path, std::string_view key, const FileStatus& status,
                bool noCache, SongLookupContext& ctx, const PrefetchedBytes* prefetched,
                ReadFile* file, SongInfo& song) {
    const LocalMoment fileTime(status.modifiedSeconds);
    song = ReadSongFromDisk(path, status, fileTime, ctx.options, prefetched, file);
    if (!noCache && !IsNonExistant(song)) {
        CacheAddUnderKey(ctx.cache, song, key, fileTime.Stamp14(), NowOf(ctx),
                         ctx.options.exactTimes);
    }
}

// The record of a slot whose date matched, in the form GetSongInfo gives: the full path, the
// time with its colon and the locale's text of the date. The stored key, stamp and time are
// not copied only to be replaced.
void TakeHit(const PackedSong& slot, const std::string& path, const LocalMoment& fileTime,
             bool exactTimes, SongInfo& song) {
    for (int key = kKeyTitle; key <= kKeyLastUsed; ++key) {
        if (key != kKeyPath && key != kKeyTime && key != kKeyDate) {
            SongField(song, key) = slot.Field(key);
        }
    }
    song.Track = slot.Track();
    song.Reserved = slot.Reserved();
    song.Path = path;
    song.Time = ShownTime(slot.Field(kKeyTime), exactTimes);
    // The slot's stamp is the file's own date, so its locale text is that of the date.
    song.Date = fileTime.LocaleText();
}

// GetSongInfo into `song`, a blank record, without the Album rules; false when the file is
// missing, too short or not counted (a read that fails gives the mark itself).
bool LookUp(std::string& path, bool noCache, SongLookupContext& ctx,
            const PrefetchedBytes* prefetched, SongInfo& song) {
    const std::string_view trimmed = Trim(path);
    if (trimmed.size() != path.size()) {
        path = std::string(trimmed);
    }
    // The key needs no file system call, so the lookup comes first: a hit then costs one stat
    // (for the date), and a miss opens the file and takes its status from the open file, one
    // path lookup for both. The lookup changes nothing, so the counting order stays.
    thread_local std::string keyBuffer;
    CacheKeyInto(path, keyBuffer);
    const std::string_view key = keyBuffer;
    SongCache& cache = ctx.cache;
    PackedSong* slot = nullptr;
    const std::int64_t index = cache.UpperBound() > 0 ? cache.FindForUpdate(key, slot) : -1;
    ReadFile file;
    FileStatus status;
    if (prefetched != nullptr) {
        status = prefetched->status;
    } else if (index == -1) {
        file = ReadFile(path);
        // A file that can't be opened may still exist (no permission): it counts as a lookup.
        status = file.IsOpen() ? file.Status() : StatPath(path);
    } else {
        status = StatPath(path);
    }
    // A folder named like a song is no song.
    if (!status.exists || !status.isRegular || status.size < kSmallestSongFile) {
        return false;
    }
    if (!Count(ctx.totalCacheHits)) {
        return false;
    }
    if (index == -1) {
        ReadAndAdd(path, key, status, noCache, ctx, prefetched, &file, song);
        return true;
    }
    // A stale slot counts as a hit too: the count comes before the date test.
    if (!Count(ctx.cacheHits)) {
        return false;
    }
    const LocalMoment fileTime(status.modifiedSeconds);
    // (The slot is null only for index 0, the blank slot, whose empty date never matches.)
    if (slot != nullptr && slot->Field(kKeyDate) == fileTime.Stamp14()) {
        TakeHit(*slot, path, fileTime, ctx.options.exactTimes, song);
        slot->SetField(kKeyLastUsed, NowOf(ctx));
        return true;
    }
    // The stale slot stays; optimising the cache removes it later.
    ReadAndAdd(path, key, status, noCache, ctx, prefetched, nullptr, song);
    return true;
}

}  // namespace

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
    SongInfo song;
    if (!LookUp(path, noCache, ctx, prefetched, song)) {
        song = NonExistantSong();
    } else if (!IsNonExistant(song)) {
        ApplyTrackSuffix(song);
    }
    return song;
}

}  // namespace jk
