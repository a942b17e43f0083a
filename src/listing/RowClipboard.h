#pragma once

// The main window's clipboard of rows (ClipBoard): rows cut or copied from either pane, pasted
// into the playlist as rows or, from the files pane, into a folder as files.

#include <cstddef>

#include "listing/ListRow.h"

namespace jk {

struct RowClipboard {
    RowList Rows;      // the rows, unselected, in the order they stood
    bool Cut = false;  // true when they were cut: a paste of files moves them
};

// Copies the selected rows into the clipboard, replacing what it held. Returns the count.
std::size_t CopyRows(const RowList& rows, RowClipboard& clipboard);
// As CopyRows, then takes the rows out of the list.
std::size_t CutRows(RowList& rows, RowClipboard& clipboard);
// Inserts the clipboard's rows ahead of row `at` (at the end when past it); they come in
// selected and every other row unselected. Returns the count.
std::size_t PasteRows(RowList& rows, const RowClipboard& clipboard, std::size_t at);

}  // namespace jk
