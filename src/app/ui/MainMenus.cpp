// The main window's menus, pop-ups, toolbar and tray menu, built from the command surface's
// tables, and the one place where the commands built so far are bound to their handlers.

#include <utility>

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QSystemTrayIcon>
#include <QToolBar>

#include "app/CommandSurface.h"
#include "app/HelpPages.h"
#include "app/PaneActions.h"
#include "app/Session.h"
#include "app/ui/Icons.h"
#include "app/ui/MainWindow.h"
#include "playback/RecentLists.h"
#include "ui/common/QtText.h"

namespace jk {

namespace {

// The commands that Winamp alone once carried out, each shown when the player can carry it out.
constexpr std::pair<std::string_view, PlayerCommand> kPlayerOnly[] = {
    {"PlayerBack", PlayerCommand::SkipBack},
    {"AheadPlayer", PlayerCommand::SkipAhead},
    {"VolumeDown", PlayerCommand::VolumeDown},
    {"VolumeUp", PlayerCommand::VolumeUp},
    {"VolumeFade", PlayerCommand::Fade},
    {"WinAMP_GEQ", PlayerCommand::Equalizer},
    {"WinAMP_Selector", PlayerCommand::Selector},
    {"WinAMP_PlugIn", PlayerCommand::PlugInProperties},
    {"WinAMP_Execute", PlayerCommand::PlugInRun},
    {"MinimizePlayer", PlayerCommand::Minimize},
    {"RestorePlayer", PlayerCommand::Restore},
    {"ClosePlayer", PlayerCommand::Close},
};

// The commands that delete files, switched off by DelMode 2.
constexpr std::string_view kDeleteCommands[] = {"DeleteSong", "Delete", "DeleteSelectedSongs"};

bool IsDeleteCommand(std::string_view name) {
    for (const std::string_view command : kDeleteCommands) {
        if (command == name) {
            return true;
        }
    }
    return false;
}

}  // namespace

void Main::BuildMenus() {
    QAction* lastSeparator = nullptr;
    for (const MenuEntry& entry : MenuTable()) {
        QMenu* parent = nullptr;
        if (!entry.Parent.empty()) {
            parent = m_menus.find(entry.Parent)->second;
        }
        switch (entry.Kind) {
            case MenuEntryKind::Menu: {
                QMenu* menu = nullptr;
                if (parent != nullptr) {
                    menu = parent->addMenu(ToQString(entry.Caption));
                } else if (entry.Place == MenuPlace::MenuBar) {
                    menu = menuBar()->addMenu(ToQString(entry.Caption));
                } else {
                    menu = new QMenu(ToQString(entry.Caption), this);
                }
                menu->setObjectName(ToQString(entry.Name));
                menu->menuAction()->setObjectName(ToQString(entry.Name));
                if (!entry.Icon.empty()) {
                    menu->setIcon(ThemeIcon(entry.Icon));
                }
                m_menus.emplace(std::string(entry.Name), menu);
                m_actions.emplace(std::string(entry.Name), menu->menuAction());
                break;
            }
            case MenuEntryKind::Separator:
                lastSeparator = parent->addSeparator();
                if (!entry.Name.empty()) {
                    lastSeparator->setObjectName(ToQString(entry.Name));
                    lastSeparator->setVisible(entry.Owner != kOwnerReserved);
                    m_actions.emplace(std::string(entry.Name), lastSeparator);
                }
                break;
            case MenuEntryKind::List: {
                std::vector<QAction*>& items =
                    entry.Name == "LastList" ? m_lastListItems : m_goItems;
                for (int i = 0; i < entry.Count; ++i) {
                    QAction* item = parent->addAction(QString());
                    item->setObjectName(ToQString(entry.Name) + QString::number(i + 1));
                    item->setVisible(false);
                    if (entry.Name == "LastList") {
                        connect(item, &QAction::triggered, this, [this, i] { LastList_Click(i); });
                        items.push_back(item);
                    } else if (entry.Name == "LastPath") {
                        connect(item, &QAction::triggered, this, [this, i] { LastPath_Click(i); });
                        items.push_back(item);
                    } else {
                        item->setEnabled(false);  // the bookmarks fill these
                    }
                }
                if (lastSeparator != nullptr) {
                    m_listSeparators.emplace(std::string(entry.Name), lastSeparator);
                }
                break;
            }
            case MenuEntryKind::Item: {
                QAction* action = parent->addAction(ToQString(entry.Caption));
                action->setObjectName(ToQString(entry.Name));
                if (!entry.Shortcut.empty()) {
                    action->setShortcut(QKeySequence(ToQString(entry.Shortcut)));
                    action->setShortcutContext(Qt::WindowShortcut);
                    addAction(action);
                }
                if (!entry.Icon.empty()) {
                    action->setIcon(ThemeIcon(entry.Icon));
                }
                action->setCheckable(entry.Checkable);
                const std::string name(entry.Name);
                if (entry.Owner == kOwnerReserved) {
                    action->setVisible(false);
                } else {
                    connect(action, &QAction::triggered, this, [this, name] { RunCommand(name); });
                }
                m_actions.emplace(name, action);
                break;
            }
        }
    }
    // The menus look alike on every desktop: icons where the theme has them.
    for (auto& [name, menu] : m_menus) {
        menu->setToolTipsVisible(false);
    }
}

void Main::BuildToolbar() {
    m_toolbar = addToolBar(QStringLiteral("Toolbar"));
    m_toolbar->setObjectName(QStringLiteral("Toolbar1"));
    m_toolbar->setMovable(false);
    m_toolbar->setFloatable(false);
    m_toolbar->setIconSize(QSize(22, 22));
    m_toolbar->setToolButtonStyle(Qt::ToolButtonIconOnly);
    for (const jk::ToolbarButton& button : ToolbarTable()) {
        if (button.GroupStart) {
            m_toolbar->addSeparator();
        }
        QAction* action = nullptr;
        if (!button.Command.empty()) {
            action = new QAction(this);
            QAction* item = m_actions.find(button.Command)->second;
            // A button of its own that runs the item, so that its tip can say more than the
            // item's caption; it follows the item's enabled state.
            connect(action, &QAction::triggered, item, &QAction::trigger);
            connect(item, &QAction::enabledChanged, action, &QAction::setEnabled);
            action->setEnabled(item->isEnabled());
        } else {
            action = new QAction(this);
            action->setCheckable(button.Checkable);
            const std::string key(button.Key);
            connect(action, &QAction::triggered, this, [this, key] { RunCommand(key); });
        }
        action->setObjectName(QStringLiteral("Toolbar1_") + ToQString(button.Key));
        action->setIcon(ThemeIcon(button.Icon));
        action->setToolTip(ToQString(button.ToolTip));
        action->setText(ToQString(button.ToolTip));
        m_toolbar->addAction(action);
        m_toolbarActions.emplace(std::string(button.Key), action);
    }
}

void Main::BuildTray() {
    m_trayMenu = m_menus.find(std::string_view("traymenu"))->second;
    m_tray = new QSystemTrayIcon(ProgramIcon(), this);
    m_tray->setToolTip(QStringLiteral("Ostrel Jukarra"));
    m_tray->setContextMenu(m_trayMenu);
    connect(m_tray, &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick) {
                    restore_Click();
                }
            });
}

