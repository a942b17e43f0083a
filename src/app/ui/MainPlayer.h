#pragma once

// The player's side of the main window: every play, queue and remote item, the toolbar's
// transport and IntroPlay keys, the tray's player items and the WinPlay 3 tray icon bound to
// the core routines; the IntroPlay, status and fade timers; and the ShowCurrSong switch of the
// Setup Browser's "Okay". It holds no rule of its own: each handler calls one routine of
// app/PlayerSession.h or app/PlayerItems.h.

#include <string_view>

#include <QObject>

#include "playback/IntroPlay.h"
#include "playback/PlayerCommands.h"
#include "playback/RunPlaylist.h"
#include "playback/ShuffleRandom.h"
#include "playback/StatusPanels.h"

class QSystemTrayIcon;
class QTimer;

namespace jk {

class DesktopFront;
class Main;
class MainSetupEffects;
class PlayerBridge;
struct PlayItem;
struct Session;

// UpdatePlayerMode in the window: the remote items and transport keys the player can carry out
// shown, the others hidden, and the volume panel shown for a player that reports its volume.
void ShowPlayerMode(Main& main, const PlayerMode& mode);

class MainPlayer final : public QObject {
    Q_OBJECT

public:
    MainPlayer(Session& session, Main& main, DesktopFront& front, PlayerBridge& bridge,
               MainSetupEffects& effects);
    ~MainPlayer() override;

    // Setup's ShowCurrSong switched: the time and song panels emptied, or filled at once.
    void ShowCurrSongChanged(bool on);
    // The window follows a new player mode: a player that reports nothing leaves no time,
    // song or volume of the one before it in the status bar.
    void PlayerModeShown(const PlayerMode& mode);
    // The IntroPlay key, as the toolbar button shows it.
    void IntroPlay_Click();
    // One tick of each timer (tests call them directly).
    void IntroPlayTick();
    void StatusTick();
    // The WinPlay 3 tray icon (shown before a WinPlay 3 is started).
    QSystemTrayIcon& WinPlayIcon() { return *m_winPlayIcon; }
    // True while a list is being handed to the player.
    bool Loading() const { return m_loading; }

private:
    void WireItems();
    void RunItem(const PlayItem& item);
    void OpenAndPlayList_Click();
    void Remote(PlayerCommand command);
    PlayFront MakeFront();
    void ShowWinPlayIcon();

    Session& m_session;
    Main& m_main;
    DesktopFront& m_front;
    PlayerBridge& m_bridge;
    MainSetupEffects& m_effects;
    ShuffleRandom m_random;
    IntroPlay m_intro;
    StatusPanels m_panels;
    QTimer* m_introTimer = nullptr;
    QTimer* m_statusTimer = nullptr;
    QTimer* m_fadeTimer = nullptr;
    QSystemTrayIcon* m_winPlayIcon = nullptr;
    bool m_loading = false;
};

}  // namespace jk
