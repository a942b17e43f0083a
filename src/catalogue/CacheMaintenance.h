#pragma once

// Keeping the song cache small: expiry and duplicate removal, trimming to the size limit.

#include <cstdint>
#include <string_view>

namespace jk {

class SongCache;

// Days after which an unused record expires, by ExpireMode: 1 gives 3, 2 gives 7, 3 gives 21,
// 4 gives 45, 5 or more 90; 0 (or less) means no expiry.
int ExpiryDays(int expireMode);

// Sorts by key, then condemns expired records (unless `expireMode` is 0) and the older of two
// records of the same key, and removes the condemned. `now` is the "yyyymmddhhnnss" stamp of
// this moment. Returns the number removed.
std::int64_t OptimizeCache(SongCache& cache, int expireMode, std::string_view now);
// The same at this moment.
std::int64_t OptimizeCache(SongCache& cache, int expireMode);

// Cuts the cache down to the `limit` most recently used records, unless `frozen` is non-zero or
// it holds no more than that; it is left sorted by key.
void TrimCache(SongCache& cache, std::int32_t limit, std::int16_t frozen);

// Once the incremental cache save; the name is kept for its callers, and it does nothing.
void SaveCacheSlow();

}  // namespace jk
