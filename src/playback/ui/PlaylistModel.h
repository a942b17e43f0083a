#pragma once

// The table a list pane shows: the rows themselves (there is no second copy), twelve columns
// under their captions. Every change of the rows goes through the model, which tells its views
// before the change is made: an append is one insertion, a reorder (a slide, a sort, a
// shuffle) one layout change, anything else one reset, never a signal per row. Rows dragged out
// of a pane carry their files as a uri-list; what a drop brings is handed to the window.

#include <cstddef>
#include <functional>

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

    // The format that tells rows dragged within the program from files dropped from outside.
    static const QString kRowsMimeType;

    // What a drop onto the pane brings, ahead of row `row` (-1: at the end); true when taken.
    using DropHandler = std::function<bool(const QMimeData& data, int row, Qt::DropAction action)>;

    // `rows` must outlive the model.
    explicit PlaylistModel(RowList& rows, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    void sort(int column, Qt::SortOrder order) override;

    QStringList mimeTypes() const override;
    QMimeData* mimeData(const QModelIndexList& indexes) const override;
    Qt::DropActions supportedDropActions() const override;
    Qt::DropActions supportedDragActions() const override;
    bool canDropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                         const QModelIndex& parent) const override;
    bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                      const QModelIndex& parent) override;

    // ---- Changes, each told to the views before it is made ----
    // Adds rows behind those there are: one insertion.
    void AppendRows(RowList rows);
    // The same with the first `count` rows of `rows`, moved out of it: one insertion. What is
    // left of `rows` moves to its front, and it keeps its room for the next batch.
    void AppendFrom(RowList& rows, std::size_t count);
    // Adds rows ahead of row `at` (at the end when past it): one insertion.
    void InsertRows(std::size_t at, RowList rows);
    // Any change of the rows that the views cannot follow row by row: one reset.
    void ChangeAll(const std::function<void(RowList&)>& change);
    // A change that only moves rows (or flips their selected flags): one layout change. The
    // change returns whether anything moved.
    bool Reorder(const std::function<bool(RowList&)>& change);
    // Drops the selected rows: one removal when they stand together, else one reset. Returns
    // the count removed.
    std::size_t RemoveSelected();
    // Sorts by a column, as a click on its header does.
    void SortBy(int column, bool descending);
    // After the texts of rows first to last changed in place (a tag edited, a file moved).
    void RowsChanged(std::size_t first, std::size_t last);
    // After the rows were filled outside the model, before any view could be told (start-up
    // reads the last playlist while the pane is not yet in use): the views start afresh.
    void Resync();

    // ---- The selection ----
    // The view's selection into the rows' flags, before a command that acts on the selected
    // rows; every row outside `selection` is unselected.
    void ApplySelection(const QItemSelection& selection);
    // The rows' flags as a selection the view can show, one range per run of selected rows.
    QItemSelection SelectionOfRows() const;

    void SetDropHandler(DropHandler handler) { m_dropHandler = std::move(handler); }
    RowList& Rows() { return m_rows; }
    const RowList& Rows() const { return m_rows; }

private:
    RowList& m_rows;
    // The rows the views know of; it lags behind m_rows.size() only until Resync.
    int m_shownRows = 0;
    QStringList m_captions;
    DropHandler m_dropHandler;
};

}  // namespace jk
