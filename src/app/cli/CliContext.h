#pragma once

// What every command gets: the data folder, the session after the shared start-up sequence
// (run on first use, with the --set overrides applied), and the right to write data files.

#include <memory>
#include <string>
#include <vector>

#include "app/SessionData.h"
#include "app/Startup.h"
#include "app/cli/CliFront.h"

namespace jk {

class InstanceLock;
struct Session;

// The start-up steps as the tool takes them: the catalogue's songs are sorted as the desktop
// program sorts them, but no folder tree is made, since no command shows one (a large
// catalogue's tree takes longer to make than its songs to load).
class CliSessionData final : public SessionData {
public:
    void LoadVirtualFolders(Session& session) override;
};

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

private:
    std::string m_dataFolder;
    std::vector<SettingOverride> m_overrides;
    CliFront m_front;
    CliSessionData m_data;
    std::unique_ptr<Session> m_session;
    std::unique_ptr<InstanceLock> m_lock;
};

}  // namespace jk
