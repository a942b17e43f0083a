#include "playback/MprisTransport.h"

#include <algorithm>
#include <cmath>

#include "util/PathHelpers.h"
#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {

namespace {

constexpr std::int64_t kMicrosecondsPerSecond = 1000000;

PlayState StateOf(std::string_view playbackStatus) {
    if (playbackStatus == "Playing") {
        return PlayState::Playing;
    }
    if (playbackStatus == "Paused") {
        return PlayState::Paused;
    }
    return PlayState::Stopped;
}

std::int32_t PercentOf(double volume) {
    if (!std::isfinite(volume) || volume < 0) {
        return -1;
    }
    return static_cast<std::int32_t>(std::lround(std::min(volume, 10.0) * 100.0));
}

}  // namespace

std::string MatchMprisBusName(const std::vector<std::string>& names, std::string_view name) {
    name = Trim(name);
    if (name.empty()) {
        return {};
    }
    const std::string exact = std::string(kMprisBusPrefix) + std::string(name);
    for (const std::string& busName : names) {
        if (busName == exact) {
            return busName;
        }
    }
    for (const std::string& busName : names) {
        if (!StartsWith(busName, kMprisBusPrefix)) {
            continue;
        }
        const std::string_view part = std::string_view(busName).substr(kMprisBusPrefix.size());
        const std::size_t lastDot = part.find_last_of('.');
        const std::string_view last =
            lastDot == std::string_view::npos ? part : part.substr(lastDot + 1);
        const bool instance = part.size() > name.size() && part[name.size()] == '.' &&
                              EqualsNoCase(part.substr(0, name.size()), name);
        if (EqualsNoCase(part, name) || instance || EqualsNoCase(last, name)) {
            return busName;
        }
    }
    return {};
}

std::string MprisSongTitle(const MprisMetadata& metadata) {
    std::string artists;
    for (const std::string& artist : metadata.artists) {
        if (!Trim(artist).empty()) {
            artists += (artists.empty() ? "" : ", ") + std::string(Trim(artist));
        }
    }
    const std::string title(Trim(metadata.title));
    if (!title.empty()) {
        return artists.empty() ? title : artists + " - " + title;
    }
    return std::string(BareName(metadata.url));
}

MprisTransport::MprisTransport(std::unique_ptr<MprisBus> bus, std::string name)
    : m_bus(std::move(bus)), m_name(std::move(name)) {}

std::string MprisTransport::BusName() {
    if (!m_busName.empty() && m_bus->NameHasOwner(m_busName)) {
        return m_busName;
    }
    m_busName = MatchMprisBusName(m_bus->ListNames(), m_name);
    return m_busName;
}

void MprisTransport::Call(std::string_view method) {
    if (const std::string busName = BusName(); !busName.empty()) {
        m_bus->CallPlayer(busName, method);
    }
}

PlayerAbilities MprisTransport::Abilities() {
    PlayerAbilities can{false, false, false, false, false, false, false, false, false};
    const std::string busName = BusName();
    if (busName.empty()) {
        return can;
    }
    if (const auto state = m_bus->PlayerState(busName)) {
        can.canPlay = state->canPlay;
        can.canPause = state->canPause;
        can.canGoNext = state->canGoNext;
        can.canGoPrevious = state->canGoPrevious;
        can.canSeek = state->canSeek;
        can.canControl = state->canControl;
    }
    if (const auto root = m_bus->RootState(busName)) {
        can.canQuit = root->canQuit;
        can.canRaise = root->canRaise;
        can.hasTrackList = root->hasTrackList;
    }
    return can;
}

void MprisTransport::StepVolume(double step) {
    const std::string busName = BusName();
    if (busName.empty()) {
        return;
    }
    const auto state = m_bus->PlayerState(busName);
    if (state && std::isfinite(state->volume) && state->volume >= 0) {
        m_bus->SetVolume(busName, std::clamp(state->volume + step, 0.0, 1.0));
    }
}

void MprisTransport::SkipAhead() {
    if (const std::string busName = BusName(); !busName.empty()) {
        m_bus->Seek(busName, kSkipSeconds * kMicrosecondsPerSecond);
    }
}

void MprisTransport::SkipBack() {
    if (const std::string busName = BusName(); !busName.empty()) {
        m_bus->Seek(busName, -kSkipSeconds * kMicrosecondsPerSecond);
    }
}

void MprisTransport::Close() {
    const std::string busName = BusName();
    const auto root = busName.empty() ? std::nullopt : m_bus->RootState(busName);
    if (root && root->canQuit) {
        m_bus->CallRoot(busName, "Quit");
    }
}

