#pragma once

// The bridge's view of this system: mpv's socket, the session bus and program starts. No
// window of the Windows players exists here, so their messenger finds nothing.

#include "playback/PlayerPlatform.h"

namespace jk {

// How long one call to a player may wait for its answer.
inline constexpr int kPlayerCallTimeoutMs = 500;

class SystemPlayerPlatform final : public PlayerPlatform {
public:
    explicit SystemPlayerPlatform(int busTimeoutMs = kPlayerCallTimeoutMs);

    std::unique_ptr<LineChannel> SocketChannel(const std::string& socketPath) override;
    std::unique_ptr<MprisBus> SessionBus() override;
    ProgramStart StartProgram(const std::string& program,
                              const std::vector<std::string>& arguments) override;
    bool ProgramThere(const std::string& program) override;

private:
    int m_busTimeoutMs;
};

}  // namespace jk
