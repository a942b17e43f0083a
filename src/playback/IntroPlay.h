#pragma once

// IntroPlay: plays only a stretch of each song. Each tick of the caller's timer reads the
// player's state afresh (so a song moved by hand is followed): past the first IntroSkip
// seconds it jumps, and once IntroSkip + IntroLength seconds have played it moves on to the
// next song, or stops the player after the last one.

#include <chrono>
#include <cstdint>
#include <string>

#include "playback/PlayerTransport.h"

namespace jk {

// The interval of the IntroPlay timer: positions are read in whole seconds, so two ticks a
// second keep a stretch within half a second of its length.
inline constexpr std::chrono::milliseconds kIntroPlayInterval{500};

// The settings a tick reads, each holding its key's value.
struct IntroSettings {
    std::int16_t IntroPlay = 0;  // 1: on
    std::int16_t IntroSkip = 0;
    std::int16_t IntroLength = 0;
};

enum class IntroAction : std::uint8_t {
    Nothing,
    SkippedStart,  // jumped to IntroSkip
    MovedOn,       // went on to the next song
    Stopped,       // the song left was the last: the player stopped
};

class IntroPlay {
public:
    IntroAction Tick(const IntroSettings& settings, PlayerTransport& player);

private:
    // A player that cannot tell its list's index (an MPRIS player without a track list) moves
    // on by Next alone; when a later tick still finds this song past its stretch, that Next
    // went nowhere and the song is the last.
    std::string m_movedOnFrom;
};

}  // namespace jk
