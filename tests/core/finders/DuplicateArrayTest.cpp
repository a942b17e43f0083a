// The compact working array against the copied one: the same members listed, in the same
// order and groups, the same rows and sources, the same sources written back, for every
// criterion and every source shown, over lists and a catalogue that share songs.

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/finders/MemoryCatalogue.h"
#include "finders/DuplicateArray.h"
#include "finders/DuplicateFinder.h"

namespace jk {
namespace {

const std::vector<std::string> kTitles = {"Love",  "LOVE",  "love",  "",  "  Blue ", "blue",
                                          "Ärger", "ärger", "ÄRGER", "x", "\xC3",    "10"};
const std::vector<std::string> kPaths = {"/m/a.mp3", "/M/A.mp3",     "/n/a.mp3",
                                         "/m/b.mp3", "d:\\x\\a.mp3", "/m/c d.mp3"};
const std::vector<std::string> kSizes = {"100", "0100", "99", "", "abc", "1e2"};

template <typename T>
const T& Pick(std::mt19937& random, const std::vector<T>& from) {
    return from[random() % from.size()];
}

ListRow RandomRow(std::mt19937& random) {
    ListRow row;
    row.Set(Column::Title, Pick(random, kTitles));
    row.Set(Column::Artist, Pick(random, kTitles));
    row.Set(Column::Album, Pick(random, kTitles));
    row.Set(Column::Filename, Pick(random, kPaths));
    row.Set(Column::Size, Pick(random, kSizes));
    row.Set(Column::Time, "03:25");
    row.SetSelected(random() % 2 == 0);
    return row;
}

TEST(DuplicateArray, ListsWhatTheCopiedArrayLists) {
    std::mt19937 random(11);
    for (int round = 0; round < 60; ++round) {
        RowList playlist(random() % 12);
        RowList files(random() % 12);
        for (ListRow& row : playlist) {
            row = RandomRow(random);
        }
        for (ListRow& row : files) {
            row = RandomRow(random);
        }
        test::MemoryCatalogue catalogue;
        const std::size_t volumes = random() % 4;
        for (std::size_t v = 0; v < volumes; ++v) {
            test::MemoryCatalogue::Volume& volume = catalogue.Add("Disc" + std::to_string(v));
            for (std::size_t i = random() % 15; i > 0; --i) {
                SongInfo song = test::Song(Pick(random, kTitles), Pick(random, kTitles),
                                           Pick(random, kPaths), Pick(random, kTitles));
                song.Size = Pick(random, kSizes);
                volume.Songs.push_back(song);
            }
        }
        const bool withList = random() % 4 != 0;
        const bool withFolder = random() % 4 != 0;
        const bool withCatalogue = random() % 4 != 0;
        for (int criterion = 0; criterion < 5; ++criterion) {
            for (int show = 0; show < 3; ++show) {
                std::vector<DupeRecord> copied;
                DupeArray compact;
                if (withList) {
                    LoadRowsSource(playlist, kSourcePlaylist, copied);
                    compact.AddRows(playlist, kSourcePlaylist);
                }
                if (withFolder) {
                    LoadRowsSource(files, kSourceFolder, copied);
                    compact.AddRows(files, kSourceFolder);
                }
                if (withCatalogue) {
                    LoadVirtualSource(catalogue, copied);
                    compact.AddCatalogue(catalogue);
                }
                ASSERT_EQ(compact.Size(), copied.size());
                for (std::size_t i = 0; i < copied.size(); ++i) {
                    ASSERT_EQ(compact.Row(i), copied[i].Row) << i;
                    ASSERT_EQ(compact.Source(i), copied[i].Source) << i;
                }
                const std::vector<DupeMember> members = compact.Group(criterion, ShowBit(show), 5);
                const std::vector<DupeListed> listed =
                    GroupDuplicates(copied, criterion, ShowBit(show), 5);
                ASSERT_EQ(members.size(), listed.size()) << criterion << " " << show;
                for (std::size_t k = 0; k < members.size(); ++k) {
                    const DupeListed row = compact.Listed(members[k]);
                    ASSERT_EQ(row.Row, listed[k].Row) << k;
                    ASSERT_EQ(row.Group, listed[k].Group) << k;
                    ASSERT_EQ(row.Source, listed[k].Source) << k;
                }
                for (std::size_t i = 0; i < copied.size(); ++i) {
                    ASSERT_EQ(compact.Reserved()[i], copied[i].Reserved) << i;
                }
                // The listed records' columns read in the array's order, as the statistics are.
                std::vector<bool> marked(compact.Size());
                std::vector<std::pair<std::string, std::string>> wanted;
                for (const DupeMember& member : members) {
                    marked[member.Record] = true;
                }
                for (std::size_t i = 0; i < marked.size(); ++i) {
                    if (marked[i]) {
                        const ListRow row = compact.Row(i);  // the copied rows were moved
                        wanted.emplace_back(row.Get(Column::Time), row.Get(Column::Size));
                    }
                }
                std::vector<std::pair<std::string, std::string>> visited;
                compact.VisitListed(marked, Column::Time, Column::Size,
                                    [&visited](std::string_view time, std::string_view size) {
                                        visited.emplace_back(time, size);
                                    });
                ASSERT_EQ(visited, wanted);
            }
        }
    }
}

TEST(DuplicateArray, AnUnknownCriterionListsNothing) {
    DupeArray array;
    array.AddRows(RowList(3), kSourceFolder);
    EXPECT_TRUE(array.Group(-1, kSourceFolder).empty());
    EXPECT_TRUE(array.Group(5, kSourceFolder).empty());
    EXPECT_TRUE(DupeArray().Group(0, kSourceFolder).empty());
}

}  // namespace
}  // namespace jk
