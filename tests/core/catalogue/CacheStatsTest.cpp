#include "catalogue/CacheStats.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace jk {
namespace {

TEST(CacheStats, SuccessRateIsAPercentWithTwoDecimals) {
    struct Case {
        std::int32_t attempts;
        std::int32_t hits;
        std::string_view text;
    };
    for (const Case& c : std::vector<Case>{{0, 0, "0.00%"},
                                           {8, 1, "12.50%"},
                                           {32, 1, "3.13%"},
                                           {3, 2, "66.67%"},
                                           {10, 10, "100.00%"},
                                           {1000000, 1, "0.00%"},
                                           {200000, 1, "0.00%"},
                                           {2147483647, 2147483647, "100.00%"}}) {
        EXPECT_EQ(SuccessRateText(c.attempts, c.hits), c.text) << c.attempts << "/" << c.hits;
    }
}

TEST(CacheStats, CacheSizeShowsTheFillingBelow2501) {
    struct Case {
        std::int64_t count;
        std::int32_t limit;
        std::string_view text;
    };
    for (const Case& c : std::vector<Case>{{10, 0, "None"},
                                           {10, -5, "None"},
                                           {0, 50, "0 / 50 (00.0%)"},
                                           {1, 50, "1 / 50 (02.0%)"},
                                           {25, 50, "25 / 50 (50.0%)"},
                                           {1, 3, "1 / 3 (33.3%)"},
                                           {2, 3, "2 / 3 (66.7%)"},
                                           {50, 50, "50 / 50 (100.0%)"},
                                           {2500, 2500, "2500 / 2500 (100.0%)"},
                                           {7, 2501, "7 / Infinity"},
                                           {123, 1000000, "123 / Infinity"}}) {
        EXPECT_EQ(CacheSizeText(c.count, c.limit), c.text) << c.count << "/" << c.limit;
    }
}

TEST(CacheStats, TheWindowTextsTogether) {
    const CacheStatsTexts texts = MakeCacheStatsTexts(40, 30, 250, 500);
    EXPECT_EQ(texts.hitAttempts, "40");
    EXPECT_EQ(texts.hits, "30");
    EXPECT_EQ(texts.misses, "10");
    EXPECT_EQ(texts.successRate, "75.00%");
    EXPECT_EQ(texts.cacheSize, "250 / 500 (50.0%)");
}

TEST(FormatFixed, RoundsHalfAwayFromZeroOnTheDecimalDigits) {
    EXPECT_EQ(FormatFixed(2.675, 2, 1), "2.68");
    EXPECT_EQ(FormatFixed(0.125, 2, 1), "0.13");
    EXPECT_EQ(FormatFixed(9.995, 2, 1), "10.00");
    EXPECT_EQ(FormatFixed(0.04, 1, 2), "00.0");
    EXPECT_EQ(FormatFixed(-1.25, 1, 1), "-1.3");
    EXPECT_EQ(FormatFixed(123456.0, 0, 1), "123456");
}

}  // namespace
}  // namespace jk
