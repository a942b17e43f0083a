#pragma once

// The status bar's player panels, as Timer3 keeps them: the time (played, or "- " and what
// remains, or "Pause"), the volume ("  NN%") and the song's title. Each text is handed out only
// when it changed, so that the window writes a panel no more than needed.

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "playback/PlayerTransport.h"

namespace jk {

// The interval of the status display's timer.
inline constexpr std::chrono::milliseconds kStatusInterval{500};

// The time panel's text: while playing the position as minutes and seconds, or with a
// non-zero TimeMode "- " and the time that remains; "Pause" while paused; nothing while
// stopped or when the player cannot tell (the panel keeps its text).
std::optional<std::string> TimePanelText(const PlayerStatus& status, std::int16_t timeMode);

struct StatusPanelUpdate {
    std::optional<std::string> time;
    std::optional<std::string> volume;
    std::optional<std::string> song;
};

class StatusPanels {
public:
    // One tick: the texts that differ from those shown.
    StatusPanelUpdate Update(const PlayerStatus& status, std::int16_t timeMode);
    // What the window shows now, when it wrote a panel itself (a volume command).
    void Shown(const StatusPanelUpdate& update);

private:
    std::string m_time;
    std::string m_volume;
    std::string m_song;
};

}  // namespace jk
