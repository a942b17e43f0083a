#include "playback/Shuffler.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "PlaybackTestSupport.h"

namespace jk {
namespace {

using test::RowAt;
using Paths = std::vector<std::string>;

SongInfo Song(std::string path, std::string artist = "") {
    SongInfo song;
    song.Title = "T " + path;
    song.Path = std::move(path);
    song.Artist = std::move(artist);
    return song;
}

Paths PathsOf(const std::vector<SongInfo>& songs) {
    Paths paths;
    for (const SongInfo& song : songs) {
        paths.push_back(song.Path);
    }
    return paths;
}

// A generator that hands out the given numbers in turn, over and over.
ShuffleRandom Stream(std::vector<double> values) {
    auto next = std::make_shared<std::size_t>(0);
    return ShuffleRandom(
        [values = std::move(values), next] { return values[(*next)++ % values.size()]; });
}

std::vector<SongInfo> Songs(std::size_t artists, std::size_t each) {
    std::vector<SongInfo> songs;
    for (std::size_t a = 0; a < artists; ++a) {
        for (std::size_t s = 0; s < each; ++s) {
            songs.push_back(
                Song(std::to_string(a) + "-" + std::to_string(s), "artist " + std::to_string(a)));
        }
    }
    return songs;
}

TEST(QuickShuffleRows, SwapsEachPlaceWithAPickFromItselfToTheEnd) {
    std::vector<SongInfo> rows = {Song("a"), Song("b"), Song("c"), Song("d")};
    ShuffleRandom random = Stream({0.5, 0.0, 0.99, 0.3});
    QuickShuffleRows(rows, random);
    // i=1 picks Int(4*0.5)+1 = 3, i=2 keeps 2, i=3 picks Int(2*0.99)+3 = 4, i=4 keeps 4.
    EXPECT_EQ(PathsOf(rows), (Paths{"c", "b", "d", "a"}));
    EXPECT_EQ(random.Next(), 0.5);  // four numbers taken
    EXPECT_FALSE(UseEnhancedShuffle(1));
    EXPECT_TRUE(UseEnhancedShuffle(0) && UseEnhancedShuffle(-1) && UseEnhancedShuffle(2));
}

TEST(Shuffler, BothAlgorithmsKeepEverySongExactlyOnce) {
    for (std::size_t n : {0u, 1u, 1000u}) {
        for (bool enhanced : {false, true}) {
            std::vector<SongInfo> rows = Songs(3, n);
            Paths expected = PathsOf(rows);
            ShuffleRandom random(n);
            enhanced ? EnhancedShuffleRows(rows, random) : QuickShuffleRows(rows, random);
            Paths after = PathsOf(rows);
            std::sort(after.begin(), after.end());
            std::sort(expected.begin(), expected.end());
            EXPECT_EQ(after, expected) << n;
            for (const SongInfo& song : rows) {
                EXPECT_EQ(song.Title, "T " + song.Path);  // fields travel together
            }
        }
    }
}

// With every number 0 the quick shuffle keeps the order and each enhanced pick is the song's
// own place, so the places the search chooses show plainly.
TEST(EnhancedShuffleRows, ChoosesPlacesAsTheRingSearchDoes) {
    const std::pair<std::vector<SongInfo>, Paths> cases[] = {
        // One song goes to place 1.
        {{Song("only", "X")}, {"only"}},
        // "y" has home 2, which would do, but the search begins behind it, at 3.
        {{Song("x", "X"), Song("y", "Y"), Song("z", "Z")}, {"x", "z", "y"}},
        // Songs of one artist find no place without a conflict and take home.
        {{Song("a", "X"), Song("b", "X"), Song("c", "X")}, {"a", "b", "c"}},
        // Artists are compared exactly: case and a trailing blank make another artist.
        {{Song("a", "Abba"), Song("b", "ABBA"), Song("c", "Q")}, {"a", "c", "b"}},
        {{Song("a", "Abba"), Song("b", "Abba "), Song("c", "Q")}, {"a", "c", "b"}},
        // An empty artist conflicts with free places, whose artist is empty.
        {{Song("a", "X"), Song("b", ""), Song("c", "Q")}, {"a", "b", "c"}},
        {{Song("a1", "A"), Song("a2", "A"), Song("b1", "B"), Song("b2", "B")},
         {"a1", "b1", "a2", "b2"}},
        // A record without a Filename leaves its place free and is written over; rows always
        // carry a path.
        {{Song("", "X"), Song("b", "Y")}, {"b", ""}},
    };
    for (auto [rows, expected] : cases) {
        ShuffleRandom random = Stream({0.0});
        EnhancedShuffleRows(rows, random);
        EXPECT_EQ(PathsOf(rows), expected);
    }
    std::vector<SongInfo> two = {Song("a", "X"), Song("b", "X")};
    ShuffleRandom random = Stream({0.0, 0.0, 0.9, 0.0});
    EnhancedShuffleRows(two, random);  // "a" goes to place 2, so "b" has home 1 and takes it
    EXPECT_EQ(PathsOf(two), (Paths{"b", "a"}));
}

// The enhanced shuffle as its steps read, one place at a time, to compare with the walk over
// free places only.
std::vector<SongInfo> EnhancedStepByStep(std::vector<SongInfo> rows, ShuffleRandom& random) {
    QuickShuffleRows(rows, random);
    const std::size_t n = rows.size();
    std::vector<SongInfo> slots(n + 1);
    for (std::size_t i = 1; i <= n; ++i) {
        const SongInfo& song = rows[i - 1];
        std::size_t c = random.Pick(i, n);
        if (i > 1) {
            while (!slots[c].Path.empty()) {
                c = c == n ? 1 : c + 1;
            }
            const std::size_t home = c;
            do {
                c = c == n ? 1 : c + 1;
                const std::size_t p = c == 1 ? n : c - 1;
                const std::size_t q = c == n ? 1 : c + 1;
                if (song.Artist != slots[p].Artist && song.Artist != slots[q].Artist &&
                    slots[c].Path.empty()) {
                    break;
                }
            } while (c != home);
        }
        slots[c] = song;
    }
    return std::vector<SongInfo>(slots.begin() + 1, slots.end());
}

TEST(EnhancedShuffleRows, PlacesEverySongWhereTheStepByStepWalkWould) {
    for (std::uint64_t seed = 1; seed <= 300; ++seed) {
        ShuffleRandom shape(seed * 7919);
        const auto n = 1 + static_cast<std::size_t>(shape.Next() * 60);
        const auto artists = 1 + static_cast<std::size_t>(shape.Next() * 8);
        std::vector<SongInfo> rows;
        for (std::size_t i = 0; i < n; ++i) {
            const auto artist = static_cast<std::size_t>(shape.Next() * artists);
            rows.push_back(Song(shape.Next() < 0.05 ? "" : "s" + std::to_string(i),
                                artist == 0 ? "" : "artist " + std::to_string(artist)));
        }
        ShuffleRandom forReference(seed);
        const std::vector<SongInfo> expected = EnhancedStepByStep(rows, forReference);
        ShuffleRandom random(seed);
        EnhancedShuffleRows(rows, random);
        ASSERT_EQ(rows, expected) << "seed " << seed;
    }
}

std::size_t NeighboursSharingAnArtist(const std::vector<SongInfo>& rows) {
    std::size_t pairs = 0;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        pairs += rows[i].Artist == rows[(i + 1) % rows.size()].Artist ? 1 : 0;
    }
    return pairs;
}

TEST(EnhancedShuffleRows, KeepsEqualArtistsApartTheWayAPlainShuffleDoesNot) {
    // The last songs may find no free place without a conflict and stand beside their own
    // artist, so this counts neighbours over many shuffles rather than asking for none at all.
    for (const auto& [artists, each] : {std::pair{20, 10}, {50, 4}, {10, 20}}) {
        std::size_t quickPairs = 0;
        std::size_t enhancedPairs = 0;
        std::size_t runsWithoutAny = 0;
        for (std::uint64_t seed = 1; seed <= 100; ++seed) {
            std::vector<SongInfo> rows = Songs(artists, each);
            std::vector<SongInfo> quick = rows;
            ShuffleRandom random(seed);
            QuickShuffleRows(quick, random);
            quickPairs += NeighboursSharingAnArtist(quick);
            ShuffleRandom again(seed);
            EnhancedShuffleRows(rows, again);
            enhancedPairs += NeighboursSharingAnArtist(rows);
            runsWithoutAny += NeighboursSharingAnArtist(rows) == 0 ? 1 : 0;
        }
        EXPECT_LT(enhancedPairs * 10, quickPairs) << artists << " artists";
        EXPECT_GT(runsWithoutAny, 50u) << artists << " artists";
    }
}

TEST(ShuffleSelectedRows, SelectedRowsMoveOnlyAmongTheirPositions) {
    RowList before;
    for (int i = 0; i < 30; ++i) {
        before.push_back(RowAt("p" + std::to_string(i), "a" + std::to_string(i % 4), i % 3 == 0));
    }
    for (bool enhanced : {false, true}) {
        RowList list = before;
        std::vector<SongInfo> rows;
        ShuffleRandom random(11u);
        ShuffleSelectedRows(list, rows, enhanced, random);
        EXPECT_EQ(rows.size(), 10u);
        WriteBackSelectedRows(list, rows);
        std::vector<std::string_view> moved;
        std::vector<std::string_view> selected;
        for (std::size_t i = 0; i < before.size(); ++i) {
            EXPECT_EQ(list[i].Selected(), before[i].Selected());
            if (!before[i].Selected()) {
                EXPECT_EQ(list[i], before[i]);
            } else {
                moved.push_back(list[i].Get(Column::Filename));
                selected.push_back(before[i].Get(Column::Filename));
            }
        }
        std::sort(moved.begin(), moved.end());
        std::sort(selected.begin(), selected.end());
        EXPECT_EQ(moved, selected);

        // Moving the rows themselves gives the same order for the same numbers, for all rows
        // (whose selection stays where it was) as for the selected ones.
        RowList inPlace = before;
        ShuffleRandom same(11u);
        ShuffleListRows(inPlace, true, enhanced, same);
        EXPECT_EQ(inPlace, list);
        RowList all = before;
        ShuffleRandom forAll(5u);
        ShuffleAllRows(all, rows, enhanced, forAll);
        WriteBackAllRows(all, rows);
        inPlace = before;
        ShuffleRandom again(5u);
        ShuffleListRows(inPlace, false, enhanced, again);
        EXPECT_EQ(inPlace, all);
        EXPECT_NE(all, before);
        for (std::size_t i = 0; i < all.size(); ++i) {
            EXPECT_EQ(all[i].Selected(), before[i].Selected());
        }
    }
}

TEST(ShuffleAllRows, AnEmptyListLeavesTheArrayAsItIs) {
    std::vector<SongInfo> rows = {Song("stale")};
    ShuffleRandom random(1u);
    ShuffleAllRows({}, rows, true, random);
    ShuffleSelectedRows({}, rows, true, random);
    EXPECT_EQ(PathsOf(rows), Paths{"stale"});
    ShuffleSelectedRows({RowAt("p")}, rows, true, random);  // no selection: no records
    EXPECT_TRUE(rows.empty());
    // Picks stay within their range whatever number comes.
    ShuffleRandom stray = Stream({1.0, -0.5});
    EXPECT_EQ(stray.Pick(3, 5), 5u);
    EXPECT_EQ(stray.Pick(3, 5), 3u);
}

TEST(SongFromRow, CarriesTheTwelveColumnsThereAndBack) {
    const ListRow row({"Title", "Artist", "Album", "1999", "Rock", "03:25", "128 ", "/m/x.mp3",
                       "Comment", "1234", "Date", "Vol"});
    const SongInfo song = SongFromRow(row);
    EXPECT_EQ(song.Comment, "Comment");
    EXPECT_EQ(song.Path, "/m/x.mp3");
    ListRow back;
    back.SetSelected(true);
    WriteSongToRow(song, back);
    EXPECT_EQ(back.All(), row.All());
    EXPECT_TRUE(back.Selected());
    back.Set(Column::Artist, back.Get(Column::Filename).substr(1, 1));  // from its own text
    EXPECT_EQ(back.Get(Column::Artist), "m");
    EXPECT_EQ(back.Get(Column::Album), "Album");
}

}  // namespace
}  // namespace jk
