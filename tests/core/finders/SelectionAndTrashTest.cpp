// The Selection wizard on the panes' rows, and the delete road of the result lists.

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <string>
#include <vector>

#include "finders/SelectionWizard.h"
#include "finders/TrashRows.h"

namespace jk {
namespace {

RowList Pane(std::initializer_list<std::pair<const char*, const char*>> titleAndTime) {
    RowList rows;
    for (const auto& [title, time] : titleAndTime) {
        ListRow row;
        row.Set(Column::Title, title);
        row.Set(Column::Time, time);
        row.Set(Column::Filename, std::string("/m/") + title + ".mp3");
        rows.push_back(row);
    }
    return rows;
}

std::vector<bool> SelectedOf(const RowList& rows) {
    std::vector<bool> out;
    for (const ListRow& row : rows) {
        out.push_back(row.Selected());
    }
    return out;
}

TEST(SelectionWizard, TheTestOnlyAddsAndRetainDecidesWhatStays) {
    RowList rows = Pane({{"Love", "03:00"}, {"Hate", "04:00"}, {"", "05:00"}});
    rows[1].SetSelected(true);
    const SearchFieldSet title = ParseFieldFlags("1", kSelectFieldCount);
    SelectRows(rows, TextQuery("nothing", false), title, true);
    EXPECT_EQ(SelectedOf(rows), (std::vector<bool>{false, true, false}));  // stays as it was
    SelectRows(rows, TextQuery("love", false), title, true);
    EXPECT_EQ(SelectedOf(rows), (std::vector<bool>{true, true, false}));
    SelectRows(rows, TextQuery("nothing", false), title, false);
    EXPECT_EQ(SelectedOf(rows), (std::vector<bool>{false, false, false}));  // emptied
    SelectRows(rows, TextQuery("", false), title, false);                   // every non-empty title
    EXPECT_EQ(SelectedOf(rows), (std::vector<bool>{true, true, false}));
    SelectRows(rows, TextQuery("04:", false), ParseFieldFlags("000001", kSelectFieldCount), false);
    EXPECT_EQ(SelectedOf(rows), (std::vector<bool>{false, true, false}));  // Time is a field
    SelectRows(rows, TextQuery("love", false), SearchFieldSet(), false);
    EXPECT_EQ(SelectedOf(rows), (std::vector<bool>{false, false, false}));
    SelectRows(rows, TextQuery("LOVE", true), ParseFieldFlags("111111111"), false);
    EXPECT_EQ(SelectedOf(rows), (std::vector<bool>{false, false, false}));
}

// The fast paths (eight positions at a time, every column at once first) against the text test
// of each column by itself, the query and the columns folded and searched plainly.
TEST(SelectionWizard, SelectsWhatThePlainFoldedSearchOfEachColumnFinds) {
    std::mt19937 random(77);
    const auto below = [&random](std::size_t n) {
        return std::uniform_int_distribution<std::size_t>(0, n - 1)(random);
    };
    const std::vector<std::string> pieces = {"a", "B", "ab", "AB", "b",    "@",    "`",  "[", "{",
                                             " ", "1", "é",  "É",  "\xC3", "\xA9", "zZ", ""};
    const auto text = [&](std::size_t most) {
        std::string out;
        for (std::size_t n = below(most); n > 0; --n) {
            out += pieces[below(pieces.size())];
        }
        return out;
    };
    for (int round = 0; round < 300; ++round) {
        RowList rows(20);
        for (ListRow& row : rows) {
            for (std::size_t c = 0; c < kColumnCount; ++c) {
                row.Set(static_cast<Column>(c), text(below(3) == 0 ? 30 : 6));
            }
        }
        const std::string query = text(4);
        const bool binary = below(4) == 0;
        SearchFieldSet fields;
        for (std::size_t f = 0; f < kSelectFieldCount; ++f) {
            fields.set(f, below(3) != 0);
        }
        SelectRows(rows, TextQuery(query, binary), fields, false);
        for (const ListRow& row : rows) {
            bool expected = false;
            for (std::size_t f = 0; f < kSelectFieldCount; ++f) {
                const std::string_view column = row.Get(SelectFields()[f].Pane);
                const std::string haystack = binary ? std::string(column) : FoldedText(column);
                const std::string needle = binary ? query : FoldedText(query);
                expected = expected || (fields.test(f) && !column.empty() &&
                                        haystack.find(needle) != std::string::npos);
            }
            ASSERT_EQ(row.Selected(), expected)
                << "query \"" << query << "\" in \"" << row.Text() << "\" binary " << binary;
        }
    }
}

TEST(SelectionWizard, OkayWorksOnEachChosenPaneAndStoresTheSettings) {
    Settings settings;
    settings.Selects = {"", "love", "a", "b", "c"};
    RowList files = Pane({{"Love", "03:00"}, {"Other", "03:00"}});
    RowList playlist = Pane({{"Other", "03:00"}, {"love me", "03:00"}});
    files[1].SetSelected(true);
    SelectionChoice choice = InitialSelection(settings);
    EXPECT_EQ(choice.Text, "love");  // Combo1 starts as Select1
    choice.Text = "LOVE";
    choice.Fields = ParseFieldFlags("100000000");
    choice.Window = SelectWindow::Both;
    choice.Retain = true;
    const SelectionCounts counts = RunSelection(settings, files, playlist, choice);
    EXPECT_EQ(counts.Files, 2U);
    EXPECT_EQ(counts.Playlist, 1U);
    EXPECT_EQ(SelectedOf(playlist), (std::vector<bool>{false, true}));
    EXPECT_EQ(settings.Selects, (TextList4{"", "love", "a", "b", "c"}));  // found first: kept
    EXPECT_EQ(settings.SelectMode, 2);
    EXPECT_EQ(settings.SaveSelect, 1);
    EXPECT_EQ(settings.SelectOptions, "100000000");
    choice.Window = SelectWindow::Playlist;
    choice.Text = "new";
    RunSelection(settings, files, playlist, choice);
    EXPECT_EQ(SelectedOf(files), (std::vector<bool>{true, true}));  // untouched
    EXPECT_EQ(settings.Selects, (TextList4{"", "new", "love", "a", "b"}));
}

TEST(TrashRows, ARowGoesOnlyWhenItsFileReachedTheTrash) {
    RowList rows = Pane({{"a", ""}, {"b", ""}, {"c", ""}, {"d", ""}});
    rows.push_back(rows[0]);  // "a" listed twice
    std::vector<std::string> asked;
    const TrashFile trash = [&asked](const std::string& path, std::string& why) {
        asked.push_back(path);
        if (path == "/m/c.mp3") {
            why = "read-only";
            return false;
        }
        return true;
    };
    const TrashOutcome outcome = TrashSelectedRows(rows, {true, false, true, false, true}, trash);
    // Last row to first; the second "a" goes with the first without a second try.
    EXPECT_EQ(asked, (std::vector<std::string>{"/m/a.mp3", "/m/c.mp3"}));
    EXPECT_EQ(outcome.Removed, (std::vector<std::size_t>{4, 0}));
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_EQ(rows[1].Get(Column::Title), "c");
    ASSERT_EQ(outcome.Failed.size(), 1U);
    const UserMessage message = TrashFailuresMessage(outcome.Failed);
    EXPECT_NE(message.text.find("/m/c.mp3 (read-only)"), std::string::npos);
    EXPECT_EQ(DeleteFilesQuestion().text, "Are you sure you want to delete?");
    EXPECT_EQ(DeleteFilesQuestion().title, "Verify");
}

}  // namespace
}  // namespace jk
