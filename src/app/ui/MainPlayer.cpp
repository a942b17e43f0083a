#include "app/ui/MainPlayer.h"

#include <chrono>

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QSystemTrayIcon>
#include <QTimer>

#include "app/PlayerItems.h"
#include "app/PlayerSession.h"
#include "app/Session.h"
#include "app/ui/DesktopFront.h"
#include "app/ui/Icons.h"
#include "app/ui/ListPane.h"
#include "app/ui/MainSetupEffects.h"
#include "app/ui/MainWindow.h"
#include "app/ui/PlayQuestions.h"
#include "app/ui/PropertiesDialog.h"
#include "playback/PlayerBridge.h"
#include "playback/ui/PlaylistModel.h"
#include "ui/common/QtText.h"

namespace jk {

namespace {

int Ms(std::chrono::milliseconds interval) {
    return static_cast<int>(interval.count());
}

bool PropertySheetShowing() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (qobject_cast<PropertiesDialog*>(widget) != nullptr && widget->isVisible()) {
            return true;
        }
    }
    return false;
}

}  // namespace

MainPlayer::MainPlayer(Session& session, Main& main, DesktopFront& front, PlayerBridge& bridge,
                       MainSetupEffects& effects)
    : m_session(session), m_main(main), m_front(front), m_bridge(bridge), m_effects(effects) {
    // IntroPlay ticks twice a second (kIntroPlayInterval): positions come in whole seconds.
    m_introTimer = new QTimer(this);
    m_introTimer->setInterval(Ms(kIntroPlayInterval));
    connect(m_introTimer, &QTimer::timeout, this, [this] { IntroPlayTick(); });
    // The status panels and the title follow the player every half second (kStatusInterval).
    m_statusTimer = new QTimer(this);
    m_statusTimer->setInterval(Ms(kStatusInterval));
    connect(m_statusTimer, &QTimer::timeout, this, [this] { StatusTick(); });
    // A fade runs in steps of kFadeStepInterval, and only while it runs.
    m_fadeTimer = new QTimer(this);
    m_fadeTimer->setInterval(Ms(kFadeStepInterval));
    connect(m_fadeTimer, &QTimer::timeout, this, [this] {
        m_bridge.Tick(std::chrono::steady_clock::now());
        if (!m_bridge.Fading()) {
            m_fadeTimer->stop();
        }
    });

    m_winPlayIcon = new QSystemTrayIcon(ProgramIcon(), this);
    m_winPlayIcon->setToolTip(QStringLiteral("WinPlay 3"));
    m_winPlayIcon->setContextMenu(m_main.Menu("RemoteWindow"));
    connect(m_winPlayIcon, &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason == QSystemTrayIcon::Trigger) {
                    Remote(PlayerCommand::Restore);
                }
            });

    m_effects.showCurrSongChanged = [this](bool on) { ShowCurrSongChanged(on); };
    m_effects.playerModeShown = [this](const PlayerMode& mode) { PlayerModeShown(mode); };
    WireItems();
    m_introTimer->start();
    m_statusTimer->start();
}

MainPlayer::~MainPlayer() {
    m_effects.showCurrSongChanged = {};
    m_effects.playerModeShown = {};
}

void MainPlayer::WireItems() {
    for (const PlayItem& item : PlayItems()) {
        if (item.Name == "OpenAndPlayList") {
            m_main.Wire(item.Name, [this] { OpenAndPlayList_Click(); });
        } else {
            m_main.Wire(item.Name, [this, &item] { RunItem(item); });
        }
    }
    for (const RemoteItem& item : RemoteItems()) {
        const PlayerCommand command = item.Command;
        m_main.Wire(item.Name, [this, command] { Remote(command); });
    }
    for (const RemoteItem& key : RemoteToolbarKeys()) {
        const PlayerCommand command = key.Command;
        m_main.Wire(key.Name, [this, command] { Remote(command); });
    }
    m_main.Wire("introplay", [this] { IntroPlay_Click(); });
}

PlayFront MainPlayer::MakeFront() {
    PlayFront front;
    front.propertySheetVisible = [] { return PropertySheetShowing(); };
    front.minimizeMain = [this] { m_main.showMinimized(); };
    front.showWinPlayIcon = [this] { ShowWinPlayIcon(); };
    front.showMessage = [this](const UserMessage& message) { m_front.ShowMessage(message); };
    AskInBoxes(front, &m_main);
    front.progress = [this](std::int64_t done, std::int64_t total) {
        m_main.SetPanelText(QStringLiteral("Loading songs: %1 of %2").arg(done).arg(total));
        m_main.ShowProgress(done, total);
        // The window stays responsive while a long list goes over song by song.
        QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        return true;
    };
    return front;
}

