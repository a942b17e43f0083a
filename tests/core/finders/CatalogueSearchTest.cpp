// Searches of the catalogue: every volume and one virtual folder, record by record as the
// wizard's Search runs them, and the same answered through the index, whole or a range of songs
// at a time, which must give exactly the same rows in the same order for any query and any
// catalogue.

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "core/finders/MemoryCatalogue.h"
#include "finders/CatalogueSearch.h"
#include "finders/IndexedRows.h"
#include "finders/IndexedSearch.h"
#include "finders/SearchIndexKeeper.h"

namespace jk {
namespace {

using test::MemoryCatalogue;
using test::Song;

SearchRequest Request(std::string query, std::string_view flags = "111111111",
                      bool binary = false) {
    SearchRequest request;
    request.Query = TextQuery(query, binary);
    request.Fields = ParseFieldFlags(flags);
    return request;
}

std::vector<std::string> Titles(const RowList& rows) {
    std::vector<std::string> titles;
    for (const ListRow& row : rows) {
        titles.emplace_back(row.Get(Column::Title));
    }
    return titles;
}

// Counts the window's calls and asks for an abort when told to.
class CatalogueSearchFront final : public SearchFront {
public:
    void SetStatus(std::string_view text) override { status = text; }
    void SetProgress(int, int) override {
        ++progress;
        if (onProgress) {
            onProgress();
        }
    }
    bool AbortRequested() override {
        ++abortTests;
        return abortAfter >= 0 && abortTests > abortAfter;
    }
    std::string status;
    int progress = 0;
    int abortTests = 0;
    int abortAfter = -1;
    std::function<void()> onProgress;
};

MemoryCatalogue SmallCatalogue() {
    MemoryCatalogue catalogue;
    auto& pop = catalogue.Add("Pop");
    pop.Songs.push_back(Song("Love Song", "Abba", "/media/ann/POP/pop/love.mp3"));
    pop.Songs.push_back(Song("Other", "Abba", "/media/ann/POP/popular/other love.mp3"));
    pop.Songs.push_back(Song("Deep", "Blur", "/media/ann/POP/Pop/deep.mp3"));
    auto& rock = catalogue.Add("rock");
    rock.Songs.push_back(Song("Lovesick", "Cure", "d:\\rock\\lovesick.mp3"));
    rock.Songs.push_back(Song("", "Cure", "d:\\rock\\untitled love.mp3"));
    return catalogue;
}

TEST(CatalogueSearch, EveryVolumeInTableOrder) {
    const MemoryCatalogue catalogue = SmallCatalogue();
    RowList rows;
    CatalogueSearchFront front;
    const CatalogueSearchEnd end = SearchAllVirtualDrives(catalogue, Request("love"), rows, front);
    EXPECT_EQ(end.End, SearchEnd::Done);
    EXPECT_EQ(front.status, "Scanning all Virtual Drives...");
    EXPECT_EQ(Titles(rows),
              (std::vector<std::string>{"Love Song", "Other", "Lovesick", "untitled love.mp3"}));
    EXPECT_EQ(rows[0].Get(Column::Bitrate), " 128");  // as stored
    EXPECT_EQ(rows[0].Get(Column::Volume), "Pop");
}

TEST(CatalogueSearch, VirtualFolderByLabelIgnoringCaseThenPathAsText) {
    const MemoryCatalogue catalogue = SmallCatalogue();
    const auto search = [&catalogue](std::string_view lookIn, std::string query) {
        RowList rows;
        CatalogueSearchFront front;
        SearchVirtualFolder(catalogue, lookIn, Request(std::move(query)), rows, front);
        return Titles(rows);
    };
    // "pop/pop" takes in "pop/popular" (a text prefix), but not "Pop/Pop" (case counts there).
    EXPECT_EQ(search("POP/pop", ""), (std::vector<std::string>{"Love Song", "Other"}));
    // The label is the one typed, found ignoring case: the paths are compared under it.
    EXPECT_EQ(search("pop/pop", ""), (std::vector<std::string>{"Love Song", "Other"}));
    EXPECT_EQ(search("POP", "deep"), (std::vector<std::string>{"Deep"}));
    EXPECT_EQ(search("Rock\\rock", "love"),
              (std::vector<std::string>{"Lovesick", "untitled love.mp3"}));
    EXPECT_EQ(search("jazz", ""), (std::vector<std::string>{}));
    EXPECT_TRUE(InVirtualFolder("POP/pop/love.mp3", "/media/ann/POP/pop/love.mp3"));
    EXPECT_FALSE(InVirtualFolder("POP/pop/love.mp3x", "/media/ann/POP/pop/love.mp3"));
}

TEST(CatalogueSearch, AbortLeavesOnlyTheVolumeItIsSeenIn) {
    MemoryCatalogue catalogue = SmallCatalogue();
    RowList rows;
    CatalogueSearchFront front;
    front.abortAfter = 1;  // the second record of the first volume sees the flag
    const CatalogueSearchEnd end = SearchAllVirtualDrives(catalogue, Request(""), rows, front);
    EXPECT_EQ(end.End, SearchEnd::Aborted);
    EXPECT_EQ(rows.size(), 1U);
    // The next volume is still begun, and the test fires at once there.
    EXPECT_EQ(front.abortTests, 3);
}

TEST(CatalogueSearch, ABetweenTokenThatIsNoDateEndsTheSearch) {
    const MemoryCatalogue catalogue = SmallCatalogue();
    SearchRequest request = Request("love");
    SizeDateCriteria criteria;
    criteria.TimeMode = kBetween;
    criteria.DateText = "1/1/98 - someday";
    request.SizeDate = SizeDateTest(criteria, CivilMoment{});
    RowList rows;
    CatalogueSearchFront front;
    EXPECT_EQ(SearchAllVirtualDrives(catalogue, request, rows, front).End, SearchEnd::Failed);
    EXPECT_TRUE(rows.empty());
    SearchIndexKeeper keeper(catalogue);
    keeper.Ready();
    keeper.WaitForBuild();
    EXPECT_EQ(FindIndexed(*keeper.Ready(), catalogue, request, "").End, SearchEnd::Failed);
    // An empty scope never reaches the test.
    EXPECT_EQ(FindIndexed(*keeper.Ready(), catalogue, request, "jazz").End, SearchEnd::Done);
}

TEST(CatalogueSearch, ACatalogueChangedDuringTheSearchEndsIt) {
    MemoryCatalogue catalogue;
    auto& big = catalogue.Add("Big");
    for (int i = 0; i < 1200; ++i) {
        big.Songs.push_back(Song("t" + std::to_string(i), "a", "/x/" + std::to_string(i)));
    }
    RowList rows;
    CatalogueSearchFront front;
    front.onProgress = [&catalogue] { ++catalogue.generation; };
    const CatalogueSearchEnd end = SearchAllVirtualDrives(catalogue, Request(""), rows, front);
    EXPECT_TRUE(end.CatalogueChanged);
    EXPECT_EQ(rows.size(), kVirtualYieldRecords);
}

// ---- The index against the plain search -------------------------------------------------

class Generator {
public:
    explicit Generator(unsigned seed) : m_random(seed) {}

