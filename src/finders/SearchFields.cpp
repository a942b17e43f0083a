#include "finders/SearchFields.h"

namespace jk {

const std::array<SearchField, kSearchFieldCount>& SearchTestOrder() {
    static constexpr std::array<SearchField, kSearchFieldCount> kOrder = {
        SearchField::Filename, SearchField::Title,   SearchField::Artist,
        SearchField::Album,    SearchField::Comment, SearchField::Genre,
        SearchField::Year,     SearchField::Bitrate, SearchField::Volume};
    return kOrder;
}

const std::array<SearchFieldEntry, kSearchFieldCount>& SearchFieldEntries() {
    static constexpr std::array<SearchFieldEntry, kSearchFieldCount> kEntries = {{
        {SearchField::Title, "SearchTitle", "Title"},
        {SearchField::Artist, "SearchArtist", "Artist"},
        {SearchField::Album, "SearchAlbum", "Album"},
        {SearchField::Year, "SearchYear", "Year"},
        {SearchField::Genre, "SearchGenre", "Genre"},
        {SearchField::Bitrate, "SearchBitrate", "Bitrate"},
        {SearchField::Filename, "SearchFilename", "Filename"},
        {SearchField::Comment, "SearchComment", "Comment"},
        {SearchField::Volume, "SearchVolume", "Volume"},
    }};
    return kEntries;
}

std::string_view SearchFieldOf(const SongInfo& song, SearchField field) {
    switch (field) {
        case SearchField::Title:
            return song.Title;
        case SearchField::Artist:
            return song.Artist;
        case SearchField::Album:
            return song.Album;
        case SearchField::Year:
            return song.Year;
        case SearchField::Genre:
            return song.Genre;
        case SearchField::Bitrate:
            return song.Bitrate;
        case SearchField::Filename:
            return song.Path;
        case SearchField::Comment:
            return song.Comment;
        case SearchField::Volume:
            return song.Volume;
        case SearchField::Count:
            break;
    }
    return {};
}

SearchFieldSet ParseFieldFlags(std::string_view flags, std::size_t count) {
    SearchFieldSet fields;
    for (std::size_t i = 0; i < count && i < flags.size() && i < kSearchFieldCount; ++i) {
        fields.set(i, flags[i] == '1');
    }
    return fields;
}

std::string FieldFlagsText(const SearchFieldSet& fields, std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count && i < kSearchFieldCount; ++i) {
        text.push_back(fields.test(i) ? '1' : '0');
    }
    return text;
}

}  // namespace jk
