#include "metadata/Id3v2Texts.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>

#include <commentsframe.h>
#include <id3v1genres.h>
#include <id3v2frame.h>
#include <id3v2framefactory.h>
#include <id3v2header.h>
#include <tbytevector.h>
#include <textidentificationframe.h>

#include "metadata/Genres.h"
#include "metadata/Id3v2Header.h"
#include "metadata/SongReadContext.h"
#include "util/StringHelpers.h"
#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {
namespace {

// A text frame larger than this is not a title; it is skipped rather than read.
constexpr std::int64_t kMaxTextFrame = 1 << 20;
// An unsynchronised tag (undone as a whole) is read up to this much.
constexpr std::int64_t kMaxUnsynchronisedTag = 16 << 20;

enum class Wanted { None, Title, Artist, Album, Comment, Year, Genre, Track, Count };

Wanted WantedFrame(std::string_view id) {
    static constexpr std::array<std::pair<std::string_view, Wanted>, 15> kIds = {{
        {"TIT2", Wanted::Title},
        {"TT2", Wanted::Title},
        {"TPE1", Wanted::Artist},
        {"TP1", Wanted::Artist},
        {"TALB", Wanted::Album},
        {"TAL", Wanted::Album},
        {"COMM", Wanted::Comment},
        {"COM", Wanted::Comment},
        {"TYER", Wanted::Year},
        {"TYE", Wanted::Year},
        {"TDRC", Wanted::Year},
        {"TCON", Wanted::Genre},
        {"TCO", Wanted::Genre},
        {"TRCK", Wanted::Track},
        {"TRK", Wanted::Track},
    }};
    for (const auto& [name, kind] : kIds) {
        if (name == id) {
            return kind;
        }
    }
    return Wanted::None;
}

bool IsFrameIdChar(std::uint8_t c) {
    return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

std::uint32_t BigEndian(const std::uint8_t* p, int count) {
    std::uint32_t value = 0;
    for (int i = 0; i < count; ++i) {
        value = (value << 8) | p[i];
    }
    return value;
}

std::string CleanText(const TagLib::String& text) {
    const std::string utf8 = text.to8Bit(true);
    return std::string(Trim(CutAtNull(utf8)));
}

// The first text of a plain text frame, read without TagLib where the reading is plain: no
// frame flags, and a first field in ISO-8859-1, UTF-16 with a byte order mark, UTF-16BE or
// UTF-8 that holds only characters of the Basic Multilingual Plane (no surrogates, no byte
// order mark inside). TagLib reads the rest; the tests hold this reading to TagLib's on
// generated frames. Each reading takes the frame's header and body, and gives nothing when the
// frame is not plain.
class PlainTextReader {
public:
    // The text of a frame that holds one text: nothing but zero bytes follow it.
    static std::optional<std::string> OnlyText(ByteView frame, int headerLength) {
        std::optional<std::string> text = FirstText(frame, headerLength);
        if (text) {
            const std::size_t encodedEnd = 11 + End(frame.subspan(10));
            if (!std::all_of(frame.begin() + static_cast<std::ptrdiff_t>(encodedEnd), frame.end(),
                             [](std::uint8_t b) { return b == 0; })) {
                return std::nullopt;
            }
        }
        return text;
    }

    // The first text of the frame.
    static std::optional<std::string> FirstText(ByteView frame, int headerLength) {
        if (headerLength != 10 || frame.size() < 12 || frame[3] == 0 || frame[8] != 0 ||
            frame[9] != 0) {
            return std::nullopt;
        }
        const ByteView field = frame.subspan(10);  // the encoding byte and the texts
        const std::uint8_t encoding = field[0];
        if (encoding == 0 || encoding == 3) {
            // Texts end at a zero byte; the first one is the text up to it.
            const ByteView text = field.subspan(1, Until(field.subspan(1), 1));
            if (text.empty()) {
                return std::nullopt;
            }
            return encoding == 0 ? Latin1(text) : Utf8(text);
        }
        if (encoding == 1 || encoding == 2) {
            // A zero unit at an even place ends a text. Trailing zero bytes are not counted, and
            // the length is then rounded up to whole units (TagLib's reading).
            std::size_t length = field.size() - 1;
            while (length > 0 && field[length] == 0) {
                --length;
            }
            length += length % 2;
            const ByteView texts = field.subspan(1, std::min(length, field.size() - 1));
            const ByteView text = texts.subspan(0, Until(texts, 2));
            if (text.empty() || text.size() % 2 != 0) {
                return std::nullopt;
            }
            return Utf16(text, encoding == 1);
        }
        return std::nullopt;
    }

private:
    // Where the first text of a field (its encoding byte first) ends, counted behind that byte.
    static std::size_t End(ByteView field) {
        const ByteView texts = field.subspan(1);
        return field[0] == 1 || field[0] == 2 ? Until(texts, 2) : Until(texts, 1);
    }

    // Bytes ahead of the first zero unit of `width` bytes at a multiple of `width`.
    static std::size_t Until(ByteView bytes, std::size_t width) {
        for (std::size_t i = 0; i + width <= bytes.size(); i += width) {
            if (bytes[i] == 0 && (width == 1 || bytes[i + 1] == 0)) {
                return i;
            }
        }
        return bytes.size();
    }

    static std::string Latin1(ByteView text) {
        std::string out(text.size() * 2, '\0');
        char* end = out.data();
        for (const std::uint8_t b : text) {
            end = WriteUtf8(end, b);
        }
        out.resize(static_cast<std::size_t>(end - out.data()));
        return out;
    }

    // Only strictly valid UTF-8 of characters from U+0001 to U+FFFF, U+FEFF left out.
    static std::optional<std::string> Utf8(ByteView text) {
        for (std::size_t i = 0; i < text.size();) {
            const std::uint8_t b = text[i];
            if (b < 0x80) {
                ++i;
                continue;
            }
            if (b >= 0xC2 && b <= 0xDF) {
                if (i + 1 >= text.size() || (text[i + 1] & 0xC0) != 0x80) {
                    return std::nullopt;
                }
                i += 2;
                continue;
            }
            if (b < 0xE0 || b > 0xEF || i + 2 >= text.size() || (text[i + 1] & 0xC0) != 0x80 ||
                (text[i + 2] & 0xC0) != 0x80) {
                return std::nullopt;
            }
            const char32_t cp =
                ((b & 0x0Fu) << 12) | ((text[i + 1] & 0x3Fu) << 6) | (text[i + 2] & 0x3Fu);
            if (!PlainUnit(cp) || cp < 0x800) {
                return std::nullopt;
            }
            i += 3;
        }
        return std::string(reinterpret_cast<const char*>(text.data()), text.size());
    }

    static std::optional<std::string> Utf16(ByteView text, bool withBom) {
        bool bigEndian = true;
        std::size_t i = 0;
        if (withBom) {
            if (text[0] == 0xFF && text[1] == 0xFE) {
                bigEndian = false;
            } else if (!(text[0] == 0xFE && text[1] == 0xFF)) {
                return std::nullopt;
            }
            i = 2;
        }
        if (i >= text.size()) {
            return std::nullopt;
        }
        std::string out(text.size() / 2 * 3, '\0');
        char* end = out.data();
        for (; i < text.size(); i += 2) {
            const char32_t unit = bigEndian ? (char32_t{text[i]} << 8) | text[i + 1]
                                            : (char32_t{text[i + 1]} << 8) | text[i];
            if (!PlainUnit(unit)) {
                return std::nullopt;
            }
            end = WriteUtf8(end, unit);
        }
        out.resize(static_cast<std::size_t>(end - out.data()));
        return out;
    }

    static bool PlainUnit(char32_t unit) {
        return unit != 0 && (unit < 0xD800 || unit > 0xDFFF) && unit != 0xFEFF && unit < 0xFFFE;
    }
};

// The values TagLib makes of a genre frame's one text, for the plain cases: a text that does
// not begin with "(" stays as it is; "(N)" of one to three digits becomes the number when
// TagLib's genre table names it, else nothing. Nothing when the text is of another form.
std::optional<std::vector<std::string>> PlainGenreValues(const std::string& text) {
    if (text.empty()) {
        return std::nullopt;
    }
    if (text[0] != '(') {
        return std::vector<std::string>{text};
    }
    const std::string_view digits = std::string_view(text).substr(1, text.size() - 2);
    if (text.size() < 3 || text.size() > 5 || text.back() != ')' || !IsAllDigits(digits)) {
        return std::nullopt;
    }
    // Whether TagLib's table names each number, asked once (each question builds its table).
    static const std::array<bool, 1000> kNamed = [] {
        std::array<bool, 1000> named{};
        for (std::size_t n = 0; n < named.size(); ++n) {
            named[n] = !TagLib::ID3v1::genre(static_cast<int>(n)).isEmpty();
        }
        return named;
    }();
    int number = 0;
    for (const char c : digits) {
        number = number * 10 + (c - '0');
    }
    if (!kNamed[static_cast<std::size_t>(number)]) {
        return std::vector<std::string>{};
    }
    return std::vector<std::string>{std::string(digits)};
}

// True when a frame header (or padding, or the tag's end) stands at `pos`.
bool FrameOrEndAt(ByteSource& source, std::int64_t pos, std::int64_t end, int idLength) {
    if (pos == end) {
        return true;
    }
    if (pos + idLength > end) {
        return false;
    }
    const Outcome<ByteView> id = source.View(pos, idLength);
    if (!id) {
        return false;
    }
    if ((*id)[0] == 0) {
        return true;
    }
    return std::all_of(id->begin(), id->end(), IsFrameIdChar);
}

class FrameWalker {
public:
    FrameWalker(ByteSource& source, const ID3v2HeaderInfo& info, ByteView header, bool tagLibOnly)
        : m_source(source),
          m_info(info),
          m_header(header),
          // TagLib undoes a 2.4 tag's unsynchronisation frame by frame: those go to TagLib.
          m_plainReading(!tagLibOnly &&
                         (info.major == 3 || (info.major == 4 && !info.Unsynchronised()))) {}

    void Walk(std::int64_t pos, std::int64_t end, ID3v2Texts& texts) {
        const int headerLength = m_info.major == 2 ? 6 : 10;
        const int idLength = m_info.major == 2 ? 3 : 4;
        std::array<bool, static_cast<std::size_t>(Wanted::Count)> taken{};
        while (pos + headerLength <= end) {
            const Outcome<ByteView> view = m_source.View(pos, headerLength);
            if (!view) {
                return;
            }
            std::array<std::uint8_t, 10> h{};
            std::copy(view->begin(), view->end(), h.begin());
            if (h[0] == 0) {
                return;  // padding
            }
            int usedId = idLength;
            if (m_info.major == 3 && h[3] == 0) {
                usedId = 3;  // an ID3v2.2 frame inside a 2.3 tag, as one writer makes them
            }
            if (!std::all_of(h.begin(), h.begin() + usedId, IsFrameIdChar)) {
                return;
            }
            std::int64_t size = 0;
            if (m_info.major == 2) {
                size = BigEndian(h.data() + 3, 3);
            } else if (m_info.major == 3) {
                size = BigEndian(h.data() + 4, 4);
            } else {
                size = FrameSizeV4(h.data(), pos, end, headerLength, idLength);
            }
            if (size > end - pos - headerLength) {
                return;
            }
            const std::string_view id(reinterpret_cast<const char*>(h.data()),
                                      static_cast<std::size_t>(usedId));
            const Wanted kind = WantedFrame(id);
            if (kind != Wanted::None && !taken[static_cast<std::size_t>(kind)] &&
                size <= kMaxTextFrame) {
                taken[static_cast<std::size_t>(kind)] = Take(kind, pos, headerLength, size, texts);
            }
            pos += headerLength + size;
        }
    }

private:
    // ID3v2.4 sizes are synchsafe, but some writers put plain ones there: the plain reading
    // wins when only it lands on a frame.
    std::int64_t FrameSizeV4(const std::uint8_t* h, std::int64_t pos, std::int64_t end,
                             int headerLength, int idLength) {
        const std::int64_t plain = BigEndian(h + 4, 4);
        if ((h[4] | h[5] | h[6] | h[7]) & 0x80) {
            return plain;
        }
        const std::int64_t safe = SynchsafeInt(h[4], h[5], h[6], h[7]);
        if (safe == plain) {
            return safe;
        }
        const std::int64_t body = pos + headerLength;
        if (!FrameOrEndAt(m_source, body + safe, end, idLength) && body + plain <= end &&
            FrameOrEndAt(m_source, body + plain, end, idLength)) {
            return plain;
        }
        return safe;
    }

    bool Take(Wanted kind, std::int64_t pos, int headerLength, std::int64_t size,
              ID3v2Texts& texts) {
        const Outcome<ByteView> bytes = m_source.View(pos, headerLength + size);
        if (!bytes) {
            return false;
        }
        // Parsing a frame through TagLib costs some dozen allocations: the plain text frames,
        // nearly all of them, are read here (comments always go to TagLib).
        if (m_plainReading && kind == Wanted::Genre) {
            const std::optional<std::string> text = PlainTextReader::OnlyText(*bytes, headerLength);
            if (const auto values = text ? PlainGenreValues(*text) : std::nullopt) {
                std::vector<std::string> cleaned;
                for (const std::string& value : *values) {
                    cleaned.emplace_back(Trim(value));
                }
                texts.Genre = ResolveID3v2Genre(cleaned);
                return true;
            }
        } else if (m_plainReading && kind != Wanted::Comment) {
            if (const std::optional<std::string> text =
                    PlainTextReader::FirstText(*bytes, headerLength)) {
                StoreFirst(kind, std::string(Trim(*text)), texts);
                return true;
            }
        }
        TagLib::ByteVector data(reinterpret_cast<const char*>(bytes->data()),
                                static_cast<unsigned int>(bytes->size()));
        if (m_info.major == 4) {
            // The size as TagLib reads it (synchsafe), whichever way the file wrote it.
            const auto s = static_cast<std::uint32_t>(size);
            data[4] = static_cast<char>((s >> 21) & 0x7F);
            data[5] = static_cast<char>((s >> 14) & 0x7F);
            data[6] = static_cast<char>((s >> 7) & 0x7F);
            data[7] = static_cast<char>(s & 0x7F);
        }
        const std::unique_ptr<TagLib::ID3v2::Frame> frame(
            TagLib::ID3v2::FrameFactory::instance()->createFrame(data, &TagHeader()));
        if (!frame) {
            return false;
        }
        if (kind == Wanted::Comment) {
            const auto* comment = dynamic_cast<const TagLib::ID3v2::CommentsFrame*>(frame.get());
            if (comment == nullptr) {
                return false;
            }
            // Players keep data of their own in described comments (iTunes' "iTunNORM" loudness
            // table, "iTunSMPB", "iTunPGAP"); the comment a user wrote has no description. Until
            // one without turns up, the first that is not iTunes' own stands in.
            const TagLib::String description = comment->description();
            if (description.isEmpty()) {
                texts.Comment = CleanText(comment->text());
                return true;
            }
            if (!m_describedComment && !description.startsWith("iTun")) {
                texts.Comment = CleanText(comment->text());
                m_describedComment = true;
            }
            return false;
        }
        const auto* text = dynamic_cast<const TagLib::ID3v2::TextIdentificationFrame*>(frame.get());
        if (text == nullptr) {
            return false;
        }
        const TagLib::StringList fields = text->fieldList();
        if (kind == Wanted::Genre) {
            std::vector<std::string> values;
            for (const TagLib::String& field : fields) {
                values.push_back(CleanText(field));
            }
            texts.Genre = ResolveID3v2Genre(values);
            return true;
        }
        StoreFirst(kind, fields.isEmpty() ? std::string() : CleanText(fields.front()), texts);
        return true;
    }

    // Files the first text of a frame (cleaned) where its kind belongs.
    static void StoreFirst(Wanted kind, std::string first, ID3v2Texts& texts) {
        switch (kind) {
            case Wanted::Title:
                texts.Title = std::move(first);
                break;
            case Wanted::Artist:
                texts.Artist = std::move(first);
                break;
            case Wanted::Album:
                texts.Album = std::move(first);
                break;
            case Wanted::Year:
                texts.Year = std::string(CharLeft(first, 4));
                break;
            case Wanted::Track: {
                const std::string_view number = std::string_view(first).substr(0, first.find('/'));
                const std::optional<std::int16_t> track = ToInt16(DigitsVal(number));
                texts.Track = track && *track > 0 ? *track : std::int16_t{0};
                break;
            }
            default:
                break;
        }
    }

    ByteSource& m_source;
    const ID3v2HeaderInfo& m_info;
    // TagLib's reading of the tag header, made when a frame first goes to TagLib.
    const TagLib::ID3v2::Header& TagHeader() {
        if (!m_tagHeader) {
            m_tagHeader.emplace(TagLib::ByteVector(reinterpret_cast<const char*>(m_header.data()),
                                                   static_cast<unsigned int>(m_header.size())));
        }
        return *m_tagHeader;
    }

    ByteView m_header;
    std::optional<TagLib::ID3v2::Header> m_tagHeader;
    bool m_plainReading;
    bool m_describedComment = false;  // a described comment stands in for a plain one
};

// Undoes the unsynchronisation of a whole tag: every 0xFF 0x00 loses its 0x00.
void Resynchronise(ByteView bytes, std::vector<std::uint8_t>& out) {
    out.clear();
    out.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        out.push_back(bytes[i]);
        if (bytes[i] == 0xFF && i + 1 < bytes.size() && bytes[i + 1] == 0x00) {
            ++i;
        }
    }
}

// Where the frames begin behind an extended header; nullopt when it does not fit.
std::optional<std::int64_t> SkipExtendedHeader(ByteSource& source, const ID3v2HeaderInfo& info,
                                               std::int64_t pos, std::int64_t end) {
    if (!info.HasExtendedHeader() || info.major == 2) {
        return pos;
    }
    if (pos + 4 > end) {
        return std::nullopt;
    }
    const Outcome<ByteView> size = source.View(pos, 4);
    if (!size) {
        return std::nullopt;
    }
    const ByteView s = *size;
    // 2.3 counts the bytes behind the size; 2.4 counts the whole extended header, synchsafe.
    const std::int64_t skip = info.major == 3
                                  ? 4 + static_cast<std::int64_t>(BigEndian(s.data(), 4))
                                  : SynchsafeInt(s[0], s[1], s[2], s[3]);
    if (skip < 4 || skip > end - pos) {
        return std::nullopt;
    }
    return pos + skip;
}

std::string ReferencedGenre(std::string_view reference) {
    if (reference == "RX") {
        return "Remix";
    }
    if (reference == "CR") {
        return "Cover";
    }
    if (reference.empty() || reference.size() > 3 || !IsAllDigits(reference)) {
        return {};
    }
    const std::string name = GenreName(static_cast<std::int32_t>(DigitsVal(reference)));
    return name == "Unknown" ? std::string() : name;
}

}  // namespace

