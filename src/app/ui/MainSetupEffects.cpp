#include "app/ui/MainSetupEffects.h"

#include <QAction>

#include "app/Session.h"
#include "app/SessionData.h"
#include "app/ui/MainPlayer.h"
#include "app/ui/MainWindow.h"

namespace jk {

void MainSetupEffects::SetTop(bool alwaysOnTop) {
    if (QAction* onTop = m_main.Action("OnTop")) {
        onTop->setChecked(alwaysOnTop);
    }
    m_main.SetTop();
}

void MainSetupEffects::UpdateWindowsMode(std::int16_t windowsMode) {
    m_main.UpdateWindowsMode(windowsMode != 0);
}

void MainSetupEffects::ListCurrentFolderAfresh() {
    m_main.RelistCurrentFolder();
}

void MainSetupEffects::ApplyDelMode(bool /*deleteCommandsEnabled*/) {
    // The window reads DelMode from the settings, which "Okay" has just stored.
    m_main.ApplyDelMode();
}

void MainSetupEffects::ShowGridLines(bool on) {
    m_main.ShowGridLines(on);
}

void MainSetupEffects::ShowCurrSongChanged(bool on) {
    if (showCurrSongChanged) {
        showCurrSongChanged(on);
    }
}

void MainSetupEffects::ShowMode(const PlayerMode& mode) {
    ShowPlayerMode(m_main, mode);
    if (playerModeShown) {
        playerModeShown(mode);
    }
}

void MainSetupEffects::UpdatePlayerMode() {
    ShowMode(m_data.UpdatePlayerMode(m_session));
}

void MainSetupEffects::SetPlayerMode() {
    m_data.SetPlayerMode(m_session);
    // The commands follow the player just chosen, not the one UpdatePlayerMode saw.
    ShowMode(m_data.UpdatePlayerMode(m_session));
}

void MainSetupEffects::ResizeForm() {
    m_main.PlaceSplitters();
}

}  // namespace jk
