#include "playback/PlayerCommands.h"

#include <array>

#include "playback/PlayerKind.h"

namespace jk {

namespace {

using C = PlayerCommand;

constexpr std::array<std::string_view, kPlayerCommandCount> kRemoteNames = {
    "play",
    "pause",
    "stop",
    "prev",
    "next",
    "back",
    "ahead",
    "vol-down",
    "vol-up",
    "fade",
    "equalizer",
    "selector",
    "plug-in-properties",
    "plug-in-run",
    "minimize",
    "restore",
    "close",
};

PlayerCommandSet Transport() {
    PlayerCommandSet set;
    for (const C command : {C::Play, C::Pause, C::Stop, C::Previous, C::Next}) {
        set.Add(command);
    }
    return set;
}

PlayerCommandSet Everything() {
    PlayerCommandSet set;
    for (std::size_t i = 0; i < kPlayerCommandCount; ++i) {
        set.Add(static_cast<C>(i));
    }
    return set;
}

PlayerCommandSet MprisCommands(const PlayerAbilities& can) {
    PlayerCommandSet set;
    const auto addIf = [&set](bool able, std::initializer_list<C> commands) {
        if (able) {
            for (const C command : commands) {
                set.Add(command);
            }
        }
    };
    addIf(can.canPlay, {C::Play});
    addIf(can.canPause, {C::Pause});
    addIf(can.canControl, {C::Stop, C::VolumeDown, C::VolumeUp, C::Fade});
    addIf(can.canGoPrevious, {C::Previous});
    addIf(can.canGoNext, {C::Next});
    addIf(can.canSeek, {C::SkipBack, C::SkipAhead});
    addIf(can.canRaise, {C::Restore});
    addIf(can.canQuit, {C::Close});
    return set;
}

}  // namespace

PlayerCommandSet ShownPlayerCommands(std::int16_t kind, const PlayerAbilities& abilities) {
    switch (kind) {
        case kPlayerWinamp:
            return Everything();
        case kPlayerWinPlay3:
        case kPlayerNad:
        case kPlayerSonique:
        case kPlayerKJofol:
            return Transport().Add(C::Minimize).Add(C::Restore).Add(C::Close);
        case kPlayerMpv:
            return Everything()
                .Remove(C::Equalizer)
                .Remove(C::Selector)
                .Remove(C::PlugInProperties)
                .Remove(C::PlugInRun)
                .Remove(C::Minimize)
                .Remove(C::Restore);
        case kPlayerMpris:
            return MprisCommands(abilities);
        default:
            return {};
    }
}

bool ShowsVolumePanel(std::int16_t kind) {
    return kind == kPlayerWinamp || kind == kPlayerMpv || kind == kPlayerMpris;
}

std::string_view RemoteCommandName(PlayerCommand command) {
    const auto index = static_cast<std::size_t>(command);
    return index < kRemoteNames.size() ? kRemoteNames[index] : std::string_view();
}

PlayerCommand RemoteCommandNamed(std::string_view name) {
    for (std::size_t i = 0; i < kRemoteNames.size(); ++i) {
        if (kRemoteNames[i] == name) {
            return static_cast<PlayerCommand>(i);
        }
    }
    return PlayerCommand::Count;
}

}  // namespace jk
