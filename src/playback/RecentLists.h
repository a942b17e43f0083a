#pragma once

// The recently used lists of the File menu and the recently visited folders of the Go menu:
// queues of fifteen paths, the newest first, each path at most once (compared as it stands).

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "playback/PlaylistState.h"

namespace jk {

inline constexpr std::size_t kRecentListsShown = 8;

// Puts the trimmed path at the head of the queue; the old entries follow in order, less the
// one equal to it, until the queue is full. The queue is its entries, newest first (a list kept
// from index 1 passes the span from there).
void QueuePath(std::span<std::string> queue, std::string_view path);

// The File menu's recent-list items as UpdateLastLists sets them.
struct RecentListMenu {
    std::array<std::string, kRecentListsShown> captions;  // "&1 name.m3u" ...
    std::array<bool, kRecentListsShown> visible{};        // items without a path are hidden
    bool separatorVisible = false;                        // shown when any item is
};

RecentListMenu UpdateLastLists(std::span<const std::string> recentLists);

// Moves a list to the front of RecentLists and gives the menu's new items.
RecentListMenu LastQueue(std::span<std::string> recentLists, std::string_view path);

// Records a visited folder in the Go list (fifteen entries, newest first).
void PathQueue(std::span<std::string> goList, std::string_view path);

// The settings key of Go list entry 1 to 15: "Path1".."Path9", "Path0", "PathA".."PathE";
// empty outside that range.
std::string_view GoListKey(std::size_t entry);

}  // namespace jk
