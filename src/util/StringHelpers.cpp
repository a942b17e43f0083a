#include "util/StringHelpers.h"

#include <cstdio>

#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {

std::string_view CutAtNull(std::string_view text) {
    const std::size_t nul = text.find('\0');
    return nul == std::string_view::npos ? text : text.substr(0, nul);
}

std::string TakeNullField(std::string& text) {
    const std::size_t nul = text.find('\0');
    if (nul == std::string::npos) {
        std::string all = std::move(text);
        text.clear();
        return all;
    }
    std::string field = text.substr(0, nul);
    text.erase(0, nul + 1);
    return field;
}

std::string PadField(std::string_view text, std::size_t width) {
    std::string out(Trim(text));
    PadRight(out, width);
    return out;
}

void PadRight(std::string& text, std::size_t width) {
    const std::size_t count = CharCount(text);
    if (count > width) {
        text.resize(ByteOffsetOfChar(text, width));
    } else {
        text.append(width - count, ' ');
    }
}

void PadLeft(std::string& text, std::size_t width) {
    const std::size_t count = CharCount(text);
    if (count > width) {
        text.resize(ByteOffsetOfChar(text, width));
    } else {
        text.insert(0, width - count, ' ');
    }
}

std::string_view DropLeft(std::string_view text, std::size_t n) {
    return text.substr(ByteOffsetOfChar(text, n));
}

std::string_view MidRange(std::string_view text, std::size_t first, std::size_t last) {
    if (first < 1) {
        first = 1;
    }
    if (last < first) {
        return {};
    }
    return CharMid(text, first, last - first + 1);
}

std::string UpperFirst(std::string_view text) {
    if (text.empty()) {
        return {};
    }
    const std::size_t firstEnd = ByteOffsetOfChar(text, 1);
    return ToUpper(text.substr(0, firstEnd)) + std::string(text.substr(firstEnd));
}

bool IsAllDigits(std::string_view text) {
    for (char c : text) {
        if (c < '0' || c > '9') {
            return false;
        }
    }
    return true;
}

std::string ReplaceChar(std::string_view text, std::string_view find,
                        std::string_view replacement) {
    if (find.empty() || CharCount(find) != 1) {
        return std::string(text);
    }
    std::string out;
    out.reserve(text.size());
    std::size_t pos = 0;
    while (pos < text.size()) {
        const std::size_t next = text.find(find, pos);
        if (next == std::string_view::npos) {
            out.append(text.substr(pos));
            break;
        }
        out.append(text.substr(pos, next - pos));
        out.append(replacement);
        pos = next + find.size();
    }
    return out;
}

std::size_t InStrSafe(std::string_view find, std::string_view text) {
    const std::size_t at = text.find(find);
    if (at == std::string_view::npos) {
        return 0;
    }
    return CharCount(text.substr(0, at)) + 1;
}

std::string ColorToHtmlPlain(std::int32_t color) {
    const auto value = static_cast<std::uint32_t>(color) & 0xFFFFFFu;
    const unsigned red = value & 0xFF;
    const unsigned green = (value >> 8) & 0xFF;
    const unsigned blue = (value >> 16) & 0xFF;
    char buffer[8];
    std::snprintf(buffer, sizeof buffer, "%02X%02X%02X", red, green, blue);
    return std::string("#") + buffer;
}

std::string ColorToHtml(std::int32_t color) {
    return "\"" + ColorToHtmlPlain(color) + "\"";
}

}  // namespace jk
