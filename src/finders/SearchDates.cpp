#include "finders/SearchDates.h"

#include <ctime>
#include <string>
#include <vector>

#include "util/Text.h"
#include "util/TimeHelpers.h"
#include "util/Utf8.h"

namespace jk {

std::int64_t DaysFromCivil(int year, int month, int day) {
    // Howard Hinnant's days_from_civil.
    const std::int64_t y = static_cast<std::int64_t>(year) - (month <= 2 ? 1 : 0);
    const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
    const std::int64_t yoe = y - era * 400;
    const std::int64_t mp = (month + 9) % 12;
    const std::int64_t doy = (153 * mp + 2) / 5 + day - 1;
    const std::int64_t doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + doe - 719468;
}

bool ValidCivilDate(int year, int month, int day) {
    static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (year < 100 || year > 9999 || month < 1 || month > 12 || day < 1) {
        return false;
    }
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    const int last = kDays[month - 1] + (month == 2 && leap ? 1 : 0);
    return day <= last;
}

namespace {

// A cursor over a text being read by a date pattern.
struct Reader {
    std::string_view text;
    std::size_t pos = 0;

    bool AtEnd() const { return pos >= text.size(); }
    void SkipBlanks() {
        while (pos < text.size() && (text[pos] == ' ' || text[pos] == '\t')) {
            ++pos;
        }
    }
    // One to `most` digits.
    bool Number(std::size_t most, int& value, std::size_t& digits) {
        value = 0;
        digits = 0;
        while (pos < text.size() && digits < most && text[pos] >= '0' && text[pos] <= '9') {
            value = value * 10 + (text[pos] - '0');
            ++pos;
            ++digits;
        }
        return digits > 0;
    }
    bool Literal(char c) {
        if (pos < text.size() && text[pos] == c) {
            ++pos;
            return true;
        }
        return false;
    }
    // A word of the locale, ignoring case.
    bool Word(std::string_view word) {
        if (word.empty() || pos + word.size() > text.size()) {
            return false;
        }
        if (!EqualsNoCase(text.substr(pos, word.size()), word)) {
            return false;
        }
        pos += word.size();
        return true;
    }
};

int TwoDigitYear(int value) {
    return value < 30 ? 2000 + value : 1900 + value;
}

// The month by its name in the locale, long names first so "June" is not read as "Jun".
bool MonthName(Reader& in, int& month) {
    for (const bool abbreviated : {false, true}) {
        for (int m = 1; m <= 12; ++m) {
            if (in.Word(LocaleMonthName(m, abbreviated))) {
                month = m;
                return true;
            }
        }
    }
    return false;
}

// Reads a date by a strftime pattern of the date conversions a short date uses.
bool ReadByPattern(Reader& in, std::string_view pattern, CivilMoment& out) {
    int year = -1;
    int month = -1;
    int day = -1;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const char c = pattern[i];
        if (c != '%') {
            if (c == ' ') {
                in.SkipBlanks();
            } else if (!in.Literal(c)) {
                return false;
            }
            continue;
        }
        if (++i >= pattern.size()) {
            return false;
        }
        char conv = pattern[i];
        while (conv == 'E' || conv == 'O' || conv == '-' || conv == '_' || conv == '0') {
            if (++i >= pattern.size()) {
                return false;
            }
            conv = pattern[i];
        }
        int value = 0;
        std::size_t digits = 0;
        switch (conv) {
            case 'd':
            case 'e':
                in.SkipBlanks();
                if (!in.Number(2, value, digits)) {
                    return false;
                }
                day = value;
                break;
            case 'm':
                if (!in.Number(2, value, digits)) {
                    return false;
                }
                month = value;
                break;
            case 'y':
            case 'Y':
                if (!in.Number(4, value, digits)) {
                    return false;
                }
                year = digits <= 2 ? TwoDigitYear(value) : value;
                break;
            case 'b':
            case 'B':
            case 'h':
                if (!MonthName(in, month)) {
                    return false;
                }
                break;
            case 'D':
                if (!ReadByPattern(in, "%m/%d/%y", out)) {
                    return false;
                }
                year = out.Year;
                month = out.Month;
                day = out.Day;
                break;
            case 'F':
                if (!ReadByPattern(in, "%Y-%m-%d", out)) {
                    return false;
                }
                year = out.Year;
                month = out.Month;
                day = out.Day;
                break;
            case '%':
                if (!in.Literal('%')) {
                    return false;
                }
                break;
            default:
                return false;  // weekday names and the like: not a form to type
        }
    }
    if (!ValidCivilDate(year, month, day)) {
        return false;
    }
    out = CivilMoment{year, month, day, 0, 0, 0};
    return true;
}

// The date forms a user may type, the locale's own first.
std::vector<std::string> DatePatterns() {
    std::vector<std::string> patterns;
    const std::string local = LocaleShortDateFormat();
    if (!local.empty()) {
        patterns.push_back(local);
    }
    patterns.emplace_back("%Y-%m-%d");
    patterns.emplace_back("%m/%d/%y");
    return patterns;
}

// Reads a date at the cursor by the first pattern that fits it and leaves the cursor behind it.
// With `whole`, only a pattern that takes the whole rest counts.
bool ReadDate(Reader& in, CivilMoment& out, bool whole) {
    static const std::vector<std::string> patterns = DatePatterns();
    for (const std::string& pattern : patterns) {
        Reader attempt = in;
        CivilMoment moment;
        if (!ReadByPattern(attempt, pattern, moment)) {
            continue;
        }
        if (whole) {
            attempt.SkipBlanks();
            if (!attempt.AtEnd()) {
                continue;
            }
        }
        in = attempt;
        out = moment;
        return true;
    }
    return false;
}

// "h:mm", "h:mm:ss", each with an optional AM/PM (or the locale's words for them).
bool ReadTime(Reader& in, CivilMoment& out) {
    int hour = 0;
    int minute = 0;
    int second = 0;
    std::size_t digits = 0;
    if (!in.Number(2, hour, digits) || !in.Literal(':') || !in.Number(2, minute, digits) ||
        digits != 2) {
        return false;
    }
    if (in.Literal(':') && (!in.Number(2, second, digits) || digits != 2)) {
        return false;
    }
    in.SkipBlanks();
    int half = -1;
    if (in.Word("AM") || (!LocaleAmPm(false).empty() && in.Word(LocaleAmPm(false)))) {
        half = 0;
    } else if (in.Word("PM") || (!LocaleAmPm(true).empty() && in.Word(LocaleAmPm(true)))) {
        half = 1;
    }
    if (half >= 0) {
        if (hour < 1 || hour > 12) {
            return false;
        }
        hour = hour % 12 + half * 12;
    }
    if (hour > 23 || minute > 59 || second > 59) {
        return false;
    }
    out.Hour = hour;
    out.Minute = minute;
    out.Second = second;
    return true;
}

}  // namespace

