#pragma once

// Copying rows of the files pane to the end of the playlist ("Add this folder", "Add selected").
// Duplicates are allowed: a song already on the playlist is added again.

#include <cstddef>

#include "listing/ListRow.h"

namespace jk {

// The playlist row made from a files pane row: Title with trailing blanks cut, or the Filename
// when the Title is blank; Artist, Album, Filename, Comment and Volume with trailing blanks cut;
// the other columns as they stand.
ListRow PlaylistRowOf(const ListRow& source);

// Appends every row of `files` to `playlist`; returns the count added.
std::size_t GetDir(const RowList& files, RowList& playlist);
// Appends the selected rows of `files` to `playlist`; returns the count added.
std::size_t AddToList(const RowList& files, RowList& playlist);

}  // namespace jk
