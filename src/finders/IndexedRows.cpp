#include "finders/IndexedRows.h"

#include <algorithm>
#include <utility>

namespace jk {

IndexedRows::IndexedRows(std::shared_ptr<const SearchIndex> index, const CatalogueView& catalogue,
                         const SearchRequest& request, std::string_view lookIn,
                         std::size_t firstRows, std::size_t songsPerStep)
    : m_index(std::move(index)),
      m_catalogue(catalogue),
      m_generation(catalogue.Generation()),
      m_search(*m_index, catalogue, request, lookIn),
      m_firstRows(firstRows),
      m_songsPerStep(songsPerStep) {}

bool IndexedRows::Next(RowList& rows, std::size_t most) {
    if (m_catalogue.Generation() != m_generation || End() == SearchEnd::Failed) {
        return false;
    }
    // While the search runs, only the first rows are made; the rest wait for it to end, so the
    // list knows its length before it grows long.
    const auto makeable = [this, most] {
        const std::size_t waiting = m_songs.size() - m_made;
        return m_search.Done()
                   ? std::min(most, waiting)
                   : std::min({most, waiting, m_firstRows - std::min(m_firstRows, m_made)});
    };
    if (!m_search.Done() && makeable() < most) {
        m_search.Next(m_songsPerStep, m_songs);
        if (m_search.Done()) {
            // Every row's place at once: a list of a million is not moved as it grows.
            rows.reserve(rows.size() + m_songs.size() - m_made);
        }
    }
    const std::size_t to = m_made + makeable();
    AppendCatalogueRows(m_catalogue, m_songs, m_made, to, rows);
    m_made = to;
    if (m_search.Done() && m_made == m_songs.size()) {
        m_songs = std::vector<SongRef>();
        return false;
    }
    return true;
}

}  // namespace jk
