#include "catalogue/GetSongInfo.h"

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

namespace {

void AppendTrackDigits(std::string& out, std::int16_t track) {
    if (track < 100) {
        out.push_back(static_cast<char>('0' + track / 10));
        out.push_back(static_cast<char>('0' + track % 10));
    } else {
        out.append(FormatZeroPadded(track, 2));
    }
}

// The track of an Album that ends in " - NN" (or is "- NN"), else 0.
std::int16_t TrackOfSuffix(std::string_view album) {
    const std::size_t count = CharCount(album);
    if (count < 4) {
        return 0;
    }
    const bool marked =
        count == 4 ? CharLeft(album, 2) == "- " : CharMid(album, count - 4, 3) == " - ";
    return marked ? ToInt16(Val(CharRight(album, 2))).value_or(0) : 0;
}

}  // namespace

void ApplyTrackSuffix(SongInfo& song) {
    if (song.Track > 0) {
        // RTrim(CutAtNull(Album)) is a beginning of Album: cut it there, in place.
        song.Album.resize(RTrim(CutAtNull(song.Album)).size());
        song.Album.append(" - ");
        AppendTrackDigits(song.Album, song.Track);
        return;
    }
    if (song.Track == 0) {
        song.Track = TrackOfSuffix(song.Album);
    }
}

SongView ViewOf(const SongInfo& song) {
    SongView view;
    view.Title = song.Title;
    view.Artist = song.Artist;
    view.Album = song.Album;
    view.Comment = song.Comment;
    view.Genre = song.Genre;
    view.Year = song.Year;
    view.Bitrate = song.Bitrate;
    view.Date = song.Date;
    view.Size = song.Size;
    view.Time = song.Time;
    view.Path = song.Path;
    view.Volume = song.Volume;
    view.LastUsed = song.LastUsed;
    view.Reserved = song.Reserved;
    view.Track = song.Track;
    return view;
}

bool IsNonExistant(const SongView& song) {
    return RTrim(song.Title) == kFileNonExistant;
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

// The locale's text of a file's date (whose stamp is `stamp`), kept for the last date asked:
// the songs of a folder are often written in the same second.
std::string_view DateTextOf(std::string_view stamp, const LocalMoment& fileTime) {
    thread_local std::string lastStamp;
    thread_local std::string text;
    if (lastStamp.empty() || lastStamp != stamp) {
        text = fileTime.LocaleText();
        lastStamp.assign(stamp);
    }
    return text;
}

// The hit as a view: what TakeHit and the Album rules make of the slot, without copying texts
// that stand as they are.
void ViewHit(const PackedSong& slot, const std::string& path, std::string_view stamp,
             const LocalMoment& fileTime, bool exactTimes, std::string_view lastUsed,
             SongView& view) {
    thread_local std::string time;
    thread_local std::string album;
    view.Title = slot.Field(kKeyTitle);
    view.Artist = slot.Field(kKeyArtist);
    view.Album = slot.Field(kKeyAlbum);
    view.Comment = slot.Field(kKeyComment);
    view.Genre = slot.Field(kKeyGenre);
    view.Year = slot.Field(kKeyYear);
    view.Bitrate = slot.Field(kKeyBitrate);
    view.Size = slot.Field(kKeySize);
    view.Volume = slot.Field(kKeyVolume);
    view.Path = path;
    time = ShownTime(slot.Field(kKeyTime), exactTimes);
    view.Time = time;
    view.Date = DateTextOf(stamp, fileTime);
    view.LastUsed = lastUsed;
    view.Reserved = slot.Reserved();
    view.Track = slot.Track();
    if (IsNonExistant(view)) {
        return;  // such a record is the mark, and keeps its Album
    }
    if (view.Track > 0) {
        album.assign(RTrim(CutAtNull(view.Album)));
        album.append(" - ");
        AppendTrackDigits(album, view.Track);
        view.Album = album;
    } else if (view.Track == 0) {
        view.Track = TrackOfSuffix(view.Album);
    }
}

// A file's date in local time and as a stamp, kept for the last date asked on this thread:
// files written together often share their second.
struct FileTime {
    std::int64_t seconds = 0;
    LocalMoment moment{0};
    std::string stamp;
};

const FileTime& FileTimeOf(std::int64_t modifiedSeconds) {
    thread_local FileTime last;
    if (last.stamp.empty() || last.seconds != modifiedSeconds) {
        last.seconds = modifiedSeconds;
        last.moment = LocalMoment(modifiedSeconds);
        last.stamp = last.moment.Stamp14();
    }
    return last;
}

// What a lookup came to.
enum class Found { Nothing, Read, Hit };

// The record of `key` (-1 when none) and its slot.
std::int64_t SearchCache(SongCache& cache, std::string_view key, PackedSong*& slot) {
    slot = nullptr;
    return cache.UpperBound() > 0 ? cache.FindForUpdate(key, slot) : -1;
}

// GetSongInfo up to the record: false when the file is missing, too short or not counted;
// true with `song` read (a read that fails gives the mark itself) or, on a hit, with `onHit`
// called with the slot, the file's stamp and its time, before the slot's LastUsed is stamped.
// With `ahead` the search is taken from there while the cache stands still.
template <class OnHit>
Found LookUp(std::string& path, bool noCache, SongLookupContext& ctx,
             const PrefetchedBytes* prefetched, const SongLookAhead* ahead, SongInfo& song,
             const OnHit& onHit) {
    const std::string_view trimmed = Trim(path);
    if (trimmed.size() != path.size()) {
        path = std::string(trimmed);
    }
    // The key needs no file system call, so the lookup comes first: a hit then costs one stat
    // (for the date), and a miss opens the file and takes its status from the open file, one
    // path lookup for both. The lookup changes nothing, so the counting order stays.
    thread_local std::string keyBuffer;
    bool keyMade = false;
    const auto key = [&]() -> std::string_view {
        if (!keyMade) {
            CacheKeyInto(path, keyBuffer);
            keyMade = true;
        }
        return keyBuffer;
    };
    SongCache& cache = ctx.cache;
    PackedSong* slot = nullptr;
    std::int64_t index = -1;
    if (ahead != nullptr && ahead->cacheChanges == cache.Changes()) {
        index = ahead->index;
        slot = ahead->slot;
    } else {
        index = SearchCache(cache, key(), slot);
    }
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
        return Found::Nothing;
    }
    if (!Count(ctx.totalCacheHits)) {
        return Found::Nothing;
    }
    if (index == -1) {
        ReadAndAdd(path, key(), status, noCache, ctx, prefetched, &file, song);
        return Found::Read;
    }
    // A stale slot counts as a hit too: the count comes before the date test.
    if (!Count(ctx.cacheHits)) {
        return Found::Nothing;
    }
    const FileTime& fileTime = FileTimeOf(status.modifiedSeconds);
    const std::string_view stamp = fileTime.stamp;
    // (The slot is null only for index 0, the blank slot, whose empty date never matches.)
    if (slot != nullptr && slot->Field(kKeyDate) == stamp) {
        onHit(*slot, stamp, fileTime.moment);
        return Found::Hit;
    }
    // The stale slot stays; optimising the cache removes it later.
    ReadAndAdd(path, key(), status, noCache, ctx, prefetched, nullptr, song);
    return Found::Read;
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
    const auto onHit = [&](PackedSong& slot, std::string_view, const LocalMoment& fileTime) {
        TakeHit(slot, path, fileTime, ctx.options.exactTimes, song);
        slot.SetField(kKeyLastUsed, NowOf(ctx));
    };
    if (LookUp(path, noCache, ctx, prefetched, nullptr, song, onHit) == Found::Nothing) {
        song = NonExistantSong();
    } else if (!IsNonExistant(song)) {
        ApplyTrackSuffix(song);
    }
    return song;
}

