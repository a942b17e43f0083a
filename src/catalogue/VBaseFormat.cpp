#include "catalogue/VBaseFormat.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

#include "util/Codepage.h"
#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {
namespace {

constexpr std::size_t kChunkBytes = std::size_t{4} << 20;

constexpr char kEscapedMark = '\0';

std::size_t FieldBytes(std::string_view text) {
    if (text.size() <= kVBaseMaxField) {
        return text.size();
    }
    // Step back over at most three continuation bytes to the start of the cut character.
    std::size_t cut = kVBaseMaxField;
    for (int step = 0; step < 3 && cut > 0; ++step) {
        if ((static_cast<unsigned char>(text[cut]) & 0xC0) != 0x80) {
            break;
        }
        --cut;
    }
    // Nor inside an escape: every "%" of an escaped text begins one.
    if (!text.empty() && text.front() == kEscapedMark) {
        for (std::size_t back = 1; back <= 2 && back <= cut; ++back) {
            if (text[cut - back] == '%') {
                cut -= back;
                break;
            }
        }
    }
    return cut;
}

// The escaped form of a text that is not valid UTF-8 or begins with the mark, into `scratch`;
// any other text as it stands.
std::string_view FieldForFile(std::string_view text, std::string& scratch) {
    if ((text.empty() || text.front() != kEscapedMark) && IsValidUtf8(text)) {
        return text;
    }
    static constexpr char kHex[] = "0123456789ABCDEF";
    scratch.assign(1, kEscapedMark);
    std::size_t pos = 0;
    while (pos < text.size()) {
        const auto byte = static_cast<unsigned char>(text[pos]);
        const std::size_t before = pos;
        if (byte < 0x80) {
            ++pos;
        } else {
            DecodeUtf8At(text, pos);
        }
        // A byte that decodes to nothing but itself, with the high bit set, is a stray byte.
        const bool stray = byte >= 0x80 && pos == before + 1;
        if (stray || byte == '%') {
            scratch.push_back('%');
            scratch.push_back(kHex[byte >> 4]);
            scratch.push_back(kHex[byte & 0x0F]);
        } else {
            scratch.append(text.substr(before, pos - before));
        }
    }
    return scratch;
}

// True when every field is written as it stands: valid UTF-8 that does not begin with the mark.
// Texts that lie back to back, as a cached record's do, are checked as one: the whole is valid
// and no field begins inside a character (a byte that begins none makes its field invalid).
bool FieldsStandAsTheyAre(const SongFieldViews& fields) {
    const char* const begin = fields.front().data();
    const char* end = begin;
    bool together = true;
    for (const std::string_view field : fields) {
        if (!field.empty()) {
            const auto first = static_cast<unsigned char>(field.front());
            if (first == static_cast<unsigned char>(kEscapedMark) || (first & 0xC0) == 0x80) {
                return false;
            }
        }
        together = together && field.data() == end;
        end = field.data() + field.size();
    }
    if (together) {
        return IsValidUtf8(std::string_view(begin, static_cast<std::size_t>(end - begin)));
    }
    return std::all_of(fields.begin(), fields.end(),
                       [](std::string_view field) { return IsValidUtf8(field); });
}

// The record of texts already in their written form.
void AppendFieldsAsTheyStand(std::string& out, const SongFieldViews& fields) {
    std::size_t total = 0;
    for (const std::string_view field : fields) {
        total += 2 + FieldBytes(field);
    }
    const std::size_t at = out.size();
    out.resize(at + total);
    char* write = out.data() + at;
    for (const std::string_view field : fields) {
        const std::size_t bytes = FieldBytes(field);
        *write++ = static_cast<char>((bytes >> 8) & 0xFF);
        *write++ = static_cast<char>(bytes & 0xFF);
        if (bytes > 0) {
            std::memcpy(write, field.data(), bytes);
            write += bytes;
        }
    }
}

// The bytes of an escaped text (the mark first); a "%" without two hex digits behind it stands
// for itself.
std::string UnescapedField(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 1; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size() && HexDigitValue(text[i + 1]) >= 0 &&
            HexDigitValue(text[i + 2]) >= 0) {
            out.push_back(
                static_cast<char>(HexDigitValue(text[i + 1]) * 16 + HexDigitValue(text[i + 2])));
            i += 2;
        } else {
            out.push_back(text[i]);
        }
    }
    return out;
}

// Text of a whole number, as the language prints it.
std::string_view DigitsOf(std::string_view text) {
    while (text.size() > 1 && text.front() == '0') {
        text.remove_prefix(1);
    }
    return text;
}

}  // namespace

