#pragma once

// One file of a listing or a walk becomes one row of a list pane: the filter, the refused
// folders, the song read through the cache, and the row's texts.

#include <functional>
#include <string>

#include "metadata/SongFileReader.h"
#include "metadata/SongInfo.h"
#include "playback/ListRow.h"

namespace jk {

// Reads one song through the song cache; `path` is trimmed in place. `prefetched` holds what a
// read-ahead worker already read of the file, or is null.
using SongReadFn = std::function<SongInfo(std::string& path, const PrefetchedBytes* prefetched)>;

// The row of a song read for `path` (the trimmed path the song was read under).
ListRow FilesPaneRow(const SongInfo& song, std::string_view path);

// Filters `path`, reads the song and appends its row to `rows`. Returns false, adding nothing,
// for a file the filter or the refused folders turn away and for an unreadable file.
bool ScanAddSong(std::string path, RowList& rows, int filterMode, const SongReadFn& readSong,
                 const PrefetchedBytes* prefetched = nullptr);

}  // namespace jk
