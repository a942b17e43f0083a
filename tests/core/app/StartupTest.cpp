#include "app/Startup.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "app/Session.h"
#include "core/app/Recorder.h"
#include "support/TempFolder.h"
#include "util/FileIo.h"

namespace jk {
namespace {

StartupEnvironment EnvironmentFor(const test::TempFolder& folder) {
    StartupEnvironment environment;
    std::string path = folder.Folder();
    path.pop_back();  // AppPath gains its "/" in start-up
    environment.dataFolder = path;
    environment.samples = {"/home/ann/Music", "/home/ann/Downloads"};
    return environment;
}

TEST(Startup, APreviousRunTakesEveryStepInItsOrder) {
    const test::TempFolder folder;
    folder.Write("player", "#!/bin/sh\n");
    folder.Write("jukarra2.ini",
                 "[INIexists]\r\nCheck=1\r\n[Options]\r\nIntroLength=12\r\nMaxCache=3\r\n"
                 "SplitLeft=2000\r\nShowGrid=1\r\nAlwaysOnTop=5\r\nRememberList=1.0\r\n"
                 "AutoLoadPlayer=1\r\nPath1=/music/last\r\nShowTips=1.0\r\nIntroPlay=-1\r\n"
                 "[Player]\r\nPlayerExe1= " +
                     folder.File("player") +
                     " \r\n"
                     "[Advanced]\r\nFilterMode=1\r\n");
    test::Recorder recorder;
    std::vector<std::string> checks;
    recorder.onData = [&](const std::string& step, Session& session) {
        if (step == "LoadCache") {
            checks.push_back("Starting " + std::to_string(session.Starting));
            checks.push_back("AppPath " + session.AppPath);
        }
        if (step == "LoadBookmarks") {  // defaults are in, the file is not read yet
            checks.push_back("IntroLength " + std::to_string(session.Settings.IntroLength));
        }
        if (step == "OptimizeCache") {  // the file is read and the cache limit set
            checks.push_back("IntroLength " + std::to_string(session.Settings.IntroLength));
            checks.push_back("CacheLimit " + std::to_string(session.CacheLimit));
        }
    };
    Session session;
    const StartupResult result = RunStartup(session, recorder, recorder, EnvironmentFor(folder));

    const std::vector<std::string> expected = {
        "front:PrepareMainWindow Untitled - Ostrel Jukarra 2.62",
        "front:BindTrayIcons",
        "front:DisableMain",
        "status:Initializing drives...",
        "front:ClearProgress",
        "data:InitializeDrives",
        "status:Importing cache data...",
        "data:LoadCache",
        "status:Importing virtual drives...",
        "front:ClearProgress",
        "data:LoadVirtualCache",
        "status:Initializing virtual drives...",
        "data:BuildVirtualVolumes",
        "status:Creating virtual folders...",
        "data:LoadVirtualFolders",
        "front:LoadVirtualFolders",
        "status:Getting bookmarks...",
        "data:LoadBookmarks",
        "front:UpdateBookmarks",
        "status:Loading settings...",
        "front:PlaceVerticalSplitter 2000",
        "status:Initializing cache...",
        "data:OptimizeCache",
        "front:ShowMain",
        "front:ShowGridLines 1",
        "front:UpdateLastLists",
        "front:CheckOnTop 1",
        "front:SetTop",
        "status:Loading previous playlist...",
        "data:OpenLastList",
        "front:RefreshSetupPlayers",
        "data:SetPlayerMode",
        "data:StartPlayer",
        "front:ListStats",
        "front:AlignSplitters",
        "front:OpenFolder /music/last",
        "front:ApplyColumnOrders",
        "data:SetPlayerMode",
        "front:UpdatePlayerMode 0",
        "front:SetTop",
        "front:RefreshSetupPlayers",
        "front:SetIntroPlayPressed 1",
        "front:CloseSplash",
        "front:UpdateWindowsMode 0",
        "front:EnableMain",
        "front:ShowTips",
        "front:SetViewChecks",
        "front:LoadClipboardViewer",
        "front:RestoreToolbar",
        "front:ShowMainIfHidden",
    };
    EXPECT_EQ(recorder.log, expected);
    EXPECT_EQ(checks,
              (std::vector<std::string>{"Starting -1", "AppPath " + folder.Folder(),
                                        "IntroLength 7", "IntroLength 12", "CacheLimit 250"}));
    EXPECT_FALSE(result.firstRun);
    EXPECT_EQ(recorder.startedPlayer, folder.File("player"));
    EXPECT_EQ(session.Starting, 0);
    EXPECT_TRUE(session.Playlist.PlaylistSaved);
    EXPECT_EQ(session.FileFilter, "*.mp*");
    EXPECT_EQ(session.RemoteSentinel, 2147483647);
}

TEST(Startup, AFirstRunWelcomesTheUserAndSkipsTheLaterSteps) {
    const test::TempFolder folder;
    folder.Write("player", "#!/bin/sh\n");
    test::Recorder recorder;
    Session session;
    // What the user leaves empty in the Setup Browser gets its default afterwards.
    recorder.onSetupBrowser = [&] {
        session.Settings.HTMLFontName.clear();
        session.Settings.ColumnOrderText.clear();
    };
    StartupEnvironment environment = EnvironmentFor(folder);
    environment.firstPlayerPath = folder.File("player");
    const StartupResult result = RunStartup(session, recorder, recorder, environment);

    EXPECT_TRUE(result.firstRun);
    EXPECT_EQ(recorder.Only("data:"),
              (std::vector<std::string>{"data:InitializeDrives", "data:LoadCache",
                                        "data:LoadVirtualCache", "data:BuildVirtualVolumes",
                                        "data:LoadVirtualFolders", "data:LoadBookmarks",
                                        "data:SetPlayerMode"}));
    const auto& log = recorder.log;
    const auto settingsAt = std::find(log.begin(), log.end(), "status:Loading settings...");
    ASSERT_NE(settingsAt, log.end());
    EXPECT_EQ(std::vector<std::string>(settingsAt + 1, settingsAt + 5),
              (std::vector<std::string>{"front:CloseSplash", "front:ShowWelcome", "front:PlaceMain",
                                        "front:RunSetupBrowser"}));
    EXPECT_FALSE(recorder.Ran("front:ShowMain"));
    ASSERT_EQ(recorder.messages.size(), 1u);
    EXPECT_EQ(recorder.messages[0], WelcomeMessage());
    EXPECT_EQ(session.Settings.HTMLFontName, "Arial");
    EXPECT_EQ(session.Settings.ColumnOrderText, " 0x 1x 2x 3x 4x 5x 6x 7x 8x 9x 10x 11x");
    EXPECT_EQ(CurrentPlayerPath(session.Settings), folder.File("player"));
    EXPECT_EQ(session.CacheLimit, 1000000);
    EXPECT_EQ(session.FileFilter, "*.mp3");
    EXPECT_FALSE(FileExists(folder.File("jukarra2.ini")));  // start-up writes nothing
}

TEST(Startup, TheCacheLimitFollowsMaxCacheOfAnExistingFileOnly) {
    const std::vector<std::pair<std::string, std::int32_t>> cases = {
        {"", 0},  // absent from the file: read as 0
        {"MaxCache=5\r\n", 1000},
        {"MaxCache=9\r\n", 1000000},  // outside the table: LoadDefaults' limit stays
    };
    for (const auto& [line, expected] : cases) {
        const test::TempFolder folder;
        folder.Write("jukarra2.ini", "[INIexists]\r\nCheck=1\r\n[Options]\r\n" + line);
        test::Recorder recorder;
        Session session;
        RunStartup(session, recorder, recorder, EnvironmentFor(folder));
        EXPECT_EQ(session.CacheLimit, expected) << line;
    }
}

TEST(Startup, StartsThePlayerOnlyWhenWantedAbsentAndPresentOnDisk) {
    struct Case {
        std::string autoLoad;
        bool running;
        std::string path;  // "FILE" stands for an existing file
        bool frontStartsPlayers;
        bool started;
    };
    const std::vector<Case> cases = {
        {"1", false, "FILE", true, true},  {"1", false, "  FILE  ", true, true},
        {"0", false, "FILE", true, false}, {"-1", false, "FILE", true, false},
        {"1", true, "FILE", true, false},  {"1", false, "/no/such/player", true, false},
        {"1", false, "", true, false},     {"1", false, "FILE", false, false},
    };
    for (const Case& c : cases) {
        const test::TempFolder folder;
        folder.Write("player", "");
        std::string path = c.path;
        if (const auto at = path.find("FILE"); at != std::string::npos) {
            path.replace(at, 4, folder.File("player"));
        }
        folder.Write("jukarra2.ini",
                     "[INIexists]\r\nCheck=1\r\n[Options]\r\nAutoLoadPlayer=" + c.autoLoad +
                         "\r\n[Player]\r\nPlayerExe1=" + path + "\r\n");
        test::Recorder recorder;
        recorder.playerRunning = c.running;
        StartupEnvironment environment = EnvironmentFor(folder);
        environment.startPlayer = c.frontStartsPlayers;
        Session session;
        RunStartup(session, recorder, recorder, environment);
        EXPECT_EQ(recorder.Ran("data:StartPlayer"), c.started)
            << c.autoLoad << " '" << c.path << "'";
        if (c.started) {
            EXPECT_EQ(recorder.startedPlayer, folder.File("player"));
        }
    }
}

TEST(Startup, ThePlayersKindIsSetBeforeItStartsAndShownAtTheEnd) {
    struct Case {
        std::string player;
        std::string mprisPlayer;
        std::int16_t kind;
        std::string mode;
    };
    const std::vector<Case> cases = {
        {"/usr/bin/mpv", "", 6, "front:UpdatePlayerMode 6 volume"},
        {"/home/nadia/bin/audacious", "", 7, "front:UpdatePlayerMode 7 volume"},
        {"/usr/bin/mpv", "vlc", 7, "front:UpdatePlayerMode 7 volume"},
        {"/opt/winamp/winamp.exe", "", 2, "front:UpdatePlayerMode 2 volume"},
        {"/opt/nad/nad.exe", "", 3, "front:UpdatePlayerMode 3"},
        {"/usr/bin/xmms", "", 0, "front:UpdatePlayerMode 0"},
    };
    for (const Case& c : cases) {
        const test::TempFolder folder;
        folder.Write("jukarra2.ini",
                     "[INIexists]\r\nCheck=1\r\n[Options]\r\nAutoLoadPlayer=1\r\n"
                     "MprisPlayer=" +
                         c.mprisPlayer + "\r\n[Player]\r\nPlayerExe1=" + c.player + "\r\n");
        test::Recorder recorder;
        std::int16_t kindAtStart = -1;
        recorder.onData = [&kindAtStart](const std::string& step, Session& session) {
            if (step == "SetPlayerMode" && kindAtStart < 0) {
                kindAtStart = session.PlayerKind;
            }
        };
        Session session;
        RunStartup(session, recorder, recorder, EnvironmentFor(folder));
        EXPECT_EQ(kindAtStart, c.kind) << c.player;
        EXPECT_EQ(session.PlayerKind, c.kind) << c.player;
        EXPECT_TRUE(recorder.Ran(c.mode)) << c.player;
    }
}

TEST(Startup, OpensTheLastListOnlyWhenRememberListIsOne) {
    for (const auto& [value, opened] : std::vector<std::pair<std::string, bool>>{
             {"1", true}, {"1.0", true}, {"2", false}, {"0", false}, {"", false}}) {
        for (const bool frontWantsIt : {true, false}) {
            const test::TempFolder folder;
            folder.Write("jukarra2.ini",
                         "[INIexists]\r\nCheck=1\r\n[Options]\r\nRememberList=" + value + "\r\n");
            test::Recorder recorder;
            Session session;
            StartupEnvironment environment = EnvironmentFor(folder);
            environment.openLastList = frontWantsIt;
            RunStartup(session, recorder, recorder, environment);
            EXPECT_EQ(recorder.Ran("data:OpenLastList"), opened && frontWantsIt)
                << value << " " << frontWantsIt;
        }
    }
}

TEST(Startup, VolumesReadPerVolumeNeedNoBuilding) {
    const test::TempFolder folder;
    test::Recorder recorder;
    recorder.volumesHeldPerVolume = true;
    Session session;
    RunStartup(session, recorder, recorder, EnvironmentFor(folder));
    EXPECT_FALSE(recorder.Ran("data:BuildVirtualVolumes"));
    EXPECT_FALSE(recorder.Ran("status:Initializing virtual drives..."));
    EXPECT_EQ(session.VolumesReady, -1);
}

TEST(Startup, OverridesApplyRightAfterTheSettingsFile) {
    const test::TempFolder folder;
    folder.Write("jukarra2.ini",
                 "[INIexists]\r\nCheck=1\r\n[Options]\r\nIntroLength=12\r\nMaxCache=3\r\n");
    StartupEnvironment environment = EnvironmentFor(folder);
    environment.overrides = {{FindSetting("introlength").field, "20"},
                             {FindSetting("Options.MaxCache").field, "0"},
                             {FindSetting("FilterMode").field, "2"}};
    test::Recorder recorder;
    Session session;
    RunStartup(session, recorder, recorder, environment);
    EXPECT_EQ(session.Settings.IntroLength, 20);
    EXPECT_EQ(session.CacheLimit, 0);
    EXPECT_EQ(session.FileFilter, "*.*");
}

}  // namespace
}  // namespace jk
