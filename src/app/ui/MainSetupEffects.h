#pragma once

// What the Setup Browser's "Okay" applies to the main window, passed on to it.

#include <functional>

#include "playback/PlayerCommands.h"
#include "setup/SetupOkay.h"

namespace jk {

class Main;
class SessionData;
struct Session;

class MainSetupEffects final : public SetupEffects {
public:
    MainSetupEffects(Session& session, SessionData& data, Main& main)
        : m_session(session), m_data(data), m_main(main) {}

    void SetTop(bool alwaysOnTop) override;
    void UpdateWindowsMode(std::int16_t windowsMode) override;
    void ListCurrentFolderAfresh() override;
    void ApplyDelMode(bool deleteCommandsEnabled) override;
    void ShowGridLines(bool on) override;
    void ShowCurrSongChanged(bool on) override;
    void UpdatePlayerMode() override;
    void SetPlayerMode() override;
    void ResizeForm() override;

    // What the playing song's display fills: the song shown in the status bar or not. Empty,
    // nothing happens.
    std::function<void(bool)> showCurrSongChanged;
    // After the window follows a player mode: the player's part of the window forgets what
    // a player that reports nothing can no longer update. Empty, nothing happens.
    std::function<void(const PlayerMode&)> playerModeShown;

private:
    void ShowMode(const PlayerMode& mode);

    Session& m_session;
    SessionData& m_data;
    Main& m_main;
};

}  // namespace jk
