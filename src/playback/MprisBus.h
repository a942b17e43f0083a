#pragma once

// What an MPRIS player offers on the session bus, as plain values: the methods and properties
// of org.mpris.MediaPlayer2, .Player and .TrackList that the transport uses. Every call has a
// time-out and gives false or nothing when the player does not answer.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace jk {

inline constexpr std::string_view kMprisBusPrefix = "org.mpris.MediaPlayer2.";
// The track id that means "no track" (AddTrack at the head of the list).
inline constexpr std::string_view kMprisNoTrack = "/org/mpris/MediaPlayer2/TrackList/NoTrack";

struct MprisMetadata {
    std::string trackId;
    std::string url;
    std::string title;
    std::vector<std::string> artists;
    std::int64_t lengthUs = -1;
};

// The properties of org.mpris.MediaPlayer2.Player.
struct MprisPlayerState {
    std::string playbackStatus;  // "Playing", "Paused" or "Stopped"
    std::int64_t positionUs = -1;
    double volume = -1;
    bool canGoNext = false;
    bool canGoPrevious = false;
    bool canPlay = false;
    bool canPause = false;
    bool canSeek = false;
    bool canControl = false;
    MprisMetadata metadata;
};

// The properties of org.mpris.MediaPlayer2.
struct MprisRootState {
    bool canQuit = false;
    bool canRaise = false;
    bool hasTrackList = false;
};

class MprisBus {
public:
    virtual ~MprisBus() = default;

    // The names on the bus; empty when there is no bus.
    virtual std::vector<std::string> ListNames() = 0;
    virtual bool NameHasOwner(const std::string& busName) = 0;

    // Methods of .Player without arguments: Play, Pause, PlayPause, Stop, Next, Previous.
    virtual bool CallPlayer(const std::string& busName, std::string_view method) = 0;
    virtual bool Seek(const std::string& busName, std::int64_t offsetUs) = 0;
    virtual bool SetPosition(const std::string& busName, const std::string& trackId,
                             std::int64_t positionUs) = 0;
    virtual bool OpenUri(const std::string& busName, const std::string& uri) = 0;
    virtual bool SetVolume(const std::string& busName, double volume) = 0;
    virtual std::optional<MprisPlayerState> PlayerState(const std::string& busName) = 0;

    // Methods of the root interface without arguments: Raise, Quit.
    virtual bool CallRoot(const std::string& busName, std::string_view method) = 0;
    virtual std::optional<MprisRootState> RootState(const std::string& busName) = 0;

    // .TrackList.
    virtual std::optional<std::vector<std::string>> Tracks(const std::string& busName) = 0;
    virtual bool AddTrack(const std::string& busName, const std::string& uri,
                          const std::string& afterTrack, bool setAsCurrent) = 0;
    virtual bool RemoveTrack(const std::string& busName, const std::string& trackId) = 0;
};

// The bus name of the player called `name` among `names`: "org.mpris.MediaPlayer2." + name
// itself first; else, without regard to case, that name, an instance of it ("NAME.instance42")
// or a name whose last part is `name` ("...celluloid_player.Celluloid"); "" when none.
std::string MatchMprisBusName(const std::vector<std::string>& names, std::string_view name);

}  // namespace jk
