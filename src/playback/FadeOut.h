#pragma once

// The fade of the players that have no fade of their own (mpv, MPRIS players): the volume
// ramps down to silence over a few seconds, step by step as the caller's timer ticks, then the
// player stops and its volume is set back to where it was.

#include <chrono>
#include <cstdint>
#include <optional>

namespace jk {

inline constexpr std::chrono::milliseconds kFadeDuration{3000};
// How often the caller's timer should tick while a fade runs.
inline constexpr std::chrono::milliseconds kFadeStepInterval{100};

class FadeOut {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    void Start(std::int32_t volume, TimePoint now);
    void Cancel() { m_active = false; }
    bool Active() const { return m_active; }
    std::int32_t StartVolume() const { return m_volume; }

    // The volume for `now` while the ramp runs; nullopt once it is over (the caller then stops
    // the player and restores StartVolume). The ramp is then no longer active.
    std::optional<std::int32_t> VolumeAt(TimePoint now);

private:
    bool m_active = false;
    std::int32_t m_volume = 0;
    TimePoint m_start{};
};

}  // namespace jk
