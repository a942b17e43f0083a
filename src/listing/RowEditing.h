#pragma once

// The editing commands of a list pane on its rows: sliding the selected rows, reversing,
// cropping, and the selection itself. The selected flags travel with their rows, so a view
// shows the same songs selected after a move.

#include <cstddef>

#include "listing/ListRow.h"

namespace jk {

// Each selected row changes places with the unselected row above it (below it); a selected
// block already at the top (bottom) stays. True when a row moved.
bool SlideUp(RowList& rows);
bool SlideDown(RowList& rows);
// The selected rows, in their order, to the top (bottom). True when a row moved.
bool SlideTop(RowList& rows);
bool SlideBottom(RowList& rows);

// The selected rows take each other's places in reverse order; the others stay. True when a
// row moved.
bool ReverseSelection(RowList& rows);
// The whole list in reverse order. True when a row moved.
bool ReverseAll(RowList& rows);

// The selected rows, in their order, to stand ahead of row `at` of the list as it is now (at
// the end when past it), as a drag within the pane drops them. Returns the place of the first
// of them afterwards.
std::size_t MoveSelectedTo(RowList& rows, std::size_t at);

// Keeps only the selected rows; nothing happens when none is selected. Returns the count
// removed.
std::size_t CropList(RowList& rows);
// Drops the selected rows; returns the count removed.
std::size_t RemoveSelectedRows(RowList& rows);

void SelectAllRows(RowList& rows);
void SelectNoRows(RowList& rows);
void InvertSelection(RowList& rows);
std::size_t SelectedCount(const RowList& rows);
// The first selected row, or rows.size() when none is.
std::size_t FirstSelected(const RowList& rows);

}  // namespace jk
