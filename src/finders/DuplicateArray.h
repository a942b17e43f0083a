#pragma once

// The Duplicate Finder's working array held compactly: the rows of a list are copied as they
// stand, the catalogue's songs are read where the catalogue holds them. A million catalogued
// songs are gathered without a copy, and a row is made only for a record that is listed, when it
// is shown or printed.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <utility>
#include <vector>

#include "finders/CatalogueView.h"
#include "finders/DuplicateFinder.h"
#include "listing/ListRow.h"

namespace jk {

class DupeArray {
public:
    // LoadPlaylistSource / LoadFolderSource: each row copied, Reserved 2 or 1.
    void AddRows(const RowList& rows, std::int16_t source, const DupeProgress& progress = {});
    // LoadVirtualSource: every song of every volume, Reserved 4. The catalogue must outlive
    // the array and stay unchanged while the array is read.
    void AddCatalogue(const CatalogueView& catalogue, const DupeProgress& progress = {});

    std::size_t Size() const { return m_reserved.size(); }
    // Each record's Reserved: its sources, the group's once grouped.
    const std::vector<std::int16_t>& Reserved() const { return m_reserved; }
    // The source a record came from itself.
    std::int16_t Source(std::size_t record) const;
    std::string_view Field(std::size_t record, Column column) const;
    // One column of every record, in order.
    std::vector<std::string_view> ColumnOf(Column column) const;
    // A record's row as the loaders copy it (unselected).
    ListRow Row(std::size_t record) const;
    // Two columns of each record marked in `listed` (one flag a record), in the array's
    // order: a song is looked at once, where the songs lie together.
    void VisitListed(const std::vector<bool>& listed, Column first, Column second,
                     const std::function<void(std::string_view, std::string_view)>& visit) const;

    // GroupDuplicates over the array: the members listed, in order.
    std::vector<DupeMember> Group(int criterion, std::int16_t showBit, std::size_t firstGroup = 0);
    // A member's listed row (DupeRow of its record), its group and its source.
    DupeListed Listed(const DupeMember& member) const;

private:
    // A run of records from one source: the rows of a list, or the catalogue's songs with
    // where each volume's songs begin among them.
    struct Part {
        std::size_t Begin = 0;
        std::int16_t Source = 0;
        RowList Rows;
        const CatalogueView* Catalogue = nullptr;
        std::vector<std::size_t> Starts;
    };
    const Part& PartOf(std::size_t record) const;
    // The volume of a catalogue part's song (counted over the part) and its number there.
    static std::pair<std::size_t, std::size_t> SongOf(const Part& part, std::size_t song);

    std::vector<Part> m_parts;
    std::vector<std::int16_t> m_reserved;
};

}  // namespace jk
