#include "listing/WalkRules.h"

#include <gtest/gtest.h>

#include <string>

namespace jk {
namespace {

TEST(PassesFilter, FollowsTheFilterModeTable) {
    struct Case {
        std::string name;
        int mode;
        bool passes;
    };
    const Case cases[] = {
        {"song.mp3", 0, true},
        {"SONG.MP3", 0, true},
        {"song.Mp3", 0, true},
        {"song.mp2", 0, false},
        {"song.mpa", 0, false},
        {"song.mp3.txt", 0, false},
        {"mp3", 0, false},
        {".mp3", 0, true},
        {"song.mp2", 1, true},
        {"song.MPA", 1, true},
        {"song.mp3", 1, true},
        {"song.mpeg", 1, false},  // the last four characters are "mpeg"
        {"song.ogg", 1, false},
        {".mp", 1, true},    // shorter than four: compared as a whole
        {"a.mp", 1, false},  // last four "a.mp": its first three are "a.m"
        {"mp", 1, false},
        {"song.mp\xc3\xa9", 1, true},  // the fourth from the end counts as one character
        {"\xc3\xa9.MP3", 0, true},
        {"\xc3\xa9mp3", 0, false},
        {"song.m\xc3\xa9\x33", 0, false},   // "...mé3"
        {"song.\xe2\x84\xaap3", 1, false},  // the Kelvin sign lower-cases to "k", not "m"
        {"song.ogg", 2, true},
        {"", 2, true},
        {"song.mp3", 3, false},
        {"song.mp3", -1, false},
        {"song.mp3", 32767, false},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(PassesFilter(c.name, c.mode), c.passes) << c.name << " mode " << c.mode;
    }
}

TEST(IsRefusedSongPath, RefusesRecycleRecentAndTrashFolders) {
    struct Case {
        std::string path;
        bool refused;
    };
    const Case cases[] = {
        {"/music/a.mp3", false},
        {"/music/Recycled/a.mp3", true},
        {"/music/RECYCLE.BIN/a.mp3", true},
        {"/music/recycler.mp3", true},  // a bare name holding the word is refused too
        {"/mnt/c/Windows/Recent/a.mp3", true},
        {"/mnt/c/windows/recently/a.mp3", true},
        {"/mnt/c/windows/a.mp3", false},
        // Outside ASCII: the text is lower-cased character by character, and the dotted
        // capital I lower-cases to a plain "i".
        {"/m\xc3\xbcsic/RECYCLED/a.mp3", true},
        {"/mnt/c/W\xc4\xb0NDOWS/Recent/a.mp3", true},
        {"/m\xc3\xbcsic/a.mp3", false},
        {"/media/ann/USB/.Trash-1000/files/a.mp3", true},
        {"/media/ann/USB/.Trash/a.mp3", true},
        {"/media/ann/USB/.Trash-/a.mp3", false},
        {"/media/ann/USB/.Trash-12x/a.mp3", false},
        {"/media/ann/USB/.trash/a.mp3", false},  // the trash folders' names are exact
        {"/home/ann/.local/share/Trash/files/a.mp3", true},
        {"/home/ann/.local/share/Trash/info/a.mp3", false},
        {"/home/ann/Trash/filesx/a.mp3", false},
        {"/home/ann/.Trash", false},  // a file named like the folder
        {"/home/ann/Trash/files", false},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(IsRefusedSongPath(c.path), c.refused) << c.path;
    }
}

TEST(IsTemporaryInternetFolder, MatchesAnyCaseAnywhereInThePath) {
    EXPECT_TRUE(IsTemporaryInternetFolder("/win/Temporary Internet Files"));
    EXPECT_TRUE(IsTemporaryInternetFolder("/win/TEMPORARY INTERNET/x"));
    EXPECT_TRUE(IsTemporaryInternetFolder("/music/my temporary internet stash"));
    EXPECT_FALSE(IsTemporaryInternetFolder("/win/Temporary_Internet"));
    EXPECT_FALSE(IsTemporaryInternetFolder("/win/Internet Temporary"));
    EXPECT_TRUE(IsTemporaryInternetFolder("/w\xc3\xaen/Temporary \xc4\xb0nternet Files"));
}

TEST(IsSystemFolder, KeepsWalksOutOfTheKernelsTreesButNotRemovableMedia) {
    struct Case {
        std::string path;
        bool system;
    };
    const Case cases[] = {
        {"/proc", true},
        {"/proc/", true},
        {"/proc/self/fd", true},
        {"/sys/", true},
        {"/dev", true},
        {"/dev/shm", true},
        {"/run", true},
        {"/run/user/1000", true},
        {"/run/media", false},
        {"/run/media/ann/USB/", false},
        {"/run/mediax", true},
        {"/processed", false},
        {"/device", false},
        {"/", false},
        {"/home/ann/proc", false},
        {"/srv/dev", false},
        {"/running", false},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(IsSystemFolder(c.path), c.system) << c.path;
    }
}

}  // namespace
}  // namespace jk
