#include "finders/ui/wizSelect.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "ui/common/QtText.h"

namespace jk {

wizSelect::wizSelect(FinderHost& host, QWidget* parent) : QDialog(parent), m_host(host) {
    setWindowTitle("Selection Wizard");
    setWindowIcon(QIcon::fromTheme("edit-select-all"));
    setModal(true);

    m_combo1 = new QComboBox(this);
    m_combo1->setObjectName("Combo1");
    m_combo1->setEditable(true);
    m_combo1->setInsertPolicy(QComboBox::NoInsert);
    m_combo1->setCompleter(nullptr);
    m_combo1->setMinimumWidth(260);
    m_searchIn = new QPushButton("Search in...", this);
    m_searchIn->setObjectName("Command3");
    m_menu = new QMenu("&Search in", this);
    m_menu->setObjectName("SearchIn");
    for (const SelectField& field : SelectFields()) {
        QAction* action = m_menu->addAction(ToQString(field.Caption));
        action->setObjectName(ToQString(field.Name));
        action->setCheckable(true);
        m_fields.push_back(action);
    }
    connect(m_searchIn, &QPushButton::clicked, this,
            [this] { m_menu->popup(m_searchIn->mapToGlobal(QPoint(0, m_searchIn->height()))); });

    auto* window = new QGroupBox("From which window?", this);
    m_option1 = new QRadioButton("Files ", window);
    m_option1->setObjectName("Option1");
    m_option2 = new QRadioButton("Playlist", window);
    m_option2->setObjectName("Option2");
    m_option3 = new QRadioButton("Both", window);
    m_option3->setObjectName("Option3");
    auto* options = new QHBoxLayout(window);
    options->addWidget(m_option1);
    options->addWidget(m_option2);
    options->addWidget(m_option3);
    options->addStretch();

    m_check2 = new QCheckBox("Case-sensitive matches only", this);
    m_check2->setObjectName("Check2");
    m_check1 = new QCheckBox("Retain current selections", this);
    m_check1->setObjectName("Check1");

    auto* okay = new QPushButton(QIcon::fromTheme("dialog-ok"), "Okay", this);
    okay->setObjectName("Command1");
    auto* cancel = new QPushButton(QIcon::fromTheme("dialog-cancel"), "Cancel", this);
    cancel->setObjectName("Command2");
    connect(okay, &QPushButton::clicked, this, &wizSelect::Command1_Click);
    connect(cancel, &QPushButton::clicked, this, &wizSelect::Command2_Click);

    auto* grid = new QGridLayout;
    grid->addWidget(new QLabel("Containing text:", this), 0, 0);
    grid->addWidget(m_combo1, 0, 1);
    grid->addWidget(m_searchIn, 0, 2);
    grid->setColumnStretch(1, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(okay);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addWidget(window);
    layout->addWidget(m_check2);
    layout->addWidget(m_check1);
    layout->addStretch();
    layout->addLayout(buttons);

    // Enter and Esc in every control go through KeyCheck.
    for (QWidget* child : findChildren<QWidget*>()) {
        child->installEventFilter(this);
    }
    // Form_Load
    if (m_host.Options != nullptr) {
        for (std::size_t i = 1; i < m_host.Options->Selects.size(); ++i) {
            m_combo1->addItem(ToQString(m_host.Options->Selects[i]));
        }
        SetChoice(InitialSelection(*m_host.Options));
    } else {
        m_option1->setChecked(true);
    }
}

SelectionChoice wizSelect::Choice() const {
    SelectionChoice choice;
    choice.Text = m_combo1->currentText().toStdString();
    for (std::size_t i = 0; i < m_fields.size(); ++i) {
        choice.Fields.set(i, m_fields[i]->isChecked());
    }
    choice.Window = m_option3->isChecked()   ? SelectWindow::Both
                    : m_option2->isChecked() ? SelectWindow::Playlist
                                             : SelectWindow::Files;
    choice.CaseSensitive = m_check2->isChecked();
    choice.Retain = m_check1->isChecked();
    return choice;
}

void wizSelect::SetChoice(const SelectionChoice& choice) {
    m_combo1->setEditText(ToQString(choice.Text));
    for (std::size_t i = 0; i < m_fields.size(); ++i) {
        m_fields[i]->setChecked(choice.Fields.test(i));
    }
    (choice.Window == SelectWindow::Both       ? m_option3
     : choice.Window == SelectWindow::Playlist ? m_option2
                                               : m_option1)
        ->setChecked(true);
    m_check2->setChecked(choice.CaseSensitive);
    m_check1->setChecked(choice.Retain);
}

void wizSelect::Command1_Click() {
    RowList noRows;
    RowList& files = m_host.Files != nullptr ? *m_host.Files : noRows;
    RowList playlist;
    RowList& list = m_host.Playlist != nullptr ? *m_host.Playlist : playlist;
    Settings scratch;
    Settings& settings = m_host.Options != nullptr ? *m_host.Options : scratch;
    m_counts = RunSelection(settings, files, list, Choice());
    if (m_host.SelectionChanged) {
        m_host.SelectionChanged();
    }
    accept();
}

void wizSelect::Command2_Click() {
    reject();
}

bool wizSelect::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            Command1_Click();
            return true;
        }
        if (key == Qt::Key_Escape) {
            Command2_Click();
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

bool RunSelectionWizard(FinderHost& host, QWidget* parent) {
    wizSelect dialog(host, parent);
    return dialog.exec() == QDialog::Accepted;
}

}  // namespace jk