    std::size_t Below(std::size_t n) {
        return std::uniform_int_distribution<std::size_t>(0, n - 1)(m_random);
    }

    std::string Word() {
        static const std::vector<std::string> syllables = {
            "lo", "ve", "Ro", "CK", "é",  "É",  "ß",    "ü", "Ü",  "on", "ar", " ", "-", "ka",
            "İ",  "ı",  "Ω",  "ω",  "ja", "zz", "\xC3", "1", "99", "\t", "ñ",  "Ñ", "a"};
        std::string word;
        for (std::size_t n = Below(4); n > 0; --n) {
            word += syllables[Below(syllables.size())];
        }
        return word;
    }

    SongInfo Record(std::size_t i) {
        static const std::vector<std::string> folders = {
            "/media/ann/DISC/",           "/media/ann/DISC/Rock/", "d:\\Pop\\", "/home/ann/Ü/", "",
            "/media/ann/DISC/rock/live/", "/mnt/usb/Jazz & Blues/"};
        SongInfo song;
        song.Title = Word();
        song.Artist = Below(3) == 0 ? std::string() : "Artist " + Word();
        song.Album = Word();
        song.Comment = Below(4) == 0 ? Word() : std::string();
        song.Genre = Below(2) == 0 ? "Rock" : Word();
        song.Year = std::to_string(1960 + Below(60));
        song.Bitrate = Below(2) == 0 ? " 128" : "  96";
        song.Size = std::to_string(100000 + Below(9000000));
        song.Time = "03:25";
        song.Date = "2/26/00 11:22:33 PM";
        // Sometimes a folder of its own below a shared one, so folders share some parts only.
        const std::string below = Below(3) == 0 ? Word() + (Below(2) == 0 ? "/" : "\\") : "";
        // Mostly the usual ending, sometimes in capitals, doubled, cut short or missing.
        static const std::vector<std::string> endings = {".mp3", ".MP3", ".Mp3.mp3", "mp3",
                                                         ".mp",  "",     ".mp3",     ".mp3"};
        song.Path = folders[Below(folders.size())] + below + Word() + std::to_string(i) +
                    endings[Below(endings.size())];
        return song;
    }

