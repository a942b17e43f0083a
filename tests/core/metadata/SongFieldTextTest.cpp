#include "metadata/SongFieldText.h"

#include <gtest/gtest.h>

namespace jk {
namespace {

SongInfo FullSong() {
    SongInfo song;
    song.Title = "Title";
    song.Artist = "Artist";
    song.Album = "Album - 07";
    song.Year = "1999";
    song.Genre = "Rock";
    song.Time = "03:45";
    song.Bitrate = "128";
    song.Path = "/music/rock/song.mp3";
    song.Comment = "Comment";
    song.Size = "4000";
    song.Date = "2024-01-01 00:00";
    song.Volume = "DISC";
    song.LastUsed = "20240601120000";
    song.Track = 7;
    return song;
}

TEST(SongFieldText, GivesTheFieldOfEachCode) {
    const SongInfo song = FullSong();
    const struct {
        int code;
        bool fullPath;
        bool cutTrackSuffix;
        const char* text;
    } cases[] = {
        {1, false, false, "Title"},
        {2, false, false, "Artist"},
        {3, false, false, "Album - 07"},
        {3, false, true, "Album"},
        {4, false, false, "1999"},
        {5, false, false, "Rock"},
        {6, false, false, "03:45"},
        {7, false, false, "128"},
        {8, false, false, "song.mp3"},
        {8, true, false, "/music/rock/song.mp3"},
        {9, false, false, "Comment"},
        {10, false, false, "4000"},
        {11, false, false, "2024-01-01 00:00"},
        {12, false, false, "DISC"},
        {13, false, false, "/music/rock"},
        {13, true, true, "/music/rock"},
        {0, false, false, "-"},
        {14, false, false, "-"},
        {-1, false, false, "-"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(SongFieldText(c.code, song, c.fullPath, c.cutTrackSuffix), c.text)
            << "code " << c.code;
    }
}

TEST(SongFieldText, EmptyTextIsADashAndOnlyAFullTrackSuffixIsCut) {
    const SongInfo blank;
    for (int code = 1; code <= 13; ++code) {
        EXPECT_EQ(SongFieldText(code, blank, true, true), "-") << "code " << code;
    }
    SongInfo song;
    song.Year = "    ";  // blanks are text
    EXPECT_EQ(SongFieldText(4, song, false, false), "    ");
    const struct {
        const char* album;
        const char* text;
    } albums[] = {
        {"Blue - 03", "Blue"},
        {"Blue  - 03", "Blue"},
        {" - 03", "-"},
        {"- 03", "- 03"},
        {"Blue -03", "Blue -03"},
        {"Blue - 3", "Blue - 3"},
        {"Bl\xC3\xBC - 12", "Bl\xC3\xBC"},
        {"Live - EP", "Live"},
    };
    for (const auto& a : albums) {
        song.Album = a.album;
        EXPECT_EQ(SongFieldText(3, song, false, true), a.text) << a.album;
        EXPECT_EQ(SongFieldText(3, song, false, false), a.album) << a.album;
    }
}

}  // namespace
}  // namespace jk
