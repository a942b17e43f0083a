#include "app/cli/SongLookupRun.h"

#include "app/CacheCodepage.h"
#include "app/CacheSaving.h"
#include "app/Session.h"
#include "app/SongLookup.h"
#include "app/cli/CliContext.h"
#include "app/cli/CliRegistry.h"
#include "app/cli/CommandOutput.h"
#include "app/cli/ProgressLine.h"
#include "platform/Drives.h"
#include "platform/InstanceLock.h"
#include "playback/CachedSongSource.h"
#include "playback/PlaylistCommands.h"

namespace jk {

Session& CacheSession(CliContext& context) {
    Session& session = context.StartedSession();
    // A previous run's start-up did this already; a first run's did not.
    FlushCacheOnCodepageChange(session, SettingScope::ThisRun);
    return session;
}

Session& SongSession(CliContext& context) {
    Session& session = CacheSession(context);
    if (!session.VolumeLabelLookup) {
        session.VolumeLabelLookup = MakeVolumeLabelLookup();
    }
    return session;
}

LookupSaving::LookupSaving(CliContext& context, bool writeAccess) : m_context(context) {
    if (writeAccess) {
        return;
    }
    m_lock = std::make_unique<InstanceLock>(context.DataFolder());
    switch (m_lock->TryAcquire()) {
        case InstanceLock::Result::Acquired:
            break;
        case InstanceLock::Result::HeldElsewhere:
            m_whyNot = "Jukarra is running on " + context.DataFolder();
            break;
        case InstanceLock::Result::Failed:
            m_whyNot = m_lock->Error();
            break;
    }
}

LookupSaving::~LookupSaving() = default;

void LookupSaving::Begin(const Session& session) {
    m_attemptsBefore = session.Settings.TotalCacheHits;
}

int LookupSaving::Finish(Session& session) {
    if (session.Settings.TotalCacheHits == m_attemptsBefore) {
        return kExitOk;
    }
    if (!m_whyNot.empty()) {
        PrintError(m_whyNot + "; the song cache and its counters were not saved");
        return kExitOk;
    }
    const IoResult saved = SaveLookupResults(session);
    if (!saved.ok) {
        PrintError("cannot save the song cache: " + saved.error);
        return kExitFailed;
    }
    return kExitOk;
}

namespace {

// Marks where the lookups begin before any is made.
SongLookup BeginLookups(LookupSaving& saving, Session& session) {
    saving.Begin(session);
    return MakeSongLookup(session);
}

}  // namespace

SongLookupRun::SongLookupRun(CliContext& context, bool writeAccess)
    : m_saving(context, writeAccess),
      m_session(SongSession(context)),
      m_lookup(BeginLookups(m_saving, m_session)) {}

ScanSetup SongLookupRun::Walk(FolderLister& lister, ProgressLine* status) {
    ScanSetup walk;
    walk.Lister = &lister;
    walk.FilterMode = m_session.Settings.FilterMode;
    walk.Lookup = &m_lookup;
    if (status != nullptr) {
        walk.Progress = [status](const ScanProgress& step) {
            status->Show(step.Status);
            return true;
        };
    }
    return walk;
}

bool SongLookupRun::OpenListFile(PlaylistState& list, const std::string& listPath) {
    const ListReadResult read =
        OpenList(list, listPath, CachedSongSource(m_lookup), ListSettingsOf(m_session.Settings));
    if (!read.Ok()) {
        PrintError(ListErrorLine(listPath, read.error));
        return false;
    }
    return true;
}

bool SongLookupRun::SaveListFile(PlaylistState& list, const std::string& listPath) {
    const SaveResult saved = SaveList(list, ListSettingsOf(m_session.Settings),
                                      [&listPath]() -> const std::string& { return listPath; });
    if (saved.outcome == SaveOutcome::Failed) {
        PrintError(SaveFailedLine(saved.reason));
        return false;
    }
    return true;
}

}  // namespace jk
