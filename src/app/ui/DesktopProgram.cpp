#include "app/ui/DesktopProgram.h"

#include <cstdio>

#include <QApplication>
#include <QMessageBox>
#include <QTimer>

#include "app/Shutdown.h"
#include "app/ui/MainFinders.h"
#include "app/ui/MainPlayer.h"
#include "app/ui/MainSetupEffects.h"
#include "app/ui/VirtualDriveWiring.h"
#include "platform/DataFolder.h"
#include "platform/Drives.h"
#include "platform/ExecutableSearch.h"
#include "platform/InstanceLock.h"
#include "platform/SystemPlayerPlatform.h"
#include "platform/TerminationWatch.h"
#include "platform/UserFolders.h"
#include "playback/ListWriting.h"
#include "playback/PlayerBridge.h"
#include "playback/PlaylistCommands.h"
#include "setup/ui/SessionWindows.h"
#include "setup/ui/SetupBrowser.h"

namespace jk {

namespace {

// A second start that finds the lock held waits this long for the holder to answer or let go
// (the command-line tool holds it only while it writes).
constexpr int kRaiseTimeoutMs = 2000;
constexpr int kLockWaitMs = 3000;
// How often a close asked by the system looks again whether start-up or a dialog is over.
constexpr int kUnattendedRetryMs = 50;

}  // namespace

DesktopProgram::DesktopProgram(std::string dataFolder, SessionData& data)
    : m_dataFolder(std::move(dataFolder)),
      m_data(data),
      m_main(m_session),
      m_front(m_session, m_splash, m_main),
      m_setupEffects(std::make_unique<MainSetupEffects>(m_session, m_data, m_main)),
      m_virtualDrives(std::make_unique<VirtualDriveWiring>(m_session, m_main, m_front)),
      m_finders(std::make_unique<MainFinders>(m_session, m_main, m_data.Player())) {
    m_main.SetCloseHandler([this] { return CloseRequested(); });
    m_front.saveList = [this] { SaveListClick(); };
    m_front.updateBookmarks = [this] { m_virtualDrives->UpdateBookmarks(); };
    WireSetupWindows();
}

void DesktopProgram::WireSetupWindows() {
    m_main.Wire("mOptions", [this] { mOptions_Click(); });
    m_main.Wire("CacheWizard", [this] { CacheWizard_Click(); });
    m_main.Wire("SilentMP3Wiz", [this] { SilentMP3Wiz_Click(); });
    // A first run: the Setup Browser modally in front of the main window.
    m_front.setupBrowser = [this] { mOptions_Click(); };
}

void DesktopProgram::mOptions_Click() {
    RunSetupBrowser(&m_main, m_session, *m_setupEffects);
}

void DesktopProgram::CacheWizard_Click() {
    RunCacheWizard(&m_main, m_session);
}

void DesktopProgram::SilentMP3Wiz_Click() {
    RunSilentWizard(&m_main, m_session);
}

DesktopProgram::~DesktopProgram() = default;

void DesktopProgram::UsePlayer(PlayerBridge& bridge) {
    m_player = std::make_unique<MainPlayer>(m_session, m_main, m_front, bridge, *m_setupEffects);
    m_finders->UsePlayer(&bridge);
}

StartupResult DesktopProgram::Start() {
    m_splash.show();
    QApplication::processEvents();
    StartupEnvironment environment;
    environment.dataFolder = m_dataFolder;
    environment.firstPlayerPath = FindDefaultPlayer();
    environment.samples = {MusicFolder(), DownloadFolder()};
    m_session.VolumeLabelLookup = MakeVolumeLabelLookup();
    m_session.DriveLister = [] { return ListDrives(); };
    const StartupResult result = RunStartup(m_session, m_front, m_data, environment);
    m_front.ShowPlaylistCaption();
    m_virtualDrives->WatchMounts();
    return result;
}

void DesktopProgram::SaveListClick() {
    if (!m_unattended) {
        m_main.SaveList_Click();
        return;
    }
    // Nobody is there to name an untitled list.
    const SaveResult saved = SaveList(m_session.Playlist, ListSettingsOf(m_session.Settings),
                                      [] { return std::string(); });
    if (saved.outcome == SaveOutcome::Failed) {
        UserMessage message = SaveFailedMessage();
        if (!saved.reason.empty()) {
            message.text += "\n\n" + saved.reason;
        }
        m_front.ShowMessage(message);
    }
    m_front.ShowPlaylistCaption();
}

void DesktopProgram::RaiseFromOtherStart() {
    if (m_main.isVisible()) {
        m_main.RaiseFromOtherStart();
    } else if (m_splash.isVisible()) {
        m_splash.raise();
    }
}

void DesktopProgram::WatchTerminationSignals() {
    m_terminationWatch = std::make_unique<TerminationWatch>([this](int) { CloseUnattended(); });
}

void DesktopProgram::CloseUnattended() {
    if (m_shutDown) {
        return;
    }
    m_unattended = true;
    m_front.SetUnattended(true);
    // A modal window runs an event loop of its own: it is closed (a question is answered
    // Cancel), and the shutdown waits until that loop, start-up or a user's close is over.
    if (QWidget* modal = QApplication::activeModalWidget()) {
        modal->close();
    }
    if (m_session.Starting != 0 || m_closing || QApplication::activeModalWidget() != nullptr) {
        QTimer::singleShot(kUnattendedRetryMs, &m_main, [this] { CloseUnattended(); });
        return;
    }
    m_main.close();
    if (m_shutDown) {
        QCoreApplication::quit();  // also when the window was hidden (the tray mode)
    }
}

bool DesktopProgram::CloseRequested() {
    if (m_shutDown) {
        return true;
    }
    // No command reaches the window while start-up builds the session, nor a second close
    // while the first one waits for an answer.
    if (m_session.Starting != 0 || m_closing) {
        return false;
    }
    m_closing = true;
    const ShutdownResult result = FormUnload(
        m_session, m_front, m_data, m_unattended ? CloseRequest::Unattended : CloseRequest::ByUser);
    m_closing = false;
    if (result.cancelled) {
        return false;
    }
    m_shutDown = true;
    return true;
}

int RunDesktopProgram(QApplication& app) {
    const DataFolderResult folder = OpenDataFolder();
    if (!folder.ok) {
        QMessageBox::critical(nullptr, QStringLiteral("Sorry..."),
                              QString::fromStdString(folder.error));
        return 2;
    }
    InstanceLock lock(folder.path);
    InstanceLock::Result locked = lock.TryAcquire();
    if (locked == InstanceLock::Result::HeldElsewhere) {
        if (AskRunningInstanceToRaise(folder.path, kRaiseTimeoutMs)) {
            return 0;
        }
        locked = lock.TryAcquire(kLockWaitMs);
    }
    if (locked != InstanceLock::Result::Acquired) {
        const std::string why = locked == InstanceLock::Result::Failed
                                    ? lock.Error()
                                    : "Jukarra is already running on " + folder.path;
        std::fprintf(stderr, "jukarra: %s\n", why.c_str());
        return 1;
    }

    SessionData data;
    // The player is started at start-up, and steered, through this bridge.
    SystemPlayerPlatform playerPlatform;
    PlayerBridge player(playerPlatform);
    data.UsePlayer(&player);
    DesktopProgram program(folder.path, data);
    program.UsePlayer(player);
    lock.ListenForRaise([&program] { program.RaiseFromOtherStart(); });
    program.WatchTerminationSignals();
    program.Start();
    return app.exec();
}

}  // namespace jk
