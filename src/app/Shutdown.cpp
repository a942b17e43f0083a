#include "app/Shutdown.h"

#include "app/Session.h"
#include "app/SettingsStore.h"
#include "playback/PlaylistCommands.h"

namespace jk {

namespace {

constexpr std::string_view kPanelShuttingDown = "Shutting down...";
constexpr std::string_view kPanelAutoSaving = "AutoSaving list...";
constexpr std::string_view kPanelCleaning = "Cleaning cache...";
constexpr std::string_view kPanelSavingBookmarks = "Saving bookmarks...";
constexpr std::string_view kPanelSavingCache = "Saving cache...";
constexpr std::string_view kPanelBackingUp = "Backing up virtual cache...";
constexpr std::string_view kPanelSavingVirtual = "Saving virtual drives...";
constexpr std::string_view kPanelWritingIni = "Writing INI...";

void SaveAndForgetList(Session& session, const SessionFront& front) {
    front.Panes.SaveListClick();
    session.Playlist.PlaylistSaved = true;
    session.Playlist.CurrentList.clear();
}

// Returns false when the user cancels.
bool DecideOnPlaylist(Session& session, const SessionFront& front, SessionData& data,
                      CloseRequest request) {
    const std::size_t songs = data.PlaylistSongCount(session);
    if (session.Playlist.PlaylistSaved || songs == 0) {
        return true;
    }
    front.Panes.SetPanelText(kPanelShuttingDown);
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
        switch (front.Messages.AskSaveList(SaveQuestion())) {
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

void SaveLastListIfRemembered(Session& session, const SessionFront& front, SessionData& data) {
    if (!RememberListIsOn(session.Settings)) {
        return;
    }
    front.Panes.SetPanelText(kPanelAutoSaving);
    if (const auto failure = data.SaveLastList(session)) {
        front.Messages.ShowMessage(*failure);
    }
}

void SaveVirtualDrivesIfChanged(Session& session, const SessionFront& front, SessionData& data) {
    if (session.VirtualDirty == 0) {
        return;
    }
    front.Panes.SetPanelText(kPanelBackingUp);
    data.BackupVirtualCache(session);
    front.Panes.SetPanelText(kPanelSavingVirtual);
    if (const auto failure = data.SaveVirtualCache(session)) {
        front.Messages.ShowMessage(*failure);
    }
}

}  // namespace

ShutdownResult FormUnload(Session& session, const SessionFront& front, SessionData& data,
                          CloseRequest request) {
    ShutdownResult result;
    front.Shutdown.StoreWindowPosition(session.Settings);
    if (!DecideOnPlaylist(session, front, data, request)) {
        front.Panes.SetPanelText("");
        result.cancelled = true;
        return result;
    }
    front.Shutdown.StopTimers();
    SaveLastListIfRemembered(session, front, data);
    front.Panes.SetPanelText(kPanelCleaning);
    data.TrimCache(session);
    front.Panes.SetPanelText(kPanelSavingBookmarks);
    data.SaveBookmarks(session);
    front.Panes.SetPanelText(kPanelSavingCache);
    data.SaveCache(session);
    SaveVirtualDrivesIfChanged(session, front, data);
    front.Shutdown.RemoveTrayIcons();
    data.UnhidePlayerWindow(session);

    front.Panes.SetPanelText(kPanelWritingIni);
    front.Shutdown.StoreWindowLayout(session.Settings);
    result.iniWritten = WriteINI(session.Settings, IniPath(session), &result.iniError);
    if (!result.iniWritten) {
        front.Messages.ShowMessage(IniSaveFailedMessage());
    }
    return result;
}

}  // namespace jk
