#pragma once

// The cache viewer's table: the song cache itself (no copy), one row a record, one column a
// field. Whoever changes the cache while a view shows it calls CacheChanged.

#include <QAbstractTableModel>

namespace jk {

class SongCache;

class CacheViewerModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    // `cache` must outlive the model.
    explicit CacheViewerModel(const SongCache& cache, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

    // After records were added, removed or reordered: the view starts afresh.
    void CacheChanged();

private:
    const SongCache& m_cache;
};

}  // namespace jk
