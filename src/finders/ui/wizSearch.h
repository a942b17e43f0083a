#pragma once

// The Search Wizard: a non-modal window that finds songs by text over chosen fields, narrowed
// by size and date, in a real folder, on every drive or in the catalogued discs, and lists them
// in its own result list. A search runs on the window's thread and lets the window breathe
// between files, so Abort and Close stay live. In the catalogue, the list follows the text as
// it is typed (SearchAsYouType).

#include <memory>

#include <QDialog>

#include "finders/SearchForm.h"
#include "finders/ui/FinderHost.h"

class QAction;
class QButtonGroup;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QMenu;
class QProgressBar;
class QPushButton;
class QRadioButton;
class QTabWidget;
class QTimer;

namespace jk {

class ResultsPane;
class ResultsTally;
class SearchIndexKeeper;

class wizSearch final : public QDialog {
    Q_OBJECT

public:
    // `host` must outlive the window.
    explicit wizSearch(FinderHost& host, QWidget* parent = nullptr);
    ~wizSearch() override;

    // The controls as a form, and a form into the controls.
    SearchForm Form() const;
    void SetForm(const SearchForm& form);

    ResultsPane& Results() { return *m_results; }
    QString Status() const;
    // True while a search runs.
    bool Searching() const { return m_searching; }
    // Whether the text typed now starts a live search (the catalogue, SearchAsYouType on).
    bool LiveSearchApplies() const;

    // The main window is about to change the catalogue, and has changed it: the index's build
    // stops before the catalogue is touched, none starts meanwhile, and a new one starts after.
    void CatalogueChanging();
    void CatalogueChanged();

    void Command1_Click();  // "Search"
    void Command5_Click();  // "Abort"
    void Command2_Click();  // "Close"

protected:
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    class Front;
    void BuildControls();
    QWidget* BuildSearchPage();
    QWidget* BuildSizeDatePage();
    QWidget* BuildAdvancedPage();
    void BuildMenus();
    void UpdateCombos();
    void CleanUp();
    void ShowStats();
    void Combo1_Edited(const QString& text);
    void Complete(QComboBox* combo, const QString& text);
    void LiveSearch();
    // The keeper of the catalogue's index, made when first needed.
    void KeepIndex();
    // Starts building the index when the window looks in the catalogue.
    void PrepareIndex();
    // The index a live search waits for is built.
    void IndexReady();
    void Browse();
    void SetOnTop(bool onTop);

    FinderHost& m_host;
    ResultsPane* m_results = nullptr;
    QTabWidget* m_tabs = nullptr;
    QComboBox* m_combo1 = nullptr;
    QComboBox* m_combo2 = nullptr;
    QPushButton* m_browse = nullptr;
    QPushButton* m_searchIn = nullptr;
    QCheckBox* m_check1 = nullptr;
    QCheckBox* m_check2 = nullptr;
    QCheckBox* m_check3 = nullptr;
    QCheckBox* m_check4 = nullptr;
    QCheckBox* m_check5 = nullptr;
    QComboBox* m_combo3 = nullptr;
    QLineEdit* m_text1 = nullptr;
    QRadioButton* m_option1 = nullptr;
    QRadioButton* m_option2 = nullptr;
    QComboBox* m_combo4 = nullptr;
    QComboBox* m_combo5 = nullptr;
    QLineEdit* m_text2 = nullptr;
    QComboBox* m_combo6 = nullptr;
    QPushButton* m_command1 = nullptr;
    QPushButton* m_command5 = nullptr;
    QPushButton* m_command2 = nullptr;
    QLabel* m_status = nullptr;
    QProgressBar* m_bar = nullptr;
    QMenu* m_searchInMenu = nullptr;
    QMenu* m_menuResults = nullptr;
    std::vector<QAction*> m_fieldActions;
    QTimer* m_liveTimer = nullptr;
    std::unique_ptr<SearchIndexKeeper> m_index;
    // The sums of the rows of the live search shown, gathered as they are made.
    std::shared_ptr<ResultsTally> m_liveTally;
    int m_lastKey = 0;
    bool m_awaitingIndex = false;
    bool m_catalogueChanging = false;
    bool m_searching = false;
    bool m_abort = false;
    bool m_closing = false;
};

}  // namespace jk
