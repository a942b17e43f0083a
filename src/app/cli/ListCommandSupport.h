#pragma once

// What the browsing and playlist commands share: rows of a list pane on standard output,
// Ctrl-C as a stop between items, and the saving of what song
// lookups taught the cache (which "info" shares too).

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "catalogue/GetSongInfo.h"
#include "listing/ListRow.h"

namespace jk {

class CliContext;
class InstanceLock;
struct Session;

// Exit status of a walk stopped by Ctrl-C: what the shell reports for a program that SIGINT
// ended, though here the rows so far were printed and the cache saved.
inline constexpr int kExitInterrupted = 130;

// Rows as tab-separated columns under a header line of the column captions, or, with `json`,
// as one object a line named by the captions ("Title" ... "Volume").
void PrintRowHeader(bool json);
void PrintRow(const ListRow& row, bool json);

// While it lives, the first Ctrl-C only asks the work to stop (a second one ends the program
// as usual). A program started with SIGINT ignored keeps ignoring it.
class InterruptStop {
public:
    InterruptStop();
    ~InterruptStop();
    InterruptStop(const InterruptStop&) = delete;
    InterruptStop& operator=(const InterruptStop&) = delete;

    bool Requested() const;
};

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
    SongLookupContext& Lookup() { return m_lookup; }
    // LookupSaving::Finish.
    int Finish() { return m_saving.Finish(m_session); }

private:
    LookupSaving m_saving;
    Session& m_session;
    SongLookupContext m_lookup;
};

// "Uh-oh... Current playlist could not be saved successfully. (reason)", for one error line.
std::string SaveFailedLine(std::string_view reason);

// The error of reading the list at `path` as one line that names the list.
std::string ListErrorLine(std::string_view path, std::string_view error);

// True for a playlist file named on the command line (".m3u" or ".m3u8", in any case).
bool IsListFileName(std::string_view path);

}  // namespace jk
