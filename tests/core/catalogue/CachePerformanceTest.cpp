#include "catalogue/CachePerformance.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "catalogue/CacheViewerText.h"
#include "catalogue/SongCache.h"
#include "support/CacheRecords.h"

namespace jk {
namespace {

SongInfo Record(std::string key, std::string lastUsed) {
    SongInfo song;
    song.Title = "Title of " + key;
    song.Time = "0312";
    song.Date = "20240229235901";
    song.Path = std::move(key);
    song.LastUsed = std::move(lastUsed);
    return song;
}

TEST(CachePerformance, TheLabelsFollowTheCounters) {
    SongCache cache = test::CacheOf({Record("a.mp3", "20240101000000")});
    std::int32_t attempts = 0;
    std::int32_t hits = 0;
    CachePerformance performance(cache, attempts, hits, 50, 0);
    CacheStatsTexts texts = performance.Texts();
    EXPECT_EQ(texts.hitAttempts, "0");
    EXPECT_EQ(texts.misses, "0");
    EXPECT_EQ(texts.successRate, "0.00%");
    EXPECT_EQ(texts.cacheSize, "1 / 50 (02.0%)");

    attempts = 8;
    hits = 6;
    texts = performance.Texts();
    EXPECT_EQ(texts.hits, "6");
    EXPECT_EQ(texts.misses, "2");
    EXPECT_EQ(texts.successRate, "75.00%");
}

TEST(CachePerformance, CommandsChangeTheCacheAndTheCounters) {
    SongCache cache =
        test::CacheOf({Record("a.mp3", "20240101000000"), Record("a.mp3", "20240301000000"),
                       Record("b.mp3", "20240101000000")});
    std::int32_t attempts = 10;
    std::int32_t hits = 4;
    CachePerformance performance(cache, attempts, hits, 1000000, 0);
    EXPECT_EQ(performance.Texts().cacheSize, "3 / Infinity");

    EXPECT_EQ(performance.Optimize(), 1);  // the older "a.mp3"; no expiry with ExpireMode 0
    EXPECT_EQ(test::KeysOf(cache), (std::vector<std::string>{"a.mp3", "b.mp3"}));
    EXPECT_EQ(cache.Record(1).LastUsed, "20240301000000");

    performance.ResetStatistics();
    EXPECT_EQ(attempts, 0);
    EXPECT_EQ(hits, 0);
    EXPECT_EQ(cache.UpperBound(), 2);

    performance.Flush();
    EXPECT_EQ(cache.UpperBound(), 0);
    EXPECT_EQ(performance.Texts().cacheSize, "0 / Infinity");
}

TEST(CacheViewerText, ShowsEachFieldWithTimesAndStampsReadable) {
    SongCache cache = test::CacheOf({Record("a.mp3", std::string(kCondemnedStamp))});
    EXPECT_EQ(CacheViewerHeaders()[0], "Title");
    EXPECT_EQ(CacheViewerHeaders()[7], "Filename");
    EXPECT_EQ(CacheViewerHeaders()[12], "Last used");
    EXPECT_EQ(CacheViewerText(cache, 1, 0), "Title of a.mp3");
    EXPECT_EQ(CacheViewerText(cache, 1, 5), "03:12");
    EXPECT_EQ(CacheViewerText(cache, 1, 7), "a.mp3");
    EXPECT_EQ(CacheViewerText(cache, 1, 11), "2024-02-29 23:59:01");
    EXPECT_EQ(CacheViewerText(cache, 1, 12), kCondemnedStamp);
    EXPECT_EQ(CacheViewerText(cache, 1, 3), "");
    // Outside the cache or its columns: nothing.
    EXPECT_EQ(CacheViewerText(cache, 0, 0), "");
    EXPECT_EQ(CacheViewerText(cache, 2, 0), "");
    EXPECT_EQ(CacheViewerText(cache, 1, 13), "");
    EXPECT_EQ(CacheViewerText(cache, 1, -1), "");
}

}  // namespace
}  // namespace jk
