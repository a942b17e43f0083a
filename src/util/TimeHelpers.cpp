#include "util/TimeHelpers.h"

#include <chrono>
#include <cstdio>
#include <ctime>
#include <locale.h>

#include "util/StringHelpers.h"
#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {

std::string FormatSeconds(std::int32_t seconds) {
    // Int() of the quotient rounds towards minus infinity; mod keeps the sign of the dividend.
    const std::int64_t s = seconds;
    std::int64_t minutes = s / 60;
    if (s < 0 && s % 60 != 0) {
        --minutes;
    }
    const std::int64_t rest = s % 60;
    const std::int64_t value = minutes * 100 + rest;
    // The "00:00" format of the number: at least four digits, a colon ahead of the last two.
    const bool negative = value < 0;
    std::string digits = FormatZeroPadded(negative ? -value : value, 4);
    digits.insert(digits.size() - 2, ":");
    return negative ? "-" + digits : digits;
}

std::string FormatHMS(std::int64_t seconds) {
    const std::int64_t hours = seconds / 3600;
    const std::int64_t minutes = (seconds % 3600) / 60;
    const std::int64_t rest = seconds % 60;
    return FormatZeroPadded(hours, 2) + ":" + FormatZeroPadded(minutes, 2) + ":" +
           FormatZeroPadded(rest, 2);
}

std::int32_t ParseTime(std::string_view text, bool allMinuteDigits) {
    const std::size_t count = CharCount(text);
    if (count < 2) {
        return 0;
    }
    if (allMinuteDigits) {
        // Every character before the last two holds minutes ("100:05", "10005").
        std::string_view head = CharLeft(text, count - 2);
        if (!head.empty() && head.back() == ':') {
            head.remove_suffix(1);
        }
        const double minutes = Val(head);
        const double secs = Val(CharRight(text, 2));
        return ToInt32Clamped(minutes * 60 + secs);
    }
    const double value = Val(CharLeft(text, 2)) * 60 + Val(CharRight(text, 2));
    const auto wrapped = static_cast<std::int64_t>(RoundHalfEven(value));
    return static_cast<std::int16_t>(static_cast<std::uint16_t>(wrapped & 0xFFFF));
}

namespace {

std::tm LocalTm(std::int64_t epochSeconds) {
    const auto t = static_cast<std::time_t>(epochSeconds);
    std::tm tm{};
    localtime_r(&t, &tm);
    return tm;
}

}  // namespace

std::string FormatStamp14(std::int64_t epochSeconds) {
    const std::tm tm = LocalTm(epochSeconds);
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%04d%02d%02d%02d%02d%02d", tm.tm_year + 1900,
                  tm.tm_mon + 1, tm.tm_mday, tm.tm_hour, tm.tm_min, tm.tm_sec);
    return buffer;
}

std::string NowStamp14() {
    return FormatStamp14(static_cast<std::int64_t>(std::time(nullptr)));
}

std::string FormatLocaleDateTime(std::int64_t epochSeconds) {
    // The user's own date and time conventions (LC_TIME), without touching the process locale.
    static const locale_t userTime = [] {
        locale_t loc = newlocale(LC_TIME_MASK, "", static_cast<locale_t>(nullptr));
        if (loc == static_cast<locale_t>(nullptr)) {
            loc = newlocale(LC_TIME_MASK, "C", static_cast<locale_t>(nullptr));
        }
        return loc;
    }();
    const std::tm tm = LocalTm(epochSeconds);
    char buffer[128];
    const std::size_t n = strftime_l(buffer, sizeof buffer, "%x %X", &tm, userTime);
    return std::string(buffer, n);
}

bool ParseStamp14(std::string_view stamp, std::int64_t& epochSeconds) {
    if (stamp.size() != 14 || !IsAllDigits(stamp)) {
        return false;
    }
    const auto num = [&](std::size_t pos, std::size_t len) {
        int v = 0;
        for (std::size_t i = pos; i < pos + len; ++i) {
            v = v * 10 + (stamp[i] - '0');
        }
        return v;
    };
    std::tm tm{};
    tm.tm_year = num(0, 4) - 1900;
    tm.tm_mon = num(4, 2) - 1;
    tm.tm_mday = num(6, 2);
    tm.tm_hour = num(8, 2);
    tm.tm_min = num(10, 2);
    tm.tm_sec = num(12, 2);
    tm.tm_isdst = -1;
    if (tm.tm_mon < 0 || tm.tm_mon > 11 || tm.tm_mday < 1 || tm.tm_mday > 31 || tm.tm_hour > 23 ||
        tm.tm_min > 59 || tm.tm_sec > 59) {
        return false;
    }
    epochSeconds = static_cast<std::int64_t>(std::mktime(&tm));
    return true;
}

std::string LocaleTextOfStamp14(std::string_view stamp) {
    std::int64_t epoch = 0;
    if (!ParseStamp14(stamp, epoch)) {
        return std::string(stamp);
    }
    return FormatLocaleDateTime(epoch);
}

double SecondsSinceMidnight() {
    const auto now = std::chrono::system_clock::now();
    const std::time_t t = std::chrono::system_clock::to_time_t(now);
    const std::tm tm = LocalTm(static_cast<std::int64_t>(t));
    const auto micros =
        std::chrono::duration_cast<std::chrono::microseconds>(now.time_since_epoch()).count() %
        1000000;
    return tm.tm_hour * 3600.0 + tm.tm_min * 60.0 + tm.tm_sec + static_cast<double>(micros) / 1e6;
}

}  // namespace jk
