#include "finders/SizeDateMatch.h"

#include "util/Text.h"

namespace jk {

Verdict FallsBetween(const CivilMoment& date, std::string_view text) {
    const std::string_view trimmed = Trim(text);
    const std::size_t first = trimmed.find(' ');
    if (first == std::string_view::npos) {
        return Verdict::NoMatch;
    }
    const std::size_t second = trimmed.find(' ', first + 1);
    if (second == std::string_view::npos) {
        return Verdict::NoMatch;
    }
    const std::optional<CivilMoment> from = ParseUserDate(trimmed.substr(0, first + 1));
    const std::optional<CivilMoment> to = ParseUserDate(trimmed.substr(second + 1));
    if (!from || !to) {
        return Verdict::Failed;
    }
    const bool inside = DateDiff(DateInterval::Day, *from, date) >= 0 &&
                        DateDiff(DateInterval::Day, date, *to) >= 0;
    return inside ? Verdict::Match : Verdict::NoMatch;
}

SizeDateTest::SizeDateTest(const SizeDateCriteria& criteria, const CivilMoment& now)
    : m_criteria(criteria), m_now(now) {
    m_sizeLimit = Val(criteria.SizeText);
    m_date = ParseUserDate(criteria.DateText);
    m_lastCount = Val(criteria.LastCount);
    m_guardFails = !m_date && criteria.SizeMode > kSizeIrrelevant;
    // Anything but "any time" on the first option reads the record's date.
    m_needsDate = !criteria.LastWritten || criteria.TimeMode != kAnyTime;
    m_active = criteria.SizeMode != kSizeIrrelevant || m_needsDate;
    if (!m_guardFails && criteria.LastWritten) {
        // The failures that do not depend on the record: Combo5 read as a date.
        const bool beforeOrAfter = criteria.TimeMode == kBefore || criteria.TimeMode == kAfter;
        m_alwaysFails = (beforeOrAfter && !m_date) ||
                        (criteria.TimeMode == kBetween &&
                         FallsBetween(CivilMoment{}, criteria.DateText) == Verdict::Failed);
    }
}

Verdict SizeDateTest::DateVerdict(const CivilMoment& date) const {
    if (m_criteria.LastWritten) {
        switch (m_criteria.TimeMode) {
            case kBefore:
                return DateDiff(DateInterval::Day, date, *m_date) > 0 ? Verdict::Match
                                                                      : Verdict::NoMatch;
            case kAfter:
                return DateDiff(DateInterval::Day, date, *m_date) < 0 ? Verdict::Match
                                                                      : Verdict::NoMatch;
            case kBetween:
                return FallsBetween(date, m_criteria.DateText);
            default:
                return Verdict::NoMatch;
        }
    }
    if (m_criteria.LastUnit < 0 || m_criteria.LastUnit > 3) {
        return Verdict::NoMatch;
    }
    const auto interval = static_cast<DateInterval>(m_criteria.LastUnit);
    return static_cast<double>(DateDiff(interval, date, m_now)) <= m_lastCount ? Verdict::Match
                                                                               : Verdict::NoMatch;
}

Verdict SizeDateTest::Match(std::string_view size, std::string_view date) const {
    if (!m_active) {
        return Verdict::Match;
    }
    bool sizeOk = false;
    const double kilobytes = Val(size) / 1024.0;
    switch (m_criteria.SizeMode) {
        case kSizeLessThan:
            sizeOk = kilobytes < m_sizeLimit;
            break;
        case kSizeGreaterThan:
            sizeOk = kilobytes > m_sizeLimit;
            break;
        case kSizeIrrelevant:
            sizeOk = true;
            break;
        default:
            break;
    }
    if (m_guardFails) {
        return Verdict::NoMatch;
    }
    if (m_alwaysFails) {
        return Verdict::Failed;
    }
    bool dateOk = true;
    if (m_needsDate) {
        if (m_criteria.LastWritten && m_criteria.TimeMode != kBefore &&
            m_criteria.TimeMode != kAfter && m_criteria.TimeMode != kBetween) {
            return Verdict::NoMatch;  // a row of Combo4 that does not exist
        }
        const std::optional<CivilMoment> fileDate = ParseRecordDate(date);
        if (!fileDate) {
            dateOk = false;
        } else {
            const Verdict verdict = DateVerdict(*fileDate);
            if (verdict == Verdict::Failed) {
                return verdict;
            }
            dateOk = verdict == Verdict::Match;
        }
    }
    return sizeOk && dateOk ? Verdict::Match : Verdict::NoMatch;
}

}  // namespace jk