    // A query drawn from the data, or short, or a miss, or with a separator.
    std::string Query(const MemoryCatalogue& catalogue) {
        const std::size_t kind = Below(8);
        if (kind == 0) {
            return Word();
        }
        if (kind == 1) {
            return "";
        }
        if (kind == 2) {
            return "qqxq";
        }
        const auto& volume = catalogue.volumes[Below(catalogue.volumes.size())];
        if (volume.Songs.empty()) {
            return volume.Name;
        }
        const SongInfo& song = volume.Songs[Below(volume.Songs.size())];
        const std::string& text = kind == 3 ? song.Path : kind == 4 ? song.Artist : song.Title;
        if (text.empty()) {
            return text;
        }
        if (kind == 3 && Below(2) == 0) {
            return text.substr(text.size() - 1 - Below(std::min<std::size_t>(text.size(), 9)));
        }
        const std::size_t from = Below(text.size());
        // Pieces of paths long enough to run over several folders' joints.
        const std::size_t length = 1 + Below(kind == 5 ? 2 : kind == 3 ? 30 : 12);
        return text.substr(from, length);
    }

private:
    std::mt19937 m_random;
};

std::vector<std::string> AllColumns(const RowList& rows) {
    std::vector<std::string> out;
    for (const ListRow& row : rows) {
        std::string line;
        for (const std::string_view c : row.All()) {
            line.append(c).push_back('|');
        }
        out.push_back(line);
    }
    return out;
}

TEST(SearchIndex, GivesThePlainSearchesRowsThroughRandomQueriesAndChanges) {
    Generator generate(20240611);
    MemoryCatalogue catalogue;
    for (int v = 0; v < 4; ++v) {
        auto& volume = catalogue.Add("Disc " + generate.Word() + std::to_string(v));
        for (int i = 0; i < 400; ++i) {
            volume.Songs.push_back(generate.Record(volume.Songs.size()));
        }
    }
    SearchIndexKeeper keeper(catalogue);
    int compared = 0;
    int withRows = 0;
    for (int round = 0; round < 30; ++round) {
        // A change of the catalogue, announced as the catalogue's commands announce it.
        keeper.CatalogueChanging();
        switch (generate.Below(4)) {
            case 0: {
                auto& volume = catalogue.Add("New " + generate.Word());
                for (std::size_t n = generate.Below(200); n > 0; --n) {
                    volume.Songs.push_back(generate.Record(n));
                }
                break;
            }
            case 1:
                if (catalogue.volumes.size() > 1) {
                    catalogue.volumes.erase(
                        catalogue.volumes.begin() +
                        static_cast<std::ptrdiff_t>(generate.Below(catalogue.volumes.size())));
                }
                break;
            case 2:
                catalogue.volumes[generate.Below(catalogue.volumes.size())].Name = generate.Word();
                break;
            default: {
                auto& volume = catalogue.volumes[generate.Below(catalogue.volumes.size())];
                volume.Songs.push_back(generate.Record(volume.Songs.size()));
                break;
            }
        }
        ++catalogue.generation;
        keeper.CatalogueChanged();
        keeper.WaitForBuild();
        const SearchIndex* index = keeper.Ready();
        ASSERT_NE(index, nullptr);

        for (int q = 0; q < 150; ++q) {
            const std::string query = generate.Query(catalogue);
            std::string flags;
            for (int f = 0; f < 9; ++f) {
                flags.push_back(generate.Below(4) == 0 ? '0' : '1');
            }
            const bool binary = generate.Below(5) == 0;
            const SearchRequest request = Request(query, flags, binary);
            std::string lookIn;
            if (generate.Below(4) == 0) {
                const auto& volume = catalogue.volumes[generate.Below(catalogue.volumes.size())];
                lookIn = volume.Name;
                if (!volume.Songs.empty() && generate.Below(2) == 0) {
                    lookIn += "/" + generate.Word();
                }
            }
            RowList plain;
            CatalogueSearchFront front;
            if (lookIn.empty()) {
                SearchAllVirtualDrives(catalogue, request, plain, front);
            } else {
                SearchVirtualFolder(catalogue, lookIn, request, plain, front);
            }
            const IndexedResult found = FindIndexed(*index, catalogue, request, lookIn);
            RowList indexed;
            AppendCatalogueRows(catalogue, found.Songs, 0, found.Songs.size(), indexed);
            ASSERT_EQ(AllColumns(indexed), AllColumns(plain))
                << "query \"" << query << "\" fields " << flags << " binary " << binary << " in \""
                << lookIn << "\"";
            // A range at a time, ranges that end inside blocks of 64 and volumes: the same songs.
            const std::size_t step = 1 + generate.Below(300);
            IndexedSearch steps(*index, catalogue, request, lookIn);
            std::vector<SongRef> stepped;
            while (!steps.Done()) {
                steps.Next(step, stepped);
            }
            ASSERT_EQ(stepped, found.Songs) << "query \"" << query << "\" in steps of " << step;
            // As a list asks for them, the first rows before the rest are found: the same rows.
            IndexedRows asked(keeper.ReadyShared(), catalogue, request, lookIn, generate.Below(50),
                              step);
            RowList made;
            while (asked.Next(made, 1 + generate.Below(100))) {
            }
            ASSERT_EQ(AllColumns(made), AllColumns(plain)) << "query \"" << query << "\"";
            ++compared;
            withRows += plain.empty() ? 0 : 1;
        }
    }
    EXPECT_EQ(compared, 4500);
    // Queries that find something and queries that find nothing both had their share.
    EXPECT_GT(withRows, 1000);
    EXPECT_LT(withRows, 4000);
}

TEST(SearchIndex, RowsAskedForStopWhenTheCatalogueChanges) {
    MemoryCatalogue catalogue = SmallCatalogue();
    for (int i = 0; i < 300; ++i) {
        catalogue.volumes[1].Songs.push_back(
            Song("Love " + std::to_string(i), "Cure", "d:\\rock\\" + std::to_string(i) + ".mp3"));
    }
    SearchIndexKeeper keeper(catalogue);
    keeper.Ready();  // starts the build
    keeper.WaitForBuild();
    ASSERT_NE(keeper.Ready(), nullptr);
    IndexedRows asked(keeper.ReadyShared(), catalogue, Request("love"), "", 2, 64);
    keeper.CatalogueChanging();  // the keeper lets go; the rows' search still holds the index
    RowList rows;
    EXPECT_TRUE(asked.Next(rows, 100));
    EXPECT_EQ(Titles(rows), (std::vector<std::string>{"Love Song", "Other"}));
    ++catalogue.generation;
    EXPECT_FALSE(asked.Next(rows, 100));
    EXPECT_EQ(rows.size(), std::size_t{2});
}

TEST(SearchIndex, AnIndexOfAnOlderCatalogueIsNotUsed) {
    MemoryCatalogue catalogue = SmallCatalogue();
    SearchIndexKeeper keeper(catalogue);
    EXPECT_EQ(keeper.Ready(), nullptr);  // built on the worker when first asked for
    keeper.WaitForBuild();
    ASSERT_NE(keeper.Ready(), nullptr);
    ++catalogue.generation;  // a change nobody announced
    EXPECT_EQ(keeper.Ready(), nullptr);
    keeper.WaitForBuild();
    EXPECT_NE(keeper.Ready(), nullptr);
}

}  // namespace
}  // namespace jk
