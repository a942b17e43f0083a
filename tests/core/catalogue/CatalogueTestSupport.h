#pragma once

// Small helpers shared by the catalogue tests: a temporary folder, records built in one line,
// and raw file bytes.

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/SongCache.h"
#include "metadata/SongInfo.h"

namespace jk::test {

// A fresh folder under the system's temporary folder, removed with its contents at the end.
class TempFolder {
public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::string& Path() const { return m_path; }
    std::string File(std::string_view name) const { return m_path + "/" + std::string(name); }

private:
    std::string m_path;
};

std::string ReadBytes(const std::string& path);
void WriteBytes(const std::string& path, std::string_view bytes);

// A record in the cache's stored form.
SongInfo StoredSong(std::string_view key, std::string_view lastUsed = "20240601120000",
                    std::string_view title = "");

// A cache holding these records in this order (no sorting).
SongCache CacheOf(const std::vector<SongInfo>& songs);
std::vector<std::string> KeysOf(const SongCache& cache);
std::vector<std::string> FieldsOf(const SongCache& cache, int key);

// A VBASE field: 2-byte big-endian length and the bytes.
std::string Field(std::string_view text);
// A header with the given count text (padded on the left to 8) and field count text.
std::string Header(std::string_view count, std::string_view fields = "13",
                   std::string_view version = "VBASE 1.00");

}  // namespace jk::test
