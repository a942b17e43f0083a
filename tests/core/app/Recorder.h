#pragma once

// A front end and data steps that write down every step run, in order, as "front:Name",
// "status:Text", "panel:Text" or "data:Name", for tests of the start-up and shutdown order.

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "app/Session.h"
#include "app/SessionData.h"
#include "app/SessionFront.h"

namespace jk::test {

class Recorder final : public StartupFront,
                       public ShutdownFront,
                       public PaneFront,
                       public MessageFront,
                       public SessionData {
public:
    std::vector<std::string> log;

    // What the tests may set.
    SaveAnswer answer = SaveAnswer::No;
    std::size_t playlistSongs = 0;
    bool playerRunning = false;
    bool volumesHeldPerVolume = false;
    std::optional<UserMessage> lastListFailure;
    // Called at a named data step with the session as it stands then.
    std::function<void(const std::string& step, Session& session)> onData;
    std::function<void()> onSetupBrowser;

    std::vector<UserMessage> messages;
    std::string startedPlayer;

    // The entries of `log` that begin with `prefix`.
    std::vector<std::string> Only(const std::string& prefix) const {
        std::vector<std::string> out;
        for (const std::string& entry : log) {
            if (entry.rfind(prefix, 0) == 0) {
                out.push_back(entry);
            }
        }
        return out;
    }
    bool Ran(const std::string& entry) const {
        for (const std::string& e : log) {
            if (e == entry) {
                return true;
            }
        }
        return false;
    }

    // StartupFront, ShutdownFront, PaneFront, MessageFront
    void SetStatus(std::string_view text) override { log.push_back("status:" + std::string(text)); }
    void ClearProgress() override { Front("ClearProgress"); }
    void PrepareMainWindow(std::string_view caption) override {
        Front("PrepareMainWindow " + std::string(caption));
    }
    void BindTrayIcons() override { Front("BindTrayIcons"); }
    void SetMainEnabled(bool enabled) override { Front(enabled ? "EnableMain" : "DisableMain"); }
    void LoadVirtualFolders() override { Front("LoadVirtualFolders"); }
    void UpdateBookmarks() override { Front("UpdateBookmarks"); }
    void PlaceVerticalSplitter(std::int16_t at) override {
        Front("PlaceVerticalSplitter " + std::to_string(at));
    }
    void ShowMain() override { Front("ShowMain"); }
    void ShowGridLines(bool on) override {
        Front(std::string("ShowGridLines ") + (on ? "1" : "0"));
    }
    void UpdateLastLists() override { Front("UpdateLastLists"); }
    void CheckOnTop(bool on) override { Front(std::string("CheckOnTop ") + (on ? "1" : "0")); }
    void SetTop() override { Front("SetTop"); }
    void RefreshSetupPlayers() override { Front("RefreshSetupPlayers"); }
    void ListStats() override { Front("ListStats"); }
    void AlignSplitters() override { Front("AlignSplitters"); }
    void OpenFolder(std::string_view path) override { Front("OpenFolder " + std::string(path)); }
    void CloseSplash() override { Front("CloseSplash"); }
    void ShowWelcome(const UserMessage& message) override {
        messages.push_back(message);
        Front("ShowWelcome");
    }
    void PlaceMain() override { Front("PlaceMain"); }
    void RunSetupBrowser() override {
        Front("RunSetupBrowser");
        if (onSetupBrowser) {
            onSetupBrowser();
        }
    }
    void ApplyColumnOrders(std::string_view, std::string_view) override {
        Front("ApplyColumnOrders");
    }
    void UpdatePlayerMode(const PlayerMode& mode) override {
        Front("UpdatePlayerMode " + std::to_string(mode.kind) +
              (mode.volumePanel ? " volume" : ""));
    }
    void SetIntroPlayPressed(bool on) override {
        Front(std::string("SetIntroPlayPressed ") + (on ? "1" : "0"));
    }
    void UpdateWindowsMode(bool tray) override {
        Front(std::string("UpdateWindowsMode ") + (tray ? "1" : "0"));
    }
    void ShowTips() override { Front("ShowTips"); }
    void SetViewChecks(bool, bool, bool) override { Front("SetViewChecks"); }
    void LoadClipboardViewer() override { Front("LoadClipboardViewer"); }
    void RestoreToolbar() override { Front("RestoreToolbar"); }
    void ShowMainIfHidden() override { Front("ShowMainIfHidden"); }
    void StoreWindowPosition(jk::Settings&) override { Front("StoreWindowPosition"); }
    void SetPanelText(std::string_view text) override {
        log.push_back("panel:" + std::string(text));
    }
    SaveAnswer AskSaveList(const UserMessage& question) override {
        messages.push_back(question);
        Front("AskSaveList");
        return answer;
    }
    void SaveListClick() override { Front("SaveListClick"); }
    void StopTimers() override { Front("StopTimers"); }
    void RemoveTrayIcons() override { Front("RemoveTrayIcons"); }
    void StoreWindowLayout(jk::Settings& settings) override {
        Front("StoreWindowLayout");
        settings.Width = 10500;
    }
    void ShowMessage(const UserMessage& message) override {
        messages.push_back(message);
        Front("ShowMessage " + message.title);
    }

    // SessionData
    void InitializeDrives(Session& s) override { Data("InitializeDrives", s); }
    void LoadCache(Session& s, const StepProgress&) override { Data("LoadCache", s); }
    void LoadVirtualCache(Session& s, MessageFront&, const StepProgress&) override {
        Data("LoadVirtualCache", s);
        if (volumesHeldPerVolume) {
            s.VolumesReady = -1;
        }
    }
    void BuildVirtualVolumes(Session& s, const StepProgress&) override {
        Data("BuildVirtualVolumes", s);
    }
    void LoadVirtualFolders(Session& s) override { Data("LoadVirtualFolders", s); }
    void LoadBookmarks(Session& s) override { Data("LoadBookmarks", s); }
    void OptimizeCache(Session& s) override { Data("OptimizeCache", s); }
    void OpenLastList(Session& s) override { Data("OpenLastList", s); }
    void SetPlayerMode(Session& s) override {
        SessionData::SetPlayerMode(s);
        Data("SetPlayerMode", s);
    }
    bool PlayerRunning(const Session&) override { return playerRunning; }
    void StartPlayer(Session& s, const std::string& path) override {
        startedPlayer = path;
        Data("StartPlayer", s);
    }
    std::size_t PlaylistSongCount(const Session&) override { return playlistSongs; }
    std::optional<UserMessage> SaveLastList(Session& s) override {
        Data("SaveLastList", s);
        return lastListFailure;
    }
    void TrimCache(Session& s) override { Data("TrimCache", s); }
    void SaveBookmarks(Session& s) override { Data("SaveBookmarks", s); }
    void SaveCache(Session& s) override { Data("SaveCache", s); }
    void BackupVirtualCache(Session& s) override { Data("BackupVirtualCache", s); }
    std::optional<UserMessage> SaveVirtualCache(Session& s) override {
        Data("SaveVirtualCache", s);
        return virtualSaveFailure;
    }
    std::optional<UserMessage> virtualSaveFailure;
    void UnhidePlayerWindow(Session& s) override { Data("UnhidePlayerWindow", s); }

private:
    void Front(const std::string& name) { log.push_back("front:" + name); }
    void Data(const std::string& name, Session& session) {
        log.push_back("data:" + name);
        if (onData) {
            onData(name, session);
        }
    }
};

}  // namespace jk::test
