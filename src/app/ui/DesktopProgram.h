#pragma once

// The desktop program: the session, the splash, the main window and their front end, started by
// the shared start-up sequence and closed by the shutdown sequence.

#include <string>

#include "app/Session.h"
#include "app/SessionData.h"
#include "app/Startup.h"
#include "app/ui/DesktopFront.h"
#include "app/ui/MainWindow.h"
#include "app/ui/Splash.h"

class QApplication;

namespace jk {

class DesktopProgram {
public:
    // `dataFolder` ends in "/"; `data` carries the data steps.
    DesktopProgram(std::string dataFolder, SessionData& data);
    DesktopProgram(const DesktopProgram&) = delete;
    DesktopProgram& operator=(const DesktopProgram&) = delete;

    // Shows the splash and runs start-up; the main window is up when it returns.
    StartupResult Start();
    // Brings the program to the front for a second start.
    void RaiseFromOtherStart();

    Session& State() { return m_session; }
    Main& MainWindow() { return m_main; }
    Splash& SplashWindow() { return m_splash; }
    DesktopFront& Front() { return m_front; }
    // True once the shutdown sequence has run to its end.
    bool ShutDown() const { return m_shutDown; }

private:
    bool CloseRequested();

    std::string m_dataFolder;
    SessionData& m_data;
    Session m_session;
    Splash m_splash;
    Main m_main;
    DesktopFront m_front;
    bool m_shutDown = false;
};

// The program's entry: the data folder, the single-instance lock (a second start raises the
// first and ends before any window appears), start-up and the event loop.
int RunDesktopProgram(QApplication& app);

}  // namespace jk
