#pragma once

// The table a list pane shows: the rows of the playlist themselves (there is no second copy),
// twelve columns under their captions. The core changes the rows; the window tells this model
// afterwards what kind of change it was, so the view catches up.

#include <cstddef>

#include <QAbstractTableModel>
#include <QItemSelection>
#include <QStringList>

#include "listing/ListRow.h"

namespace jk {

class PlaylistModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Role {
        // The row's selected flag, the one the core's commands act on (bool).
        SelectedRole = Qt::UserRole + 1,
    };

    // `rows` must outlive the model.
    explicit PlaylistModel(RowList& rows, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    // After the core added rows behind those shown (a folder walk, a list appended). A list
    // shorter than the view knows is taken as the reset it must be.
    void RowsAppended();
    // After the core replaced, removed or reordered rows (a list opened, RemoveFromList, a
    // shuffle, a sort): the view starts afresh.
    void RowsReplaced();
    // After the core changed the texts or flags of rows first to last, in place.
    void RowsChanged(std::size_t first, std::size_t last);

    // The view's selection into the rows' flags, before a command that acts on the selected
    // rows; every row outside `selection` is unselected.
    void ApplySelection(const QItemSelection& selection);
    // The rows' flags as a selection the view can show, one range per run of selected rows.
    QItemSelection SelectionOfRows() const;

private:
    RowList& m_rows;
    // The rows the view knows of; it lags behind m_rows.size() until the model is told.
    int m_shownRows = 0;
    QStringList m_captions;
};

}  // namespace jk
