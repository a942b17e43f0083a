#pragma once

// The columns of a list pane as the settings keep them: their order in a ColumnOrder text
// (" 0x 1x 2x ..." lists the columns from left to right), and their widths in the
// WindowPosition keys, in twips, where a hidden column is stored as 1 and 0 means "never set".

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/Settings.h"

namespace jk {

// The columns from left to right as a ColumnOrder text gives them: each of 0..count-1 once. A
// token that names no column of the pane (a column of the Windows program's, such as 12 in the
// playlist's " 12x 0x ...") or repeats one is passed over; columns the text leaves out follow
// in their own order. An empty or unreadable text gives the natural order.
std::vector<int> ParseColumnOrder(std::string_view text, int count);

// The ColumnOrder text for columns shown left to right in `order`. The tokens of `previous`
// that name no column of the pane keep their places, so that a text written by the Windows
// program keeps what it said.
std::string FormatColumnOrder(std::span<const int> order, std::string_view previous, int count);

struct ColumnWidth {
    int pixels = 0;  // 0: the pane's default width for the column
    bool hidden = false;
};

// Column `column` (0-based) from the widths of a pane.
ColumnWidth ColumnWidthOf(const ColumnWidths& widths, int column);
// Stores column `column`: a hidden column, or one 1 pixel wide or less, is stored as 1.
void StoreColumnWidth(ColumnWidths& widths, int column, const ColumnWidth& width);

// A column's default width in average characters of the list's font.
int DefaultColumnChars(int column);

}  // namespace jk
