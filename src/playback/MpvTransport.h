#pragma once

// mpv (kind 6), steered over its JSON IPC socket. Every exchange has a time-out; a player that
// falls silent is left alone for a while afterwards, so that a hung mpv costs one time-out, not
// one per call.

#include <chrono>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <vector>

#include "playback/LineChannel.h"
#include "playback/MpvProtocol.h"
#include "playback/PlayerTransport.h"

namespace jk {

// The volume step in percent.
inline constexpr std::int32_t kMpvVolumeStep = 5;

struct MpvTimeouts {
    int quietMs = 500;   // nothing moved on the socket for this long: the player hangs
    int totalMs = 2000;  // an exchange takes at most this long (and 1 ms more per command)
    int restMs = 3000;   // after a time-out the player counts as gone for this long
};

class MpvTransport final : public PlayerTransport {
public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;

    explicit MpvTransport(std::unique_ptr<LineChannel> channel, MpvTimeouts timeouts = {},
                          Clock clock = {});

    bool Running() override;
    PlayerAbilities Abilities() override { return {}; }
    void Play() override;
    void Pause() override;
    void Stop() override;
    void Next() override;
    void Previous() override;
    void VolumeUp() override;
    void VolumeDown() override;
    void SkipAhead() override;
    void SkipBack() override;
    void Close() override;

    std::optional<std::int32_t> Volume() override;
    bool SetVolume(std::int32_t percent) override;

    bool HasMessageRoad() override { return Running(); }
    void ClearList() override;
    AddResult AddSongs(std::span<const std::string> paths) override;
    bool Sounding() override;

    // What a second start of the player with a list file does to a player that allows one
    // instance: the list replaces the one it holds and plays, or with `append` goes behind it.
    bool TakeListFile(const std::string& listPath, bool append);

    PlayerStatus Status() override;
    std::int32_t ListIndex() override;
    std::int32_t ListLength() override;
    void SeekTo(std::int64_t positionMs) override;

private:
    using Command = std::vector<MpvArg>;
    // Sends the commands in one go and collects their replies, in order; a reply that did not
    // come is nullopt. Nothing is sent while the player rests after a time-out.
    std::vector<std::optional<MpvMessage>> Run(std::span<const Command> commands);
    std::optional<MpvMessage> RunOne(Command command);
    std::optional<MpvData> Property(std::string_view name);

    std::unique_ptr<LineChannel> m_channel;
    MpvTimeouts m_timeouts;
    Clock m_clock;
    std::optional<std::chrono::steady_clock::time_point> m_restUntil;
    std::int64_t m_nextId = 1;
    // After a clear the next song replaces the entry mpv keeps playing, so that the new list
    // replaces the old one whole.
    bool m_replaceNext = false;
    // Where the list stood when the player was stopped.
    std::int32_t m_stoppedAt = 0;
};

}  // namespace jk
