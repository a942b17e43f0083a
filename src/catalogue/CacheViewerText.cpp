#include "catalogue/CacheViewerText.h"

#include "catalogue/SongCache.h"
#include "catalogue/SongFields.h"
#include "util/StringHelpers.h"

namespace jk {

namespace {

constexpr std::array<std::string_view, kCacheViewerColumns> kHeaders = {
    "Title",    "Artist",  "Album", "Year",   "Genre", "Time",      "Bitrate",
    "Filename", "Comment", "Size",  "Volume", "Date",  "Last used",
};

constexpr std::size_t kStampLength = 14;

std::string StampText(std::string_view stamp) {
    if (stamp.size() != kStampLength || !IsAllDigits(stamp) || stamp == kCondemnedStamp) {
        return std::string(stamp);
    }
    std::string text;
    text.reserve(19);
    text.append(stamp.substr(0, 4)).append("-").append(stamp.substr(4, 2)).append("-");
    text.append(stamp.substr(6, 2)).append(" ").append(stamp.substr(8, 2)).append(":");
    text.append(stamp.substr(10, 2)).append(":").append(stamp.substr(12, 2));
    return text;
}

}  // namespace

const std::array<std::string_view, kCacheViewerColumns>& CacheViewerHeaders() {
    return kHeaders;
}

std::string CacheViewerText(const SongCache& cache, std::int64_t index, int column) {
    if (index < 1 || index > cache.UpperBound() || column < 0 || column >= kCacheViewerColumns) {
        return {};
    }
    const int key = column + 1;
    const std::string_view text = cache.FieldOf(index, key);
    switch (key) {
        case kKeyTime:
            return text.size() >= 3 ? ShownTime(text, true) : std::string(text);
        case kKeyDate:
        case kKeyLastUsed:
            return StampText(text);
        default:
            return std::string(text);
    }
}

}  // namespace jk
