#pragma once

// The song cache: one record for each file ever read, kept sorted by the lower-cased bare file
// name, so that a listing costs one binary search and one look at the file's date. Records are
// held in a compact form; they are copied out as SongInfo.
//
// Indices are 1-based, as the record arrays of the program are: 0 is never a record, and an
// upper bound of 0 means empty.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "metadata/SongInfo.h"

namespace jk {

class SongCache {
public:
    // The number of records (the upper bound).
    std::int64_t UpperBound() const;

    // A copy of record `index` (1..UpperBound) in the stored form.
    SongInfo Record(std::int64_t index) const;
    std::string_view KeyOf(std::int64_t index) const;    // the stored Path
    std::string_view DateOf(std::int64_t index) const;   // the stored 14-digit stamp
    void SetLastUsed(std::int64_t index, std::string_view stamp);
    void Clear();

    // ... the rest of the interface: CacheFind, CacheInsertPoint, CacheAdd, OptimizeCache,
    // TrimCache, SortSongs, LoadVBase/SaveVBase live beside this class.
};

// Binary search for a key (the lower-cased bare name); the 1-based index, or -1.
std::int64_t CacheFind(const SongCache& cache, std::string_view key);

// Inserts a record read from disk. `fileStamp` is the file's date as "yyyymmddhhnnss" and `now`
// the "yyyymmddhhnnss" stamp of this moment; the record's Time is in "MM:SS" form.
void CacheAdd(SongCache& cache, const SongInfo& song, std::string_view fileStamp,
              std::string_view now);

}  // namespace jk
