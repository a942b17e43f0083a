#pragma once

// The dates of the Search wizard: the dates a user types, the date texts of song records, and
// DateDiff, which counts calendar boundaries (midnights, week starts, month starts) rather than
// elapsed spans. Dates are moments of the local calendar without a zone, as they are shown.

#include <cstdint>
#include <optional>
#include <string_view>

namespace jk {

struct CivilMoment {
    int Year = 1970;
    int Month = 1;  // 1..12
    int Day = 1;    // 1..31
    int Hour = 0;
    int Minute = 0;
    int Second = 0;

    friend bool operator==(const CivilMoment&, const CivilMoment&) = default;
};

// Days from 1970-01-01 to the date (negative before it).
std::int64_t DaysFromCivil(int year, int month, int day);
bool ValidCivilDate(int year, int month, int day);

// A date the user typed: the locale's short date, "yyyy-mm-dd", or "m/d/yy" and "m/d/yyyy" (a
// two-digit year 00-29 is 20xx, 30-99 is 19xx), blanks around it allowed. Nothing for any other
// text, and for dates that do not exist ("31/31/99", "2/30/2001").
std::optional<CivilMoment> ParseUserDate(std::string_view text);

// A record's Date: read back as the program writes it (the locale's date and time), else a date
// as the user types them followed by an optional time ("11:22:33 PM", "23:22").
std::optional<CivilMoment> ParseRecordDate(std::string_view text);

// Now, on the local calendar.
CivilMoment NowCivil();

enum class DateInterval : std::uint8_t { Hour, Day, Week, Month };

// DateDiff(interval, from, to): the boundaries of the interval crossed going from `from` to
// `to` (negative when `to` lies before): hour starts, midnights, Sundays, or first days of months.
std::int64_t DateDiff(DateInterval interval, const CivilMoment& from, const CivilMoment& to);

}  // namespace jk
