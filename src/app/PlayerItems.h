#pragma once

// The main window's play, queue and remote items as data: which pane's rows each play item
// hands to the player and how, and which remote command each remote item sends. The window
// binds every name here to one routine, so a name missing from the tables is a command that
// stays disabled.

#include <cstdint>
#include <span>
#include <string_view>

#include "listing/ListRow.h"
#include "playback/PlayerCommands.h"
#include "playback/RunPlaylist.h"

namespace jk {

class PlayerBridge;
class ShuffleRandom;
struct Session;

enum class PlayPane : std::uint8_t { Files, Playlist };

enum class PlayWhat : std::uint8_t {
    All,            // every row in row order (PlayListNow, the folder)
    Selected,       // the selected rows (SelectPlayNow)
    FromHere,       // WrapPlay: from the first selected row round to the one before it
    Shuffled,       // JPlayList, JPlayFolder: shuffled, the pane's order unchanged
    QueueSelected,  // the selected rows, queued
    QueueAll,       // every row, queued
};

struct PlayItem {
    std::string_view Name;
    PlayPane Pane;
    PlayWhat What;
};

struct RemoteItem {
    std::string_view Name;
    PlayerCommand Command;
};

// Every play and queue item of the menus, pop-ups and tray menu.
std::span<const PlayItem> PlayItems();
// Every remote item of the Remote menu and the tray's Player and Remote menus.
std::span<const RemoteItem> RemoteItems();

// Toolbar keys that run a remote command directly (the transport keys).
std::span<const RemoteItem> RemoteToolbarKeys();

// Runs one play item on the rows of its pane (their selection flags already taken from the
// view).
RunPlaylistResult RunPlayItem(const PlayItem& item, const RowList& pane, Session& session,
                              PlayerBridge& bridge, const PlayFront& front, ShuffleRandom& random);

}  // namespace jk
