#include "app/SessionData.h"

#include "app/Session.h"

// Until the catalogue, browsing and playback routines are bound here, each step leaves the
// session as it is: empty catalogues, an empty playlist, no player.

namespace jk {

void SessionData::InitializeDrives(Session& /*session*/) {}

void SessionData::LoadCache(Session& /*session*/, const StepProgress& /*progress*/) {}

void SessionData::LoadVirtualCache(Session& /*session*/, const StepProgress& /*progress*/) {}

void SessionData::BuildVirtualVolumes(Session& /*session*/, const StepProgress& /*progress*/) {}

void SessionData::LoadBookmarks(Session& /*session*/) {}

void SessionData::OptimizeCache(Session& /*session*/) {}

void SessionData::OpenLastList(Session& /*session*/) {}

bool SessionData::PlayerRunning(const Session& /*session*/) {
    return false;
}

void SessionData::StartPlayer(Session& /*session*/, const std::string& /*playerPath*/) {}

std::size_t SessionData::PlaylistSongCount(const Session& /*session*/) {
    return 0;
}

std::optional<UserMessage> SessionData::SaveLastList(Session& /*session*/) {
    return std::nullopt;
}

void SessionData::TrimCache(Session& /*session*/) {}

void SessionData::SaveBookmarks(Session& /*session*/) {}

void SessionData::SaveCache(Session& /*session*/) {}

void SessionData::BackupVirtualCache(Session& /*session*/) {}

void SessionData::SaveVirtualCache(Session& /*session*/) {}

}  // namespace jk
