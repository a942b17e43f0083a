#pragma once

// The Duplicate Finder: a non-modal window that gathers the songs of the playlist, the files
// pane and the catalogue, sorts them on one key and lists each run of equal keys. It can
// propose the copies to keep and send the others to the trash after asking.

#include <cstddef>
#include <memory>
#include <vector>

#include <QCloseEvent>
#include <QDialog>

#include "finders/BestCopies.h"
#include "finders/DuplicateFinder.h"
#include "finders/ui/FinderHost.h"

class QAction;
class QCheckBox;
class QComboBox;
class QLabel;
class QMenu;
class QProgressBar;
class QPushButton;
class QTabWidget;
class QTextEdit;

namespace jk {

class DupeArray;
class ResultsPane;

class wizDuplicate final : public QDialog {
    Q_OBJECT

public:
    // `host` must outlive the window.
    explicit wizDuplicate(FinderHost& host, QWidget* parent = nullptr);

    ResultsPane& Results() { return *m_results; }
    QString Status() const;

    void Command1_Click();  // "Start"
    void Command2_Click();  // "Close"
    // "Propose &best copies": selects every copy but the one each group keeps.
    void ProposeBestCopies_Click();
    // "&Delete": after a proposal always asks with the count and the first files.
    void DeleteFile_Click();
    // The main window is about to change the catalogue: the rows still to come are made first.
    void CatalogueChanging();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void FindDuplicates();
    void CleanUp();
    void ShowStats();
    void Progress(std::size_t done, std::size_t total);
    void ForgetGroups();
    void ShowRows(std::shared_ptr<const DupeArray> records,
                  std::shared_ptr<const std::vector<DupeMember>> members);

    FinderHost& m_host;
    QTabWidget* m_tabs = nullptr;
    QWidget* m_controls = nullptr;
    QWidget* m_cover = nullptr;
    QCheckBox* m_chkFolder = nullptr;
    QCheckBox* m_chkPlaylist = nullptr;
    QCheckBox* m_chkVirtual = nullptr;
    QComboBox* m_combo1 = nullptr;
    QComboBox* m_combo2 = nullptr;
    QCheckBox* m_chkClear = nullptr;
    QCheckBox* m_chkOnTop = nullptr;
    QTextEdit* m_text1 = nullptr;
    QLabel* m_status = nullptr;
    QProgressBar* m_bar = nullptr;
    QPushButton* m_command1 = nullptr;
    QPushButton* m_command2 = nullptr;
    QMenu* m_popup = nullptr;
    ResultsPane* m_results = nullptr;
    // The group and the source of each listed row, while the list is as the run left it.
    std::vector<std::size_t> m_groupOf;
    std::vector<std::int16_t> m_sourceOf;
    std::size_t m_rowsListed = 0;  // the rows the last run lists, when all are made
    bool m_proposed = false;
    std::size_t m_groups = 0;
};

}  // namespace jk
