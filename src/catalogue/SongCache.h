#pragma once

// The song cache: one record for each file ever read, kept sorted by the lower-cased bare file
// name, so that a listing costs one binary search and one look at the file's date. Records are
// held in a compact form; they are copied out as SongInfo.
//
// Indices are 1-based, as the record arrays of the program are: 0 is never a record, and an
// upper bound of 0 means empty. Index 0 reads as a blank record (the searches may probe it).
//
// A stored record differs from one read from disk in four fields: Path is the lower-cased bare
// name (the key), Date the file's "yyyymmddhhnnss" stamp, Time "MMSS" without the colon, and
// LastUsed the stamp of the last add or hit.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/PackedSong.h"
#include "metadata/SongInfo.h"

namespace jk {

// LastUsed of a record condemned by OptimizeCache.
inline constexpr std::string_view kCondemnedStamp = "99999999999999";

// The first bytes of a key as big-endian numbers, held beside each record so that most
// comparisons need not reach the record's own block. File names often share their first 16
// bytes ("01 - The ..."), so 24 are held.
inline constexpr std::size_t kKeyPrefixWords = 3;
using KeyPrefix = std::array<std::uint64_t, kKeyPrefixWords>;

// A key made ready for many comparisons: its prefix worked out once.
class CacheKey {
public:
    explicit CacheKey(std::string_view key);
    std::string_view Text() const { return m_text; }

private:
    friend class SongCache;
    std::string_view m_text;
    KeyPrefix m_prefix{};
};

class SongCache {
public:
    SongCache() = default;
    SongCache(SongCache&&) noexcept = default;
    SongCache& operator=(SongCache&& other) noexcept;
    SongCache(const SongCache&) = delete;
    SongCache& operator=(const SongCache&) = delete;

    // The number of records (the upper bound).
    std::int64_t UpperBound() const { return m_count; }
    // Moves on whenever records may have moved or their keys changed: a record found while it
    // stands still is still the one a search would find, at the same index.
    std::uint64_t Changes() const { return m_changes; }

    // A copy of record `index` (1..UpperBound) in the stored form.
    SongInfo Record(std::int64_t index) const;
    std::string_view KeyOf(std::int64_t index) const;             // the stored Path
    std::string_view DateOf(std::int64_t index) const;            // the stored 14-digit stamp
    std::string_view FieldOf(std::int64_t index, int key) const;  // key 1..13
    std::int16_t TrackOf(std::int64_t index) const;
    const PackedSong& Slot(std::int64_t index) const;
    // Compares `key` with the key of record `index` byte by byte: below 0 when `key` sorts
    // first, 0 when equal, above 0 when it sorts after.
    int CompareKeyAt(std::int64_t index, const CacheKey& key) const;
    // The binary search of CacheFind and CacheInsertPoint between `low` and `high`: the index
    // found (-1 when none) or, with `lastProbed`, the last index probed (0 when none).
    std::int64_t Search(const CacheKey& key, std::int64_t low, std::int64_t high,
                        bool lastProbed) const;
    // CacheFind that also hands out the record found (null when none), so that a hit reads its
    // slot and stamps its LastUsed without seeking it again. The pointer is good until the
    // cache next changes; the record's key must not be changed through it.
    std::int64_t FindForUpdate(std::string_view key, PackedSong*& record);
    // Where CacheAdd puts a record of `key`: CacheInsertPoint, one further when the key sorts
    // at or after the record there.
    std::int64_t InsertIndex(std::string_view key) const;

    void SetLastUsed(std::int64_t index, std::string_view stamp);
    void SetField(std::int64_t index, int key, std::string_view text);
    void Clear();

    // Puts `record` at `index` (1..UpperBound + 1); that record and those above move up one.
    void Insert(std::int64_t index, PackedSong record);

    // Work on the whole array (sorting, compaction, loading) goes through a flat vector:
    // element i of it is record i + 1.
    std::vector<PackedSong> TakeAll();
    void Assign(std::vector<PackedSong> records);

    // Calls f(index, record) for every record in order.
    template <class F>
    void ForEach(F&& f) const {
        std::int64_t index = 0;
        for (const std::vector<Entry>& chunk : m_chunks) {
            for (const Entry& entry : chunk) {
                f(++index, entry.record);
            }
        }
    }
    // The same where f may change the record.
    template <class F>
    void ForEach(F&& f) {
        std::int64_t index = 0;
        ++m_changes;
        for (std::vector<Entry>& chunk : m_chunks) {
            for (Entry& entry : chunk) {
                f(++index, entry.record);
                entry.SetPrefix();
            }
        }
    }

private:
    struct Entry {
        KeyPrefix prefix{};  // of the record's key, as in CacheKey
        PackedSong record;
        void SetPrefix();
    };
    // Records live in chunks of a few hundred, so that an insert moves one chunk, not the
    // whole cache; m_starts[c] is the 0-based position of chunk c's first record.
    struct Place {
        std::size_t chunk;
        std::size_t offset;
    };
    Place Locate(std::int64_t position) const;
    // The binary search between `low` and `high`: the last index probed (0 when none), its
    // comparison with the key and its entry (null for index 0).
    struct Probed {
        std::int64_t index = 0;
        int order = 0;
        const Entry* entry = nullptr;
        bool any = false;  // false when the range was empty
    };
    Probed SearchEntries(const CacheKey& key, std::int64_t low, std::int64_t high) const;
    static int Compare(const Entry* entry, const CacheKey& key);
    const Entry* Find(std::int64_t index) const;
    Entry* Find(std::int64_t index);

    std::vector<std::vector<Entry>> m_chunks;
    std::vector<std::int64_t> m_starts;
    std::int64_t m_count = 0;
    std::uint64_t m_changes = 0;
};

// Binary search for a key (the lower-cased bare name); the 1-based index, or -1. The middle of
// low and high is rounded to the nearest index, ties to even; keys compare byte by byte.
std::int64_t CacheFind(const SongCache& cache, std::string_view key);

// The same search with high starting one short of the top, so that the last record is never
// probed; gives the last index probed, 0 for an empty cache.
std::int64_t CacheInsertPoint(const SongCache& cache, std::string_view key);

// Inserts a record read from disk. `fileStamp` is the file's date as "yyyymmddhhnnss" and `now`
// the "yyyymmddhhnnss" stamp of this moment; the record's Time is in "MM:SS" form and Path the
// full path. With `exactTimes` (the ExactTimes extension) every minute digit is kept in Time.
void CacheAdd(SongCache& cache, const SongInfo& song, std::string_view fileStamp,
              std::string_view now, bool exactTimes = true);
// The same for a caller that has the key at hand: `key` must be CacheKeyOf(song.Path).
void CacheAddUnderKey(SongCache& cache, const SongInfo& song, std::string_view key,
                      std::string_view fileStamp, std::string_view now, bool exactTimes = true);

// The cache key of a path: its bare name in lower case.
std::string CacheKeyOf(std::string_view path);
// The same into `key`, whose memory is reused (a listing makes one key per file).
void CacheKeyInto(std::string_view path, std::string& key);

// "MM:SS" to the stored "MMSS" (its first and last two characters; with `exactTimes` all the
// minute digits of a longer text), and back ("MM" ":" "SS"; with `exactTimes` every digit before
// the last two of a longer text is a minute digit).
std::string StoredTime(std::string_view shown, bool exactTimes);
std::string ShownTime(std::string_view stored, bool exactTimes);

}  // namespace jk