void AppendVBaseHeader(std::string& out, std::string_view version, std::int64_t recordCount) {
    std::string head(version.substr(0, std::min<std::size_t>(version.size(), 10)));
    head.resize(10, ' ');
    out += head;
    out += "13";
    std::string count = std::to_string(recordCount);
    if (count.size() < 8) {
        out.append(8 - count.size(), ' ');
    }
    out += count;
}

void AppendVBaseField(std::string& out, std::string_view text) {
    std::string scratch;
    text = FieldForFile(text, scratch);
    const std::size_t bytes = FieldBytes(text);
    out.push_back(static_cast<char>((bytes >> 8) & 0xFF));
    out.push_back(static_cast<char>(bytes & 0xFF));
    out.append(text.data(), bytes);
}

bool FitsVBaseField(std::string_view text) {
    std::string scratch;
    return FieldForFile(text, scratch).size() <= kVBaseMaxField;
}

void AppendVBaseRecord(std::string& out, const SongFieldViews& fields) {
    // Nearly every record is written as it stands, and saving the cache passes here for each
    // one: its texts are checked once, not once for the size and again for the bytes.
    if (FieldsStandAsTheyAre(fields)) {
        AppendFieldsAsTheyStand(out, fields);
        return;
    }
    std::array<std::string, kSongFieldCount> scratch;
    SongFieldViews forFile;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        forFile[i] = FieldForFile(fields[i], scratch[i]);
    }
    AppendFieldsAsTheyStand(out, forFile);
}

char* WriteVBaseRecord(char* out, const SongFieldViews& fields) {
    std::string scratch;
    for (std::string_view field : fields) {
        field = FieldForFile(field, scratch);
        const std::size_t bytes = FieldBytes(field);
        *out++ = static_cast<char>((bytes >> 8) & 0xFF);
        *out++ = static_cast<char>(bytes & 0xFF);
        if (bytes > 0) {
            std::memcpy(out, field.data(), bytes);
            out += bytes;
        }
    }
    return out;
}

std::size_t VBaseRecordBytes(const SongFieldViews& fields) {
    std::size_t total = 0;
    std::string scratch;
    for (const std::string_view field : fields) {
        total += 2 + FieldBytes(FieldForFile(field, scratch));
    }
    return total;
}

VBaseInput::VBaseInput(std::string_view bytes)
    : m_data(bytes), m_totalSize(static_cast<std::int64_t>(bytes.size())), m_ended(true) {}

VBaseInput::VBaseInput(const ReadFile& file) : m_file(&file) {
    m_totalSize = std::max<std::int64_t>(file.Size(), 0);
}

bool VBaseInput::ReadMore(std::size_t wanted) {
    if (m_ended) {
        return false;
    }
    const std::size_t unread = m_data.size() - m_pos;
    std::size_t capacity = std::max(m_capacity, kChunkBytes);
    while (capacity < wanted + kChunkBytes / 2) {
        capacity *= 2;
    }
    if (capacity > m_capacity) {
        auto grown = std::make_unique_for_overwrite<char[]>(capacity);
        if (unread > 0) {
            std::memcpy(grown.get(), m_data.data() + m_pos, unread);
        }
        m_buffer = std::move(grown);
        m_capacity = capacity;
    } else if (unread > 0 && m_pos > 0) {
        std::memmove(m_buffer.get(), m_data.data() + m_pos, unread);
    }
    m_pos = 0;
    const std::size_t room = m_capacity - unread;
    const std::int64_t got = m_file->ReadAt(
        m_fileOffset, {reinterpret_cast<std::uint8_t*>(m_buffer.get() + unread), room});
    const std::size_t gotBytes = got > 0 ? static_cast<std::size_t>(got) : 0;
    m_fileOffset += static_cast<std::int64_t>(gotBytes);
    if (gotBytes < room) {
        m_ended = true;
    }
    m_data = std::string_view(m_buffer.get(), unread + gotBytes);
    return gotBytes > 0;
}

bool VBaseInput::Ensure(std::size_t n) {
    while (m_data.size() - m_pos < n) {
        if (!ReadMore(n)) {
            return m_data.size() - m_pos >= n;
        }
    }
    return true;
}

std::string_view VBaseInput::Peek(std::size_t offset, std::size_t n) const {
    return m_data.substr(m_pos + offset, n);
}

void VBaseInput::Skip(std::size_t n) {
    m_pos = std::min(m_data.size(), m_pos + n);
}

