#include "util/TimeHelpers.h"

#include <chrono>
#include <cstdio>
#include <ctime>
#include <string_view>

#include <langinfo.h>
#include <locale.h>  // NOLINT(modernize-deprecated-headers): newlocale is POSIX, only here

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

// Two or four digits of a value known to fit, as "%02d" and "%04d" would write it.
void PutDigits(char* out, int value, int width) {
    for (int i = width - 1; i >= 0; --i) {
        out[i] = static_cast<char>('0' + value % 10);
        value /= 10;
    }
}

// The user's own date and time conventions (LC_TIME), without touching the process locale.
locale_t UserTimeLocale() {
    static const locale_t userTime = [] {
        locale_t loc = newlocale(LC_TIME_MASK, "", static_cast<locale_t>(nullptr));
        if (loc == static_cast<locale_t>(nullptr)) {
            loc = newlocale(LC_TIME_MASK, "C", static_cast<locale_t>(nullptr));
        }
        return loc;
    }();
    return userTime;
}

// True when a strftime format uses only conversions of the date (no time of day, no zone), so
// its text is the same all day long.
bool DateOnlyFormat(std::string_view format) {
    constexpr std::string_view kDateConversions = "aAbBhCyYGgdemjuwUWVDFnt%";
    for (std::size_t i = 0; i < format.size(); ++i) {
        if (format[i] != '%') {
            continue;
        }
        ++i;
        while (i < format.size() &&
               std::string_view("_-0^#").find(format[i]) != std::string_view::npos) {
            ++i;
        }
        while (i < format.size() && format[i] >= '0' && format[i] <= '9') {
            ++i;
        }
        if (i < format.size() && (format[i] == 'E' || format[i] == 'O')) {
            ++i;
        }
        if (i >= format.size() || kDateConversions.find(format[i]) == std::string_view::npos) {
            return false;
        }
    }
    return true;
}

bool SameDate(const std::tm& a, const std::tm& b) {
    return a.tm_mday == b.tm_mday && a.tm_mon == b.tm_mon && a.tm_year == b.tm_year &&
           a.tm_wday == b.tm_wday && a.tm_yday == b.tm_yday;
}

std::string StrftimeText(const char* format, const std::tm& tm) {
    char buffer[128];
    const std::size_t n = strftime_l(buffer, sizeof buffer, format, &tm, UserTimeLocale());
    return std::string(buffer, n);
}

}  // namespace

LocalMoment::LocalMoment(std::int64_t epochSeconds) : m_tm(LocalTm(epochSeconds)) {}

LocalMoment::LocalMoment(const std::tm& local) : m_tm(local) {}

std::string FormatStamp14(std::int64_t epochSeconds) {
    return LocalMoment(epochSeconds).Stamp14();
}

std::string FormatLocaleDateTime(std::int64_t epochSeconds) {
    return LocalMoment(epochSeconds).LocaleText();
}

std::string LocalMoment::Stamp14() const {
    const std::tm& tm = m_tm;
    const int year = tm.tm_year + 1900;
    if (year < 0 || year > 9999) {
        char buffer[64];
        std::snprintf(buffer, sizeof buffer, "%04d%02d%02d%02d%02d%02d", year, tm.tm_mon + 1,
                      tm.tm_mday, tm.tm_hour, tm.tm_min, tm.tm_sec);
        return buffer;
    }
    // A stamp is made for every file listed: digits by hand, not through printf.
    char stamp[14];
    PutDigits(stamp, year, 4);
    PutDigits(stamp + 4, tm.tm_mon + 1, 2);
    PutDigits(stamp + 6, tm.tm_mday, 2);
    PutDigits(stamp + 8, tm.tm_hour, 2);
    PutDigits(stamp + 10, tm.tm_min, 2);
    PutDigits(stamp + 12, tm.tm_sec, 2);
    return std::string(stamp, sizeof stamp);
}

std::string NowStamp14() {
    return FormatStamp14(static_cast<std::int64_t>(std::time(nullptr)));
}

std::string LocalMoment::LocaleText() const {
    return StrftimeText("%x %X", m_tm);
}

void FileDates::Convert(std::int64_t epochSeconds) {
    if (m_converted && epochSeconds == m_seconds) {
        return;
    }
    m_converted = true;
    m_seconds = epochSeconds;
    m_tm = LocalTm(epochSeconds);
    m_stamp.clear();
    m_text.clear();
}

const std::string& FileDates::Stamp(std::int64_t epochSeconds) {
    Convert(epochSeconds);
    if (m_stamp.empty()) {
        m_stamp = LocalMoment(m_tm).Stamp14();
    }
    return m_stamp;
}

const std::string& FileDates::LocaleText(std::int64_t epochSeconds) {
    Convert(epochSeconds);
    if (!m_text.empty()) {
        return m_text;
    }
    static const bool dateOnly = DateOnlyFormat(nl_langinfo_l(D_FMT, UserTimeLocale()));
    if (!dateOnly) {
        m_text = StrftimeText("%x %X", m_tm);
        return m_text;
    }
    // The date's text holds all day: only the time of day is written again.
    if (!m_haveDay || !SameDate(m_tm, m_day)) {
        m_dayText = StrftimeText("%x", m_tm);
        m_day = m_tm;
        m_haveDay = true;
    }
    const std::string timeText = StrftimeText("%X", m_tm);
    // "%x %X" in one call gives nothing when the whole does not fit its 128 bytes, and an empty
    // part can't be told from an overlong one: those cases take the one call.
    if (!m_dayText.empty() && !timeText.empty() && m_dayText.size() + 1 + timeText.size() < 128) {
        m_text.reserve(m_dayText.size() + 1 + timeText.size());
        m_text.append(m_dayText).append(" ").append(timeText);
    } else {
        m_text = StrftimeText("%x %X", m_tm);
    }
    return m_text;
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

bool ParseLocaleDateTime(std::string_view text, std::tm& moment) {
    const std::string copy(Trim(text));
    std::tm tm{};
    const char* end = strptime_l(copy.c_str(), "%x %X", &tm, UserTimeLocale());
    if (end == nullptr || *end != '\0') {
        return false;
    }
    moment = tm;
    return true;
}

std::string LocaleShortDateFormat() {
    return nl_langinfo_l(D_FMT, UserTimeLocale());
}

std::string LocaleMonthName(int month, bool abbreviated) {
    if (month < 1 || month > 12) {
        return {};
    }
    const nl_item first = abbreviated ? ABMON_1 : MON_1;
    return nl_langinfo_l(static_cast<nl_item>(first + month - 1), UserTimeLocale());
}

std::string LocaleAmPm(bool afternoon) {
    return nl_langinfo_l(afternoon ? PM_STR : AM_STR, UserTimeLocale());
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