std::optional<CivilMoment> ParseUserDate(std::string_view text) {
    Reader in{Trim(text), 0};
    CivilMoment moment;
    if (in.text.empty() || !ReadDate(in, moment, true)) {
        return std::nullopt;
    }
    return moment;
}

std::optional<CivilMoment> ParseRecordDate(std::string_view text) {
    std::tm tm{};
    if (ParseLocaleDateTime(text, tm)) {
        CivilMoment moment{tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday,
                           tm.tm_hour,        tm.tm_min,     tm.tm_sec};
        if (ValidCivilDate(moment.Year, moment.Month, moment.Day)) {
            return moment;
        }
    }
    Reader in{Trim(text), 0};
    CivilMoment moment;
    if (in.text.empty() || !ReadDate(in, moment, false)) {
        return std::nullopt;
    }
    in.SkipBlanks();
    if (!in.AtEnd() && (!ReadTime(in, moment) || (in.SkipBlanks(), !in.AtEnd()))) {
        return std::nullopt;
    }
    return moment;
}

CivilMoment NowCivil() {
    const std::time_t now = std::time(nullptr);
    std::tm tm{};
    localtime_r(&now, &tm);
    return CivilMoment{tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday,
                       tm.tm_hour,        tm.tm_min,     tm.tm_sec};
}

namespace {

std::int64_t FloorDiv(std::int64_t a, std::int64_t b) {
    return a / b - ((a % b != 0) && ((a < 0) != (b < 0)) ? 1 : 0);
}

// 1970-01-04 was a Sunday: weeks are counted from Sunday to Sunday.
constexpr std::int64_t kFirstSunday = 3;

}  // namespace

std::int64_t DateDiff(DateInterval interval, const CivilMoment& from, const CivilMoment& to) {
    const std::int64_t dayFrom = DaysFromCivil(from.Year, from.Month, from.Day);
    const std::int64_t dayTo = DaysFromCivil(to.Year, to.Month, to.Day);
    switch (interval) {
        case DateInterval::Hour:
            return (dayTo * 24 + to.Hour) - (dayFrom * 24 + from.Hour);
        case DateInterval::Day:
            return dayTo - dayFrom;
        case DateInterval::Week:
            return FloorDiv(dayTo - kFirstSunday, 7) - FloorDiv(dayFrom - kFirstSunday, 7);
        case DateInterval::Month:
            return (static_cast<std::int64_t>(to.Year) * 12 + to.Month) -
                   (static_cast<std::int64_t>(from.Year) * 12 + from.Month);
    }
    return 0;
}

}  // namespace jk
