// remote COMMAND | remote status [--json] | player [--json]

#include <chrono>
#include <cmath>
#include <limits>
#include <span>
#include <string>
#include <thread>

#include "app/JsonLine.h"
#include "app/PlayerSession.h"
#include "app/Session.h"
#include "app/cli/CliContext.h"
#include "app/cli/CliPlayer.h"
#include "app/cli/CliRegistry.h"
#include "app/cli/CommandArgs.h"
#include "app/cli/CommandOutput.h"
#include "playback/PlayerKind.h"
#include "util/Text.h"
#include "util/TimeHelpers.h"

namespace jk {

namespace {

std::string_view StateName(PlayState state) {
    switch (state) {
        case PlayState::Playing:
            return "playing";
        case PlayState::Paused:
            return "paused";
        case PlayState::Stopped:
            break;
    }
    return "stopped";
}

// Seconds as a number, or NaN (printed as null) when unknown.
double SecondsOrNone(std::int64_t ms) {
    return ms < 0 ? std::numeric_limits<double>::quiet_NaN() : static_cast<double>(ms) / 1000.0;
}

std::string TimeText(std::int64_t ms) {
    return ms < 0 ? "-"
                  : FormatSeconds(
                        static_cast<std::int32_t>(std::min<std::int64_t>(ms / 1000, 2147483647)));
}

std::string NumberOrDash(std::int64_t number) {
    return number < 0 ? "-" : std::to_string(number);
}

int Status(CliPlayer& player, bool json) {
    PlayerTransport& transport = player.Bridge().Transport();
    const bool running = transport.Running();
    const PlayerStatus status = running ? transport.Status() : PlayerStatus{};
    const std::int32_t index = running ? transport.ListIndex() : -1;
    const std::int32_t count = running ? transport.ListLength() : -1;
    const std::string state = running ? std::string(StateName(status.state)) : "not running";
    if (json) {
        JsonLine line;
        line.AddText("State", state)
            .AddNumber("Position", SecondsOrNone(status.positionMs))
            .AddNumber("Length", SecondsOrNone(status.lengthMs))
            .AddText("Title", status.title)
            .AddNumber("Volume",
                       status.volume < 0 ? std::numeric_limits<double>::quiet_NaN() : status.volume)
            .AddNumber("Index", index < 0 ? std::numeric_limits<double>::quiet_NaN() : index)
            .AddNumber("Count", count < 0 ? std::numeric_limits<double>::quiet_NaN() : count);
        PrintOut(line.Text());
    } else {
        PrintOut("State: " + state);
        PrintOut("Position: " + TimeText(status.positionMs));
        PrintOut("Length: " + TimeText(status.lengthMs));
        PrintOut("Title: " + status.title);
        PrintOut("Volume: " + (status.volume < 0 ? "-" : std::to_string(status.volume) + "%"));
        // The index counts from 1 here, as the rows of a list do.
        PrintOut("Index: " + (index < 0 ? "-" : std::to_string(index + 1)));
        PrintOut("Count: " + NumberOrDash(count));
    }
    return FinishOutput(kExitOk);
}

// Runs a fade to its end, as the desktop program's timer would.
void FadeToTheEnd(PlayerBridge& bridge) {
    const auto give = std::chrono::steady_clock::now() + kFadeDuration + std::chrono::seconds(2);
    while (bridge.Fading() && std::chrono::steady_clock::now() < give) {
        std::this_thread::sleep_for(kFadeStepInterval);
        bridge.Tick(std::chrono::steady_clock::now());
    }
}

int RunRemote(CliContext& context, std::span<const std::string> args) {
    const CommandArgs parsed = ParseCommandArgs(args, {"--json"}, {}, "remote");
    if (!parsed.error.empty()) {
        return UsageError(parsed.error);
    }
    if (parsed.operands.size() != 1) {
        return UsageError("remote needs one COMMAND");
    }
    const std::string& name = parsed.operands[0];
    const PlayerCommand command = RemoteCommandNamed(name);
    if (name != "status" && command == PlayerCommand::Count) {
        return UsageError("remote: unknown command " + name);
    }
    if (parsed.Has("--json") && name != "status") {
        return UsageError("remote: --json goes with status only");
    }
    CliPlayer player(context.StartedSession());
    PlayerBridge& bridge = player.Bridge();
    if (name == "status") {
        return Status(player, parsed.Has("--json"));
    }
    if (!bridge.Running()) {
        PrintError("the player is not running: " + player.Name());
        return kExitFailed;
    }
    if (!UpdatePlayerMode(bridge).shown.Has(command)) {
        PrintError(player.Name() + " has no " + name + " command");
        return kExitFailed;
    }
    const std::optional<std::string> volume =
        bridge.Command(command, std::chrono::steady_clock::now());
    if (command == PlayerCommand::Fade) {
        FadeToTheEnd(bridge);
    }
    if (volume) {
        PrintOut("Volume: " + std::string(Trim(*volume)));
    }
    return FinishOutput(kExitOk);
}

int RunPlayer(CliContext& context, std::span<const std::string> args) {
    const CommandArgs parsed = ParseCommandArgs(args, {"--json"}, {}, "player");
    if (!parsed.error.empty()) {
        return UsageError(parsed.error);
    }
    if (!parsed.operands.empty()) {
        return UsageError("player takes no PATH");
    }
    CliPlayer player(context.StartedSession());
    PlayerBridge& bridge = player.Bridge();
    const PlayerTarget& target = bridge.Target();
    std::string reachedBy;
    if (target.kind == kPlayerMpv) {
        reachedBy = MpvSocketPath(target.dataFolder);
    } else if (target.kind == kPlayerMpris) {
        reachedBy = std::string(kMprisBusPrefix) + target.mprisName;
    }
    const bool running = bridge.Running();
    if (parsed.Has("--json")) {
        JsonLine line;
        line.AddInteger("Kind", target.kind)
            .AddText("Name", PlayerKindName(target.kind))
            .AddText("Player", target.playerPath)
            .AddText("ReachedBy", reachedBy)
            .AddBool("Running", running);
        PrintOut(line.Text());
    } else {
        PrintOut("Kind: " + std::to_string(target.kind) + " (" +
                 std::string(PlayerKindName(target.kind)) + ")");
        PrintOut("Player: " + target.playerPath);
        if (!reachedBy.empty()) {
            PrintOut("Reached by: " + reachedBy);
        }
        PrintOut(std::string("Running: ") + (running ? "yes" : "no"));
    }
    return FinishOutput(kExitOk);
}

const CliRegistration kRemoteCommand{CliCommand{
    .name = "remote",
    .help =
        {
            {"remote play|pause|stop|next|prev", "steer the running player"},
            {"remote vol-up|vol-down|fade|ahead|back", "its volume, fade-out and skips"},
            {"remote status [--json]", "what the player plays, where, and how loud"},
        },
    .details =
        "Sends one command to the player of the settings, as the Remote menu does: play,\n"
        "pause (a toggle), stop, next, prev, vol-up and vol-down (a step of 5%; the new volume\n"
        "is printed), fade (the volume ramps down over three seconds, then the player stops\n"
        "and its volume is set back), ahead and back (5 seconds), and close (the player\n"
        "quits). A player that is not running, or a command it has no counterpart for, gives\n"
        "exit status 2.\n"
        "\"status\" prints State (playing, paused, stopped or not running), Position and Length\n"
        "(minutes and seconds), Title, Volume, Index (the song's place in the player's list,\n"
        "from 1) and Count; \"-\" where the player can't tell. With --json: one object with\n"
        "those names, Position and Length in seconds, Index from 0, null where unknown.",
    .run = &RunRemote,
}};

const CliRegistration kPlayerCommand{CliCommand{
    .name = "player",
    .help =
        {
            {"player [--json]", "which player the settings name, and whether it runs"},
        },
    .details =
        "Prints the kind of the player (1 WinPlay3, 2 Winamp, 3 NAD, 4 Sonique, 5 K-Jofol,\n"
        "6 mpv, 7 an MPRIS player; 0 none) as the program reads it from the player's file name\n"
        "and the MprisPlayer setting, the player's path, how it is reached (mpv's socket or\n"
        "the MPRIS bus name) and whether it runs. The Windows players never run here.",
    .run = &RunPlayer,
}};

}  // namespace

}  // namespace jk
