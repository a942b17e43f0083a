#include "catalogue/OlderVBaseForms.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

#include "catalogue/VBaseFormat.h"
#include "util/Text.h"

namespace jk {
namespace {

constexpr char kFieldEnd = '\b';

// Where the fields of a line go, by their position in the line.
constexpr std::array<int, kSongFieldCount> kOlderFieldKeys = {
    kKeyPath,  kKeyLastUsed, kKeyDate,    kKeyTitle, kKeyArtist, kKeyAlbum,  kKeyYear,
    kKeyGenre, kKeyComment,  kKeyBitrate, kKeyTime,  kKeySize,   kKeyVolume,
};

// The next line of `bytes` from `pos`, without its ending.
std::string_view NextLine(std::string_view bytes, std::size_t& pos) {
    const std::size_t end = bytes.find('\n', pos);
    std::string_view line = bytes.substr(pos, end == std::string_view::npos ? end : end - pos);
    pos = end == std::string_view::npos ? bytes.size() : end + 1;
    if (!line.empty() && line.back() == '\r') {
        line.remove_suffix(1);
    }
    return line;
}

std::int64_t CountOf(std::string_view line) {
    const double value = RoundHalfEven(Val(line));
    return value > 0 && value < 1e9 ? static_cast<std::int64_t>(value) : 0;
}

}  // namespace

void ReadOlderVBaseForm(std::string_view bytes, bool withCountLine,
                        const std::function<void(const SongFieldViews&)>& onRecord) {
    std::size_t pos = 0;
    if (withCountLine) {
        NextLine(bytes, pos);
    }
    const std::int64_t fieldCount =
        std::min<std::int64_t>(CountOf(NextLine(bytes, pos)), kSongFieldCount);
    std::array<std::string, kSongFieldCount> scratch;
    while (pos < bytes.size()) {
        std::string_view line = NextLine(bytes, pos);
        SongFieldViews fields{};
        for (std::int64_t f = 0; f < fieldCount && !line.empty(); ++f) {
            const std::size_t end = line.find(kFieldEnd);
            const std::string_view raw = line.substr(0, end);
            line = end == std::string_view::npos ? std::string_view() : line.substr(end + 1);
            const int key = kOlderFieldKeys[static_cast<std::size_t>(f)];
            const auto slot = static_cast<std::size_t>(key - 1);
            fields[slot] = DataFileText(raw, scratch[slot]);
        }
        if (!fields[kKeyPath - 1].empty()) {
            onRecord(fields);
        }
    }
}

}  // namespace jk
