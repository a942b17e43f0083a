#include "app/SessionData.h"

#include "app/CacheCodepage.h"
#include "app/CacheSaving.h"
#include "app/ProfileFile.h"
#include "app/Session.h"
#include "app/SongLookup.h"
#include "catalogue/CacheMaintenance.h"
#include "catalogue/VBaseFile.h"
#include "playback/CachedSongSource.h"
#include "playback/ListReading.h"
#include "playback/ListWriting.h"

// The drives, the song cache and the playlist are bound to their routines. Until the virtual
// drives, bookmarks and the player are bound here, their steps leave the session as it is:
// empty catalogues, no player.

namespace jk {

DriveList TreeRootsOf(DriveList drives) {
    std::erase_if(drives, [](const DriveRoot& drive) { return drive.Type == kDriveNotReady; });
    return drives;
}

void SessionData::InitializeDrives(Session& session) {
    session.Drives = TreeRootsOf(session.DriveLister ? session.DriveLister() : DriveList{});
}

void SessionData::LoadCache(Session& session, const StepProgress& progress) {
    // The settings are read later in start-up; the cache on disk was saved in the settings
    // file's code page, which a --set override may change before the cache is first used.
    session.CacheCodepage = SavedTagCodepage(ProfileFile::Load(IniPath(session)));
    session.CacheSaveBlocked = false;
    LoadProgress splash;
    if (progress) {
        splash = [&progress](std::int64_t done, std::int64_t total) { progress(done, total); };
    }
    jk::LoadCache(session.SongCache, session.AppPath, splash);
}

void SessionData::LoadVirtualCache(Session& /*session*/, const StepProgress& /*progress*/) {}

void SessionData::BuildVirtualVolumes(Session& /*session*/, const StepProgress& /*progress*/) {}

void SessionData::LoadBookmarks(Session& /*session*/) {}

void SessionData::OptimizeCache(Session& session) {
    FlushCacheOnCodepageChange(session, SettingScope::ThisRun);
    jk::OptimizeCache(session.SongCache, session.Settings.ExpireMode);
}

void SessionData::OpenLastList(Session& session) {
    if (!RememberListIsOne(session.Settings)) {
        return;
    }
    SongLookupContext lookup = MakeSongLookupContext(session);
    // A line too deep to resolve ends the reading; the rows read before it are kept, and the
    // next shutdown writes them back.
    jk::OpenLastList(session.AppPath, session.Playlist.Rows, CachedSongSource(lookup),
                     session.Settings.HideGhosts);
}

bool SessionData::PlayerRunning(const Session& /*session*/) {
    return false;
}

void SessionData::StartPlayer(Session& /*session*/, const std::string& /*playerPath*/) {}

std::size_t SessionData::PlaylistSongCount(const Session& session) {
    return session.Playlist.Rows.size();
}

std::optional<UserMessage> SessionData::SaveLastList(Session& session) {
    if (jk::SaveLastList(session.AppPath, session.Playlist.Rows).ok) {
        return std::nullopt;
    }
    return SaveFailedMessage();
}

void SessionData::TrimCache(Session& session) {
    jk::TrimCache(session.SongCache, session.CacheLimit, session.CacheFrozen);
}

void SessionData::SaveBookmarks(Session& /*session*/) {}

void SessionData::SaveCache(Session& session) {
    // A cache that cannot be written is only a slower next start; the shutdown goes on.
    SaveSessionCache(session);
}

void SessionData::BackupVirtualCache(Session& /*session*/) {}

void SessionData::SaveVirtualCache(Session& /*session*/) {}

}  // namespace jk
