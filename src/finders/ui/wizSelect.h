#pragma once

// The Selection Wizard: a small modal dialog that selects the rows of the files pane, the
// playlist or both whose checked columns hold a text. It works on the rows the panes show;
// nothing is read from disk. Cancel changes nothing.

#include <vector>

#include <QDialog>

#include "finders/SelectionWizard.h"
#include "finders/ui/FinderHost.h"

class QAction;
class QCheckBox;
class QComboBox;
class QMenu;
class QPushButton;
class QRadioButton;

namespace jk {

class wizSelect final : public QDialog {
    Q_OBJECT

public:
    // `host` must outlive the dialog; its Files and Playlist are the panes worked on.
    explicit wizSelect(FinderHost& host, QWidget* parent = nullptr);

    SelectionChoice Choice() const;
    void SetChoice(const SelectionChoice& choice);

    void Command1_Click();  // "Okay"
    void Command2_Click();  // "Cancel"

    // What the last "Okay" selected in each pane.
    SelectionCounts Counts() const { return m_counts; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    FinderHost& m_host;
    QComboBox* m_combo1 = nullptr;
    QPushButton* m_searchIn = nullptr;
    QMenu* m_menu = nullptr;
    std::vector<QAction*> m_fields;
    QRadioButton* m_option1 = nullptr;
    QRadioButton* m_option2 = nullptr;
    QRadioButton* m_option3 = nullptr;
    QCheckBox* m_check1 = nullptr;
    QCheckBox* m_check2 = nullptr;
    SelectionCounts m_counts;
};

// Opens the Selection Wizard modally over `parent`; true when "Okay" ran.
bool RunSelectionWizard(FinderHost& host, QWidget* parent);

}  // namespace jk
