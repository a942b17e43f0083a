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

// The player is started only when it isn't running and its path names a file.
void StartPlayerIfWanted(Session& session, SessionData& data, const StartupEnvironment& env) {
    if (!env.startPlayer || session.Settings.AutoLoadPlayer != 1 || data.PlayerRunning(session)) {
        return;
    }
    const std::string path(Trim(CurrentPlayerPath(session.Settings)));
    if (!path.empty() && FileExists(path)) {
        data.StartPlayer(session, path);
    }
}

void ContinuePreviousRun(Session& session, SessionFront& front, SessionData& data,
                         const StartupEnvironment& env) {
    Settings& settings = session.Settings;
    ValidateINI(settings, env.samples);
    front.PlaceVerticalSplitter(settings.SplitLeft);
    ApplyMaxCache(session);
    front.SetStatus(kStatusOptimize);
    data.OptimizeCache(session);
    front.ShowMain();
    front.ShowGridLines(settings.ShowGrid == 1);
    front.UpdateLastLists();
    front.CheckOnTop(settings.AlwaysOnTop == 1);
    front.SetTop();
    if (env.openLastList && RememberListIsOne(settings)) {
        front.SetStatus(kStatusLastList);
        data.OpenLastList(session);
    }
    front.RefreshSetupPlayers();
    StartPlayerIfWanted(session, data, env);
    front.ListStats();
    front.AlignSplitters();
    front.OpenFolder(settings.GoPaths[1]);
}

void WelcomeFirstRun(Session& session, SessionFront& front, const StartupEnvironment& env) {
    front.CloseSplash();
    front.ShowWelcome(WelcomeMessage());
    front.PlaceMain();
    front.RunSetupBrowser();
    // After the Setup Browser, so that what the user left empty gets its default.
    ValidateINI(session.Settings, env.samples);
}

void FinishStartup(Session& session, SessionFront& front) {
    const Settings& settings = session.Settings;
    front.ApplyColumnOrders(settings.ColumnOrderFiles, settings.ColumnOrderPlaylist);
    front.UpdatePlayerMode(IsWinampOnlyMode(settings));
    front.SetTop();
    front.RefreshSetupPlayers();
    front.SetIntroPlayPressed(settings.IntroPlay != 0);
    ApplyFilterMode(session);
    front.CloseSplash();
    session.Starting = 0;
    front.UpdateWindowsMode(settings.WindowsMode != 0);
    front.SetMainEnabled(true);
    if (Val(settings.ShowTips) == 1) {
        front.ShowTips();
    }
    front.SetViewChecks(settings.ViewFiles == 1, settings.ViewFolders == 1,
                        settings.ViewPlaylist == 1);
    front.LoadClipboardViewer();
    front.RestoreToolbar();
}

}  // namespace

std::string UntitledCaption() {
    return WindowTitle("", true, kProductCaption);
}

bool InitializeMain(Session& session, SessionFront& front, SessionData& data,
                    const StartupEnvironment& environment) {
    const StepProgress progress = [&front](std::int64_t done, std::int64_t total) {
        return front.ShowProgress(done, total);
    };

    AllocateArrays(session);
    front.PrepareMainWindow(UntitledCaption());
    SetAppPath(session, environment.dataFolder);
    front.BindTrayIcons();
    front.SetMainEnabled(false);
    session.CacheFrozen = 0;

    front.SetStatus(kStatusDrives);
    front.ClearProgress();
    data.InitializeDrives(session);

    front.SetStatus(kStatusCache);
    data.LoadCache(session, progress);
    session.VolumesReady = 0;

    front.SetStatus(kStatusVirtual);
    front.ClearProgress();
    data.LoadVirtualCache(session, progress);
    if (session.VolumesReady == 0) {
        front.SetStatus(kStatusBuildVirtual);
        data.BuildVirtualVolumes(session, progress);
    }

    front.SetStatus(kStatusFolders);
    front.LoadVirtualFolders();

    // Defaults before the settings file, so that a key it never reads keeps its default.
    LoadDefaults(session, environment.firstPlayerPath);

    front.SetStatus(kStatusBookmarks);
    data.LoadBookmarks(session);
    front.UpdateBookmarks();

    front.SetStatus(kStatusSettings);
    const bool previousRun = LoadSettingsFile(session);
    ApplyOverrides(session, environment.overrides);

    if (previousRun) {
        ContinuePreviousRun(session, front, data, environment);
    } else {
        WelcomeFirstRun(session, front, environment);
    }
    FinishStartup(session, front);
    return previousRun;
}

StartupResult RunStartup(Session& session, SessionFront& front, SessionData& data,
                         const StartupEnvironment& environment) {
    session.Playlist.PlaylistSaved = true;
    StartupResult result;
    result.firstRun = !InitializeMain(session, front, data, environment);
    front.ShowMainIfHidden();
    return result;
}

}  // namespace jk
