#include "listing/ListRow.h"

namespace jk {

const std::array<std::string_view, kColumnCount>& ColumnCaptions() {
    static constexpr std::array<std::string_view, kColumnCount> kCaptions = {
        "Title",   "Artist",   "Album",   "Year", "Genre", "Time",
        "Bitrate", "Filename", "Comment", "Size", "Date",  "Volume"};
    return kCaptions;
}

ListRow::ListRow(const std::array<std::string_view, kColumnCount>& columns) {
    SetAll(columns);
}

std::string_view ListRow::Get(std::size_t column) const {
    if (column >= kColumnCount) {
        return {};
    }
    const std::uint32_t begin = column == 0 ? 0 : m_ends[column - 1];
    return std::string_view(m_text).substr(begin, m_ends[column] - begin);
}

std::string_view ListRow::Get(Column column) const {
    return Get(static_cast<std::size_t>(column));
}

void ListRow::SetAll(const std::array<std::string_view, kColumnCount>& columns) {
    std::size_t total = 0;
    for (std::string_view c : columns) {
        total += c.size();
    }
    std::string text;
    text.reserve(total);
    for (std::size_t i = 0; i < kColumnCount; ++i) {
        text.append(columns[i]);
        m_ends[i] = static_cast<std::uint32_t>(text.size());
    }
    m_text = std::move(text);
}

void ListRow::Set(Column column, std::string_view text) {
    const std::size_t index = static_cast<std::size_t>(column);
    if (index >= kColumnCount) {
        return;
    }
    const std::uint32_t begin = index == 0 ? 0 : m_ends[index - 1];
    const std::uint32_t oldLength = m_ends[index] - begin;
    // `text` may point into m_text itself, so splice through a fresh string.
    std::string spliced;
    spliced.reserve(m_text.size() - oldLength + text.size());
    spliced.append(m_text, 0, begin);
    spliced.append(text);
    spliced.append(m_text, begin + oldLength);
    const std::int64_t delta = static_cast<std::int64_t>(text.size()) - oldLength;
    for (std::size_t i = index; i < kColumnCount; ++i) {
        m_ends[i] = static_cast<std::uint32_t>(m_ends[i] + delta);
    }
    m_text = std::move(spliced);
}

std::array<std::string_view, kColumnCount> ListRow::All() const {
    std::array<std::string_view, kColumnCount> out;
    for (std::size_t i = 0; i < kColumnCount; ++i) {
        out[i] = Get(i);
    }
    return out;
}

}  // namespace jk
