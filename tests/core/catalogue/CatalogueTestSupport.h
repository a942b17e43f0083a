#pragma once

// Small helpers shared by the catalogue tests: records built in one line and VBASE bytes, with
// the temporary folder and raw file bytes of support/TempFolder.h.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/SongCache.h"
#include "metadata/SongInfo.h"
#include "support/CacheRecords.h"
#include "support/TempFolder.h"

namespace jk::test {

// A record in the cache's stored form.
SongInfo StoredSong(std::string_view key, std::string_view lastUsed = "20240601120000",
                    std::string_view title = "");

// One field (a sort key, 1 to 13) of every record, in the cache's order.
std::vector<std::string> FieldsOf(const SongCache& cache, int key);

// A VBASE field: 2-byte big-endian length and the bytes.
std::string Field(std::string_view text);
// A header with the given count text (padded on the left to 8) and field count text.
std::string Header(std::string_view count, std::string_view fields = "13",
                   std::string_view version = "VBASE 1.00");

}  // namespace jk::test
