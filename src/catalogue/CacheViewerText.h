#pragma once

// What the cache viewer shows of each cached record: one row a record, one column a field, in
// the order of the fields in cache.dat.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace jk {

class SongCache;

inline constexpr std::string_view kCacheViewerCaption = "Cache Viewer";

inline constexpr int kCacheViewerColumns = 13;

// The column headers: Title, Artist, Album, Year, Genre, Time, Bitrate, Filename, Comment,
// Size, Volume, Date, Last used.
const std::array<std::string_view, kCacheViewerColumns>& CacheViewerHeaders();

// The text of record `index` (1..UpperBound) in `column` (0..12): the stored text, but for the
// playing time as "MM:SS" and the two stamps as "yyyy-mm-dd hh:nn:ss" (a stamp of another
// form, such as the mark of a condemned record, as it stands).
std::string CacheViewerText(const SongCache& cache, std::int64_t index, int column);

}  // namespace jk
