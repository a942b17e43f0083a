#include "platform/SystemPlayerPlatform.h"

#include "platform/ProgramStart.h"
#include "platform/SessionMprisBus.h"
#include "platform/UnixSocketChannel.h"

namespace jk {

SystemPlayerPlatform::SystemPlayerPlatform(int busTimeoutMs) : m_busTimeoutMs(busTimeoutMs) {}

std::unique_ptr<LineChannel> SystemPlayerPlatform::SocketChannel(const std::string& socketPath) {
    return std::make_unique<UnixSocketChannel>(socketPath);
}

std::unique_ptr<MprisBus> SystemPlayerPlatform::SessionBus() {
    return OpenSessionMprisBus(m_busTimeoutMs);
}

ProgramStart SystemPlayerPlatform::StartProgram(const std::string& program,
                                                const std::vector<std::string>& arguments) {
    return StartDetachedProgram(program, arguments);
}

bool SystemPlayerPlatform::ProgramThere(const std::string& program) {
    return ProgramIsThere(program);
}

}  // namespace jk
