#pragma once

// Sorting song records by one field, ascending: the recursive quicksort with the middle element
// as pivot, comparing the selected field's bytes. It is not stable; the order of equal keys is
// the one this quicksort leaves, which later steps (duplicate removal) depend on.

#include <span>
#include <vector>

#include "catalogue/PackedSong.h"
#include "metadata/SongInfo.h"

namespace jk {

class SongCache;

// `key` is a sort key number 1..13; any other leaves the records as they are.
void SortSongs(int key, std::span<SongInfo> songs);
void SortSongs(int key, std::span<PackedSong> songs);
void SortSongs(int key, SongCache& cache);

}  // namespace jk
