#pragma once

// The player as the session sees it: SetPlayerMode and UpdatePlayerMode on the session's
// settings, the play and queue commands of the panes, and the ticks of the IntroPlay and status
// timers. Each is what one menu item, toolbar key or timer of the main window calls.

#include <cstdint>

#include "listing/ListRow.h"
#include "playback/IntroPlay.h"
#include "playback/PlayerBridge.h"
#include "playback/RunPlaylist.h"
#include "playback/ShuffleRandom.h"
#include "playback/StatusPanels.h"

namespace jk {

struct Session;
struct Settings;

PlaySettings PlaySettingsOf(const Settings& settings);
IntroSettings IntroSettingsOf(const Settings& settings);

// SetPlayerMode: PlayerKind from the player's path and MprisPlayer (kept as it was when they
// name no player), and the bridge aimed at that player.
void SetPlayerMode(Session& session, PlayerBridge& bridge);
// UpdatePlayerMode: what the window shows for the player aimed at. The Winamp-only items show
// for every player that can carry them; an MPRIS player says which by its Can... properties.
PlayerMode UpdatePlayerMode(PlayerBridge& bridge);

// The play and queue commands. `pane` is the files pane or the playlist's rows. Every one of
// them checks the songs first: with DiscIdentity, songs missing on a catalogued disc that is
// not inserted bring the "Insert disc" question through the front, and songs on a disc mounted
// elsewhere play from where it is now.
// PlayListNow (Play_Click, Playlist_Click, PlayPlaylist_Click, toolbar "playlist") and
// PlayFolderNow (PlayFolder_Click, PlayFolderNow_Click, toolbar "playfol"): every row.
RunPlaylistResult PlayAllRows(const RowList& pane, Session& session, PlayerBridge& bridge,
                              const PlayFront& front);
// SelectPlayNow and the "Play selected" items of both panes.
RunPlaylistResult PlaySelectedRows(const RowList& pane, Session& session, PlayerBridge& bridge,
                                   const PlayFront& front);
// WrapPlay: "Play from here".
RunPlaylistResult WrapPlay(const RowList& pane, Session& session, PlayerBridge& bridge,
                           const PlayFront& front);
// JPlayList and JPlayFolder: every row shuffled, the pane's order unchanged.
RunPlaylistResult JukarraPlay(const RowList& pane, Session& session, PlayerBridge& bridge,
                              const PlayFront& front, ShuffleRandom& random);
// QueueAll_Click, QueueFolder_Click (every row) and QueueSelect_Click, QueueSelected_Click.
RunPlaylistResult QueueRows(const RowList& pane, bool selectedOnly, Session& session,
                            PlayerBridge& bridge, const PlayFront& front);

// IntroPlayTimer_Timer.
IntroAction IntroPlayTimer(const Session& session, PlayerBridge& bridge, IntroPlay& intro);

// Timer3's player panels: for the players that report their state, while they run and while
// ShowCurrSong keeps the display on; nothing changes otherwise.
StatusPanelUpdate StatusTimer(const Session& session, PlayerBridge& bridge, StatusPanels& panels);

}  // namespace jk
