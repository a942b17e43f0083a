#include "app/cli/VdriveSupport.h"

#include <csignal>
#include <cstdlib>

#include "app/Session.h"
#include "app/cli/CliContext.h"
#include "app/cli/CliRegistry.h"
#include "app/cli/CommandOutput.h"
#include "platform/DiscMounts.h"
#include "util/Text.h"

namespace jk {

void CliVirtualFront::SetStatus(std::string_view text) {
    if (!text.empty()) {
        m_line.Show(text);
    }
}

bool CliVirtualFront::Progress(std::string_view caption, int /*value*/, int /*maximum*/) {
    m_line.Show(caption);
    return true;
}

void CliVirtualFront::ShowMessage(const UserMessage& message) {
    m_line.Finish();
    m_told = true;
    PrintError(message.text);
}

Session& VirtualSession(CliContext& context) {
    Session& session = context.StartedSession();
    session.DiscLister = &ListMountedDiscs;
    session.Ejector = &EjectDisc;
    if (const char* step = std::getenv("JUKARRA_TEST_KILL_AT_SAVE_STEP")) {
        const int killAt = static_cast<int>(Val(step));
        session.SaveHook = [killAt](int at, std::string_view /*what*/) {
            if (at == killAt) {
                std::raise(SIGKILL);
            }
        };
    }
    return session;
}

bool MayChangeCatalogue(CliContext& context, Session& session) {
    if (!context.AcquireWriteAccess()) {
        return false;
    }
    if (!session.Virtual.LoadedWhole) {
        PrintError(
            "master.dat did not load whole; nothing was changed (see \"vdrive "
            "restore\")");
        return false;
    }
    return true;
}

int SaveCatalogueAsShutdown(Session& session, CliVirtualFront& front) {
    if (session.VirtualDirty == 0) {
        return kExitOk;
    }
    session.Virtual.BackupRequested = true;
    const IoResult saved = SaveVirtualDatabase(session);
    if (!saved.ok) {
        front.ShowMessage(session.Settings.SafeCatalogue != 0
                              ? CatalogueNotSavedMessage()
                              : UserMessage{"cannot save the virtual drives: " + saved.error, "",
                                            MessageIcon::Warning});
        return kExitFailed;
    }
    session.VirtualDirty = 0;
    return kExitOk;
}

}  // namespace jk
