#pragma once

// The desktop program's side of start-up and shutdown: the splash's status and progress, the
// main window's caption, placement and panel 5, and the message boxes.

#include <functional>

#include "app/MessageFront.h"
#include "app/PaneFront.h"
#include "app/ShutdownFront.h"
#include "app/StartupFront.h"

class QWidget;

namespace jk {

class Main;
class Splash;
struct Session;

class DesktopFront final : public StartupFront,
                           public ShutdownFront,
                           public PaneFront,
                           public MessageFront {
public:
    DesktopFront(Session& session, Splash& splash, Main& main);

    // The Setup Browser of a first run, shown modally in front of the main window; nothing
    // happens until the setup windows set it.
    std::function<void()> setupBrowser;
    // The File menu's save command for the open playlist; nothing happens until it is set.
    std::function<void()> saveList;
    // The Bookmarks menu made from the session's bookmarks; nothing until the bookmarks set it.
    std::function<void()> updateBookmarks;

    // StartupFront
    void SetStatus(std::string_view text) override;
    void ClearProgress() override;
    bool ShowProgress(std::int64_t done, std::int64_t total) override;
    void CloseSplash() override;
    void PrepareMainWindow(std::string_view caption) override;
    void SetMainEnabled(bool enabled) override;
    void ShowMain() override;
    void PlaceMain() override;
    void ShowMainIfHidden() override;
    void ShowWelcome(const UserMessage& message) override;
    void RunSetupBrowser() override;
    void PlaceVerticalSplitter(std::int16_t splitLeft) override;
    void AlignSplitters() override;
    void ShowGridLines(bool on) override;
    void CheckOnTop(bool checked) override;
    void SetTop() override;
    void ApplyColumnOrders(std::string_view files, std::string_view playlist) override;
    void UpdatePlayerMode(const PlayerMode& mode) override;
    void SetIntroPlayPressed(bool pressed) override;
    void UpdateWindowsMode(bool trayIcon) override;
    void SetViewChecks(bool files, bool folders, bool playlist) override;
    void ShowTips() override;

    // ShutdownFront
    void StoreWindowPosition(jk::Settings& settings) override;
    void StoreWindowLayout(jk::Settings& settings) override;

    void RemoveTrayIcons() override;

    // PaneFront
    void LoadVirtualFolders() override;
    void UpdateBookmarks() override;
    void OpenFolder(std::string_view path) override;
    void UpdateLastLists() override;
    void ListStats() override;
    void SaveListClick() override;
    void SetPanelText(std::string_view text) override;

    // MessageFront
    void ShowMessage(const UserMessage& message) override;
    SaveAnswer AskSaveList(const UserMessage& question) override;
    bool AskYesNo(const UserMessage& question) override;

    // The main window's caption for the open playlist: its name, "*" when unsaved.
    void ShowPlaylistCaption();
    // With nobody at the screen (a close asked by the system), messages go to standard error
    // instead of a box that would wait for an answer.
    void SetUnattended(bool unattended) { m_unattended = unattended; }

private:
    QWidget* MessageParent() const;
    void ShowAsSaved();

    Session& m_session;
    Splash& m_splash;
    Main& m_main;
    bool m_unattended = false;
};

}  // namespace jk
