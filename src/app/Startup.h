#pragma once

// The start-up sequence, shared by the desktop program and the command-line tool: the data
// steps in their fixed order (catalogues before settings, bookmarks before settings, settings
// before the cache is optimised), with the visual steps handed to the front end.

#include <string>
#include <vector>

#include "app/SessionData.h"
#include "app/SessionFront.h"
#include "app/SettingsTable.h"
#include "app/SettingsValidate.h"

namespace jk {

struct Session;

// A setting given for this run only, applied right after the settings file is read.
struct SettingOverride {
    const SettingField* field = nullptr;
    std::string value;
};

struct StartupEnvironment {
    std::string dataFolder;       // becomes AppPath
    std::string firstPlayerPath;  // the first-run player; "" gives "winamp.exe"
    SamplePaths samples;
    bool startPlayer = true;  // false: never start the player (the command-line tool)
    // false: the previous playlist is not opened (the command-line tool, whose commands name
    // the lists they work on, and which never writes "lastlist.m3u").
    bool openLastList = true;
    std::vector<SettingOverride> overrides;
};

struct StartupResult {
    bool firstRun = false;
};

// The splash's part: marks the playlist saved, runs InitializeMain and shows the main window
// if it is still hidden.
StartupResult RunStartup(Session& session, const SessionFront& front, SessionData& data,
                         const StartupEnvironment& environment);

// The whole start-up sequence. Returns false on a first run.
bool InitializeMain(Session& session, const SessionFront& front, SessionData& data,
                    const StartupEnvironment& environment);

// "Untitled - Ostrel Jukarra 2.62".
std::string UntitledCaption();

}  // namespace jk
