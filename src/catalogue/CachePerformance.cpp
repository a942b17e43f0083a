#include "catalogue/CachePerformance.h"

#include "catalogue/CacheMaintenance.h"
#include "catalogue/SongCache.h"

namespace jk {

CachePerformance::CachePerformance(SongCache& cache, std::int32_t& totalCacheHits,
                                   std::int32_t& cacheHits, std::int32_t cacheLimit, int expireMode)
    : m_cache(cache),
      m_totalCacheHits(totalCacheHits),
      m_cacheHits(cacheHits),
      m_cacheLimit(cacheLimit),
      m_expireMode(expireMode) {}

CacheStatsTexts CachePerformance::Texts() const {
    return MakeCacheStatsTexts(m_totalCacheHits, m_cacheHits, m_cache.UpperBound(), m_cacheLimit);
}

std::int64_t CachePerformance::Optimize() {
    return OptimizeCache(m_cache, m_expireMode);
}

void CachePerformance::Flush() {
    m_cache.Clear();
}

void CachePerformance::ResetStatistics() {
    m_totalCacheHits = 0;
    m_cacheHits = 0;
}

}  // namespace jk
