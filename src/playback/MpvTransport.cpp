#include "playback/MpvTransport.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace jk {

namespace {

using namespace std::string_view_literals;

bool IsTrue(const std::optional<MpvMessage>& reply) {
    return reply && reply->Ok() && reply->data.type == MpvData::Type::Bool && reply->data.flag;
}

std::optional<double> NumberOf(const std::optional<MpvMessage>& reply) {
    if (reply && reply->Ok() && reply->data.type == MpvData::Type::Number &&
        std::isfinite(reply->data.number)) {
        return reply->data.number;
    }
    return std::nullopt;
}

std::int64_t MillisecondsOf(const std::optional<MpvMessage>& reply) {
    const std::optional<double> seconds = NumberOf(reply);
    if (!seconds || *seconds < 0 || *seconds > 1.0e12) {
        return -1;
    }
    return std::llround(*seconds * 1000.0);
}

std::int32_t WholeOf(const std::optional<MpvMessage>& reply) {
    const std::optional<double> value = NumberOf(reply);
    if (!value || *value < -1.0e9 || *value > 1.0e9) {
        return -1;
    }
    return static_cast<std::int32_t>(std::lround(*value));
}

std::string TextOf(const std::optional<MpvMessage>& reply) {
    if (reply && reply->Ok() && reply->data.type == MpvData::Type::Text) {
        return reply->data.text;
    }
    return {};
}

}  // namespace

MpvTransport::MpvTransport(std::unique_ptr<LineChannel> channel, MpvTimeouts timeouts, Clock clock)
    : m_channel(std::move(channel)), m_timeouts(timeouts), m_clock(std::move(clock)) {
    if (!m_clock) {
        m_clock = [] { return std::chrono::steady_clock::now(); };
    }
}

bool MpvTransport::Running() {
    if (m_restUntil) {
        if (m_clock() < *m_restUntil) {
            return false;
        }
        m_restUntil.reset();
    }
    return m_channel->Connect();
}

std::vector<std::optional<MpvMessage>> MpvTransport::Run(std::span<const Command> commands) {
    std::vector<std::optional<MpvMessage>> replies(commands.size());
    if (commands.empty() || !Running()) {
        return replies;
    }
    const std::int64_t firstId = m_nextId;
    std::string out;
    for (const Command& command : commands) {
        out += MpvCommandLine(command, m_nextId++);
    }
    std::size_t answered = 0;
    const auto onLine = [&](std::string_view line) {
        std::optional<MpvMessage> message = ParseMpvLine(line);
        if (!message || !message->requestId) {
            return answered == replies.size();  // an event, or noise
        }
        const std::int64_t index = *message->requestId - firstId;
        if (index >= 0 && index < static_cast<std::int64_t>(replies.size()) &&
            !replies[static_cast<std::size_t>(index)]) {
            replies[static_cast<std::size_t>(index)] = std::move(message);
            ++answered;
        }
        return answered == replies.size();
    };
    const int total =
        m_timeouts.totalMs + static_cast<int>(std::min<std::size_t>(commands.size(), 100000));
    const ExchangeResult result = m_channel->Exchange(out, onLine, m_timeouts.quietMs, total);
    if (result != ExchangeResult::Done) {
        m_channel->Disconnect();
        if (result == ExchangeResult::TimedOut) {
            m_restUntil = m_clock() + std::chrono::milliseconds(m_timeouts.restMs);
        }
    }
    return replies;
}

std::optional<MpvMessage> MpvTransport::RunOne(Command command) {
    const Command commands[] = {std::move(command)};
    return std::move(Run(commands)[0]);
}

std::optional<MpvData> MpvTransport::Property(std::string_view name) {
    std::optional<MpvMessage> reply = RunOne({"get_property"sv, name});
    if (!reply || !reply->Ok()) {
        return std::nullopt;
    }
    return std::move(reply->data);
}

void MpvTransport::Play() {
    const Command ask[] = {
        {"get_property"sv, "idle-active"sv},
        {"get_property"sv, "playlist-pos"sv},
        {"get_property"sv, "playlist-count"sv},
    };
    const auto state = Run(ask);
    std::vector<Command> commands;
    const std::int32_t count = WholeOf(state[2]);
    if (IsTrue(state[0]) && count > 0) {
        // Nothing plays: start the list where it stands, where it stopped, or at its start.
        std::int32_t at = WholeOf(state[1]);
        if (at < 0) {
            at = m_stoppedAt < count ? m_stoppedAt : 0;
        }
        commands.push_back({"playlist-play-index"sv, std::int64_t{at}});
    }
    commands.push_back({"set_property"sv, "pause"sv, false});
    Run(commands);
}

void MpvTransport::Pause() {
    RunOne({"cycle"sv, "pause"sv});
}