QAction* Main::Action(std::string_view name) const {
    const auto found = m_actions.find(name);
    return found == m_actions.end() ? nullptr : found->second;
}

QMenu* Main::Menu(std::string_view name) const {
    const auto found = m_menus.find(name);
    return found == m_menus.end() ? nullptr : found->second;
}

QAction* Main::ToolbarButton(std::string_view key) const {
    const auto found = m_toolbarActions.find(key);
    return found == m_toolbarActions.end() ? nullptr : found->second;
}

void Main::Wire(std::string_view name, std::function<void()> handler) {
    m_handlers.insert_or_assign(std::string(name), std::move(handler));
    UpdateCommandStates();
}

bool Main::Wired(std::string_view name) const {
    return m_handlers.find(name) != m_handlers.end();
}

void Main::RunCommand(const std::string& name) {
    if (m_busy) {
        return;
    }
    const auto found = m_handlers.find(name);
    if (found != m_handlers.end() && found->second) {
        found->second();
    }
}

void Main::UpdateCommandStates() {
    const bool deleting = DeleteEnabled(m_session.Settings.DelMode);
    for (const auto& [name, action] : m_actions) {
        if (m_menus.find(name) != m_menus.end()) {
            continue;  // a menu opens whatever its items can do
        }
        const bool wired = Wired(name);
        action->setEnabled(wired && (deleting || !IsDeleteCommand(name)));
    }
    for (const jk::ToolbarButton& button : ToolbarTable()) {
        if (button.Command.empty()) {
            m_toolbarActions.find(button.Key)->second->setEnabled(Wired(button.Key));
        }
    }
    m_toolbarActions.find(std::string_view("recycle"))
        ->second->setEnabled(deleting && Wired("Delete"));
}

