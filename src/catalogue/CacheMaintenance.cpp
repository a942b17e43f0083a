#include "catalogue/CacheMaintenance.h"

#include <optional>
#include <utility>
#include <vector>

#include "catalogue/SongCache.h"
#include "catalogue/SortSongs.h"
#include "util/TimeHelpers.h"

namespace jk {
namespace {

// A moment of the local clock counted in whole hours; what the age test compares is the number
// of hours the clock has turned over between two moments.
using ClockHours = std::int64_t;

// Days since 1 March of year 0 in the proleptic Gregorian calendar (a running day number).
std::int64_t DayNumber(std::int64_t year, int month, int day) {
    if (month <= 2) {
        --year;
    }
    const std::int64_t era = (year >= 0 ? year : year - 399) / 400;
    const std::int64_t yearOfEra = year - era * 400;
    const int shiftedMonth = month > 2 ? month - 3 : month + 9;
    const std::int64_t dayOfYear = (153 * shiftedMonth + 2) / 5 + day - 1;
    const std::int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097 + dayOfEra;
}

bool IsLeapYear(std::int64_t year) {
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

std::optional<ClockHours> HoursOf(std::int64_t year, int month, int day, int hour, int minute,
                                  int second) {
    static constexpr int kMonthDays[12] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (month < 1 || month > 12 || day < 1 || day > kMonthDays[month - 1] ||
        (month == 2 && day == 29 && !IsLeapYear(year)) || hour > 23 || minute > 59 || second > 59) {
        return std::nullopt;
    }
    return DayNumber(year, month, day) * 24 + hour;
}

// Two decimal digits at `pos`, or -1.
int TwoDigits(std::string_view text, std::size_t pos) {
    if (pos + 2 > text.size()) {
        return -1;
    }
    const char a = text[pos];
    const char b = text[pos + 1];
    if (a < '0' || a > '9' || b < '0' || b > '9') {
        return -1;
    }
    return (a - '0') * 10 + (b - '0');
}

// The date of a LastUsed stamp, read as month/day/two-digit year and time from the stamp's
// positions (so the century is the language's window: 00-29 are 2000s, 30-99 1900s). A stamp
// marked "999999" in its third to eighth characters stands for 31 December 2015 23:59:59.
std::optional<ClockHours> LastUsedHours(std::string_view stamp) {
    if (stamp.size() >= 8 && stamp.substr(2, 6) == "999999") {
        return HoursOf(2015, 12, 31, 23, 59, 59);
    }
    const int yy = TwoDigits(stamp, 2);
    const int month = TwoDigits(stamp, 4);
    const int day = TwoDigits(stamp, 6);
    const int hour = TwoDigits(stamp, 8);
    const int minute = TwoDigits(stamp, 10);
    const int second = TwoDigits(stamp, 12);
    if (yy < 0 || month < 0 || day < 0 || hour < 0 || minute < 0 || second < 0) {
        return std::nullopt;
    }
    return HoursOf(yy < 30 ? 2000 + yy : 1900 + yy, month, day, hour, minute, second);
}

std::optional<ClockHours> NowHours(std::string_view now) {
    if (now.size() != 14) {
        return std::nullopt;
    }
    const int century = TwoDigits(now, 0);
    const int yy = TwoDigits(now, 2);
    if (century < 0 || yy < 0) {
        return std::nullopt;
    }
    return HoursOf(century * 100 + yy, TwoDigits(now, 4), TwoDigits(now, 6), TwoDigits(now, 8),
                   TwoDigits(now, 10), TwoDigits(now, 12));
}

bool IsCondemned(const PackedSong& record) {
    return record.Field(kKeyLastUsed) == kCondemnedStamp;
}

// Marks a record condemned; false when it was already.
bool Condemn(PackedSong& record) {
    if (IsCondemned(record)) {
        return false;
    }
    record.SetField(kKeyLastUsed, kCondemnedStamp);
    return true;
}

}  // namespace

int ExpiryDays(int expireMode) {
    switch (expireMode) {
        case 1:
            return 3;
        case 2:
            return 7;
        case 3:
            return 21;
        case 4:
            return 45;
        default:
            return expireMode >= 5 ? 90 : 0;
    }
}

std::int64_t OptimizeCache(SongCache& cache, int expireMode, std::string_view now) {
    std::optional<ClockHours> nowHours = NowHours(now);
    if (!nowHours) {
        nowHours = NowHours(NowStamp14()).value_or(0);
    }
    const std::int64_t limitHours = static_cast<std::int64_t>(ExpiryDays(expireMode)) * 24;
    SortSongs(kKeyPath, cache);
    std::vector<PackedSong> records = cache.TakeAll();
    std::int64_t condemned = 0;
    // The last record is never aged itself: it is only looked at as the partner of the one
    // before it.
    for (std::size_t i = 0; i + 1 < records.size(); ++i) {
        PackedSong& record = records[i];
        if (expireMode != 0) {
            // A stamp that is not a date counts as older than any.
            const std::optional<ClockHours> used = LastUsedHours(record.Field(kKeyLastUsed));
            if (!used || *nowHours - *used >= limitHours) {
                condemned += Condemn(record) ? 1 : 0;
                continue;
            }
        }
        PackedSong& next = records[i + 1];
        if (next.Field(kKeyPath) == record.Field(kKeyPath)) {
            PackedSong& older =
                record.Field(kKeyLastUsed) < next.Field(kKeyLastUsed) ? record : next;
            condemned += Condemn(older) ? 1 : 0;
        }
    }
    std::int64_t removed = 0;
    if (condemned > 0) {
        std::size_t kept = 0;
        for (std::size_t i = 0; i < records.size(); ++i) {
            if (!IsCondemned(records[i])) {
                if (kept != i) {
                    records[kept] = std::move(records[i]);
                }
                ++kept;
            }
        }
        removed = static_cast<std::int64_t>(records.size() - kept);
        records.resize(kept);
    }
    cache.Assign(std::move(records));
    return removed;
}

std::int64_t OptimizeCache(SongCache& cache, int expireMode) {
    return OptimizeCache(cache, expireMode, NowStamp14());
}

void TrimCache(SongCache& cache, std::int32_t limit, std::int16_t frozen) {
    if (frozen != 0 || cache.UpperBound() <= limit) {
        return;
    }
    SortSongs(kKeyLastUsed, cache);
    std::vector<PackedSong> records = cache.TakeAll();
    const std::size_t keep = limit > 0 ? static_cast<std::size_t>(limit) : 0;
    records.erase(records.begin(), records.end() - static_cast<std::ptrdiff_t>(keep));
    cache.Assign(std::move(records));
    SortSongs(kKeyPath, cache);
}

void SaveCacheSlow() {}

}  // namespace jk
