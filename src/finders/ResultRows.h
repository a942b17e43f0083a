#pragma once

// The rows of a result list (ResultsView) as each source fills them, and the statistics line
// under it (ResultsStats).

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "catalogue/GetSongInfo.h"
#include "catalogue/PackedSong.h"
#include "finders/SearchFields.h"
#include "listing/ListRow.h"

namespace jk {

// A hit on a real file: every member trimmed, the Title falling back to the bare file name of
// the Path when it trims to empty, the Bitrate trimmed and then cut or padded to 4 characters.
ListRow RealHitRow(const SongInfo& song);
// A hit in the catalogue: members as stored, the Title falling back as above.
ListRow CatalogueHitRow(const SongFieldViews& fields);

// A search field of a catalogue record's fields.
std::string_view SearchFieldOf(const SongFieldViews& fields, SearchField field);

// The playlist row a result row gives ("Add selected", "Add all results"): the twelve columns
// as they stand, the Title falling back to the bare file name of the Filename.
ListRow PlaylistRowOfResult(const ListRow& result);

// ResultsStats: " No results.", " 1 song - TIME, SIZE", or " N songs - TIME, SIZE", with the
// playing time summed from the Time texts (every digit before the last two as minutes with
// `exactTimes`, else the first two) and the size from the Size texts, in MB up to 1024 MB and
// in GB above.
std::string ResultsStats(const RowList& rows, bool exactTimes);

// The sums behind ResultsStats, gathered a row at a time (as a long list is made in slices).
class ResultsTally {
public:
    explicit ResultsTally(bool exactTimes) : m_exactTimes(exactTimes) {}
    void Add(const ListRow& row);
    // A row by its Time and Size columns alone, for rows not made yet.
    void Add(std::string_view time, std::string_view size);
    std::size_t Rows() const { return m_rows; }
    bool ExactTimes() const { return m_exactTimes; }
    // ResultsStats of the rows added, in the order added.
    std::string Text() const;

private:
    bool m_exactTimes = false;
    std::int64_t m_seconds = 0;
    double m_bytes = 0;
    std::size_t m_rows = 0;
};

}  // namespace jk
