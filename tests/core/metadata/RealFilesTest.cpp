// Real files made by lame and sox (scripts/make-test-mp3s.sh), read both ways: as the Parts
// read them and with the ID3v2 and exact-times extensions.

#include <gtest/gtest.h>

#include "metadata/SongFileReader.h"

namespace jk {
namespace {

std::string SongPath(const std::string& name) {
    return std::string(JUKARRA_TEST_DATA) + "/songs/" + name;
}

SongInfo ReadSong(const std::string& name, bool extensions) {
    SongReadOptions options;
    options.readId3v2 = extensions;
    options.exactTimes = extensions;
    const std::string path = SongPath(name);
    return SongReader(options).Read(path, FileAtHand(StatPath(path)));
}

struct Expected {
    const char* file;
    bool extensions;
    const char* title;
    const char* artist;
    const char* genre;
    const char* year;
    const char* bitrate;
    const char* time;
    int track;
};

TEST(RealFiles, ReadAsThePartsAndTheExtensionsSay) {
    const Expected cases[] = {
        {"cbr64-id3v1.mp3", false, "Plain Title", "Plain Artist", "Rock", "1998", "64", "00:01", 4},
        {"cbr64-id3v1.mp3", true, "Plain Title", "Plain Artist", "Rock", "1998", "64", "00:01", 4},
        {"cbr32-info-id3v2.mp3", false, "", "", "Unknown", "    ", "32", "00:01", 0},
        {"cbr32-info-id3v2.mp3", true, "A title longer than thirty characters in all",
         "Info Artist", "Jazz", "2003", "32", "00:01", 7},
        {"id3v24-utf8.mp3", true,
         "\xC3\x9Cn\xC3\xAF"
         "c\xC3\xB6"
         "d\xC3\xA9 T\xC3\xAFtl\xC3\xA9",
         "\xC3\x84rtist", "Trance", "2021", "32", "00:01", 11},
        {"mono22-id3v1.mp3", false, "Mono", "One Channel", "Unknown", "", "16", "00:02", 0},
        {"mono22-id3v1.mp3", true, "Mono", "One Channel", "Unknown", "", "16", "00:02", 0},
        {"mpeg2-untagged.mp3", false, "", "", "Unknown", "    ", "24", "00:02", 0},
        {"mpeg2-untagged.mp3", true, "", "", "Unknown", "    ", "24", "00:02", 0},
        // The Parts' Xing reading counts 1152 samples in MPEG-2 frames of 576: twice the time.
        {"vbr-xing.mp3", false, "Variable", "Xing Artist", "Ambient", "2010", "8", "00:05", 0},
        {"vbr-xing.mp3", true, "Variable", "Xing Artist", "Ambient", "2010", "13", "00:02", 0},
    };
    for (const Expected& c : cases) {
        SCOPED_TRACE(std::string(c.file) + (c.extensions ? " with extensions" : " as the Parts"));
        const SongInfo song = ReadSong(c.file, c.extensions);
        ASSERT_FALSE(IsNonExistant(song));
        EXPECT_EQ(song.Title, c.title);
        EXPECT_EQ(song.Artist, c.artist);
        EXPECT_EQ(song.Genre, c.genre);
        EXPECT_EQ(song.Year, c.year);
        EXPECT_EQ(song.Bitrate, c.bitrate);
        EXPECT_EQ(song.Time, c.time);
        EXPECT_EQ(song.Track, c.track);
        EXPECT_EQ(song.Path, SongPath(c.file));
    }
}

}  // namespace
}  // namespace jk
