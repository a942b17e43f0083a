#include "catalogue/CacheSaveSteps.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <iterator>
#include <string>
#include <vector>

#include "CatalogueTestSupport.h"
#include "catalogue/SongCache.h"
#include "catalogue/VBaseFile.h"
#include "support/CacheRecords.h"
#include "support/TempFolder.h"

namespace jk {
namespace {

using test::ReadBytes;
using test::TempFolder;

// `count` records in key order; every third has a track, so the Album suffix is put on.
std::vector<SongInfo> Songs(int count, bool withTracks) {
    std::vector<SongInfo> songs;
    for (int i = 0; i < count; ++i) {
        char name[32];
        std::snprintf(name, sizeof name, "song %05d.mp3", i);
        SongInfo song;
        song.Title = "Title " + std::to_string(i);
        song.Album = i % 5 == 0 ? "" : "Album " + std::to_string(i % 7) + "  ";
        song.Path = name;
        song.Date = "20240101000000";
        song.LastUsed = "20240601120000";
        song.Track = static_cast<std::int16_t>(withTracks && i % 3 == 0 ? 1 + i % 40 : 0);
        songs.push_back(song);
    }
    return songs;
}

// Steps of no time at all, so that the save takes as many steps as it can.
void SaveInSteps(CacheSaveSteps& save) {
    const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!save.Step(std::chrono::steady_clock::duration::zero())) {
        if (std::chrono::steady_clock::now() > giveUp) {
            ADD_FAILURE() << "the save does not end";
            break;
        }
    }
}

TEST(CacheSaveSteps, WritesWhatSaveCacheWritesAndSuffixesTheCacheAlike) {
    for (const int count : {0, 1, 255, 256, 257, 3000}) {
        SCOPED_TRACE(count);
        TempFolder steps;
        TempFolder whole;
        SongCache stepped = test::CacheOf(Songs(count, true));
        SongCache reference = test::CacheOf(Songs(count, true));
        {
            CacheSaveSteps save(stepped, steps.Path());
            SaveInSteps(save);
            ASSERT_TRUE(save.Done());
            EXPECT_TRUE(save.Result().ok) << save.Result().error;
        }
        ASSERT_TRUE(SaveCache(reference, whole.Path()).ok);
        EXPECT_EQ(ReadBytes(steps.File("cache.dat")), ReadBytes(whole.File("cache.dat")));
        for (std::int64_t i = 1; i <= reference.UpperBound(); ++i) {
            ASSERT_EQ(stepped.Record(i).Album, reference.Record(i).Album) << i;
        }
        // Nothing but the file is left in the folder.
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(steps.Path()),
                                std::filesystem::directory_iterator()),
                  1);
    }
}

TEST(CacheSaveSteps, ACacheChangedBetweenStepsIsSavedWholeAsItNowStands) {
    TempFolder steps;
    TempFolder whole;
    SongCache stepped = test::CacheOf(Songs(1000, false));
    SongCache reference = test::CacheOf(Songs(1000, false));
    SongInfo added;
    added.Title = "Added";
    added.Path = "/music/aaa first.mp3";
    {
        CacheSaveSteps save(stepped, steps.Path());
        ASSERT_FALSE(save.Step(std::chrono::steady_clock::duration::zero()));
        // A record comes in ahead of those written already.
        CacheAdd(stepped, added, "20240101000000", "20240601120000");
        SaveInSteps(save);
        ASSERT_TRUE(save.Done());
        EXPECT_TRUE(save.Result().ok);
    }
    CacheAdd(reference, added, "20240101000000", "20240601120000");
    ASSERT_TRUE(SaveCache(reference, whole.Path()).ok);
    EXPECT_EQ(ReadBytes(steps.File("cache.dat")), ReadBytes(whole.File("cache.dat")));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(steps.Path()),
                            std::filesystem::directory_iterator()),
              1);
}

}  // namespace
}  // namespace jk
