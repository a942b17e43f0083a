#pragma once

// The size and date test of a search (SizeDateMatch) with its FallsBetween, set up once per
// search from the wizard's second page.

#include <optional>
#include <string>
#include <string_view>

#include "finders/SearchDates.h"

namespace jk {

// Combo3's rows.
inline constexpr int kSizeIrrelevant = 0;
inline constexpr int kSizeLessThan = 1;
inline constexpr int kSizeGreaterThan = 2;
// Combo4's rows.
inline constexpr int kAnyTime = 0;
inline constexpr int kBefore = 1;
inline constexpr int kAfter = 2;
inline constexpr int kBetween = 3;
// Combo6's rows are the intervals hours, days, weeks, months in DateInterval's order.

struct SizeDateCriteria {
    int SizeMode = kSizeIrrelevant;  // Combo3
    std::string SizeText;            // Text1, in kilobytes of 1024 bytes
    bool LastWritten = true;         // Option1 "Last written"; false: Option2 "... during the last"
    int TimeMode = kAnyTime;         // Combo4
    std::string DateText;            // Combo5
    int LastUnit = 1;                // Combo6
    std::string LastCount;           // Text2
};

enum class Verdict : std::uint8_t {
    Match,
    NoMatch,
    // A date the test needs is no date: the run-time failure that ends the search.
    Failed,
};

// FallsBetween(date, text): false with fewer than two blanks in the trimmed text; the first
// date runs through the first blank, the second stands behind the second blank, and whatever
// lies between them is never read. True when the date lies on or between the two days. Failed
// when either of the two is no date.
Verdict FallsBetween(const CivilMoment& date, std::string_view text);

class SizeDateTest {
public:
    SizeDateTest() = default;
    SizeDateTest(const SizeDateCriteria& criteria, const CivilMoment& now);

    // SizeDateMatch(size, date) with the record's Size (its numeric value) and Date texts. A
    // record whose Date is no date passes no date criterion.
    Verdict Match(std::string_view size, std::string_view date) const;

    // False when every record passes whatever its size and date (nothing to read per record).
    bool Active() const { return m_active; }
    // Failed for every record, whatever it holds (a "between" token that is no date, say).
    bool AlwaysFails() const { return m_alwaysFails; }

private:
    Verdict DateVerdict(const CivilMoment& date) const;

    SizeDateCriteria m_criteria;
    CivilMoment m_now;
    double m_sizeLimit = 0;
    std::optional<CivilMoment> m_date;  // Combo5 as a date
    bool m_guardFails = false;
    bool m_active = false;
    bool m_alwaysFails = false;
    bool m_needsDate = false;
    double m_lastCount = 0;
};

}  // namespace jk
