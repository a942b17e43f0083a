#include "app/ui/ListPane.h"

#include <algorithm>
#include <vector>

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>

#include "app/ColumnLayout.h"
#include "listing/ListRow.h"
#include "playback/ui/PlaylistModel.h"

namespace jk {

namespace {

constexpr int kColumns = static_cast<int>(kColumnCount);
// A column squeezed below this is taken as hidden by the user.
constexpr int kNarrowest = 24;
constexpr int kWidestOptimized = 420;

}  // namespace

ListPane::ListPane(PlaylistModel& model, QWidget* parent) : QTableView(parent), m_model(model) {
    setModel(&m_model);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setAlternatingRowColors(true);
    setWordWrap(false);
    setTextElideMode(Qt::ElideRight);
    setCornerButtonEnabled(false);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setFrameShape(QFrame::NoFrame);

    QHeaderView* rows = verticalHeader();
    rows->hide();
    rows->setSectionResizeMode(QHeaderView::Fixed);
    rows->setDefaultSectionSize(fontMetrics().height() + 8);
    rows->setMinimumSectionSize(fontMetrics().height() + 2);

    QHeaderView* header = horizontalHeader();
    header->setSectionsMovable(true);
    header->setSectionsClickable(true);
    header->setHighlightSections(false);
    header->setStretchLastSection(false);
    header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    header->setMinimumSectionSize(kNarrowest);
    header->setSortIndicatorShown(false);
    header->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(header, &QHeaderView::sectionClicked, this, &ListPane::HeaderClicked);
    connect(header, &QHeaderView::customContextMenuRequested, this, &ListPane::ShowHeaderMenu);
    connect(this, &QTableView::doubleClicked, this,
            [this](const QModelIndex& index) { Q_EMIT RowActivated(index.row()); });
    ResetColumns();
}

void ListPane::SelectionToRows() {
    m_model.ApplySelection(selectionModel()->selection());
}

void ListPane::RowsToSelection() {
    selectionModel()->select(m_model.SelectionOfRows(), QItemSelectionModel::ClearAndSelect);
}

int ListPane::CommandRow() const {
    const QModelIndexList rows = selectionModel()->selectedRows();
    if (!rows.isEmpty()) {
        int first = rows.front().row();
        for (const QModelIndex& index : rows) {
            first = std::min(first, index.row());
        }
        return first;
    }
    return currentIndex().isValid() ? currentIndex().row() : -1;
}

int ListPane::DefaultWidth(int column) const {
    return DefaultColumnChars(column) * fontMetrics().averageCharWidth() + 12;
}

void ListPane::ApplyColumnLayout(const std::string& order, const ColumnWidths& widths) {
    QHeaderView* header = horizontalHeader();
    const std::vector<int> columns = ParseColumnOrder(order, kColumns);
    for (int visual = 0; visual < kColumns; ++visual) {
        const int logical = columns[static_cast<std::size_t>(visual)];
        header->moveSection(header->visualIndex(logical), visual);
    }
    for (int column = 0; column < kColumns; ++column) {
        const ColumnWidth width = ColumnWidthOf(widths, column);
        header->setSectionHidden(column, width.hidden);
        header->resizeSection(column, width.pixels > 1 ? width.pixels : DefaultWidth(column));
    }
}

void ListPane::StoreColumnLayout(std::string& order, ColumnWidths& widths) const {
    const QHeaderView* header = horizontalHeader();
    std::vector<int> columns;
    columns.reserve(kColumns);
    for (int visual = 0; visual < kColumns; ++visual) {
        columns.push_back(header->logicalIndex(visual));
    }
    order = FormatColumnOrder(columns, order, kColumns);
    for (int column = 0; column < kColumns; ++column) {
        StoreColumnWidth(widths, column,
                         {header->sectionSize(column), header->isSectionHidden(column)});
    }
}

void ListPane::ResetColumns() {
    QHeaderView* header = horizontalHeader();
    for (int column = 0; column < kColumns; ++column) {
        header->moveSection(header->visualIndex(column), column);
        header->setSectionHidden(column, false);
        header->resizeSection(column, DefaultWidth(column));
    }
}

void ListPane::OptimizeColumns() {
    // Measured over the rows in sight, so that a list of 100,000 songs answers at once.
    QHeaderView* header = horizontalHeader();
    for (int column = 0; column < kColumns; ++column) {
        if (header->isSectionHidden(column)) {
            continue;
        }
        const int wanted = std::max(sizeHintForColumn(column), header->sectionSizeHint(column));
        header->resizeSection(column, std::clamp(wanted, kNarrowest, kWidestOptimized));
    }
}

void ListPane::ShowSortIndicator(bool sorted, int column, bool descending) {
    QHeaderView* header = horizontalHeader();
    header->setSortIndicatorShown(sorted);
    if (sorted) {
        header->setSortIndicator(column, descending ? Qt::DescendingOrder : Qt::AscendingOrder);
    }
}

void ListPane::ShowHeaderMenu(const QPoint& pos) {
    QHeaderView* header = horizontalHeader();
    QMenu menu(this);
    int shown = 0;
    for (int column = 0; column < kColumns; ++column) {
        shown += header->isSectionHidden(column) ? 0 : 1;
    }
    for (int visual = 0; visual < kColumns; ++visual) {
        const int column = header->logicalIndex(visual);
        QAction* action =
            menu.addAction(m_model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString());
        action->setCheckable(true);
        action->setChecked(!header->isSectionHidden(column));
        // The last column shown stays: a pane without columns could not get them back.
        action->setEnabled(header->isSectionHidden(column) || shown > 1);
        connect(action, &QAction::toggled, this, [this, header, column](bool on) {
            header->setSectionHidden(column, !on);
            if (on && header->sectionSize(column) < kNarrowest) {
                header->resizeSection(column, DefaultWidth(column));
            }
        });
    }
    menu.addSeparator();
    menu.addAction(QStringLiteral("Show all columns"), this, [header] {
        for (int column = 0; column < kColumns; ++column) {
            header->setSectionHidden(column, false);
        }
    });
    menu.exec(header->mapToGlobal(pos));
}

void ListPane::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Delete && event->modifiers() == Qt::NoModifier) {
        Q_EMIT DeletePressed();
        return;
    }
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) &&
        event->modifiers() == Qt::NoModifier) {
        if (currentIndex().isValid()) {
            Q_EMIT RowActivated(currentIndex().row());
        }
        return;
    }
    QTableView::keyPressEvent(event);
}

void ListPane::focusInEvent(QFocusEvent* event) {
    QTableView::focusInEvent(event);
    Q_EMIT Focused();
}

void ListPane::contextMenuEvent(QContextMenuEvent* event) {
    Q_EMIT Focused();
    const QModelIndex index = indexAt(viewport()->mapFromGlobal(event->globalPos()));
    if (index.isValid() && !selectionModel()->isRowSelected(index.row(), QModelIndex())) {
        selectionModel()->select(index,
                                 QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        setCurrentIndex(index);
    }
    Q_EMIT ContextMenuAsked(event->globalPos());
}

}  // namespace jk