void Main::ApplyDelMode() {
    UpdateCommandStates();
}

void Main::UpdatePlayerMode(const PlayerMode& mode) {
    for (const auto& [name, command] : kPlayerOnly) {
        if (QAction* action = Action(name)) {
            action->setVisible(mode.shown.Has(command));
        }
    }
    m_panels[6]->setVisible(mode.volumePanel);
}

void Main::UpdateWindowsMode(bool trayIcon) {
    if (QSystemTrayIcon::isSystemTrayAvailable() || !trayIcon) {
        m_tray->setVisible(trayIcon);
    }
}

void Main::SetTop() {
    const bool onTop = m_session.Settings.AlwaysOnTop != 0;
    if (onTop == windowFlags().testFlag(Qt::WindowStaysOnTopHint)) {
        return;
    }
    const bool shown = isVisible();
    setWindowFlag(Qt::WindowStaysOnTopHint, onTop);
    if (shown) {
        show();
    }
}

void Main::UpdateLastLists() {
    const RecentListMenu menu = jk::UpdateLastLists(m_session.Playlist.RecentLists);
    for (std::size_t i = 0; i < m_lastListItems.size(); ++i) {
        m_lastListItems[i]->setText(QString::fromStdString(menu.captions[i]));
        m_lastListItems[i]->setVisible(menu.visible[i]);
        m_lastListItems[i]->setToolTip(QString::fromStdString(m_session.Playlist.RecentLists[i]));
    }
    if (const auto separator = m_listSeparators.find(std::string_view("LastList"));
        separator != m_listSeparators.end()) {
        separator->second->setVisible(menu.separatorVisible);
    }
}

void Main::UpdateGoList() {
    bool any = false;
    for (std::size_t i = 0; i < m_goItems.size(); ++i) {
        const std::string& path = m_session.Settings.GoPaths[i + 1];
        m_goItems[i]->setText(QString::fromStdString(GoMenuCaption(i + 1, path)));
        m_goItems[i]->setVisible(!path.empty());
        any = any || !path.empty();
    }
    if (const auto separator = m_listSeparators.find(std::string_view("LastPath"));
        separator != m_listSeparators.end()) {
        separator->second->setVisible(any);
    }
}

