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

// The size of a built block's text, ahead of its size digits (six of them, or more for a block
// too big to write) and its end mark.
std::size_t BlockBytes(const std::string& built) {
    constexpr std::size_t kEndMarkBytes = 9;
    std::size_t digits = 6;
    while (std::to_string(built.size() - kEndMarkBytes - digits).size() > digits) {
        ++digits;
    }
    return built.size() - kEndMarkBytes - digits;
}

Lyrics3Field MakeField(std::string id, std::string data) {
    Lyrics3Field field;
    field.ID = std::move(id);
    field.Size = static_cast<std::int16_t>(std::min(data.size(), kMaxFieldBytes));
    field.Data = std::move(data);
    return field;
}

TagWriteResult Fault(TagFault fault) {
    return TagWriteResult{fault, {}, 0};
}

// The result of a step on the file: a failed read, write or cut is the file's fault.
TagWriteResult Io(bool ok) {
    return Fault(ok ? TagFault::None : TagFault::FileAccess);
}

TagWriteResult WithOpenFile(const std::string& path,
                            const std::function<TagWriteResult(TagFile&)>& work) {
    if (!FileExists(path)) {
        return Fault(TagFault::FileMissing);
    }
    AddOwnerWritePermission(path);  // a failure shows at the open
    DiskTagFile file(path);
    if (!file.IsOpen()) {
        return Fault(TagFault::FileAccess);
    }
    TagWriteResult result = work(file);
    if (!file.Close() && result) {
        result = Fault(TagFault::FileAccess);
    }
    return result;
}

// What the user knows a field as.
std::string FieldName(std::string_view id) {
    if (id == "ETT") {
        return "title";
    }
    if (id == "EAR") {
        return "artist";
    }
    if (id == "EAL") {
        return "album";
    }
    return "field " + std::string(id);
}

const SingleByteCodepage& PageOr1252(const SingleByteCodepage* page) {
    return page != nullptr ? *page : SingleByteCodepage::Windows1252();
}

}  // namespace

std::string TagFaultText(const TagWriteResult& result) {
    switch (result.fault) {
        case TagFault::None:
        case TagFault::FileMissing:
        case TagFault::FileAccess:
            return {};
        case TagFault::FileTooShort:
            return "The file is too short to hold a tag.";
        case TagFault::TrackTooLarge:
            return "The track number " + std::to_string(result.bytes) +
                   " does not fit the tag, which holds 0 to 255.";
        case TagFault::FieldTooLong:
            return "Its " + FieldName(result.fieldId) + " would take " +
                   std::to_string(result.bytes) +
                   " bytes in the Lyrics3 block, and a field there holds at most " +
                   std::to_string(kMaxFieldBytes) + ".";
        case TagFault::BlockTooLong:
            return "Its Lyrics3 block would take " + std::to_string(result.bytes) +
                   " bytes, and a block holds at most " + std::to_string(kMaxBlockBytes) + ".";
        case TagFault::UnreadableBlock:
            return "Its Lyrics3 block can't be read, so its other fields could not be kept.";
        case TagFault::NoTags:
            return "It has no ID3v1 tag and no Lyrics3 block.";
        case TagFault::EndMarkWithoutBlock:
            return "It has a Lyrics3 end mark, but no block ahead of it and no ID3v1 tag behind "
                   "it, so there is no tag to take off.";
    }
    return {};
}

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

TagWriteResult WriteID3Tag(TagFile& file, const SongInfo& song, const SingleByteCodepage& page) {
    const std::optional<std::string> tag = BuildID3Tag(song, page);
    if (!tag) {
        return TagWriteResult{TagFault::TrackTooLarge, {}, song.Track};
    }
    const std::int64_t length = file.Size();
    if (length < 0) {
        return Fault(TagFault::FileAccess);
    }
    if (length < kID3v1Bytes) {
        return Fault(TagFault::FileTooShort);
    }
    std::uint8_t mark[3] = {};
    if (!file.ReadAt(length - kID3v1Bytes, mark)) {
        return Fault(TagFault::FileAccess);
    }
    if (mark[0] == 'T' && mark[1] == 'A' && mark[2] == 'G') {
        return Io(file.WriteAt(length - kID3v1Bytes + 3, Bytes(*tag).subspan(3)));
    }
    return Io(file.WriteAt(length, Bytes(*tag)));
}

TagWriteResult WriteExpandedTag(TagFile& file, const std::vector<Lyrics3Field>& fields,
                                const SongInfo& song, const SingleByteCodepage& page) {
    const std::optional<std::string> tag = BuildID3Tag(song, page);
    if (!tag) {
        return TagWriteResult{TagFault::TrackTooLarge, {}, song.Track};
    }
    const std::int64_t length = file.Size();
    if (length < 0) {
        return Fault(TagFault::FileAccess);
    }
    for (const Lyrics3Field& field : fields) {
        const std::size_t bytes = Trim(field.Data).size();
        if (bytes > kMaxFieldBytes) {
            return TagWriteResult{TagFault::FieldTooLong, field.ID,
                                  static_cast<std::int64_t>(bytes)};
        }
    }
    std::string payload = BuildLyrics3Block(fields);
    if (const std::size_t blockBytes = BlockBytes(payload); blockBytes > kMaxBlockBytes) {
        return TagWriteResult{TagFault::BlockTooLong, {}, static_cast<std::int64_t>(blockBytes)};
    }
    payload += *tag;
    const TailTags tags = FindTailTags(file, length);
    if (!tags.blockSize && !tags.id3 && length < 1) {
        return Fault(TagFault::FileTooShort);  // the last byte of an empty file can't be read
    }
    // The new tags go where the old ones began; a shorter set leaves the rest to be cut.
    if (!file.WriteAt(tags.start, Bytes(payload))) {
        return Fault(TagFault::FileAccess);
    }
    const std::int64_t end = tags.start + static_cast<std::int64_t>(payload.size());
    return Io(end >= length || file.TruncateTo(end));
}

TagWriteResult WriteSongTag(TagFile& file, const SongInfo& song, const SingleByteCodepage& page) {
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
        return Fault(TagFault::UnreadableBlock);
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

TagWriteResult StripTags(TagFile& file) {
    const std::int64_t length = file.Size();
    if (length < 0) {
        return Fault(TagFault::FileAccess);
    }
    const TailTags tags = FindTailTags(file, length);
    if (!tags.blockSize && !tags.id3) {
        TagFileByteSource source(file);
        return Fault(HasLyrics3Tag(source) ? TagFault::EndMarkWithoutBlock : TagFault::NoTags);
    }
    return Io(file.TruncateTo(tags.start));
}

TagWriteResult WriteSongTag(const std::string& path, const SongInfo& song,
                            const SingleByteCodepage* page) {
    return WithOpenFile(path,
                        [&](TagFile& file) { return WriteSongTag(file, song, PageOr1252(page)); });
}

TagWriteResult WriteID3Tag(const std::string& path, const SongInfo& song,
                           const SingleByteCodepage* page) {
    return WithOpenFile(path,
                        [&](TagFile& file) { return WriteID3Tag(file, song, PageOr1252(page)); });
}

TagWriteResult WriteExpandedTag(const std::string& path, const std::vector<Lyrics3Field>& fields,
                                const SongInfo& song, const SingleByteCodepage* page) {
    return WithOpenFile(path, [&](TagFile& file) {
        return WriteExpandedTag(file, fields, song, PageOr1252(page));
    });
}

TagWriteResult StripTags(const std::string& path) {
    return WithOpenFile(path, [](TagFile& file) { return StripTags(file); });
}

}  // namespace jk
