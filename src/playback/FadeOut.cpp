#include "playback/FadeOut.h"

#include <algorithm>
#include <cmath>

namespace jk {

void FadeOut::Start(std::int32_t volume, TimePoint now) {
    m_active = true;
    m_volume = volume;
    m_start = now;
}

std::optional<std::int32_t> FadeOut::VolumeAt(TimePoint now) {
    if (!m_active) {
        return std::nullopt;
    }
    const auto elapsed = std::chrono::duration_cast<std::chrono::milliseconds>(now - m_start);
    if (elapsed >= kFadeDuration) {
        m_active = false;
        return std::nullopt;
    }
    const double left = 1.0 - static_cast<double>(std::max<std::int64_t>(elapsed.count(), 0)) /
                                  static_cast<double>(kFadeDuration.count());
    return static_cast<std::int32_t>(std::lround(m_volume * left));
}

}  // namespace jk