std::string ResolveID3v2Genre(const std::vector<std::string>& values) {
    for (const std::string& raw : values) {
        const std::string_view value = Trim(raw);
        if (value.empty()) {
            continue;
        }
        if (IsAllDigits(value)) {
            if (std::string name = ReferencedGenre(value); !name.empty()) {
                return name;
            }
            continue;
        }
        // "(NN)" references, a refinement behind them; "((" opens a text that begins with "(".
        std::string first;
        std::size_t pos = 0;
        while (pos + 1 < value.size() && value[pos] == '(' && value[pos + 1] != '(') {
            const std::size_t close = value.find(')', pos);
            if (close == std::string_view::npos) {
                break;
            }
            if (first.empty()) {
                first = ReferencedGenre(value.substr(pos + 1, close - pos - 1));
            }
            pos = close + 1;
        }
        std::string_view rest = value.substr(pos);
        if (rest.starts_with("((")) {
            rest.remove_prefix(1);
        }
        rest = Trim(rest);
        if (!rest.empty()) {
            return std::string(rest);
        }
        if (!first.empty()) {
            return first;
        }
    }
    return {};
}

namespace {

ID3v2Texts ReadTexts(ByteSource& source, bool tagLibOnly) {
    ID3v2Texts texts;
    try {
        if (source.Size() < kID3v2HeaderBytes) {
            return texts;
        }
        const Outcome<ByteView> headView = source.View(0, kID3v2HeaderBytes);
        if (!headView) {
            return texts;
        }
        std::array<std::uint8_t, kID3v2HeaderBytes> header{};
        std::copy(headView->begin(), headView->end(), header.begin());
        const std::optional<ID3v2HeaderInfo> info = ParseID3v2Header(header);
        if (!info || info->major < 2 || info->major > 4) {
            return texts;
        }
        if (info->major == 2 && (info->flags & 0x40) != 0) {
            return texts;  // ID3v2.2 compression was never defined
        }
        const std::int64_t end = std::min(kID3v2HeaderBytes + info->bodySize, source.Size());
        if (info->Unsynchronised() && info->major <= 3) {
            const Outcome<ByteView> body = source.View(
                kID3v2HeaderBytes, std::min(end - kID3v2HeaderBytes, kMaxUnsynchronisedTag));
            if (!body) {
                return texts;
            }
            std::vector<std::uint8_t> plain;  // such tags are rare: their own memory each
            Resynchronise(*body, plain);
            MemoryByteSource undone(ByteView(plain.data(), plain.size()));
            const std::optional<std::int64_t> start =
                SkipExtendedHeader(undone, *info, 0, undone.Size());
            if (start) {
                FrameWalker(undone, *info, header, tagLibOnly).Walk(*start, undone.Size(), texts);
            }
            return texts;
        }
        const std::optional<std::int64_t> start =
            SkipExtendedHeader(source, *info, kID3v2HeaderBytes, end);
        if (start) {
            FrameWalker(source, *info, header, tagLibOnly).Walk(*start, end, texts);
        }
    } catch (...) {
        // An allocation failure inside the frame parser: the tag is ignored, the read goes on.
        return ID3v2Texts{};
    }
    return texts;
}

}  // namespace

ID3v2Texts ReadID3v2Texts(ByteSource& source) {
    return ReadTexts(source, false);
}

ID3v2Texts ReadID3v2TextsThroughTagLib(ByteSource& source) {
    return ReadTexts(source, true);
}

void MergeID3v2Texts(SongInfo& song, const ID3v2Texts& texts) {
    const auto takeText = [](std::string& field, const std::string& text) {
        if (text.empty()) {
            return;
        }
        if (field.empty() || (CharCount(field) == 30 && text.starts_with(field))) {
            field = text;
        }
    };
    takeText(song.Title, texts.Title);
    takeText(song.Artist, texts.Artist);
    takeText(song.Album, texts.Album);
    takeText(song.Comment, texts.Comment);
    if (Trim(song.Year).empty() && !texts.Year.empty()) {
        song.Year = texts.Year;
    }
    if (song.Genre == "Unknown" && !texts.Genre.empty()) {
        song.Genre = texts.Genre;
    }
    if (song.Track == 0 && texts.Track > 0) {
        song.Track = texts.Track;
    }
}

}  // namespace jk
