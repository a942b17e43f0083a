#pragma once

// One file of a listing or a walk becomes one row of a list pane: the filter, the refused
// folders, the song read through the cache, and the row's texts.

#include <functional>
#include <string>

#include "catalogue/GetSongInfo.h"
#include "listing/ListRow.h"
#include "metadata/SongFileReader.h"
#include "metadata/SongInfo.h"

namespace jk {

// Reads one song through the song cache; `path` is trimmed in place. `prefetched` holds what a
// read-ahead already read of the file, or is null.
using SongReadFn = std::function<SongInfo(std::string& path, const PrefetchedBytes* prefetched)>;
// The same as GetSongView gives it: false for a file that can't be read; a song read from its
// file goes into `read` and the view shows it there.
using SongViewFn = std::function<bool(std::string& path, const PrefetchedBytes* prefetched,
                                      SongInfo& read, SongView& view)>;

// The row of a song read for `path` (the trimmed path the song was read under).
ListRow FilesPaneRow(const SongView& song, std::string_view path);
ListRow FilesPaneRow(const SongInfo& song, std::string_view path);

// Filters `path`, reads the song and appends its row to `rows`. Returns false, adding nothing,
// for a file the filter or the refused folders turn away and for an unreadable file.
bool ScanAddSong(std::string path, RowList& rows, int filterMode, const SongReadFn& readSong,
                 const PrefetchedBytes* prefetched = nullptr);
bool ScanAddSong(std::string path, RowList& rows, int filterMode, const SongViewFn& viewSong,
                 const PrefetchedBytes* prefetched = nullptr);

}  // namespace jk
