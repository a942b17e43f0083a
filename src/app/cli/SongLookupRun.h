#pragma once

// The run of song lookups that the commands reading songs share: the session made ready for
// lookups, and the saving of what they taught the cache.

#include <cstdint>
#include <memory>
#include <string>

#include "browse/FolderScan.h"
#include "catalogue/GetSongInfo.h"

namespace jk {

class CliContext;
class InstanceLock;
class ProgressLine;
struct PlaylistState;
struct Session;

// The started session with the cache emptied, and held back from saving, when a --set
// TagCodepage names another code page than the saved one.
Session& CacheSession(CliContext& context);
// The same, with this machine's volume labels for songs read from disk.
Session& SongSession(CliContext& context);

// The rule of the commands that read songs: what the lookups added to the cache, and the
// counters, are saved afterwards, unless the desktop program runs on the data folder (it keeps
// its own cache and saves it when it closes); the songs are still printed then, and one line
// says that nothing was saved.
class LookupSaving {
public:
    // Create it before the session starts, so that no other writer saves between the load of
    // the cache and its save. `writeAccess`: the command already holds the data folder
    // (CliContext::AcquireWriteAccess).
    LookupSaving(CliContext& context, bool writeAccess);
    ~LookupSaving();
    LookupSaving(const LookupSaving&) = delete;
    LookupSaving& operator=(const LookupSaving&) = delete;

    // Marks where the lookups begin.
    void Begin(const Session& session);
    // Saves when there were lookups. kExitFailed when the save failed, else kExitOk.
    int Finish(Session& session);

private:
    CliContext& m_context;
    std::unique_ptr<InstanceLock> m_lock;
    std::string m_whyNot;  // why this run may not save; empty when it may
    std::int32_t m_attemptsBefore = 0;
};

// A command's run of song lookups: the session with its cache loaded, the context its lookups
// go through, and the saving of what they taught the cache, set up in the order that rule needs.
class SongLookupRun {
public:
    SongLookupRun(CliContext& context, bool writeAccess);
    SongLookupRun(const SongLookupRun&) = delete;
    SongLookupRun& operator=(const SongLookupRun&) = delete;

    Session& TheSession() { return m_session; }
    SongLookup& Lookup() { return m_lookup; }
    // LookupSaving::Finish.
    int Finish() { return m_saving.Finish(m_session); }

    // A walk of folders listed by `lister`, with the session's file filter and this run's
    // lookups; its status shown on `status` when one is given.
    ScanSetup Walk(FolderLister& lister, ProgressLine* status = nullptr);
    // Reads the list file at `listPath` into `list` with the session's list settings, its songs
    // through this run's lookups. When that fails, says why on standard error and returns false
    // (the rows read before the fault stay).
    bool OpenListFile(PlaylistState& list, const std::string& listPath);
    // Saves `list` to `listPath`; when that fails, says why and returns false.
    bool SaveListFile(PlaylistState& list, const std::string& listPath);

private:
    LookupSaving m_saving;
    Session& m_session;
    SongLookup m_lookup;
};

}  // namespace jk
