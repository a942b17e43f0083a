#include "ui/catalogue/BookmarkModel.h"

#include <QIcon>

#include "ui/catalogue/DialogParts.h"

namespace jk {

BookmarkModel::BookmarkModel(BookmarkList bookmarks, QObject* parent)
    : QAbstractTableModel(parent), m_bookmarks(std::move(bookmarks)) {}

int BookmarkModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_bookmarks.size());
}

int BookmarkModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(Column::Count);
}

QVariant BookmarkModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const Bookmark& mark = m_bookmarks[static_cast<std::size_t>(index.row())];
    const bool name = static_cast<Column>(index.column()) == Column::Name;
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole) {
        return ToQString(name ? mark.Name : mark.Location);
    }
    if (role == Qt::DecorationRole && name) {
        return ThemedIcon("bookmarks");
    }
    return {};
}

QVariant BookmarkModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    return static_cast<Column>(section) == Column::Name ? QStringLiteral("Name")
                                                        : QStringLiteral("Location");
}

void BookmarkModel::SlideRows(std::vector<bool>& selected, Slide slide) {
    beginResetModel();
    SlideBookmarks(m_bookmarks, selected, slide);
    endResetModel();
}

void BookmarkModel::RemoveRows(const std::vector<bool>& selected) {
    beginResetModel();
    BookmarkList kept;
    for (std::size_t row = 0; row < m_bookmarks.size(); ++row) {
        if (row >= selected.size() || !selected[row]) {
            kept.push_back(m_bookmarks[row]);
        }
    }
    m_bookmarks = std::move(kept);
    endResetModel();
}

void BookmarkModel::SortByColumn(int column) {
    beginResetModel();
    SortBookmarks(m_bookmarks, column);
    endResetModel();
}

}  // namespace jk
