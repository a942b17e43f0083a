#pragma once

// Any MPRIS player (kind 7), steered over the session bus: found by its bus name, its commands
// shown by its Can... properties, songs handed over by its track list where it has one.

#include <memory>
#include <string>

#include "playback/MprisBus.h"
#include "playback/PlayerTransport.h"

namespace jk {

// The volume step of an MPRIS player, whose volume runs from 0 to 1.
inline constexpr double kMprisVolumeStep = 0.05;

class MprisTransport final : public PlayerTransport {
public:
    // `name`: the part of the bus name after "org.mpris.MediaPlayer2." ("vlc", "mpv").
    MprisTransport(std::unique_ptr<MprisBus> bus, std::string name);

    // The full bus name of the running player; "" when none runs.
    std::string BusName();

    bool Running() override { return !BusName().empty(); }
    PlayerAbilities Abilities() override;
    void Play() override { Call("Play"); }
    // A toggle, as the pause key of the other players.
    void Pause() override { Call("PlayPause"); }
    void Stop() override { Call("Stop"); }
    void Next() override { Call("Next"); }
    void Previous() override { Call("Previous"); }
    void VolumeUp() override { StepVolume(kMprisVolumeStep); }
    void VolumeDown() override { StepVolume(-kMprisVolumeStep); }
    void SkipAhead() override;
    void SkipBack() override;
    void Close() override;
    void Restore() override;

    std::optional<std::int32_t> Volume() override;
    bool SetVolume(std::int32_t percent) override;

    bool HasMessageRoad() override;
    void ClearList() override;
    AddResult AddSongs(std::span<const std::string> paths) override;
    bool OpenAndPlay(const std::string& path) override;

    PlayerStatus Status() override;
    std::int32_t ListIndex() override;
    std::int32_t ListLength() override;
    void SeekTo(std::int64_t positionMs) override;

private:
    void Call(std::string_view method);
    void StepVolume(double step);
    std::string LastTrack(const std::string& busName);

    std::unique_ptr<MprisBus> m_bus;
    std::string m_name;
    std::string m_busName;  // found last time
    // After a clear, the first song added becomes the current one.
    bool m_setCurrentNext = false;
};

// The song panel's text of an MPRIS song: "Artist - Title", the title alone, or the file name
// of its address.
std::string MprisSongTitle(const MprisMetadata& metadata);

}  // namespace jk
