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
    SongLookupContext* Lookup = nullptr;
    int FilterMode = 0;
    bool NoCache = false;  // VirtualNoCache: the songs read are not added to the song cache
    CatalogueProgress Progress;
    int ReadAheadThreads = kDefaultReadAheadThreads;
};

struct CatalogueScanResult {
    std::size_t Songs = 0;
    bool Aborted = false;   // the user stopped it
    bool CutShort = false;  // aborted, or the start folder could no longer be read at the end
};

// Walks `start` and appends each song, its Volume set to `volumeName`, to `scratch`.
CatalogueScanResult RecurseVirtual(const std::string& start, const std::string& volumeName,
                                   VirtualVolume& scratch, const CatalogueScanSetup& setup);

}  // namespace jk
