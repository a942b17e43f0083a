#include "metadata/SongInfo.h"

#include "util/StringHelpers.h"
#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {

SongInfo NonExistantSong() {
    SongInfo song;
    song.Title = kFileNonExistant;
    song.Path = kFileNonExistant;
    return song;
}

bool IsNonExistant(const SongInfo& song) {
    return RTrim(song.Title) == kFileNonExistant;
}

namespace {

void AppendTrackDigits(std::string& out, std::int16_t track) {
    if (track < 100) {
        out.push_back(static_cast<char>('0' + track / 10));
        out.push_back(static_cast<char>('0' + track % 10));
    } else {
        out.append(FormatZeroPadded(track, 2));
    }
}

// The track of an Album that ends in " - NN" (or is "- NN"), else 0.
std::int16_t TrackOfSuffix(std::string_view album) {
    const std::size_t count = CharCount(album);
    if (count < 4) {
        return 0;
    }
    const bool marked =
        count == 4 ? CharLeft(album, 2) == "- " : CharMid(album, count - 4, 3) == " - ";
    return marked ? ToInt16(Val(CharRight(album, 2))).value_or(0) : 0;
}

}  // namespace

void ApplyTrackSuffix(SongInfo& song) {
    if (song.Track > 0) {
        // RTrim(CutAtNull(Album)) is a beginning of Album: cut it there, in place.
        song.Album.resize(RTrim(CutAtNull(song.Album)).size());
        song.Album.append(" - ");
        AppendTrackDigits(song.Album, song.Track);
        return;
    }
    if (song.Track == 0) {
        song.Track = TrackOfSuffix(song.Album);
    }
}

}  // namespace jk
