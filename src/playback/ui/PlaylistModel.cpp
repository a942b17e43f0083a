#include "playback/ui/PlaylistModel.h"

#include <algorithm>
#include <climits>
#include <string_view>

namespace jk {
namespace {

int ClampedCount(std::size_t count) {
    return static_cast<int>(std::min<std::size_t>(count, INT_MAX));
}

QString ToQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

PlaylistModel::PlaylistModel(RowList& rows, QObject* parent)
    : QAbstractTableModel(parent), m_rows(rows), m_shownRows(ClampedCount(rows.size())) {
    for (std::string_view caption : ColumnCaptions()) {
        m_captions.append(ToQString(caption));
    }
}

int PlaylistModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_shownRows;
}

int PlaylistModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(kColumnCount);
}

QVariant PlaylistModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() ||
        !checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    // Between a core change and the word of it, the view may still ask for a row that went.
    const auto row = static_cast<std::size_t>(index.row());
    if (row >= m_rows.size()) {
        return {};
    }
    switch (role) {
        case Qt::DisplayRole:
            return ToQString(m_rows[row].Get(static_cast<std::size_t>(index.column())));
        case SelectedRole:
            return m_rows[row].Selected();
        default:
            return {};
    }
}

bool PlaylistModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != SelectedRole || !index.isValid() ||
        !checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return false;
    }
    const auto row = static_cast<std::size_t>(index.row());
    if (row >= m_rows.size()) {
        return false;
    }
    m_rows[row].SetSelected(value.toBool());
    Q_EMIT dataChanged(this->index(index.row(), 0), this->index(index.row(), columnCount() - 1),
                       {SelectedRole});
    return true;
}

QVariant PlaylistModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 &&
        section < m_captions.size()) {
        return m_captions[section];
    }
    return QAbstractTableModel::headerData(section, orientation, role);
}

Qt::ItemFlags PlaylistModel::flags(const QModelIndex& index) const {
    if (!index.isValid() ||
        !checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return Qt::NoItemFlags;
    }
    return Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
}

void PlaylistModel::RowsAppended() {
    const int count = ClampedCount(m_rows.size());
    if (count < m_shownRows) {
        RowsReplaced();
        return;
    }
    if (count == m_shownRows) {
        return;
    }
    beginInsertRows(QModelIndex(), m_shownRows, count - 1);
    m_shownRows = count;
    endInsertRows();
}

void PlaylistModel::RowsReplaced() {
    beginResetModel();
    m_shownRows = ClampedCount(m_rows.size());
    endResetModel();
}

void PlaylistModel::RowsChanged(std::size_t first, std::size_t last) {
    if (m_shownRows == 0 || first > last || first >= static_cast<std::size_t>(m_shownRows)) {
        return;
    }
    last = std::min(last, static_cast<std::size_t>(m_shownRows) - 1);
    Q_EMIT dataChanged(index(static_cast<int>(first), 0),
                       index(static_cast<int>(last), columnCount() - 1));
}

void PlaylistModel::ApplySelection(const QItemSelection& selection) {
    for (ListRow& row : m_rows) {
        row.SetSelected(false);
    }
    const int limit = std::min(m_shownRows, ClampedCount(m_rows.size()));
    for (const QItemSelectionRange& range : selection) {
        if (range.model() != this || range.parent().isValid()) {
            continue;
        }
        const int last = std::min(range.bottom(), limit - 1);
        for (int row = std::max(range.top(), 0); row <= last; ++row) {
            m_rows[static_cast<std::size_t>(row)].SetSelected(true);
        }
    }
    if (m_shownRows > 0) {
        Q_EMIT dataChanged(index(0, 0), index(m_shownRows - 1, columnCount() - 1), {SelectedRole});
    }
}

QItemSelection PlaylistModel::SelectionOfRows() const {
    QItemSelection selection;
    const int limit = std::min(m_shownRows, ClampedCount(m_rows.size()));
    const int lastColumn = columnCount() - 1;
    int row = 0;
    while (row < limit) {
        if (!m_rows[static_cast<std::size_t>(row)].Selected()) {
            ++row;
            continue;
        }
        const int first = row;
        while (row < limit && m_rows[static_cast<std::size_t>(row)].Selected()) {
            ++row;
        }
        selection.append(QItemSelectionRange(index(first, 0), index(row - 1, lastColumn)));
    }
    return selection;
}

}  // namespace jk
