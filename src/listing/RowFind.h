#pragma once

// Finding a row by a piece of its text, as "Jump to..." does: the title, artist, album or file
// name holding the text, without regard to case.

#include <cstddef>
#include <optional>
#include <string_view>

#include "listing/ListRow.h"

namespace jk {

// True when the row's Title, Artist, Album or bare file name holds `text` (textual compare).
bool RowMatches(const ListRow& row, std::string_view text);

// The first matching row at or after `from`, going on from the top when the end is reached;
// nothing for an empty text or when no row matches.
std::optional<std::size_t> FindRow(const RowList& rows, std::string_view text, std::size_t from);

}  // namespace jk
