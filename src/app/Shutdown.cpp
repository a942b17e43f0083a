#include "app/Shutdown.h"

#include "app/Session.h"
#include "app/SettingsStore.h"
#include "playback/PlaylistCommands.h"

namespace jk {

namespace {

constexpr std::string_view kPanelShuttingDown = "Shutting down...";
constexpr std::string_view kPanelAutoSaving = "AutoSaving list...";
constexpr std::string_view kPanelCleaning = "Cleaning cache...";
constexpr std::string_view kPanelSavingCache = "Saving cache...";
constexpr std::string_view kPanelBackingUp = "Backing up virtual cache...";
constexpr std::string_view kPanelSavingVirtual = "Saving virtual drives...";
constexpr std::string_view kPanelWritingIni = "Writing INI...";

void SaveAndForgetList(Session& session, SessionFront& front) {
    front.SaveListClick();
    session.Playlist.PlaylistSaved = true;
    session.Playlist.CurrentList.clear();
}

// Returns false when the user cancels.
bool DecideOnPlaylist(Session& session, SessionFront& front, SessionData& data,
                      CloseRequest request) {
    const std::size_t songs = data.PlaylistSongCount(session);
    if (session.Playlist.PlaylistSaved || songs == 0) {
        return true;
    }
    front.SetPanelText(kPanelShuttingDown);
    const Settings& settings = session.Settings;
    if (request == CloseRequest::Unattended) {
        // An untitled list would need the save dialog.
        if (settings.NeverAsk == 1 && settings.NeverAskSave == 1 &&
            !session.Playlist.CurrentList.empty()) {
            SaveAndForgetList(session, front);
        }
        return true;
    }
    if (settings.NeverAsk != 1) {
        switch (front.AskSaveList(SaveQuestion())) {
            case SaveAnswer::Cancel:
                return false;
            case SaveAnswer::Yes:
                SaveAndForgetList(session, front);
                break;
            case SaveAnswer::No:
                break;
        }
    } else if (settings.NeverAskSave == 1) {
        SaveAndForgetList(session, front);
    }
    return true;
}

void SaveLastListIfRemembered(Session& session, SessionFront& front, SessionData& data) {
    if (!RememberListIsOn(session.Settings)) {
        return;
    }
    front.SetPanelText(kPanelAutoSaving);
    if (const auto failure = data.SaveLastList(session)) {
        front.ShowMessage(*failure);
    }
}

void SaveVirtualDrivesIfChanged(Session& session, SessionFront& front, SessionData& data) {
    if (session.VirtualDirty == 0) {
        return;
    }
    front.SetPanelText(kPanelBackingUp);
    data.BackupVirtualCache(session);
    front.SetPanelText(kPanelSavingVirtual);
    data.SaveVirtualCache(session);
}

}  // namespace

ShutdownResult FormUnload(Session& session, SessionFront& front, SessionData& data,
                          CloseRequest request) {
    ShutdownResult result;
    front.StoreWindowPosition(session.Settings);
    if (!DecideOnPlaylist(session, front, data, request)) {
        front.SetPanelText("");
        result.cancelled = true;
        return result;
    }
    front.StopTimers();
    SaveLastListIfRemembered(session, front, data);
    front.SetPanelText(kPanelCleaning);
    data.TrimCache(session);
    data.SaveBookmarks(session);
    front.SetPanelText(kPanelSavingCache);
    data.SaveCache(session);
    SaveVirtualDrivesIfChanged(session, front, data);
    front.RemoveTrayIcons();
    front.UnhidePlayerWindow();

    front.SetPanelText(kPanelWritingIni);
    front.StoreWindowLayout(session.Settings);
    result.iniWritten = WriteINI(session.Settings, IniPath(session), &result.iniError);
    if (!result.iniWritten) {
        front.ShowMessage(IniSaveFailedMessage());
    }
    return result;
}

}  // namespace jk
