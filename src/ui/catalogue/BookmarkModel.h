#pragma once

// The bookmark editor's rows: a table model over its own copy of the bookmarks (the editor
// applies them on closing), with the slide, remove and sort commands on it.

#include <vector>

#include <QAbstractTableModel>

#include "catalogue/Bookmarks.h"

namespace jk {

class BookmarkModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    enum class Column { Name, Location, Count };

    explicit BookmarkModel(BookmarkList bookmarks, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

    const BookmarkList& Bookmarks() const { return m_bookmarks; }
    // The rows flagged in `selected` slid; the flags follow their rows.
    void SlideRows(std::vector<bool>& selected, Slide slide);
    // The flagged rows taken out.
    void RemoveRows(const std::vector<bool>& selected);
    // A click on a column head.
    void SortByColumn(int column);

private:
    BookmarkList m_bookmarks;
};

}  // namespace jk
