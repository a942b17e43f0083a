#include "playback/ui/PlaylistModel.h"

#include <algorithm>
#include <climits>
#include <set>
#include <string_view>

#include <QMimeData>
#include <QUrl>

#include "listing/RowEditing.h"
#include "listing/RowSort.h"

namespace jk {
namespace {

int ClampedCount(std::size_t count) {
    return static_cast<int>(std::min<std::size_t>(count, INT_MAX));
}

QString ToQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

const QString PlaylistModel::kRowsMimeType = QStringLiteral("application/x-jukarra-rows");

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
    const auto row = static_cast<std::size_t>(index.row());
    if (row >= m_rows.size()) {
        return {};
    }
    switch (role) {
        case Qt::DisplayRole:
        case Qt::ToolTipRole:
            if (role == Qt::ToolTipRole && index.column() != static_cast<int>(Column::Filename)) {
                return {};
            }
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
    if (!index.isValid()) {
        return Qt::ItemIsDropEnabled;
    }
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return Qt::NoItemFlags;
    }
    return Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren |
           Qt::ItemIsDragEnabled;
}

void PlaylistModel::sort(int column, Qt::SortOrder order) {
    SortBy(column, order == Qt::DescendingOrder);
}

QStringList PlaylistModel::mimeTypes() const {
    return {kRowsMimeType, QStringLiteral("text/uri-list")};
}

QMimeData* PlaylistModel::mimeData(const QModelIndexList& indexes) const {
    std::set<int> rows;
    for (const QModelIndex& index : indexes) {
        if (index.isValid() && index.model() == this &&
            static_cast<std::size_t>(index.row()) < m_rows.size()) {
            rows.insert(index.row());
        }
    }
    auto* data = new QMimeData;
    QList<QUrl> urls;
    QByteArray numbers;
    for (const int row : rows) {
        const std::string_view path = m_rows[static_cast<std::size_t>(row)].Get(Column::Filename);
        if (!path.empty() && path.front() == '/') {
            urls.append(QUrl::fromLocalFile(ToQString(path)));
        }
        numbers += QByteArray::number(row) + ' ';
    }
    data->setUrls(urls);
    // The source pane, so a drop can tell a move within the pane from rows of the other one.
    data->setData(kRowsMimeType,
                  QByteArray::number(reinterpret_cast<quintptr>(this)) + ':' + numbers);
    return data;
}

Qt::DropActions PlaylistModel::supportedDropActions() const {
    return Qt::CopyAction | Qt::MoveAction;
}

Qt::DropActions PlaylistModel::supportedDragActions() const {
    return Qt::CopyAction | Qt::MoveAction;
}

bool PlaylistModel::canDropMimeData(const QMimeData* data, Qt::DropAction /*action*/, int /*row*/,
                                    int /*column*/, const QModelIndex& parent) const {
    return m_dropHandler && data != nullptr && !parent.isValid() &&
           (data->hasFormat(kRowsMimeType) || data->hasUrls());
}

bool PlaylistModel::dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                                 const QModelIndex& parent) {
    if (!canDropMimeData(data, action, row, column, parent)) {
        return false;
    }
    // The handler moves or adds the rows itself; the view is never asked to remove the source
    // rows afterwards (removeRows is not offered).
    return m_dropHandler(*data, row, action);
}

void PlaylistModel::AppendRows(RowList rows) {
    InsertRows(m_rows.size(), std::move(rows));
}

void PlaylistModel::AppendFrom(RowList& rows, std::size_t count) {
    count = std::min(count, rows.size());
    if (count == 0) {
        return;
    }
    const auto end = rows.begin() + static_cast<std::ptrdiff_t>(count);
    beginInsertRows(QModelIndex(), ClampedCount(m_rows.size()),
                    ClampedCount(m_rows.size() + count - 1));
    m_rows.insert(m_rows.end(), std::make_move_iterator(rows.begin()),
                  std::make_move_iterator(end));
    m_shownRows = ClampedCount(m_rows.size());
    endInsertRows();
    rows.erase(rows.begin(), end);
}

void PlaylistModel::InsertRows(std::size_t at, RowList rows) {
    if (rows.empty()) {
        return;
    }
    at = std::min(at, m_rows.size());
    const int first = ClampedCount(at);
    const int last = ClampedCount(at + rows.size() - 1);
    beginInsertRows(QModelIndex(), first, last);
    m_rows.insert(m_rows.begin() + static_cast<std::ptrdiff_t>(at),
                  std::make_move_iterator(rows.begin()), std::make_move_iterator(rows.end()));
    m_shownRows = ClampedCount(m_rows.size());
    endInsertRows();
}

void PlaylistModel::ChangeAll(const std::function<void(RowList&)>& change) {
    beginResetModel();
    change(m_rows);
    m_shownRows = ClampedCount(m_rows.size());
    endResetModel();
}

bool PlaylistModel::Reorder(const std::function<bool(RowList&)>& change) {
    Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const std::size_t before = m_rows.size();
    const bool moved = change(m_rows);
    if (m_rows.size() != before) {
        // Not a reorder after all: the views must start afresh.
        Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
        Resync();
        return true;
    }
    // Persistent indexes keep their row numbers; the window sets the selection anew from the
    // rows' flags, which travelled with the rows.
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
    return moved;
}

std::size_t PlaylistModel::RemoveSelected() {
    const std::size_t first = FirstSelected(m_rows);
    if (first >= m_rows.size()) {
        return 0;
    }
    std::size_t end = first;
    while (end < m_rows.size() && m_rows[end].Selected()) {
        ++end;
    }
    const bool together =
        std::none_of(m_rows.begin() + static_cast<std::ptrdiff_t>(end), m_rows.end(),
                     [](const ListRow& row) { return row.Selected(); });
    if (!together) {
        std::size_t removed = 0;
        ChangeAll([&removed](RowList& rows) { removed = RemoveSelectedRows(rows); });
        return removed;
    }
    beginRemoveRows(QModelIndex(), ClampedCount(first), ClampedCount(end - 1));
    m_rows.erase(m_rows.begin() + static_cast<std::ptrdiff_t>(first),
                 m_rows.begin() + static_cast<std::ptrdiff_t>(end));
    m_shownRows = ClampedCount(m_rows.size());
    endRemoveRows();
    return end - first;
}

void PlaylistModel::SortBy(int column, bool descending) {
    Reorder([column, descending](RowList& rows) {
        SortRows(rows, column, descending);
        return true;
    });
}

void PlaylistModel::RowsChanged(std::size_t first, std::size_t last) {
    if (m_shownRows == 0 || first > last || first >= static_cast<std::size_t>(m_shownRows)) {
        return;
    }
    last = std::min(last, static_cast<std::size_t>(m_shownRows) - 1);
    Q_EMIT dataChanged(index(static_cast<int>(first), 0),
                       index(static_cast<int>(last), columnCount() - 1));
}

void PlaylistModel::Resync() {
    beginResetModel();
    m_shownRows = ClampedCount(m_rows.size());
    endResetModel();
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
