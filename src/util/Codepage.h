#pragma once

// Single-byte code pages for the text inside tag files (ID3v1, Lyrics3) and for data files
// written by older installations. Every byte maps to one character and back, so fixed-width
// fields keep their widths.

#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

namespace jk {

class SingleByteCodepage {
public:
    // The code page named (for example "windows-1251", "KOI8-R"); windows-1252 when the name is
    // empty or unknown. windows-1252 follows the WHATWG table, its five holes mapping to C1
    // controls.
    static std::shared_ptr<const SingleByteCodepage> Get(std::string_view name);
    static const SingleByteCodepage& Windows1252();

    SingleByteCodepage(std::string name, const std::array<char32_t, 256>& table);

    const std::string& Name() const { return m_name; }
    std::string Decode(std::string_view bytes) const;
    // A character the code page cannot hold is written as "?".
    std::string Encode(std::string_view utf8) const;
    char32_t CharOf(unsigned char byte) const { return m_toUnicode[byte]; }

private:
    std::string m_name;
    std::array<char32_t, 256> m_toUnicode{};
    std::unordered_map<char32_t, unsigned char> m_toByte;
};

// The names the settings offer for the tag code page.
const std::array<std::string_view, 17>& OfferedTagCodepages();

// windows-1252 conveniences.
std::string DecodeWindows1252(std::string_view bytes);
std::string EncodeWindows1252(std::string_view utf8);

// Text read from a data file: kept when it is valid UTF-8, else read as windows-1252.
std::string Utf8OrWindows1252(std::string_view bytes);

}  // namespace jk
