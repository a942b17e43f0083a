#include "app/ui/ClipboardViewer.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QVBoxLayout>

#include "app/ui/ListPane.h"
#include "listing/RowClipboard.h"
#include "listing/RowStats.h"
#include "playback/ui/PlaylistModel.h"

namespace jk {

ClipboardViewer::ClipboardViewer(RowClipboard& clipboard, QWidget* parent)
    : QDialog(parent), m_clipboard(clipboard) {
    setObjectName(QStringLiteral("ClipboardViewer"));
    setWindowTitle(QStringLiteral("Clipboard"));
    m_model = new PlaylistModel(m_clipboard.Rows, this);
    m_list = new ListPane(*m_model, this);
    m_list->setObjectName(QStringLiteral("ListView1"));
    m_list->setDragEnabled(true);
    m_list->setDragDropMode(QAbstractItemView::DragOnly);
    m_summary = new QLabel(this);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::hide);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_summary);
    layout->addWidget(m_list, 1);
    layout->addWidget(buttons);
    resize(760, 360);
    Refresh();
}

ClipboardViewer::~ClipboardViewer() = default;

void ClipboardViewer::Refresh() {
    m_model->Resync();
    const std::string totals = TotalsText(TotalsOf(m_clipboard.Rows));
    m_summary->setText(QString::fromStdString(totals) +
                       (m_clipboard.Rows.empty()
                            ? QString()
                            : (m_clipboard.Cut ? QStringLiteral(" (cut: pasting files moves them)")
                                               : QStringLiteral(" (copied)"))));
}

}  // namespace jk
