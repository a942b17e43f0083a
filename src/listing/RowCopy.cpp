#include "listing/RowCopy.h"

#include <array>

#include "util/Text.h"

namespace jk {
namespace {

constexpr std::array<Column, 5> kRightTrimmed = {Column::Artist, Column::Album, Column::Filename,
                                                 Column::Comment, Column::Volume};

std::size_t AppendRows(const RowList& files, RowList& playlist, bool selectedOnly) {
    // By position, up to the count at the start: a list appended to itself moves its rows as
    // it grows, and the rows it gains are not read again.
    const std::size_t count = files.size();
    std::size_t added = 0;
    for (std::size_t i = 0; i < count; ++i) {
        if (selectedOnly && !files[i].Selected()) {
            continue;
        }
        playlist.push_back(PlaylistRowOf(files[i]));
        ++added;
    }
    return added;
}

}  // namespace

ListRow PlaylistRowOf(const ListRow& source) {
    std::array<std::string_view, kColumnCount> columns = source.All();
    const std::string_view title = RTrim(source.Get(Column::Title));
    columns[0] = title.empty() ? RTrim(source.Get(Column::Filename)) : title;
    for (Column column : kRightTrimmed) {
        const auto index = static_cast<std::size_t>(column);
        columns[index] = RTrim(columns[index]);
    }
    return ListRow(columns);
}

std::size_t GetDir(const RowList& files, RowList& playlist) {
    return AppendRows(files, playlist, false);
}

std::size_t AddToList(const RowList& files, RowList& playlist) {
    return AppendRows(files, playlist, true);
}

}  // namespace jk