std::string_view VBaseInput::Rest(std::size_t limit) {
    while (!m_ended && m_data.size() - m_pos < limit) {
        if (!ReadMore(m_data.size() - m_pos + 1)) {
            break;
        }
    }
    return m_data.substr(m_pos, std::min(limit, m_data.size() - m_pos));
}

VBaseHeader ReadVBaseHeader(VBaseInput& input) {
    std::size_t have = kVBaseHeaderBytes;
    while (have > 0 && !input.Ensure(have)) {
        --have;
    }
    const std::string_view head = input.Peek(0, have);
    const auto countOf = [](std::string_view text) {
        const double value = RoundHalfEven(Val(text));
        constexpr double kMax = static_cast<double>(std::numeric_limits<std::int32_t>::max());
        return static_cast<std::int64_t>(std::clamp(value, -kMax, kMax));
    };
    VBaseHeader header;
    header.fieldCount = head.size() > 10 ? countOf(head.substr(10, 2)) : 0;
    header.recordCount = head.size() > 12 ? countOf(head.substr(12, 8)) : 0;
    input.Skip(have);
    return header;
}

bool ReadVBaseRecord(VBaseInput& input, std::int64_t fieldCount, SongFieldViews& fields) {
    std::array<std::size_t, kSongFieldCount> starts{};
    std::array<std::size_t, kSongFieldCount> lengths{};
    std::size_t offset = 0;
    // What is loaded already; more is read only when a field reaches past it.
    std::string_view loaded = input.Loaded();
    for (std::int64_t f = 0; f < fieldCount; ++f) {
        if (offset + 2 > loaded.size()) {
            if (!input.Ensure(offset + 2)) {
                return false;
            }
            loaded = input.Loaded();
        }
        const std::size_t length =
            static_cast<std::size_t>((static_cast<unsigned char>(loaded[offset]) << 8) |
                                     static_cast<unsigned char>(loaded[offset + 1]));
        if (offset + 2 + length > loaded.size()) {
            if (!input.Ensure(offset + 2 + length)) {
                return false;
            }
            loaded = input.Loaded();
        }
        if (f < kSongFieldCount) {
            starts[static_cast<std::size_t>(f)] = offset + 2;
            lengths[static_cast<std::size_t>(f)] = length;
        }
        offset += 2 + length;
    }
    // The views are taken once the whole record is in, since reading more may move the bytes.
    for (std::size_t f = 0; f < fields.size(); ++f) {
        fields[f] = static_cast<std::int64_t>(f) < fieldCount ? input.Peek(starts[f], lengths[f])
                                                              : std::string_view();
    }
    input.Skip(offset);
    return true;
}

std::int64_t MaxVBaseRecords(const VBaseInput& input, std::int64_t fieldCount) {
    const std::int64_t body =
        std::max<std::int64_t>(0, input.TotalSize() - static_cast<std::int64_t>(kVBaseHeaderBytes));
    return fieldCount > 0 ? body / (2 * fieldCount) : 0;
}

std::string_view DataFileText(std::string_view bytes, std::string& scratch) {
    if (IsValidUtf8(bytes)) {
        return bytes;
    }
    scratch = DecodeWindows1252(bytes);
    return scratch;
}

const SongFieldViews& VBaseFieldDecoder::Decode(const SongFieldViews& raw) {
    for (std::size_t i = 0; i < raw.size(); ++i) {
        if (!raw[i].empty() && raw[i].front() == kEscapedMark) {
            m_scratch[i] = UnescapedField(raw[i]);
            m_out[i] = Trim(m_scratch[i]);
        } else {
            m_out[i] = DataFileText(Trim(raw[i]), m_scratch[i]);
        }
    }
    // Bitrate: the number of its text, padded on the left to width 4 ("128" gives " 128").
    const std::string_view text = m_out[kKeyBitrate - 1];
    if (!text.empty() && text.size() <= 15 &&
        std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; })) {
        // The common case, without building a string.
        const std::string_view digits = DigitsOf(text);
        const std::size_t pad = digits.size() < 4 ? 4 - digits.size() : 0;
        std::memset(m_bitrate.data(), ' ', pad);
        std::memcpy(m_bitrate.data() + pad, digits.data(), digits.size());
        m_out[kKeyBitrate - 1] = std::string_view(m_bitrate.data(), pad + digits.size());
    } else {
        const std::string number = NumberText(Val(text));
        std::string& bitrate = m_scratch[kKeyBitrate - 1];
        bitrate.assign(number.size() < 4 ? 4 - number.size() : 0, ' ');
        bitrate += number;
        m_out[kKeyBitrate - 1] = bitrate;
    }
    return m_out;
}

}  // namespace jk
