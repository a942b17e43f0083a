#include "app/SongProperties.h"

#include <charconv>

#include "util/PathHelpers.h"
#include "util/Text.h"

namespace jk {

std::string PropertiesFilename(std::string_view path, std::int16_t filenameMode) {
    return std::string(filenameMode == 1 ? BareName(path) : path);
}

std::vector<PropertyLine> SongPropertyLines(const SongInfo& song, std::string_view path,
                                            std::int16_t filenameMode) {
    std::vector<PropertyLine> lines = {
        {"Filename", PropertiesFilename(path, filenameMode)},
        {"Title", song.Title},
        {"Artist", song.Artist},
        {"Album", song.Album},
        {"Year", song.Year},
        {"Genre", song.Genre},
        {"Track", song.Track > 0 ? std::to_string(song.Track) : std::string()},
        {"Comment", song.Comment},
        {"Time", song.Time},
        {"Bitrate", std::string(Trim(song.Bitrate))},
        {"Size", song.Size},
        {"Date", song.Date},
        {"Volume", song.Volume},
    };
    return lines;
}

TagFields EditableFields(SongInfo song) {
    StripTrackSuffix(song);
    TagFields fields;
    fields.Title = RTrim(song.Title);
    fields.Artist = RTrim(song.Artist);
    fields.Album = RTrim(song.Album);
    fields.Year = Trim(song.Year);
    fields.Genre = song.Genre;
    fields.Comment = RTrim(song.Comment);
    fields.Track = song.Track > 0 ? std::to_string(song.Track) : std::string();
    return fields;
}

TagChanges ChangesBetween(const TagFields& before, const TagFields& after, std::string& error) {
    TagChanges changes;
    error.clear();
    const auto take = [](std::optional<std::string>& change, const std::string& old,
                         const std::string& now) {
        if (now != old) {
            change = now;
        }
    };
    take(changes.Title, before.Title, after.Title);
    take(changes.Artist, before.Artist, after.Artist);
    take(changes.Album, before.Album, after.Album);
    take(changes.Year, before.Year, after.Year);
    take(changes.Genre, before.Genre, after.Genre);
    take(changes.Comment, before.Comment, after.Comment);
    if (after.Track != before.Track) {
        const std::string_view text = Trim(after.Track);
        int track = 0;
        const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), track);
        if (!text.empty() && (failure != std::errc() || end != text.data() + text.size() ||
                              track < 0 || track > 255)) {
            error = "The track must be a number from 0 to 255.";
            return {};
        }
        changes.Track = static_cast<std::int16_t>(text.empty() ? 0 : track);
    }
    return changes;
}

}  // namespace jk
