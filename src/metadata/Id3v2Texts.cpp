#include "metadata/Id3v2Texts.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>

#include <commentsframe.h>
#include <id3v2frame.h>
#include <id3v2framefactory.h>
#include <id3v2header.h>
#include <tbytevector.h>
#include <textidentificationframe.h>

#include "metadata/Genres.h"
#include "metadata/Id3v2Header.h"
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
    FrameWalker(ByteSource& source, const ID3v2HeaderInfo& info, ByteView header)
        : m_source(source),
          m_info(info),
          m_tagHeader(TagLib::ByteVector(reinterpret_cast<const char*>(header.data()),
                                         static_cast<unsigned int>(header.size()))) {}

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
            TagLib::ID3v2::FrameFactory::instance()->createFrame(data, &m_tagHeader));
        if (!frame) {
            return false;
        }
        if (kind == Wanted::Comment) {
            const auto* comment = dynamic_cast<const TagLib::ID3v2::CommentsFrame*>(frame.get());
            if (comment == nullptr) {
                return false;
            }
            texts.Comment = CleanText(comment->text());
            return true;
        }
        const auto* text = dynamic_cast<const TagLib::ID3v2::TextIdentificationFrame*>(frame.get());
        if (text == nullptr) {
            return false;
        }
        const TagLib::StringList fields = text->fieldList();
        const std::string first = fields.isEmpty() ? std::string() : CleanText(fields.front());
        switch (kind) {
            case Wanted::Title:
                texts.Title = first;
                break;
            case Wanted::Artist:
                texts.Artist = first;
                break;
            case Wanted::Album:
                texts.Album = first;
                break;
            case Wanted::Year:
                texts.Year = std::string(CharLeft(first, 4));
                break;
            case Wanted::Genre: {
                std::vector<std::string> values;
                for (const TagLib::String& field : fields) {
                    values.push_back(CleanText(field));
                }
                texts.Genre = ResolveID3v2Genre(values);
                break;
            }
            case Wanted::Track: {
                const std::string_view number = std::string_view(first).substr(0, first.find('/'));
                const std::optional<std::int16_t> track = ToInt16(Val(number));
                texts.Track = track && *track > 0 ? *track : 0;
                break;
            }
            default:
                break;
        }
        return true;
    }

    ByteSource& m_source;
    const ID3v2HeaderInfo& m_info;
    TagLib::ID3v2::Header m_tagHeader;
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
    const std::string name = GenreName(static_cast<std::int32_t>(Val(reference)));
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

ID3v2Texts ReadID3v2Texts(ByteSource& source) {
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
            thread_local std::vector<std::uint8_t> plain;
            Resynchronise(*body, plain);
            MemoryByteSource undone(ByteView(plain.data(), plain.size()));
            const std::optional<std::int64_t> start =
                SkipExtendedHeader(undone, *info, 0, undone.Size());
            if (start) {
                FrameWalker(undone, *info, header).Walk(*start, undone.Size(), texts);
            }
            if (plain.capacity() > static_cast<std::size_t>(kMaxTextFrame)) {
                std::vector<std::uint8_t>().swap(plain);
            }
            return texts;
        }
        const std::optional<std::int64_t> start =
            SkipExtendedHeader(source, *info, kID3v2HeaderBytes, end);
        if (start) {
            FrameWalker(source, *info, header).Walk(*start, end, texts);
        }
    } catch (...) {
        // An allocation failure inside the frame parser: the tag is ignored, the read goes on.
        return ID3v2Texts{};
    }
    return texts;
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
