#include "app/SessionData.h"

#include "app/CacheCodepage.h"
#include "app/CacheSaving.h"
#include "app/PlayerSession.h"
#include "app/ProfileFile.h"
#include "app/Session.h"
#include "app/SongLookup.h"
#include "app/VirtualDrives.h"
#include "catalogue/CacheMaintenance.h"
#include "catalogue/VBaseFile.h"
#include "catalogue/VolumeFile.h"
#include "playback/CachedSongSource.h"
#include "playback/ListReading.h"
#include "playback/ListWriting.h"
#include "playback/PlayerKind.h"
#include "util/FileIo.h"
#include "util/Text.h"

// The drives, the song cache, the virtual drives, the bookmarks, the playlist and the player
// are bound to their routines.

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

namespace {

// The catalogue's questions and messages, put through the front end's.
class CatalogueQuestionsToFront final : public CatalogueQuestions {
public:
    explicit CatalogueQuestionsToFront(MessageFront& messages) : m_messages(messages) {}
    bool AskYesNo(const UserMessage& question) override { return m_messages.AskYesNo(question); }
    void ShowMessage(const UserMessage& message) override { m_messages.ShowMessage(message); }

private:
    MessageFront& m_messages;
};

}  // namespace

void SessionData::LoadVirtualCache(Session& session, MessageFront& messages,
                                   const StepProgress& progress) {
    CatalogueQuestionsToFront questions(messages);
    CatalogueFiles& files = session.Files != nullptr ? *session.Files : RealCatalogueFiles();
    RemoveSaveLeftovers(files, session.AppPath);
    LoadProgress splash;
    if (progress) {
        splash = [&progress](std::int64_t done, std::int64_t total) { progress(done, total); };
    }
    // The keys of the settings file decide, as the settings are only read later in start-up.
    const ProfileFile ini = ProfileFile::Load(IniPath(session));
    const auto flag = [&ini](std::string_view key) {
        // A first run has no file: the defaults are on.
        return !ini.HasSection("INIexists") || Val(ini.GetINI("Options", key)) != 0;
    };
    const CatalogueOptions options{flag("SafeCatalogue"), flag("DiscIdentity")};
    if (jk::LoadVirtualCache(session.Virtual, session.AppPath, options, questions, splash)) {
        session.VolumesReady = -1;
    }
}

void SessionData::BuildVirtualVolumes(Session& session, const StepProgress& /*progress*/) {
    jk::BuildVirtualVolumes(session.Virtual.VirtualDrive, session.Virtual.Volumes);
}

void SessionData::LoadVirtualFolders(Session& session) {
    session.VirtualTrees = jk::LoadVirtualFolders(session.Virtual.Volumes);
}

void SessionData::LoadBookmarks(Session& session) {
    session.Bookmarks = jk::LoadBookmarks(session.AppPath + std::string(kBookmarkFileName));
}

void SessionData::OptimizeCache(Session& session) {
    FlushCacheOnCodepageChange(session, SettingScope::ThisRun);
    jk::OptimizeCache(session.SongCache, session.Settings.ExpireMode);
}

void SessionData::OpenLastList(Session& session) {
    if (!RememberListIsOne(session.Settings)) {
        return;
    }
    SongLookup lookup = MakeSongLookup(session);
    // A line too deep to resolve ends the reading; the rows read before it are kept, and the
    // next shutdown writes them back.
    jk::OpenLastList(session.AppPath, session.Playlist.Rows, CachedSongSource(lookup),
                     session.Settings.HideGhosts);
}

void SessionData::SetPlayerMode(Session& session) {
    if (m_player != nullptr) {
        jk::SetPlayerMode(session, *m_player);
    } else {
        session.PlayerKind = PlayerKindFor(CurrentPlayerPath(session.Settings),
                                           session.Settings.MprisPlayer, session.PlayerKind);
    }
}

PlayerMode SessionData::UpdatePlayerMode(Session& session) {
    if (m_player != nullptr) {
        return jk::UpdatePlayerMode(*m_player);
    }
    return {session.PlayerKind, ShownPlayerCommands(session.PlayerKind, {}),
            ShowsVolumePanel(session.PlayerKind)};
}

bool SessionData::PlayerRunning(const Session& /*session*/) {
    return m_player != nullptr && m_player->Running();
}

bool SessionData::PlayerThere(const Session& /*session*/, const std::string& playerPath) {
    return m_player != nullptr ? m_player->Platform().ProgramThere(playerPath)
                               : FileExists(playerPath);
}

void SessionData::StartPlayer(Session& /*session*/, const std::string& /*playerPath*/) {
    // A player that cannot start is skipped silently here.
    if (m_player != nullptr) {
        m_player->StartPlayer();
    }
}

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

void SessionData::SaveBookmarks(Session& session) {
    jk::SaveBookmarks(session.AppPath + std::string(kBookmarkFileName), session.Bookmarks);
}

void SessionData::SaveCache(Session& session) {
    // A cache that cannot be written is only a slower next start; the shutdown goes on.
    SaveSessionCache(session);
}

void SessionData::BackupVirtualCache(Session& session) {
    session.Virtual.BackupRequested = true;
}

std::optional<UserMessage> SessionData::SaveVirtualCache(Session& session) {
    if (SaveVirtualDatabase(session).ok) {
        session.VirtualDirty = 0;
        return std::nullopt;
    }
    // Without SafeCatalogue, saving has no message of its own.
    if (session.Settings.SafeCatalogue == 0) {
        return std::nullopt;
    }
    return CatalogueNotSavedMessage();
}

void SessionData::UnhidePlayerWindow(Session& /*session*/) {
    if (m_player != nullptr) {
        m_player->UnhidePlayerWindow();
    }
}

}  // namespace jk
