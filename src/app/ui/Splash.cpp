#include "app/ui/Splash.h"

#include <QCoreApplication>
#include <QFont>
#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

#include "app/Version.h"
#include "ui/common/QtText.h"

namespace jk {

Splash::Splash(QWidget* parent) : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint) {
    setObjectName(QStringLiteral("Splash"));

    auto* title = new QLabel(QStringLiteral("Ostrel Jukarra"), this);
    QFont titleFont = title->font();
    titleFont.setPointSizeF(titleFont.pointSizeF() * 2.2);
    titleFont.setBold(true);
    title->setFont(titleFont);
    title->setAlignment(Qt::AlignCenter);

    m_label2 = new QLabel(
        QStringLiteral("version %1 - %2").arg(ToQString(kVersionText), ToQString(kBuildDateText)),
        this);
    m_label2->setObjectName(QStringLiteral("Label2"));
    m_label2->setAlignment(Qt::AlignCenter);

    m_status = new QLabel(this);
    m_status->setObjectName(QStringLiteral("Status"));
    m_status->setAlignment(Qt::AlignCenter);

    // White on grey, the colours of the progress box of the data readers.
    m_progress = new QProgressBar(this);
    m_progress->setTextVisible(false);
    m_progress->setFixedHeight(10);
    m_progress->setStyleSheet(
        QStringLiteral("QProgressBar { background: rgb(160,160,160); border: none; }"
                       "QProgressBar::chunk { background: rgb(255,255,255); }"));
    ClearProgress();

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 24, 24, 16);
    layout->addWidget(title);
    layout->addWidget(m_label2);
    layout->addStretch(1);
    layout->addWidget(m_status);
    layout->addWidget(m_progress);
    setFixedSize(420, 220);
}

void Splash::SetStatus(const QString& text) {
    m_status->setText(text);
    if (isVisible()) {
        m_status->repaint();
    }
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

QString Splash::StatusText() const {
    return m_status->text();
}

QString Splash::VersionText() const {
    return m_label2->text();
}

void Splash::ClearProgress() {
    m_progress->setRange(0, 1);
    m_progress->setValue(0);
}

void Splash::ShowProgress(qint64 done, qint64 total) {
    // The bar counts in int; scale large totals down.
    const qint64 scale = total > 1000000 ? total / 1000000 + 1 : 1;
    m_progress->setRange(0, static_cast<int>(qMax<qint64>(1, total / scale)));
    m_progress->setValue(static_cast<int>(qBound<qint64>(0, done / scale, total / scale)));
    if (isVisible()) {
        m_progress->repaint();
    }
}

}  // namespace jk
