#pragma once

// What the main window keeps about the open playlist: its rows (the model the playlist pane
// shows, there is no second copy), its name, whether it changed since it was opened or saved,
// and the recently used lists.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "listing/ListRow.h"
#include "util/UserMessage.h"

namespace jk {

// History queues of paths hold fifteen entries, the newest first; "" is an unused entry.
inline constexpr std::size_t kPathQueueLength = 15;
using PathHistory = std::array<std::string, kPathQueueLength>;

struct PlaylistState {
    RowList Rows;
    // The bare file name shown in the title; empty for an untitled list.
    std::string CurrentList;
    // True when nothing changed since the list was opened, saved or started anew.
    bool PlaylistSaved = true;
    // Full paths of recent lists; entry 1 (index 0) is the list open now and the one a plain
    // save writes to.
    PathHistory RecentLists;
};

// The settings that decide how lists are read and written; each holds the value of its key.
struct ListSettings {
    std::int16_t HideGhosts = 0;     // 1: lines that point nowhere give no row
    std::int16_t RelativePaths = 0;  // 1: lists are saved with paths relative to the list
    std::string PlayerExe;           // the player's path ("winplay" asks for short paths)
};

}  // namespace jk
