#include "app/JsonLine.h"

#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace jk {
namespace {

TEST(JsonLine, EscapesEverythingJsonCannotHoldAsItStands) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"plain", "\"plain\""},
        {"quote \" and \\ backslash", "\"quote \\\" and \\\\ backslash\""},
        {"tab\tnew\nline\rcr", "\"tab\\tnew\\nline\\rcr\""},
        {std::string("nul\0bell\x07", 9), "\"nul\\u0000bell\\u0007\""},
        {"\x1f\b\f", "\"\\u001f\\b\\f\""},
        {"Bj\xC3\xB6rk \xE2\x82\xAC \xF0\x9F\x8E\xB5",
         "\"Bj\xC3\xB6rk \xE2\x82\xAC \xF0\x9F\x8E\xB5\""},
        {"bad \xFF byte", "\"bad \xEF\xBF\xBD byte\""},
        {"cut \xE2\x82", "\"cut \xEF\xBF\xBD\xEF\xBF\xBD\""},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(JsonQuoted(text), expected);
    }
}

TEST(JsonLine, BuildsOneObjectInTheOrderGiven) {
    JsonLine line;
    line.AddText("section", "Options").AddInteger("Track", -3).AddNumber("value", 7200.5);
    line.AddNumber("whole", 6930).AddNumber("inf", std::numeric_limits<double>::infinity());
    line.AddBool("yes", true).AddBool("no", false);
    EXPECT_EQ(line.Text(),
              "{\"section\":\"Options\",\"Track\":-3,\"value\":7200.5,\"whole\":6930,\"inf\":null,"
              "\"yes\":true,\"no\":false}");
    EXPECT_EQ(JsonLine().Text(), "{}");
}

TEST(JsonLine, WritesASongWithItsFieldNames) {
    SongInfo song;
    song.Title = "A \"quoted\" title";
    song.Path = "/music/a.mp3";
    song.Track = 7;
    song.Reserved = -1;
    EXPECT_EQ(
        SongJsonLine(song),
        "{\"Title\":\"A \\\"quoted\\\" title\",\"Artist\":\"\",\"Album\":\"\",\"Comment\":\"\","
        "\"Genre\":\"\",\"Year\":\"\",\"Bitrate\":\"\",\"Date\":\"\",\"Size\":\"\",\"Time\":\"\","
        "\"Path\":\"/music/a.mp3\",\"Volume\":\"\",\"LastUsed\":\"\",\"Reserved\":-1,"
        "\"Track\":7}");
}

}  // namespace
}  // namespace jk
