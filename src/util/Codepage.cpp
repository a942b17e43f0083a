#include "util/Codepage.h"

#include <iconv.h>

#include <cstdint>
#include <map>
#include <mutex>

#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {
namespace {

constexpr std::array<char32_t, 32> kWindows1252High = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr std::array<std::string_view, 17> kOffered = {
    "windows-1252", "windows-1250", "windows-1251", "windows-1253", "windows-1254", "windows-1255",
    "windows-1256", "windows-1257", "windows-1258", "ISO-8859-1",   "ISO-8859-2",   "ISO-8859-5",
    "ISO-8859-7",   "ISO-8859-9",   "ISO-8859-15",  "KOI8-R",       "KOI8-U"};

std::array<char32_t, 256> Windows1252Table() {
    std::array<char32_t, 256> table{};
    for (unsigned i = 0; i < 256; ++i) {
        table[i] = i;
    }
    for (unsigned i = 0; i < 32; ++i) {
        table[0x80 + i] = kWindows1252High[i];
    }
    return table;
}

// Builds a table through iconv, one byte at a time; a byte the code page leaves undefined keeps
// its windows-1252 meaning so that nothing read is ever lost.
bool IconvTable(const std::string& name, std::array<char32_t, 256>& table) {
    iconv_t cd = iconv_open("UTF-32LE", name.c_str());
    if (reinterpret_cast<std::intptr_t>(cd) == -1) {
        return false;
    }
    const std::array<char32_t, 256> fallback = Windows1252Table();
    for (unsigned i = 0; i < 256; ++i) {
        char in = static_cast<char>(i);
        unsigned char out[8] = {};
        char* inPtr = &in;
        std::size_t inLeft = 1;
        char* outPtr = reinterpret_cast<char*>(out);
        std::size_t outLeft = sizeof out;
        iconv(cd, nullptr, nullptr, nullptr, nullptr);
        const std::size_t rc = iconv(cd, &inPtr, &inLeft, &outPtr, &outLeft);
        if (rc == static_cast<std::size_t>(-1) || sizeof out - outLeft != 4) {
            table[i] = fallback[i];
        } else {
            table[i] = static_cast<char32_t>(out[0] | (out[1] << 8) | (out[2] << 16) |
                                             (static_cast<char32_t>(out[3]) << 24));
        }
    }
    iconv_close(cd);
    return true;
}

}  // namespace

SingleByteCodepage::SingleByteCodepage(std::string name, const std::array<char32_t, 256>& table)
    : m_name(std::move(name)), m_toUnicode(table) {
    // Lower bytes win where two bytes share a character, so ASCII always maps to itself.
    for (int i = 255; i >= 0; --i) {
        m_toByte[m_toUnicode[static_cast<std::size_t>(i)]] = static_cast<unsigned char>(i);
    }
}

const SingleByteCodepage& SingleByteCodepage::Windows1252() {
    static const SingleByteCodepage page("windows-1252", Windows1252Table());
    return page;
}

std::shared_ptr<const SingleByteCodepage> SingleByteCodepage::Get(std::string_view name) {
    static std::mutex mutex;
    static std::map<std::string, std::shared_ptr<const SingleByteCodepage>> pages;
    const std::string key = AsciiLower(Trim(name));
    const std::lock_guard lock(mutex);
    if (auto it = pages.find(key); it != pages.end()) {
        return it->second;
    }
    std::shared_ptr<const SingleByteCodepage> page;
    bool offered = false;
    for (std::string_view candidate : kOffered) {
        offered = offered || AsciiLower(candidate) == key;
    }
    std::array<char32_t, 256> table{};
    if (key != "windows-1252" && offered && IconvTable(std::string(Trim(name)), table)) {
        page = std::make_shared<SingleByteCodepage>(std::string(Trim(name)), table);
    } else {
        page = std::make_shared<SingleByteCodepage>("windows-1252", Windows1252Table());
    }
    pages.emplace(key, page);
    return page;
}

std::string SingleByteCodepage::Decode(std::string_view bytes) const {
    std::string out;
    out.reserve(bytes.size());
    for (char c : bytes) {
        const auto b = static_cast<unsigned char>(c);
        if (b < 0x80 && m_toUnicode[b] == b) {
            out.push_back(c);
        } else {
            AppendUtf8(out, m_toUnicode[b]);
        }
    }
    return out;
}

std::string SingleByteCodepage::Encode(std::string_view utf8) const {
    std::string out;
    out.reserve(utf8.size());
    std::size_t pos = 0;
    while (pos < utf8.size()) {
        const auto b = static_cast<unsigned char>(utf8[pos]);
        if (b < 0x80 && m_toUnicode[b] == b) {
            out.push_back(static_cast<char>(b));
            ++pos;
            continue;
        }
        const char32_t cp = DecodeUtf8At(utf8, pos);
        const auto it = m_toByte.find(cp);
        out.push_back(it == m_toByte.end() ? '?' : static_cast<char>(it->second));
    }
    return out;
}

const std::array<std::string_view, 17>& OfferedTagCodepages() {
    return kOffered;
}

std::string DecodeWindows1252(std::string_view bytes) {
    return SingleByteCodepage::Windows1252().Decode(bytes);
}

std::string EncodeWindows1252(std::string_view utf8) {
    return SingleByteCodepage::Windows1252().Encode(utf8);
}

std::string Utf8OrWindows1252(std::string_view bytes) {
    if (IsValidUtf8(bytes)) {
        return std::string(bytes);
    }
    return DecodeWindows1252(bytes);
}

}  // namespace jk
