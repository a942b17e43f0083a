#include "ui/catalogue/VirtualVolumeDialogs.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace jk {
namespace {

// The window's frame: a caption over the list, what goes below it, and the two buttons.
QPushButton* Frame(QDialog& dialog, const char* title, const char* listCaption, QListWidget* list,
                   QLayout* below, std::string_view command, const char* icon) {
    dialog.setWindowTitle(QLatin1String(title));
    dialog.setWindowIcon(QIcon::fromTheme(QStringLiteral("media-optical")));
    auto* caption = new QLabel(QLatin1String(listCaption));
    caption->setBuddy(list);
    QPushButton* go = DialogButton(command, "Command1");
    go->setIcon(QIcon::fromTheme(QLatin1String(icon)));
    go->setDefault(true);
    QPushButton* cancel = DialogButton("Cancel", "Command2");
    auto* buttons = new QDialogButtonBox;
    buttons->addButton(go, QDialogButtonBox::AcceptRole);
    buttons->addButton(cancel, QDialogButtonBox::RejectRole);
    QObject::connect(cancel, &QPushButton::clicked, &dialog, &QDialog::reject);
    auto* layout = new QVBoxLayout(&dialog);
    layout->setSpacing(10);
    layout->addWidget(caption);
    layout->addWidget(list, 1);
    if (below != nullptr) {
        layout->addLayout(below);
    }
    layout->addWidget(buttons);
    dialog.resize(460, 380);
    return go;
}

}  // namespace

Virtual_Remove::Virtual_Remove(const std::vector<std::string>& names, RemoveFn remove,
                               QWidget* parent)
    : QDialog(parent), m_remove(std::move(remove)) {
    setObjectName(QStringLiteral("Virtual_Remove"));
    m_list = VolumeList(names, true, "List1");
    QPushButton* go = Frame(*this, "Remove Virtual Drive", "Select volume(s) to remove:", m_list,
                            nullptr, "Remove", "edit-delete");
    connect(go, &QPushButton::clicked, this, [this] {
        if (m_remove) {
            m_remove(SelectedNames(*m_list));
        }
        accept();
    });
}

Virtual_Rename::Virtual_Rename(const std::vector<std::string>& names,
                               const std::vector<std::string>& history, RenameFn rename,
                               QWidget* parent)
    : QDialog(parent), m_rename(std::move(rename)) {
    setObjectName(QStringLiteral("Virtual_Rename"));
    m_list = VolumeList(names, false, "List1");
    m_newName = HistoryCombo(history, "Combo1", QStringLiteral("New Volume Name"));
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("New volume name:"), m_newName);
    QPushButton* go = Frame(*this, "Rename Virtual Drive", "Select volume to rename:", m_list, form,
                            "Rename", "edit-rename");
    connect(m_list, &QListWidget::itemClicked, this,
            [this](QListWidgetItem* item) { m_newName->setEditText(item->text()); });
    connect(go, &QPushButton::clicked, this, [this] {
        const std::vector<std::string> selected = SelectedNames(*m_list);
        if (selected.empty() || !m_rename) {
            return;
        }
        if (m_rename(selected.front(), ToStdString(m_newName->currentText()))) {
            accept();
        }
    });
}

