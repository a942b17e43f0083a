#include "playback/RunPlaylist.h"

#include <algorithm>
#include <span>
#include <thread>

#include "metadata/SilentMp3.h"
#include "playback/PlayerKind.h"
#include "playback/TempList.h"
#include "util/Text.h"

namespace jk {

namespace {

constexpr std::string_view kUhOh = "Uh-oh...";

bool ShouldMinimize(std::size_t count, const PlaySettings& settings, const PlayFront& front) {
    const bool sheetShows = front.propertySheetVisible && front.propertySheetVisible();
    return count > 1 && !sheetShows && settings.AutoMinimize != 0;
}

void Minimize(const PlayFront& front) {
    if (front.minimizeMain) {
        front.minimizeMain();
    }
}

void Tell(const PlayFront& front, const UserMessage& message) {
    if (front.showMessage) {
        front.showMessage(message);
    }
}

// Writes templist.m3u; tells the user when it cannot.
bool WriteListFile(const std::string& path, std::span<const std::string> songs, std::int16_t kind,
                   const PlayFront& front, RunPlaylistResult& result) {
    const IoResult written = WriteTempList(path, songs, kind);
    if (written.ok) {
        return true;
    }
    result.error = "templist.m3u could not be written: " + written.error;
    Tell(front, {"The list for the player could not be written.  " + written.error,
                 std::string(kUhOh), MessageIcon::Warning});
    return false;
}

void CommandLineRoad(std::span<const std::string> songs, bool queue, const PlaySettings& settings,
                     PlayerBridge& bridge, const PlayFront& front, RunPlaylistResult& result) {
    const PlayerTarget& target = bridge.Target();
    const std::string listPath = TempListPath(target.dataFolder);
    if (!WriteListFile(listPath, songs, target.kind, front, result)) {
        return;
    }
    if (ShouldMinimize(songs.size(), settings, front)) {
        Minimize(front);
    }
    // mpv keeps no single instance of its own: the one this data folder started takes the list
    // as a second start of a single-instance player would, so that two never play at once.
    if (IsMpvPath(target.playerPath)) {
        MpvTransport& mpv = bridge.OwnMpv();
        if (mpv.Running() && mpv.TakeListFile(listPath, queue)) {
            result.road = PlayRoad::RunningPlayer;
            return;
        }
    }
    if (IsWinPlayPath(target.playerPath) && front.showWinPlayIcon) {
        front.showWinPlayIcon();
    }
    result.road = PlayRoad::CommandLine;
    const std::string program(Trim(target.playerPath));
    const ProgramStart started =
        program.empty() ? ProgramStart{false, "no player is set"}
                        : bridge.Platform().StartProgram(
                              program, PlayerStartArguments(program, target.dataFolder, listPath));
    if (!started.ok) {
        result.error = started.error.empty() ? "the player could not be started" : started.error;
        Tell(front, PlayerNotFoundMessage());
    }
}

// Gives the first song its moment to start before the rest of the list floods the player,
// the caller's progress running meanwhile; false when the progress says stop.
bool AwaitFirstSong(PlayerTransport& player, const PlayFront& front, std::int64_t total) {
    const auto until = std::chrono::steady_clock::now() + kFirstSongWait;
    while (!player.Sounding() && std::chrono::steady_clock::now() < until) {
        if (front.progress && !front.progress(1, total)) {
            return false;
        }
        std::this_thread::sleep_for(kFirstSongPoll);
    }
    return true;
}

void MessageRoad(std::span<const std::string> songs, bool queue, std::int16_t mode,
                 const PlaySettings& settings, PlayerBridge& bridge, const PlayFront& front,
                 RunPlaylistResult& result) {
    PlayerTransport& player = bridge.Transport();
    result.road = PlayRoad::Messages;
    if (!queue && mode == kLoadReplace) {
        player.Stop();
    }
    if (!queue) {
        player.ClearList();
    }
    const auto total = static_cast<std::int64_t>(songs.size());
    std::size_t next = 0;
    while (next < songs.size()) {
        // The first song goes alone, so that play starts once it is in and the rest loads
        // behind it.
        if (!queue && next == 1) {
            player.Play();
            if (!AwaitFirstSong(player, front, total)) {
                result.stopped = true;
                return;
            }
        }
        const std::size_t batch = next == 0 ? 1 : std::min(kMessageRoadBatch, songs.size() - next);
        const AddResult added = player.AddSongs(songs.subspan(next, batch));
        if (added == AddResult::PathTooLong) {
            result.error = "a song's path is longer than 254 characters";
            return;
        }
        if (added == AddResult::Failed) {
            result.error = "the player stopped answering";
            return;
        }
        next += batch;
        result.sent = next;
        if (front.progress && !front.progress(static_cast<std::int64_t>(next), total)) {
            result.stopped = true;
            return;
        }
    }
    if (!queue && (songs.size() == 1 || !player.Sounding())) {
        player.Play();
    }
    if (!queue && ShouldMinimize(songs.size(), settings, front)) {
        Minimize(front);
    }
}

// An MPRIS player without a track list opens one file and plays it at once: the one song, or
// templist.m3u for more. Opening replaces what plays, so the stop of mode 1 has nothing to add
// (and a stop just ahead of the opening leaves some players reporting "Stopped" while they play).
void OpenUriRoad(std::span<const std::string> songs, const PlaySettings& settings,
                 PlayerBridge& bridge, const PlayFront& front, RunPlaylistResult& result) {
    const PlayerTarget& target = bridge.Target();
    std::string file = songs.size() == 1 ? std::string(Trim(songs[0])) : std::string();
    if (songs.size() > 1) {
        file = TempListPath(target.dataFolder);
        if (!WriteListFile(file, songs, target.kind, front, result)) {
            return;
        }
    }
    if (ShouldMinimize(songs.size(), settings, front)) {
        Minimize(front);
    }
    if (bridge.Transport().OpenAndPlay(file)) {
        result.road = PlayRoad::OpenUri;
        return;
    }
    CommandLineRoad(songs, false, settings, bridge, front, result);
}

}  // namespace

std::int16_t LoadModeFor(std::size_t count, bool queue, const PlaySettings& settings) {
    if (queue) {
        return kLoadAdd;
    }
    const bool high = settings.HighLoad < 0 || count > static_cast<std::size_t>(settings.HighLoad);
    return high ? settings.HighLoadMode : settings.LoadMode;
}

std::vector<std::string> InterleaveSpacer(std::vector<std::string> songs,
                                          const std::string& spacer) {
    if (songs.size() < 2) {
        return songs;
    }
    std::vector<std::string> widened;
    widened.reserve(songs.size() * 2 - 1);
    for (std::size_t i = 0; i < songs.size(); ++i) {
        if (i > 0) {
            widened.push_back(spacer);
        }
        widened.push_back(std::move(songs[i]));
    }
    return widened;
}

UserMessage PlayerNotFoundMessage() {
    return {"Player executable file not found.  Please check your Setup settings again.",
            std::string(kUhOh), MessageIcon::Warning};
}

RunPlaylistResult RunPlaylist(std::vector<std::string> songs, bool queue,
                              const PlaySettings& settings, PlayerBridge& bridge,
                              const PlayFront& front) {
    RunPlaylistResult result;
    if (songs.empty()) {
        return result;
    }
    const std::int16_t mode = LoadModeFor(songs.size(), queue, settings);
    result.mode = mode;
    const PlayerTarget& target = bridge.Target();
    if (settings.Spacer > 0 && settings.Delay != 0) {
        // The spacer lasts the delay asked for; a negative delay gets the shortest spacer.
        const std::int32_t seconds = settings.Delay > 0 ? settings.Delay : 1;
        if (MakeSilentMP3(target.dataFolder, seconds).ok) {
            songs = InterleaveSpacer(std::move(songs),
                                     target.dataFolder + std::string(kSilentSpacerName));
        }
    }
    result.entries = songs.size();

    const std::int16_t kind = target.kind;
    PlayerTransport& player = bridge.Transport();
    const bool commandLine = kind == kPlayerWinPlay3 || kind == kPlayerSonique ||
                             kind == kPlayerKJofol || mode == kLoadCommandLine || !player.Running();
    // Without a track list, queueing is left to the player's own second start.
    const bool messageRoad = !commandLine && player.HasMessageRoad();
    if (messageRoad) {
        MessageRoad(songs, queue, mode, settings, bridge, front, result);
    } else if (commandLine || queue) {
        CommandLineRoad(songs, queue, settings, bridge, front, result);
    } else {
        OpenUriRoad(songs, settings, bridge, front, result);
    }
    return result;
}

}  // namespace jk
