#pragma once

// A search of the catalogue answered through the index: the songs SearchAllVirtualDrives or
// SearchVirtualFolder would list for the same request, in the same order, without walking the
// catalogue record by record.

#include <cstdint>
#include <string>
#include <vector>

#include "finders/CatalogueView.h"
#include "finders/SearchIndex.h"
#include "finders/SearchRequest.h"
#include "listing/ListRow.h"

namespace jk {

struct SongRef {
    std::uint32_t Volume = 0;
    std::uint32_t Song = 0;
    friend bool operator==(const SongRef&, const SongRef&) = default;
};

struct IndexedResult {
    std::vector<SongRef> Songs;
    // Done, or Failed where the search would have ended with ErrorBox.
    SearchEnd End = SearchEnd::Done;
};

// The catalogue scope: every volume (`lookIn` empty), or the virtual folder `lookIn` names.
// `index` must have been built from the catalogue as it stands (the same generation).
IndexedResult FindIndexed(const SearchIndex& index, const CatalogueView& catalogue,
                          const SearchRequest& request, std::string_view lookIn);

// The rows of songs found, from `from` up to `to` (exclusive).
void AppendCatalogueRows(const CatalogueView& catalogue, const std::vector<SongRef>& songs,
                         std::size_t from, std::size_t to, RowList& rows);

}  // namespace jk
