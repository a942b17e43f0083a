#pragma once

// Sorting a result list by a column header: the Size column by its number, the Date column by
// the date it shows, every other column by its text ignoring case. Rows that compare equal keep
// their order.

#include "listing/ListRow.h"

namespace jk {

// Sorts by `column` (0..11); descending when asked. Any other column leaves the rows alone.
void SortResultRows(RowList& rows, int column, bool descending);

}  // namespace jk
