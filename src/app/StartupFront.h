#pragma once

// The start-up steps a front end with windows takes between the data steps: the splash, the
// preparation and showing of the main window, and a first run's welcome and setup. A front end
// without windows has none of them, and keeps every empty default.

#include <cstdint>
#include <string_view>

#include "playback/PlayerCommands.h"
#include "util/UserMessage.h"

namespace jk {

class StartupFront {
public:
    virtual ~StartupFront() = default;

    // ---- The splash ----
    // Its status line and its progress box.
    virtual void SetStatus(std::string_view /*text*/) {}
    virtual void ClearProgress() {}
    // Progress of a long data step; false asks it to stop.
    virtual bool ShowProgress(std::int64_t /*done*/, std::int64_t /*total*/) { return true; }
    virtual void CloseSplash() {}

    // ---- The main window, made ready while it is hidden ----
    // Toolbar, caption, list modes and interface font.
    virtual void PrepareMainWindow(std::string_view /*caption*/) {}
    virtual void BindTrayIcons() {}
    virtual void SetMainEnabled(bool /*enabled*/) {}
    virtual void PlaceVerticalSplitter(std::int16_t /*splitLeft*/) {}
    virtual void AlignSplitters() {}
    virtual void ShowGridLines(bool /*on*/) {}
    virtual void CheckOnTop(bool /*checked*/) {}
    virtual void SetTop() {}
    virtual void RefreshSetupPlayers() {}
    virtual void ApplyColumnOrders(std::string_view /*files*/, std::string_view /*playlist*/) {}
    // Shows the remote commands and the volume panel that the player can carry.
    virtual void UpdatePlayerMode(const PlayerMode& /*mode*/) {}
    virtual void SetIntroPlayPressed(bool /*pressed*/) {}
    virtual void UpdateWindowsMode(bool /*trayIcon*/) {}
    virtual void SetViewChecks(bool /*files*/, bool /*folders*/, bool /*playlist*/) {}
    virtual void LoadClipboardViewer() {}
    virtual void RestoreToolbar() {}

    // ---- Showing it ----
    // Shows the main window where the settings place it (a previous run).
    virtual void ShowMain() {}
    // Centres or places the main window (a first run).
    virtual void PlaceMain() {}
    virtual void ShowMainIfHidden() {}

    // ---- A first run, and the tips ----
    virtual void ShowWelcome(const UserMessage& /*message*/) {}
    // The Setup Browser, modal.
    virtual void RunSetupBrowser() {}
    virtual void ShowTips() {}
};

}  // namespace jk
