#include "app/SongTagEdit.h"

#include "util/Text.h"

namespace jk {

void StripTrackSuffix(SongInfo& song) {
    if (song.Track <= 0) {
        return;
    }
    const std::string number = FormatZeroPadded(song.Track, 2);
    const std::string suffix = " - " + number;
    if (EndsWith(song.Album, suffix)) {
        song.Album.resize(song.Album.size() - suffix.size());
    } else if (song.Album == "- " + number) {
        // The whole album is the track, as a plain ID3v1.0 tag holds it.
        song.Album.clear();
    }
}

SongInfo EditedSong(SongInfo song, const TagChanges& changes) {
    StripTrackSuffix(song);
    const auto apply = [](std::string& field, const std::optional<std::string>& change) {
        if (change) {
            field = *change;
        }
    };
    apply(song.Title, changes.Title);
    apply(song.Artist, changes.Artist);
    apply(song.Album, changes.Album);
    apply(song.Year, changes.Year);
    apply(song.Comment, changes.Comment);
    apply(song.Genre, changes.Genre);
    if (changes.Track) {
        song.Track = *changes.Track;
    }
    return song;
}

std::string TagWriteFailedText(std::string_view fileName, const TagWriteResult& result) {
    const std::string reason = TagFaultText(result);
    return "The tag for " + std::string(fileName) + " could not be written successfully.  " +
           (reason.empty() ? "Perhaps you don't have write-permissions to the file." : reason);
}

}  // namespace jk
