// play [--queue] [--shuffle] PATH...

#include <span>
#include <string>
#include <vector>

#include "app/PlayerSession.h"
#include "app/Session.h"
#include "app/cli/CliContext.h"
#include "app/cli/CliPlayer.h"
#include "app/cli/CliRegistry.h"
#include "app/cli/CommandArgs.h"
#include "app/cli/CommandOutput.h"
#include "app/cli/ProgressLine.h"
#include "app/cli/SongLookupRun.h"
#include "browse/FolderScan.h"
#include "browse/ScanAddSong.h"
#include "platform/DirectoryListing.h"
#include "playback/CachedSongSource.h"
#include "playback/ListReading.h"
#include "playback/TempList.h"
#include "util/FileIo.h"

namespace jk {

namespace {

// The rows one PATH names: a folder's songs as the files pane lists them, the lines of a list
// file, or a song. False (the user told) when it names nothing that plays.
bool AddRows(Session& session, const std::string& path, SongLookup& lookup, const ScanSetup& walk,
             RowList& rows) {
    const FileStatus file = StatPath(path);
    if (!file.exists) {
        PrintError(path + ": no such file or folder");
        return false;
    }
    if (file.isDirectory) {
        std::string folder = path;
        RowList listing;
        GetFolderNow(folder, listing, walk);
        rows.insert(rows.end(), std::make_move_iterator(listing.begin()),
                    std::make_move_iterator(listing.end()));
        return true;
    }
    if (IsListFileName(path)) {
        const ListReadResult read =
            AppendListNow(path, rows, CachedSongSource(lookup), session.Settings.HideGhosts);
        if (!read.Ok()) {
            PrintError(ListErrorLine(path, read.error));
            return false;
        }
        return true;
    }
    if (!ScanAddSong(path, rows, session.Settings.FilterMode, lookup)) {
        PrintError(path + ": not a song the file filter (" + session.FileFilter + ") lets through");
        return false;
    }
    return true;
}

std::string WhatHappened(const RunPlaylistResult& result, const std::string& player,
                         const std::string& listFile) {
    switch (result.road) {
        case PlayRoad::CommandLine:
            return "Started " + player + " with " + listFile;
        case PlayRoad::RunningPlayer:
            return "Handed " + listFile + " to the running " + player;
        case PlayRoad::Messages:
            if (result.sent == result.entries) {
                return "Sent " + std::to_string(result.sent) + " songs to " + player;
            }
            return "Sent " + std::to_string(result.sent) + " of " + std::to_string(result.entries) +
                   " songs to " + player;
        case PlayRoad::OpenUri:
            return player + " opened the list";
        case PlayRoad::Nothing:
            break;
    }
    return "Nothing to play";
}

int RunPlay(CliContext& context, std::span<const std::string> args) {
    const CommandArgs parsed = ParseCommandArgs(args, {"--queue", "--shuffle"}, {}, "play");
    if (!parsed.error.empty()) {
        return UsageError(parsed.error);
    }
    if (parsed.operands.empty()) {
        return UsageError("play needs at least one PATH");
    }

    SongLookupRun run(context, false);
    Session& session = run.TheSession();
    SongLookup& lookup = run.Lookup();
    RowList rows;
    bool allFound = true;
    {
        PosixFolderLister lister;
        ProgressLine status;
        const ScanSetup walk = run.Walk(lister, &status);
        for (const std::string& operand : parsed.operands) {
            allFound = AddRows(session, FullPathOf(operand), lookup, walk, rows) && allFound;
        }
    }
    const int cacheSaved = run.Finish();
    if (!allFound) {
        return FinishOutput(kExitFailed);
    }
    if (rows.empty()) {
        PrintError("no songs to play");
        return FinishOutput(kExitFailed);
    }

    CliPlayer player(session);
    ProgressLine progress("Sending");
    const PlayFront front{
        .propertySheetVisible = {},
        .minimizeMain = {},
        .showWinPlayIcon = {},
        .showMessage =
            [](const UserMessage& message) { PrintError(message.title + " " + message.text); },
        .progress = ProgressOn(progress),
        // Nothing is asked here: a disc to insert is told on standard error, and nothing plays.
        .askRetry = {},
        .askYesNo = {},
    };
    RunPlaylistResult result;
    if (parsed.Has("--queue")) {
        result = QueueRows(rows, false, session, player.Bridge(), front);
    } else if (parsed.Has("--shuffle")) {
        ShuffleRandom random;
        result = JukarraPlay(rows, session, player.Bridge(), front, random);
    } else {
        result = PlayAllRows(rows, session, player.Bridge(), front);
    }
    progress.Finish();
    if (!result.error.empty()) {
        // The player not found was told already, in the program's words.
        if (result.road == PlayRoad::Messages) {
            PrintError(result.error);
        }
        return FinishOutput(kExitFailed);
    }
    PrintOut(WhatHappened(result, player.Name(), TempListPath(session.AppPath)));
    return FinishOutput(cacheSaved);
}

const CliRegistration kPlayCommand{CliCommand{
    .name = "play",
    .help =
        {
            {"play [--queue] [--shuffle] PATH...", "play songs, folders and lists on the player"},
        },
    .details =
        "Hands the songs of each PATH to the player of the settings (PlayerExe1, or the MPRIS\n"
        "player MprisPlayer names), as the desktop program's play commands do: a song file,\n"
        "the songs of a folder as the files pane lists them (FilterMode decides), or the\n"
        "lines of a list file (.m3u, .m3u8). --shuffle plays them in shuffled order (the\n"
        "QuickShuffle setting chooses the shuffle); --queue adds them behind what the player\n"
        "holds, without stopping, clearing or starting it.\n"
        "A running mpv (over mpv.sock in the data folder) or an MPRIS player with a track\n"
        "list gets the songs one by one; a player that is not running is started with\n"
        "templist.m3u in the data folder on its command line (mpv waits idle afterwards, for\n"
        "\"remote\"). LoadMode, HighLoad and HighLoadMode choose as in the program: mode 1 stops\n"
        "the player first, mode 2 always starts the player with the list. Spacer and Delay put\n"
        "silent.mp3 between the songs.\n"
        "One line says what was done. A player that can't be started gives the program's\n"
        "\"Uh-oh...\" message and the exit status 2.",
    .run = &RunPlay,
}};

}  // namespace

}  // namespace jk
