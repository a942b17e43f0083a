#pragma once

// A front end as start-up and shutdown see it, by concern: the start-up steps, the shutdown
// steps, the panes, and the messages to the user. Each part comes from whichever object has it,
// so a front end implements only what it has: the desktop program all four, the command-line
// tool its messages, a test a recorder of every step.

#include <concepts>

#include "app/MessageFront.h"
#include "app/PaneFront.h"
#include "app/ShutdownFront.h"
#include "app/StartupFront.h"

namespace jk {

// One object that has all four parts (the desktop program's front end, a test's recorder).
template <typename Front>
concept WholeFront =
    std::derived_from<Front, StartupFront> && std::derived_from<Front, ShutdownFront> &&
    std::derived_from<Front, PaneFront> && std::derived_from<Front, MessageFront>;

class SessionFront {
public:
    SessionFront(StartupFront& startup, ShutdownFront& shutdown, PaneFront& panes,
                 MessageFront& messages)
        : Startup(startup), Shutdown(shutdown), Panes(panes), Messages(messages) {}

    // A whole front end stands for all four parts, so that it can be handed as it is.
    template <WholeFront Front>
    SessionFront(Front& front)  // NOLINT(google-explicit-constructor)
        : SessionFront(front, front, front, front) {}

    // A front end without windows: nothing but its messages reaches the user.
    static SessionFront MessagesOnly(MessageFront& messages);

    StartupFront& Startup;
    ShutdownFront& Shutdown;
    PaneFront& Panes;
    MessageFront& Messages;
};

}  // namespace jk
