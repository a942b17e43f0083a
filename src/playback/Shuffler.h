#pragma once

// Shuffling the rows of a list pane: a plain Fisher-Yates shuffle, and the enhanced shuffle that
// tries to keep two songs by the same artist from standing next to each other, the first and
// the last place counted as neighbours.
//
// The algorithms work on records (SongInfo, or the rows themselves, which carry the same
// twelve texts) and move whole records, so the fields of a row stay together.

#include <cstdint>
#include <vector>

#include "listing/ListRow.h"
#include "metadata/SongInfo.h"
#include "playback/ShuffleRandom.h"

namespace jk {

// The setting QuickShuffle: the enhanced shuffle unless its value is exactly 1.
bool UseEnhancedShuffle(std::int16_t quickShuffle);

// For i from 1 to n, record i changes places with a record picked from i to n (i included).
void QuickShuffleRows(std::vector<SongInfo>& rows, ShuffleRandom& random);
void QuickShuffleRows(RowList& rows, ShuffleRandom& random);

// The quick shuffle first, then each record in turn goes to a free place near a random one
// whose neighbours' artists differ from its own (exact, case-sensitive comparison; a free
// place's artist is empty). When no free place is without conflict it takes the free place
// found first. A place is free while its record's Filename is empty.
void EnhancedShuffleRows(std::vector<SongInfo>& rows, ShuffleRandom& random);
void EnhancedShuffleRows(RowList& rows, ShuffleRandom& random);

// A row as the shuffler's record: the twelve columns in their fields; LastUsed, Reserved and
// Track stay empty.
SongInfo SongFromRow(const ListRow& row);
// A record back into a row: its text and its eleven sub-items; the row's selection stays.
void WriteSongToRow(const SongInfo& song, ListRow& row);

// Reads all rows of `list` into `rows` and shuffles them. An empty list leaves `rows` as it is.
void ShuffleAllRows(const RowList& list, std::vector<SongInfo>& rows, bool enhanced,
                    ShuffleRandom& random);
// The same for the selected rows only, in row order.
void ShuffleSelectedRows(const RowList& list, std::vector<SongInfo>& rows, bool enhanced,
                         ShuffleRandom& random);
// Record i into row i.
void WriteBackAllRows(RowList& list, const std::vector<SongInfo>& rows);
// Record k into the k-th selected row; unselected rows are not touched, so the selected rows
// exchange places among the positions they held. The selection marks positions, not songs.
void WriteBackSelectedRows(RowList& list, const std::vector<SongInfo>& rows);

// A pane's shuffle command in one step, moving the rows themselves: the same result as reading,
// shuffling and writing back, without copying every text twice.
void ShuffleListRows(RowList& list, bool selectedOnly, bool enhanced, ShuffleRandom& random);

}  // namespace jk
