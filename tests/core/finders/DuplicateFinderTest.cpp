// The Duplicate Finder: its partition sort to the very permutation, the grouping with its
// quirks, the sources, and the proposal of the copies to keep.

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "core/finders/MemoryCatalogue.h"
#include "finders/BestCopies.h"
#include "finders/DuplicateFinder.h"
#include "finders/DuplicateSort.h"
#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {
namespace {

ListRow RowOf(std::string title, std::string path = "/m/x.mp3", std::string size = "100") {
    ListRow row;
    row.Set(Column::Title, title);
    row.Set(Column::Filename, path);
    row.Set(Column::Size, size);
    return row;
}

std::vector<DupeRecord> Records(const std::vector<std::string>& titles,
                                std::int16_t source = kSourcePlaylist) {
    std::vector<DupeRecord> records;
    for (std::size_t i = 0; i < titles.size(); ++i) {
        records.push_back(
            DupeRecord{RowOf(titles[i], "/m/" + std::to_string(i) + ".mp3"), source, source});
    }
    return records;
}

std::vector<std::string> Listed(const std::vector<DupeListed>& listed) {
    std::vector<std::string> out;
    for (const DupeListed& l : listed) {
        out.push_back(std::string(l.Row.Get(Column::Title)) + "#" + std::to_string(l.Group));
    }
    return out;
}

// The sort as the finder's own text has it, swapping whole records and comparing raw keys
// through Less on every step, to hold the index-sorting one to the same permutation.
void ReferenceSort(std::vector<std::pair<std::string, int>>& a, int L, int R, bool numeric) {
    int i = L;
    int j = R;
    if (j <= i) {
        return;
    }
    const std::string pivot = a[static_cast<std::size_t>((L + R) / 2)].first;
    while (j >= i) {
        while (Less(a[static_cast<std::size_t>(i)].first, pivot, numeric) && i < R) {
            ++i;
        }
        while (Less(pivot, a[static_cast<std::size_t>(j)].first, numeric) && j > L) {
            --j;
        }
        if (i <= j) {
            std::swap(a[static_cast<std::size_t>(i)], a[static_cast<std::size_t>(j)]);
            ++i;
            --j;
        }
    }
    if (L < j) {
        ReferenceSort(a, L, j, numeric);
    }
    if (i < R) {
        ReferenceSort(a, i, R, numeric);
    }
}

TEST(DuplicateFinder, SortsToTheFindersOwnPermutation) {
    std::mt19937 random(42);
    const std::vector<std::string> keys = {"a",  "A",  "b", "B",    "ä",   "Ä",   "",  " a",   "ab",
                                           "Ab", "10", "9", "0123", "123", "1e2", "x", "\xC3", "ß"};
    for (int round = 0; round < 300; ++round) {
        const bool numeric = round % 3 == 0;
        const int criterion = numeric ? 3 : 0;
        std::vector<DupeRecord> records;
        std::vector<std::pair<std::string, int>> reference;
        const std::size_t n = 1 + random() % 60;
        for (std::size_t i = 0; i < n; ++i) {
            const std::string key = keys[random() % keys.size()];
            ListRow row;
            row.Set(numeric ? Column::Size : Column::Title, key);
            records.push_back(DupeRecord{row, 1, 1});
            reference.emplace_back(key, static_cast<int>(i));
        }
        std::vector<std::uint32_t> order(n);
        for (std::size_t i = 0; i < n; ++i) {
            order[i] = static_cast<std::uint32_t>(i);
        }
        QuickSortDuplicates(order, 0, n - 1, records, criterion);
        ReferenceSort(reference, 0, static_cast<int>(n) - 1, numeric);
        for (std::size_t i = 0; i < n; ++i) {
            ASSERT_EQ(static_cast<int>(order[i]), reference[i].second) << "round " << round;
        }
    }
}

// The ranked keys and the threaded parts against the plain sort, on arrays large enough to be
// handed to other threads: many ties, case variants, non-ASCII letters, keys that share their
// first eight bytes, and bytes that are no UTF-8.
TEST(DuplicateFinder, ThreadedSortKeepsThePlainPermutation) {
    std::mt19937 random(7);
    const std::vector<std::string> stems = {
        "love",      "LOVE",         "Love song", "love songs", "Mädchen", "MÄDCHEN",  "mädchen ",
        "Straße",    "STRASSE",      "ÅNGSTRÖM",  "ångström",   "",        "abcdefgh", "abcdefghi",
        "ABCDEFGHI", "abcdefgh\xC3", "\xFF",      "10",         "9",       "0123"};
    for (int round = 0; round < 24; ++round) {
        const bool numeric = round % 4 == 3;
        const int criterion = numeric ? 3 : round % 3;
        const std::size_t n = 500 + random() % 3000;
        std::vector<DupeRecord> records;
        std::vector<std::pair<std::string, int>> reference;
        for (std::size_t i = 0; i < n; ++i) {
            std::string key = stems[random() % stems.size()];
            if (random() % 3 == 0) {
                key += std::to_string(random() % 50);  // fewer ties, still some
            }
            ListRow row;
            row.Set(numeric ? Column::Size : static_cast<Column>(criterion), key);
            records.push_back(DupeRecord{row, 1, 1});
            reference.emplace_back(key, static_cast<int>(i));
        }
        const DupeSortThreads threads{static_cast<unsigned>(2 + round % 3), 8};
        const DupeSortKeys keys = DupeKeysOf(records, criterion, threads);
        std::vector<std::uint32_t> order(n);
        for (std::size_t i = 0; i < n; ++i) {
            order[i] = static_cast<std::uint32_t>(i);
        }
        SortDupeOrder(order, 0, n - 1, keys, threads);
        ReferenceSort(reference, 0, static_cast<int>(n) - 1, numeric);
        for (std::size_t i = 0; i < n; ++i) {
            ASSERT_EQ(static_cast<int>(order[i]), reference[i].second) << "round " << round;
        }
        // Neighbours share a group exactly when their keys are equal ignoring case.
        for (std::size_t i = 0; i + 1 < n; ++i) {
            const std::string& a = reference[i].first;
            const std::string& b = reference[i + 1].first;
            const bool same = keys.groups[order[i]] == keys.groups[order[i + 1]];
            ASSERT_EQ(same, EqualsNoCase(a, b)) << a << " | " << b;
            ASSERT_EQ(keys.groups[order[i]] == kNoGroup, a.empty()) << a;
        }
    }
}

TEST(DuplicateFinder, ARunRightBehindAGroupIsLost) {
    struct Case {
        std::vector<std::string> titles;
        std::vector<std::string> listed;
    };
    const std::vector<Case> cases = {
        {{"A", "B", "B"}, {"B#0", "B#0"}},
        {{"A", "A", "B", "B"}, {"A#0", "A#0"}},                     // the B pair is lost
        {{"A", "A", "B", "B", "B"}, {"A#0", "A#0", "B#1", "B#1"}},  // of three, the last two
        // Case alone differs: one group, in the order the sort leaves them.
        {{"Love", "LOVE", "love"}, {"love#0", "LOVE#0", "Love#0"}},
        {{"", "", "x"}, {}},  // an empty key never groups
        {{"solo"}, {}},
        {{}, {}},
    };
    for (const Case& c : cases) {
        std::vector<DupeRecord> records = Records(c.titles);
        EXPECT_EQ(Listed(GroupDuplicates(records, 0, kSourcePlaylist)), c.listed)
            << ::testing::PrintToString(c.titles);
    }
}

TEST(DuplicateFinder, FileLengthSortsByNumberAndGroupsByText) {
    const auto listed = [](std::initializer_list<const char*> sizes) {
        std::vector<DupeRecord> records;
        for (const char* size : sizes) {
            records.push_back(DupeRecord{RowOf(size, "/m/x.mp3", size), 1, 1});
        }
        return GroupDuplicates(records, 3, kSourceFolder).size();
    };
    EXPECT_EQ(listed({"0123", "77", "123"}), 0U);  // side by side, but no group
    EXPECT_EQ(listed({"123", "77", "123"}), 2U);
    EXPECT_EQ(listed({"abc", "0", "x"}), 0U);  // Val gives 0, the texts differ
}

TEST(DuplicateFinder, FilenameGroupsTheVeryPathOnly) {
    std::vector<DupeRecord> records;
    records.push_back(DupeRecord{RowOf("a", "/m/song.mp3"), kSourcePlaylist, kSourcePlaylist});
    records.push_back(DupeRecord{RowOf("c", "/m/song.mp3"), kSourceFolder, kSourceFolder});
    records.push_back(DupeRecord{RowOf("d", "/m/zz.mp3"), kSourceFolder, kSourceFolder});
    std::vector<DupeListed> listed = GroupDuplicates(records, 4, kSourcePlaylist);
    ASSERT_EQ(listed.size(), 2U);
    EXPECT_EQ(listed[0].Row.Get(Column::Filename), "/m/song.mp3");
    EXPECT_EQ(listed[1].Row.Get(Column::Filename), "/m/song.mp3");
    // Sources are ORed over the group: the folder copy shows under "Playlist".
    EXPECT_EQ(records[1].Reserved, kSourcePlaylist | kSourceFolder);
    EXPECT_EQ(listed[0].Source + listed[1].Source, kSourcePlaylist + kSourceFolder);
    // The same name in another folder is no duplicate.
    std::vector<DupeRecord> apart;
    apart.push_back(DupeRecord{RowOf("a", "/m/song.mp3"), kSourcePlaylist, kSourcePlaylist});
    apart.push_back(DupeRecord{RowOf("b", "/other/song.mp3"), kSourceFolder, kSourceFolder});
    EXPECT_EQ(GroupDuplicates(apart, 4, kSourcePlaylist).size(), 0U);
}

TEST(DuplicateFinder, AGroupShowsWhenOneMemberHasTheChosenSource) {
    std::vector<DupeRecord> records;
    records.push_back(DupeRecord{RowOf("x"), kSourceFolder, kSourceFolder});
    records.push_back(DupeRecord{RowOf("x"), kSourceVirtual, kSourceVirtual});
    records.push_back(DupeRecord{RowOf("xa"), kSourceFolder, kSourceFolder});
    records.push_back(DupeRecord{RowOf("y"), kSourceFolder, kSourceFolder});
    records.push_back(DupeRecord{RowOf("y"), kSourceFolder, kSourceFolder});
    std::vector<DupeRecord> copy = records;
    EXPECT_EQ(GroupDuplicates(copy, 0, ShowBit(2)).size(), 2U);  // "Virtual drives": x only
    copy = records;
    EXPECT_EQ(Listed(GroupDuplicates(copy, 0, ShowBit(0))),
              (std::vector<std::string>{"x#0", "x#0", "y#1", "y#1"}));
    copy = records;
    EXPECT_EQ(GroupDuplicates(copy, 0, ShowBit(1)).size(), 0U);
}

TEST(DuplicateFinder, RowsAndSources) {
    test::MemoryCatalogue catalogue;
    catalogue.Add("Disc").Songs.push_back(test::Song("  ", "Artist", "d:\\a\\b.mp3"));
    std::vector<DupeRecord> records;
    RowList playlist = {RowOf("p")};
    playlist[0].SetSelected(true);
    LoadRowsSource(playlist, kSourcePlaylist, records);
    LoadVirtualSource(catalogue, records);
    ASSERT_EQ(records.size(), 2U);
    EXPECT_FALSE(records[0].Row.Selected());
    EXPECT_EQ(records[1].Reserved, kSourceVirtual);
    EXPECT_EQ(records[1].Row.Get(Column::Volume), "Disc");
    EXPECT_EQ(DupeRow(records[1].Row).Get(Column::Title), "b.mp3");
    EXPECT_EQ(DupeRow(records[1].Row).Get(Column::Bitrate), " 128");  // as held
}

// A catalogue large enough to be copied on several threads: every song lands at its place, in
// volume order, empty volumes passed over, and the groups hold equal titles alone.
TEST(DuplicateFinder, ALargeCatalogueLoadsInOrderAndGroupsEqualTitles) {
    test::MemoryCatalogue catalogue;
    std::size_t total = 0;
    for (int v = 0; v < 9; ++v) {
        test::MemoryCatalogue::Volume& volume = catalogue.Add("Disc" + std::to_string(v));
        const int count = v == 3 ? 0 : 4000 + v * 250;
        for (int i = 0; i < count; ++i) {
            const std::string title = (i % 2 == 0 ? "Song " : "SONG ") + std::to_string(i % 997);
            volume.Songs.push_back(test::Song(
                title, "x", "/d" + std::to_string(v) + "/" + std::to_string(i) + ".mp3"));
        }
        total += volume.Songs.size();
    }
    std::vector<DupeRecord> records;
    std::size_t lastDone = 0;
    LoadVirtualSource(catalogue, records,
                      [&lastDone](std::size_t done, std::size_t) { lastDone = done; });
    ASSERT_EQ(records.size(), total);
    EXPECT_EQ(lastDone, total);
    std::size_t at = 0;
    for (std::size_t v = 0; v < catalogue.VolumeCount(); ++v) {
        for (std::size_t i = 0; i < catalogue.SongCount(v); ++i, ++at) {
            ASSERT_EQ(records[at].Row.Get(Column::Filename), catalogue.Fields(v, i)[kKeyPath - 1]);
            ASSERT_EQ(records[at].Row.Get(Column::Volume), catalogue.VolumeName(v));
        }
    }
    const std::vector<DupeListed> listed = GroupDuplicates(records, 0, kSourceVirtual);
    ASSERT_GT(listed.size(), total / 2);
    for (std::size_t k = 1; k < listed.size(); ++k) {
        if (listed[k].Group == listed[k - 1].Group) {
            ASSERT_TRUE(EqualsNoCase(listed[k].Row.Get(Column::Title),
                                     listed[k - 1].Row.Get(Column::Title)));
        }
    }
}

DupeListed Copy(std::size_t group, std::string path, std::string bitrate, std::string time,
                std::string size, std::string date, std::int16_t source = kSourceFolder) {
    ListRow row = RowOf("t", std::move(path), std::move(size));
    row.Set(Column::Bitrate, bitrate);
    row.Set(Column::Time, time);
    row.Set(Column::Date, date);
    return DupeListed{row, group, source};
}

TEST(BestCopies, KeepsTheBestAndOffersOnlyFilesThatAreHere) {
    const std::vector<DupeListed> rows = {
        // group 0: the bitrate decides
        Copy(0, "/a/1.mp3", " 128", "03:00", "100", "1/1/00"),
        Copy(0, "/a/2.mp3", " 192", "03:00", "100", "1/1/00"),
        // group 1: equal bitrate and time, the size decides; a catalogue copy is never offered
        Copy(1, "/b/1.mp3", " 128", "03:00", "200", "1/1/00"),
        Copy(1, "/b/2.mp3", " 128", "03:00", "300", "1/1/00"),
        Copy(1, "d:\\disc\\b.mp3", " 320", "09:00", "900", "1/1/09", kSourceVirtual),
        // group 2: the newer date; the same file listed twice is never offered
        Copy(2, "/c/1.mp3", " 128", "03:00", "100", "1/1/00"),
        Copy(2, "/c/2.mp3", " 128", "03:00", "100", "1/2/00"),
        Copy(2, "/c/2.mp3", " 128", "03:00", "100", "1/2/00", kSourcePlaylist),
        // group 3: all equal, the first row stays
        Copy(3, "/d/1.mp3", " 128", "100:00", "100", ""),
        Copy(3, "/d/2.mp3", " 128", "99:59", "100", ""),
    };
    const CopyProposal proposal =
        ProposeBestCopies(rows, [](const DupeListed& r) { return r.Source != kSourceVirtual; });
    EXPECT_EQ(proposal.Keep, (std::vector<bool>{false, true, false, true, false, false, true, false,
                                                true, false}));
    EXPECT_EQ(proposal.Select, (std::vector<bool>{true, false, true, false, false, true, false,
                                                  false, false, true}));
    EXPECT_EQ(proposal.Selected, 4U);
}

TEST(BestCopies, TheQuestionNamesTheCountAndTheFirstFiles) {
    std::vector<std::string> paths;
    for (int i = 0; i < 7; ++i) {
        paths.push_back("/m/" + std::to_string(i) + ".mp3");
    }
    const UserMessage question = BestCopiesDeleteQuestion(paths);
    EXPECT_EQ(question.title, "Verify");
    EXPECT_NE(question.text.find("delete 7 files?"), std::string::npos);
    EXPECT_NE(question.text.find("/m/4.mp3"), std::string::npos);
    EXPECT_EQ(question.text.find("/m/5.mp3"), std::string::npos);
    EXPECT_NE(question.text.find("2 more"), std::string::npos);
}

}  // namespace
}  // namespace jk
