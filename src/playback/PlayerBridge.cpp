#include "playback/PlayerBridge.h"

#include "playback/MprisTransport.h"
#include "playback/PlayerKind.h"
#include "playback/WindowMessageTransport.h"
#include "util/Text.h"

namespace jk {

PlayerTarget PlayerTargetFor(std::string_view playerExe, std::string_view mprisPlayer,
                             std::int16_t currentKind, std::string dataFolder) {
    PlayerTarget target;
    target.kind = PlayerKindFor(playerExe, mprisPlayer, currentKind);
    target.playerPath = std::string(Trim(playerExe));
    target.mprisName = MprisNameFor(playerExe, mprisPlayer);
    target.dataFolder = std::move(dataFolder);
    return target;
}

std::string MpvSocketPath(std::string_view dataFolder) {
    return std::string(dataFolder) + std::string(kMpvSocketName);
}

std::vector<std::string> PlayerStartArguments(std::string_view playerPath,
                                              std::string_view dataFolder,
                                              std::optional<std::string> listFile) {
    std::vector<std::string> arguments;
    if (IsMpvPath(playerPath)) {
        arguments = {"--idle=yes", "--no-video", "--force-window=no",
                     "--input-ipc-server=" + MpvSocketPath(dataFolder)};
    }
    if (listFile) {
        arguments.push_back(std::move(*listFile));
    }
    return arguments;
}

std::string VolumePanelText(std::int32_t percent) {
    return "  " + std::to_string(percent) + "%";
}

PlayerBridge::PlayerBridge(PlayerPlatform& platform, MpvTimeouts mpvTimeouts,
                           TransportOpener opener)
    : m_platform(platform), m_mpvTimeouts(mpvTimeouts), m_opener(std::move(opener)) {
    Reopen();
}

PlayerBridge::~PlayerBridge() = default;

void PlayerBridge::Aim(const PlayerTarget& target) {
    if (target == m_target && m_transport) {
        return;
    }
    m_target = target;
    Reopen();
}

void PlayerBridge::Reopen() {
    m_fade.Cancel();
    m_ownMpv.reset();
    m_transport.reset();
    const std::int16_t kind = m_target.kind;
    if (m_opener) {
        m_transport = m_opener(m_target);
    }
    if (m_transport) {
        return;
    }
    if (IsWindowPlayerKind(kind)) {
        m_transport = std::make_unique<WindowMessageTransport>(kind, m_platform.Windows(),
                                                               m_target.dataFolder);
    } else if (kind == kPlayerMpv) {
        m_transport = std::make_unique<MpvTransport>(
            m_platform.SocketChannel(MpvSocketPath(m_target.dataFolder)), m_mpvTimeouts);
    } else if (kind == kPlayerMpris) {
        m_transport = std::make_unique<MprisTransport>(m_platform.SessionBus(), m_target.mprisName);
    } else {
        m_transport = std::make_unique<PlayerTransport>();
    }
}

MpvTransport& PlayerBridge::OwnMpv() {
    if (auto* mpv = dynamic_cast<MpvTransport*>(m_transport.get())) {
        return *mpv;
    }
    if (!m_ownMpv) {
        m_ownMpv = std::make_unique<MpvTransport>(
            m_platform.SocketChannel(MpvSocketPath(m_target.dataFolder)), m_mpvTimeouts);
    }
    return *m_ownMpv;
}

std::optional<std::string> PlayerBridge::Command(PlayerCommand command, TimePoint now) {
    PlayerTransport& player = *m_transport;
    const auto volumeText = [&player]() -> std::optional<std::string> {
        const std::optional<std::int32_t> volume = player.Volume();
        return volume ? std::optional(VolumePanelText(*volume)) : std::nullopt;
    };
    switch (command) {
        case PlayerCommand::Play:
            player.Play();
            break;
        case PlayerCommand::Pause:
            player.Pause();
            break;
        case PlayerCommand::Stop:
            m_fade.Cancel();
            player.Stop();
            break;
        case PlayerCommand::Previous:
            player.Previous();
            break;
        case PlayerCommand::Next:
            player.Next();
            break;
        case PlayerCommand::SkipBack:
            player.SkipBack();
            break;
        case PlayerCommand::SkipAhead:
            player.SkipAhead();
            break;
        case PlayerCommand::VolumeDown:
            player.VolumeDown();
            return volumeText();
        case PlayerCommand::VolumeUp:
            player.VolumeUp();
            return volumeText();
        case PlayerCommand::Fade:
            if (player.FadesItself()) {
                player.Fade();
            } else if (!m_fade.Active()) {
                if (const std::optional<std::int32_t> volume = player.Volume()) {
                    m_fade.Start(*volume, now);
                }
            }
            break;
        case PlayerCommand::Equalizer:
            player.Equalizer();
            break;
        case PlayerCommand::Selector:
            player.Selector();
            break;
        case PlayerCommand::PlugInProperties:
            player.PlugInProperties();
            break;
        case PlayerCommand::PlugInRun:
            player.PlugInRun();
            break;
        case PlayerCommand::Minimize:
            player.Minimize();
            break;
        case PlayerCommand::Restore:
            player.Restore();
            break;
        case PlayerCommand::Close:
            m_fade.Cancel();
            player.Close();
            break;
        case PlayerCommand::Count:
            break;
    }
    return std::nullopt;
}

void PlayerBridge::Tick(TimePoint now) {
    if (!m_fade.Active()) {
        return;
    }
    if (const std::optional<std::int32_t> volume = m_fade.VolumeAt(now)) {
        if (!m_transport->SetVolume(*volume)) {
            m_fade.Cancel();  // the player went away: nothing to restore
        }
        return;
    }
    m_transport->Stop();
    m_transport->SetVolume(m_fade.StartVolume());
}

ProgramStart PlayerBridge::StartPlayer() {
    if (m_target.playerPath.empty()) {
        return {false, "no player is set"};
    }
    return m_platform.StartProgram(m_target.playerPath,
                                   PlayerStartArguments(m_target.playerPath, m_target.dataFolder));
}

void PlayerBridge::UnhidePlayerWindow() {
    UnhideWinPlay3(m_platform.Windows());
}

}  // namespace jk
