#include "catalogue/GetSongInfo.h"

#include <ctime>
#include <limits>
#include <utility>

#include "catalogue/SongCache.h"
#include "catalogue/SongFields.h"
#include "util/Text.h"
#include "util/TimeHelpers.h"

namespace jk {
namespace {

// The counters are 32-bit: counting past the top is a run-time failure, as it always was.
bool Count(std::int32_t& counter) {
    if (counter == std::numeric_limits<std::int32_t>::max()) {
        return false;
    }
    ++counter;
    return true;
}

// The record of `key` (-1 when none) and its slot.
std::int64_t SearchCache(SongCache& cache, std::string_view key, PackedSong*& slot) {
    slot = nullptr;
    return cache.UpperBound() > 0 ? cache.FindForUpdate(key, slot) : -1;
}

// The record of a slot whose date matched, in the form GetSongInfo gives: the full path, the
// time with its colon and the locale's text of the date (`dateText`). The stored key, stamp and
// time are not copied only to be replaced; the texts go into the record's own memory.
void TakeHit(const PackedSong& slot, const std::string& path, const std::string& dateText,
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
    song.Date = dateText;
}

void MarkNonExistant(SongInfo& song) {
    song = NonExistantSong();
}

// Searches made ahead and not yet taken stay this many at most; older ones are dropped.
constexpr std::size_t kMostAhead = 4096;

}  // namespace

SongLookup::SongLookup(SongCache& cache, LookupCounters counters, SongReadOptions options)
    : m_cache(cache), m_counters(counters), m_reader(std::move(options)) {}

SongLookup::~SongLookup() = default;

const std::string& SongLookup::Now() {
    if (now) {
        m_nowStamp = now();
        return m_nowStamp;
    }
    // The stamp changes once a second, and a walk asks for it for every file.
    const std::time_t second = std::time(nullptr);
    if (second != m_nowSecond) {
        m_nowSecond = second;
        m_nowStamp = FormatStamp14(static_cast<std::int64_t>(second));
    }
    return m_nowStamp;
}

std::string_view SongLookup::StampAhead(std::string_view path) {
    if (m_aheadCount == m_ahead.size()) {
        if (m_ahead.size() >= kMostAhead) {
            m_aheadFront = (m_aheadFront + 1) % m_ahead.size();
            --m_aheadCount;
        } else {
            // Grow the ring, oldest first.
            std::vector<Ahead> grown(std::max<std::size_t>(16, 2 * m_ahead.size()));
            for (std::size_t i = 0; i < m_aheadCount; ++i) {
                grown[i] = std::move(m_ahead[(m_aheadFront + i) % m_ahead.size()]);
            }
            m_ahead = std::move(grown);
            m_aheadFront = 0;
        }
    }
    Ahead& ahead = m_ahead[(m_aheadFront + m_aheadCount) % m_ahead.size()];
    ++m_aheadCount;
    CacheKeyInto(path, ahead.key);
    ahead.index = SearchCache(m_cache, ahead.key, ahead.slot);
    ahead.cacheChanges = m_cache.Changes();
    return ahead.slot != nullptr ? ahead.slot->Field(kKeyDate) : std::string_view();
}

// The search made ahead for m_key, when there is one: those made before it are dropped (their
// files were passed over). The search stands in for a new one while the cache stands still.
bool SongLookup::TakeAhead(std::int64_t& index, PackedSong*& slot) {
    for (std::size_t i = 0; i < m_aheadCount; ++i) {
        const Ahead& ahead = m_ahead[(m_aheadFront + i) % m_ahead.size()];
        if (ahead.key != m_key) {
            continue;
        }
        const bool current = ahead.cacheChanges == m_cache.Changes();
        index = ahead.index;
        slot = ahead.slot;
        m_aheadFront = (m_aheadFront + i + 1) % m_ahead.size();
        m_aheadCount -= i + 1;
        return current;
    }
    return false;
}

// Reads the file into the record and adds it under m_key.
void SongLookup::ReadAndAdd(const FileAtHand& file) {
    m_reader.ReadInto(m_path, file, m_song);
    if (!noCache && !IsNonExistant(m_song)) {
        const std::string& fileStamp = m_reader.Dates().Stamp(file.status.modifiedSeconds);
        CacheAddUnderKey(m_cache, m_song, m_key, fileStamp, Now(), Options().exactTimes);
    }
}

void SongLookup::LookUp(std::string_view path, const PrefetchedBytes* prefetched) {
    m_path.assign(Trim(path));
    CacheKeyInto(m_path, m_key);
    // The key needs no file system call, so the search comes first: a hit then costs one stat
    // (for the date), and a miss opens the file and takes its status from the open file, one
    // path lookup for both. The search changes nothing, so the counting order stays.
    std::int64_t index = -1;
    PackedSong* slot = nullptr;
    if (!TakeAhead(index, slot)) {
        index = SearchCache(m_cache, m_key, slot);
    }
    ReadFile file;
    FileStatus status;
    if (prefetched != nullptr) {
        status = prefetched->status;
    } else if (index == -1) {
        file = ReadFile(m_path);
        // A file that can't be opened may still exist (no permission): it counts as a lookup.
        status = file.IsOpen() ? file.Status() : StatPath(m_path);
    } else {
        status = StatPath(m_path);
    }
    // A folder named like a song is no song.
    if (!status.exists || !status.isRegular || status.size < kSmallestSongFile ||
        !Count(m_counters.totalCacheHits)) {
        MarkNonExistant(m_song);
        return;
    }
    if (index == -1) {
        ReadAndAdd(FileAtHand(status, prefetched, &file));
    } else if (!Count(m_counters.cacheHits)) {
        // A stale slot counts as a hit too: the count comes before the date test.
        MarkNonExistant(m_song);
        return;
    } else if (slot != nullptr &&
               slot->Field(kKeyDate) == m_reader.Dates().Stamp(status.modifiedSeconds)) {
        // (The slot is null only for index 0, the blank slot, whose empty date never matches.)
        // The song shows the LastUsed the slot had before this hit.
        TakeHit(*slot, m_path, m_reader.Dates().LocaleText(status.modifiedSeconds),
                Options().exactTimes, m_song);
        slot->SetField(kKeyLastUsed, Now());
    } else {
        // The stale slot stays; optimising the cache removes it later.
        ReadAndAdd(FileAtHand(status, prefetched));
    }
    if (!IsNonExistant(m_song)) {
        ApplyTrackSuffix(m_song);
    }
}

SongInfo GetSongInfo(std::string_view path, SongLookup& lookup) {
    lookup.LookUp(path, nullptr);
    return std::move(lookup.m_song);
}

const SongInfo& LendSongInfo(std::string_view path, SongLookup& lookup,
                             const PrefetchedBytes* prefetched) {
    lookup.LookUp(path, prefetched);
    return lookup.m_song;
}

}  // namespace jk
