#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "util/Codepage.h"
#include "util/Text.h"
#include "util/Utf8.h"

// The edges of the text helpers: each UTF-8 form at its limits and one past them, cuts that
// must land between characters, the holes of windows-1252, and the integer conversions at the
// ends of their ranges.

namespace jk {
namespace {

constexpr char32_t kBad = 0xFFFD;

TEST(Utf8Boundaries, DecodesEachFormAtItsLimitsAndRejectsWhatLiesPast) {
    const struct {
        std::string_view bytes;
        char32_t first;  // what the first decode gives (U+FFFD, one byte, when invalid)
        bool valid;
    } cases[] = {
        {"\x7F", 0x7F, true},
        {"\xC2\x80", 0x80, true},  // the smallest two-byte form
        {"\xDF\xBF", 0x7FF, true},
        {"\xE0\xA0\x80", 0x800, true},
        {"\xED\x9F\xBF", 0xD7FF, true},  // just below the surrogates
        {"\xEE\x80\x80", 0xE000, true},  // just above them
        {"\xEF\xBF\xBD", 0xFFFD, true},  // a genuine replacement character is text
        {"\xEF\xBF\xBF", 0xFFFF, true},
        {"\xF0\x90\x80\x80", 0x10000, true},
        {"\xF4\x8F\xBF\xBF", 0x10FFFF, true},  // the largest code point
        // Overlong forms of characters that have a shorter one.
        {"\xC0\x80", kBad, false},
        {"\xC1\xBF", kBad, false},
        {"\xE0\x9F\xBF", kBad, false},
        {"\xF0\x8F\xBF\xBF", kBad, false},
        // Surrogates, alone or as the pair CESU-8 writes.
        {"\xED\xA0\x80", kBad, false},
        {"\xED\xBF\xBF", kBad, false},
        {"\xED\xA0\xBD\xED\xB8\x80", kBad, false},
        // Past U+10FFFF, and lead bytes no form uses.
        {"\xF4\x90\x80\x80", kBad, false},
        {"\xF5\x80\x80\x80", kBad, false},
        {"\xF8\x88\x80\x80\x80", kBad, false},
        {"\xFE", kBad, false},
        {"\xFF", kBad, false},
        // A continuation byte alone, sequences cut short by the end, and by another character.
        {"\x80", kBad, false},
        {"\xBF", kBad, false},
        {"\xC3", kBad, false},
        {"\xE2\x82", kBad, false},
        {"\xF0\x9F\x8E", kBad, false},
        {"\xC3"
         "A",
         kBad, false},
        {"\xE2\x28\xA1", kBad, false},
        {"\xF0\x9F\x8E"
         "A",
         kBad, false},
    };
    for (const auto& c : cases) {
        const std::string hex = ::testing::PrintToString(std::string(c.bytes));
        std::size_t pos = 0;
        EXPECT_EQ(DecodeUtf8At(c.bytes, pos), c.first) << hex;
        // Invalid bytes are passed one at a time, so nothing valid behind them is swallowed.
        EXPECT_EQ(pos, c.valid ? c.bytes.size() : 1u) << hex;
        EXPECT_EQ(IsValidUtf8(c.bytes), c.valid) << hex;
        EXPECT_EQ(IsValidUtf8("a" + std::string(c.bytes) + "z"), c.valid) << hex;
        const std::size_t chars = CharCount(c.bytes);
        if (c.valid) {
            EXPECT_EQ(chars, 1u) << hex;
            std::string again;
            AppendUtf8(again, c.first);
            EXPECT_EQ(again, c.bytes) << hex;
            EXPECT_EQ(HighestCode(c.bytes), c.first) << hex;
        } else {
            // Each byte of an invalid run counts as a character of its own (ASCII among them).
            EXPECT_EQ(chars, c.bytes.size()) << hex;
        }
        // Text read from a data file is kept exactly when it is valid, else read as windows-1252.
        const std::string kept = Utf8OrWindows1252(c.bytes);
        EXPECT_EQ(kept == c.bytes, c.valid) << hex;
        EXPECT_TRUE(IsValidUtf8(kept)) << hex;
    }
}

TEST(Utf8Boundaries, CutsNeverLandInsideACharacter) {
    // One character of each length: a (1 byte), é (2), € (3), 😀 (4).
    const std::string text = "a\u00E9\u20AC\U0001F600";
    const std::size_t ends[] = {0, 1, 3, 6, 10, 10};  // byte offset after n characters
    for (std::size_t n = 0; n < std::size(ends); ++n) {
        EXPECT_EQ(ByteOffsetOfChar(text, n), ends[n]) << n;
        EXPECT_EQ(CharLeft(text, n), text.substr(0, ends[n])) << n;
        EXPECT_TRUE(IsValidUtf8(CharLeft(text, n))) << n;
        const std::size_t rightStart = ends[4 - std::min<std::size_t>(n, 4)];
        EXPECT_EQ(CharRight(text, n), text.substr(rightStart)) << n;
        EXPECT_TRUE(IsValidUtf8(CharRight(text, n))) << n;
    }
    EXPECT_EQ(CharCount(text), 4u);
    EXPECT_EQ(CharMid(text, 2, 2), "\u00E9\u20AC");
    EXPECT_EQ(CharMid(text, 4), "\U0001F600");
    EXPECT_EQ(CharMid(text, 0, 1), "a");  // a start before the first counts from the first
    EXPECT_EQ(CharMid(text, 5), "");
    EXPECT_EQ(CharMid(text, 3, 0), "");

    // A sequence cut short at the end: its bytes count one each, and a cut may fall between
    // them, since they are not one character.
    const std::string cut = "ab\xE2\x82";
    EXPECT_EQ(CharCount(cut), 4u);
    EXPECT_EQ(CharLeft(cut, 3), "ab\xE2");
    EXPECT_EQ(CharRight(cut, 1), "\x82");
    // An invalid byte right before a valid character leaves the character whole.
    const std::string mixed = "\xFF\u20AC\xC3";
    EXPECT_EQ(CharCount(mixed), 3u);
    EXPECT_EQ(CharLeft(mixed, 2), "\xFF\u20AC");
    EXPECT_EQ(CharMid(mixed, 2, 1), "\u20AC");
}

TEST(Windows1252Boundaries, TheFiveHolesKeepTheirBytesAndTheirNeighboursMap) {
    const struct {
        unsigned char byte;
        char32_t character;
    } cases[] = {
        {0x7F, 0x007F}, {0x80, 0x20AC}, {0x81, 0x0081}, {0x82, 0x201A},
        {0x8C, 0x0152}, {0x8D, 0x008D}, {0x8E, 0x017D}, {0x8F, 0x008F},
        {0x90, 0x0090}, {0x91, 0x2018}, {0x9C, 0x0153}, {0x9D, 0x009D},
        {0x9E, 0x017E}, {0x9F, 0x0178}, {0xA0, 0x00A0}, {0xFF, 0x00FF},
    };
    const SingleByteCodepage& page = SingleByteCodepage::Windows1252();
    for (const auto& c : cases) {
        const std::string byte(1, static_cast<char>(c.byte));
        std::string utf8;
        AppendUtf8(utf8, c.character);
        EXPECT_EQ(page.CharOf(c.byte), c.character) << int{c.byte};
        EXPECT_EQ(DecodeWindows1252(byte), utf8) << int{c.byte};
        EXPECT_EQ(EncodeWindows1252(utf8), byte) << int{c.byte};
    }
    // C1 controls that are not holes have no byte: 0x80 and 0x85 hold other characters.
    EXPECT_EQ(EncodeWindows1252("\u0080\u0085\u009F"), "???");
    // Each byte of invalid UTF-8 becomes one "?", so fixed-width fields keep their widths.
    EXPECT_EQ(EncodeWindows1252("a\xED\xA0\x80z"), "a???z");
    EXPECT_EQ(EncodeWindows1252("\xE2\x82"), "??");
    EXPECT_EQ(EncodeWindows1252("\U0010FFFF"), "?");
    EXPECT_EQ(EncodeWindows1252(""), "");
}

TEST(TextBoundaries, IntegerConversionsAtTheEndsOfTheirRanges) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    EXPECT_EQ(ToInt32(2147483647.0), 2147483647);
    EXPECT_EQ(ToInt32(2147483646.5), 2147483646);     // half to even, down
    EXPECT_FALSE(ToInt32(2147483647.5).has_value());  // half to even, up and out
    EXPECT_EQ(ToInt32(-2147483648.5), std::numeric_limits<std::int32_t>::min());
    EXPECT_FALSE(ToInt32(-2147483649.0).has_value());
    EXPECT_EQ(ToInt16(-32768.5), -32768);
    EXPECT_FALSE(ToInt16(-32769.5).has_value());
    for (const double bad : {nan, inf, -inf}) {
        EXPECT_FALSE(ToInt16(bad).has_value()) << bad;
        EXPECT_FALSE(ToInt32(bad).has_value()) << bad;
    }
    EXPECT_EQ(ToInt16Clamped(nan), 0);
    EXPECT_EQ(ToInt16Clamped(-inf), -32768);
    EXPECT_EQ(ToInt32Clamped(nan), 0);
    EXPECT_EQ(ToInt32Clamped(inf), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(ToInt32Clamped(-3e9), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(ToInt32Clamped(-2.5), -2);
}

TEST(TextBoundaries, HexAndOctalNumbersTakeTheLanguagesWidths) {
    // Up to four hex (six octal) digits give a 16-bit number; more give a 32-bit one.
    const struct {
        const char* text;
        double value;
    } cases[] = {
        {"&H7FFF", 32767},
        {"&H8000", -32768},
        {"&H0FFFF", 65535},
        {"&H10000", 65536},
        {"&H7FFFFFFF", 2147483647},
        {"&H80000000", -2147483648.0},
        {"&HFFFFFFFF", -1},
        {"&H100000000", 0},
        {"&O77777", 32767},
        {"&O177777", -1},
        {"&O200000", 65536},
        {"&H", 0},
        {"&O", 0},
        {"&", 0},
        {" &H 1 0", 16},
    };
    for (const auto& c : cases) {
        EXPECT_DOUBLE_EQ(Val(c.text), c.value) << c.text;
    }
}

TEST(TextBoundaries, FormatsNumbersAtTheirLimits) {
    EXPECT_EQ(FormatZeroPadded(std::numeric_limits<std::int64_t>::min(), 2),
              "-9223372036854775808");
    EXPECT_EQ(FormatZeroPadded(-5, 3), "-005");
    EXPECT_EQ(FormatZeroPadded(123, 2), "123");
    EXPECT_EQ(FormatZeroPadded(0, 0), "0");
    EXPECT_EQ(NumberText(999999999999999.0), "999999999999999");
    EXPECT_EQ(NumberText(1e15), "1e+15");
    EXPECT_EQ(NumberText(-0.0), "0");
    EXPECT_EQ(NumberText(0.1), "0.1");
    EXPECT_EQ(NumberText(2.0 / 3.0), "0.666666666666667");
    EXPECT_TRUE(StartsWith("abc", ""));
    EXPECT_FALSE(StartsWith("ab", "abc"));
    EXPECT_TRUE(EndsWith("abc", "abc"));
    EXPECT_FALSE(EndsWith("bc", "abc"));
}

}  // namespace
}  // namespace jk
