#include "playback/StatusPanels.h"

#include "playback/PlayerBridge.h"
#include "util/TimeHelpers.h"

namespace jk {

namespace {

std::optional<std::string> Changed(std::string& shown, std::optional<std::string> text) {
    if (!text || *text == shown) {
        return std::nullopt;
    }
    shown = *text;
    return text;
}

std::int32_t SecondsOf(std::int64_t ms) {
    return static_cast<std::int32_t>(std::min<std::int64_t>(ms / 1000, 2147483647));
}

}  // namespace

std::optional<std::string> TimePanelText(const PlayerStatus& status, std::int16_t timeMode) {
    if (status.state == PlayState::Paused) {
        return "Pause";
    }
    if (status.state != PlayState::Playing || status.positionMs < 0) {
        return std::nullopt;
    }
    if (timeMode != 0 && status.lengthMs >= 0) {
        const std::int64_t remaining =
            std::max<std::int64_t>(status.lengthMs - status.positionMs, 0);
        return "- " + FormatSeconds(SecondsOf(remaining));
    }
    return FormatSeconds(SecondsOf(status.positionMs));
}

StatusPanelUpdate StatusPanels::Update(const PlayerStatus& status, std::int16_t timeMode) {
    StatusPanelUpdate update;
    update.time = Changed(m_time, TimePanelText(status, timeMode));
    if (status.volume >= 0) {
        update.volume = Changed(m_volume, VolumePanelText(status.volume));
    }
    if (status.state != PlayState::Stopped) {
        update.song = Changed(m_song, status.title);
    }
    return update;
}

void StatusPanels::Shown(const StatusPanelUpdate& update) {
    if (update.time) {
        m_time = *update.time;
    }
    if (update.volume) {
        m_volume = *update.volume;
    }
    if (update.song) {
        m_song = *update.song;
    }
}

}  // namespace jk
