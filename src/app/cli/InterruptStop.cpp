#include "app/cli/InterruptStop.h"

#include <csignal>

namespace jk {

namespace {

volatile std::sig_atomic_t g_interruptRequested = 0;

extern "C" void OnInterrupt(int /*signal*/) {
    g_interruptRequested = 1;
    std::signal(SIGINT, SIG_DFL);
}

}  // namespace

InterruptStop::InterruptStop() {
    g_interruptRequested = 0;
    if (std::signal(SIGINT, OnInterrupt) == SIG_IGN) {
        std::signal(SIGINT, SIG_IGN);
    }
}

InterruptStop::~InterruptStop() {
    if (std::signal(SIGINT, SIG_DFL) == SIG_IGN) {
        std::signal(SIGINT, SIG_IGN);
    }
}

bool InterruptStop::Requested() const {
    return g_interruptRequested != 0;
}

}  // namespace jk
