#include "CatalogueTestSupport.h"

namespace jk::test {

SongInfo StoredSong(std::string_view key, std::string_view lastUsed, std::string_view title) {
    SongInfo song;
    song.Path = key;
    song.LastUsed = lastUsed;
    song.Title = title;
    song.Date = "20240101000000";
    song.Time = "0345";
    return song;
}

std::vector<std::string> FieldsOf(const SongCache& cache, int key) {
    std::vector<std::string> fields;
    for (std::int64_t i = 1; i <= cache.UpperBound(); ++i) {
        fields.emplace_back(cache.FieldOf(i, key));
    }
    return fields;
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
