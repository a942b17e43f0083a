#pragma once

// The language-level text primitives the rest of the program is written in: trimming, the
// numeric value of a text, integer conversions that fail where 16- or 32-bit fields overflow,
// and zero-padded formatting.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace jk {

// Blanks (U+0020) only, nothing else: NUL and tabs stay.
std::string_view Trim(std::string_view text);
std::string_view LTrim(std::string_view text);
std::string_view RTrim(std::string_view text);

// The numeric value of a text: blanks, tabs and line feeds skipped (a carriage return is not),
// an optional sign, digits with one decimal point and an exponent, or "&H" / "&O" prefixed
// integers. Reading stops at the first other character; 0 when no number starts the text.
double Val(std::string_view text);

// Round half to even, as integer conversions of the original language do.
double RoundHalfEven(double value);

// Conversion to a 16-bit or 32-bit integer: rounds half to even and fails (nullopt) outside the
// range, the overflow that the Parts turn into failure marks.
std::optional<std::int16_t> ToInt16(double value);
std::optional<std::int32_t> ToInt32(double value);

// Conversion that clamps instead of failing, for settings and other forgiving places.
std::int16_t ToInt16Clamped(double value);
std::int32_t ToInt32Clamped(double value);

// Decimal text of a number with at least `digits` digits, zero padded ("00", "000" formats).
// A negative value keeps its sign ahead of the zeros.
std::string FormatZeroPadded(std::int64_t value, int digits);

// Text of a number as the language prints it: integers plainly, fractions with up to 15
// significant digits and no trailing zeros.
std::string NumberText(double value);

// The value of a hexadecimal digit (either case), or -1 for any other character.
int HexDigitValue(char c);

bool StartsWith(std::string_view text, std::string_view prefix);
bool EndsWith(std::string_view text, std::string_view suffix);

// ASCII-only case folding of single bytes, for fixed marks such as "ID3" and "#EXT".
std::string AsciiUpper(std::string_view text);
std::string AsciiLower(std::string_view text);

}  // namespace jk
