#include "util/Utf8.h"

#include <locale.h>  // NOLINT(modernize-deprecated-headers): newlocale is POSIX, only here
#include <clocale>
#include <cstring>
#include <cwctype>

namespace jk {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

// glibc's C.UTF-8 locale carries the Unicode simple case mappings; it is built into every
// Debian system, so no table of our own is needed for the letters beyond ASCII.
locale_t Utf8Locale() {
    static const locale_t loc = [] {
        locale_t l = newlocale(LC_CTYPE_MASK, "C.UTF-8", static_cast<locale_t>(nullptr));
        if (l == static_cast<locale_t>(nullptr)) {
            l = newlocale(LC_CTYPE_MASK, "en_US.UTF-8", static_cast<locale_t>(nullptr));
        }
        return l;
    }();
    return loc;
}

}  // namespace

std::size_t SkipAscii(std::string_view text, std::size_t pos) {
    // Eight bytes at a time while none has its top bit set.
    for (; pos + 8 <= text.size(); pos += 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, text.data() + pos, 8);
        if ((word & 0x8080808080808080ull) != 0) {
            break;
        }
    }
    while (pos < text.size() && static_cast<unsigned char>(text[pos]) < 0x80) {
        ++pos;
    }
    return pos;
}

bool IsAscii(std::string_view text) {
    return SkipAscii(text, 0) == text.size();
}

char32_t DecodeUtf8At(std::string_view text, std::size_t& pos) {
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char b0 = byteAt(pos);
    if (b0 < 0x80) {
        ++pos;
        return b0;
    }
    std::size_t need = 0;
    char32_t cp = 0;
    char32_t minimum = 0;
    if ((b0 & 0xE0) == 0xC0) {
        need = 1;
        cp = b0 & 0x1F;
        minimum = 0x80;
    } else if ((b0 & 0xF0) == 0xE0) {
        need = 2;
        cp = b0 & 0x0F;
        minimum = 0x800;
    } else if ((b0 & 0xF8) == 0xF0) {
        need = 3;
        cp = b0 & 0x07;
        minimum = 0x10000;
    } else {
        ++pos;
        return kReplacement;
    }
    if (pos + need >= text.size()) {
        ++pos;
        return kReplacement;
    }
    for (std::size_t i = 1; i <= need; ++i) {
        const unsigned char b = byteAt(pos + i);
        if ((b & 0xC0) != 0x80) {
            ++pos;
            return kReplacement;
        }
        cp = (cp << 6) | (b & 0x3F);
    }
    if (cp < minimum || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) {
        ++pos;
        return kReplacement;
    }
    pos += need + 1;
    return cp;
}

char* WriteUtf8(char* out, char32_t cp) {
    if (cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) {
        cp = kReplacement;
    }
    if (cp < 0x80) {
        *out++ = static_cast<char>(cp);
    } else if (cp < 0x800) {
        *out++ = static_cast<char>(0xC0 | (cp >> 6));
        *out++ = static_cast<char>(0x80 | (cp & 0x3F));
    } else if (cp < 0x10000) {
        *out++ = static_cast<char>(0xE0 | (cp >> 12));
        *out++ = static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        *out++ = static_cast<char>(0x80 | (cp & 0x3F));
    } else {
        *out++ = static_cast<char>(0xF0 | (cp >> 18));
        *out++ = static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
        *out++ = static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        *out++ = static_cast<char>(0x80 | (cp & 0x3F));
    }
    return out;
}

