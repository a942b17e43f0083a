#include "finders/ui/ResultsModel.h"

#include <QFont>

#include "finders/ResultSort.h"

namespace jk {

ResultsModel::ResultsModel(RowList& rows, QObject* parent)
    : QAbstractTableModel(parent), m_rows(rows), m_shownRows(static_cast<int>(rows.size())) {
    for (const std::string_view caption : ColumnCaptions()) {
        m_captions << QString::fromUtf8(caption.data(), static_cast<qsizetype>(caption.size()));
    }
}

int ResultsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_shownRows;
}

int ResultsModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(kColumnCount);
}

QVariant ResultsModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= m_shownRows ||
        static_cast<std::size_t>(index.row()) >= m_rows.size()) {
        return {};
    }
    const auto row = static_cast<std::size_t>(index.row());
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole) {
        const std::string_view text = m_rows[row].Get(static_cast<std::size_t>(index.column()));
        return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    }
    const bool kept = row < m_kept.size() && m_kept[row];
    if (role == KeptRole) {
        return kept;
    }
    if (role == Qt::FontRole && kept) {
        QFont font;
        font.setBold(true);
        return font;
    }
    if (role == Qt::TextAlignmentRole && index.column() == static_cast<int>(Column::Size)) {
        return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
    }
    return {};
}

QVariant ResultsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 &&
        section < m_captions.size()) {
        return m_captions[section];
    }
    return QAbstractTableModel::headerData(section, orientation, role);
}

void ResultsModel::sort(int column, Qt::SortOrder order) {
    if (m_beforeReadingAll) {
        m_beforeReadingAll();
    }
    Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    // The rows carry their selected flags with them; the window selects from those again.
    SortResultRows(m_rows, column, order == Qt::DescendingOrder);
    m_kept.clear();
    const QModelIndexList before = persistentIndexList();
    changePersistentIndexList(before, QModelIndexList(before.size()));
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

void ResultsModel::RowsAppended() {
    const int total = static_cast<int>(m_rows.size());
    if (total < m_shownRows) {
        RowsReplaced();
        return;
    }
    if (total == m_shownRows) {
        return;
    }
    beginInsertRows({}, m_shownRows, total - 1);
    m_shownRows = total;
    endInsertRows();
}

void ResultsModel::RowsReplaced() {
    beginResetModel();
    m_shownRows = static_cast<int>(m_rows.size());
    m_kept.clear();
    endResetModel();
}

void ResultsModel::ApplySelection(const QItemSelection& selection) {
    if (m_beforeReadingAll) {
        m_beforeReadingAll();
    }
    for (ListRow& row : m_rows) {
        row.SetSelected(false);
    }
    for (const QItemSelectionRange& range : selection) {
        for (int r = range.top(); r <= range.bottom(); ++r) {
            if (r >= 0 && static_cast<std::size_t>(r) < m_rows.size()) {
                m_rows[static_cast<std::size_t>(r)].SetSelected(true);
            }
        }
    }
}

QItemSelection ResultsModel::SelectionOfRows() const {
    QItemSelection selection;
    const int last = static_cast<int>(kColumnCount) - 1;
    int start = -1;
    for (int r = 0; r <= m_shownRows; ++r) {
        const bool selected = r < m_shownRows && m_rows[static_cast<std::size_t>(r)].Selected();
        if (selected && start < 0) {
            start = r;
        } else if (!selected && start >= 0) {
            selection.select(index(start, 0), index(r - 1, last));
            start = -1;
        }
    }
    return selection;
}

void ResultsModel::SetKept(std::vector<bool> kept) {
    m_kept = std::move(kept);
    if (m_shownRows > 0) {
        Q_EMIT dataChanged(index(0, 0), index(m_shownRows - 1, static_cast<int>(kColumnCount) - 1),
                           {Qt::FontRole, KeptRole});
    }
}

}  // namespace jk
