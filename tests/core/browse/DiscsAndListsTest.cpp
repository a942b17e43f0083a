#include <gtest/gtest.h>

#include "browse/VirtualListing.h"
#include "catalogue/Bookmarks.h"
#include "catalogue/InsertDisc.h"
#include "catalogue/VirtualImages.h"
#include "catalogue/VirtualSummary.h"
#include "core/catalogue/VdriveTestSupport.h"

namespace jk {
namespace {

using test::TempFolder;
using test::VolumeSong;

class FakeDiscQuestions final : public InsertDiscQuestions {
public:
    std::vector<RetryAnswer> retries;
    std::vector<bool> yesNo;
    std::vector<std::string> asked;
    std::function<void()> onRetry;
    RetryAnswer AskRetryCancel(const UserMessage& q) override {
        asked.push_back(q.text);
        const RetryAnswer a = retries.empty() ? RetryAnswer::Cancel : retries.front();
        if (!retries.empty()) {
            retries.erase(retries.begin());
        }
        if (a == RetryAnswer::Retry && onRetry) {
            onRetry();
        }
        return a;
    }
    bool AskYesNo(const UserMessage& q) override {
        asked.push_back(q.text);
        return !yesNo.empty() && yesNo.front();
    }
};

VirtualCatalogue TwoDiscs() {
    VirtualCatalogue c;
    c.Volumes.emplace_back("Rock");
    c.Volumes[0].Append(VolumeSong("Rock", "/media/ann/ROCK/a/1.mp3"));
    c.Volumes[0].Append(VolumeSong("Rock", "/media/ann/ROCK/a/2.mp3"));
    c.Volumes.emplace_back("Jazz");
    c.Volumes[1].Append(VolumeSong("Jazz", "/media/ann/JAZZ/3.mp3"));
    c.Discs = {{"Rock", "ROCK", "11-22", "vfat", "/media/ann/ROCK", "2024"}};
    return c;
}

TEST(InsertDiscTest, OneAbsentDiscAsksForItAndRetrySeesItInserted) {
    const VirtualCatalogue c = TwoDiscs();
    MountedDiscs mounted;
    FakeDiscQuestions questions;
    questions.retries = {RetryAnswer::Retry};
    // Inserted at another root, found by its UUID though its label changed.
    questions.onRetry = [&] { mounted = {{"/run/media/ann/X", "OTHER", "11-22", "vfat"}}; };
    const PlayCheckSources sources{[&] { return mounted; },
                                   [](const std::string& p) { return p.rfind("/run/", 0) == 0; }};
    const PlayCheck check = CheckDiscsBeforePlay(
        {"/media/ann/ROCK/a/1.mp3", "/media/ann/ROCK/a/2.mp3"}, c, sources, questions);
    ASSERT_EQ(questions.asked.size(), 1u);
    EXPECT_EQ(questions.asked[0],
              "Please insert the disc \"Rock\" (label ROCK) to play these 2 songs.");
    EXPECT_TRUE(check.play);
    EXPECT_EQ(check.paths,
              (std::vector<std::string>{"/run/media/ann/X/a/1.mp3", "/run/media/ann/X/a/2.mp3"}));
}

TEST(InsertDiscTest, SeveralAbsentDiscsOrPresentSongsAskToPlayTheOthers) {
    const VirtualCatalogue c = TwoDiscs();
    const PlayCheckSources sources{[] { return MountedDiscs{}; },
                                   [](const std::string& p) { return p == "/home/x.mp3"; }};
    FakeDiscQuestions yes;
    yes.yesNo = {true};
    const PlayCheck check = CheckDiscsBeforePlay(
        {"/media/ann/ROCK/a/1.mp3", "/home/x.mp3", "/media/ann/JAZZ/3.mp3"}, c, sources, yes);
    ASSERT_EQ(yes.asked.size(), 1u);
    EXPECT_EQ(yes.asked[0],
              "2 songs are on discs that are not inserted: Rock, Jazz.  Play the "
              "others?");
    EXPECT_EQ(check.paths, std::vector<std::string>{"/home/x.mp3"});
    EXPECT_EQ(check.kept, std::vector<std::size_t>{1});
    FakeDiscQuestions no;
    EXPECT_FALSE(
        CheckDiscsBeforePlay({"/media/ann/ROCK/a/1.mp3", "/home/x.mp3"}, c, sources, no).play);
    // An imported volume with no record asks for a disc labelled with its name.
    FakeDiscQuestions cancel;
    EXPECT_FALSE(CheckDiscsBeforePlay({"/media/ann/JAZZ/3.mp3"}, c, sources, cancel).play);
    EXPECT_EQ(cancel.asked[0], "Please insert the disc \"Jazz\" (label Jazz) to play this song.");
}

TEST(DiscPresenceTest, MatchByUuidThenLabelIgnoringCase) {
    const VirtualCatalogue c = TwoDiscs();
    const MountedDiscs discs = {{"/media/ann/jazz", "jazz", "", "iso9660"},
                                {"/media/ann/R", "rock", "99", "vfat"}};
    const std::vector<PresentVolume> present = PresentVolumes(c.Volumes, c.Discs, discs);
    // Rock's UUID is not mounted; its label matches ignoring case.
    ASSERT_EQ(present.size(), 2u);
    EXPECT_EQ(present[0].MountRoot, "/media/ann/R");
    EXPECT_EQ(present[1].MountRoot, "/media/ann/jazz");
    EXPECT_EQ(InsertedTooltip("/media/ann/R"), "Inserted at /media/ann/R");
    EXPECT_EQ(ResolveSongPath("d:\\a\\b.mp3", nullptr, discs[0]), "/media/ann/jazz/a/b.mp3");
    EXPECT_EQ(DiscOfPath(discs, "/media/ann/R/x")->Label, "rock");
}

TEST(VirtualListingTest, FolderRowsRestoreTimeAndTakeTitlesFromNames) {
    VolumeTable table;
    table.emplace_back("CD");
    SongInfo untitled = VolumeSong("CD", "/media/u/CD/rock/my_song.mp3", "");
    untitled.Time = "0325";
    table[0].Append(untitled);
    table[0].Append(VolumeSong("CD", "/media/u/CD/rock/sub/2.mp3"));
    RowList rows;
    ASSERT_EQ(GetVirtualFolder(table, "CD/rock", rows, true), 1u);
    EXPECT_EQ(rows[0].Get(Column::Title), "my song");
    EXPECT_EQ(rows[0].Get(Column::Time), "03:25");
    EXPECT_EQ(rows[0].Get(Column::Filename), "/media/u/CD/rock/my_song.mp3");
    EXPECT_EQ(rows[0].Get(Column::Volume), "CD");
    RowList playlist;
    EXPECT_EQ(RecurseDirVirtual(table, "CD/rock", playlist, true), 2u);
    EXPECT_EQ(RecurseAllVirtual(table, playlist, true), 2u);
    EXPECT_EQ(playlist.size(), 4u);
    EXPECT_EQ(GetVirtualFolder(table, "Nope/rock", rows, true), 0u);
}

TEST(VirtualSummaryTest, SizesInMegabytesUpTo1024ThenGigabytes) {
    EXPECT_EQ(SummarySizeText(1024.0 * 1024 * 1024), "1024.00 MB");
    EXPECT_EQ(SummarySizeText(1024.0 * 1024 * 1025), "1.00 GB");
    VolumeTable table;
    table.emplace_back("A");
    SongInfo longSong = VolumeSong("A", "/1");
    longSong.Time = "100:05";
    table[0].Append(longSong);
    table.emplace_back("B");
    table[1].Append(VolumeSong("B", "/2"));  // 03:25
    const VirtualSummary exact = SummarizeVolumes(table, true);
    EXPECT_EQ(exact.Drives, 2);
    EXPECT_EQ(exact.Songs, 2);
    EXPECT_EQ(exact.Seconds, 6005 + 205);
    EXPECT_EQ(exact.TimeText, "01:43:30");
    EXPECT_EQ(SummarizeVolumes(table, false).Seconds, 10 * 60 + 5 + 205);
}

TEST(VirtualImagesTest, ExportWritesVersion100WithTrackSuffixAndImportKeepsIt) {
    TempFolder folder;
    VolumeTable table;
    table.emplace_back("Rock");
    SongInfo song = VolumeSong("Rock", "/m/1.mp3");
    song.Album = "Blue";
    song.Track = 7;
    table[0].Append(song);
    const std::string image = folder.File("out.jvd");
    EXPECT_FALSE(ExportVolumes(table, {}, image).written);
    EXPECT_FALSE(FileExists(image));
    ASSERT_TRUE(ExportVolumes(table, {"Rock"}, image).written);
    EXPECT_EQ(test::ReadBytes(image).substr(0, 10), "VBASE 1.00");

    VirtualCatalogue c;
    c.Volumes.emplace_back("Rock");
    for (const char* expected : {"Rock (2)", "Rock (3)"}) {
        const ImportResult imported = ImportImage(c, image);
        ASSERT_EQ(imported.names, std::vector<std::string>{expected});
    }
    EXPECT_EQ(c.Volumes[1].Song(0).Album, "Blue - 07");
    EXPECT_EQ(c.Volumes[1].Song(0).Volume, "Rock (2)");
    // A file of any other form yields no volume.
    const ImportResult junk = ImportImage(c, folder.Write("junk.jvd", "JUNK"));
    EXPECT_TRUE(junk.names.empty());
}

TEST(BookmarksTest, PairsTrimmedLastUnpairedLineDroppedMenuOfTen) {
    EXPECT_EQ(ParseBookmarks("  Name \r\n /music \r\nOdd\r\n"), (BookmarkList{{"Name", "/music"}}));
    EXPECT_EQ(ParseBookmarks("A\nB"), (BookmarkList{{"A", "B"}}));
    BookmarkList list;
    for (int i = 1; i <= 11; ++i) {
        list.push_back({"B" + std::to_string(i), "/"});
    }
    bool more = false;
    const std::vector<std::string> captions = BookmarkMenuCaptions(list, more);
    ASSERT_EQ(captions.size(), 10u);
    EXPECT_EQ(captions[0], "&1 B1");
    EXPECT_EQ(captions[9], "&0 B10");
    EXPECT_TRUE(more);
    TempFolder folder;
    ASSERT_TRUE(SaveBookmarks(folder.File("bookmark.dat"), list).ok);
    EXPECT_EQ(LoadBookmarks(folder.File("bookmark.dat")), list);
    EXPECT_TRUE(LoadBookmarks(folder.File("none.dat")).empty());

    BookmarkList three = {{"a", "1"}, {"b", "2"}, {"c", "3"}};
    std::vector<bool> selected = {false, false, true};
    SlideBookmarks(three, selected, Slide::Top);
    EXPECT_EQ(three[0].Name, "c");
    EXPECT_TRUE(selected[0]);
    SlideBookmarks(three, selected, Slide::Down);
    EXPECT_EQ(three[1].Name, "c");
    SortBookmarks(three, 0);
    EXPECT_EQ(three[0].Name, "a");
    EXPECT_EQ(BookmarkDestination(folder.Path() + "/gone/deeper"), folder.Path());
    EXPECT_EQ(BookmarkDestination("Rock/a"), "Rock/a");
}

}  // namespace
}  // namespace jk
