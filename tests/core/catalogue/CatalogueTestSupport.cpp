#include "CatalogueTestSupport.h"

#include <unistd.h>

#include <fstream>
#include <iterator>

namespace jk::test {

TempFolder::TempFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "jk-catalogue-XXXXXX").string();
    if (::mkdtemp(pattern.data()) != nullptr) {
        m_path = pattern;
    }
}

TempFolder::~TempFolder() {
    std::error_code ignored;
    if (!m_path.empty()) {
        std::filesystem::remove_all(m_path, ignored);
    }
}

std::string ReadBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void WriteBytes(const std::string& path, std::string_view bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

SongInfo StoredSong(std::string_view key, std::string_view lastUsed, std::string_view title) {
    SongInfo song;
    song.Path = key;
    song.LastUsed = lastUsed;
    song.Title = title;
    song.Date = "20240101000000";
    song.Time = "0345";
    return song;
}

SongCache CacheOf(const std::vector<SongInfo>& songs) {
    std::vector<PackedSong> records;
    for (const SongInfo& song : songs) {
        records.emplace_back(song);
    }
    SongCache cache;
    cache.Assign(std::move(records));
    return cache;
}

std::vector<std::string> FieldsOf(const SongCache& cache, int key) {
    std::vector<std::string> fields;
    for (std::int64_t i = 1; i <= cache.UpperBound(); ++i) {
        fields.emplace_back(cache.FieldOf(i, key));
    }
    return fields;
}

std::vector<std::string> KeysOf(const SongCache& cache) {
    return FieldsOf(cache, kKeyPath);
}

std::string Field(std::string_view text) {
    std::string out;
    out.push_back(static_cast<char>((text.size() >> 8) & 0xFF));
    out.push_back(static_cast<char>(text.size() & 0xFF));
    out += text;
    return out;
}

std::string Header(std::string_view count, std::string_view fields, std::string_view version) {
    std::string head(version);
    head.resize(10, ' ');
    head += fields;
    head += std::string(8 - count.size(), ' ');
    head += count;
    return head;
}

}  // namespace jk::test
