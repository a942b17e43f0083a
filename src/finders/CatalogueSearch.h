#pragma once

// The Search wizard in the catalogue: every volume (SearchAllVirtualDrives), or one virtual
// folder (SearchVirtualFolder), each record tested in memory (SearchVirtualRecord); no file is
// touched.

#include <cstdint>
#include <string_view>

#include "finders/CatalogueView.h"
#include "finders/SearchRequest.h"
#include "listing/ListRow.h"

namespace jk {

// The event loop runs once per this many records of a volume, and after each volume.
inline constexpr std::size_t kVirtualYieldRecords = 500;

// SearchVirtualRecord: the text test over the nine fields, then the size and date test with
// Val(Size) and Date; the row when both pass. Failed ends the search.
Verdict SearchVirtualRecord(const SongFieldViews& fields, const SearchRequest& request);

struct CatalogueSearchEnd {
    SearchEnd End = SearchEnd::Done;
    // The catalogue changed while the search let the window run: the rows found stay, the rest
    // of the catalogue was not searched.
    bool CatalogueChanged = false;
};

// SearchAllVirtualDrives: lblStatus "Scanning all Virtual Drives...", then every record of every
// volume in order; PBar shows the records seen of all. An abort leaves the volume it is seen in.
CatalogueSearchEnd SearchAllVirtualDrives(const CatalogueView& catalogue,
                                          const SearchRequest& request, RowList& rows,
                                          SearchFront& front);

// SearchVirtualFolder: `lookIn` (Combo2's text) names the volume by its first component,
// found ignoring case (the first of that name); each of its records whose label and path less
// its drive part begins with `lookIn` exactly (so "vol/pop" takes in "vol/popular") is tested.
// Sub-folders are always included. An unknown volume searches nothing.
CatalogueSearchEnd SearchVirtualFolder(const CatalogueView& catalogue, std::string_view lookIn,
                                       const SearchRequest& request, RowList& rows,
                                       SearchFront& front);

// The volume a virtual Look-in names (the first whose name equals its first component ignoring
// case), or the volume count when none does.
std::size_t VolumeOfLookIn(const CatalogueView& catalogue, std::string_view lookIn);
// True when the song's virtual path (the label of `lookIn` and the song's path less its drive
// part) begins with `lookIn`.
bool InVirtualFolder(std::string_view lookIn, std::string_view path);

}  // namespace jk
