#pragma once

// The shutdown steps a front end with windows takes between the writes: what the windows put
// into the settings, and what they let go of. A front end without windows keeps every empty
// default.

#include "app/Settings.h"

namespace jk {

class ShutdownFront {
public:
    virtual ~ShutdownFront() = default;

    // Top and left edge into the settings, unless the window is minimized.
    virtual void StoreWindowPosition(jk::Settings& /*settings*/) {}
    virtual void StopTimers() {}
    virtual void RemoveTrayIcons() {}
    // Window state, normal size and column widths into the settings, just before they are saved.
    virtual void StoreWindowLayout(jk::Settings& /*settings*/) {}
};

}  // namespace jk
