#include "ui/catalogue/CacheViewerModel.h"

#include <limits>

#include "catalogue/CacheViewerText.h"
#include "catalogue/SongCache.h"
#include "ui/common/QtText.h"

namespace jk {

namespace {

// Columns whose texts are numbers stand right-aligned: Year, Time, Bitrate, Size.
bool IsNumberColumn(int column) {
    return column == 3 || column == 5 || column == 6 || column == 9;
}

}  // namespace

CacheViewerModel::CacheViewerModel(const SongCache& cache, QObject* parent)
    : QAbstractTableModel(parent), m_cache(cache) {}

int CacheViewerModel::rowCount(const QModelIndex& parent) const {
    if (parent.isValid()) {
        return 0;
    }
    constexpr auto kMaxRows = static_cast<std::int64_t>(std::numeric_limits<int>::max());
    return static_cast<int>(std::min(m_cache.UpperBound(), kMaxRows));
}

int CacheViewerModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : kCacheViewerColumns;
}

QVariant CacheViewerModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole) {
        return ToQString(CacheViewerText(m_cache, index.row() + 1, index.column()));
    }
    if (role == Qt::TextAlignmentRole && IsNumberColumn(index.column())) {
        return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
    }
    return {};
}

QVariant CacheViewerModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 ||
        section >= kCacheViewerColumns) {
        return QAbstractTableModel::headerData(section, orientation, role);
    }
    return ToQString(CacheViewerHeaders()[static_cast<std::size_t>(section)]);
}

void CacheViewerModel::CacheChanged() {
    beginResetModel();
    endResetModel();
}

}  // namespace jk
