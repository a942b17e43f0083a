#pragma once

// The one entry by which a file name becomes a SongInfo: the song cache first, then the file.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "metadata/SongFileReader.h"
#include "metadata/SongInfo.h"

namespace jk {

class PackedSong;
class SongCache;

// What a lookup works with. The counters run across sessions (the settings keep them).
struct SongLookupContext {
    SongCache& cache;
    std::int32_t& totalCacheHits;  // every lookup of a file that exists
    std::int32_t& cacheHits;       // lookups that found the key, stale or not
    SongReadOptions options;
    // The "yyyymmddhhnnss" stamp of this moment; NowStamp14 when empty (tests set a clock).
    std::function<std::string()> now;
};

// Trims `path` in place, then gives the cached record when the file's date matches its slot,
// else reads the file (and adds it to the cache unless `noCache`). Album carries " - NN" when
// the song has a track number. A file that is missing, a folder, or shorter than 132 bytes, and
// any failure while reading, give NonExistantSong(). `prefetched` stands in for the file's
// status (and bytes) when a read-ahead already took them.
SongInfo GetSongInfo(std::string& path, bool noCache, SongLookupContext& ctx,
                     const PrefetchedBytes* prefetched = nullptr);

// A song as GetSongInfo gives it, seen in place rather than copied: on a cache hit the texts
// point into the cached record and into buffers of the calling thread, so a caller that only
// copies them on (into a row) builds no record. The views hold until the same thread looks up
// its next song or the cache changes.
struct SongView {
    std::string_view Title;
    std::string_view Artist;
    std::string_view Album;
    std::string_view Comment;
    std::string_view Genre;
    std::string_view Year;
    std::string_view Bitrate;
    std::string_view Date;
    std::string_view Size;
    std::string_view Time;
    std::string_view Path;
    std::string_view Volume;
    std::string_view LastUsed;
    std::int16_t Reserved = 0;
    std::int16_t Track = 0;
};

// The view of a record; it holds while `song` does.
SongView ViewOf(const SongInfo& song);
// True when RTrim(Title) is the failure mark, as for a SongInfo.
bool IsNonExistant(const SongView& song);

// GetSongInfo, giving the song as a view. A song read from the file is filled into `read` and
// viewed there; a cache hit fills nothing. False, leaving `view` as it was, for the "File
// non-existant" record.
bool GetSongView(std::string& path, bool noCache, SongLookupContext& ctx,
                 const PrefetchedBytes* prefetched, SongInfo& read, SongView& view);

// A lookup begun ahead of its turn, for songs asked for in a known order (the files a list
// reads ahead): where the path's key stands in the song cache. GetSongView handed it searches
// the cache again only when the cache has changed since; the counting, the date test and any
// read happen in the song's turn, as ever.
struct SongLookAhead {
    std::int64_t index = -1;         // the record found, -1 for none
    PackedSong* slot = nullptr;      // that record (null for none and for index 0)
    std::uint64_t cacheChanges = 0;  // SongCache::Changes() when it was found
};

// Begins the lookup of a path trimmed as GetSongInfo trims it.
SongLookAhead LookAheadInCache(std::string_view trimmedPath, SongCache& cache);
// The "yyyymmddhhnnss" date stamp of the record a look-ahead found ("" for none).
std::string_view StampOf(const SongLookAhead& ahead);

// GetSongView for a path whose lookup began with LookAheadInCache.
bool GetSongView(std::string& path, bool noCache, SongLookupContext& ctx,
                 const PrefetchedBytes* prefetched, const SongLookAhead& ahead, SongInfo& read,
                 SongView& view);

// Reads the file with no cache lookup, and adds the record to the cache unless `noCache` (a
// failed read is never added). `status` is the file's status, taken by the caller.
SongInfo ReadSongFile(const std::string& path, const FileStatus& status, bool noCache,
                      SongLookupContext& ctx, const PrefetchedBytes* prefetched = nullptr);
// The same, taking the file's status itself.
SongInfo ReadSongFile(const std::string& path, bool noCache, SongLookupContext& ctx);

// The Album rules applied to every record GetSongInfo returns: a Track above 0 appends " - NN"
// to Album; a Track of 0 is taken back from such a suffix, the Album left as it stands.
void ApplyTrackSuffix(SongInfo& song);

}  // namespace jk
