#include <gtest/gtest.h>

#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {
namespace {

TEST(ValTest, ReadsTheLeadingNumberOfAText) {
    const struct {
        const char* text;
        double value;
    } cases[] = {
        {"", 0},
        {"abc", 0},
        {"  42", 42},
        {"42abc", 42},
        {"-7", -7},
        {"+3", 3},
        {"1.5", 1.5},
        {"1.5.3", 1.5},
        {"1 2", 12},
        {"1e3", 1000},
        {"2E-1", 0.2},
        {"&HFF", 255},
        {"&hFFFF", -1},
        {"&O17", 15},
        {"1.0", 1},
        {".5", 0.5},
        {"-", 0},
        {"\t 9", 9},
        {"12e", 12},
        {"0x10", 0},
        {"&O78", 7},
        {"&O1a", 1},
        {"&HaG", 10},
        // Blanks, tabs and line feeds are passed over, before and inside the number; a
        // carriage return stops it like any other character.
        {"\n\t 5", 5},
        {"1\n2", 12},
        {"1\t2", 12},
        {"\r5", 0},
        {"1\r2", 1},
        {"-\r3", 0},
        {"&H\r1", 0},
        {"&H1\r2", 1},
        {"&H1 2", 18},
    };
    for (const auto& c : cases) {
        EXPECT_DOUBLE_EQ(Val(c.text), c.value) << c.text;
    }
}

TEST(HexDigitValueTest, KnowsBothCasesAndNothingAround) {
    const struct {
        char c;
        int value;
    } cases[] = {
        {'0', 0},  {'9', 9},  {'a', 10}, {'f', 15}, {'A', 10}, {'F', 15},  {'/', -1},
        {':', -1}, {'@', -1}, {'G', -1}, {'`', -1}, {'g', -1}, {'\0', -1}, {'\xC3', -1},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(HexDigitValue(c.c), c.value) << c.c;
    }
}

TEST(IntegerConversionTest, RoundsHalfToEvenAndFailsOutsideTheRange) {
    EXPECT_EQ(ToInt16(2.5), 2);
    EXPECT_EQ(ToInt16(3.5), 4);
    EXPECT_EQ(ToInt16(-2.5), -2);
    EXPECT_EQ(ToInt16(32767.0), 32767);
    EXPECT_EQ(ToInt16(32767.4), 32767);
    EXPECT_FALSE(ToInt16(32767.5).has_value());
    EXPECT_EQ(ToInt16(-32768.0), -32768);
    EXPECT_FALSE(ToInt16(-32769.0).has_value());
    EXPECT_FALSE(ToInt32(2147483648.0).has_value());
    EXPECT_EQ(ToInt16Clamped(1e9), 32767);
}

TEST(TrimTest, RemovesBlanksOnly) {
    EXPECT_EQ(Trim("  a b  "), "a b");
    EXPECT_EQ(Trim(std::string_view("\0 a \0", 5)), std::string_view("\0 a \0", 5));
    EXPECT_EQ(RTrim("\ta "), "\ta");
    EXPECT_EQ(LTrim("   "), "");
}

TEST(Utf8Test, CountsAndCutsCharactersNotBytes) {
    const std::string text = "Motörhead – Ace";  // ö is 2 bytes, the dash 3
    EXPECT_EQ(CharCount(text), 15u);
    EXPECT_EQ(CharLeft(text, 4), "Motö");
    EXPECT_EQ(CharRight(text, 5), "– Ace");
    EXPECT_EQ(CharMid(text, 4, 3), "örh");
    EXPECT_EQ(CharMid(text, 20, 3), "");
    // Invalid bytes count as one character each and are never split.
    const std::string bad = "a\xff\xc3";
    EXPECT_EQ(CharCount(bad), 3u);
    EXPECT_EQ(CharLeft(bad, 2), "a\xff");
}

TEST(Utf8Test, FoldsCaseBeyondAscii) {
    EXPECT_EQ(ToLower("ÄÖÜ ÉCOLE ΣΑΣ"), "äöü école σασ");
    EXPECT_EQ(ToUpper("straße"), "STRAßE");  // simple mapping: ß has no single upper case
    EXPECT_TRUE(EqualsNoCase("Björk", "BJÖRK"));
    EXPECT_EQ(FindNoCase("The Temporary Internet Files", "temporary internet"), 4u);
    EXPECT_EQ(CompareNoCase("abc", "ABD"), -1);
}

}  // namespace
}  // namespace jk
