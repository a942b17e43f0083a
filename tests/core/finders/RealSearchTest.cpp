// The Search wizard on real folders: which folders are walked, in which order, what a file must
// pass to become a row, and how an abort and a failure end the walk. The folders and songs are
// in memory.

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "core/browse/FakeFolderLister.h"
#include "finders/RealSearch.h"

namespace jk {
namespace {

class RealSearchFront final : public SearchFront {
public:
    void SetPanelStatus(std::string_view text) override { panel = text; }
    void SetStatus(std::string_view text) override { statuses.emplace_back(text); }
    bool AbortRequested() override { return ++asked > abortAfter && abortAfter >= 0; }
    std::string panel;
    std::vector<std::string> statuses;
    int asked = 0;
    int abortAfter = -1;
};

class RealSearchTest : public ::testing::Test {
protected:
    RealSearchTest() {
        lister.AddFolder(
            "/m", {"a.mp3", "notes.txt", "sub/", "Temporary Internet Files/", "b.mp3", "gone.mp3"});
        lister.AddFolder("/m/sub", {"c.mp3", "deeper/"});
        lister.AddFolder("/m/sub/deeper", {"e.mp3"});
        lister.AddFolder("/m/Temporary Internet Files", {"d.mp3"});
        for (const char* path : {"/m/a.mp3", "/m/b.mp3", "/m/sub/c.mp3", "/m/sub/deeper/e.mp3",
                                 "/m/Temporary Internet Files/d.mp3"}) {
            SongInfo song;
            song.Title = std::string("Love ") + path;
            song.Artist = "  Spaced  ";
            song.Path = path;
            song.Size = "2048";
            song.Bitrate = "128";
            song.Date = "2/26/00 11:22:33 PM";
            songs[path] = song;
        }
        songs["/m/gone.mp3"] = NonExistantSong();
        setup.Lister = &lister;
        setup.FilterMode = 0;
        setup.ReadAheadThreads = 0;
        setup.ReadSong = [this](const std::string& path) {
            return songs.count(path) != 0 ? songs[path] : NonExistantSong();
        };
    }

    std::vector<std::string> Search(const std::string& folder, bool subfolders,
                                    std::string query = "love") {
        request.Query = TextQuery(query, false);
        request.Fields = ParseFieldFlags("111111111");
        request.Subfolders = subfolders;
        rows.clear();
        end = SearchFolder(folder, request, setup, rows, front);
        std::vector<std::string> paths;
        for (const ListRow& row : rows) {
            paths.emplace_back(row.Get(Column::Filename));
        }
        return paths;
    }

    test::FakeFolderLister lister;
    std::map<std::string, SongInfo> songs;
    RealFileSetup setup;
    SearchRequest request;
    RowList rows;
    RealSearchFront front;
    SearchEnd end = SearchEnd::Done;
};

TEST_F(RealSearchTest, SubfoldersOnlyWhenAskedAndNeverTemporaryInternet) {
    EXPECT_EQ(Search("/m", true), (std::vector<std::string>{"/m/a.mp3", "/m/b.mp3", "/m/sub/c.mp3",
                                                            "/m/sub/deeper/e.mp3"}));
    EXPECT_EQ(front.panel, "Searching directories...");
    EXPECT_EQ(Search("/m", false), (std::vector<std::string>{"/m/a.mp3", "/m/b.mp3"}));
    EXPECT_EQ(front.panel, "Searching directory...");
    EXPECT_EQ(front.statuses.back(), "Searching /m/");
    // A search that starts inside such a folder searches it.
    EXPECT_EQ(Search("/m/Temporary Internet Files", false),
              (std::vector<std::string>{"/m/Temporary Internet Files/d.mp3"}));
    EXPECT_EQ(end, SearchEnd::Done);
}

TEST_F(RealSearchTest, RowsOfRealFilesAreTrimmed) {
    Search("/m", false, "");
    ASSERT_EQ(rows.size(), 2U);  // the unreadable file is skipped silently
    EXPECT_EQ(rows[0].Get(Column::Artist), "Spaced");
    EXPECT_EQ(rows[0].Get(Column::Bitrate), "128 ");
}

TEST_F(RealSearchTest, AbortStopsBeforeTheNextFile) {
    front.abortAfter = 1;
    EXPECT_EQ(Search("/m", true).size(), 1U);
    EXPECT_EQ(end, SearchEnd::Aborted);
}

TEST_F(RealSearchTest, AFailedDateEndsTheSearchWithNoRow) {
    SizeDateCriteria criteria;
    criteria.TimeMode = kBetween;
    criteria.DateText = "1/1/98 - whenever";
    request.SizeDate = SizeDateTest(criteria, CivilMoment{});
    EXPECT_TRUE(Search("/m", true).empty());
    EXPECT_EQ(end, SearchEnd::Failed);
    // Text that matches nothing still reaches the test: the failure does not wait for a hit.
    EXPECT_TRUE(Search("/m", true, "no such text").empty());
    EXPECT_EQ(end, SearchEnd::Failed);
}

TEST_F(RealSearchTest, AllDrivesSkipDrivesNotReadyAndTheHomeShortcut) {
    lister.AddFolder("/", {"root.mp3", "m/"});
    lister.AddFolder("/home/ann", {"home.mp3"});
    lister.AddFolder("/media/cd", {"cd.mp3"});
    for (const char* path : {"/root.mp3", "/home/ann/home.mp3", "/media/cd/cd.mp3"}) {
        SongInfo song;
        song.Title = "love";
        song.Path = path;
        songs[path] = song;
    }
    DriveList drives = {DriveRoot{"/", "/", "", kDriveFixed, 1, false},
                        DriveRoot{"/home/ann", "ann", "", kDriveFixed, 1, true},
                        DriveRoot{"/media/cd", "CD", "CD", kDriveNotReady, 2, false}};
    request.Query = TextQuery("love", false);
    request.Fields = ParseFieldFlags("111111111");
    request.Subfolders = false;  // only the drives' own files
    EXPECT_EQ(SearchAllRealDrives(drives, request, setup, rows, front), SearchEnd::Done);
    EXPECT_EQ(front.panel, "Searching My Computer...");
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].Get(Column::Filename), "/root.mp3");
    rows.clear();
    request.Subfolders = true;
    SearchAllRealDrives(drives, request, setup, rows, front);
    EXPECT_EQ(rows.size(), 5U);  // "/" and everything under /m, on the same device
}

}  // namespace
}  // namespace jk
