// A result list sorted by a column header: sizes by number, dates by date, texts ignoring case.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "finders/ResultSort.h"

namespace jk {
namespace {

RowList RowsOf(Column column, std::initializer_list<const char*> texts) {
    RowList rows;
    int n = 0;
    for (const char* text : texts) {
        ListRow row;
        row.Set(column, text);
        row.Set(Column::Comment, std::to_string(n++));  // tells equal keys apart
        rows.push_back(row);
    }
    return rows;
}

std::string Order(const RowList& rows) {
    std::string order;
    for (const ListRow& row : rows) {
        order += std::string(row.Get(Column::Comment));
    }
    return order;
}

TEST(ResultSort, EachColumnSortsByWhatItShows) {
    struct Case {
        const char* what;
        Column column;
        std::initializer_list<const char*> texts;
        bool descending;
        const char* order;
    };
    const Case cases[] = {
        {"sizes by number, not by text",
         Column::Size,
         {"900", "10000", "0123", "95"},
         false,
         "3201"},
        {"sizes descending", Column::Size, {"900", "10000", "95"}, true, "102"},
        {"a size that is no number counts as 0", Column::Size, {"12", "abc"}, false, "10"},
        {"dates by day, across years",
         Column::Date,
         {"12/31/99 10:00:00", "1/2/00 09:00:00", "2001-01-01", "1/2/00 08:00:00"},
         false,
         "0312"},
        {"a text that is no date before every date",
         Column::Date,
         {"1/1/01", "never"},
         false,
         "10"},
        {"titles ignoring case, equal ones keep their order",
         Column::Title,
         {"b", "A", "a", "Ä", "B"},
         false,
         "12043"},
        {"a column outside the twelve leaves the rows", Column::Count, {"b", "a"}, false, "01"},
    };
    for (const Case& c : cases) {
        RowList rows = RowsOf(c.column == Column::Count ? Column::Title : c.column, c.texts);
        SortResultRows(rows, static_cast<int>(c.column), c.descending);
        EXPECT_EQ(Order(rows), c.order) << c.what;
    }
}

TEST(ResultSort, SelectedFlagsTravelWithTheirRows) {
    RowList rows = RowsOf(Column::Title, {"c", "a", "b"});
    rows[0].SetSelected(true);
    SortResultRows(rows, static_cast<int>(Column::Title), false);
    EXPECT_FALSE(rows[0].Selected());
    EXPECT_TRUE(rows[2].Selected());
    EXPECT_EQ(rows[2].Get(Column::Title), "c");
}

}  // namespace
}  // namespace jk
