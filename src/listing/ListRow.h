#pragma once

// A row of a list pane: twelve text columns and a selected flag. Rows are the model of the
// playlist and of the files pane; there is no second copy. The columns live in one heap block
// per row, so that 100,000 rows stay small.

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace jk {

enum class Column : std::uint8_t {
    Title = 0,
    Artist,
    Album,
    Year,
    Genre,
    Time,
    Bitrate,
    Filename,
    Comment,
    Size,
    Date,
    Volume,
    Count
};

inline constexpr std::size_t kColumnCount = static_cast<std::size_t>(Column::Count);

// The column captions, in column order.
const std::array<std::string_view, kColumnCount>& ColumnCaptions();

class ListRow {
public:
    ListRow() = default;
    explicit ListRow(const std::array<std::string_view, kColumnCount>& columns);

    std::string_view Get(Column column) const;
    std::string_view Get(std::size_t column) const;
    void Set(Column column, std::string_view text);
    void SetAll(const std::array<std::string_view, kColumnCount>& columns);
    std::array<std::string_view, kColumnCount> All() const;
    // Every column back to back: a text found in no part of it is in no column.
    std::string_view Text() const { return m_text; }

    bool Selected() const { return m_selected; }
    void SetSelected(bool selected) { m_selected = selected; }

    friend bool operator==(const ListRow& a, const ListRow& b) {
        return a.All() == b.All() && a.m_selected == b.m_selected;
    }

private:
    // Column texts back to back; m_ends[i] is the end offset of column i.
    std::string m_text;
    std::array<std::uint32_t, kColumnCount> m_ends{};
    bool m_selected = false;
};

using RowList = std::vector<ListRow>;

}  // namespace jk
