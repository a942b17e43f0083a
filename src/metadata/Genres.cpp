#include "metadata/Genres.h"

#include "util/Text.h"

namespace jk {
namespace {

// clang-format off
constexpr std::array<std::string_view, kGenreCount> kByNumber = {
    "Blues", "Classic Rock", "Country", "Dance", "Disco", "Funk", "Grunge", "Hip-Hop", "Jazz",
    "Metal", "New Age", "Oldies", "Other", "Pop", "R&B", "Rap", "Reggae", "Rock", "Techno",
    "Industrial", "Alternative", "Ska", "Death Metal", "Pranks", "Soundtrack", "Euro-Techno",
    "Ambient", "Trip-Hop", "Vocal", "Jazz+Funk", "Fusion", "Trance", "Classical", "Instrumental",
    "Acid", "House", "Game", "Sound Clip", "Gospel", "Noise", "AlternRock", "Bass", "Soul", "Punk",
    "Space", "Meditative", "Instrumental Pop", "Instrumental Rock", "Ethnic", "Gothic", "Darkwave",
    "Techno-Industrial", "Electronic", "Pop-Folk", "Eurodance", "Dream", "Southern Rock", "Comedy",
    "Cult", "Gangsta", "Top 40", "Christian Rap", "Pop/Funk", "Jungle", "Native American",
    "Cabaret", "New Wave", "Psychedelic", "Rave", "Showtunes", "Trailer", "Lo-Fi", "Tribal",
    "Acid Punk", "Acid Jazz", "Polka", "Retro", "Musical", "Rock & Roll", "Hard Rock", "Folk",
    "Folk-Rock", "National Folk", "Swing", "Fast-Fusion", "Bebob", "Latin", "Revival", "Celtic",
    "Bluegrass", "Avantgarde", "Gothic Rock", "Progressive Rock", "Psychedelic Rock",
    "Symphonic Rock", "Slow Rock", "Big Band", "Chorus", "Easy Listening", "Acoustic", "Humour",
    "Speech", "Chanson", "Opera", "Chamber Music", "Sonata", "Symphony", "Booty Bass", "Primus",
    "Porn Groove", "Satire", "Slow Jam", "Club", "Tango", "Samba", "Folklore", "Ballad",
    "Power Ballad", "Rhythmic Soul", "Freestyle", "Duet", "Punk Rock", "Drum Solo", "Acapella",
    "Euro-House", "Dance Hall", "Goa", "Drum & Bass", "Club-House", "Hardcore", "Terror", "Indie",
    "BritPop", "Negerpunk", "Polsk Punk", "Beat", "Christian Gangsta Rap", "Heavy Metal",
    "Black Metal", "Crossover", "Contemporary Christian", "Christian Rock", "Merengue", "Salsa",
    "Thrash Metal", "Anime", "J-Pop", "Synthpop",
};

constexpr std::array<std::string_view, kGenreCount> kSorted = {
    "Acapella", "Acid", "Acid Jazz", "Acid Punk", "Acoustic", "Alternative", "AlternRock",
    "Ambient", "Anime", "Avantgarde", "Ballad", "Bass", "Beat", "Bebob", "Big Band", "Black Metal",
    "Bluegrass", "Blues", "Booty Bass", "BritPop", "Cabaret", "Celtic", "Chamber Music", "Chanson",
    "Chorus", "Christian Gangsta Rap", "Christian Rap", "Christian Rock", "Classic Rock",
    "Classical", "Club", "Club-House", "Comedy", "Contemporary Christian", "Country", "Crossover",
    "Cult", "Dance", "Dance Hall", "Darkwave", "Death Metal", "Disco", "Dream", "Drum & Bass",
    "Drum Solo", "Duet", "Easy Listening", "Electronic", "Ethnic", "Eurodance", "Euro-House",
    "Euro-Techno", "Fast-Fusion", "Folk", "Folklore", "Folk-Rock", "Freestyle", "Funk", "Fusion",
    "Game", "Gangsta", "Goa", "Gospel", "Gothic", "Gothic Rock", "Grunge", "Hard Rock", "Hardcore",
    "Heavy Metal", "Hip-Hop", "House", "Humour", "Indie", "Industrial", "Instrumental",
    "Instrumental Pop", "Instrumental Rock", "Jazz", "Jazz+Funk", "J-Pop", "Jungle", "Latin",
    "Lo-Fi", "Meditative", "Merengue", "Metal", "Musical", "National Folk", "Native American",
    "Negerpunk", "New Age", "New Wave", "Noise", "Oldies", "Opera", "Other", "Polka", "Polsk Punk",
    "Pop", "Pop/Funk", "Pop-Folk", "Porn Groove", "Power Ballad", "Pranks", "Primus",
    "Progressive Rock", "Psychedelic", "Psychedelic Rock", "Punk", "Punk Rock", "R&B", "Rap",
    "Rave", "Reggae", "Retro", "Revival", "Rhythmic Soul", "Rock", "Rock & Roll", "Salsa", "Samba",
    "Satire", "Showtunes", "Ska", "Slow Jam", "Slow Rock", "Sonata", "Soul", "Sound Clip",
    "Soundtrack", "Southern Rock", "Space", "Speech", "Swing", "Symphonic Rock", "Symphony",
    "Synthpop", "Tango", "Techno", "Techno-Industrial", "Terror", "Thrash Metal", "Top 40",
    "Trailer", "Trance", "Tribal", "Trip-Hop", "Vocal",
};

// clang-format on

constexpr std::int16_t kNoGenreNumber = 255;
// Where an unknown name lands in the sorted list: the row of "Sound Clip".
constexpr std::int16_t kUnknownSortIndex = 128;

}  // namespace

const std::array<std::string_view, kGenreCount>& GenresByNumber() {
    return kByNumber;
}

const std::array<std::string_view, kGenreCount>& GenresSorted() {
    return kSorted;
}

std::string GenreName(std::int32_t number) {
    if (number < 0 || number >= static_cast<std::int32_t>(kGenreCount)) {
        return "Unknown";
    }
    return std::string(kByNumber[static_cast<std::size_t>(number)]);
}

std::int16_t GenreNumber(std::string_view name) {
    const std::string_view trimmed = Trim(name);
    for (std::size_t i = 0; i < kGenreCount; ++i) {
        if (kByNumber[i] == trimmed) {
            return static_cast<std::int16_t>(i);
        }
    }
    return kNoGenreNumber;
}

std::int16_t GenreSortIndex(std::string_view name) {
    for (std::size_t i = 0; i < kGenreCount; ++i) {
        if (kSorted[i] == name) {
            return static_cast<std::int16_t>(i);
        }
    }
    return kUnknownSortIndex;
}

void FillGenreList(std::vector<std::string>& list) {
    list.reserve(list.size() + kGenreCount);
    for (std::string_view name : kByNumber) {
        list.emplace_back(name);
    }
}

}  // namespace jk
