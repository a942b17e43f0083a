#include "finders/TextTest.h"

#include <bit>
#include <cstdint>
#include <cstring>

#include "util/Utf8.h"

namespace jk {
namespace {

constexpr char32_t kReplacementChar = 0xFFFD;
// A byte that is no character folds to this plus the byte, as the textual compare folds it.
constexpr char32_t kInvalidByteBase = 0x110000;

// UTF-8's scheme carried on to 21 bits, so that the units above U+10FFFF get bytes too.
void AppendUnit(std::string& out, char32_t unit) {
    if (unit < 0x80) {
        out.push_back(static_cast<char>(unit));
    } else if (unit < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (unit >> 6)));
        out.push_back(static_cast<char>(0x80 | (unit & 0x3F)));
    } else if (unit < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (unit >> 12)));
        out.push_back(static_cast<char>(0x80 | ((unit >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (unit & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xF0 | (unit >> 18)));
        out.push_back(static_cast<char>(0x80 | ((unit >> 12) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | ((unit >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (unit & 0x3F)));
    }
}

bool Contains(std::string_view haystack, std::string_view needle) {
    if (needle.size() > haystack.size()) {
        return false;
    }
    return ::memmem(haystack.data(), haystack.size(), needle.data(), needle.size()) != nullptr;
}

char AsciiLowerChar(char c) {
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + 32) : c;
}

// `needle` is folded ASCII; `haystack` is ASCII, folded here as it is read. The first byte of
// the needle is looked for eight positions at a time (a letter in either case: ORing 0x20 maps
// both onto the lower one), and only where it stands is the rest compared.
bool ContainsAsciiFolded(std::string_view haystack, std::string_view needle) {
    if (needle.size() > haystack.size()) {
        return false;
    }
    const auto first = static_cast<unsigned char>(needle[0]);
    const std::uint64_t fold = (first >= 'a' && first <= 'z') ? 0x2020202020202020ULL : 0;
    const std::uint64_t pattern = 0x0101010101010101ULL * first;
    const std::size_t last = haystack.size() - needle.size();
    const auto matchesAt = [&](std::size_t at) {
        for (std::size_t k = 0; k < needle.size(); ++k) {
            if (AsciiLowerChar(haystack[at + k]) != needle[k]) {
                return false;
            }
        }
        return true;
    };
    std::size_t i = 0;
    for (; i + 8 <= last + 1; i += 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, haystack.data() + i, 8);
        const std::uint64_t x = (word | fold) ^ pattern;
        // A byte of x that is zero marks a place; a mark above a true one may be false, and is
        // weeded out by the comparison.
        std::uint64_t marks = (x - 0x0101010101010101ULL) & ~x & 0x8080808080808080ULL;
        while (marks != 0) {
            if (matchesAt(i + static_cast<std::size_t>(std::countr_zero(marks)) / 8)) {
                return true;
            }
            marks &= marks - 1;
        }
    }
    for (; i <= last; ++i) {
        if (matchesAt(i)) {
            return true;
        }
    }
    return false;
}

}  // namespace

void AppendFolded(std::string& out, std::string_view text) {
    std::size_t pos = 0;
    while (pos < text.size()) {
        // A run of ASCII is lowered in one pass into room made for it at once: the index and
        // the Duplicate Finder fold millions of fields, most of them wholly ASCII.
        const std::size_t run = SkipAscii(text, pos);
        if (run > pos) {
            const std::size_t at = out.size();
            out.resize(at + (run - pos));
            char* dst = out.data() + at;
            for (std::size_t k = pos; k < run; ++k) {
                *dst++ = AsciiLowerChar(text[k]);
            }
            pos = run;
            continue;
        }
        const unsigned char b = static_cast<unsigned char>(text[pos]);
        const std::size_t before = pos;
        const char32_t cp = DecodeUtf8At(text, pos);
        if (cp == kReplacementChar && pos == before + 1) {
            AppendUnit(out, kInvalidByteBase + b);
        } else {
            AppendUnit(out, LowerChar(cp));
        }
    }
}

std::string FoldedText(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    AppendFolded(out, text);
    return out;
}

TextQuery::TextQuery(std::string_view query, bool binary) : m_text(query), m_binary(binary) {
    if (!binary) {
        m_folded = FoldedText(query);
        m_foldedAscii = IsAscii(m_folded);
    }
}

bool TextQuery::Found(std::string_view field) const {
    if (field.empty()) {
        return false;
    }
    if (m_text.empty()) {
        return true;
    }
    if (m_binary) {
        return Contains(field, m_text);
    }
    // A field of ASCII alone folds byte by byte, so it is compared where it stands; no other
    // character folds into it.
    if (IsAscii(field)) {
        return m_foldedAscii && ContainsAsciiFolded(field, m_folded);
    }
    thread_local std::string folded;
    folded.clear();
    AppendFolded(folded, field);
    return Contains(folded, m_folded);
}

bool TextTest(const SongInfo& song, const SearchFieldSet& fields, const TextQuery& query) {
    return TextTest([&song](SearchField field) { return SearchFieldOf(song, field); }, fields,
                    query);
}

}  // namespace jk
