#pragma once

// The bridge to the player: which player the settings name (PlayerTarget), the transport that
// reaches it, the remote commands routed to it, and the fade that runs on the caller's ticks.
// One bridge lives as long as the front end; SetPlayerMode aims it again when the settings
// change.

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "playback/FadeOut.h"
#include "playback/MpvTransport.h"
#include "playback/PlayerPlatform.h"
#include "playback/PlayerTransport.h"

namespace jk {

// mpv's socket, in the data folder.
inline constexpr std::string_view kMpvSocketName = "mpv.sock";

struct PlayerTarget {
    std::int16_t kind = 0;
    std::string playerPath;  // PlayerExe, trimmed
    std::string mprisName;   // the MPRIS player's name on the bus (kind 7)
    std::string dataFolder;  // ending in "/"

    friend bool operator==(const PlayerTarget&, const PlayerTarget&) = default;
};

// The target the settings name: the kind by SetPlayerMode's words (or `currentKind` when the
// path names none), the trimmed path, the MPRIS name.
PlayerTarget PlayerTargetFor(std::string_view playerExe, std::string_view mprisPlayer,
                             std::int16_t currentKind, std::string dataFolder);

std::string MpvSocketPath(std::string_view dataFolder);

// The arguments a player is started with: mpv waits idle, without a window, for commands on
// its socket; `listFile`, when given, comes last.
std::vector<std::string> PlayerStartArguments(std::string_view playerPath,
                                              std::string_view dataFolder,
                                              std::optional<std::string> listFile = std::nullopt);

class PlayerBridge {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    // Opens the transport of a target; when empty, the bridge opens the standard one of the
    // kind (tests put a transport of their own in its place).
    using TransportOpener = std::function<std::unique_ptr<PlayerTransport>(const PlayerTarget&)>;

    explicit PlayerBridge(PlayerPlatform& platform, MpvTimeouts mpvTimeouts = {},
                          TransportOpener opener = {});
    ~PlayerBridge();
    PlayerBridge(const PlayerBridge&) = delete;
    PlayerBridge& operator=(const PlayerBridge&) = delete;

    // Steers the player of `target` from now on; the transport is opened afresh when the
    // target changed.
    void Aim(const PlayerTarget& target);
    const PlayerTarget& Target() const { return m_target; }
    std::int16_t Kind() const { return m_target.kind; }

    // The transport of the kind aimed at; one that does nothing for a kind outside 1 to 7.
    PlayerTransport& Transport() { return *m_transport; }
    // The mpv started from this data folder, whichever kind steers the player: the
    // command-line road hands its lists to it when it runs.
    MpvTransport& OwnMpv();
    PlayerPlatform& Platform() { return m_platform; }

    // FindPlayer.
    bool Running() { return m_transport->Running(); }

    // A remote command. The fade of a player without its own starts here and goes on in Tick;
    // a volume command gives the volume panel's new text where the player reports its volume.
    std::optional<std::string> Command(PlayerCommand command, TimePoint now);
    // Moves a running fade on; the caller's timer calls it every kFadeStepInterval while
    // Fading() holds.
    void Tick(TimePoint now);
    bool Fading() const { return m_fade.Active(); }

    // Starts the player's program with no list (the start-up's player start).
    ProgramStart StartPlayer();
    // The shutdown's un-hiding of a hidden WinPlay3.
    void UnhidePlayerWindow();

private:
    void Reopen();

    PlayerPlatform& m_platform;
    MpvTimeouts m_mpvTimeouts;
    TransportOpener m_opener;
    PlayerTarget m_target;
    std::unique_ptr<PlayerTransport> m_transport;
    std::unique_ptr<MpvTransport> m_ownMpv;
    FadeOut m_fade;
};

// The volume panel's text: two blanks, the percentage and "%".
std::string VolumePanelText(std::int32_t percent);

}  // namespace jk
