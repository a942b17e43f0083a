#include "app/ui/TipsDialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/HelpPages.h"
#include "app/Settings.h"
#include "app/ui/Icons.h"
#include "util/Text.h"

namespace jk {

TipsDialog::TipsDialog(Settings& settings, QWidget* parent)
    : QDialog(parent), m_settings(settings) {
    setObjectName(QStringLiteral("Tips"));
    setWindowTitle(QStringLiteral("Tip of the day"));
    auto* heading = new QLabel(QStringLiteral("<b>Did you know...</b>"), this);
    auto* icon = new QLabel(this);
    icon->setPixmap(ThemeIcon("help-hint").pixmap(32, 32));
    m_tip = new QLabel(this);
    m_tip->setObjectName(QStringLiteral("Tip"));
    m_tip->setWordWrap(true);
    m_tip->setMinimumSize(380, 90);
    m_tip->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_showAtStart = new QCheckBox(QStringLiteral("&Show tips at startup"), this);
    m_showAtStart->setChecked(Val(settings.ShowTips) == 1);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    QPushButton* previous =
        buttons->addButton(QStringLiteral("&Previous"), QDialogButtonBox::ActionRole);
    QPushButton* next =
        buttons->addButton(QStringLiteral("&Next tip"), QDialogButtonBox::ActionRole);
    connect(previous, &QPushButton::clicked, this,
            [this] { Show(PreviousTip(m_settings.LastTip)); });
    connect(next, &QPushButton::clicked, this, [this] { Show(NextTip(m_settings.LastTip)); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    setModal(false);

    auto* top = new QHBoxLayout;
    top->setSpacing(14);
    top->addWidget(icon, 0, Qt::AlignTop);
    auto* texts = new QVBoxLayout;
    texts->addWidget(heading);
    texts->addWidget(m_tip, 1);
    top->addLayout(texts, 1);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(18, 18, 18, 12);
    layout->addLayout(top, 1);
    layout->addWidget(m_showAtStart);
    layout->addWidget(buttons);
    next->setFocus();
}

void TipsDialog::ShowNext() {
    m_showAtStart->setChecked(Val(m_settings.ShowTips) == 1);
    Show(NextTip(m_settings.LastTip));
}

void TipsDialog::Show(std::int16_t tip) {
    m_settings.LastTip = tip;
    const std::string_view text = TipTexts()[static_cast<std::size_t>(tip - 1)];
    m_tip->setText(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
}

QString TipsDialog::TipText() const {
    return m_tip->text();
}

void TipsDialog::done(int result) {
    m_settings.ShowTips.assign(1, m_showAtStart->isChecked() ? '1' : '0');
    QDialog::done(result);
}

}  // namespace jk
