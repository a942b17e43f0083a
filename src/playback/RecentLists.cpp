#include "playback/RecentLists.h"

#include <algorithm>
#include <vector>

#include "util/PathHelpers.h"
#include "util/Text.h"

namespace jk {

void QueuePath(std::span<std::string> queue, std::string_view path) {
    if (queue.empty()) {
        return;
    }
    // A copy first: `path` may be one of the entries that are moved below.
    std::vector<std::string> fresh(queue.size());
    fresh[0] = std::string(Trim(path));
    const std::string& head = fresh[0];
    std::size_t filled = 1;
    for (std::string& old : queue) {
        if (filled == fresh.size()) {
            break;
        }
        if (old != head) {
            fresh[filled++] = std::move(old);
        }
    }
    std::move(fresh.begin(), fresh.end(), queue.begin());
}

RecentListMenu UpdateLastLists(std::span<const std::string> recentLists) {
    RecentListMenu menu;
    for (std::size_t i = 0; i < kRecentListsShown; ++i) {
        const std::string_view path = i < recentLists.size() ? recentLists[i] : std::string_view();
        menu.captions[i] = "&" + std::to_string(i + 1) + " " + std::string(BareName(path));
        menu.visible[i] = !path.empty();
        menu.separatorVisible = menu.separatorVisible || menu.visible[i];
    }
    return menu;
}

RecentListMenu LastQueue(std::span<std::string> recentLists, std::string_view path) {
    QueuePath(recentLists, path);
    return UpdateLastLists(recentLists);
}

void PathQueue(std::span<std::string> goList, std::string_view path) {
    QueuePath(goList, path);
}

std::string_view GoListKey(std::size_t entry) {
    static constexpr std::array<std::string_view, kPathQueueLength> kKeys = {
        "Path1", "Path2", "Path3", "Path4", "Path5", "Path6", "Path7", "Path8",
        "Path9", "Path0", "PathA", "PathB", "PathC", "PathD", "PathE"};
    return entry >= 1 && entry <= kKeys.size() ? kKeys[entry - 1] : std::string_view();
}

}  // namespace jk
