#include "metadata/SongFieldText.h"

#include <string_view>

#include "util/PathHelpers.h"
#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {
namespace {

// "Album - 07" gives "Album": the suffix's last five characters are " - " and the track.
std::string_view WithoutTrackSuffix(std::string_view album) {
    const std::size_t count = CharCount(album);
    if (count < 5 || CharMid(album, count - 4, 3) != " - ") {
        return album;
    }
    return Trim(CharLeft(album, count - 5));
}

std::string_view FieldText(int code, const SongInfo& song, bool fullPath, bool cutTrackSuffix) {
    switch (code) {
        case 1:
            return song.Title;
        case 2:
            return song.Artist;
        case 3:
            return cutTrackSuffix ? WithoutTrackSuffix(song.Album) : song.Album;
        case 4:
            return song.Year;
        case 5:
            return song.Genre;
        case 6:
            return song.Time;
        case 7:
            return song.Bitrate;
        case 8:
            return fullPath ? std::string_view(song.Path) : BareName(song.Path);
        case 9:
            return song.Comment;
        case 10:
            return song.Size;
        case 11:
            return song.Date;
        case 12:
            return song.Volume;
        case 13:
            return ParentPath(song.Path);
        default:
            return {};
    }
}

}  // namespace

std::string SongFieldText(int code, const SongInfo& song, bool fullPath, bool cutTrackSuffix) {
    const std::string_view text = FieldText(code, song, fullPath, cutTrackSuffix);
    return text.empty() ? std::string("-") : std::string(text);
}

}  // namespace jk
