#pragma once

// Sorting a list pane by one of its columns, as a click on the column's header does. Texts are
// compared without regard to case, and runs of digits by their value, so that sizes, years,
// times and track numbers fall in the order a reader expects ("9" before "10"). The sort is
// stable: rows that compare equal keep their order.

#include <string_view>

#include "listing/ListRow.h"

namespace jk {

// <0, 0, >0 as `a` sorts before, with or after `b`.
int CompareNatural(std::string_view a, std::string_view b);

// Sorts the rows by `column` (0..11), descending when asked. A column outside the range
// leaves the rows as they are.
void SortRows(RowList& rows, int column, bool descending);

}  // namespace jk
