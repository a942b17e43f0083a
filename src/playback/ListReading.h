#pragma once

// Reading playlist files into the rows of the playlist: every line that isn't extended m3u
// information names a song, relative to the list's folder or absolute, and becomes a row; a
// line that points nowhere becomes a ghost row, or nothing when ghosts are hidden.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "listing/ListRow.h"
#include "playback/SongRows.h"

namespace jk {

inline constexpr std::string_view kLastListName = "lastlist.m3u";
// Bounds on what a list file may hold, so that no file makes the reader allocate without end.
inline constexpr std::int64_t kMaxListFileBytes = 64ll * 1024 * 1024;
inline constexpr std::size_t kMaxListLines = 500000;  // lines that name songs

struct ListReadResult {
    std::string error;          // one line for the user; empty when the whole file was read
    std::size_t rowsAdded = 0;  // rows added before the end or the error
    bool Ok() const { return error.empty(); }
};

// How the lines of one list are read. HideGhosts holds its key's value: 1 drops ghost rows.
struct ListReadOptions {
    std::int16_t HideGhosts = 0;
    bool SkipExtendedInfo = true;  // only our own "lastlist.m3u" is read without the test
};

// Clears `rows` and reads the list at `path` into them. An empty path does nothing. A line
// deeper than the reading limit ends the reading with an error; the rows read so far stay.
ListReadResult OpenListNow(const std::string& path, RowList& rows, const SongSource& songs,
                           std::int16_t hideGhosts);
// As OpenListNow, adding the list's rows behind those there are.
ListReadResult AppendListNow(const std::string& path, RowList& rows, const SongSource& songs,
                             std::int16_t hideGhosts);

// "lastlist.m3u" in the data folder, where the list is kept between runs.
std::string LastListPath(std::string_view appPath);
// Reads "lastlist.m3u" at start-up, as OpenListNow but without the "#EXT" test. A data folder
// without the file leaves an empty list and no error.
ListReadResult OpenLastList(std::string_view appPath, RowList& rows, const SongSource& songs,
                            std::int16_t hideGhosts);

// The reading itself: adds the rows of the list file at `path` to `rows`.
ListReadResult ReadListInto(const std::string& path, RowList& rows, const SongSource& songs,
                            const ListReadOptions& options);

}  // namespace jk
