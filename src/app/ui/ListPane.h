#pragma once

// A list pane (ListView1, the files; ListView2, the playlist): a table view over a
// PlaylistModel with whole-row selection, a header whose columns can be dragged, resized,
// hidden and sorted by a click, and the keys and clicks the main window turns into commands.

#include <string>

#include <QTableView>

#include "app/Settings.h"

class QMenu;

namespace jk {

class PlaylistModel;

class ListPane final : public QTableView {
    Q_OBJECT

public:
    ListPane(PlaylistModel& model, QWidget* parent = nullptr);

    PlaylistModel& Model() { return m_model; }

    // The view's selection into the rows' flags (before a command), and back (after one).
    void SelectionToRows();
    void RowsToSelection();
    // The first selected row, or the current one; -1 for none.
    int CommandRow() const;

    // Column order and widths from the settings; unset widths get the defaults.
    void ApplyColumnLayout(const std::string& order, const ColumnWidths& widths);
    // The same back into the settings (`order` keeps tokens it does not know).
    void StoreColumnLayout(std::string& order, ColumnWidths& widths) const;
    // Natural order, default widths, every column shown.
    void ResetColumns();
    // Each column as wide as its contents need, within reason.
    void OptimizeColumns();

    // The sort indicator, as the settings' Sorted, Sortkey and Sortorder keep it.
    void ShowSortIndicator(bool sorted, int column, bool descending);

Q_SIGNALS:
    // A click on a column's header.
    void HeaderClicked(int column);
    void DeletePressed();
    void RowActivated(int row);  // a double click, or Enter
    void ContextMenuAsked(const QPoint& globalPos);
    void Focused();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void ShowHeaderMenu(const QPoint& pos);
    int DefaultWidth(int column) const;

    PlaylistModel& m_model;
};

}  // namespace jk
