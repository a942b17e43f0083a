#pragma once

// The scans a user starts: list one folder into the files pane, recurse one folder, recurse
// every drive. Each adds rows in walk order, reads ahead on a few threads, and stops when the
// progress callable says so; the rows added so far stay.

#include <cstddef>
#include <string>
#include <string_view>

#include "browse/DriveRoot.h"
#include "browse/FolderLister.h"
#include "browse/FolderWalk.h"
#include "browse/ScanAddSong.h"
#include "catalogue/GetSongInfo.h"
#include "listing/ListRow.h"
#include "listing/ReadAhead.h"

namespace jk {

// The status bar's text while a recursion runs.
inline constexpr std::string_view kRecursingStatus = "Recursing directories...";

struct ScanSetup {
    FolderLister* Lister = nullptr;
    int FilterMode = kFilterMp3;
    // Songs are looked up through it on the scan's thread, which must be the lookup's own; it
    // tells the read-ahead which files the cache will answer, so that those are not read.
    SongLookup* Lookup = nullptr;
    ScanProgressFn Progress;  // optional; false stops the scan
    int ReadAheadThreads = kDefaultReadAheadThreads;
};

struct ScanResult {
    std::size_t Added = 0;  // rows appended
    bool Aborted = false;
};

// Clears `rows` and fills them with the songs of the folder `path` (which gets its trailing
// "/"). The kernel's own trees (/proc and the like) list no songs.
ScanResult GetFolderNow(std::string& path, RowList& rows, const ScanSetup& setup);

// Appends the songs of `path` and every folder below it. With `stayOnFilesystem` (the walk of
// a drive) the walk keeps to the filesystem `path` lies on.
ScanResult RecurseDirReal(const std::string& path, RowList& rows, const ScanSetup& setup,
                          bool stayOnFilesystem = false);

// Appends the songs of every drive whose type is not 0, drive by drive in the order given;
// the home shortcut is left out, and each walk keeps to its drive's filesystem.
ScanResult RecurseTotal(const DriveList& drives, RowList& rows, const ScanSetup& setup);

}  // namespace jk
