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

// A search through the index a range of songs at a time, in the order of the whole search: the
// first songs found can be shown before the rest are looked at. The catalogue scope is every
// volume (`lookIn` empty), or the virtual folder `lookIn` names. `index` must have been built
// from the catalogue as it stands (the same generation); both must outlive the search and stay
// unchanged while it runs.
class IndexedSearch {
public:
    IndexedSearch(const SearchIndex& index, const CatalogueView& catalogue,
                  const SearchRequest& request, std::string_view lookIn);

    // Failed where the search ends with ErrorBox (known at once, nothing is then found).
    SearchEnd End() const { return m_end; }
    bool Done() const { return m_next >= m_stop; }
    // Looks at the next `songs` songs of the scope (whole blocks of 64, at least one) and
    // appends those found.
    void Next(std::size_t songs, std::vector<SongRef>& found);
    // The songs of the scope.
    std::size_t SongsInScope() const { return m_stop - m_start; }

private:
    const SearchIndex& m_index;
    const CatalogueView& m_catalogue;
    SearchRequest m_request;
    std::string m_folder;  // "" for every volume
    SearchIndex::Query m_query;
    SearchEnd m_end = SearchEnd::Done;
    // Every song is tested record by record (a binary query of bytes that are no characters).
    bool m_everySong = false;
    // The songs the index finds are tested record by record too.
    bool m_verify = false;
    std::size_t m_start = 0;  // songs numbered as the index numbers them
    std::size_t m_next = 0;
    std::size_t m_stop = 0;
    std::size_t m_volume = 0;  // the volume of song m_next
};

// The whole search at once.
IndexedResult FindIndexed(const SearchIndex& index, const CatalogueView& catalogue,
                          const SearchRequest& request, std::string_view lookIn);

// The rows of songs found, from `from` up to `to` (exclusive).
void AppendCatalogueRows(const CatalogueView& catalogue, const std::vector<SongRef>& songs,
                         std::size_t from, std::size_t to, RowList& rows);

}  // namespace jk
