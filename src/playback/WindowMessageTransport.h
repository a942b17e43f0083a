#pragma once

// The transport of the five Windows players (kinds 1 to 5): their main window found as the
// table says, and each command sent as the window message of its row. What needs Winamp's own
// messages (the Winamp-only commands) goes to kind 2 alone.

#include <cstdint>
#include <string>

#include "playback/PlayerTransport.h"
#include "playback/WindowMessages.h"

namespace jk {

// The file Winamp writes its list to when asked for the index of its song.
inline constexpr std::string_view kWinampListName = "winamp.m3u";
// winamp.m3u is counted up to this many lines.
inline constexpr std::int32_t kWinampListMaxLines = 100000;

class WindowMessageTransport final : public PlayerTransport {
public:
    // `listFolder`: where the player writes "winamp.m3u", ending in "/".
    WindowMessageTransport(std::int16_t kind, WindowMessenger& messenger, std::string listFolder);

    // FindPlayer.
    WindowHandle Find();
    // WinPlay3's window state as the window commands record it: 1 normal, 2 minimized (and
    // hidden), 0 before any.
    std::int16_t RecordedWindowState() const { return m_windowState; }

    bool Running() override { return Find() != 0; }
    PlayerAbilities Abilities() override;
    void Play() override { SendTransport(PlayerCommand::Play); }
    void Pause() override { SendTransport(PlayerCommand::Pause); }
    void Stop() override { SendTransport(PlayerCommand::Stop); }
    void Next() override { SendTransport(PlayerCommand::Next); }
    void Previous() override { SendTransport(PlayerCommand::Previous); }
    void VolumeUp() override { SendWinampOnly(PlayerCommand::VolumeUp); }
    void VolumeDown() override { SendWinampOnly(PlayerCommand::VolumeDown); }
    void SkipAhead() override { SendWinampOnly(PlayerCommand::SkipAhead); }
    void SkipBack() override { SendWinampOnly(PlayerCommand::SkipBack); }
    bool FadesItself() const override { return true; }
    void Fade() override { SendWinampOnly(PlayerCommand::Fade); }
    void Equalizer() override { SendWinampOnly(PlayerCommand::Equalizer); }
    void Selector() override { SendWinampOnly(PlayerCommand::Selector); }
    void PlugInProperties() override { SendWinampOnly(PlayerCommand::PlugInProperties); }
    void PlugInRun() override { SendWinampOnly(PlayerCommand::PlugInRun); }
    void Close() override;
    void Minimize() override;
    void Restore() override;

    bool HasMessageRoad() override;
    void ClearList() override;
    AddResult AddSongs(std::span<const std::string> paths) override;

    PlayerStatus Status() override;
    std::int32_t ListIndex() override;
    std::int32_t ListLength() override;
    void SeekTo(std::int64_t positionMs) override;

private:
    void Deliver(WindowHandle window, const WindowCommand& command);
    void SendTransport(PlayerCommand command);
    void SendWinampOnly(PlayerCommand command);
    void SendSysCommand(PlayerCommand command, WindowHandle window);
    std::int64_t AskWinamp(WindowHandle window, std::uint64_t wParam, std::int64_t lParam);
    std::uint32_t NadRecordLength() const;

    std::int16_t m_kind;
    WindowMessenger& m_messenger;
    std::string m_listFolder;
    std::int16_t m_windowState = 0;
    // NAD's clearing message carries the record as the last add left it.
    std::array<std::uint8_t, kCopyDataBufferBytes> m_buffer{};
    std::uint64_t m_lastDwData = 0;
    std::uint32_t m_lastCbData = 0;
};

// Counts the lines of a player's list file, at most `maxLines`; -1 when it cannot be read.
std::int32_t CountListLines(const std::string& path, std::int32_t maxLines);

// The shutdown's un-hiding of a hidden WinPlay3: the show command goes to the window titled
// "WinPlay3", whether or not one was found.
void UnhideWinPlay3(WindowMessenger& messenger);

}  // namespace jk
