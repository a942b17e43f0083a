// playlist show [--json] FILE.m3u | playlist add FILE.m3u PATH...

#include <span>
#include <string>
#include <vector>

#include "app/Session.h"
#include "app/cli/CliContext.h"
#include "app/cli/CliRegistry.h"
#include "app/cli/CommandArgs.h"
#include "app/cli/CommandOutput.h"
#include "app/cli/ProgressLine.h"
#include "app/cli/SongLookupRun.h"
#include "browse/FolderScan.h"
#include "listing/WalkRules.h"
#include "metadata/SongInfo.h"
#include "platform/DirectoryListing.h"
#include "playback/CachedSongSource.h"
#include "playback/PlaylistCommands.h"
#include "util/FileIo.h"

namespace jk {

namespace {

int Show(CliContext& context, std::span<const std::string> args) {
    const CommandArgs parsed = ParseCommandArgs(args, {"--json"}, {}, "playlist show");
    if (!parsed.error.empty()) {
        return UsageError(parsed.error);
    }
    if (parsed.operands.size() != 1) {
        return UsageError("playlist show needs one FILE");
    }
    const bool json = parsed.Has("--json");
    const std::string listPath = FullPathOf(parsed.operands[0]);

    SongLookupRun run(context, false);
    Session& session = run.TheSession();
    SongLookup& lookup = run.Lookup();
    const ListReadResult read = OpenList(session.Playlist, listPath, CachedSongSource(lookup),
                                         ListSettingsOf(session.Settings));
    // A list that could not be read at all prints nothing; one that ended early, its rows.
    if (read.Ok() || !session.Playlist.Rows.empty()) {
        PrintRowHeader(json);
    }
    for (const ListRow& row : session.Playlist.Rows) {
        PrintRow(row, json);
    }
    int status = kExitOk;
    if (!read.Ok()) {
        PrintError(ListErrorLine(listPath, read.error));
        status = kExitFailed;
    }
    const int saved = run.Finish();
    return FinishOutput(status != kExitOk ? status : saved);
}

// Why a song file named on the command line added no row.
std::string WhyNotAdded(const Session& session, const std::string& path) {
    if (!PassesFilter(path, session.Settings.FilterMode)) {
        return path + ": not added, the file filter (" + session.FileFilter + ") leaves it out";
    }
    if (IsRefusedSongPath(path)) {
        return path + ": not added, files in recycle and trash folders are never songs";
    }
    return path + ": " + std::string(kFileNonExistant);
}

// Adds what one PATH names to the list. False (the user told) when it could not be added.
bool AddPath(Session& session, const std::string& path, SongLookup& lookup, const ScanSetup& walk,
             ProgressLine& status) {
    PlaylistState& list = session.Playlist;
    const FileStatus file = StatPath(path);
    if (!file.exists) {
        ReportUnreadable(path);
        return false;
    }
    if (file.isDirectory) {
        RecurseDirReal(path, list.Rows, walk);
        status.Finish();
        return true;
    }
    if (IsListFileName(path)) {
        const ListReadResult read =
            AppendListNow(path, list.Rows, CachedSongSource(lookup), session.Settings.HideGhosts);
        if (!read.Ok()) {
            PrintError(ListErrorLine(path, read.error));
            return false;
        }
        return true;
    }
    if (!ScanAddSong(path, list.Rows, session.Settings.FilterMode, lookup)) {
        PrintError(WhyNotAdded(session, path));
        return false;
    }
    return true;
}

int Add(CliContext& context, std::span<const std::string> args) {
    const CommandArgs parsed = ParseCommandArgs(args, {}, {}, "playlist add");
    if (!parsed.error.empty()) {
        return UsageError(parsed.error);
    }
    if (parsed.operands.size() < 2) {
        return UsageError("playlist add needs a FILE and at least one PATH");
    }
    const std::string listPath = FullPathOf(parsed.operands[0]);
    std::vector<std::string> paths;
    for (std::size_t i = 1; i < parsed.operands.size(); ++i) {
        paths.push_back(FullPathOf(parsed.operands[i]));
    }
    if (!context.AcquireWriteAccess()) {
        return kExitFailed;
    }

    SongLookupRun run(context, true);
    Session& session = run.TheSession();
    SongLookup& lookup = run.Lookup();
    PlaylistState& list = session.Playlist;
    bool allAdded = true;
    if (StatPath(listPath).exists) {
        allAdded = run.OpenListFile(list, listPath);
    } else {
        NewList(list);
    }

    if (allAdded) {
        PosixFolderLister lister;
        ProgressLine status;
        const ScanSetup walk = run.Walk(lister, &status);
        for (const std::string& path : paths) {
            allAdded = AddPath(session, path, lookup, walk, status) && allAdded;
        }
        list.PlaylistSaved = false;
    }

    // A PATH that could not be added leaves FILE as it was, so that the command can simply
    // be run again once the PATH is put right.
    const int result = allAdded && run.SaveListFile(list, listPath) ? kExitOk : kExitFailed;
    const int cacheSaved = run.Finish();
    return FinishOutput(result != kExitOk ? result : cacheSaved);
}

int RunPlaylist(CliContext& context, std::span<const std::string> args) {
    if (args.empty()) {
        return UsageError("playlist needs show or add");
    }
    const std::string& action = args[0];
    if (action == "show") {
        return Show(context, args.subspan(1));
    }
    if (action == "add") {
        return Add(context, args.subspan(1));
    }
    return UsageError("playlist: unknown " + action + "; give show or add");
}

const CliRegistration kPlaylistCommand{CliCommand{
    .name = "playlist",
    .help =
        {
            {"playlist show [--json] FILE", "the rows a playlist file opens as"},
            {"playlist add FILE PATH...", "add songs, folders and lists to a playlist file"},
        },
    .details =
        "\"show\" opens FILE as the program opens a playlist and prints its rows, as \"scan\"\n"
        "does: tab-separated under a header line, or one JSON object a line with --json. Each\n"
        "line of the file names a song, relative to the list's folder or absolute; lines that\n"
        "begin with \"#EXT\" are skipped. A song that can't be found is a ghost row: its title\n"
        "is \"* \" and the file name, its Filename the path, every other column empty. With\n"
        "the setting HideGhosts=1 (--set HideGhosts=1) ghosts are left out.\n"
        "\"add\" opens FILE when it exists, else starts a new list, then adds each PATH in\n"
        "turn: a song file (when the FilterMode setting lets it through), every song of a\n"
        "folder and the folders below it, or the songs of a list file (.m3u, .m3u8). FILE is\n"
        "then written as the program saves a list: one path a line, ending in CR LF,\n"
        "relative to FILE's folder when RelativePaths is 1, and replaced in one step, so a\n"
        "failed write leaves the old file as it was. When a PATH can't be added, each is\n"
        "reported and FILE is not changed; the exit status is then 2. \"add\" is refused\n"
        "while the desktop program runs on the same data folder.\n"
        "Songs are read through the song cache, which is saved afterwards as \"info\" saves\n"
        "it.",
    .run = &RunPlaylist,
}};

}  // namespace

}  // namespace jk