void Main::WireBuiltCommands() {
    using Handler = void (Main::*)();
    static constexpr std::pair<std::string_view, Handler> kBuilt[] = {
        {"NewList", &Main::NewList_Click},
        {"OpenList", &Main::OpenList_Click},
        {"AppendToList", &Main::AppendToList_Click},
        {"SaveList", &Main::SaveList_Click},
        {"SaveAsList", &Main::SaveAsList_Click},
        {"CopyTo", &Main::CopyTo_Click},
        {"MoveTo", &Main::MoveTo_Click},
        {"Quit", &Main::Quit_Click},
        {"Cut", &Main::Cut_Click},
        {"Copy", &Main::Copy_Click},
        {"Paste", &Main::Paste_Click},
        {"PasteTo", &Main::PasteTo_Click},
        {"AddSong", &Main::AddSong_Click},
        {"removesong", &Main::removesong_Click},
        {"Slide_up", &Main::Slide_up_Click},
        {"Slide_down", &Main::Slide_down_Click},
        {"Slide_top", &Main::Slide_top_Click},
        {"Slide_bottom", &Main::Slide_bottom_Click},
        {"DeleteSong", &Main::DeleteSong_Click},
        {"SelectAll", &Main::SelectAll_Click},
        {"InvertSelection", &Main::InvertSelection_Click},
        {"Properties", &Main::Properties_Click},
        {"View_Folders", &Main::View_Folders_Click},
        {"View_Files", &Main::View_Files_Click},
        {"View_Playlist", &Main::View_Playlist_Click},
        {"ShowGridlines", &Main::ShowGridlines_Click},
        {"ReverseView", &Main::ReverseView_Click},
        {"ResetView", &Main::ResetView_Click},
        {"ResetCols", &Main::ResetCols_Click},
        {"CollapseAll", &Main::CollapseAll_Click},
        {"OptimizeView", &Main::OptimizeView_Click},
        {"ViewClipboard", &Main::ViewClipboard_Click},
        {"RefreshDir", &Main::RefreshDir_Click},
        {"OnTop", &Main::OnTop_Click},
        {"JumpTo", &Main::JumpTo_Click},
        {"UpLevel", &Main::UpLevel_Click},
        {"GetDir", &Main::GetDir_Click},
        {"RecurseDir", &Main::RecurseDir_Click},
        {"RecurseTotal", &Main::RecurseTotal_Click},
        {"Tips", &Main::Tips_Click},
        {"AboutJK2", &Main::AboutJK2_Click},
        {"ShuffleSelected1", &Main::ShuffleSelected1_Click},
        {"ShuffleFilesOnly", &Main::ShuffleFilesOnly_Click},
        {"CutFile", &Main::CutFile_Click},
        {"CopyFile", &Main::CopyFile_Click},
        {"Pastefile", &Main::Pastefile_Click},
        {"CopyTo1", &Main::CopyTo1_Click},
        {"MoveTo1", &Main::MoveTo1_Click},
        {"Optimize1", &Main::Optimize1_Click},
        {"Delete", &Main::Delete_Click},
        {"ReverseFiles", &Main::ReverseFiles_Click},
        {"SelectAllFiles", &Main::SelectAllFiles_Click},
        {"AddSelected", &Main::AddSelected_Click},
        {"Props", &Main::Props_Click},
        {"ShuffleSelected2", &Main::ShuffleSelected2_Click},
        {"ShuffleOnly", &Main::ShuffleOnly_Click},
        {"CutSong", &Main::CutSong_Click},
        {"CopySong", &Main::CopySong_Click},
        {"PasteSong", &Main::PasteSong_Click},
        {"CopyTo2", &Main::CopyTo2_Click},
        {"MoveTo2", &Main::MoveTo2_Click},
        {"Optimize2", &Main::Optimize2_Click},
        {"SlideTop", &Main::SlideTop_Click},
        {"SlideBottom", &Main::SlideBottom_Click},
        {"SlideUp1", &Main::SlideUp1_Click},
        {"SlideDown1", &Main::SlideDown1_Click},
        {"ReverseSongs", &Main::ReverseSongs_Click},
        {"SelectAllSongs", &Main::SelectAllSongs_Click},
        {"DeleteSelectedSongs", &Main::DeleteSelectedSongs_Click},
        {"RemoveSelected", &Main::RemoveSelected_Click},
        {"CropList", &Main::CropList_Click},
        {"Properties2", &Main::Properties2_Click},
        {"removeall", &Main::RemoveAll_Click},
        {"restore", &Main::restore_Click},
        {"Minimize", &Main::Minimize_Click},
        {"close", &Main::close_Click},
    };
    for (const auto& entry : kBuilt) {
        // Captured by name, not as a structured binding: clang 14, which clang-tidy runs on,
        // cannot capture those.
        const auto handler = entry.second;
        m_handlers.insert_or_assign(std::string(entry.first),
                                    [this, handler] { (this->*handler)(); });
    }
    for (const std::string_view item :
         {"HelpWeb", "HelpEMail", "CheckForUpdate", "OpenTour", "OpenResources"}) {
        m_handlers.insert_or_assign(std::string(item), [this, item] { HelpPage_Click(item); });
    }
    // The Setup Browser ("mOptions"), the Cache Performance window ("CacheWizard") and the
    // Silent MP3 Wizard ("SilentMP3Wiz") are wired with Wire() by the setup windows; the
    // player, the virtual drives, the finders, tagging and publishing wire theirs likewise.
}

}  // namespace jk