void MpvTransport::Stop() {
    // mpv forgets where its list stood when it stops; play starts there again.
    const Command commands[] = {{"get_property"sv, "playlist-pos"sv},
                                {"stop"sv, "keep-playlist"sv}};
    const auto replies = Run(commands);
    if (const std::int32_t at = WholeOf(replies[0]); at >= 0) {
        m_stoppedAt = at;
    }
}

void MpvTransport::Next() {
    RunOne({"playlist-next"sv});
}

void MpvTransport::Previous() {
    RunOne({"playlist-prev"sv});
}

void MpvTransport::VolumeUp() {
    RunOne({"add"sv, "volume"sv, std::int64_t{kMpvVolumeStep}});
}

void MpvTransport::VolumeDown() {
    RunOne({"add"sv, "volume"sv, std::int64_t{-kMpvVolumeStep}});
}

void MpvTransport::SkipAhead() {
    RunOne({"seek"sv, std::int64_t{kSkipSeconds}, "relative"sv});
}

void MpvTransport::SkipBack() {
    RunOne({"seek"sv, std::int64_t{-kSkipSeconds}, "relative"sv});
}

void MpvTransport::Close() {
    RunOne({"quit"sv});
    m_channel->Disconnect();
}

std::optional<std::int32_t> MpvTransport::Volume() {
    const std::optional<MpvData> volume = Property("volume");
    if (!volume || volume->type != MpvData::Type::Number || !std::isfinite(volume->number)) {
        return std::nullopt;
    }
    return static_cast<std::int32_t>(std::lround(std::clamp(volume->number, 0.0, 1000.0)));
}

bool MpvTransport::SetVolume(std::int32_t percent) {
    const std::optional<MpvMessage> reply =
        RunOne({"set_property"sv, "volume"sv, std::int64_t{std::max(percent, 0)}});
    return reply && reply->Ok();
}

void MpvTransport::ClearList() {
    RunOne({"playlist-clear"sv});
    m_stoppedAt = 0;
    m_replaceNext = true;
}

AddResult MpvTransport::AddSongs(std::span<const std::string> paths) {
    if (paths.empty()) {
        return AddResult::Added;
    }
    std::vector<Command> commands;
    commands.reserve(paths.size());
    for (const std::string& path : paths) {
        commands.push_back(
            {"loadfile"sv, std::string_view(path), m_replaceNext ? "replace"sv : "append"sv});
        m_replaceNext = false;
    }
    const auto replies = Run(commands);
    const bool allAnswered =
        std::all_of(replies.begin(), replies.end(), [](const auto& reply) { return reply; });
    return allAnswered ? AddResult::Added : AddResult::Failed;
}

// mpv has a playing time only once the song is open and its audio started.
bool MpvTransport::Sounding() {
    const std::optional<MpvData> time = Property("playback-time");
    return time && time->type == MpvData::Type::Number;
}

bool MpvTransport::TakeListFile(const std::string& listPath, bool append) {
    const std::optional<MpvMessage> reply =
        RunOne({"loadlist"sv, std::string_view(listPath), append ? "append"sv : "replace"sv});
    if (reply && reply->Ok() && !append) {
        RunOne({"set_property"sv, "pause"sv, false});
    }
    return reply && reply->Ok();
}

PlayerStatus MpvTransport::Status() {
    const Command ask[] = {
        {"get_property"sv, "idle-active"sv}, {"get_property"sv, "pause"sv},
        {"get_property"sv, "time-pos"sv},    {"get_property"sv, "duration"sv},
        {"get_property"sv, "volume"sv},      {"get_property"sv, "media-title"sv},
        {"get_property"sv, "path"sv},
    };
    const auto replies = Run(ask);
    PlayerStatus status;
    if (!replies[0]) {
        return status;
    }
    status.state = IsTrue(replies[0])   ? PlayState::Stopped
                   : IsTrue(replies[1]) ? PlayState::Paused
                                        : PlayState::Playing;
    if (status.state != PlayState::Stopped) {
        status.positionMs = MillisecondsOf(replies[2]);
        status.lengthMs = MillisecondsOf(replies[3]);
        status.title = TextOf(replies[5]);
        status.trackKey = TextOf(replies[6]);
    }
    status.volume = WholeOf(replies[4]);
    return status;
}

std::int32_t MpvTransport::ListIndex() {
    return WholeOf(RunOne({"get_property"sv, "playlist-pos"sv}));
}

std::int32_t MpvTransport::ListLength() {
    return WholeOf(RunOne({"get_property"sv, "playlist-count"sv}));
}

void MpvTransport::SeekTo(std::int64_t positionMs) {
    RunOne({"seek"sv, static_cast<double>(std::max<std::int64_t>(positionMs, 0)) / 1000.0,
            "absolute"sv});
}

}  // namespace jk
