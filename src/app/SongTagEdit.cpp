#include "app/SongTagEdit.h"

#include "util/Text.h"

namespace jk {

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
