#pragma once

// The MPRIS side of the session bus, over QtDBus: every call blocks for at most `timeoutMs`.
// Without a session bus every call fails at once.

#include <memory>

#include "playback/MprisBus.h"

namespace jk {

std::unique_ptr<MprisBus> OpenSessionMprisBus(int timeoutMs);

}  // namespace jk
