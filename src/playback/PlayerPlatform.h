#pragma once

// What the bridge needs from the operating system: a line channel to mpv's socket, the session
// bus, the window system of the Windows players (which finds nothing here), starting a program,
// and whether a player's program is there. The platform layer implements it; tests put fakes
// in its place.

#include <memory>
#include <string>
#include <vector>

#include "playback/LineChannel.h"
#include "playback/MprisBus.h"
#include "playback/WindowMessages.h"

namespace jk {

struct ProgramStart {
    bool ok = false;
    std::string error;  // why it could not start, one line
};

class PlayerPlatform {
public:
    virtual ~PlayerPlatform() = default;

    virtual std::unique_ptr<LineChannel> SocketChannel(const std::string& socketPath) = 0;
    virtual std::unique_ptr<MprisBus> SessionBus() = 0;
    // The plain messenger: no window of the Windows players exists on this system.
    virtual WindowMessenger& Windows() { return m_noWindows; }
    // Starts `program` with `arguments`, each passed as it is (no shell), apart from this
    // process: it outlives it and reads and writes nothing of its terminal.
    virtual ProgramStart StartProgram(const std::string& program,
                                      const std::vector<std::string>& arguments) = 0;
    // A player path is there when it names an executable file or a command on the PATH.
    virtual bool ProgramThere(const std::string& program) = 0;

private:
    WindowMessenger m_noWindows;
};

}  // namespace jk
