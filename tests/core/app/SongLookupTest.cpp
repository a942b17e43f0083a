#include "app/SongLookup.h"

#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "app/Session.h"
#include "catalogue/SongCache.h"
#include "support/TempFolder.h"
#include "util/FileIo.h"
#include "util/Text.h"

namespace jk {
namespace {

TEST(SongLookup, ReadingOptionsFollowTheSettings) {
    // ReadID3v2, ExactTimes, TagCodepage -> readId3v2, exactTimes, the code page's name.
    const std::vector<std::tuple<int, int, std::string, bool, bool, std::string>> cases = {
        {1, 1, "windows-1252", true, true, "windows-1252"},
        {0, 0, "KOI8-R", false, false, "KOI8-R"},
        {-1, 1, "windows-1251", true, true, "windows-1251"},  // -1 is true as well
        {1, -1, "", true, true, "windows-1252"},
        {0, 1, "no-such-page", false, true, "windows-1252"},
    };
    for (const auto& [id3v2, exact, page, wantId3v2, wantExact, wantPage] : cases) {
        Session session;
        session.Settings.ReadID3v2 = static_cast<std::int16_t>(id3v2);
        session.Settings.ExactTimes = static_cast<std::int16_t>(exact);
        session.Settings.TagCodepage = page;
        const SongReadOptions options = SongReadOptionsOf(session);
        EXPECT_EQ(options.readId3v2, wantId3v2) << id3v2;
        EXPECT_EQ(options.exactTimes, wantExact) << exact;
        ASSERT_NE(options.codepage, nullptr);
        EXPECT_EQ(AsciiLower(options.codepage->Name()), AsciiLower(wantPage)) << page;
    }
}

TEST(SongLookup, LookupsCountInTheSettingsAndFillTheSessionsCache) {
    const test::TempFolder folder;
    std::string song;
    ASSERT_TRUE(
        ReadWholeFile(std::string(JUKARRA_TEST_DATA) + "/songs/cbr64-id3v1.mp3", song, 1 << 20).ok);
    folder.Write("Plain.mp3", song);

    Session session;
    session.Settings.TotalCacheHits = 10;
    session.Settings.CacheHits = 4;
    session.VolumeLabelLookup = [](const std::string& path) {
        return path.find("Plain") != std::string::npos ? std::string("MY DISK") : std::string();
    };
    SongLookup lookup = MakeSongLookup(session);

    const std::string path = folder.File("Plain.mp3");
    const SongInfo first = GetSongInfo(path, lookup);
    EXPECT_EQ(first.Title, "Plain Title");
    EXPECT_EQ(first.Volume, "MY DISK");
    EXPECT_EQ(session.SongCache.UpperBound(), 1);
    EXPECT_EQ(session.SongCache.KeyOf(1), "plain.mp3");
    EXPECT_EQ(session.Settings.TotalCacheHits, 11);
    EXPECT_EQ(session.Settings.CacheHits, 4);

    const SongInfo second = GetSongInfo(path, lookup);
    EXPECT_EQ(second.Title, "Plain Title");
    EXPECT_EQ(session.Settings.TotalCacheHits, 12);
    EXPECT_EQ(session.Settings.CacheHits, 5);
}

}  // namespace
}  // namespace jk
