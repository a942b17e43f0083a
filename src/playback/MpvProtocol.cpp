#include "playback/MpvProtocol.h"

#include <charconv>
#include <cmath>
#include <cstdlib>

#include "util/JsonString.h"
#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {

namespace {

// Containers nested deeper than this are not read: mpv's replies are shallow.
constexpr int kMaxDepth = 32;

class JsonReader {
public:
    explicit JsonReader(std::string_view text) : m_text(text) {}

    std::optional<MpvMessage> Message() {
        MpvMessage message;
        SkipBlanks();
        if (!Take('{')) {
            return std::nullopt;
        }
        SkipBlanks();
        if (Take('}')) {
            return AtEnd() ? std::optional(message) : std::nullopt;
        }
        while (true) {
            std::string key;
            SkipBlanks();
            if (!String(key)) {
                return std::nullopt;
            }
            SkipBlanks();
            if (!Take(':')) {
                return std::nullopt;
            }
            SkipBlanks();
            MpvData value;
            if (!Value(value, 1)) {
                return std::nullopt;
            }
            Keep(message, key, std::move(value));
            SkipBlanks();
            if (Take('}')) {
                break;
            }
            if (!Take(',')) {
                return std::nullopt;
            }
        }
        return AtEnd() ? std::optional(message) : std::nullopt;
    }

private:
    static void Keep(MpvMessage& message, const std::string& key, MpvData value) {
        if (key == "request_id" && value.type == MpvData::Type::Number &&
            std::isfinite(value.number) && std::abs(value.number) < 9.0e15) {
            message.requestId = static_cast<std::int64_t>(value.number);
        } else if (key == "error" && value.type == MpvData::Type::Text) {
            message.error = std::move(value.text);
        } else if (key == "event" && value.type == MpvData::Type::Text) {
            message.event = std::move(value.text);
        } else if (key == "data") {
            message.data = std::move(value);
        }
    }

    bool AtEnd() {
        SkipBlanks();
        return m_at == m_text.size();
    }
    void SkipBlanks() {
        while (m_at < m_text.size() && (m_text[m_at] == ' ' || m_text[m_at] == '\t' ||
                                        m_text[m_at] == '\r' || m_text[m_at] == '\n')) {
            ++m_at;
        }
    }
    bool Take(char c) {
        if (m_at < m_text.size() && m_text[m_at] == c) {
            ++m_at;
            return true;
        }
        return false;
    }
    bool Word(std::string_view word) {
        if (m_text.substr(m_at, word.size()) == word) {
            m_at += word.size();
            return true;
        }
        return false;
    }

    bool Value(MpvData& out, int depth) {
        if (m_at >= m_text.size()) {
            return false;
        }
        const char c = m_text[m_at];
        if (c == '"') {
            out.type = MpvData::Type::Text;
            return String(out.text);
        }
        if (c == '{' || c == '[') {
            out.type = MpvData::Type::Other;
            return Container(depth);
        }
        if (Word("true")) {
            out.type = MpvData::Type::Bool;
            out.flag = true;
            return true;
        }
        if (Word("false")) {
            out.type = MpvData::Type::Bool;
            return true;
        }
        if (Word("null")) {
            out.type = MpvData::Type::Null;
            return true;
        }
        out.type = MpvData::Type::Number;
        return Number(out.number);
    }

    // Skips an object or an array, checking its shape.
    bool Container(int depth) {
        if (depth > kMaxDepth) {
            return false;
        }
        const char close = m_text[m_at] == '{' ? '}' : ']';
        ++m_at;
        SkipBlanks();
        if (Take(close)) {
            return true;
        }
        while (true) {
            SkipBlanks();
            if (close == '}') {
                std::string key;
                if (!String(key)) {
                    return false;
                }
                SkipBlanks();
                if (!Take(':')) {
                    return false;
                }
                SkipBlanks();
            }
            MpvData ignored;
            if (!Value(ignored, depth + 1)) {
                return false;
            }
            SkipBlanks();
            if (Take(close)) {
                return true;
            }
            if (!Take(',')) {
                return false;
            }
        }
    }