void MainPlayer::RunItem(const PlayItem& item) {
    if (m_loading) {
        return;
    }
    ListPane& pane = item.Pane == PlayPane::Files ? m_main.FilesPane() : m_main.PlaylistPane();
    pane.SelectionToRows();
    m_loading = true;
    const QString before = m_main.PanelText();
    RunPlayItem(item, pane.Model().Rows(), m_session, m_bridge, MakeFront(), m_random);
    m_main.SetPanelText(before);
    m_main.ShowProgress(0, 0);
    m_loading = false;
}

void MainPlayer::OpenAndPlayList_Click() {
    // Only a list that was opened is played: a cancelled dialog or question leaves the player
    // alone.
    const std::string before = m_session.Playlist.RecentLists[0];
    const bool wasSaved = m_session.Playlist.PlaylistSaved;
    m_main.OpenList_Click();
    const bool opened = m_session.Playlist.RecentLists[0] != before ||
                        (m_session.Playlist.PlaylistSaved && !wasSaved);
    if (opened) {
        for (const PlayItem& item : PlayItems()) {
            if (item.Name == "PlayList") {
                RunItem(item);
            }
        }
    }
}

void MainPlayer::Remote(PlayerCommand command) {
    const std::optional<std::string> volume =
        m_bridge.Command(command, std::chrono::steady_clock::now());
    if (volume) {
        m_main.SetVolumeText(ToQString(*volume));
        StatusPanelUpdate shown;
        shown.volume = volume;
        m_panels.Shown(shown);
    }
    if (m_bridge.Fading() && !m_fadeTimer->isActive()) {
        m_fadeTimer->start();
    }
}

void MainPlayer::ShowWinPlayIcon() {
    if (QSystemTrayIcon::isSystemTrayAvailable()) {
        m_winPlayIcon->show();
    }
}

void ShowPlayerMode(Main& main, const PlayerMode& mode) {
    main.UpdatePlayerMode(mode);
    for (const RemoteItem& item : RemoteItems()) {
        if (QAction* action = main.Action(item.Name)) {
            action->setVisible(mode.shown.Has(item.Command));
        }
    }
    for (const RemoteItem& key : RemoteToolbarKeys()) {
        if (QAction* button = main.ToolbarButton(key.Name)) {
            button->setVisible(mode.shown.Has(key.Command));
        }
    }
}

void MainPlayer::ShowCurrSongChanged(bool on) {
    if (!on) {
        m_main.SetTimeText({});
        m_main.SetSongText({});
    }
    // Forgetting what was shown makes the next tick write every panel afresh.
    m_panels = StatusPanels();
    if (on) {
        StatusTick();
    }
}

void MainPlayer::PlayerModeShown(const PlayerMode& mode) {
    if (mode.volumePanel) {
        return;
    }
    m_main.SetTimeText({});
    m_main.SetSongText({});
    m_main.SetVolumeText({});
    m_panels = StatusPanels();
}

void MainPlayer::IntroPlay_Click() {
    m_session.Settings.IntroPlay = m_session.Settings.IntroPlay == 1 ? 0 : 1;
    if (QAction* button = m_main.ToolbarButton("introplay")) {
        button->setChecked(m_session.Settings.IntroPlay == 1);
    }
}

void MainPlayer::IntroPlayTick() {
    if (m_loading || m_session.Starting != 0) {
        return;
    }
    IntroPlayTimer(m_session, m_bridge, m_intro);
}

void MainPlayer::StatusTick() {
    if (QAction* button = m_main.ToolbarButton("introplay")) {
        button->setChecked(m_session.Settings.IntroPlay == 1);
    }
    if (m_loading || m_session.Starting != 0) {
        return;
    }
    const StatusPanelUpdate update = StatusTimer(m_session, m_bridge, m_panels);
    if (update.time) {
        m_main.SetTimeText(ToQString(*update.time));
    }
    if (update.volume) {
        m_main.SetVolumeText(ToQString(*update.volume));
    }
    if (update.song) {
        m_main.SetSongText(ToQString(*update.song));
    }
    m_main.ShowPlaylistCaption();
}

}  // namespace jk
