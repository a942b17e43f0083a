#pragma once

// RecurseVirtual: the walk that catalogues a disc. It walks as every walk does (depth first,
// no links to folders followed, "temporary internet" folders not entered) and takes every file
// the filter lets through, except those in trash folders; the folder listing's "recycle" rule
// does not apply. Each song comes through the song cache, which does not keep it when asked
// not to; an unreadable file is left out.

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "browse/FolderLister.h"
#include "catalogue/GetSongInfo.h"
#include "catalogue/VirtualVolume.h"
#include "listing/ReadAhead.h"

namespace jk {

// Told the caption ("Scanning " + folder) and the bar of the folder's files; false stops.
using CatalogueProgress = std::function<bool(std::string_view caption, int value, int maximum)>;

struct CatalogueScanSetup {
    FolderLister* Lister = nullptr;
    SongLookup* Lookup = nullptr;  // its noCache is VirtualNoCache's
    int FilterMode = 0;
    CatalogueProgress Progress;
    int ReadAheadThreads = kDefaultReadAheadThreads;
};

struct CatalogueScanResult {
    std::size_t Songs = 0;
    bool Aborted = false;   // the user stopped it
    bool CutShort = false;  // aborted, or the start folder could no longer be read at the end
};

// Walks `start` and appends each song to `scratch` (the volume holds its name once, not each
// song).
CatalogueScanResult RecurseVirtual(const std::string& start, VirtualVolume& scratch,
                                   const CatalogueScanSetup& setup);

}  // namespace jk
