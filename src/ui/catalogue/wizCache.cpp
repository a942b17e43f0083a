#include "ui/catalogue/wizCache.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

#include "catalogue/CachePerformance.h"
#include "ui/catalogue/CacheViewer.h"
#include "ui/common/QtText.h"

namespace jk {

namespace {

QLabel* ValueLabel(const char* name) {
    auto* label = new QLabel;
    label->setObjectName(QLatin1String(name));
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
    return label;
}

QLabel* HintLabel(std::string_view text) {
    auto* label = new QLabel(ToQString(text));
    label->setWordWrap(true);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, palette.color(QPalette::PlaceholderText));
    label->setPalette(palette);
    return label;
}

QPushButton* Button(std::string_view caption, const char* name) {
    auto* button = new QPushButton(ToQString(caption));
    button->setObjectName(QLatin1String(name));
    button->setAutoDefault(false);
    return button;
}

}  // namespace

wizCache::wizCache(CachePerformance& performance, QWidget* parent)
    : QDialog(parent), m_performance(performance) {
    setObjectName(QStringLiteral("wizCache"));
    setWindowTitle(tr("Cache Performance"));

    m_hitAttempts = ValueLabel("lblHitAttempts");
    m_hits = ValueLabel("lblHits");
    m_misses = ValueLabel("lblMisses");
    m_successRate = ValueLabel("lblSuccessRate");
    m_cacheSize = ValueLabel("lblCacheSize");
    auto* figures = new QFormLayout;
    figures->setLabelAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    figures->setHorizontalSpacing(24);
    figures->addRow(ToQString(kHitAttemptsLabel), m_hitAttempts);
    figures->addRow(ToQString(kHitsLabel), m_hits);
    figures->addRow(ToQString(kMissesLabel), m_misses);
    figures->addRow(ToQString(kSuccessRateLabel), m_successRate);
    figures->addRow(ToQString(kCacheSizeLabel), m_cacheSize);

    auto* icon = new QLabel;
    icon->setPixmap(QIcon::fromTheme(QStringLiteral("drive-harddisk"),
                                     style()->standardIcon(QStyle::SP_DriveHDIcon))
                        .pixmap(48, 48));
    icon->setAlignment(Qt::AlignTop);
    auto* statistics = new QGroupBox(tr("Statistics"));
    auto* statisticsRow = new QHBoxLayout(statistics);
    statisticsRow->addWidget(icon);
    statisticsRow->addSpacing(12);
    statisticsRow->addLayout(figures, 1);

    QPushButton* optimize = Button(kOptimizeCaption, "cmdOptimizeCache");
    QPushButton* flush = Button(kFlushCaption, "Command3");
    auto* maintenance = new QGroupBox(tr("Maintenance"));
    auto* commands = new QGridLayout(maintenance);
    commands->setHorizontalSpacing(16);
    commands->addWidget(optimize, 0, 0);
    commands->addWidget(HintLabel(kOptimizeHint), 0, 1);
    commands->addWidget(flush, 1, 0);
    commands->addWidget(HintLabel(kFlushHint), 1, 1);
    commands->setColumnStretch(1, 1);

    QPushButton* reset = Button(kResetStatisticsCaption, "Command2");
    QPushButton* view = Button("View entries...", "cmdViewCache");
    QPushButton* close = Button(kCloseCaption, "Command1");
    close->setDefault(true);
    auto* buttons = new QDialogButtonBox;
    buttons->addButton(reset, QDialogButtonBox::ResetRole);
    buttons->addButton(view, QDialogButtonBox::ActionRole);
    buttons->addButton(close, QDialogButtonBox::RejectRole);

    auto* layout = new QVBoxLayout(this);
    layout->setSpacing(12);
    layout->addWidget(statistics);
    layout->addWidget(maintenance);
    layout->addStretch(1);
    layout->addWidget(buttons);

    connect(optimize, &QPushButton::clicked, this, &wizCache::cmdOptimizeCache_Click);
    connect(flush, &QPushButton::clicked, this, &wizCache::Command3_Click);
    connect(reset, &QPushButton::clicked, this, &wizCache::Command2_Click);
    connect(view, &QPushButton::clicked, this, &wizCache::ViewCache_Click);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);

    Fill();
    resize(520, sizeHint().height());
}

void wizCache::Fill() {
    const CacheStatsTexts texts = m_performance.Texts();
    m_hitAttempts->setText(ToQString(texts.hitAttempts));
    m_hits->setText(ToQString(texts.hits));
    m_misses->setText(ToQString(texts.misses));
    m_successRate->setText(ToQString(texts.successRate));
    m_cacheSize->setText(ToQString(texts.cacheSize));
}

bool wizCache::AskYes(std::string_view title, std::string_view text) {
    const QString qTitle = ToQString(title);
    const QString qText = ToQString(text);
    if (m_ask) {
        return m_ask(qTitle, qText) == QMessageBox::Yes;
    }
    return QMessageBox::question(this, qTitle, qText, QMessageBox::Yes | QMessageBox::No,
                                 QMessageBox::No) == QMessageBox::Yes;
}

void wizCache::cmdOptimizeCache_Click() {
    m_performance.Optimize();
    Fill();
}

void wizCache::Command3_Click() {
    if (AskYes(kVerifyTitle, kFlushQuestion)) {
        m_performance.Flush();
        Fill();
    }
}

void wizCache::Command2_Click() {
    if (AskYes(kVerifyTitle, kResetQuestion)) {
        m_performance.ResetStatistics();
        Fill();
    }
}

void wizCache::ViewCache_Click() {
    CacheViewer viewer(m_performance.Cache(), this);
    viewer.exec();
}

void ShowCachePerformance(QWidget* parent, CachePerformance& performance) {
    wizCache window(performance, parent);
    window.exec();
}

}  // namespace jk
