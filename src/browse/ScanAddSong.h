#pragma once

// One file of a listing or a walk becomes one row of a list pane: the filter, the refused
// folders, the song looked up through the cache, and the row's texts.

#include <string_view>

#include "catalogue/GetSongInfo.h"
#include "listing/ListRow.h"
#include "metadata/SongFileReader.h"
#include "metadata/SongInfo.h"

namespace jk {

// The texts a files pane's row is made of, borrowed from a record or a catalogued song.
struct SongRowTexts {
    std::string_view Title, Artist, Album, Year, Genre, Time, Bitrate, Path, Comment, Size, Date,
        Volume;
};

// The files pane's row of a song that exists (Path the trimmed path it was looked up under).
ListRow FilesPaneRow(const SongRowTexts& song);
ListRow FilesPaneRow(const SongInfo& song);

// Filters `path`, looks the song up (GetSongInfo without NoCache) and appends its row to
// `rows`. Returns false, adding nothing, for a file the filter or the refused folders turn away
// and for an unreadable file. `prefetched` holds what a read-ahead already read of the file.
bool ScanAddSong(std::string_view path, RowList& rows, int filterMode, SongLookup& lookup,
                 const PrefetchedBytes* prefetched = nullptr);

}  // namespace jk
