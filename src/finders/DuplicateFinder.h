#pragma once

// The Duplicate Finder: records gathered from the playlist, the current folder and the
// catalogue into one array, sorted on one key by the finder's own partition sort, and every run
// of neighbours with equal keys (ignoring case) listed as a group. Nothing is read from disk and
// nothing is hashed: duplicates are equal tag or file-list texts.

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "finders/CatalogueView.h"
#include "listing/ListRow.h"

namespace jk {

inline constexpr std::string_view kScanningPlaylist = "Scanning playlist...";
inline constexpr std::string_view kScanningFolder = "Scanning folder...";
inline constexpr std::string_view kScanningVirtualDrives = "Scanning virtual drives...";
inline constexpr std::string_view kProcessing = "Processing...";

// The sources, as bits of a record's Reserved.
inline constexpr std::int16_t kSourceFolder = 1;
inline constexpr std::int16_t kSourcePlaylist = 2;
inline constexpr std::int16_t kSourceVirtual = 4;

// A row of Combo1 "Determine duplicates based on": its text and the column number that tells
// the sort which key to take (10 alone compares by numeric value).
struct DupeCriterion {
    std::string_view Row;
    int SortColumn;
};
inline constexpr std::array<DupeCriterion, 5> kDupeCriteria = {{
    {"ID3 Title", 1},
    {"ID3 Artist", 2},
    {"ID3 Album", 3},
    {"File length", 10},
    {"Filename", 8},
}};
// Combo2 "Display duplicates pertaining to ": its rows, and the source bit each shows.
inline constexpr std::array<std::string_view, 3> kDupeShowRows = {"Current folder", "Playlist",
                                                                  "Virtual drives"};
std::int16_t ShowBit(int showIndex);

// One record of the working array: the twelve columns, the sources (Reserved) and the source it
// came from itself.
struct DupeRecord {
    ListRow Row;
    std::int16_t Reserved = 0;
    std::int16_t Source = 0;
};

// One listed row: the record, the group it stands in (counted from 0 over a run) and its own
// source, for the proposal of the copies to keep.
struct DupeListed {
    ListRow Row;
    std::size_t Group = 0;
    std::int16_t Source = 0;
};

// Told (done, total) as a loader or the grouping goes on; the window shows PBar and yields.
using DupeProgress = std::function<void(std::size_t done, std::size_t total)>;

// LoadPlaylistSource / LoadFolderSource: each row copied, Reserved 2 or 1.
void LoadRowsSource(const RowList& rows, std::int16_t source, std::vector<DupeRecord>& records,
                    const DupeProgress& progress = {});
// LoadVirtualSource: every record of every volume, Reserved 4.
void LoadVirtualSource(const CatalogueView& catalogue, std::vector<DupeRecord>& records,
                       const DupeProgress& progress = {});

// Less(a, b, numeric): Val(a) < Val(b), or a sorts before b ignoring case.
bool Less(std::string_view a, std::string_view b, bool numeric);

// The column a criterion (its Combo1 index) reads: the group key is this column, the sort key
// too, but for "Filename", which sorts by the bare name of the path.
Column DupeKeyColumn(int criterion);
std::string_view SortKeyOf(std::string_view column, int criterion);

// The sort key and the group key of a record under a criterion.
std::string_view SortKey(const ListRow& row, int criterion);
std::string_view GroupKey(const ListRow& row, int criterion);

// QuickSortDuplicates over `order` (indices into the records), from L to R inclusive, with the
// finder's partition (the middle element's key as pivot, the scans stopping at L and R): the
// permutation is the finder's own, since which neighbours pair up depends on it.
void QuickSortDuplicates(std::vector<std::uint32_t>& order, std::size_t L, std::size_t R,
                         const std::vector<DupeRecord>& records, int criterion);

// A listed member: its record and the group it stands in.
struct DupeMember {
    std::uint32_t Record = 0;
    std::size_t Group = 0;
};

// The grouping below over the records' key columns (DupeKeyColumn) and their sources alone:
// `reserved` is ORed over each group and written back, and the members listed are told in
// order, their rows left to be made where they are shown.
std::vector<DupeMember> GroupDuplicateMembers(const std::vector<std::string_view>& column,
                                              std::vector<std::int16_t>& reserved, int criterion,
                                              std::int16_t showBit, std::size_t firstGroup = 0);

// FindDuplicates' grouping: sorts all, then lists each run of two or more equal group keys whose
// sources (ORed over the run and written back to each member) include `showBit`. An empty key
// never groups, and the record right behind a group never starts one. `firstGroup` numbers the
// groups. A listed record's row is moved into its listed row, not copied: a million of them
// would otherwise be copied once more.
std::vector<DupeListed> GroupDuplicates(std::vector<DupeRecord>& records, int criterion,
                                        std::int16_t showBit, std::size_t firstGroup = 0,
                                        const DupeProgress& progress = {});

// The row a listed member shows: the Title trimmed, or the bare file name when it trims to
// empty; the other columns as the record holds them.
ListRow DupeRow(ListRow record);

}  // namespace jk
