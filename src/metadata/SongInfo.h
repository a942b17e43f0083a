#pragma once

// The one record every part of the program passes around. Numbers are held as decimal text,
// since the record is shown, sorted and written out as text.

#include <cstdint>
#include <string>
#include <string_view>

namespace jk {

struct SongInfo {
    std::string Title;
    std::string Artist;
    std::string Album;
    std::string Comment;
    std::string Genre;
    std::string Year;
    std::string Bitrate;
    std::string Date;
    std::string Size;
    std::string Time;
    std::string Path;
    std::string Volume;
    std::string LastUsed;
    std::int16_t Reserved = 0;
    std::int16_t Track = 0;

    friend bool operator==(const SongInfo&, const SongInfo&) = default;
};

// The mark of a file that could not be read, in Title and Path.
inline constexpr std::string_view kFileNonExistant = "File non-existant";

SongInfo NonExistantSong();
// True when RTrim(Title) is the failure mark.
bool IsNonExistant(const SongInfo& song);

// The Album rules of every record a lookup gives: a Track above 0 appends " - NN" to Album (cut
// at a NUL and of trailing blanks first); a Track of 0 is taken back from such a suffix, the
// Album left as it stands. The suffix is never stored.
void ApplyTrackSuffix(SongInfo& song);

}  // namespace jk
