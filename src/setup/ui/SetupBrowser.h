#pragma once

// The Setup Browser, "Setup": the categories on the left, the chosen one's page on the right,
// "Okay" and "Cancel" below. It works on its controls only; "Okay" hands them to SetupOkay,
// which stores the settings and applies them through the main window's SetupEffects.

#include <functional>

#include <QDialog>
#include <QString>

#include "setup/SetupOkay.h"
#include "setup/ui/SetupControlWidgets.h"

class QLabel;
class QStackedWidget;
class QTreeWidget;
class QTreeWidgetItem;

namespace jk {

struct Session;

class SetupBrowser final : public QDialog {
    Q_OBJECT

public:
    SetupBrowser(Session& session, SetupEffects& effects, QWidget* parent = nullptr);

    // Replaces the file dialog of "Browse..." (tests): given the player list's text, gives the
    // player chosen, or "" when none was.
    void SetPlayerChooser(std::function<QString(const QString&)> choose) {
        m_choosePlayer = std::move(choose);
    }
    // Shows the page of a node key ("mCache").
    void ShowPage(std::string_view key);
    // The node key of the page shown.
    QString CurrentPageKey() const;

private:
    void LoadTree();
    void Initialize();
    void Tree1_NodeClick(QTreeWidgetItem* node);
    void Command1_Click();
    void Command3_Click();
    void UpdateDependents();
    QString ChoosePlayer(const QString& current);

    Session& m_session;
    SetupEffects& m_effects;
    SetupControlWidgets m_controls;
    QTreeWidget* m_tree = nullptr;
    QStackedWidget* m_pages = nullptr;
    QLabel* m_caption = nullptr;
    std::function<QString(const QString&)> m_choosePlayer;
};

// Opens the Setup Browser modally over `parent`; true when it was closed with "Okay".
bool RunSetupBrowser(QWidget* parent, Session& session, SetupEffects& effects);

}  // namespace jk
