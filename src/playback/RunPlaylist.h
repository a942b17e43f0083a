#pragma once

// RunPlaylist: the one way songs reach the player. The list goes either on the player's
// command line as "templist.m3u", or song by song to a running player (the message road), as
// the load mode, the player's kind and whether it runs decide.

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "playback/PlayerBridge.h"
#include "util/UserMessage.h"

namespace jk {

// Song-loading modes.
inline constexpr std::int16_t kLoadAdd = 0;          // add to what the player has
inline constexpr std::int16_t kLoadReplace = 1;      // stop the player first, then replace
inline constexpr std::int16_t kLoadCommandLine = 2;  // always the command-line road

// The message road hands songs over in batches of this many, and the caller's progress runs
// between two batches.
inline constexpr std::size_t kMessageRoadBatch = 200;
// How long the message road lets the first song start before the rest follows, and how often
// it asks meanwhile.
inline constexpr std::chrono::milliseconds kFirstSongWait{300};
inline constexpr std::chrono::milliseconds kFirstSongPoll{2};

inline constexpr std::string_view kSilentSpacerName = "silent.mp3";

// The settings RunPlaylist reads, each holding its key's value.
struct PlaySettings {
    std::int16_t LoadMode = 0;
    std::int16_t HighLoad = 0;
    std::int16_t HighLoadMode = 0;
    std::int16_t Spacer = 0;
    std::int16_t Delay = 0;
    std::int16_t AutoMinimize = 0;
};

// The main window's side of a play.
struct PlayFront {
    // The song properties window shows: no minimizing then.
    std::function<bool()> propertySheetVisible;
    std::function<void()> minimizeMain;
    // WinplayIcon goes up before a WinPlay3 is started.
    std::function<void()> showWinPlayIcon;
    std::function<void(const UserMessage&)> showMessage;
    // Songs handed over of all, between two batches of the message road; false stops the load.
    std::function<bool(std::int64_t done, std::int64_t total)> progress;
    // The questions asked before songs reach the player (a disc to insert): true for Retry,
    // and for Yes. A front that cannot ask leaves them empty: the question is shown as a
    // message and answered Cancel, or No.
    std::function<bool(const UserMessage&)> askRetry;
    std::function<bool(const UserMessage&)> askYesNo;
};

enum class PlayRoad : std::uint8_t {
    Nothing,        // no songs
    CommandLine,    // the player was started with templist.m3u
    RunningPlayer,  // templist.m3u went to the running mpv, as a second start would
    Messages,       // song by song to the running player
    OpenUri,        // templist.m3u (or the one song) opened by a running MPRIS player
};

struct RunPlaylistResult {
    PlayRoad road = PlayRoad::Nothing;
    std::int16_t mode = 0;
    std::size_t entries = 0;  // songs, and spacers between them
    std::size_t sent = 0;     // entries the message road handed over
    bool stopped = false;     // the caller's progress stopped the load
    // Why the songs did not reach the player (the message has been shown); empty when they did.
    std::string error;
};

// The load mode of a list of `count` songs: LoadMode up to HighLoad songs, HighLoadMode above;
// a queue request always adds (mode 0).
std::int16_t LoadModeFor(std::size_t count, bool queue, const PlaySettings& settings);

// The spacer's widening: n songs become 2n - 1 entries, `spacer` between each two.
std::vector<std::string> InterleaveSpacer(std::vector<std::string> songs,
                                          const std::string& spacer);

// "Player executable file not found.  Please check your Setup settings again.", titled
// "Uh-oh...", with an exclamation mark.
UserMessage PlayerNotFoundMessage();

RunPlaylistResult RunPlaylist(std::vector<std::string> songs, bool queue,
                              const PlaySettings& settings, PlayerBridge& bridge,
                              const PlayFront& front);

}  // namespace jk
