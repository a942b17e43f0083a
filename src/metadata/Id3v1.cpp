#include "metadata/Id3v1.h"

#include <string_view>

#include "metadata/Genres.h"
#include "util/StringHelpers.h"
#include "util/Text.h"

namespace jk {
namespace {

std::string_view Chars(ByteView bytes, std::size_t from, std::size_t count) {
    return {reinterpret_cast<const char*>(bytes.data()) + from, count};
}

}  // namespace

bool HasID3Tag(ByteSource& source) {
    if (source.Size() < kID3v1Bytes) {
        return false;
    }
    const Outcome<ByteView> mark = source.View(source.Size() - kID3v1Bytes, 3);
    return mark && Chars(*mark, 0, 3) == "TAG";
}

Outcome<Done> ReadID3SongInto(ByteSource& source, const SongReadContext& context, SongInfo& song) {
    const Outcome<ByteView> read = source.View(source.Size() - kID3v1Bytes, kID3v1Bytes);
    if (!read) {
        return read.Fault();
    }
    const ByteView tag = *read;
    const SingleByteCodepage& page = context.codepage;
    // Trimming first and cutting second: blanks ahead of a NUL stay.
    song.Title = DecodeTagText(page, CutAtNull(Trim(Chars(tag, 3, 30))));
    song.Artist = DecodeTagText(page, CutAtNull(Trim(Chars(tag, 33, 30))));
    song.Album = DecodeTagText(page, CutAtNull(Trim(Chars(tag, 63, 30))));
    song.Year = DecodeTagText(page, CutAtNull(Chars(tag, 93, 4)));
    std::string_view comment = Chars(tag, 97, 30);
    if (tag[97 + 28] == 0) {
        song.Track = tag[97 + 29];
        comment = comment.substr(0, 28);
    }
    song.Comment = DecodeTagText(page, CutAtNull(Trim(comment)));
    song.Genre = GenreName(tag[127]);
    // Bitrate and time may read more of the file: the tag's view is not used past here.
    return FillBitrateAndTime(song, source, context.exactTimes);
}

Outcome<SongInfo> ReadID3Song(ByteSource& source, const SongReadContext& context) {
    SongInfo song;
    if (const Outcome<Done> read = ReadID3SongInto(source, context, song); !read) {
        return read.Fault();
    }
    return song;
}

}  // namespace jk
