#pragma once

// Song caches built from records in a line, and their keys read back, for the tests of the
// cache and of what uses it.

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "catalogue/PackedSong.h"
#include "catalogue/SongCache.h"
#include "metadata/SongInfo.h"

namespace jk::test {

// A cache holding the records in the order given (no sorting).
inline SongCache CacheOf(const std::vector<SongInfo>& songs) {
    std::vector<PackedSong> records;
    records.reserve(songs.size());
    for (const SongInfo& song : songs) {
        records.emplace_back(song);
    }
    SongCache cache;
    cache.Assign(std::move(records));
    return cache;
}

inline std::vector<std::string> KeysOf(const SongCache& cache) {
    std::vector<std::string> keys;
    for (std::int64_t i = 1; i <= cache.UpperBound(); ++i) {
        keys.emplace_back(cache.KeyOf(i));
    }
    return keys;
}

}  // namespace jk::test
