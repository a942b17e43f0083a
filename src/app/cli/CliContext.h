#pragma once

// What every command gets: the data folder, the session after the shared start-up sequence
// (run on first use, with the --set overrides applied), the right to write data files, and
// the output helpers.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "app/SessionData.h"
#include "app/Startup.h"
#include "app/cli/CliFront.h"
#include "app/cli/ProgressLine.h"

namespace jk {

class InstanceLock;
struct Session;

class CliContext {
public:
    CliContext(std::string dataFolder, std::vector<SettingOverride> overrides);
    ~CliContext();
    CliContext(const CliContext&) = delete;
    CliContext& operator=(const CliContext&) = delete;

    // The data folder, ending in "/".
    const std::string& DataFolder() const { return m_dataFolder; }

    // The session as the start-up sequence leaves it.
    Session& StartedSession();
    SessionData& Data() { return m_data; }

    // True when this run may change data files, keeping others from starting the desktop
    // program until the tool ends. When the desktop program runs, prints why not on standard
    // error and returns false: the command then ends with kExitFailed.
    bool AcquireWriteAccess();

    // "jukarra-cli: message" on standard error.
    static void Error(std::string_view message);
    // A progress callable for long work, drawing on `line` (see ProgressLine).
    static StepProgress ProgressOn(ProgressLine& line);

private:
    std::string m_dataFolder;
    std::vector<SettingOverride> m_overrides;
    CliFront m_front;
    SessionData m_data;
    std::unique_ptr<Session> m_session;
    std::unique_ptr<InstanceLock> m_lock;
};

}  // namespace jk
