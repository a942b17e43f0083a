#pragma once

// CacheViewer: every cached record in a list of its own, one row each; the list grows and
// shrinks with the window.

#include <QDialog>

class QTableView;

namespace jk {

class CacheViewerModel;
class SongCache;

class CacheViewer final : public QDialog {
    Q_OBJECT

public:
    explicit CacheViewer(const SongCache& cache, QWidget* parent = nullptr);

    QTableView* View() const { return m_view; }
    CacheViewerModel* Model() const { return m_model; }

private:
    CacheViewerModel* m_model = nullptr;
    QTableView* m_view = nullptr;
};

}  // namespace jk
