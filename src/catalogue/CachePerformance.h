#pragma once

// The Cache Performance window without the window: its figures over the song cache and the two
// counters, and its commands.

#include <cstdint>

#include "catalogue/CacheStats.h"

namespace jk {

class SongCache;

class CachePerformance {
public:
    // The counters are the settings' TotalCacheHits and CacheHits, which the commands change;
    // the limit is CacheLimit and `expireMode` the ExpireMode that Optimize applies.
    CachePerformance(SongCache& cache, std::int32_t& totalCacheHits, std::int32_t& cacheHits,
                     std::int32_t cacheLimit, int expireMode);

    // The labels' values as they stand now.
    CacheStatsTexts Texts() const;

    // "Optimize": expired records and the older of two of one name removed; the number removed.
    std::int64_t Optimize();
    // "Flush", once the user said Yes: the cache emptied.
    void Flush();
    // "Reset statistics", once the user said Yes: both counters at 0.
    void ResetStatistics();

    const SongCache& Cache() const { return m_cache; }

private:
    SongCache& m_cache;
    std::int32_t& m_totalCacheHits;
    std::int32_t& m_cacheHits;
    std::int32_t m_cacheLimit;
    int m_expireMode;
};

}  // namespace jk
