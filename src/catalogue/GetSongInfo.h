#pragma once

// The one entry by which a file name becomes a SongInfo: the song cache first, then the file.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "metadata/SongFileReader.h"
#include "metadata/SongInfo.h"

namespace jk {

class PackedSong;
class SongCache;

// The counters of lookups, which run across sessions (the settings keep them).
struct LookupCounters {
    std::int32_t& totalCacheHits;  // every lookup of a file that exists
    std::int32_t& cacheHits;       // lookups that found the key, stale or not
};

// What lookups work with, and what they keep from one song to the next: the cache and the
// counters (held by reference), the reading options, the clock, the song reader with its
// buffers, and the record a lookup fills. Make one for a run of lookups, on the thread that
// makes them; it is not shared between threads.
class SongLookup {
public:
    SongLookup(SongCache& cache, LookupCounters counters, SongReadOptions options = {});
    SongLookup(SongLookup&&) = default;
    SongLookup(const SongLookup&) = delete;
    SongLookup& operator=(const SongLookup&) = delete;
    SongLookup& operator=(SongLookup&&) = delete;
    ~SongLookup();

    // NoCache: a song read from its file is not added to the cache. The cache is searched all
    // the same.
    bool noCache = false;
    // The "yyyymmddhhnnss" stamp of this moment; the system clock's when empty (tests set one).
    std::function<std::string()> now;

    SongCache& Cache() { return m_cache; }
    SongReadOptions& Options() { return m_reader.Options(); }

    // For a read-ahead, asked in the order the songs will be looked up: the date stamp
    // ("yyyymmddhhnnss") of the slot that the file at `path` (trimmed) would find, "" for none;
    // valid until the cache changes. The search is kept, and the file's own lookup takes it
    // rather than searching again while the cache stands still.
    std::string_view StampAhead(std::string_view path);

private:
    friend SongInfo GetSongInfo(std::string_view path, SongLookup& lookup);
    friend const SongInfo& LendSongInfo(std::string_view path, SongLookup& lookup,
                                        const PrefetchedBytes* prefetched);

    // A search made ahead of its turn.
    struct Ahead {
        std::string key;
        std::int64_t index = -1;     // the record found, -1 for none
        PackedSong* slot = nullptr;  // that record (null for none and for index 0)
        std::uint64_t cacheChanges = 0;
    };

    void LookUp(std::string_view path, const PrefetchedBytes* prefetched);
    bool TakeAhead(std::int64_t& index, PackedSong*& slot);
    void ReadAndAdd(const FileAtHand& file);
    const std::string& Now();

    SongCache& m_cache;
    LookupCounters m_counters;
    SongReader m_reader;
    SongInfo m_song;             // the record of the last lookup
    std::string m_path;          // its trimmed path
    std::string m_key;           // its cache key
    std::vector<Ahead> m_ahead;  // a ring of searches made ahead, oldest at m_aheadFront
    std::size_t m_aheadFront = 0;
    std::size_t m_aheadCount = 0;
    std::int64_t m_nowSecond = -1;
    std::string m_nowStamp;
};

// Gives the cached record when the file's date matches its slot, else reads the file (and adds
// it to the cache unless NoCache). The path is trimmed, and the record's Path is the trimmed
// path. Album carries " - NN" when the song has a track number. A file that is missing, a
// folder, or shorter than 132 bytes, and any failure while reading, give NonExistantSong().
SongInfo GetSongInfo(std::string_view path, SongLookup& lookup);

// GetSongInfo for a walk or a list, the record lent rather than given: it lives in `lookup`,
// whose memory it reuses, and holds until the lookup's next song. `prefetched` stands in for the
// file's status (and bytes) when a read-ahead took them.
const SongInfo& LendSongInfo(std::string_view path, SongLookup& lookup,
                             const PrefetchedBytes* prefetched = nullptr);

}  // namespace jk