void MprisTransport::Restore() {
    const std::string busName = BusName();
    const auto root = busName.empty() ? std::nullopt : m_bus->RootState(busName);
    if (root && root->canRaise) {
        m_bus->CallRoot(busName, "Raise");
    }
}

std::optional<std::int32_t> MprisTransport::Volume() {
    const std::string busName = BusName();
    const auto state = busName.empty() ? std::nullopt : m_bus->PlayerState(busName);
    if (!state || PercentOf(state->volume) < 0) {
        return std::nullopt;
    }
    return PercentOf(state->volume);
}

bool MprisTransport::SetVolume(std::int32_t percent) {
    const std::string busName = BusName();
    return !busName.empty() &&
           m_bus->SetVolume(busName, static_cast<double>(std::max(percent, 0)) / 100.0);
}

bool MprisTransport::HasMessageRoad() {
    const std::string busName = BusName();
    const auto root = busName.empty() ? std::nullopt : m_bus->RootState(busName);
    return root && root->hasTrackList;
}

void MprisTransport::ClearList() {
    const std::string busName = BusName();
    if (busName.empty()) {
        return;
    }
    if (const auto tracks = m_bus->Tracks(busName)) {
        for (const std::string& track : *tracks) {
            m_bus->RemoveTrack(busName, track);
        }
    }
    m_setCurrentNext = true;
}

std::string MprisTransport::LastTrack(const std::string& busName) {
    const auto tracks = m_bus->Tracks(busName);
    return tracks && !tracks->empty() ? tracks->back() : std::string(kMprisNoTrack);
}

AddResult MprisTransport::AddSongs(std::span<const std::string> paths) {
    const std::string busName = BusName();
    if (busName.empty()) {
        return AddResult::Failed;
    }
    for (const std::string& path : paths) {
        // A track goes behind the last one; the list may change under us, so it is read again.
        if (!m_bus->AddTrack(busName, FileUri(path), LastTrack(busName), m_setCurrentNext)) {
            return AddResult::Failed;
        }
        m_setCurrentNext = false;
    }
    return AddResult::Added;
}

bool MprisTransport::OpenAndPlay(const std::string& path) {
    const std::string busName = BusName();
    return !busName.empty() && m_bus->OpenUri(busName, FileUri(path));
}

PlayerStatus MprisTransport::Status() {
    PlayerStatus status;
    const std::string busName = BusName();
    const auto state = busName.empty() ? std::nullopt : m_bus->PlayerState(busName);
    if (!state) {
        return status;
    }
    status.state = StateOf(state->playbackStatus);
    status.volume = PercentOf(state->volume);
    status.canGoNext = state->canGoNext;
    if (status.state != PlayState::Stopped) {
        status.positionMs = state->positionUs >= 0 ? state->positionUs / 1000 : -1;
        status.lengthMs = state->metadata.lengthUs >= 0 ? state->metadata.lengthUs / 1000 : -1;
        status.title = MprisSongTitle(state->metadata);
        status.trackKey = state->metadata.trackId + "\n" + state->metadata.url;
    }
    return status;
}

std::int32_t MprisTransport::ListIndex() {
    const std::string busName = BusName();
    if (busName.empty() || !HasMessageRoad()) {
        return -1;
    }
    const auto state = m_bus->PlayerState(busName);
    const auto tracks = m_bus->Tracks(busName);
    if (!state || !tracks) {
        return -1;
    }
    const auto found = std::find(tracks->begin(), tracks->end(), state->metadata.trackId);
    return found == tracks->end() ? -1 : static_cast<std::int32_t>(found - tracks->begin());
}

std::int32_t MprisTransport::ListLength() {
    const std::string busName = BusName();
    if (busName.empty() || !HasMessageRoad()) {
        return -1;
    }
    const auto tracks = m_bus->Tracks(busName);
    return tracks ? static_cast<std::int32_t>(std::min<std::size_t>(tracks->size(), 1000000000))
                  : -1;
}

void MprisTransport::SeekTo(std::int64_t positionMs) {
    const std::string busName = BusName();
    const auto state = busName.empty() ? std::nullopt : m_bus->PlayerState(busName);
    if (!state) {
        return;
    }
    const std::int64_t targetUs = std::max<std::int64_t>(positionMs, 0) * 1000;
    const std::string& track = state->metadata.trackId;
    if (!track.empty() && track != kMprisNoTrack) {
        m_bus->SetPosition(busName, track, targetUs);
    } else if (state->positionUs >= 0) {
        m_bus->Seek(busName, targetUs - state->positionUs);
    }
}

}  // namespace jk
