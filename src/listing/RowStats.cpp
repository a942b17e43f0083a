#include "listing/RowStats.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>

namespace jk {

namespace {

std::int64_t DigitsValue(std::string_view text, bool& ok) {
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    ok = error == std::errc() && end == text.data() + text.size() && !text.empty();
    return ok ? value : 0;
}

}  // namespace

std::int64_t SecondsOfTime(std::string_view time) {
    const std::size_t colon = time.rfind(':');
    if (colon == std::string_view::npos) {
        return 0;
    }
    bool minutesOk = false;
    bool secondsOk = false;
    const std::int64_t minutes = DigitsValue(time.substr(0, colon), minutesOk);
    const std::int64_t seconds = DigitsValue(time.substr(colon + 1), secondsOk);
    if (!minutesOk || !secondsOk || minutes < 0 || seconds < 0 || minutes > 10000000) {
        return 0;
    }
    return minutes * 60 + seconds;
}

RowTotals TotalsOf(const RowList& rows) {
    RowTotals totals;
    totals.songs = rows.size();
    for (const ListRow& row : rows) {
        totals.seconds += SecondsOfTime(row.Get(Column::Time));
        bool ok = false;
        const std::int64_t bytes = DigitsValue(row.Get(Column::Size), ok);
        if (ok && bytes > 0) {
            totals.bytes += bytes;
        }
    }
    return totals;
}

std::string CountText(std::size_t count) {
    std::string digits = std::to_string(count);
    for (std::ptrdiff_t at = static_cast<std::ptrdiff_t>(digits.size()) - 3; at > 0; at -= 3) {
        digits.insert(static_cast<std::size_t>(at), ",");
    }
    return digits;
}

std::string DurationText(std::int64_t seconds) {
    seconds = std::max<std::int64_t>(seconds, 0);
    char buffer[48];
    if (seconds >= 3600) {
        std::snprintf(
            buffer, sizeof buffer, "%lld:%02lld:%02lld", static_cast<long long>(seconds / 3600),
            static_cast<long long>(seconds / 60 % 60), static_cast<long long>(seconds % 60));
    } else {
        std::snprintf(buffer, sizeof buffer, "%lld:%02lld", static_cast<long long>(seconds / 60),
                      static_cast<long long>(seconds % 60));
    }
    return buffer;
}

std::string SizeText(std::int64_t bytes) {
    static constexpr std::array<const char*, 4> kUnits = {"KB", "MB", "GB", "TB"};
    if (bytes < 1024) {
        return std::to_string(std::max<std::int64_t>(bytes, 0)) + " bytes";
    }
    double value = static_cast<double>(bytes) / 1024.0;
    std::size_t unit = 0;
    while (value >= 1024.0 && unit + 1 < kUnits.size()) {
        value /= 1024.0;
        ++unit;
    }
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.1f %s", value, kUnits[unit]);
    return buffer;
}

std::string TotalsText(const RowTotals& totals) {
    std::string text = CountText(totals.songs) + (totals.songs == 1 ? " song" : " songs");
    if (totals.songs == 0) {
        return text;
    }
    if (totals.seconds > 0) {
        text += ", " + DurationText(totals.seconds);
    }
    if (totals.bytes > 0) {
        text += ", " + SizeText(totals.bytes);
    }
    return text;
}

}  // namespace jk