    bool Number(double& out) {
        const std::size_t start = m_at;
        while (m_at < m_text.size()) {
            const char c = m_text[m_at];
            if ((c >= '0' && c <= '9') || c == '-' || c == '+' || c == '.' || c == 'e' ||
                c == 'E') {
                ++m_at;
            } else {
                break;
            }
        }
        if (m_at == start) {
            return false;
        }
        const char* first = m_text.data() + start;
        const char* last = m_text.data() + m_at;
        const auto [end, error] = std::from_chars(first, last, out);
        return error == std::errc() && end == last;
    }

    bool Hex4(char32_t& out) {
        if (m_at + 4 > m_text.size()) {
            return false;
        }
        out = 0;
        for (int i = 0; i < 4; ++i) {
            const int digit = HexDigitValue(m_text[m_at++]);
            if (digit < 0) {
                return false;
            }
            out = (out << 4) | static_cast<char32_t>(digit);
        }
        return true;
    }

    bool Escape(std::string& out) {
        if (m_at >= m_text.size()) {
            return false;
        }
        const char c = m_text[m_at++];
        switch (c) {
            case '"':
            case '\\':
            case '/':
                out.push_back(c);
                return true;
            case 'b':
                out.push_back('\b');
                return true;
            case 'f':
                out.push_back('\f');
                return true;
            case 'n':
                out.push_back('\n');
                return true;
            case 'r':
                out.push_back('\r');
                return true;
            case 't':
                out.push_back('\t');
                return true;
            case 'u': {
                char32_t cp = 0;
                if (!Hex4(cp)) {
                    return false;
                }
                if (cp >= 0xD800 && cp < 0xDC00 && m_text.substr(m_at, 2) == "\\u") {
                    const std::size_t back = m_at;
                    m_at += 2;
                    char32_t low = 0;
                    if (Hex4(low) && low >= 0xDC00 && low < 0xE000) {
                        cp = 0x10000 + ((cp - 0xD800) << 10) + (low - 0xDC00);
                    } else {
                        m_at = back;
                    }
                }
                AppendUtf8(out, cp >= 0xD800 && cp < 0xE000 ? U'\uFFFD' : cp);
                return true;
            }
            default:
                return false;
        }
    }

    bool String(std::string& out) {
        if (!Take('"')) {
            return false;
        }
        while (m_at < m_text.size()) {
            const char c = m_text[m_at++];
            if (c == '"') {
                return true;
            }
            if (c == '\\') {
                if (!Escape(out)) {
                    return false;
                }
            } else {
                out.push_back(c);
            }
        }
        return false;
    }

    std::string_view m_text;
    std::size_t m_at = 0;
};

}  // namespace

std::string MpvCommandLine(std::span<const MpvArg> command, std::int64_t requestId) {
    std::string line = "{\"command\":[";
    bool first = true;
    for (const MpvArg& arg : command) {
        if (!first) {
            line.push_back(',');
        }
        first = false;
        if (const auto* text = std::get_if<std::string_view>(&arg)) {
            AppendJsonString(line, *text);
        } else if (const auto* whole = std::get_if<std::int64_t>(&arg)) {
            line += std::to_string(*whole);
        } else if (const auto* fraction = std::get_if<double>(&arg)) {
            line += std::isfinite(*fraction) ? NumberText(*fraction) : "0";
        } else {
            line += std::get<bool>(arg) ? "true" : "false";
        }
    }
    line += "],\"request_id\":";
    line += std::to_string(requestId);
    line += "}\n";
    return line;
}

std::optional<MpvMessage> ParseMpvLine(std::string_view line) {
    return JsonReader(line).Message();
}

}  // namespace jk
