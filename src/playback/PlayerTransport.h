#pragma once

// One interface for every way of steering a player: the window messages of the five Windows
// players, mpv's socket and the MPRIS session bus. It carries the remote commands, the list
// commands of the message road (clear, add songs, play) and the state that IntroPlay and the
// status bar poll. Every call returns within its time-out: a player that refuses or hangs reads
// as one that does not run.
//
// The base class does nothing and finds no player: it is the transport of a kind outside 1 to 7,
// where no command does anything.

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "playback/PlayerCommands.h"

namespace jk {

// The jump of the skip commands, in seconds.
inline constexpr std::int64_t kSkipSeconds = 5;

enum class PlayState : std::uint8_t { Stopped, Playing, Paused };

// A player's state as one poll reads it. Unknown values stay at -1 or empty.
struct PlayerStatus {
    PlayState state = PlayState::Stopped;
    std::int64_t positionMs = -1;
    std::int64_t lengthMs = -1;
    std::int32_t volume = -1;  // percent
    std::string title;
    // What tells one song of the player's list from another (a path, a track id), for the
    // players that cannot tell their list's index.
    std::string trackKey;
    // False when the player says there is no next song (an MPRIS player's CanGoNext).
    bool canGoNext = true;
};

// How the message road ends for a transport.
enum class AddResult : std::uint8_t {
    Added,
    PathTooLong,  // a path longer than the player's message buffer: the command ends
    Failed,       // the player went away or did not answer
};

class PlayerTransport {
public:
    virtual ~PlayerTransport() = default;

    // FindPlayer: true when the player runs and answers.
    virtual bool Running() { return false; }
    virtual PlayerAbilities Abilities() { return {}; }

    // The remote commands. Each does nothing when the player does not run.
    virtual void Play() {}
    virtual void Pause() {}
    virtual void Stop() {}
    virtual void Next() {}
    virtual void Previous() {}
    virtual void VolumeUp() {}
    virtual void VolumeDown() {}
    virtual void SkipAhead() {}
    virtual void SkipBack() {}
    // The player's own fade (Winamp); the others are faded by volume steps (FadeOut).
    virtual bool FadesItself() const { return false; }
    virtual void Fade() {}
    virtual void Equalizer() {}
    virtual void Selector() {}
    virtual void PlugInProperties() {}
    virtual void PlugInRun() {}
    virtual void Close() {}
    virtual void Minimize() {}
    virtual void Restore() {}

    // The player's volume in percent, where it reports one, and setting it.
    virtual std::optional<std::int32_t> Volume() { return std::nullopt; }
    virtual bool SetVolume(std::int32_t /*percent*/) { return false; }

    // The message road: whether songs can be handed over one by one; clearing the player's
    // list; adding songs behind what it holds (the first after a clear replaces the list
    // whole). A queue adds without clearing.
    virtual bool HasMessageRoad() { return false; }
    virtual void ClearList() {}
    virtual AddResult AddSongs(std::span<const std::string> /*paths*/) { return AddResult::Failed; }
    // Whether the song just started sounds yet. A player opening its first song while a long
    // list streams in behind it starts late, so the message road waits for this first (and
    // restarts a player that went idle on a first song it could not open). Players that cannot
    // tell say yes.
    virtual bool Sounding() { return true; }
    // A player that takes one file to open and play at once (an MPRIS player without a track
    // list): true when it took it.
    virtual bool OpenAndPlay(const std::string& /*path*/) { return false; }

    // The poll.
    virtual PlayerStatus Status() { return {}; }
    // The index of the song playing in the player's list (from 0) and the list's length; -1
    // when the player cannot tell.
    virtual std::int32_t ListIndex() { return -1; }
    virtual std::int32_t ListLength() { return -1; }
    // Jumps to a position of the song playing.
    virtual void SeekTo(std::int64_t /*positionMs*/) {}
};

}  // namespace jk
