#pragma once

// The lists the play and queue commands make from a pane's rows, before RunPlaylist takes
// them: all rows, the selected rows, all rows from the selection on and round again ("Play
// from here"), or all rows shuffled while the pane keeps its order (the Jukarra commands).

#include <string>
#include <vector>

#include "listing/ListRow.h"
#include "playback/ShuffleRandom.h"

namespace jk {

// Every row's full path, in row order (PlayListNow, PlayFolderNow, the Queue-all commands).
std::vector<std::string> AllRowPaths(const RowList& rows);

// The selected rows' paths, in row order (SelectPlayNow, the Queue-selected commands).
std::vector<std::string> SelectedRowPaths(const RowList& rows);

// WrapPlay: from the first selected row (the first row when none is selected) to the last,
// then from the first up to the row before the start: the list is rotated, not cut.
std::vector<std::string> WrappedRowPaths(const RowList& rows);

// JPlayList and JPlayFolder: every row, shuffled by the enhanced or the plain shuffle; the
// rows themselves stay in their order.
std::vector<std::string> ShuffledRowPaths(const RowList& rows, bool enhanced,
                                          ShuffleRandom& random);

}  // namespace jk
