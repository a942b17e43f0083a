#include "catalogue/CacheMaintenance.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "CatalogueTestSupport.h"
#include "catalogue/SongCache.h"

namespace jk {
namespace {

using test::CacheOf;
using test::FieldsOf;
using test::KeysOf;
using test::StoredSong;

constexpr std::string_view kNow = "20240610120000";
constexpr std::string_view kRecent = "20240610110000";

TEST(ExpiryDays, FollowsTheExpireMode) {
    const std::vector<std::pair<int, int>> table = {{0, 0},  {1, 3},  {2, 7},  {3, 21},
                                                    {4, 45}, {5, 90}, {9, 90}, {-1, 0}};
    for (const auto& [mode, days] : table) {
        EXPECT_EQ(ExpiryDays(mode), days) << mode;
    }
}

TEST(OptimizeCache, ExpiresRecordsUnusedForTheDaysOfTheMode) {
    // Mode 2 is seven days, 168 hours; the hours are those the clock turned over, so a record
    // used at 12:59:59 seven days ago has aged 168 hours at 12:00:00.
    struct Case {
        std::string_view lastUsed;
        bool kept;
    };
    for (const Case& c : std::vector<Case>{{"20240603120000", false},
                                           {"20240603125959", false},
                                           {"20240603130000", true},
                                           {"20240610115959", true},
                                           {"", false},
                                           {"garbage", false},
                                           {"20240231120000", false}}) {
        SongCache cache = CacheOf({StoredSong("a", c.lastUsed), StoredSong("z", kRecent)});
        OptimizeCache(cache, 2, kNow);
        EXPECT_EQ(cache.UpperBound(), c.kept ? 2 : 1) << c.lastUsed;
        EXPECT_EQ(cache.KeyOf(cache.UpperBound()), "z");
    }
}

TEST(OptimizeCache, ReadsTheYearOfAStampThroughTwoDigits) {
    // Years 30 to 99 of a century are read as 1930-1999, so a stamp of 2031 has long expired.
    SongCache cache = CacheOf({StoredSong("a", "20310101000000"), StoredSong("z", kRecent)});
    OptimizeCache(cache, 5, kNow);
    EXPECT_EQ(KeysOf(cache), (std::vector<std::string>{"z"}));
}

TEST(OptimizeCache, AStampMarkedWithNinesIsTheLastDayOf2015) {
    const auto keptAt = [](std::string_view now) {
        SongCache cache = CacheOf({StoredSong("a", "20999999000000"), StoredSong("z", now)});
        OptimizeCache(cache, 1, now);
        return cache.UpperBound() == 2;
    };
    EXPECT_TRUE(keptAt("20151231000000"));
    EXPECT_TRUE(keptAt("20160103220000"));   // 71 hours on
    EXPECT_FALSE(keptAt("20160103230000"));  // 72 hours on
}

TEST(OptimizeCache, NeverAgesTheLastRecordNorAOneRecordCache) {
    SongCache cache = CacheOf({StoredSong("a", kRecent), StoredSong("b", "19990101000000")});
    EXPECT_EQ(OptimizeCache(cache, 1, kNow), 0);
    EXPECT_EQ(KeysOf(cache), (std::vector<std::string>{"a", "b"}));

    SongCache one = CacheOf({StoredSong("a", "19990101000000")});
    EXPECT_EQ(OptimizeCache(one, 1, kNow), 0);
    EXPECT_EQ(one.UpperBound(), 1);
}

TEST(OptimizeCache, ModeZeroStillRemovesTheOlderOfTwoDuplicates) {
    SongCache cache = CacheOf({StoredSong("a", "20200101000000", "old"),
                               StoredSong("a", "20240101000000", "new"), StoredSong("b")});
    EXPECT_EQ(OptimizeCache(cache, 0, kNow), 1);
    EXPECT_EQ(FieldsOf(cache, kKeyTitle), (std::vector<std::string>{"new", ""}));
}

TEST(OptimizeCache, OnATieTheSecondOfTwoDuplicatesGoes) {
    // Two equal keys come out of the sort swapped, so "second" is the first after it.
    SongCache cache =
        CacheOf({StoredSong("a", kRecent, "first"), StoredSong("a", kRecent, "second")});
    EXPECT_EQ(OptimizeCache(cache, 0, kNow), 1);
    EXPECT_EQ(FieldsOf(cache, kKeyTitle), (std::vector<std::string>{"second"}));
}

TEST(OptimizeCache, ACondemnedRecordLooksNewestToItsNextPartner) {
    // Three of a kind: the sort leaves them C(2), B(1), A(3). B goes against C; then the mark in
    // B's LastUsed outranks A, so A goes too, though it was the newest.
    const std::vector<SongInfo> three = {StoredSong("a", "20240609000000", "A"),
                                         StoredSong("a", "20240607000000", "B"),
                                         StoredSong("a", "20240608000000", "C")};
    SongCache noExpiry = CacheOf(three);
    EXPECT_EQ(OptimizeCache(noExpiry, 0, kNow), 2);
    EXPECT_EQ(FieldsOf(noExpiry, kKeyTitle), (std::vector<std::string>{"C"}));

    // With expiry on, the condemned B tests as expired, which skips its duplicate test.
    SongCache withExpiry = CacheOf(three);
    EXPECT_EQ(OptimizeCache(withExpiry, 2, kNow), 1);
    EXPECT_EQ(FieldsOf(withExpiry, kKeyTitle), (std::vector<std::string>{"C", "A"}));
}

TEST(OptimizeCache, SortsByKeyAndKeepsSurvivorsInOrder) {
    SongCache cache =
        CacheOf({StoredSong("d", kRecent), StoredSong("b", "20000101000000"),
                 StoredSong("a", kRecent), StoredSong("c", kRecent), StoredSong("e", kRecent)});
    EXPECT_EQ(OptimizeCache(cache, 3, kNow), 1);
    EXPECT_EQ(KeysOf(cache), (std::vector<std::string>{"a", "c", "d", "e"}));
}

TEST(OptimizeCache, BlankRecordsOfADamagedLoadCollapse) {
    SongCache cache = CacheOf({SongInfo(), SongInfo(), SongInfo(), StoredSong("a", kRecent)});
    OptimizeCache(cache, 0, kNow);
    EXPECT_EQ(KeysOf(cache), (std::vector<std::string>{"", "a"}));
}

TEST(TrimCache, KeepsTheMostRecentlyUsedSortedByKey) {
    const auto make = [] {
        return CacheOf({StoredSong("d", "20240104000000"), StoredSong("a", "20240101000000"),
                        StoredSong("c", "20240105000000"), StoredSong("b", "20240102000000")});
    };
    SongCache cache = make();
    TrimCache(cache, 2, 0);
    EXPECT_EQ(KeysOf(cache), (std::vector<std::string>{"c", "d"}));

    SongCache frozen = make();
    TrimCache(frozen, 2, 1);
    EXPECT_EQ(frozen.UpperBound(), 4);

    SongCache roomy = make();
    TrimCache(roomy, 4, 0);
    EXPECT_EQ(KeysOf(roomy), (std::vector<std::string>{"d", "a", "c", "b"}));  // untouched

    SongCache none = make();
    TrimCache(none, 0, 0);
    EXPECT_EQ(none.UpperBound(), 0);
}

}  // namespace
}  // namespace jk
