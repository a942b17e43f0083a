// scan [--recurse] [--json] FOLDER

#include <span>
#include <string>

#include "app/Session.h"
#include "app/cli/CliContext.h"
#include "app/cli/CliRegistry.h"
#include "app/cli/CommandArgs.h"
#include "app/cli/CommandOutput.h"
#include "app/cli/InterruptStop.h"
#include "app/cli/ProgressLine.h"
#include "app/cli/SongLookupRun.h"
#include "browse/FolderScan.h"
#include "platform/DirectoryListing.h"
#include "util/FileIo.h"

namespace jk {

namespace {

// Prints the rows a walk appends as they come, and shows its status.
class WalkOutput {
public:
    WalkOutput(const RowList& rows, bool json) : m_rows(rows), m_next(rows.size()), m_json(json) {}

    void PrintNewRows() {
        if (m_next == m_rows.size()) {
            return;
        }
        m_status.Finish();
        for (; m_next < m_rows.size(); ++m_next) {
            PrintRow(m_rows[m_next], m_json);
        }
    }
    void Show(std::string_view status) { m_status.Show(status); }
    void Finish() {
        PrintNewRows();
        m_status.Finish();
    }

private:
    const RowList& m_rows;
    std::size_t m_next;
    bool m_json;
    ProgressLine m_status;
};

int RunScan(CliContext& context, std::span<const std::string> args) {
    const CommandArgs parsed = ParseCommandArgs(args, {"--recurse", "--json"}, {}, "scan");
    if (!parsed.error.empty()) {
        return UsageError(parsed.error);
    }
    if (parsed.operands.size() != 1) {
        return UsageError("scan needs one FOLDER");
    }
    const bool json = parsed.Has("--json");
    const bool recurse = parsed.Has("--recurse");
    std::string folder = FullPathOf(parsed.operands[0]);
    if (!FolderExists(folder)) {
        PrintError(folder + ": no such folder");
        return kExitFailed;
    }

    SongLookupRun run(context, false);
    Session& session = run.TheSession();
    PosixFolderLister lister;
    InterruptStop interrupt;

    // A folder's listing fills the files pane; a recursion adds to the playlist.
    RowList filesPane;
    RowList& rows = recurse ? session.Playlist.Rows : filesPane;
    WalkOutput output(rows, json);
    const ScanProgressFn progress = [&output, &interrupt](const ScanProgress& step) {
        output.PrintNewRows();
        output.Show(step.Status);
        return !interrupt.Requested();
    };
    ScanSetup setup = run.Walk(lister);
    setup.Progress = progress;

    PrintRowHeader(json);
    ScanResult result;
    if (recurse) {
        result = RecurseDirReal(folder, rows, setup);
        if (result.Added > 0) {
            session.Playlist.PlaylistSaved = false;
        }
    } else {
        result = GetFolderNow(folder, rows, setup);
    }
    output.Finish();

    const int saved = run.Finish();
    if (saved != kExitOk) {
        return FinishOutput(saved);
    }
    return FinishOutput(result.Aborted ? kExitInterrupted : kExitOk);
}

const CliRegistration kScanCommand{CliCommand{
    .name = "scan",
    .help =
        {
            {"scan [--recurse] [--json] FOLDER", "list the songs of a folder, or of a whole tree"},
        },
    .details =
        "Lists the songs of FOLDER as the files pane shows them: the files that the FilterMode\n"
        "setting lets through, in the order the file system keeps them, each read through the\n"
        "song cache of the data folder (a cached record when the file's date matches, else\n"
        "the file itself). With --recurse, the songs of FOLDER and of every folder below it,\n"
        "depth first: a folder's songs before its sub-folders. Links to folders are not\n"
        "followed; folders whose path holds \"temporary internet\" are not entered, and files\n"
        "in recycle and trash folders are never songs.\n"
        "Each song is printed as soon as it is read, as the twelve columns of a list pane:\n"
        "  Title Artist Album Year Genre Time Bitrate Filename Comment Size Date Volume\n"
        "tab-separated under a header line of these names, or with --json as one object a\n"
        "line with these names. Filename is the full path.\n"
        "While it runs, standard error shows \"Scanning: FOLDER | N songs\" when it is a\n"
        "terminal. Ctrl-C stops the walk before the next file or folder: the songs read so\n"
        "far are printed and saved in the cache, and the exit status is 130.\n"
        "The cache and its counters are saved afterwards, as \"info\" saves them; while the\n"
        "desktop program runs on the same data folder nothing is saved and one line on\n"
        "standard error says so.",
    .run = &RunScan,
}};

}  // namespace

}  // namespace jk
