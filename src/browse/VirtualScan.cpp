#include "browse/VirtualScan.h"

#include <utility>

#include "browse/FolderWalk.h"
#include "catalogue/SongCache.h"
#include "listing/WalkRules.h"
#include "util/PathHelpers.h"

namespace jk {

CatalogueScanResult RecurseVirtual(const std::string& start, VirtualVolume& scratch,
                                   const CatalogueScanSetup& setup) {
    CatalogueScanResult result;
    std::string caption;
    std::string captionFolder;
    bool stopped = false;
    SongConsumer consume = [&](std::string& path, const PrefetchedBytes* prefetched) {
        if (!PassesFilter(path, setup.FilterMode) || IsInsideTrashFolder(path)) {
            return;
        }
        const std::string_view folder = ParentPath(path);
        if (folder != captionFolder) {
            captionFolder = std::string(folder);
            caption = "Scanning " + captionFolder;
        }
        const SongInfo& song = LendSongInfo(path, *setup.Lookup, prefetched);
        if (IsNonExistant(song)) {
            return;
        }
        scratch.Append(song);
        ++result.Songs;
    };
    CacheStampLookup stamps = [&setup](std::string_view path) {
        return setup.Lookup->StampAhead(path);
    };
    ReadAheadScanner scanner(setup.FilterMode, std::move(consume), std::move(stamps),
                             setup.ReadAheadThreads);
    const ScanProgressFn progress = [&](const ScanProgress& step) {
        if (setup.Progress && !setup.Progress(caption, step.Value, step.Maximum)) {
            stopped = true;
            return false;
        }
        return true;
    };
    FolderWalk walk(*setup.Lister, scanner, progress, WalkOptions{setup.FilterMode, false});
    walk.Walk(start, false);
    result.Aborted = walk.Cancelled() || stopped;
    result.CutShort = result.Aborted || !setup.Lister->IsFolder(start);
    return result;
}

}  // namespace jk
