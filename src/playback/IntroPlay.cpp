#include "playback/IntroPlay.h"

#include <cmath>

namespace jk {

IntroAction IntroPlay::Tick(const IntroSettings& settings, PlayerTransport& player) {
    if (settings.IntroPlay != 1 || !player.Running()) {
        return IntroAction::Nothing;
    }
    const PlayerStatus status = player.Status();
    if (status.state != PlayState::Playing || status.positionMs < 0) {
        return IntroAction::Nothing;
    }
    const std::int64_t position = std::llround(static_cast<double>(status.positionMs) / 1000.0);
    const std::int64_t length = status.lengthMs >= 0 ? status.lengthMs / 1000 : -1;
    const std::int64_t skip = settings.IntroSkip;

    if (position > skip + settings.IntroLength) {
        const std::int32_t index = player.ListIndex();
        if (index >= 0) {
            player.Next();
            if (index == player.ListLength() - 1) {
                player.Stop();
                return IntroAction::Stopped;
            }
            return IntroAction::MovedOn;
        }
        if (!status.canGoNext || (!m_movedOnFrom.empty() && status.trackKey == m_movedOnFrom)) {
            player.Stop();
            m_movedOnFrom.clear();
            return IntroAction::Stopped;
        }
        player.Next();
        m_movedOnFrom = status.trackKey;
        return IntroAction::MovedOn;
    }
    // A song shorter than the skip plays whole.
    if (position < skip && skip < length) {
        player.SeekTo(skip * 1000);
        return IntroAction::SkippedStart;
    }
    return IntroAction::Nothing;
}

}  // namespace jk
