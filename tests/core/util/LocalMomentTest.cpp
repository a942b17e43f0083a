#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <random>
#include <string>
#include <vector>

#include <locale.h>

#include "support/ZoneScope.h"
#include "util/TimeHelpers.h"

namespace jk {
namespace {

// The plain way: localtime_r, then printf and strftime with the user's LC_TIME.
std::string PlainStamp(std::int64_t seconds) {
    const auto t = static_cast<std::time_t>(seconds);
    std::tm tm{};
    localtime_r(&t, &tm);
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%04d%02d%02d%02d%02d%02d", tm.tm_year + 1900,
                  tm.tm_mon + 1, tm.tm_mday, tm.tm_hour, tm.tm_min, tm.tm_sec);
    return buffer;
}

std::string PlainLocaleText(std::int64_t seconds) {
    static const locale_t userTime = newlocale(LC_TIME_MASK, "", static_cast<locale_t>(nullptr));
    const auto t = static_cast<std::time_t>(seconds);
    std::tm tm{};
    localtime_r(&t, &tm);
    char buffer[128];
    const std::size_t n = strftime_l(buffer, sizeof buffer, "%x %X", &tm, userTime);
    return std::string(buffer, n);
}

using test::ZoneScope;

TEST(LocalMoment, WritesWhatPrintfAndStrftimeWriteInEveryZone) {
    // Runs of one second, one day and far apart, so that the texts kept from the last call are
    // tried both ways; each zone again after the other, and across summer time changes.
    std::vector<std::int64_t> moments = {0,          1,          -1,         951782400,
                                         1711846799, 1711846800, 1711846801, 1729990800,
                                         4102444800, -2208988800};
    std::mt19937_64 random(4);
    for (int i = 0; i < 400; ++i) {
        const std::int64_t base = static_cast<std::int64_t>(random() % 4000000000ULL) - 100000000;
        moments.push_back(base);
        moments.push_back(base);
        moments.push_back(base + 1);
        moments.push_back(base + 3600);
        moments.push_back(base + 86400);
    }
    for (const char* zone :
         {"UTC", "Europe/Berlin", "America/New_York", "Asia/Kathmandu", "Europe/Berlin"}) {
        const ZoneScope scope(zone);
        for (const std::int64_t moment : moments) {
            const LocalMoment local(moment);
            ASSERT_EQ(local.Stamp14(), PlainStamp(moment)) << zone << " " << moment;
            ASSERT_EQ(local.LocaleText(), PlainLocaleText(moment)) << zone << " " << moment;
            ASSERT_EQ(FormatStamp14(moment), PlainStamp(moment)) << zone << " " << moment;
            ASSERT_EQ(FormatLocaleDateTime(moment), PlainLocaleText(moment))
                << zone << " " << moment;
        }
    }
}

TEST(LocalMoment, YearsOutsideFourDigitsAreWrittenAsPrintfWritesThem) {
    const ZoneScope scope("UTC");
    for (const std::int64_t moment :
         {std::int64_t{-62167219200} - 86400, std::int64_t{253402300800}}) {
        EXPECT_EQ(FormatStamp14(moment), PlainStamp(moment)) << moment;
    }
}

}  // namespace
}  // namespace jk
