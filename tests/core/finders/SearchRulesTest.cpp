// The rules of a search that hold without a window: the text test, the size and date test with
// FallsBetween and DateDiff, the dates typed and stored, the histories, the rows and the
// statistics line.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "finders/ResultRows.h"
#include "finders/SearchDates.h"
#include "finders/SearchFields.h"
#include "finders/SearchHistory.h"
#include "finders/SizeDateMatch.h"
#include "finders/TextTest.h"
#include "util/TimeHelpers.h"
#include "util/Utf8.h"

namespace jk {
namespace {

SearchFieldSet Only(std::initializer_list<SearchField> fields) {
    SearchFieldSet set;
    for (const SearchField f : fields) {
        set.set(static_cast<std::size_t>(f));
    }
    return set;
}

TEST(TextTest, FollowsInStrOverTheCheckedFields) {
    SongInfo song;
    song.Title = "Love Will Tear Us Apart";
    song.Artist = "Joy Division";
    song.Year = "1995";
    song.Path = "/music/jd/love.mp3";
    song.Comment = "";
    song.Volume = "Été à Paris";
    const SearchFieldSet all = ParseFieldFlags("111111111");
    struct Case {
        std::string query;
        bool binary;
        SearchFieldSet fields;
        bool found;
    };
    const std::vector<Case> cases = {
        {"love", false, all, true},
        {"love", true, all, true},  // in the path
        {"Love", true, Only({SearchField::Title}), true},
        {"love", true, Only({SearchField::Title}), false},
        {" love", false, Only({SearchField::Title}), false},    // never trimmed
        {"us apart", false, Only({SearchField::Title}), true},  // one literal, blanks included
        {"tear apart", false, all, false},                      // not split into words
        {"199", false, Only({SearchField::Year}), true},        // a decade is a substring
        {"", false, Only({SearchField::Title}), true},          // empty finds a non-empty field
        {"", false, Only({SearchField::Comment}), false},       // an empty field never matches
        {"love", false, SearchFieldSet(), false},               // nothing checked, nothing found
        {"ÉTÉ À", false, Only({SearchField::Volume}), true},    // folded per character
        {"ÉTÉ", true, Only({SearchField::Volume}), false},
        {"joy", false, Only({SearchField::Title, SearchField::Album}), false},
        {"\xC3", false, all, false},  // a lone byte is no "É"
        {std::string(10240, 'x'), false, all, false},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(TextTest(song, c.fields, TextQuery(c.query, c.binary)), c.found)
            << "query \"" << c.query << "\" binary " << c.binary;
    }
}

TEST(TextTest, FoldedFindingEqualsTheCharacterWiseCompare) {
    // The byte-wise search over folded text must find exactly what FindNoCase finds, broken
    // bytes and letters beyond ASCII included.
    const std::vector<std::string> pieces = {
        "a", "B",    "é", "É", "ß", "İ", "ı", "\xC3", "\xA9", "Ω", "ω", "K", "\xE2\x84\xAA",
        " ", "\xFF", "z"};
    std::uint32_t seed = 7;
    const auto next = [&seed] {
        seed = seed * 1103515245 + 12345;
        return (seed >> 16) & 0x7FFF;
    };
    for (int round = 0; round < 5000; ++round) {
        std::string hay;
        std::string needle;
        for (std::uint32_t n = next() % 8; n > 0; --n) {
            hay += pieces[next() % pieces.size()];
        }
        for (std::uint32_t n = next() % 3 + 1; n > 0; --n) {
            needle += pieces[next() % pieces.size()];
        }
        const bool expected = !hay.empty() && ContainsNoCase(hay, needle);
        EXPECT_EQ(TextQuery(needle, false).Found(hay), expected) << hay << " / " << needle;
    }
}

TEST(SearchFields, FlagsReadAndWrittenInMenuOrder) {
    EXPECT_EQ(FieldFlagsText(ParseFieldFlags("101x1")), "101010000");
    EXPECT_EQ(FieldFlagsText(ParseFieldFlags("111111111")), "111111111");
    EXPECT_EQ(SearchTestOrder().front(), SearchField::Filename);
    EXPECT_EQ(SearchTestOrder().back(), SearchField::Volume);
    EXPECT_EQ(SearchFieldEntries()[6].Caption, "Filename");
}

CivilMoment At(int y, int mo, int d, int h = 0, int mi = 0, int s = 0) {
    return CivilMoment{y, mo, d, h, mi, s};
}

TEST(DateDiff, CountsCalendarBoundariesNotSpans) {
    struct Case {
        DateInterval interval;
        CivilMoment from;
        CivilMoment to;
        std::int64_t diff;
    };
    const std::vector<Case> cases = {
        {DateInterval::Day, At(2000, 1, 1, 23, 59), At(2000, 1, 2, 0, 1), 1},  // a midnight
        {DateInterval::Day, At(2000, 1, 2, 0, 0), At(2000, 1, 2, 23, 59), 0},
        {DateInterval::Day, At(2000, 3, 1), At(2000, 2, 28), -2},  // leap year
        {DateInterval::Hour, At(2000, 1, 1, 10, 59), At(2000, 1, 1, 11, 0), 1},
        {DateInterval::Hour, At(2000, 1, 1, 23, 30), At(2000, 1, 2, 0, 10), 1},
        {DateInterval::Week, At(2000, 1, 1), At(2000, 1, 2), 1},  // Saturday to Sunday
        {DateInterval::Week, At(2000, 1, 2), At(2000, 1, 8), 0},  // Sunday to Saturday
        {DateInterval::Week, At(2000, 1, 9), At(2000, 1, 1), -2},
        {DateInterval::Month, At(2000, 1, 31), At(2000, 2, 1), 1},
        {DateInterval::Month, At(2000, 2, 1), At(2000, 2, 29), 0},
        {DateInterval::Month, At(1999, 12, 15), At(2000, 1, 1), 1},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(DateDiff(c.interval, c.from, c.to), c.diff)
            << static_cast<int>(c.interval) << " " << c.from.Year << "-" << c.from.Month << "-"
            << c.from.Day;
    }
}

TEST(SearchDates, TypedDatesInTheirThreeForms) {
    EXPECT_EQ(ParseUserDate("1998-11-28"), At(1998, 11, 28));
    EXPECT_EQ(ParseUserDate(" 11/28/98 "), At(1998, 11, 28));
    EXPECT_EQ(ParseUserDate("11/28/1998"), At(1998, 11, 28));
    EXPECT_EQ(ParseUserDate("1/1/29"), At(2029, 1, 1));
    EXPECT_EQ(ParseUserDate("1/1/30"), At(1930, 1, 1));
    EXPECT_EQ(ParseUserDate("1/1/00"), At(2000, 1, 1));
    for (const char* bad : {"31/31/99", "2/29/2001", "", "today", "1/1", "1/1/98 and", "0/1/98"}) {
        EXPECT_FALSE(ParseUserDate(bad)) << bad;
    }
}

TEST(SearchDates, RecordDatesReadBackAsWritten) {
    // 2000-02-26 23:22:33 local time, written by the routine that writes songs' dates.
    std::tm tm{};
    tm.tm_year = 100;
    tm.tm_mon = 1;
    tm.tm_mday = 26;
    tm.tm_hour = 23;
    tm.tm_min = 22;
    tm.tm_sec = 33;
    tm.tm_isdst = -1;
    const std::string written = FormatLocaleDateTime(static_cast<std::int64_t>(std::mktime(&tm)));
    EXPECT_EQ(ParseRecordDate(written), At(2000, 2, 26, 23, 22, 33)) << written;
    // Catalogues made on older systems hold the US form with a 12-hour clock.
    EXPECT_EQ(ParseRecordDate("2/26/00 11:22:33 PM"), At(2000, 2, 26, 23, 22, 33));
    EXPECT_EQ(ParseRecordDate("2/26/00 12:05 AM"), At(2000, 2, 26, 0, 5, 0));
    EXPECT_EQ(ParseRecordDate("2000-02-26"), At(2000, 2, 26));
    EXPECT_FALSE(ParseRecordDate("2/26/00 25:00"));
    EXPECT_FALSE(ParseRecordDate("File non-existant"));
}

TEST(FallsBetween, ReadsTwoDatesAroundTheWordsBetween) {
    const CivilMoment day = At(1998, 6, 1, 12);
    struct Case {
        const char* text;
        Verdict verdict;
    };
    const std::vector<Case> cases = {
        {"1/1/98 - 11/28/98", Verdict::Match},
        {"1/1/98 and 11/28/98", Verdict::Match},  // the words between are never read
        {"1/1/98 ?! 11/28/98", Verdict::Match},
        {"6/1/98 - 6/1/98", Verdict::Match},  // both ends inclusive, by the day
        {"6/2/98 - 12/1/98", Verdict::NoMatch},
        {"1/1/98 - 5/31/98", Verdict::NoMatch},
        {"1/1/98 -11/28/98", Verdict::NoMatch},  // one blank: false for every file
        {"1/1/98", Verdict::NoMatch},
        {"  1/1/98 - 11/28/98  ", Verdict::Match},  // trimmed first
        {"1/1/98  -  11/28/98", Verdict::Failed},   // behind the second blank: "-  11/28/98"
        {"31/31/99 - 1/1/00", Verdict::Failed},
        {"1/1/98 - later", Verdict::Failed},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(FallsBetween(day, c.text), c.verdict) << c.text;
    }
}

TEST(SizeDateMatch, SizesInKilobytesAndTheGuard) {
    const CivilMoment now = At(2000, 3, 1, 12);
    struct Case {
        SizeDateCriteria criteria;
        const char* size;
        const char* date;
        Verdict verdict;
    };
    const auto crit = [](int sizeMode, const char* kb, int timeMode, const char* dateText) {
        SizeDateCriteria c;
        c.SizeMode = sizeMode;
        c.SizeText = kb;
        c.TimeMode = timeMode;
        c.DateText = dateText;
        return c;
    };
    const char* fileDate = "2/26/00 11:22:33 PM";
    const std::vector<Case> cases = {
        {crit(kSizeIrrelevant, "", kAnyTime, "not a date"), "1", fileDate, Verdict::Match},
        {crit(kSizeLessThan, "5000", kAnyTime, "1/1/00"), "5119999", fileDate, Verdict::Match},
        {crit(kSizeLessThan, "5000", kAnyTime, "1/1/00"), "5120000", fileDate, Verdict::NoMatch},
        {crit(kSizeGreaterThan, "5000", kAnyTime, "1/1/00"), "5120000", fileDate,
         Verdict::NoMatch},  // equal fails both ways
        {crit(kSizeGreaterThan, "1", kAnyTime, "1/1/00"), "1025", fileDate, Verdict::Match},
        {crit(kSizeGreaterThan, "1", kAnyTime, "1/1/00"), "1024", fileDate, Verdict::NoMatch},
        {crit(kSizeLessThan, "abc", kAnyTime, "1/1/00"), "0", fileDate, Verdict::NoMatch},
        {crit(kSizeGreaterThan, "abc", kAnyTime, "1/1/00"), "1", fileDate, Verdict::Match},
        // The guard: a size criterion beside a non-date finds nothing, even with "any time".
        {crit(kSizeLessThan, "5000", kAnyTime, "not a date"), "1", fileDate, Verdict::NoMatch},
        {crit(kSizeLessThan, "5000", kBetween, "1/1/00 - 3/1/00"), "1", fileDate, Verdict::NoMatch},
        {crit(kSizeIrrelevant, "", kBetween, "1/1/00 - 3/1/00"), "1", fileDate, Verdict::Match},
        {crit(kSizeIrrelevant, "", kBetween, "1/1/00 - soon"), "1", fileDate, Verdict::Failed},
        {crit(kSizeIrrelevant, "", kBefore, "2/27/00"), "1", fileDate, Verdict::Match},
        {crit(kSizeIrrelevant, "", kBefore, "2/26/00"), "1", fileDate, Verdict::NoMatch},
        {crit(kSizeIrrelevant, "", kAfter, "2/25/00"), "1", fileDate, Verdict::Match},
        {crit(kSizeIrrelevant, "", kAfter, "2/26/00"), "1", fileDate, Verdict::NoMatch},
        {crit(kSizeIrrelevant, "", kBefore, "never"), "1", fileDate, Verdict::Failed},
        {crit(kSizeIrrelevant, "", kBefore, "2/27/00"), "1", "no date", Verdict::NoMatch},
    };
    for (const Case& c : cases) {
        const SizeDateTest test(c.criteria, now);
        EXPECT_EQ(test.Match(c.size, c.date), c.verdict)
            << c.criteria.SizeMode << " " << c.criteria.SizeText << " " << c.criteria.TimeMode
            << " " << c.criteria.DateText << " size " << c.size;
    }
    EXPECT_FALSE(SizeDateTest(crit(kSizeIrrelevant, "", kAnyTime, ""), now).Active());
    EXPECT_TRUE(SizeDateTest(crit(kSizeIrrelevant, "", kBetween, "1/1/00 - x"), now).AlwaysFails());
    EXPECT_FALSE(SizeDateTest(crit(kSizeLessThan, "1", kBetween, "1/1/00 - x"), now).AlwaysFails());
}

TEST(SizeDateMatch, WrittenDuringTheLastIntervals) {
    const CivilMoment now = At(2000, 3, 5, 0, 30);  // a Sunday, just after midnight
    struct Case {
        int unit;
        const char* count;
        const char* date;
        Verdict verdict;
    };
    const std::vector<Case> cases = {
        {0, "1", "3/4/00 11:59 PM", Verdict::Match},  // one hour start crossed
        {0, "0", "3/4/00 11:59 PM", Verdict::NoMatch},
        {1, "1", "3/4/00 12:01 AM", Verdict::Match},  // one midnight
        {1, "0", "3/4/00 11:59 PM", Verdict::NoMatch},
        {2, "0", "3/5/00 12:10 AM", Verdict::Match},  // no Sunday crossed
        {2, "0", "3/4/00 11:59 PM", Verdict::NoMatch},
        {3, "0", "3/1/00", Verdict::Match},
        {3, "0", "2/29/00", Verdict::NoMatch},
        {3, "x", "3/1/00", Verdict::Match},  // Val gives 0
    };
    for (const Case& c : cases) {
        SizeDateCriteria criteria;
        criteria.LastWritten = false;
        criteria.LastUnit = c.unit;
        criteria.LastCount = c.count;
        EXPECT_EQ(SizeDateTest(criteria, now).Match("1", c.date), c.verdict)
            << c.unit << " " << c.count << " " << c.date;
    }
}

TEST(SearchHistory, FifteenEntriesTrimmedAndWithoutRepeats) {
    TextList15 list;
    for (int i = 15; i >= 1; --i) {
        list[static_cast<std::size_t>(i)] = "q" + std::to_string(i);
    }
    PushHistory(list, "  Q7  ");  // trimmed, and the old "q7" goes
    EXPECT_EQ(list[1], "Q7");
    EXPECT_EQ(list[2], "q1");
    EXPECT_EQ(list[7], "q6");
    EXPECT_EQ(list[8], "q8");
    EXPECT_EQ(list[15], "q15");
    PushHistory(list, "new");  // full: the last drops off the end
    EXPECT_EQ(list[1], "new");
    EXPECT_EQ(list[15], "q14");
}

TEST(SearchHistory, FourEntriesKeepTheirQuirk) {
    TextList4 list = {"", "Alpha", "beta", "gamma", "delta"};
    PushFour(list, "ALPHA");  // at position 1: nothing changes, the old form stays
    EXPECT_EQ(list, (TextList4{"", "Alpha", "beta", "gamma", "delta"}));
    PushFour(list, "Gamma");  // at position 3: those above move down over it
    EXPECT_EQ(list, (TextList4{"", "Gamma", "Alpha", "beta", "delta"}));
    PushFour(list, "new");  // not found: the fourth is lost
    EXPECT_EQ(list, (TextList4{"", "new", "Gamma", "Alpha", "beta"}));
}

TEST(SearchHistory, TypeAheadTakesTheFirstItemBeginningWithTheText) {
    const std::vector<std::string> items = {"rolling stones", "Rock", "rocket", ""};
    EXPECT_EQ(*CompletionFor(items, "ro"), "rolling stones");
    EXPECT_EQ(*CompletionFor(items, "ROC"), "Rock");
    EXPECT_EQ(CompletionFor(items, "stones"), nullptr);  // InStr must be 1, not just > 0
    EXPECT_EQ(CompletionFor(items, ""), nullptr);
}

TEST(ResultRows, RealHitsTrimmedCatalogueHitsAsStored) {
    SongInfo song;
    song.Title = "   ";
    song.Artist = " Artist ";
    song.Bitrate = "  128000";
    song.Path = " /music/a b.mp3 ";
    song.Size = " 123";
    const ListRow real = RealHitRow(song);
    EXPECT_EQ(real.Get(Column::Title), "a b.mp3");
    EXPECT_EQ(real.Get(Column::Artist), "Artist");
    EXPECT_EQ(real.Get(Column::Bitrate), "1280");
    EXPECT_EQ(real.Get(Column::Filename), "/music/a b.mp3");
    EXPECT_EQ(real.Get(Column::Size), "123");
    song.Bitrate = "96";
    EXPECT_EQ(RealHitRow(song).Get(Column::Bitrate), "96  ");

    SongFieldViews fields{};
    fields[kKeyTitle - 1] = " Kept ";
    fields[kKeyBitrate - 1] = " 128";
    fields[kKeyPath - 1] = "d:\\rock\\x.mp3";
    fields[kKeyVolume - 1] = "Disc";
    const ListRow stored = CatalogueHitRow(fields);
    EXPECT_EQ(stored.Get(Column::Title), " Kept ");
    EXPECT_EQ(stored.Get(Column::Bitrate), " 128");
    EXPECT_EQ(stored.Get(Column::Volume), "Disc");
    fields[kKeyTitle - 1] = " ";
    EXPECT_EQ(CatalogueHitRow(fields).Get(Column::Title), "x.mp3");
}

TEST(ResultsStats, SongsTimeAndSize) {
    const auto row = [](const char* time, const char* size) {
        ListRow r;
        r.Set(Column::Time, time);
        r.Set(Column::Size, size);
        return r;
    };
    EXPECT_EQ(ResultsStats({}, true), " No results.");
    EXPECT_EQ(ResultsStats({row("03:25", "3000000")}, true), " 1 song - 00:03:25, 2.86 MB");
    RowList twelve(12, row("10:00", "1048576"));
    EXPECT_EQ(ResultsStats(twelve, true), " 12 songs - 02:00:00, 12.00 MB");
    RowList big = {row("100:05", "1073741823"), row("00:01", "1")};
    EXPECT_EQ(ResultsStats(big, true), " 2 songs - 01:40:06, 1024.00 MB");
    EXPECT_EQ(ResultsStats(big, false), " 2 songs - 00:10:06, 1024.00 MB");  // two digits
    big.push_back(row("", "1048576"));
    EXPECT_EQ(ResultsStats(big, true), " 3 songs - 01:40:06, 1.00 GB");
}

}  // namespace
}  // namespace jk