Virtual_Update::Virtual_Update(const std::vector<std::string>& names,
                               const std::vector<std::string>& history, bool eject, bool noCache,
                               UpdateFn update, QWidget* parent)
    : QDialog(parent), m_update(std::move(update)) {
    setObjectName(QStringLiteral("Virtual_Update"));
    m_list = VolumeList(names, false, "List1");
    m_path = HistoryCombo(history, "Combo1");
    QPushButton* browse = DialogButton("Browse...", "Command3");
    auto* pathRow = new QHBoxLayout;
    pathRow->addWidget(m_path, 1);
    pathRow->addWidget(browse);
    m_eject = new QCheckBox(QStringLiteral("Auto-eject media after scanning a removable disk."));
    m_eject->setObjectName(QStringLiteral("Check1"));
    m_eject->setChecked(eject);
    m_noCache = new QCheckBox(QStringLiteral("Do not cache tag information while making image."));
    m_noCache->setObjectName(QStringLiteral("Check2"));
    m_noCache->setChecked(noCache);
    m_caption = new QLabel;
    m_caption->setObjectName(QStringLiteral("lblCaption"));
    m_caption->setTextFormat(Qt::PlainText);
    m_bar = new QProgressBar;
    m_bar->setObjectName(QStringLiteral("ProgBar"));
    m_bar->setRange(0, 1);
    m_bar->setValue(0);
    m_bar->setTextVisible(false);
    m_progress = std::make_unique<DialogScanProgress>(*m_caption, *m_bar);
    auto* below = new QVBoxLayout;
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Update path:"), pathRow);
    below->addLayout(form);
    below->addWidget(m_eject);
    below->addWidget(m_noCache);
    below->addWidget(m_caption);
    below->addWidget(m_bar);
    m_go = Frame(*this, "Update Virtual Drive", "Select volume to recreate:", m_list, below,
                 "Update", "view-refresh");
    resize(520, 460);
    connect(browse, &QPushButton::clicked, this, [this] {
        const QString folder =
            m_pick ? m_pick(this, m_path->currentText())
                   : QFileDialog::getExistingDirectory(this, QStringLiteral("Update from..."),
                                                       m_path->currentText());
        if (!folder.isEmpty()) {
            m_path->setEditText(folder);
        }
    });
    connect(m_go, &QPushButton::clicked, this, &Virtual_Update::Command1_Click);
}

bool Virtual_Update::Progress(std::string_view caption, int value, int maximum) {
    return m_progress->Update(caption, value, maximum);
}

void Virtual_Update::Command1_Click() {
    const std::vector<std::string> selected = SelectedNames(*m_list);
    if (m_scanning || selected.empty() || !m_update) {
        return;
    }
    m_scanning = true;
    m_progress->Reset();
    m_go->setEnabled(false);
    m_update({selected.front(), ToStdString(m_path->currentText()), m_eject->isChecked(),
              m_noCache->isChecked()});
    m_scanning = false;
    accept();
}

void Virtual_Update::reject() {
    if (m_scanning) {
        m_progress->Stop();  // the scan ends at its next step, and the window with it
        return;
    }
    QDialog::reject();
}

Virtual_Export::Virtual_Export(const std::vector<std::string>& names,
                               const std::vector<std::string>& history, const QString& sample,
                               ExportFn exportTo, QWidget* parent)
    : QDialog(parent), m_export(std::move(exportTo)) {
    setObjectName(QStringLiteral("Virtual_Export"));
    m_list = VolumeList(names, true, "List1");
    m_path = HistoryCombo(history, "Combo1",
                          history.empty() || history.front().empty() ? sample : QString());
    QPushButton* browse = DialogButton("Browse...", "Command3");
    auto* pathRow = new QHBoxLayout;
    pathRow->addWidget(m_path, 1);
    pathRow->addWidget(browse);
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Export to:"), pathRow);
    QPushButton* go = Frame(*this, "Export Virtual Drive", "Select volume(s) to export:", m_list,
                            form, "Export", "document-save-as");
    connect(browse, &QPushButton::clicked, this, [this] {
        const QString file =
            m_pick ? m_pick(this, m_path->currentText()) : JK2Export(this, m_path->currentText());
        if (!file.isEmpty()) {
            m_path->setEditText(file);
        }
    });
    connect(go, &QPushButton::clicked, this, [this] {
        if (m_export) {
            m_export(SelectedNames(*m_list), ToStdString(m_path->currentText()));
        }
        accept();
    });
}

QString VirtualImageFilters() {
    return QStringLiteral("Virtual Drive images (*.jvd);;All files (*.*)");
}

QString JK2Export(QWidget* parent, const QString& current) {
    return QFileDialog::getSaveFileName(parent, QStringLiteral("Save"),
                                        QFileInfo(current).absolutePath(), VirtualImageFilters());
}

QString JK2Import(QWidget* parent, const QString& lastImport) {
    return QFileDialog::getOpenFileName(parent, QStringLiteral("Import file"),
                                        QFileInfo(lastImport).absolutePath(),
                                        VirtualImageFilters());
}

}  // namespace jk
