#pragma once

// What the player commands of jukarra-cli share: the bridge to the player the settings name,
// and how the tool shows the player.

#include <memory>
#include <string>

#include "platform/SystemPlayerPlatform.h"
#include "playback/PlayerBridge.h"

namespace jk {

struct Session;

// The bridge of this system, aimed at the player of the session's settings (SetPlayerMode).
class CliPlayer {
public:
    explicit CliPlayer(Session& session);

    PlayerBridge& Bridge() { return m_bridge; }
    // "mpv (/usr/bin/mpv)", the kind's name and the player's path.
    std::string Name() const;

private:
    SystemPlayerPlatform m_platform;
    PlayerBridge m_bridge;
};

}  // namespace jk
