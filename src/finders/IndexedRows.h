#pragma once

// The rows of a search of the catalogue through the index, made as a result list asks for them:
// the first screenful is found and made before the rest of the catalogue is looked at; then the
// rest is searched a range of songs at a time, and then made. Each step takes a short time, so a
// window can take them between turns of its event loop. The rows and their order are those of
// the whole search.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "finders/CatalogueView.h"
#include "finders/IndexedSearch.h"
#include "finders/SearchIndex.h"
#include "finders/SearchRequest.h"
#include "listing/ListRow.h"

namespace jk {

class IndexedRows {
public:
    // Songs searched in one step: a fraction of a millisecond's work.
    static constexpr std::size_t kSongsPerStep = 16384;

    // `index` must have been built from `catalogue` as it stands; the catalogue must outlive
    // this. `firstRows` rows are made as soon as they are found, the others once all are found.
    IndexedRows(std::shared_ptr<const SearchIndex> index, const CatalogueView& catalogue,
                const SearchRequest& request, std::string_view lookIn, std::size_t firstRows,
                std::size_t songsPerStep = kSongsPerStep);

    // Failed where the search ends with ErrorBox; nothing is then made.
    SearchEnd End() const { return m_search.End(); }
    // One step: searches the next range of songs, or appends up to `most` rows. False once every
    // row is made, or when the catalogue changed since the search began (the rows stop there).
    bool Next(RowList& rows, std::size_t most);

private:
    std::shared_ptr<const SearchIndex> m_index;
    const CatalogueView& m_catalogue;
    std::uint64_t m_generation = 0;
    IndexedSearch m_search;
    std::size_t m_firstRows = 0;
    std::size_t m_songsPerStep = kSongsPerStep;
    std::vector<SongRef> m_songs;  // found so far
    std::size_t m_made = 0;        // of m_songs
};

}  // namespace jk
