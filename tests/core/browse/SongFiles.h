#pragma once

// Real song files for the scan tests, looked up through a song cache as the program does.

#include <cstdint>
#include <string>
#include <string_view>

#include "catalogue/GetSongInfo.h"
#include "catalogue/SongCache.h"
#include "support/TempFolder.h"

namespace jk::test {

// A small MP3 file: three MPEG-1 Layer III frames (128 kbit/s, 44.1 kHz) of silence and an
// ID3v1 tag with `title` (which may be empty) and the other fields blank-padded.
inline std::string SongFileBytes(std::string_view title) {
    const auto padded = [](std::string_view text, std::size_t width) {
        std::string out(text.substr(0, width));
        out.append(width - out.size(), ' ');
        return out;
    };
    std::string frame = "\xFF\xFB\x90\x00";
    frame.resize(417, '\0');
    return frame + frame + frame + "TAG" + padded(title, 30) + padded("Artist", 30) +
           padded("Album", 30) + "1999" + padded("", 30) + "\x11";
}

inline void WriteSongFile(const std::string& path, std::string_view title) {
    WriteBytes(path, SongFileBytes(title));
}

// A song cache and a lookup over it, as a session has them.
struct CacheLookups {
    SongCache cache;
    std::int32_t total = 0;
    std::int32_t hits = 0;
    SongLookup lookup{cache, {total, hits}};
};

}  // namespace jk::test
