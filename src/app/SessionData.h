#pragma once

// The data steps of start-up and shutdown that belong to the catalogue, browsing and playback:
// one call per step, so that start-up and shutdown keep their order in one place and a test can
// stand in for any of them. SessionData.cpp binds each to its routine.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "app/MessageFront.h"
#include "app/Messages.h"
#include "browse/DriveRoot.h"
#include "playback/PlayerCommands.h"

namespace jk {

class PlayerBridge;
struct Session;

// Progress of a long step: items done of total; false asks the step to stop.
using StepProgress = std::function<bool(std::int64_t done, std::int64_t total)>;

class SessionData {
public:
    virtual ~SessionData() = default;

    // The bridge the player steps go through; without one no player runs or starts, and the
    // kind is still set.
    void UsePlayer(PlayerBridge* bridge) { m_player = bridge; }
    PlayerBridge* Player() const { return m_player; }

    // Start-up.
    // The folder tree's drive roots (Session::Drives) from the front end's drive list.
    virtual void InitializeDrives(Session& session);
    virtual void LoadCache(Session& session, const StepProgress& progress);
    // Sets VolumesReady to -1 when the database is already held per volume.
    // The questions of a damaged database go to the front end's messages.
    virtual void LoadVirtualCache(Session& session, MessageFront& messages,
                                  const StepProgress& progress);
    virtual void BuildVirtualVolumes(Session& session, const StepProgress& progress);
    // Sorts each volume's songs and makes the nodes of its folders (Session::VirtualTrees).
    virtual void LoadVirtualFolders(Session& session);
    virtual void LoadBookmarks(Session& session);
    virtual void OptimizeCache(Session& session);
    // "lastlist.m3u" of the data folder into the playlist, through the song cache, when
    // RememberList is 1. The list stays untitled and saved.
    virtual void OpenLastList(Session& session);
    // SetPlayerMode: PlayerKind from the player's path and MprisPlayer; the bridge aimed at it.
    virtual void SetPlayerMode(Session& session);
    // UpdatePlayerMode: the commands the window shows for that player.
    virtual PlayerMode UpdatePlayerMode(Session& session);
    virtual bool PlayerRunning(const Session& session);
    // A player path is there when it names an executable file or a command on the PATH.
    virtual bool PlayerThere(const Session& session, const std::string& playerPath);
    virtual void StartPlayer(Session& session, const std::string& playerPath);

    // Shutdown.
    virtual std::size_t PlaylistSongCount(const Session& session);
    // Writes the playlist as "lastlist.m3u"; the "Uh-oh..." message when it could not.
    virtual std::optional<UserMessage> SaveLastList(Session& session);
    virtual void TrimCache(Session& session);
    virtual void SaveBookmarks(Session& session);
    virtual void SaveCache(Session& session);
    virtual void BackupVirtualCache(Session& session);
    // Writes the database; the failure (only ever told with SafeCatalogue on) when it could not.
    virtual std::optional<UserMessage> SaveVirtualCache(Session& session);
    // Un-hides a hidden WinPlay3.
    virtual void UnhidePlayerWindow(Session& session);

private:
    PlayerBridge* m_player = nullptr;
};

// The roots the folder tree shows, in its order: every drive whose type is not 0.
DriveList TreeRootsOf(DriveList drives);

}  // namespace jk
