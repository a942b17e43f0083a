#include "playback/ListLines.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "util/Codepage.h"
#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {

namespace {

std::string Utf16ToUtf8(std::string_view bytes, bool bigEndian) {
    std::string out;
    out.reserve(bytes.size());
    const auto unitAt = [&](std::size_t i) -> std::uint32_t {
        const auto a = static_cast<unsigned char>(bytes[i]);
        const auto b = static_cast<unsigned char>(bytes[i + 1]);
        return bigEndian ? (std::uint32_t{a} << 8) | b : (std::uint32_t{b} << 8) | a;
    };
    std::size_t i = 0;
    while (i + 1 < bytes.size()) {
        const std::uint32_t unit = unitAt(i);
        i += 2;
        if (unit >= 0xD800 && unit <= 0xDBFF && i + 1 < bytes.size()) {
            const std::uint32_t low = unitAt(i);
            if (low >= 0xDC00 && low <= 0xDFFF) {
                i += 2;
                AppendUtf8(
                    out, static_cast<char32_t>(0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00)));
                continue;
            }
        }
        if (unit >= 0xD800 && unit <= 0xDFFF) {
            AppendUtf8(out, U'\uFFFD');
        } else {
            AppendUtf8(out, static_cast<char32_t>(unit));
        }
    }
    return out;
}

std::string PercentDecoded(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size()) {
            const int high = HexDigitValue(text[i + 1]);
            const int low = HexDigitValue(text[i + 2]);
            if (high >= 0 && low >= 0) {
                out.push_back(static_cast<char>(high * 16 + low));
                i += 2;
                continue;
            }
        }
        out.push_back(text[i]);
    }
    return out;
}

bool StartsWithNoCase(std::string_view text, std::string_view prefix) {
    if (text.size() < prefix.size()) {
        return false;
    }
    for (std::size_t i = 0; i < prefix.size(); ++i) {
        char c = text[i];
        if (c >= 'A' && c <= 'Z') {
            c = static_cast<char>(c + 32);
        }
        if (c != prefix[i]) {
            return false;
        }
    }
    return true;
}

// The first CR or LF at or after `pos`, or npos. The text is searched a block at a time for
// each of the two, so that a file whose lines all end the other way is not searched to its end
// for every line.
std::size_t LineEndFrom(std::string_view text, std::size_t pos) {
    constexpr std::size_t kBlock = 256;
    while (pos < text.size()) {
        const std::size_t length = std::min(kBlock, text.size() - pos);
        const char* block = text.data() + pos;
        const auto* lf = static_cast<const char*>(std::memchr(block, '\n', length));
        const std::size_t searched = lf != nullptr ? static_cast<std::size_t>(lf - block) : length;
        const auto* cr = static_cast<const char*>(std::memchr(block, '\r', searched));
        if (cr != nullptr) {
            return pos + static_cast<std::size_t>(cr - block);
        }
        if (lf != nullptr) {
            return pos + searched;
        }
        pos += length;
    }
    return std::string_view::npos;
}

}  // namespace

std::string PrepareListText(std::string bytes) {
    const std::string_view view(bytes);
    if (view.starts_with("\xEF\xBB\xBF")) {
        bytes.erase(0, 3);
        return bytes;
    }
    if (view.starts_with("\xFF\xFE")) {
        return Utf16ToUtf8(view.substr(2), false);
    }
    if (view.starts_with("\xFE\xFF")) {
        return Utf16ToUtf8(view.substr(2), true);
    }
    return bytes;
}

bool NextListLine(std::string_view text, std::size_t& pos, std::string_view& line) {
    if (pos >= text.size()) {
        return false;
    }
    const std::size_t end = LineEndFrom(text, pos);
    if (end == std::string_view::npos) {
        line = text.substr(pos);
        pos = text.size();
        return true;
    }
    line = text.substr(pos, end - pos);
    pos = end + 1;
    if (text[end] == '\r' && pos < text.size() && text[pos] == '\n') {
        ++pos;
    }
    return true;
}

bool IsExtendedInfoLine(std::string_view line) {
    // "#EXT" is plain ASCII and no other character upper-cases to one of its letters, so the
    // first four bytes decide.
    return StartsWithNoCase(line, "#ext");
}

bool FileUrlToPath(std::string_view line, std::string& path) {
    if (!StartsWithNoCase(line, "file:")) {
        return false;
    }
    std::string_view rest = line.substr(5);
    if (rest.starts_with("//")) {
        rest.remove_prefix(2);
        if (StartsWithNoCase(rest, "localhost/")) {
            rest.remove_prefix(9);
        }
        if (!rest.starts_with("/")) {
            return false;  // another host's file
        }
    } else if (!rest.starts_with("/")) {
        return false;
    }
    std::string decoded = PercentDecoded(rest);
    // "/C:/Music/x.mp3" of a Windows address loses the slash ahead of its drive.
    if (decoded.size() >= 3 && decoded[2] == ':' &&
        ((decoded[1] >= 'a' && decoded[1] <= 'z') || (decoded[1] >= 'A' && decoded[1] <= 'Z'))) {
        decoded.erase(0, 1);
    }
    path = Utf8OrWindows1252(decoded);
    return true;
}

}  // namespace jk
