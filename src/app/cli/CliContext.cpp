#include "app/cli/CliContext.h"

#include "app/Session.h"
#include "app/cli/CommandOutput.h"
#include "catalogue/VirtualFolders.h"
#include "platform/ExecutableSearch.h"
#include "platform/InstanceLock.h"
#include "platform/UserFolders.h"

namespace jk {

void CliSessionData::LoadVirtualFolders(Session& session) {
    SortVolumesByPath(session.Virtual.Volumes);
    // One empty tree a volume, so that adding and removing volumes keeps them in step.
    session.VirtualTrees.assign(session.Virtual.Volumes.size(), {});
}

CliContext::CliContext(std::string dataFolder, std::vector<SettingOverride> overrides)
    : m_dataFolder(std::move(dataFolder)), m_overrides(std::move(overrides)) {}

CliContext::~CliContext() = default;

Session& CliContext::StartedSession() {
    if (!m_session) {
        m_session = std::make_unique<Session>();
        StartupEnvironment environment;
        environment.dataFolder = m_dataFolder;
        environment.firstPlayerPath = FindDefaultPlayer();
        environment.samples = {MusicFolder(), DownloadFolder()};
        environment.startPlayer = false;
        // The tool works on the lists it is given; the last run's playlist is the desktop's.
        environment.openLastList = false;
        environment.overrides = m_overrides;
        RunStartup(*m_session, SessionFront::MessagesOnly(m_front), m_data, environment);
    }
    return *m_session;
}

bool CliContext::AcquireWriteAccess() {
    if (!m_lock) {
        m_lock = std::make_unique<InstanceLock>(m_dataFolder);
    }
    switch (m_lock->TryAcquire()) {
        case InstanceLock::Result::Acquired:
            return true;
        case InstanceLock::Result::HeldElsewhere:
            PrintError("Jukarra is running on " + m_dataFolder +
                       "; close it before changing its data from here");
            return false;
        case InstanceLock::Result::Failed:
            PrintError(m_lock->Error());
            return false;
    }
    return false;
}

}  // namespace jk
