#pragma once

// What the start-up and shutdown need from a front end: the visual steps between their data
// steps. The desktop program implements it with its windows, the command-line tool with nothing
// but standard error, and tests with a recorder. Steps a front end has no counterpart for keep
// the empty default.

#include <cstdint>
#include <string_view>

#include "app/Messages.h"
#include "app/Settings.h"

namespace jk {

class SessionFront {
public:
    virtual ~SessionFront() = default;

    // ---- Start-up ----
    // The splash's status line and its progress box.
    virtual void SetStatus(std::string_view /*text*/) {}
    virtual void ClearProgress() {}
    // Progress of a long data step; false asks it to stop.
    virtual bool ShowProgress(std::int64_t /*done*/, std::int64_t /*total*/) { return true; }
    // Toolbar, caption, list modes and interface font of the main window.
    virtual void PrepareMainWindow(std::string_view /*caption*/) {}
    virtual void BindTrayIcons() {}
    virtual void SetMainEnabled(bool /*enabled*/) {}
    // One folder tree root for each catalogued volume.
    virtual void LoadVirtualFolders() {}
    virtual void UpdateBookmarks() {}
    virtual void PlaceVerticalSplitter(std::int16_t /*splitLeft*/) {}
    // Shows the main window where the settings place it (a previous run).
    virtual void ShowMain() {}
    virtual void ShowGridLines(bool /*on*/) {}
    virtual void UpdateLastLists() {}
    virtual void CheckOnTop(bool /*checked*/) {}
    virtual void SetTop() {}
    virtual void RefreshSetupPlayers() {}
    virtual void ListStats() {}
    virtual void AlignSplitters() {}
    // Opens the folder tree down to a folder and lists it.
    virtual void OpenFolder(std::string_view /*path*/) {}
    virtual void CloseSplash() {}
    virtual void ShowWelcome(const UserMessage& /*message*/) {}
    // Centres or places the main window (a first run).
    virtual void PlaceMain() {}
    // The Setup Browser, modal, on a first run.
    virtual void RunSetupBrowser() {}
    virtual void ApplyColumnOrders(std::string_view /*files*/, std::string_view /*playlist*/) {}
    virtual void UpdatePlayerMode(bool /*winampOnly*/) {}
    virtual void SetIntroPlayPressed(bool /*pressed*/) {}
    virtual void UpdateWindowsMode(bool /*trayIcon*/) {}
    virtual void ShowTips() {}
    virtual void SetViewChecks(bool /*files*/, bool /*folders*/, bool /*playlist*/) {}
    virtual void LoadClipboardViewer() {}
    virtual void RestoreToolbar() {}
    virtual void ShowMainIfHidden() {}

    // ---- Shutdown ----
    // Top and left edge into the settings, unless the window is minimized.
    virtual void StoreWindowPosition(jk::Settings& /*settings*/) {}
    // Panel 5 of the status bar.
    virtual void SetPanelText(std::string_view /*text*/) {}
    virtual SaveAnswer AskSaveList(const UserMessage& question) = 0;
    // The File menu's save command for the open playlist.
    virtual void SaveListClick() = 0;
    virtual void StopTimers() {}
    virtual void RemoveTrayIcons() {}
    // Un-hides a player window that was hidden.
    virtual void UnhidePlayerWindow() {}
    // Window state, normal size and column widths into the settings, just before they are saved.
    virtual void StoreWindowLayout(jk::Settings& /*settings*/) {}

    virtual void ShowMessage(const UserMessage& message) = 0;
};

}  // namespace jk
