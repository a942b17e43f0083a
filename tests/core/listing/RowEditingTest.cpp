// The list panes' editing commands on rows: sliding, reversing and cropping the selection, the
// clipboard of rows, the header sort, the status totals and "Jump to...".

#include <cstring>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "listing/RowClipboard.h"
#include "listing/RowEditing.h"
#include "listing/RowFind.h"
#include "listing/RowSort.h"
#include "listing/RowStats.h"

namespace jk {
namespace {

// Rows named by letters ("abcde"), each its own file; "x" in `selected` marks a selected row.
RowList Rows(std::string_view names, std::string_view selected = "") {
    RowList rows;
    for (std::size_t i = 0; i < names.size(); ++i) {
        ListRow row;
        row.Set(Column::Title, std::string(1, names[i]));
        row.Set(Column::Filename, "/music/" + std::string(1, names[i]) + ".mp3");
        row.SetSelected(i < selected.size() && selected[i] == 'x');
        rows.push_back(row);
    }
    return rows;
}

std::string Names(const RowList& rows) {
    std::string names;
    for (const ListRow& row : rows) {
        names += row.Get(Column::Title);
    }
    return names;
}

std::string Marks(const RowList& rows) {
    std::string marks;
    for (const ListRow& row : rows) {
        marks += row.Selected() ? 'x' : '.';
    }
    return marks;
}

TEST(RowEditing, SlidesMoveTheSelectionAndKeepItSelected) {
    using Slide = bool (*)(RowList&);
    // command, rows, selection, expected order, moved
    const std::vector<std::tuple<const char*, Slide, const char*, const char*, const char*, bool>>
        cases = {
            {"up", SlideUp, "abcde", "..x.x", "acbed", true},
            {"up at the top", SlideUp, "abcde", "xx..x", "abced", true},
            {"up, a block at the top", SlideUp, "abcde", "xx...", "abcde", false},
            {"down", SlideDown, "abcde", "x.x..", "badce", true},
            {"down at the bottom", SlideDown, "abcde", "x..xx", "bacde", true},
            {"down, nothing selected", SlideDown, "abcde", ".....", "abcde", false},
            {"top keeps the order", SlideTop, "abcde", ".x.x.", "bdace", true},
            {"top, already there", SlideTop, "abcde", "xx...", "abcde", false},
            {"bottom keeps the order", SlideBottom, "abcde", "x.x..", "bdeac", true},
            {"bottom, already there", SlideBottom, "abcde", "...xx", "abcde", false},
            {"reverse the selection", ReverseSelection, "abcde", "x.xx.", "dbcae", true},
            {"reverse one row", ReverseSelection, "abcde", "..x..", "abcde", false},
            {"reverse all", ReverseAll, "abcde", "x....", "edcba", true},
        };
    for (const auto& [name, slide, names, selected, expected, moved] : cases) {
        RowList rows = Rows(names, selected);
        const std::size_t selectedBefore = SelectedCount(rows);
        EXPECT_EQ(slide(rows), moved) << name;
        EXPECT_EQ(Names(rows), expected) << name;
        EXPECT_EQ(SelectedCount(rows), selectedBefore) << name;
        for (const ListRow& row : rows) {
            // The flag travelled with its row.
            const std::size_t at = std::string_view(names).find(row.Get(Column::Title)[0]);
            EXPECT_EQ(row.Selected(), at < std::strlen(selected) && selected[at] == 'x') << name;
        }
    }
}

TEST(RowEditing, CropKeepsTheSelectionAndTheSelectionCommandsFlipFlags) {
    RowList rows = Rows("abcde", ".x.x.");
    EXPECT_EQ(CropList(rows), 3u);
    EXPECT_EQ(Names(rows), "bd");

    RowList none = Rows("abc");
    EXPECT_EQ(CropList(none), 0u);  // nothing selected: nothing is cropped away
    EXPECT_EQ(Names(none), "abc");

    RowList flags = Rows("abcd", "x.x.");
    InvertSelection(flags);
    EXPECT_EQ(Marks(flags), ".x.x");
    EXPECT_EQ(FirstSelected(flags), 1u);
    SelectAllRows(flags);
    EXPECT_EQ(Marks(flags), "xxxx");
    SelectNoRows(flags);
    EXPECT_EQ(FirstSelected(flags), 4u);
    flags = Rows("abcd", "x..x");
    EXPECT_EQ(RemoveSelectedRows(flags), 2u);
    EXPECT_EQ(Names(flags), "bc");
}

TEST(RowEditing, DraggedRowsLandAheadOfTheDropRow) {
    const std::vector<std::tuple<const char*, std::size_t, const char*, std::size_t>> cases = {
        {".x.x.", 0, "bdace", 0},   // to the top
        {"x....", 3, "bcade", 2},   // down, ahead of d
        {"...xx", 1, "adebc", 1},   // up, ahead of b
        {".x...", 99, "acdeb", 4},  // past the end
        {".xx..", 2, "abcde", 1},   // onto itself
    };
    for (const auto& [selected, at, expected, first] : cases) {
        RowList rows = Rows("abcde", selected);
        EXPECT_EQ(MoveSelectedTo(rows, at), first) << selected << " to " << at;
        EXPECT_EQ(Names(rows), expected) << selected << " to " << at;
    }
}

TEST(RowClipboard, CutCopyAndPasteRows) {
    RowClipboard clipboard;
    RowList files = Rows("abcd", ".xx.");
    EXPECT_EQ(CopyRows(files, clipboard), 2u);
    EXPECT_FALSE(clipboard.Cut);
    EXPECT_EQ(Names(files), "abcd");
    EXPECT_EQ(Marks(clipboard.Rows), "..");

    RowList playlist = Rows("xyz", "x..");
    EXPECT_EQ(PasteRows(playlist, clipboard, 1), 2u);
    EXPECT_EQ(Names(playlist), "xbcyz");
    EXPECT_EQ(Marks(playlist), ".xx..");  // what came in is selected
    EXPECT_EQ(PasteRows(playlist, clipboard, 99), 2u);
    EXPECT_EQ(Names(playlist), "xbcyzbc");

    RowList list = Rows("abcd", "x..x");
    EXPECT_EQ(CutRows(list, clipboard), 2u);
    EXPECT_TRUE(clipboard.Cut);
    EXPECT_EQ(Names(list), "bc");
    EXPECT_EQ(Names(clipboard.Rows), "ad");
}

TEST(RowSort, ComparesWithoutCaseAndNumbersByValue) {
    const std::vector<std::tuple<const char*, const char*, int>> cases = {
        {"abc", "ABD", -1},     {"Abc", "abc", 0},
        {"9", "10", -1},        {"track 2", "track 10", -1},
        {"03:25", "12:01", -1}, {"007", "7", 0},
        {"", "a", -1},          {"b", "a", 1},
        {"Zoë", "Zoe", 1},      {"1999", "2000", -1},
        {"12345", "9999", 1},
    };
    for (const auto& [a, b, expected] : cases) {
        EXPECT_EQ(CompareNatural(a, b), expected) << a << " vs " << b;
        EXPECT_EQ(CompareNatural(b, a), -expected) << b << " vs " << a;
    }
}

TEST(RowSort, SortsByAColumnStablyBothWays) {
    RowList rows;
    for (const auto& [title, size] : std::vector<std::pair<const char*, const char*>>{
             {"b", "100"}, {"a", "9"}, {"c", "100"}, {"d", "20"}}) {
        ListRow row;
        row.Set(Column::Title, title);
        row.Set(Column::Size, size);
        rows.push_back(row);
    }
    SortRows(rows, static_cast<int>(Column::Size), false);
    EXPECT_EQ(Names(rows), "adbc");  // b and c tie and keep their order
    SortRows(rows, static_cast<int>(Column::Size), true);
    EXPECT_EQ(Names(rows), "bcda");
    SortRows(rows, static_cast<int>(Column::Title), false);
    EXPECT_EQ(Names(rows), "abcd");
    SortRows(rows, 12, false);  // no such column
    EXPECT_EQ(Names(rows), "abcd");
}

TEST(RowStats, TotalsOfTheRowsReadWell) {
    RowList rows = Rows("abc");
    rows[0].Set(Column::Time, "03:25");
    rows[0].Set(Column::Size, "4000000");
    rows[1].Set(Column::Time, "123:05");  // an exact time of two hours
    rows[1].Set(Column::Size, "junk");
    rows[2].Set(Column::Time, "");  // a ghost
    const RowTotals totals = TotalsOf(rows);
    EXPECT_EQ(totals.songs, 3u);
    EXPECT_EQ(totals.seconds, 205 + 7385);
    EXPECT_EQ(totals.bytes, 4000000);
    EXPECT_EQ(TotalsText(totals), "3 songs, 2:06:30, 3.8 MB");
    EXPECT_EQ(TotalsText({}), "0 songs");
    EXPECT_EQ(TotalsText({1, 0, 0}), "1 song");
    EXPECT_EQ(CountText(1234567), "1,234,567");
    EXPECT_EQ(SizeText(1023), "1023 bytes");
    EXPECT_EQ(SizeText(3LL << 30), "3.0 GB");
    EXPECT_EQ(DurationText(59), "0:59");
    EXPECT_EQ(SecondsOfTime("3:x5"), 0);
}

TEST(RowFind, JumpToFindsTheNextRowHoldingTheText) {
    RowList rows = Rows("abcd");
    rows[1].Set(Column::Artist, "Björk");
    rows[3].Set(Column::Album, "Homogenic BJÖRK");
    EXPECT_EQ(FindRow(rows, "björk", 0), 1u);
    EXPECT_EQ(FindRow(rows, "BJÖRK", 2), 3u);
    EXPECT_EQ(FindRow(rows, "björk", 4), 1u);            // past the end: from the top
    EXPECT_EQ(FindRow(rows, "c.mp3", 0), 2u);            // the file name counts
    EXPECT_EQ(FindRow(rows, "music", 0), std::nullopt);  // the folders don't
    EXPECT_EQ(FindRow(rows, "  ", 0), std::nullopt);
}

}  // namespace
}  // namespace jk
