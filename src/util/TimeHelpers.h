#pragma once

// Playing times and date stamps.

#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>

namespace jk {

// Minutes and seconds as "MM:SS"; minutes grow past two digits (6005 gives "100:05").
std::string FormatSeconds(std::int32_t seconds);
// Hours, minutes and seconds joined by ":", each of at least two digits.
std::string FormatHMS(std::int64_t seconds);
// Seconds of a time text. With `allMinuteDigits` off, the numeric value of the first two
// characters is the minutes and that of the last two the seconds, as a 16-bit integer (the
// result wraps outside its range); texts below two characters give 0. With it on (the exact
// times extension), every digit before the last two counts as minutes.
std::int32_t ParseTime(std::string_view text, bool allMinuteDigits = false);

// Local date and time of a moment (seconds since the epoch) as "yyyymmddhhnnss".
std::string FormatStamp14(std::int64_t epochSeconds);
// The same for now, and the "yyyymmdd" + "hhmmss" form of now (identical in shape).
std::string NowStamp14();
// The locale's date and time text of a moment (a stable rendering of the user's locale).
std::string FormatLocaleDateTime(std::int64_t epochSeconds);
// The locale's text of a "yyyymmddhhnnss" stamp; the stamp itself when it is not a date.
std::string LocaleTextOfStamp14(std::string_view stamp);
// The moment (local time) of a "yyyymmddhhnnss" stamp; false when it is not one.
bool ParseStamp14(std::string_view stamp, std::int64_t& epochSeconds);
// The local date and time that FormatLocaleDateTime writes, read back (blanks around it are
// allowed); false when the text is not in that form.
bool ParseLocaleDateTime(std::string_view text, std::tm& moment);
// The user's short date format (the locale's "%x" as strftime spells it, "%m/%d/%y" in the C
// locale), and its names of months and of the morning and afternoon.
std::string LocaleShortDateFormat();
std::string LocaleMonthName(int month, bool abbreviated);  // month 1..12
std::string LocaleAmPm(bool afternoon);
// Local time of day in seconds since midnight, as a seed.
double SecondsSinceMidnight();

// One moment in local time, converted once and written either way: a song's cache stamp and
// the text of its date (FormatStamp14 and FormatLocaleDateTime, without converting twice).
class LocalMoment {
public:
    explicit LocalMoment(std::int64_t epochSeconds);
    explicit LocalMoment(const std::tm& local);
    std::string Stamp14() const;
    std::string LocaleText() const;

private:
    std::tm m_tm;
};

// A file's date as the song cache stamps it and as the locale writes it, the last one kept: the
// files of a folder are often written in the same second and nearly always on the same day, and
// a walk asks for the date of every file. Each thread that reads songs keeps its own.
class FileDates {
public:
    // FormatStamp14 of the moment; valid until the next call.
    const std::string& Stamp(std::int64_t epochSeconds);
    // FormatLocaleDateTime of the moment; valid until the next call.
    const std::string& LocaleText(std::int64_t epochSeconds);

private:
    void Convert(std::int64_t epochSeconds);

    bool m_converted = false;
    std::int64_t m_seconds = 0;
    std::tm m_tm{};
    std::string m_stamp;  // empty until asked for
    std::string m_text;   // empty until asked for
    bool m_haveDay = false;
    std::tm m_day{};
    std::string m_dayText;
};

}  // namespace jk
