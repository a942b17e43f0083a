#include "metadata/SongInfo.h"

#include "metadata/TrackSuffix.h"

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
             {"Long", 123, "Long - 123", 123},
         }) {
        SongInfo song;
        song.Album = c.album;
        song.Track = c.track;
        ApplyTrackSuffix(song);
        EXPECT_EQ(song.Album, c.albumAfter) << c.album;
        EXPECT_EQ(song.Track, c.trackAfter) << c.album;
    }
}

// What a save appends, a later read takes back and an edit takes off again.
TEST(TrackSuffix, SavedSuffixReadsBackAndStripsOff) {
    for (const std::int16_t track : {std::int16_t{1}, std::int16_t{9}, std::int16_t{42},
                                     std::int16_t{100}, std::int16_t{255}}) {
        SongInfo song;
        song.Album = "Songs  ";
        AppendTrackSuffix(song.Album, track);
        SongInfo read = song;
        ApplyTrackSuffix(read);
        EXPECT_EQ(read.Track, track < 100 ? track : 0) << track;
        song.Track = track;
        StripTrackSuffix(song);
        EXPECT_EQ(song.Album, "Songs") << track;
    }
}

}  // namespace
}  // namespace jk
