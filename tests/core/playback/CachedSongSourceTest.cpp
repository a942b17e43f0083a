#include "playback/CachedSongSource.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <vector>

#include <gtest/gtest.h>

#include "PlaybackTestSupport.h"
#include "catalogue/GetSongInfo.h"
#include "catalogue/SongCache.h"
#include "playback/ListReading.h"
#include "util/PathHelpers.h"

namespace jk {
namespace {

using test::ScratchFolder;
using test::WriteBytes;

TEST(CachedSongSource, ASecondOpeningFindsEverySongInTheCache) {
    ScratchFolder dir;
    std::filesystem::create_directories(dir / "music");
    std::string list;
    int songs = 0;
    for (const auto& entry : std::filesystem::directory_iterator(JUKARRA_TEST_DATA "/songs")) {
        if (entry.path().extension() != ".mp3") {
            continue;
        }
        std::filesystem::copy_file(entry.path(),
                                   dir / ("music/" + entry.path().filename().string()),
                                   std::filesystem::copy_options::overwrite_existing);
        list += "../music/" + entry.path().filename().string() + "\r\n";
        ++songs;
    }
    ASSERT_GT(songs, 0);
    list += "../music/missing.mp3\r\n";
    WriteBytes(dir / "lists/all.m3u", list);

    SongCache cache;
    std::int32_t lookups = 0;
    std::int32_t hits = 0;
    SongLookup lookup(cache, {lookups, hits});
    lookup.now = [] { return std::string("20240101120000"); };
    const SongSource source = CachedSongSource(lookup);

    RowList rows;
    ASSERT_TRUE(OpenListNow(dir / "lists/all.m3u", rows, source, 0).Ok());
    ASSERT_EQ(rows.size(), static_cast<std::size_t>(songs + 1));
    EXPECT_EQ(rows.back().Get(Column::Title), "* missing");
    EXPECT_EQ(rows.front().Get(Column::Filename),
              dir / ("music/" + std::string(BareName(rows.front().Get(Column::Filename)))));
    for (std::size_t i = 0; i + 1 < rows.size(); ++i) {
        EXPECT_FALSE(rows[i].Get(Column::Title).starts_with("* ")) << i;
    }

    const std::int32_t lookupsBefore = lookups;
    const std::int32_t hitsBefore = hits;
    RowList again;
    ASSERT_TRUE(OpenListNow(dir / "lists/all.m3u", again, source, 0).Ok());
    EXPECT_EQ(lookups - lookupsBefore, songs);
    // The cache files a new key one short of the end until it is optimised, so the key filed
    // last of all may be missed once.
    EXPECT_GE(hits - hitsBefore, songs - 1);
    EXPECT_EQ(again, rows);
}

// A list whose songs share their names across folders, each copy of another date: every copy
// after the first finds the slot of another and is read and added, which moves the records the
// read-ahead found for the lines behind it. Read through the read-ahead, the list must give what
// GetSongInfo gives one line after another: the same rows, counts and cache.
TEST(CachedSongSource, ReadsAsLookupsOneByOneWhenNamesRepeatAcrossFolders) {
    ScratchFolder dir;
    std::vector<std::filesystem::path> songs;
    for (const auto& entry : std::filesystem::directory_iterator(JUKARRA_TEST_DATA "/songs")) {
        if (entry.path().extension() == ".mp3") {
            songs.push_back(entry.path());
        }
    }
    ASSERT_GE(songs.size(), 2u);
    std::sort(songs.begin(), songs.end());
    std::string list;
    const auto line = [&list, &dir](const std::string& path) { list += dir / path + "\r\n"; };
    for (int copy = 0; copy < 4; ++copy) {
        const std::string folder = "copy" + std::to_string(copy);
        std::filesystem::create_directories(dir / folder);
        for (std::size_t i = 0; i < songs.size(); ++i) {
            const std::string path = folder + "/Song " + std::to_string(i) + ".mp3";
            std::filesystem::copy_file(songs[i], dir / path);
            const timespec times[2] = {{1700000000 + copy, 0}, {1700000000 + copy, 0}};
            ASSERT_EQ(::utimensat(AT_FDCWD, (dir / path).c_str(), times, 0), 0);
        }
    }
    for (int pass = 0; pass < 3; ++pass) {
        for (int copy = 0; copy < 4; ++copy) {
            for (std::size_t i = 0; i < songs.size(); ++i) {
                line("copy" + std::to_string((copy + pass) % 4) + "/Song " + std::to_string(i) +
                     ".mp3");
            }
            line("copy" + std::to_string(copy) + "/missing.mp3");
        }
    }
    WriteBytes(dir / "list.m3u", list);

    struct Reader {
        SongCache cache;
        std::int32_t lookups = 0;
        std::int32_t hits = 0;
        SongLookup lookup{cache, {lookups, hits}};
        Reader() {
            lookup.now = [] { return std::string("20240101120000"); };
        }
    };
    Reader ahead;
    Reader oneByOne;
    const SongSource readAhead = CachedSongSource(ahead.lookup);
    const SongSource plain = [&oneByOne](std::string_view path) {
        return GetSongInfo(path, oneByOne.lookup);
    };
    for (int opening = 0; opening < 2; ++opening) {
        RowList aheadRows;
        RowList plainRows;
        ASSERT_TRUE(OpenListNow(dir / "list.m3u", aheadRows, readAhead, 0).Ok());
        ASSERT_TRUE(OpenListNow(dir / "list.m3u", plainRows, plain, 0).Ok());
        EXPECT_EQ(aheadRows, plainRows) << opening;
        EXPECT_EQ(ahead.lookups, oneByOne.lookups) << opening;
        EXPECT_EQ(ahead.hits, oneByOne.hits) << opening;
        ASSERT_EQ(ahead.cache.UpperBound(), oneByOne.cache.UpperBound()) << opening;
        for (std::int64_t i = 1; i <= ahead.cache.UpperBound(); ++i) {
            EXPECT_EQ(ahead.cache.Record(i), oneByOne.cache.Record(i)) << opening << " " << i;
        }
    }
    // The copies of other dates were read again rather than taken from another's slot.
    EXPECT_GT(ahead.cache.UpperBound(), static_cast<std::int64_t>(songs.size()));
}

}  // namespace
}  // namespace jk