namespace {

bool ViewSong(std::string& path, bool noCache, SongLookupContext& ctx,
              const PrefetchedBytes* prefetched, const SongLookAhead* ahead, SongInfo& read,
              SongView& view) {
    SongView hit;
    const auto onHit = [&](PackedSong& slot, std::string_view stamp, const LocalMoment& fileTime) {
        // The song shows the LastUsed it had before this hit; stamping may move the slot's
        // texts, so the views are taken afterwards.
        thread_local std::string lastUsed;
        lastUsed.assign(slot.Field(kKeyLastUsed));
        slot.SetField(kKeyLastUsed, NowOf(ctx));
        ViewHit(slot, path, stamp, fileTime, ctx.options.exactTimes, lastUsed, hit);
    };
    switch (LookUp(path, noCache, ctx, prefetched, ahead, read, onHit)) {
        case Found::Nothing:
            return false;
        case Found::Hit:
            if (IsNonExistant(hit)) {
                return false;
            }
            view = hit;
            return true;
        case Found::Read:
            break;
    }
    if (IsNonExistant(read)) {
        return false;
    }
    ApplyTrackSuffix(read);
    view = ViewOf(read);
    return true;
}

}  // namespace

bool GetSongView(std::string& path, bool noCache, SongLookupContext& ctx,
                 const PrefetchedBytes* prefetched, SongInfo& read, SongView& view) {
    return ViewSong(path, noCache, ctx, prefetched, nullptr, read, view);
}

bool GetSongView(std::string& path, bool noCache, SongLookupContext& ctx,
                 const PrefetchedBytes* prefetched, const SongLookAhead& ahead, SongInfo& read,
                 SongView& view) {
    return ViewSong(path, noCache, ctx, prefetched, &ahead, read, view);
}

SongLookAhead LookAheadInCache(std::string_view trimmedPath, SongCache& cache) {
    thread_local std::string key;
    CacheKeyInto(trimmedPath, key);
    SongLookAhead ahead;
    ahead.index = SearchCache(cache, key, ahead.slot);
    ahead.cacheChanges = cache.Changes();
    return ahead;
}

std::string_view StampOf(const SongLookAhead& ahead) {
    return ahead.slot != nullptr ? ahead.slot->Field(kKeyDate) : std::string_view();
}

}  // namespace jk
