#include "app/SessionFront.h"

namespace jk {

SessionFront SessionFront::MessagesOnly(MessageFront& messages) {
    // The empty defaults: nothing to show, nothing to store.
    static StartupFront noStartup;
    static ShutdownFront noShutdown;
    static PaneFront noPanes;
    return SessionFront(noStartup, noShutdown, noPanes, messages);
}

}  // namespace jk
