#include "metadata/SongInfo.h"

#include "metadata/TrackSuffix.h"
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

constexpr std::string_view kTrackMark = " - ";

// The track of an Album that ends in " - NN" (or is "- NN"), else 0.
std::int16_t TrackOfSuffix(std::string_view album) {
    const std::size_t count = CharCount(album);
    if (count < 4) {
        return 0;
    }
    const bool marked = count == 4 ? CharLeft(album, 2) == kTrackMark.substr(1)
                                   : CharMid(album, count - 4, 3) == kTrackMark;
    return marked ? ToInt16(Val(CharRight(album, 2))).value_or(0) : std::int16_t{0};
}

}  // namespace

void AppendTrackSuffix(std::string& album, std::int16_t track) {
    album.resize(RTrim(album).size());
    album.append(kTrackMark);
    if (track >= 0 && track < 100) {
        // Two digits without a formatted string: every record of a walk passes here.
        album.push_back(static_cast<char>('0' + track / 10));
        album.push_back(static_cast<char>('0' + track % 10));
    } else {
        album.append(FormatZeroPadded(track, 2));
    }
}

void ApplyTrackSuffix(SongInfo& song) {
    if (song.Track > 0) {
        song.Album.resize(CutAtNull(song.Album).size());
        AppendTrackSuffix(song.Album, song.Track);
        return;
    }
    if (song.Track == 0) {
        song.Track = TrackOfSuffix(song.Album);
    }
}

void StripTrackSuffix(SongInfo& song) {
    if (song.Track <= 0) {
        return;
    }
    const std::string number = FormatZeroPadded(song.Track, 2);
    const std::string suffix = std::string(kTrackMark) + number;
    if (EndsWith(song.Album, suffix)) {
        song.Album.resize(song.Album.size() - suffix.size());
    } else if (song.Album == suffix.substr(1)) {
        // The whole album is the track, as a plain ID3v1.0 tag holds it.
        song.Album.clear();
    }
}

}  // namespace jk
