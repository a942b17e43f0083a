// The data behind the main window's commands: column orders and widths as the settings keep
// them, what a double click and the Delete key do, file transfer plans, a song's properties and
// its tag changes, the help pages, the tips and the Go menu's captions.

#include <set>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "app/ColumnLayout.h"
#include "app/FileTransferPlan.h"
#include "app/HelpPages.h"
#include "app/PaneActions.h"
#include "app/SongProperties.h"

namespace jk {
namespace {

std::vector<int> Natural() {
    return {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};
}

TEST(ColumnLayout, ReadsAndWritesColumnOrders) {
    const std::vector<std::tuple<const char*, std::vector<int>>> reads = {
        {" 0x 1x 2x 3x 4x 5x 6x 7x 8x 9x 10x 11x 12x", Natural()},
        {" 12x 0x 1x 2x 3x 4x 5x 6x 7x 8x 9x 10x 11x 13x", Natural()},
        {" 7x 0x 1x", {7, 0, 1, 2, 3, 4, 5, 6, 8, 9, 10, 11}},
        {" 3x 3x junk -1x 99x 2x", {3, 2, 0, 1, 4, 5, 6, 7, 8, 9, 10, 11}},
        {"", Natural()},
    };
    for (const auto& [text, order] : reads) {
        EXPECT_EQ(ParseColumnOrder(text, 12), order) << text;
    }

    std::vector<int> moved = Natural();
    std::swap(moved[0], moved[7]);
    // The Windows program's columns 12 and 13 keep their places.
    EXPECT_EQ(FormatColumnOrder(moved, " 12x 0x 1x 2x 3x 4x 5x 6x 7x 8x 9x 10x 11x 13x", 12),
              " 12x 7x 1x 2x 3x 4x 5x 6x 0x 8x 9x 10x 11x 13x");
    EXPECT_EQ(FormatColumnOrder(Natural(), " 0x 1x 2x 3x 4x 5x 6x 7x 8x 9x 10x 11x 12x", 12),
              " 0x 1x 2x 3x 4x 5x 6x 7x 8x 9x 10x 11x 12x");
    EXPECT_EQ(FormatColumnOrder(Natural(), "", 12), " 0x 1x 2x 3x 4x 5x 6x 7x 8x 9x 10x 11x");
    EXPECT_EQ(ParseColumnOrder(FormatColumnOrder(moved, "", 12), 12), moved);
}

TEST(ColumnLayout, HiddenColumnsAreStoredAsOneAndUnsetOnesTakeTheDefault) {
    ColumnWidths widths{};
    EXPECT_EQ(ColumnWidthOf(widths, 0).pixels, 0);  // never set: the default
    EXPECT_FALSE(ColumnWidthOf(widths, 0).hidden);

    StoreColumnWidth(widths, 0, {200, false});
    StoreColumnWidth(widths, 1, {150, true});
    StoreColumnWidth(widths, 2, {0, false});  // squeezed to nothing counts as hidden
    StoreColumnWidth(widths, 11, {90, false});
    StoreColumnWidth(widths, 12, {90, false});  // no such column: ignored
    EXPECT_EQ(widths[1], 3000);
    EXPECT_EQ(widths[2], 1);
    EXPECT_EQ(widths[3], 1);
    EXPECT_EQ(widths[12], 1350);
    EXPECT_EQ(ColumnWidthOf(widths, 0).pixels, 200);
    EXPECT_TRUE(ColumnWidthOf(widths, 1).hidden);
    EXPECT_TRUE(ColumnWidthOf(widths, 2).hidden);
    EXPECT_EQ(ColumnWidthOf(widths, 11).pixels, 90);
    EXPECT_EQ(ColumnWidthOf(widths, -1).pixels, 0);
    EXPECT_GT(DefaultColumnChars(7), DefaultColumnChars(3));  // a path is wider than a year
}

TEST(PaneActions, DoubleClickAndDeleteKeyFollowTheirSettings) {
    EXPECT_EQ(DoubleClickAction(0), PaneAction::AddToList);
    EXPECT_EQ(DoubleClickAction(1), PaneAction::PlaySingle);
    EXPECT_EQ(DoubleClickAction(4), PaneAction::Queue);
    EXPECT_EQ(DoubleClickAction(5), PaneAction::Nothing);
    EXPECT_EQ(DoubleClickAction(-1), PaneAction::Nothing);
    EXPECT_EQ(DeleteKeyAction(0), PaneAction::RemoveFromList);
    EXPECT_EQ(DeleteKeyAction(1), PaneAction::DeleteFile);
    EXPECT_EQ(DeleteKeyAction(2), PaneAction::DeselectAll);
    EXPECT_EQ(DeleteKeyAction(3), PaneAction::Nothing);
    EXPECT_EQ(VisiblePanes(1, 0, 1), (PaneVisibility{true, false, true}));
    EXPECT_EQ(VisiblePanes(0, 0, 0), (PaneVisibility{true, true, true}));  // a file without them
    EXPECT_EQ(VisiblePanes(2, 0, 0), (PaneVisibility{true, true, true}));
    EXPECT_TRUE(DeleteEnabled(0));
    EXPECT_FALSE(DeleteEnabled(2));
    EXPECT_TRUE(DeleteAsks(0));
    EXPECT_FALSE(DeleteAsks(1));
    EXPECT_NE(DeleteQuestion(1, "a.mp3").text.find("\"a.mp3\""), std::string::npos);
    EXPECT_NE(DeleteQuestion(3, "a.mp3").text.find("these 3 files"), std::string::npos);
}

TEST(FileTransferPlan, NeverOverwritesAndSkipsWhatCannotGo) {
    const std::set<std::string> there = {"/a/one.mp3", "/a/two.mp3", "/b/two.mp3", "/c/one.mp3",
                                         "/a/three.mp3"};
    const auto exists = [&there](const std::string& path) { return there.contains(path); };
    const TransferPlan plan = PlanTransfer(
        {"/a/one.mp3", "/a/two.mp3", "/c/one.mp3", "/b/three.mp3", "virtual/x.mp3", "/d/"}, "/b",
        exists);
    ASSERT_EQ(plan.transfers.size(), 1u);
    EXPECT_EQ(plan.transfers[0].from, "/a/one.mp3");
    EXPECT_EQ(plan.transfers[0].to, "/b/one.mp3");
    ASSERT_EQ(plan.skipped.size(), 5u);
    EXPECT_EQ(plan.skipped[0].path, "/a/two.mp3");  // the name is taken there
    EXPECT_EQ(plan.skipped[1].path, "/c/one.mp3");  // a second file of the same name
    EXPECT_EQ(plan.skipped[2].reason, "the file is not there");
    EXPECT_EQ(PlanTransfer({"/b/two.mp3"}, "/b/", exists).skipped[0].reason,
              "it is in that folder already");
    EXPECT_EQ(SkippedText(plan.skipped, 2),
              "two.mp3: a file of that name is there already\none.mp3: a file of that name is "
              "there already\n... and 3 more");
}

TEST(FileTransferPlan, RowsFollowMovedFilesAndLeaveWithDeletedOnes) {
    RowList rows(4);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        rows[i].Set(Column::Filename, "/a/" + std::to_string(i % 2) + ".mp3");
        rows[i].SetSelected(i >= 2);
    }
    EXPECT_EQ(SelectedPaths(rows), (std::vector<std::string>{"/a/0.mp3", "/a/1.mp3"}));
    EXPECT_EQ(AllPaths(rows).size(), 2u);
    EXPECT_EQ(RetargetRows(rows, {{"/a/0.mp3", "/b/0.mp3"}}), 2u);
    EXPECT_EQ(rows[2].Get(Column::Filename), "/b/0.mp3");
    EXPECT_EQ(DropRowsOf(rows, {"/a/1.mp3"}), 2u);
    EXPECT_EQ(rows.size(), 2u);
}

TEST(SongProperties, ShowsTheRecordAndHandsOnOnlyWhatChanged) {
    SongInfo song;
    song.Title = "Jóga                          ";
    song.Artist = "Björk";
    song.Album = "Homogenic - 03";
    song.Track = 3;
    song.Year = "1997";
    song.Bitrate = " 256";
    const auto lines = SongPropertyLines(song, "/music/jóga.mp3", 1);
    EXPECT_EQ(lines[0].text, "jóga.mp3");  // abbreviated
    EXPECT_EQ(SongPropertyLines(song, "/music/jóga.mp3", 0)[0].text, "/music/jóga.mp3");
    EXPECT_EQ(lines[6].label, "Track");
    EXPECT_EQ(lines[6].text, "3");
    EXPECT_EQ(lines[9].text, "256");

    const TagFields before = EditableFields(song);
    EXPECT_EQ(before.Title, "Jóga");
    EXPECT_EQ(before.Album, "Homogenic");
    EXPECT_EQ(before.Track, "3");

    TagFields after = before;
    std::string error;
    EXPECT_FALSE(ChangesBetween(before, after, error).Any());
    after.Artist = "Bjork";
    after.Track = "";
    const TagChanges changes = ChangesBetween(before, after, error);
    EXPECT_TRUE(error.empty());
    EXPECT_EQ(changes.Artist, "Bjork");
    EXPECT_EQ(changes.Track, 0);
    EXPECT_FALSE(changes.Title.has_value());
    for (const char* bad : {"256", "-1", "x", "3b"}) {
        after.Track = bad;
        EXPECT_FALSE(ChangesBetween(before, after, error).Any()) << bad;
        EXPECT_FALSE(error.empty()) << bad;
    }
}

TEST(HelpPages, PagesTipsAndGoCaptions) {
    EXPECT_EQ(HelpPageFile("HelpWeb"), "index.html");
    EXPECT_EQ(HelpPageFile("OpenResources"), "resources.html");
    EXPECT_EQ(HelpPageFile("Tips"), "");
    EXPECT_EQ(HelpFolderCandidates("/usr/bin"),
              (std::vector<std::string>{"/usr/share/jukarra/help", "/usr/bin/help"}));

    const auto count = static_cast<std::int16_t>(TipTexts().size());
    EXPECT_EQ(NextTip(0), 1);
    EXPECT_EQ(NextTip(1), 2);
    EXPECT_EQ(NextTip(count), 1);
    EXPECT_EQ(PreviousTip(1), count);
    EXPECT_EQ(PreviousTip(2), 1);

    EXPECT_EQ(GoMenuCaption(1, "/music/R&B"), "&1 /music/R&&B");
    EXPECT_EQ(GoMenuCaption(10, "/x"), "&0 /x");
    EXPECT_EQ(GoMenuCaption(15, "/x"), "&E /x");
    EXPECT_EQ(GoMenuCaption(16, "/x"), "");
}

}  // namespace
}  // namespace jk
