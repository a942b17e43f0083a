#pragma once

// The Search wizard on the real file system: one folder (with its sub-folders when asked), or
// every drive. Every file the folder listing lets through is read through the song cache, tested,
// and becomes a row when it passes; reading goes ahead of the walk on a few threads, while the
// tests and the rows stay on the search's own thread, in walk order.

#include <functional>
#include <string>

#include "browse/DriveRoot.h"
#include "browse/FolderScan.h"
#include "finders/SearchRequest.h"
#include "listing/ListRow.h"

namespace jk {

// The walk's set-up of a search of real files; songs are read through its Lookup unless
// ReadSong stands in (songs without files, for tests).
struct RealFileSetup : ScanSetup {
    std::function<SongInfo(const std::string& path)> ReadSong;
};

// RecurseSearchFolder: the files of `folder`, then, with Subfolders, each sub-folder in listing
// order (a sub-folder whose path holds "temporary internet" is not entered; the folder a search
// starts in always is). `setup` gives the lister, the filter and the song lookup. With
// `stayOnFilesystem` the walk keeps to the filesystem `folder` lies on.
SearchEnd RecurseSearchFolder(const std::string& folder, const SearchRequest& request,
                              const RealFileSetup& setup, RowList& rows, SearchFront& front,
                              bool stayOnFilesystem = false);

// SearchFolder: panel 5 says "Searching directories..." or "Searching directory...", then the
// walk of the folder.
SearchEnd SearchFolder(const std::string& folder, const SearchRequest& request,
                       const RealFileSetup& setup, RowList& rows, SearchFront& front);

// SearchAllRealDrives: panel 5 says "Searching My Computer..."; every drive whose type is not 0
// is searched in the order given, each on its own filesystem, the home shortcut left out. As
// for a folder, the drives' sub-folders are searched only with Subfolders.
SearchEnd SearchAllRealDrives(const DriveList& drives, const SearchRequest& request,
                              const RealFileSetup& setup, RowList& rows, SearchFront& front);

}  // namespace jk
