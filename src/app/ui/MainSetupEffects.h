#pragma once

// What the Setup Browser's "Okay" applies to the main window, passed on to it.

#include "setup/SetupOkay.h"

namespace jk {

class Main;
struct Session;

class MainSetupEffects final : public SetupEffects {
public:
    MainSetupEffects(Session& session, Main& main) : m_session(session), m_main(main) {}

    void SetTop(bool alwaysOnTop) override;
    void UpdateWindowsMode(std::int16_t windowsMode) override;
    void ListCurrentFolderAfresh() override;
    void ApplyDelMode(bool deleteCommandsEnabled) override;
    void ShowGridLines(bool on) override;
    void ShowCurrSongChanged(bool on) override;
    void UpdatePlayerMode() override;
    void SetPlayerMode() override;
    void ResizeForm() override;

private:
    Session& m_session;
    Main& m_main;
};

}  // namespace jk
