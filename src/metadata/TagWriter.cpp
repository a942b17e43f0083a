#include "metadata/TagWriter.h"

#include <functional>
#include <span>

#include "metadata/Genres.h"
#include "metadata/Id3v1.h"
#include "util/StringHelpers.h"
#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {
namespace {

// Readers hold a Lyrics3 field's size in 16 bits and the block's in six digits: a block past
// these could not be read back, so it is never written.
constexpr std::size_t kMaxFieldBytes = 32767;
constexpr std::size_t kMaxBlockBytes = 999999;

std::span<const std::uint8_t> Bytes(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

// A field of exactly `width` bytes in the tag code page.
std::string Fixed(std::string_view text, std::size_t width, const SingleByteCodepage& page) {
    std::string bytes = page.Encode(PadField(text, width));
    bytes.resize(width, ' ');
    return bytes;
}

// Where the tags at the end begin, by the readers' rules: a genuine Lyrics3 block with its
// ID3v1 tag, an ID3v1 tag alone, or nothing (the file's length).
struct TailTags {
    std::optional<std::int64_t> blockSize;
    bool id3 = false;
    std::int64_t start = 0;
};

TailTags FindTailTags(TagFile& file, std::int64_t length) {
    TagFileByteSource source(file);
    TailTags tags;
    tags.blockSize = GenuineLyrics3BlockSize(source);
    tags.id3 = HasID3Tag(source);
    if (tags.blockSize) {
        tags.start = length - *tags.blockSize - kLyrics3Trailer - kID3v1Bytes;
    } else if (tags.id3) {
        tags.start = length - kID3v1Bytes;
    } else {
        tags.start = length;
    }
    return tags;
}

Lyrics3Field MakeField(std::string id, std::string data) {
    Lyrics3Field field;
    field.ID = std::move(id);
    field.Size = static_cast<std::int16_t>(std::min(data.size(), kMaxFieldBytes));
    field.Data = std::move(data);
    return field;
}

bool WithOpenFile(const std::string& path, const std::function<bool(TagFile&)>& work) {
    if (!FileExists(path)) {
        return false;
    }
    AddOwnerWritePermission(path);  // a failure shows at the open
    DiskTagFile file(path);
    if (!file.IsOpen()) {
        return false;
    }
    const bool ok = work(file);
    return file.Close() && ok;
}

const SingleByteCodepage& PageOr1252(const SingleByteCodepage* page) {
    return page != nullptr ? *page : SingleByteCodepage::Windows1252();
}

}  // namespace

std::optional<std::string> BuildID3Tag(const SongInfo& song, const SingleByteCodepage& page) {
    std::string tag = "TAG";
    tag.reserve(kID3v1Bytes);
    tag += Fixed(song.Title, 30, page);
    tag += Fixed(song.Artist, 30, page);
    tag += Fixed(song.Album, 30, page);
    tag += Fixed(song.Year, 4, page);
    if (song.Track < 1) {
        tag += Fixed(song.Comment, 30, page);
    } else {
        if (song.Track > 255) {
            return std::nullopt;
        }
        tag += Fixed(song.Comment, 28, page);
        tag.push_back('\0');
        tag.push_back(static_cast<char>(song.Track));
    }
    tag.push_back(static_cast<char>(static_cast<std::uint8_t>(GenreNumber(song.Genre))));
    return tag;
}

bool WriteID3Tag(TagFile& file, const SongInfo& song, const SingleByteCodepage& page) {
    const std::optional<std::string> tag = BuildID3Tag(song, page);
    const std::int64_t length = file.Size();
    if (!tag || length < kID3v1Bytes) {
        return false;
    }
    std::uint8_t mark[3] = {};
    if (!file.ReadAt(length - kID3v1Bytes, mark)) {
        return false;
    }
    if (mark[0] == 'T' && mark[1] == 'A' && mark[2] == 'G') {
        return file.WriteAt(length - kID3v1Bytes + 3, Bytes(*tag).subspan(3));
    }
    return file.WriteAt(length, Bytes(*tag));
}

bool WriteExpandedTag(TagFile& file, const std::vector<Lyrics3Field>& fields, const SongInfo& song,
                      const SingleByteCodepage& page) {
    const std::int64_t length = file.Size();
    const std::optional<std::string> tag = BuildID3Tag(song, page);
    if (length < 0 || !tag) {
        return false;
    }
    for (const Lyrics3Field& field : fields) {
        if (Trim(field.Data).size() > kMaxFieldBytes) {
            return false;
        }
    }
    std::string payload = BuildLyrics3Block(fields);
    if (payload.size() - kLyrics3Trailer > kMaxBlockBytes) {
        return false;
    }
    payload += *tag;
    const TailTags tags = FindTailTags(file, length);
    if (!tags.blockSize && !tags.id3 && length < 1) {
        return false;  // the last byte of an empty file can't be read
    }
    // The new tags go where the old ones began; a shorter set leaves the rest to be cut.
    if (!file.WriteAt(tags.start, Bytes(payload))) {
        return false;
    }
    const std::int64_t end = tags.start + static_cast<std::int64_t>(payload.size());
    return end >= length || file.TruncateTo(end);
}

bool WriteSongTag(TagFile& file, const SongInfo& song, const SingleByteCodepage& page) {
    const bool tooLong =
        CharCount(song.Title) >= 31 || CharCount(song.Artist) >= 31 || CharCount(song.Album) >= 31;
    TagFileByteSource source(file);
    if (!GenuineLyrics3BlockSize(source)) {
        if (!tooLong) {
            return WriteID3Tag(file, song, page);
        }
        const std::vector<Lyrics3Field> fields = {MakeField("EAL", page.Encode(song.Album)),
                                                  MakeField("EAR", page.Encode(song.Artist)),
                                                  MakeField("ETT", page.Encode(song.Title))};
        return WriteExpandedTag(file, fields, song, page);
    }
    Outcome<std::vector<Lyrics3Field>> read = ReadLyrics3Fields(source);
    if (!read) {
        return false;
    }
    std::vector<Lyrics3Field> fields = std::move(read).Value();
    bool seenTitle = false;
    bool seenArtist = false;
    bool seenAlbum = false;
    for (Lyrics3Field& field : fields) {
        if (field.ID == "ETT") {
            field = MakeField("ETT", page.Encode(song.Title));
            seenTitle = true;
        } else if (field.ID == "EAR") {
            field = MakeField("EAR", page.Encode(song.Artist));
            seenArtist = true;
        } else if (field.ID == "EAL") {
            field = MakeField("EAL", page.Encode(song.Album));
            seenAlbum = true;
        }
    }
    if (tooLong) {
        if (!seenTitle) {
            fields.push_back(MakeField("ETT", page.Encode(song.Title)));
        }
        if (!seenArtist) {
            fields.push_back(MakeField("EAR", page.Encode(song.Artist)));
        }
        if (!seenAlbum) {
            fields.push_back(MakeField("EAL", page.Encode(song.Album)));
        }
    }
    return WriteExpandedTag(file, fields, song, page);
}

bool StripTags(TagFile& file) {
    const std::int64_t length = file.Size();
    if (length < 0) {
        return false;
    }
    const TailTags tags = FindTailTags(file, length);
    if (!tags.blockSize && !tags.id3) {
        return false;
    }
    return file.TruncateTo(tags.start);
}

bool WriteSongTag(const std::string& path, const SongInfo& song, const SingleByteCodepage* page) {
    return WithOpenFile(path,
                        [&](TagFile& file) { return WriteSongTag(file, song, PageOr1252(page)); });
}

bool WriteID3Tag(const std::string& path, const SongInfo& song, const SingleByteCodepage* page) {
    return WithOpenFile(path,
                        [&](TagFile& file) { return WriteID3Tag(file, song, PageOr1252(page)); });
}

bool WriteExpandedTag(const std::string& path, const std::vector<Lyrics3Field>& fields,
                      const SongInfo& song, const SingleByteCodepage* page) {
    return WithOpenFile(path, [&](TagFile& file) {
        return WriteExpandedTag(file, fields, song, PageOr1252(page));
    });
}

bool StripTags(const std::string& path) {
    return WithOpenFile(path, [](TagFile& file) { return StripTags(file); });
}

}  // namespace jk
