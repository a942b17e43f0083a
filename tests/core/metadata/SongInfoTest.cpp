#include "metadata/SongInfo.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace jk {
namespace {

TEST(ApplyTrackSuffix, AddsTheSuffixOrTakesTheTrackBackFromIt) {
    struct Case {
        std::string album;
        std::int16_t track;
        std::string albumAfter;
        std::int16_t trackAfter;
    };
    for (const Case& c : std::vector<Case>{
             {"Blue", 3, "Blue - 03", 3},
             {"Blue  ", 12, "Blue - 12", 12},
             {std::string("Blue\0junk", 9), 1, "Blue - 01", 1},
             {"Greatest - 07", 0, "Greatest - 07", 7},
             {"- 12", 0, "- 12", 12},
             {"-12 ", 0, "-12 ", 0},
             {"X- 12", 0, "X- 12", 0},
             {"Live - 1a", 0, "Live - 1a", 1},
             {"Live - 1", 0, "Live - 1", 0},
             {"Tape - 4b", 0, "Tape - 4b", 4},
             {"abc", 0, "abc", 0},
             {"\xC3\xA9t\xC3\xA9 - 09", 0, "\xC3\xA9t\xC3\xA9 - 09", 9},
         }) {
        SongInfo song;
        song.Album = c.album;
        song.Track = c.track;
        ApplyTrackSuffix(song);
        EXPECT_EQ(song.Album, c.albumAfter) << c.album;
        EXPECT_EQ(song.Track, c.trackAfter) << c.album;
    }
}

}  // namespace
}  // namespace jk
