#include "app/cli/CliPlayer.h"

#include "app/PlayerSession.h"
#include "app/Session.h"
#include "playback/PlayerKind.h"

namespace jk {

CliPlayer::CliPlayer(Session& session) : m_bridge(m_platform) {
    SetPlayerMode(session, m_bridge);
}

std::string CliPlayer::Name() const {
    const PlayerTarget& target = m_bridge.Target();
    std::string name(PlayerKindName(target.kind));
    if (!target.playerPath.empty()) {
        name += " (" + target.playerPath + ")";
    }
    return name;
}

}  // namespace jk
