#include "catalogue/SortSongs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "CatalogueTestSupport.h"
#include "catalogue/SongCache.h"

namespace jk {
namespace {

SongInfo TitleArtist(std::string_view title, std::string_view artist) {
    SongInfo song;
    song.Title = title;
    song.Artist = artist;
    return song;
}

std::vector<std::string> ArtistsOf(const std::vector<SongInfo>& songs) {
    std::vector<std::string> artists;
    for (const SongInfo& song : songs) {
        artists.push_back(song.Artist);
    }
    return artists;
}

TEST(SortSongs, LeavesEqualKeysInTheOrderTheQuicksortGives) {
    // Worked by hand: the pivot is element 1 ("a"); the first swap brings the last "a" to the
    // front, so equal titles do not keep their first order.
    std::vector<SongInfo> songs = {TitleArtist("b", "1"), TitleArtist("a", "2"),
                                   TitleArtist("b", "3"), TitleArtist("a", "4")};
    SortSongs(kKeyTitle, songs);
    EXPECT_EQ(ArtistsOf(songs), (std::vector<std::string>{"4", "2", "1", "3"}));
}

TEST(SortSongs, SortsByTheSelectedFieldComparingBytes) {
    std::vector<SongInfo> songs = {TitleArtist("x", "b"), TitleArtist("y", "B"),
                                   TitleArtist("z", "\xC3\xA4"), TitleArtist("w", "a")};
    SortSongs(kKeyArtist, songs);
    EXPECT_EQ(ArtistsOf(songs), (std::vector<std::string>{"B", "a", "b", "\xC3\xA4"}));
}

TEST(SortSongs, AnUnknownKeyLeavesTheOrder) {
    std::vector<SongInfo> songs = {TitleArtist("b", "1"), TitleArtist("a", "2")};
    for (const int key : {0, 14, -1}) {
        SortSongs(key, songs);
        EXPECT_EQ(ArtistsOf(songs), (std::vector<std::string>{"1", "2"}));
    }
}

TEST(SortSongs, TheCacheAndAPlainArrayEndInTheSameOrder) {
    // Many equal keys, so that the order of equal records shows; short and long texts, so
    // that the pivot must survive the swaps of records that hold their text inline.
    std::mt19937 random(3);
    std::vector<SongInfo> songs;
    for (int i = 0; i < 5000; ++i) {
        SongInfo song;
        song.Path = "k" + std::to_string(random() % 300);
        if (i % 3 == 0) {
            song.Path += std::string(40, 'x');
        }
        song.Title = std::to_string(i);
        songs.push_back(song);
    }
    SongCache cache = test::CacheOf(songs);
    SortSongs(kKeyPath, songs);
    SortSongs(kKeyPath, cache);
    ASSERT_TRUE(
        std::is_sorted(songs.begin(), songs.end(),
                       [](const SongInfo& a, const SongInfo& b) { return a.Path < b.Path; }));
    std::vector<std::string> plainTitles;
    for (const SongInfo& song : songs) {
        plainTitles.push_back(song.Title);
    }
    EXPECT_EQ(test::FieldsOf(cache, kKeyTitle), plainTitles);
}

TEST(SortSongs, HandlesLargeOrderedAndReversedArrays) {
    std::vector<SongInfo> songs(200000);
    for (std::size_t i = 0; i < songs.size(); ++i) {
        songs[i].Size = std::to_string(1000000 + (songs.size() - i));
    }
    SortSongs(kKeySize, songs);
    EXPECT_TRUE(
        std::is_sorted(songs.begin(), songs.end(),
                       [](const SongInfo& a, const SongInfo& b) { return a.Size < b.Size; }));
    SortSongs(kKeySize, songs);
    EXPECT_EQ(songs.front().Size, "1000001");
}

}  // namespace
}  // namespace jk
