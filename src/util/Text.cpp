#include "util/Text.h"

#include <cmath>
#include <cstdio>
#include <limits>

namespace jk {

std::string_view LTrim(std::string_view text) {
    std::size_t i = 0;
    while (i < text.size() && text[i] == ' ') {
        ++i;
    }
    return text.substr(i);
}

std::string_view RTrim(std::string_view text) {
    std::size_t n = text.size();
    while (n > 0 && text[n - 1] == ' ') {
        --n;
    }
    return text.substr(0, n);
}

std::string_view Trim(std::string_view text) {
    return RTrim(LTrim(text));
}

namespace {

// The characters the language's Val passes over: blanks, tabs and line feeds. A carriage
// return ends the number like any other character.
bool IsValSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n';
}

double ValRadix(std::string_view text, std::size_t pos, int radix) {
    // "&H" and "&O" numbers are integers; the 16-bit form of the language makes &HFFFF -1.
    std::uint64_t value = 0;
    std::size_t digits = 0;
    for (; pos < text.size(); ++pos) {
        char c = text[pos];
        if (IsValSpace(c)) {
            continue;
        }
        const int d = HexDigitValue(c);
        if (d < 0 || d >= radix) {
            break;
        }
        value = value * static_cast<std::uint64_t>(radix) + static_cast<std::uint64_t>(d);
        if (value > 0xFFFFFFFFull) {
            return 0;  // overflow of the language's conversion; treated as no number here
        }
        ++digits;
    }
    if (digits == 0) {
        return 0;
    }
    if (value <= 0xFFFF && digits <= (radix == 16 ? 4u : 6u)) {
        return static_cast<double>(static_cast<std::int16_t>(static_cast<std::uint16_t>(value)));
    }
    return static_cast<double>(static_cast<std::int32_t>(static_cast<std::uint32_t>(value)));
}

}  // namespace

int HexDigitValue(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    return -1;
}

double Val(std::string_view text) {
    std::size_t pos = 0;
    while (pos < text.size() && IsValSpace(text[pos])) {
        ++pos;
    }
    if (pos + 1 < text.size() && text[pos] == '&') {
        const char kind = text[pos + 1];
        if (kind == 'H' || kind == 'h') {
            return ValRadix(text, pos + 2, 16);
        }
        if (kind == 'O' || kind == 'o') {
            return ValRadix(text, pos + 2, 8);
        }
    }
    std::string number;
    if (pos < text.size() && (text[pos] == '+' || text[pos] == '-')) {
        number.push_back(text[pos]);
        ++pos;
    }
    bool seenDigit = false;
    bool seenPoint = false;
    // Blanks inside a number are skipped, as the language does ("1 2" is 12).
    for (; pos < text.size(); ++pos) {
        const char c = text[pos];
        if (c >= '0' && c <= '9') {
            number.push_back(c);
            seenDigit = true;
        } else if (c == '.' && !seenPoint) {
            number.push_back(c);
            seenPoint = true;
        } else if (IsValSpace(c)) {
            continue;
        } else {
            break;
        }
    }
    if (!seenDigit) {
        return 0;
    }
    if (pos < text.size() &&
        (text[pos] == 'e' || text[pos] == 'E' || text[pos] == 'd' || text[pos] == 'D')) {
        std::size_t p = pos + 1;
        std::string exponent = "e";
        if (p < text.size() && (text[p] == '+' || text[p] == '-')) {
            exponent.push_back(text[p]);
            ++p;
        }
        bool expDigit = false;
        while (p < text.size() && text[p] >= '0' && text[p] <= '9' && exponent.size() < 8) {
            exponent.push_back(text[p]);
            ++p;
            expDigit = true;
        }
        if (expDigit) {
            number += exponent;
        }
    }
    const double value = std::strtod(number.c_str(), nullptr);
    return std::isfinite(value) ? value : 0.0;
}

double RoundHalfEven(double value) {
    return std::nearbyint(value);  // the default floating-point environment rounds to even
}

std::optional<std::int16_t> ToInt16(double value) {
    const double r = RoundHalfEven(value);
    if (!(r >= -32768.0 && r <= 32767.0)) {
        return std::nullopt;
    }
    return static_cast<std::int16_t>(r);
}

std::optional<std::int32_t> ToInt32(double value) {
    const double r = RoundHalfEven(value);
    if (!(r >= -2147483648.0 && r <= 2147483647.0)) {
        return std::nullopt;
    }
    return static_cast<std::int32_t>(r);
}

std::int16_t ToInt16Clamped(double value) {
    if (std::isnan(value)) {
        return 0;
    }
    const double r = RoundHalfEven(value);
    if (r < -32768.0) {
        return std::numeric_limits<std::int16_t>::min();
    }
    if (r > 32767.0) {
        return std::numeric_limits<std::int16_t>::max();
    }
    return static_cast<std::int16_t>(r);
}

std::int32_t ToInt32Clamped(double value) {
    if (std::isnan(value)) {
        return 0;
    }
    const double r = RoundHalfEven(value);
    if (r < -2147483648.0) {
        return std::numeric_limits<std::int32_t>::min();
    }
    if (r > 2147483647.0) {
        return std::numeric_limits<std::int32_t>::max();
    }
    return static_cast<std::int32_t>(r);
}

std::string FormatZeroPadded(std::int64_t value, int digits) {
    const bool negative = value < 0;
    std::uint64_t magnitude =
        negative ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
    std::string body = std::to_string(magnitude);
    if (static_cast<int>(body.size()) < digits) {
        body.insert(0, static_cast<std::size_t>(digits) - body.size(), '0');
    }
    return negative ? "-" + body : body;
}

std::string NumberText(double value) {
    if (value == std::floor(value) && std::fabs(value) < 1e15) {
        return std::to_string(static_cast<long long>(value));
    }
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%.15g", value);
    return buffer;
}

bool StartsWith(std::string_view text, std::string_view prefix) {
    return text.substr(0, prefix.size()) == prefix;
}

bool EndsWith(std::string_view text, std::string_view suffix) {
    return text.size() >= suffix.size() && text.substr(text.size() - suffix.size()) == suffix;
}

std::string AsciiUpper(std::string_view text) {
    std::string out(text);
    for (char& c : out) {
        if (c >= 'a' && c <= 'z') {
            c = static_cast<char>(c - 32);
        }
    }
    return out;
}

std::string AsciiLower(std::string_view text) {
    std::string out(text);
    for (char& c : out) {
        if (c >= 'A' && c <= 'Z') {
            c = static_cast<char>(c + 32);
        }
    }
    return out;
}

}  // namespace jk
