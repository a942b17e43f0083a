#include "app/PlayerItems.h"

#include <array>

#include "app/PlayerSession.h"

namespace jk {

namespace {

using C = PlayerCommand;
using P = PlayPane;
using W = PlayWhat;

constexpr auto kPlayItems = std::to_array<PlayItem>({
    // The File menu's "Open && P&lay..." opens the list first, then plays it as PlayList.
    {"OpenAndPlayList", P::Playlist, W::All},
    {"PlayFolderNow", P::Files, W::All},
    {"JPlayFolderNow", P::Files, W::Shuffled},
    {"playselected", P::Playlist, W::Selected},
    {"PlayList", P::Playlist, W::All},
    {"JukarraList2", P::Playlist, W::Shuffled},
    {"QueueSelect", P::Playlist, W::QueueSelected},
    {"QueueAll", P::Playlist, W::QueueAll},
    // The files pane's pop-up.
    {"SinglePlay", P::Files, W::Selected},
    {"PlayFolder", P::Files, W::All},
    {"PlayFolderFromHere", P::Files, W::FromHere},
    {"JukarraFolder", P::Files, W::Shuffled},
    {"QueueSelected", P::Files, W::QueueSelected},
    {"QueueFolder", P::Files, W::QueueAll},
    // The playlist's pop-up.
    {"SelPlay", P::Playlist, W::Selected},
    {"PlayPlaylist", P::Playlist, W::All},
    {"PlayListFromHere", P::Playlist, W::FromHere},
    {"JukarraList", P::Playlist, W::Shuffled},
    {"QueSelected", P::Playlist, W::QueueSelected},
    {"QueAll", P::Playlist, W::QueueAll},
    // The tray menu.
    {"Play", P::Playlist, W::All},
    {"Jukarra", P::Playlist, W::Shuffled},
});

constexpr auto kRemoteItems = std::to_array<RemoteItem>({
    {"PlayPlayer", C::Play},
    {"StopPlayer", C::Stop},
    {"PausePlayer", C::Pause},
    {"PreviousPlayer", C::Previous},
    {"NextPlayer", C::Next},
    {"PlayerBack", C::SkipBack},
    {"AheadPlayer", C::SkipAhead},
    {"VolumeDown", C::VolumeDown},
    {"VolumeUp", C::VolumeUp},
    {"VolumeFade", C::Fade},
    {"WinAMP_GEQ", C::Equalizer},
    {"WinAMP_Selector", C::Selector},
    {"WinAMP_PlugIn", C::PlugInProperties},
    {"WinAMP_Execute", C::PlugInRun},
    {"MinimizePlayer", C::Minimize},
    {"RestorePlayer", C::Restore},
    {"ClosePlayer", C::Close},
    // The tray's Player menu (the player's window) and Remote menu.
    {"RemoteMinimize", C::Minimize},
    {"RemoteRestore", C::Restore},
    {"RemoteClose", C::Close},
    {"RemotePlay", C::Play},
    {"RemotePause", C::Pause},
    {"RemoteStop", C::Stop},
    {"RemotePrev", C::Previous},
    {"RemoteNext", C::Next},
    // The tray menu's "&Maximize" brings the player's window back.
    {"MaximizePlayer", C::Restore},
});

constexpr auto kRemoteToolbarKeys = std::to_array<RemoteItem>({
    {"remoteplay", C::Play},
    {"remotepause", C::Pause},
    {"remotestop", C::Stop},
    {"remoteprev", C::Previous},
    {"remotenext", C::Next},
});

}  // namespace

std::span<const PlayItem> PlayItems() {
    return kPlayItems;
}

std::span<const RemoteItem> RemoteItems() {
    return kRemoteItems;
}

std::span<const RemoteItem> RemoteToolbarKeys() {
    return kRemoteToolbarKeys;
}

RunPlaylistResult RunPlayItem(const PlayItem& item, const RowList& pane, Session& session,
                              PlayerBridge& bridge, const PlayFront& front, ShuffleRandom& random) {
    switch (item.What) {
        case W::All:
            return PlayAllRows(pane, session, bridge, front);
        case W::Selected:
            return PlaySelectedRows(pane, session, bridge, front);
        case W::FromHere:
            return WrapPlay(pane, session, bridge, front);
        case W::Shuffled:
            return JukarraPlay(pane, session, bridge, front, random);
        case W::QueueSelected:
            return QueueRows(pane, true, session, bridge, front);
        case W::QueueAll:
            return QueueRows(pane, false, session, bridge, front);
    }
    return {};
}

}  // namespace jk
