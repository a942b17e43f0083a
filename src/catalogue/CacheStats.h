#pragma once

// The texts of the Cache Performance window, computed without it.

#include <cstdint>
#include <string>
#include <string_view>

namespace jk {

inline constexpr std::string_view kHitAttemptsLabel = "Hit attempts:";
inline constexpr std::string_view kHitsLabel = "Hits:";
inline constexpr std::string_view kMissesLabel = "Misses:";
inline constexpr std::string_view kSuccessRateLabel = "Success rate:";
inline constexpr std::string_view kCacheSizeLabel = "Cache size:";

inline constexpr std::string_view kOptimizeCaption = "Optimize";
inline constexpr std::string_view kFlushCaption = "Flush";
inline constexpr std::string_view kResetStatisticsCaption = "Reset statistics";
inline constexpr std::string_view kCloseCaption = "Close";

inline constexpr std::string_view kOptimizeHint =
    "Feeling kinda sluggish?  Try removing duplicates and expired cache entries.";
inline constexpr std::string_view kFlushHint = "Want a clean slate?  When all else fails: flush!";

inline constexpr std::string_view kVerifyTitle = "Verify";
inline constexpr std::string_view kFlushQuestion = "Are you sure you want to flush the cache?";
inline constexpr std::string_view kResetQuestion = "Are you sure you want to reset the statistics?";

struct CacheStatsTexts {
    std::string hitAttempts;
    std::string hits;
    std::string misses;
    std::string successRate;
    std::string cacheSize;
};

// "##0.00%" of hits per attempt, "0.00%" with no attempts.
std::string SuccessRateText(std::int32_t totalCacheHits, std::int32_t cacheHits);
// "None" for a limit of 0 or less; "count / limit (pp.p%)" below 2501, the per cent in the
// "#0#.0" form (at least two integer digits); otherwise "count / Infinity".
std::string CacheSizeText(std::int64_t count, std::int32_t limit);

CacheStatsTexts MakeCacheStatsTexts(std::int32_t totalCacheHits, std::int32_t cacheHits,
                                    std::int64_t cacheCount, std::int32_t cacheLimit);

// A number with `decimals` digits behind the point and at least `minIntegerDigits` before it,
// rounded half away from zero on its decimal digits, as the language's Format does.
std::string FormatFixed(double value, int decimals, int minIntegerDigits);

}  // namespace jk
