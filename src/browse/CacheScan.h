#pragma once

// The scans and the song scan bound to the program's song cache: songs come through
// GetSongInfo (added to the cache), and the read-ahead learns which files the cache will answer
// so that it opens none of them.

#include <string>

#include "browse/FolderLister.h"
#include "browse/FolderScan.h"
#include "catalogue/GetSongInfo.h"
#include "listing/ListRow.h"

namespace jk {

// The stamps of the cache slots that files would find, for a read-ahead to skip the files the
// cache will answer. `ctx` must outlive it.
CacheStampLookup CacheStampsOf(SongLookupContext& ctx);

// A scan set-up over `ctx`'s cache. `ctx` must outlive the scans that use it.
ScanSetup CacheScanSetup(SongLookupContext& ctx, FolderLister& lister, int filterMode,
                         ScanProgressFn progress = {},
                         int readAheadThreads = kDefaultReadAheadThreads);

// One file into `rows`: the filter, the refused folders, GetSongInfo without NoCache, and the
// row. False when nothing was added.
bool ScanAddSong(std::string path, RowList& rows, int filterMode, SongLookupContext& ctx,
                 const PrefetchedBytes* prefetched = nullptr);

}  // namespace jk
