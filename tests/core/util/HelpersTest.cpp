#include <gtest/gtest.h>

#include <cstdlib>

#include "support/ZoneScope.h"
#include "util/Codepage.h"
#include "util/PathHelpers.h"
#include "util/SpanTemplate.h"
#include "util/StringHelpers.h"
#include "util/TimeHelpers.h"

namespace jk {
namespace {

TEST(PathHelpersTest, SplitsPathsAtTheSeparator) {
    EXPECT_EQ(BareName("/music/a.mp3"), "a.mp3");
    EXPECT_EQ(BareName("/music/"), "");
    EXPECT_EQ(BareName("a.mp3"), "a.mp3");
    EXPECT_EQ(ParentPath("/music/rock/a.mp3"), "/music/rock");
    EXPECT_EQ(ParentPath("/music/rock/"), "/music");
    EXPECT_EQ(ParentPath("nothing"), "nothing");
    EXPECT_EQ(LastFolder("/music/rock/"), "rock");
    EXPECT_EQ(TopFolder("disc/folder/a.mp3"), "disc");
    EXPECT_EQ(StripExtension("a.b.mp3"), "a.b");
    EXPECT_EQ(StripExtension(".mp3"), ".mp3");
    EXPECT_EQ(StripExtension("noext"), "noext");
}

TEST(PathHelpersTest, DrivePartIsTheMountRootOfRemovableMedia) {
    const struct {
        const char* path;
        const char* drive;
        const char* relative;
    } cases[] = {
        {"d:\\music\\a.mp3", "d:", "\\music\\a.mp3"},
        {"/media/ann/DISC1/rock/a.mp3", "/media/ann/DISC1", "/rock/a.mp3"},
        {"/run/media/ann/DISC 2/a.mp3", "/run/media/ann/DISC 2", "/a.mp3"},
        {"/mnt/usb/a.mp3", "/mnt/usb", "/a.mp3"},
        {"/Volumes/Backup/a.mp3", "/Volumes/Backup", "/a.mp3"},
        {"/home/ann/Music/a.mp3", "/", "/home/ann/Music/a.mp3"},
        {"/media/", "/", "/media/"},
        {"/", "/", "/"},
        // Only the four forms are mount roots, and only with the path going on below them.
        {"/media/song.mp3", "/", "/media/song.mp3"},
        {"/media/u/Disc/a.mp3", "/media/u/Disc", "/a.mp3"},
        {"/media/u/a.mp3", "/", "/media/u/a.mp3"},
        {"/media/u/Disc/", "/media/u/Disc", "/"},
        {"/run/media/u/X/b.mp3", "/run/media/u/X", "/b.mp3"},
        {"/run/media/x.mp3", "/", "/run/media/x.mp3"},
        {"/run/media/u/x.mp3", "/", "/run/media/u/x.mp3"},
        {"/mnt/song.mp3", "/", "/mnt/song.mp3"},
        {"/mnt/Disc/a.mp3", "/mnt/Disc", "/a.mp3"},
        {"/mnt//a.mp3", "/", "/mnt//a.mp3"},
        {"/Volumes/V/a.mp3", "/Volumes/V", "/a.mp3"},
        {"/Volumes/a.mp3", "/", "/Volumes/a.mp3"},
        {"/media", "/", "/media"},
        {"d:\\old\\x.mp3", "d:", "\\old\\x.mp3"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(DrivePart(c.path), c.drive) << c.path;
        EXPECT_EQ(RelativeRoot(c.path), c.relative) << c.path;
    }
    EXPECT_TRUE(IsRealPath("/x"));
    EXPECT_FALSE(IsRealPath("DISC1/x"));
    EXPECT_EQ(JoinPath("/a/", "/b"), "/a/b");
}

TEST(StringHelpersTest, FixedWidthFieldsCountCharacters) {
    EXPECT_EQ(PadField("  abc  ", 5), "abc  ");
    EXPECT_EQ(PadField("Motörhead", 4), "Motö");
    std::string left = "ab";
    PadLeft(left, 4);
    EXPECT_EQ(left, "  ab");
    std::string right = " abcdef";
    PadRight(right, 3);
    EXPECT_EQ(right, " ab");
    EXPECT_EQ(DropLeft("äbc", 1), "bc");
    EXPECT_EQ(DropLeft("abc", 9), "");
    EXPECT_EQ(MidRange("abcdef", 2, 4), "bcd");
    EXPECT_EQ(UpperFirst("éa"), "Éa");
    EXPECT_EQ(InStrSafe("c", "abc"), 3u);
    EXPECT_EQ(InStrSafe("C", "abc"), 0u);
}

TEST(StringHelpersTest, NullFieldsAndCharacterReplacement) {
    EXPECT_EQ(CutAtNull(std::string_view("ab\0cd", 5)), "ab");
    std::string fields("one\0two", 7);
    EXPECT_EQ(TakeNullField(fields), "one");
    EXPECT_EQ(fields, "two");
    EXPECT_EQ(TakeNullField(fields), "two");
    EXPECT_EQ(fields, "");
    EXPECT_EQ(ReplaceChar("a_b_c", "_", " "), "a b c");
    EXPECT_EQ(ReplaceChar("a_b_c", "_", ""), "abc");
    EXPECT_EQ(ReplaceChar("a_b_c", "_b", "x"), "a_b_c");
    EXPECT_EQ(ReplaceChar("a b", " ", "%20"), "a%20b");
    EXPECT_TRUE(IsAllDigits(""));
    EXPECT_FALSE(IsAllDigits("12a"));
}

TEST(StringHelpersTest, ColoursTurnFromBlueGreenRedToHtml) {
    EXPECT_EQ(ColorToHtml(0x0000CC), "\"#CC0000\"");
    EXPECT_EQ(ColorToHtmlPlain(0xE6E6E6), "#E6E6E6");
    EXPECT_EQ(ColorToHtmlPlain(0x010203), "#030201");
    EXPECT_EQ(ColorToHtmlPlain(0), "#000000");
}

TEST(TimeHelpersTest, FormatsAndParsesPlayingTimes) {
    EXPECT_EQ(FormatSeconds(0), "00:00");
    EXPECT_EQ(FormatSeconds(225), "03:45");
    EXPECT_EQ(FormatSeconds(6005), "100:05");
    EXPECT_EQ(FormatHMS(3725), "01:02:05");
    EXPECT_EQ(FormatHMS(59), "00:00:59");
    EXPECT_EQ(ParseTime("03:45"), 225);
    EXPECT_EQ(ParseTime("0345"), 225);
    EXPECT_EQ(ParseTime("5"), 0);
    // Two characters only: the first two are minutes, the last two seconds.
    EXPECT_EQ(ParseTime("100:05"), 10 * 60 + 5);
    EXPECT_EQ(ParseTime("100:05", true), 100 * 60 + 5);
    EXPECT_EQ(ParseTime("10005", true), 100 * 60 + 5);
}

TEST(TimeHelpersTest, StampsRoundTripThroughLocalTime) {
    const test::ZoneScope zone("UTC");
    EXPECT_EQ(FormatStamp14(0), "19700101000000");
    std::int64_t epoch = -1;
    ASSERT_TRUE(ParseStamp14("20001231235959", epoch));
    EXPECT_EQ(FormatStamp14(epoch), "20001231235959");
    EXPECT_FALSE(ParseStamp14("2000123123595", epoch));
    EXPECT_FALSE(ParseStamp14("2000133123595x", epoch));
    EXPECT_EQ(LocaleTextOfStamp14("garbage"), "garbage");
}

TEST(SpanTemplateTest, NamesFirstAndFollowingPages) {
    std::string first;
    ASSERT_TRUE(ValidSpanTemplate("list#.html /index.html", "/home/ann/web", first));
    EXPECT_EQ(first, "/home/ann/web/index.html");
    EXPECT_EQ(SpanPagePath("list#.html /index.html", "/home/ann/web", 1),
              "/home/ann/web/index.html");
    EXPECT_EQ(SpanPagePath("list#.html /index.html", "/home/ann/web", 2),
              "/home/ann/web/list002.html");
    EXPECT_EQ(SpanPagePath("p#-#.htm/i.htm", "/w/", 12), "/w/p012-012.htm");
    for (const char* bad : {"list.html /index.html", "list#.html", "li?t#.html /i.html",
                            "list#.html /<i>.html", "l|#/x"}) {
        EXPECT_FALSE(ValidSpanTemplate(bad, "/w", first)) << bad;
    }
}

TEST(CodepageTest, Windows1252MapsEveryByteAndBack) {
    std::string all;
    for (int b = 0; b < 256; ++b) {
        all.push_back(static_cast<char>(b));
    }
    const std::string text = DecodeWindows1252(all);
    EXPECT_EQ(EncodeWindows1252(text), all);
    EXPECT_EQ(DecodeWindows1252("\x80\x81\xe9"), "\u20ac\u0081\u00e9");
    EXPECT_EQ(EncodeWindows1252("日本"), "??");
    EXPECT_EQ(Utf8OrWindows1252("caf\xe9"), "café");
    EXPECT_EQ(Utf8OrWindows1252("café"), "café");
}

TEST(CodepageTest, OtherCodepagesComeThroughIconv) {
    const auto cyrillic = SingleByteCodepage::Get("windows-1251");
    EXPECT_EQ(cyrillic->Name(), "windows-1251");
    EXPECT_EQ(cyrillic->Decode("\xcf\xf0\xe8"), "При");
    EXPECT_EQ(cyrillic->Encode("При"), "\xcf\xf0\xe8");
    const auto koi = SingleByteCodepage::Get("KOI8-R");
    EXPECT_EQ(koi->Decode("\xf0\xd2\xc9"), "При");
    EXPECT_EQ(SingleByteCodepage::Get("no-such-page")->Name(), "windows-1252");
    EXPECT_EQ(SingleByteCodepage::Get("")->Name(), "windows-1252");
}

}  // namespace
}  // namespace jk
