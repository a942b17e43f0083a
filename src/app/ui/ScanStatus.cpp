#include "app/ui/ScanStatus.h"

#include <QCloseEvent>
#include <QDialogButtonBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "browse/FolderWalk.h"

namespace jk {

ScanStatus::ScanStatus(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("ScanStatus"));
    setWindowModality(Qt::NonModal);
    m_status = new QLabel(this);
    m_status->setObjectName(QStringLiteral("Status"));
    m_status->setTextFormat(Qt::PlainText);
    m_status->setMinimumWidth(fontMetrics().averageCharWidth() * 56);
    m_bar = new QProgressBar(this);
    m_bar->setRange(0, kScanProgressMaximum);
    m_bar->setTextVisible(false);
    auto* buttons = new QDialogButtonBox(this);
    m_abortButton = buttons->addButton(QStringLiteral("&Abort"), QDialogButtonBox::RejectRole);
    m_abortButton->setObjectName(QStringLiteral("Abort"));
    connect(m_abortButton, &QPushButton::clicked, this, [this] { m_abort = true; });

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(18, 16, 18, 14);
    layout->setSpacing(10);
    layout->addWidget(m_status);
    layout->addWidget(m_bar);
    layout->addWidget(buttons);
    setSizeGripEnabled(false);
}

void ScanStatus::Begin(const QString& title) {
    setWindowTitle(title);
    m_abort = false;
    m_status->setText(QStringLiteral("Scanning..."));
    m_bar->setValue(0);
}

void ScanStatus::Show(const ScanProgress& progress) {
    const QString status =
        QString::fromUtf8(progress.Status.data(), static_cast<qsizetype>(progress.Status.size()));
    if (status != m_status->text()) {
        m_status->setText(status);
    }
    // A progress bar repaints at once when its value moves; here the repaint waits for the
    // turn of the event loop that follows, with the rest of the window.
    m_bar->setUpdatesEnabled(false);
    m_bar->setMaximum(progress.Maximum > 0 ? progress.Maximum : kScanProgressMaximum);
    m_bar->setValue(progress.Value);
    m_bar->setUpdatesEnabled(true);
}

QString ScanStatus::StatusText() const {
    return m_status->text();
}

void ScanStatus::closeEvent(QCloseEvent* event) {
    m_abort = true;
    QDialog::closeEvent(event);
}

void ScanStatus::reject() {
    // Escape and the window's close button abort the walk; the window goes with the walk.
    m_abort = true;
}

}  // namespace jk
