#pragma once

// The thirteen text fields of a song by their sort key numbers, which are also their order in
// the VBASE files: 1 Title, 2 Artist, 3 Album, 4 Year, 5 Genre, 6 Time, 7 Bitrate, 8 Path,
// 9 Comment, 10 Size, 11 Volume, 12 Date, 13 LastUsed.

#include <array>
#include <string>

#include "metadata/SongInfo.h"

namespace jk {

inline constexpr int kSongFieldCount = 13;

enum SongKey : int {
    kKeyTitle = 1,
    kKeyArtist,
    kKeyAlbum,
    kKeyYear,
    kKeyGenre,
    kKeyTime,
    kKeyBitrate,
    kKeyPath,
    kKeyComment,
    kKeySize,
    kKeyVolume,
    kKeyDate,
    kKeyLastUsed,
};

inline constexpr bool IsSongKey(int key) {
    return key >= kKeyTitle && key <= kKeyLastUsed;
}

// The member that a key (1..13) selects.
inline constexpr std::array<std::string SongInfo::*, kSongFieldCount> kSongKeyMembers = {
    &SongInfo::Title,    &SongInfo::Artist, &SongInfo::Album,   &SongInfo::Year,
    &SongInfo::Genre,    &SongInfo::Time,   &SongInfo::Bitrate, &SongInfo::Path,
    &SongInfo::Comment,  &SongInfo::Size,   &SongInfo::Volume,  &SongInfo::Date,
    &SongInfo::LastUsed,
};

inline std::string& SongField(SongInfo& song, int key) {
    return song.*kSongKeyMembers[static_cast<std::size_t>(key - 1)];
}
inline const std::string& SongField(const SongInfo& song, int key) {
    return song.*kSongKeyMembers[static_cast<std::size_t>(key - 1)];
}

}  // namespace jk
