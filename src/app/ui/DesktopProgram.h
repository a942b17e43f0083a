#pragma once

// The desktop program: the session, the splash, the main window and their front end, started by
// the shared start-up sequence and closed by the shutdown sequence.

#include <functional>
#include <memory>
#include <string>

#include "app/Session.h"
#include "app/SessionData.h"
#include "app/Startup.h"
#include "app/ui/DesktopFront.h"
#include "app/ui/MainWindow.h"
#include "app/ui/Splash.h"

class QApplication;

namespace jk {

class MainPlayer;
class MainFinders;
class MainSetupEffects;
class PlayerBridge;
class TerminationWatch;
class VirtualDriveWiring;

class DesktopProgram {
public:
    // `dataFolder` ends in "/"; `data` carries the data steps.
    DesktopProgram(std::string dataFolder, SessionData& data);
    ~DesktopProgram();
    DesktopProgram(const DesktopProgram&) = delete;
    DesktopProgram& operator=(const DesktopProgram&) = delete;

    // The play, queue and remote commands, IntroPlay and the player's panels, through `bridge`
    // (which the session data's player steps use too); before Start. Without it those
    // commands stay disabled.
    void UsePlayer(PlayerBridge& bridge);
    MainPlayer* Player() { return m_player.get(); }
    // Shows the splash and runs start-up; the main window is up when it returns.
    StartupResult Start();
    // Brings the program to the front for a second start.
    void RaiseFromOtherStart();
    // From now on SIGTERM, SIGINT and SIGHUP close the program through CloseUnattended.
    void WatchTerminationSignals();
    // The close that the system asks for (a logout, a `kill`): open dialogs are closed, the
    // shutdown runs without a question once start-up is over, and the event loop ends.
    void CloseUnattended();
    // The File menu's save command: an unsaved list goes to the file it was opened from or
    // last saved as; an untitled one is saved under a name the user chooses. A save that
    // fails tells the user, and the list stays unsaved.
    void SaveListClick();
    // Replaces the save dialog (tests): gives the chosen path, "" for a cancelled dialog.
    void SetSavePathChooser(std::function<std::string()> choose) {
        m_main.SetPathChooser([choose = std::move(choose)](PathQuestion question) {
            return question == PathQuestion::SaveList ? choose() : std::string();
        });
    }

    Session& State() { return m_session; }
    Main& MainWindow() { return m_main; }
    Splash& SplashWindow() { return m_splash; }
    DesktopFront& Front() { return m_front; }
    // What the Setup Browser's "Okay" applies to the main window; the player's part fills its
    // player seams.
    MainSetupEffects& SetupEffectsOfMain() { return *m_setupEffects; }
    VirtualDriveWiring& VirtualDrives() { return *m_virtualDrives; }
    // The finders' host, as the windows opened from the main window see it.
    MainFinders& Finders() { return *m_finders; }
    // True once the shutdown sequence has run to its end.
    bool ShutDown() const { return m_shutDown; }

private:
    bool CloseRequested();
    void WireSetupWindows();
    void mOptions_Click();
    void CacheWizard_Click();
    void SilentMP3Wiz_Click();

    std::string m_dataFolder;
    SessionData& m_data;
    Session m_session;
    Splash m_splash;
    Main m_main;
    DesktopFront m_front;
    std::unique_ptr<MainSetupEffects> m_setupEffects;
    std::unique_ptr<MainPlayer> m_player;
    std::unique_ptr<VirtualDriveWiring> m_virtualDrives;
    std::unique_ptr<MainFinders> m_finders;
    std::unique_ptr<TerminationWatch> m_terminationWatch;
    bool m_shutDown = false;
    bool m_closing = false;  // a shutdown sequence is under way
    bool m_unattended = false;
};

// The program's entry: the data folder, the single-instance lock (a second start raises the
// first and ends before any window appears), start-up and the event loop.
int RunDesktopProgram(QApplication& app);

}  // namespace jk
