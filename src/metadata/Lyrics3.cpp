#include "metadata/Lyrics3.h"

#include <algorithm>

#include "metadata/Id3v1.h"
#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {
namespace {

constexpr std::string_view kBegin = "LYRICSBEGIN";
constexpr std::string_view kEndMark = "LYRICS200";
// From the end of the file: the end mark starts 137 bytes back, the size digits 143.
constexpr std::int64_t kEndMarkBack = 137;
constexpr std::int64_t kSizeDigitsBack = 143;

std::string_view Chars(ByteView bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

// Takes up to `count` characters from the front of `text`.
std::string_view TakeFront(std::string_view& text, std::size_t count) {
    const std::string_view front = text.substr(0, std::min(count, text.size()));
    text.remove_prefix(front.size());
    return front;
}

Outcome<std::int64_t> BlockSize(ByteSource& source) {
    const Outcome<ByteView> digits = source.View(source.Size() - kSizeDigitsBack, 6);
    if (!digits) {
        return digits.Fault();
    }
    const std::optional<std::int32_t> size = ToInt32(DigitsVal(Chars(*digits)));
    if (!size) {
        return ReadFault::Overflow32;
    }
    if (*size < 0) {
        return ReadFault::NegativeLength;
    }
    return std::int64_t{*size};
}

// The longer-text rule: the extended text wins unless it is shorter.
void TakeLonger(std::string& field, const std::string& extended) {
    if (CharCount(extended) >= CharCount(field)) {
        field = extended;
    }
}

}  // namespace

bool HasLyrics3Tag(ByteSource& source) {
    if (source.Size() < kEndMarkBack) {
        return false;
    }
    const Outcome<ByteView> mark = source.View(source.Size() - kEndMarkBack, 9);
    return mark && Chars(*mark) == kEndMark;
}

Outcome<std::string_view> ReadLyrics3BlockBytes(ByteSource& source) {
    const Outcome<std::int64_t> size = BlockSize(source);
    if (!size) {
        return size.Fault();
    }
    const Outcome<ByteView> block = source.View(source.Size() - *size - kSizeDigitsBack, *size);
    if (!block) {
        return block.Fault();
    }
    return Chars(*block);
}

Outcome<std::vector<Lyrics3Field>> ParseLyrics3Block(std::string_view block) {
    std::vector<Lyrics3Field> fields;
    std::string_view rest = block;
    TakeFront(rest, kBegin.size());
    while (!rest.empty()) {
        Lyrics3Field field;
        field.ID = std::string(TakeFront(rest, 3));
        const std::optional<std::int16_t> size = ToInt16(DigitsVal(TakeFront(rest, 5)));
        if (!size) {
            return ReadFault::Overflow16;
        }
        if (*size < 0) {
            return ReadFault::NegativeLength;
        }
        field.Size = *size;
        field.Data = std::string(TakeFront(rest, static_cast<std::size_t>(*size)));
        fields.push_back(std::move(field));
    }
    return fields;
}

Outcome<std::vector<Lyrics3Field>> ReadLyrics3Fields(ByteSource& source) {
    const Outcome<std::string_view> block = ReadLyrics3BlockBytes(source);
    if (!block) {
        return block.Fault();
    }
    return ParseLyrics3Block(*block);
}

Outcome<Done> ReadLyrics3SongInto(ByteSource& source, const SongReadContext& context,
                                  SongInfo& song) {
    const Outcome<std::string_view> block = ReadLyrics3BlockBytes(source);
    if (!block) {
        return block.Fault();
    }
    const bool chanceHit = !block->starts_with(kBegin);
    std::string title;
    std::string artist;
    std::string album;
    if (!chanceHit) {
        const Outcome<std::vector<Lyrics3Field>> fields = ParseLyrics3Block(*block);
        if (!fields) {
            return fields.Fault();
        }
        for (const Lyrics3Field& field : *fields) {
            if (field.ID == "ETT") {
                title = DecodeTagText(context.codepage, Trim(field.Data));
            } else if (field.ID == "EAR") {
                artist = DecodeTagText(context.codepage, Trim(field.Data));
            } else if (field.ID == "EAL") {
                album = DecodeTagText(context.codepage, Trim(field.Data));
            }
        }
    }
    // The block's view is spent: the ID3v1 reading may read elsewhere.
    const Outcome<Done> read = HasID3Tag(source) ? ReadID3SongInto(source, context, song)
                                                 : ReadUntaggedSongInto(source, context, song);
    if (!read || chanceHit) {
        return read;
    }
    TakeLonger(song.Title, title);
    TakeLonger(song.Artist, artist);
    TakeLonger(song.Album, album);
    return Done{};
}

Outcome<SongInfo> ReadLyrics3Song(ByteSource& source, const SongReadContext& context) {
    SongInfo song;
    if (const Outcome<Done> read = ReadLyrics3SongInto(source, context, song); !read) {
        return read.Fault();
    }
    return song;
}

std::string BuildLyrics3Block(const std::vector<Lyrics3Field>& fields) {
    std::string out(kBegin);
    for (const Lyrics3Field& field : fields) {
        if (field.ID == "IND") {
            out += "IND";
            out += FormatZeroPadded(field.Size, 5);
            out += field.Data;
            break;
        }
    }
    for (const Lyrics3Field& field : fields) {
        if (field.ID == "IND" || field.Data.empty()) {
            continue;
        }
        const std::string_view data = Trim(field.Data);
        out += field.ID;
        out += FormatZeroPadded(static_cast<std::int64_t>(data.size()), 5);
        out += data;
    }
    out += FormatZeroPadded(static_cast<std::int64_t>(out.size()), 6);
    out += kEndMark;
    return out;
}

std::optional<std::int64_t> GenuineLyrics3BlockSize(ByteSource& source) {
    if (!HasLyrics3Tag(source) || !HasID3Tag(source) || source.Size() < kSizeDigitsBack) {
        return std::nullopt;
    }
    const Outcome<ByteView> digits = source.View(source.Size() - kSizeDigitsBack, 6);
    if (!digits) {
        return std::nullopt;
    }
    std::int64_t size = 0;
    for (const std::uint8_t digit : *digits) {
        if (digit < '0' || digit > '9') {
            return std::nullopt;
        }
        size = size * 10 + (digit - '0');
    }
    if (size < static_cast<std::int64_t>(kBegin.size()) || size > source.Size() - kSizeDigitsBack) {
        return std::nullopt;
    }
    const Outcome<ByteView> begin = source.View(source.Size() - kSizeDigitsBack - size, 11);
    if (!begin || Chars(*begin) != kBegin) {
        return std::nullopt;
    }
    return size;
}

}  // namespace jk
