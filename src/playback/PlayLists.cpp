#include "playback/PlayLists.h"

#include <algorithm>

#include "playback/Shuffler.h"

namespace jk {

namespace {

std::string PathOf(const ListRow& row) {
    return std::string(row.Get(Column::Filename));
}

}  // namespace

std::vector<std::string> AllRowPaths(const RowList& rows) {
    std::vector<std::string> paths;
    paths.reserve(rows.size());
    for (const ListRow& row : rows) {
        paths.push_back(PathOf(row));
    }
    return paths;
}

std::vector<std::string> SelectedRowPaths(const RowList& rows) {
    std::vector<std::string> paths;
    for (const ListRow& row : rows) {
        if (row.Selected()) {
            paths.push_back(PathOf(row));
        }
    }
    return paths;
}

std::vector<std::string> WrappedRowPaths(const RowList& rows) {
    const auto first =
        std::find_if(rows.begin(), rows.end(), [](const ListRow& row) { return row.Selected(); });
    const std::size_t start =
        first == rows.end() ? 0 : static_cast<std::size_t>(first - rows.begin());
    std::vector<std::string> paths;
    paths.reserve(rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        paths.push_back(PathOf(rows[(start + i) % rows.size()]));
    }
    return paths;
}

std::vector<std::string> ShuffledRowPaths(const RowList& rows, bool enhanced,
                                          ShuffleRandom& random) {
    RowList copy = rows;
    ShuffleListRows(copy, false, enhanced, random);
    return AllRowPaths(copy);
}

}  // namespace jk
