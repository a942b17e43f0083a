#include "app/Startup.h"

#include "app/Session.h"
#include "app/SettingsStore.h"
#include "app/Version.h"
#include "playback/PlaylistTitle.h"
#include "util/FileIo.h"
#include "util/Text.h"

namespace jk {

namespace {

constexpr std::string_view kStatusDrives = "Initializing drives...";
constexpr std::string_view kStatusCache = "Importing cache data...";
constexpr std::string_view kStatusVirtual = "Importing virtual drives...";
constexpr std::string_view kStatusBuildVirtual = "Initializing virtual drives...";
constexpr std::string_view kStatusFolders = "Creating virtual folders...";
constexpr std::string_view kStatusBookmarks = "Getting bookmarks...";
constexpr std::string_view kStatusSettings = "Loading settings...";
constexpr std::string_view kStatusOptimize = "Initializing cache...";
constexpr std::string_view kStatusLastList = "Loading previous playlist...";

void AllocateArrays(Session& session) {
    session.Starting = -1;
    session.VirtualDirty = 0;
    session.RemoteSentinel = kRemoteNoValue;
}

void SetAppPath(Session& session, const std::string& dataFolder) {
    session.AppPath = dataFolder;
    if (session.AppPath.empty() || session.AppPath.back() != '/') {
        session.AppPath.push_back('/');
    }
}

bool LoadSettingsFile(Session& session) {
    return LoadINI(session.Settings, ProfileFile::Load(IniPath(session)));
}

void ApplyOverrides(Session& session, const std::vector<SettingOverride>& overrides) {
    for (const SettingOverride& change : overrides) {
        if (change.field != nullptr) {
            SetSettingFromText(session.Settings, *change.field, change.value);
        }
    }
}

// The player is started only when it isn't running and its path is there; a missing player
// is skipped silently.
void StartPlayerIfWanted(Session& session, SessionData& data, const StartupEnvironment& env) {
    if (!env.startPlayer || session.Settings.AutoLoadPlayer != 1 || data.PlayerRunning(session)) {
        return;
    }
    const std::string path(Trim(CurrentPlayerPath(session.Settings)));
    if (!path.empty() && data.PlayerThere(session, path)) {
        data.StartPlayer(session, path);
    }
}

void ContinuePreviousRun(Session& session, const SessionFront& front, SessionData& data,
                         const StartupEnvironment& env) {
    Settings& settings = session.Settings;
    ValidateINI(settings, env.samples);
    front.Startup.PlaceVerticalSplitter(settings.SplitLeft);
    ApplyMaxCache(session);
    front.Startup.SetStatus(kStatusOptimize);
    data.OptimizeCache(session);
    front.Startup.ShowMain();
    front.Startup.ShowGridLines(settings.ShowGrid == 1);
    front.Panes.UpdateLastLists();
    front.Startup.CheckOnTop(settings.AlwaysOnTop == 1);
    front.Startup.SetTop();
    if (env.openLastList && RememberListIsOne(settings)) {
        front.Startup.SetStatus(kStatusLastList);
        data.OpenLastList(session);
    }
    front.Startup.RefreshSetupPlayers();
    data.SetPlayerMode(session);
    StartPlayerIfWanted(session, data, env);
    front.Panes.ListStats();
    front.Startup.AlignSplitters();
    front.Panes.OpenFolder(settings.GoPaths[1]);
}

void WelcomeFirstRun(Session& session, const SessionFront& front, const StartupEnvironment& env) {
    front.Startup.CloseSplash();
    front.Startup.ShowWelcome(WelcomeMessage());
    front.Startup.PlaceMain();
    front.Startup.RunSetupBrowser();
    // After the Setup Browser, so that what the user left empty gets its default.
    ValidateINI(session.Settings, env.samples);
}

void FinishStartup(Session& session, const SessionFront& front, SessionData& data) {
    const Settings& settings = session.Settings;
    front.Startup.ApplyColumnOrders(settings.ColumnOrderFiles, settings.ColumnOrderPlaylist);
    data.SetPlayerMode(session);
    front.Startup.UpdatePlayerMode(data.UpdatePlayerMode(session));
    front.Startup.SetTop();
    front.Startup.RefreshSetupPlayers();
    front.Startup.SetIntroPlayPressed(settings.IntroPlay != 0);
    ApplyFilterMode(session);
    front.Startup.CloseSplash();
    session.Starting = 0;
    front.Startup.UpdateWindowsMode(settings.WindowsMode != 0);
    front.Startup.SetMainEnabled(true);
    if (Val(settings.ShowTips) == 1) {
        front.Startup.ShowTips();
    }
    front.Startup.SetViewChecks(settings.ViewFiles == 1, settings.ViewFolders == 1,
                                settings.ViewPlaylist == 1);
    front.Startup.LoadClipboardViewer();
    front.Startup.RestoreToolbar();
}

}  // namespace

std::string UntitledCaption() {
    return WindowTitle("", true, kProductCaption);
}

bool InitializeMain(Session& session, const SessionFront& front, SessionData& data,
                    const StartupEnvironment& environment) {
    const StepProgress progress = [&front](std::int64_t done, std::int64_t total) {
        return front.Startup.ShowProgress(done, total);
    };

    AllocateArrays(session);
    front.Startup.PrepareMainWindow(UntitledCaption());
    SetAppPath(session, environment.dataFolder);
    front.Startup.BindTrayIcons();
    front.Startup.SetMainEnabled(false);
    session.CacheFrozen = 0;

    front.Startup.SetStatus(kStatusDrives);
    front.Startup.ClearProgress();
    data.InitializeDrives(session);

    front.Startup.SetStatus(kStatusCache);
    data.LoadCache(session, progress);
    session.VolumesReady = 0;

    front.Startup.SetStatus(kStatusVirtual);
    front.Startup.ClearProgress();
    data.LoadVirtualCache(session, front.Messages, progress);
    if (session.VolumesReady == 0) {
        front.Startup.SetStatus(kStatusBuildVirtual);
        data.BuildVirtualVolumes(session, progress);
    }

    front.Startup.SetStatus(kStatusFolders);
    data.LoadVirtualFolders(session);
    front.Panes.LoadVirtualFolders();

    // Defaults before the settings file, so that a key it never reads keeps its default.
    LoadDefaults(session, environment.firstPlayerPath);

    front.Startup.SetStatus(kStatusBookmarks);
    data.LoadBookmarks(session);
    front.Panes.UpdateBookmarks();

    front.Startup.SetStatus(kStatusSettings);
    const bool previousRun = LoadSettingsFile(session);
    ApplyOverrides(session, environment.overrides);

    if (previousRun) {
        ContinuePreviousRun(session, front, data, environment);
    } else {
        WelcomeFirstRun(session, front, environment);
    }
    FinishStartup(session, front, data);
    return previousRun;
}

StartupResult RunStartup(Session& session, const SessionFront& front, SessionData& data,
                         const StartupEnvironment& environment) {
    session.Playlist.PlaylistSaved = true;
    StartupResult result;
    result.firstRun = !InitializeMain(session, front, data, environment);
    front.Startup.ShowMainIfHidden();
    return result;
}

}  // namespace jk
