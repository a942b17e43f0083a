#pragma once

// The table of a finder's result list (ResultsView): the rows the window holds, under the
// twelve column captions. The core changes the rows; the window tells the model afterwards.
// A click on a header sorts through the core (Size by number, Date by date).

#include <cstddef>
#include <functional>
#include <vector>

#include <QAbstractTableModel>
#include <QItemSelection>
#include <QStringList>

#include "listing/ListRow.h"

namespace jk {

class ResultsModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    // Bold text: the copy a keep-best proposal keeps.
    enum Role { KeptRole = Qt::UserRole + 1 };

    // `rows` must outlive the model.
    explicit ResultsModel(RowList& rows, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    void sort(int column, Qt::SortOrder order) override;

    // After the core added rows behind those shown.
    void RowsAppended();
    // After the core replaced, removed or reordered rows.
    void RowsReplaced();

    // The view's selection into the rows' flags (before a command on the selected rows).
    void ApplySelection(const QItemSelection& selection);
    // The rows' flags as a selection for the view.
    QItemSelection SelectionOfRows() const;

    // The rows a proposal keeps (shown in bold); cleared by RowsReplaced.
    void SetKept(std::vector<bool> kept);
    // Called before a sort or a selection reads every row (the rows still to come are made).
    void SetBeforeReadingAll(std::function<void()> before) {
        m_beforeReadingAll = std::move(before);
    }

private:
    RowList& m_rows;
    int m_shownRows = 0;
    std::vector<bool> m_kept;
    QStringList m_captions;
    std::function<void()> m_beforeReadingAll;
};

}  // namespace jk
