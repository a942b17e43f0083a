#include "browse/FolderScan.h"

#include <utility>
#include <vector>

#include "browse/FolderEntries.h"
#include "listing/WalkRules.h"
#include "util/PathHelpers.h"

namespace jk {
namespace {

ReadAheadScanner MakeScanner(RowList& rows, const ScanSetup& setup, std::size_t& added) {
    SongLookup& lookup = *setup.Lookup;
    SongConsumer consume = [&rows, &setup, &added, &lookup](std::string& path,
                                                            const PrefetchedBytes* prefetched) {
        if (ScanAddSong(path, rows, setup.FilterMode, lookup, prefetched)) {
            ++added;
        }
    };
    CacheStampLookup stamps = [&lookup](std::string_view path) { return lookup.StampAhead(path); };
    return ReadAheadScanner(setup.FilterMode, std::move(consume), std::move(stamps),
                            setup.ReadAheadThreads);
}

}  // namespace

ScanResult GetFolderNow(std::string& path, RowList& rows, const ScanSetup& setup) {
    rows.clear();
    ScanResult result;
    std::vector<std::string> dirs;
    std::vector<std::string> files;
    GetFolderEntries(path, dirs, files, setup.FilterMode, *setup.Lister);
    if (files.empty() || IsSystemFolder(path)) {
        return result;
    }
    ReadAheadScanner scanner = MakeScanner(rows, setup, result.Added);
    const std::string status = ScanStatusText(LastFolder(path), files.size());
    for (const std::string& name : files) {
        scanner.Announce(path + name);
    }
    for (std::size_t i = 1; i <= files.size(); ++i) {
        scanner.ScanNext();
        if (setup.Progress &&
            !setup.Progress(
                ScanProgress{status, ScanProgressValue(i, files.size()), kScanProgressMaximum})) {
            result.Aborted = i < files.size();
            break;
        }
    }
    scanner.DropAnnounced();
    return result;
}

ScanResult RecurseDirReal(const std::string& path, RowList& rows, const ScanSetup& setup,
                          bool stayOnFilesystem) {
    ScanResult result;
    ReadAheadScanner scanner = MakeScanner(rows, setup, result.Added);
    FolderWalk walk(*setup.Lister, scanner, setup.Progress, WalkOptions{setup.FilterMode, false});
    walk.Walk(path, stayOnFilesystem);
    result.Aborted = walk.Cancelled();
    return result;
}

ScanResult RecurseTotal(const DriveList& drives, RowList& rows, const ScanSetup& setup) {
    ScanResult result;
    ReadAheadScanner scanner = MakeScanner(rows, setup, result.Added);
    FolderWalk walk(*setup.Lister, scanner, setup.Progress, WalkOptions{setup.FilterMode, true});
    for (const DriveRoot& drive : drives) {
        if (walk.Cancelled()) {
            break;
        }
        if (drive.Type == kDriveNotReady || drive.HomeShortcut) {
            continue;
        }
        walk.Walk(drive.Root, true);
    }
    result.Aborted = walk.Cancelled();
    return result;
}

}  // namespace jk
