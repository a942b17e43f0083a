#include "ui/catalogue/CacheViewer.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QTableView>
#include <QVBoxLayout>

#include "catalogue/CacheViewerText.h"
#include "catalogue/SongCache.h"
#include "ui/catalogue/CacheViewerModel.h"

namespace jk {

namespace {

// Widths that suit each column's usual text, in characters: titles and names wide, numbers
// narrow.
constexpr int kColumnChars[kCacheViewerColumns] = {28, 20, 22, 6, 12, 7, 7, 30, 20, 10, 12, 19, 19};

}  // namespace

CacheViewer::CacheViewer(const SongCache& cache, QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("CacheViewer"));
    setWindowTitle(QString::fromUtf8(kCacheViewerCaption.data(),
                                     static_cast<qsizetype>(kCacheViewerCaption.size())));
    m_model = new CacheViewerModel(cache, this);
    m_view = new QTableView;
    m_view->setObjectName(QStringLiteral("ListView1"));
    m_view->setModel(m_model);
    m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_view->setAlternatingRowColors(true);
    m_view->setWordWrap(false);
    m_view->setShowGrid(false);
    m_view->verticalHeader()->hide();
    m_view->verticalHeader()->setDefaultSectionSize(m_view->fontMetrics().height() + 6);
    m_view->horizontalHeader()->setHighlightSections(false);
    const int charWidth = m_view->fontMetrics().averageCharWidth();
    for (int column = 0; column < kCacheViewerColumns; ++column) {
        m_view->setColumnWidth(column, kColumnChars[column] * charWidth + 12);
    }

    const std::int64_t records = cache.UpperBound();
    auto* count = new QLabel(records == 1 ? tr("1 record") : tr("%1 records").arg(records));
    count->setObjectName(QStringLiteral("lblCount"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* bottom = new QHBoxLayout;
    bottom->addWidget(count);
    bottom->addWidget(buttons, 1);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_view, 1);
    layout->addLayout(bottom);
    resize(960, 560);
}

}  // namespace jk
