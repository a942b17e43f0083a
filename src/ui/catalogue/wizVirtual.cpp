#include "ui/catalogue/wizVirtual.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace jk {

wizVirtual::wizVirtual(const VirtualWizardState& state, VirtualWizardHooks hooks, QWidget* parent)
    : QDialog(parent), m_hooks(std::move(hooks)) {
    setObjectName(QStringLiteral("wizVirtual"));
    setWindowTitle(QStringLiteral("Virtual Drive Wizard"));
    setWindowIcon(QIcon::fromTheme(QStringLiteral("media-optical")));

    m_path = HistoryCombo(state.Drives, "Combo1");
    m_name = HistoryCombo(state.Volumes, "Combo2");
    QPushButton* browse = DialogButton("Browse...", "Command3");
    QPushButton* extract = DialogButton("Extract...", "Command4");
    auto* pathRow = new QHBoxLayout;
    pathRow->addWidget(m_path, 1);
    pathRow->addWidget(browse);
    auto* nameRow = new QHBoxLayout;
    nameRow->addWidget(m_name, 1);
    nameRow->addWidget(extract);
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Start from:"), pathRow);
    form->addRow(QStringLiteral("Friendly volume name:"), nameRow);

    m_eject = new QCheckBox(QStringLiteral("Auto-eject media after scanning a removable disk."));
    m_eject->setObjectName(QStringLiteral("Check1"));
    m_eject->setChecked(state.Eject);
    m_noCache = new QCheckBox(QStringLiteral("Do not cache tag information while making image."));
    m_noCache->setObjectName(QStringLiteral("Check2"));
    m_noCache->setChecked(state.NoCache);
    auto* options = new QGroupBox(QStringLiteral("Options"));
    auto* optionsLayout = new QVBoxLayout(options);
    optionsLayout->addWidget(m_eject);
    optionsLayout->addWidget(m_noCache);

    m_caption = new QLabel;
    m_caption->setObjectName(QStringLiteral("lblCaption"));
    m_caption->setTextFormat(Qt::PlainText);
    m_caption->setMinimumWidth(360);
    m_bar = new QProgressBar;
    m_bar->setObjectName(QStringLiteral("ProgBar"));
    m_bar->setRange(0, 1);
    m_bar->setValue(0);
    m_bar->setTextVisible(false);
    m_progress = std::make_unique<DialogScanProgress>(*m_caption, *m_bar);

    m_create = DialogButton("Create", "Command1");
    m_create->setIcon(QIcon::fromTheme(QStringLiteral("list-add")));
    m_create->setDefault(true);
    QPushButton* close = DialogButton("Close", "Command2");
    auto* buttons = new QDialogButtonBox;
    buttons->addButton(m_create, QDialogButtonBox::AcceptRole);
    buttons->addButton(close, QDialogButtonBox::RejectRole);

    auto* icon = new QLabel;
    icon->setPixmap(QIcon::fromTheme(QStringLiteral("media-optical"),
                                     style()->standardIcon(QStyle::SP_DriveCDIcon))
                        .pixmap(48, 48));
    icon->setAlignment(Qt::AlignTop);
    auto* intro = new QLabel(QStringLiteral(
        "Catalogue a disc: its songs stay browsable and searchable after it leaves the drive."));
    intro->setWordWrap(true);
    auto* head = new QHBoxLayout;
    head->addWidget(icon);
    head->addSpacing(8);
    head->addWidget(intro, 1);

    auto* layout = new QVBoxLayout(this);
    layout->setSpacing(12);
    layout->addLayout(head);
    layout->addLayout(form);
    layout->addWidget(options);
    layout->addWidget(m_caption);
    layout->addWidget(m_bar);
    layout->addStretch(1);
    layout->addWidget(buttons);

    connect(m_create, &QPushButton::clicked, this, &wizVirtual::Command1_Click);
    connect(close, &QPushButton::clicked, this, &wizVirtual::reject);
    connect(browse, &QPushButton::clicked, this, &wizVirtual::Command3_Click);
    connect(extract, &QPushButton::clicked, this, &wizVirtual::Command4_Click);
    resize(560, sizeHint().height());
}

std::string wizVirtual::Path() const {
    return ToStdString(m_path->currentText());
}

std::string wizVirtual::Name() const {
    return ToStdString(m_name->currentText());
}

bool wizVirtual::Eject() const {
    return m_eject->isChecked();
}

bool wizVirtual::NoCache() const {
    return m_noCache->isChecked();
}

bool wizVirtual::Progress(std::string_view caption, int value, int maximum) {
    return m_progress->Update(caption, value, maximum);
}

void wizVirtual::Command1_Click() {
    if (m_scanning || !m_hooks.NameAccepted || !m_hooks.NameAccepted(Name())) {
        return;
    }
    m_scanning = true;
    m_progress->Reset();
    m_create->setEnabled(false);
    const bool added = m_hooks.Create && m_hooks.Create(Path(), Name(), NoCache(), Eject());
    m_scanning = false;
    m_create->setEnabled(true);
    m_bar->setRange(0, 1);
    m_bar->setValue(added ? 1 : 0);
    if (m_progress->Stopped()) {
        QDialog::reject();  // the user closed the window during the scan
    }
}

void wizVirtual::Command3_Click() {
    const QString folder =
        m_hooks.PickFolder ? m_hooks.PickFolder(this, m_path->currentText())
                           : QFileDialog::getExistingDirectory(
                                 this, QStringLiteral("Start scan from..."), m_path->currentText());
    if (!folder.isEmpty()) {
        m_path->setEditText(folder);
    }
}

void wizVirtual::Command4_Click() {
    if (!m_hooks.DiscLabel) {
        return;
    }
    const std::string label = m_hooks.DiscLabel(Path());
    if (!label.empty()) {
        m_name->setEditText(ToQString(label));
    }
}

void wizVirtual::reject() {
    if (m_scanning) {
        m_progress->Stop();  // the scan ends at its next step; the window closes then
        return;
    }
    QDialog::reject();
}

}  // namespace jk