void AppendUtf8(std::string& out, char32_t cp) {
    if (cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) {
        cp = kReplacement;
    }
    if (cp < 0x80) {
        out.push_back(static_cast<char>(cp));
    } else if (cp < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else if (cp < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    }
}

bool IsValidUtf8(std::string_view text) {
    std::size_t pos = SkipAscii(text, 0);
    while (pos < text.size()) {
        const std::size_t before = pos;
        const char32_t cp = DecodeUtf8At(text, pos);
        if (cp == kReplacement && pos == before + 1) {
            return false;
        }
        pos = SkipAscii(text, pos);
    }
    return true;
}

std::size_t CharCount(std::string_view text) {
    std::size_t pos = SkipAscii(text, 0);
    std::size_t count = pos;
    while (pos < text.size()) {
        DecodeUtf8At(text, pos);
        ++count;
        const std::size_t ascii = SkipAscii(text, pos);
        count += ascii - pos;
        pos = ascii;
    }
    return count;
}

std::size_t ByteOffsetOfChar(std::string_view text, std::size_t chars) {
    std::size_t pos = 0;
    while (chars > 0 && pos < text.size()) {
        if (static_cast<unsigned char>(text[pos]) < 0x80) {
            ++pos;
        } else {
            DecodeUtf8At(text, pos);
        }
        --chars;
    }
    return pos;
}

std::string_view CharLeft(std::string_view text, std::size_t chars) {
    return text.substr(0, ByteOffsetOfChar(text, chars));
}

std::string_view CharRight(std::string_view text, std::size_t chars) {
    const std::size_t total = CharCount(text);
    if (chars >= total) {
        return text;
    }
    return text.substr(ByteOffsetOfChar(text, total - chars));
}

std::string_view CharMid(std::string_view text, std::size_t start, std::size_t length) {
    if (start < 1) {
        start = 1;
    }
    const std::size_t from = ByteOffsetOfChar(text, start - 1);
    if (from >= text.size()) {
        return {};
    }
    const std::string_view rest = text.substr(from);
    if (length == std::string_view::npos) {
        return rest;
    }
    return rest.substr(0, ByteOffsetOfChar(rest, length));
}

char32_t LowerChar(char32_t cp) {
    if (cp < 0x80) {
        return (cp >= 'A' && cp <= 'Z') ? cp + 32 : cp;
    }
    const locale_t loc = Utf8Locale();
    if (loc == static_cast<locale_t>(nullptr)) {
        return cp;
    }
    return static_cast<char32_t>(towlower_l(static_cast<wint_t>(cp), loc));
}

char32_t UpperChar(char32_t cp) {
    if (cp < 0x80) {
        return (cp >= 'a' && cp <= 'z') ? cp - 32 : cp;
    }
    const locale_t loc = Utf8Locale();
    if (loc == static_cast<locale_t>(nullptr)) {
        return cp;
    }
    return static_cast<char32_t>(towupper_l(static_cast<wint_t>(cp), loc));
}

namespace {

template <typename Map>
std::string MapCase(std::string_view text, Map map) {
    std::string out;
    out.reserve(text.size());
    std::size_t pos = 0;
    while (pos < text.size()) {
        const unsigned char b = static_cast<unsigned char>(text[pos]);
        if (b < 0x80) {
            out.push_back(static_cast<char>(map(b)));
            ++pos;
            continue;
        }
        const std::size_t before = pos;
        const char32_t cp = DecodeUtf8At(text, pos);
        if (cp == kReplacement && pos == before + 1) {
            out.push_back(static_cast<char>(b));  // keep invalid bytes as they are
        } else {
            AppendUtf8(out, map(cp));
        }
    }
    return out;
}

// Folds one character for comparison; invalid bytes fold to a private range so they stay distinct.
char32_t FoldNext(std::string_view text, std::size_t& pos) {
    const unsigned char b = static_cast<unsigned char>(text[pos]);
    if (b < 0x80) {
        ++pos;
        return (b >= 'A' && b <= 'Z') ? b + 32u : b;
    }
    const std::size_t before = pos;
    const char32_t cp = DecodeUtf8At(text, pos);
    if (cp == kReplacement && pos == before + 1) {
        return 0x110000u + b;
    }
    return LowerChar(cp);
}

}  // namespace

std::string ToLower(std::string_view text) {
    return MapCase(text, LowerChar);
}

std::string ToUpper(std::string_view text) {
    return MapCase(text, UpperChar);
}

int CompareNoCase(std::string_view a, std::string_view b) {
    std::size_t pa = 0;
    std::size_t pb = 0;
    while (pa < a.size() && pb < b.size()) {
        const char32_t ca = FoldNext(a, pa);
        const char32_t cb = FoldNext(b, pb);
        if (ca != cb) {
            return ca < cb ? -1 : 1;
        }
    }
    if (pa < a.size()) {
        return 1;
    }
    if (pb < b.size()) {
        return -1;
    }
    return 0;
}

bool EqualsNoCase(std::string_view a, std::string_view b) {
    return CompareNoCase(a, b) == 0;
}

std::size_t FindNoCase(std::string_view haystack, std::string_view needle, std::size_t from) {
    if (needle.empty()) {
        return from <= haystack.size() ? from : std::string_view::npos;
    }
    for (std::size_t start = from; start < haystack.size();) {
        std::size_t ph = start;
        std::size_t pn = 0;
        bool match = true;
        while (pn < needle.size()) {
            if (ph >= haystack.size() || FoldNext(haystack, ph) != FoldNext(needle, pn)) {
                match = false;
                break;
            }
        }
        if (match) {
            return start;
        }
        DecodeUtf8At(haystack, start);
    }
    return std::string_view::npos;
}

bool ContainsNoCase(std::string_view haystack, std::string_view needle) {
    return FindNoCase(haystack, needle) != std::string_view::npos;
}

char32_t HighestCode(std::string_view text) {
    char32_t highest = 0;
    std::size_t pos = 0;
    while (pos < text.size()) {
        const char32_t cp = DecodeUtf8At(text, pos);
        if (cp > highest) {
            highest = cp;
        }
    }
    return highest;
}

}  // namespace jk
