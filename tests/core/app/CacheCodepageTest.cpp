#include "app/CacheCodepage.h"

#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "app/ProfileFile.h"
#include "app/Session.h"
#include "core/app/CacheTestSupport.h"

namespace jk {
namespace {

TEST(CacheCodepage, TheSavedCodepageIsTheFilesOnlyWhenItRecordsARun) {
    const std::vector<std::tuple<std::string, std::string>> cases = {
        {test::PreviousRunIni("[Options]\r\nTagCodepage=KOI8-R\r\n"), "KOI8-R"},
        {test::PreviousRunIni("[Options]\r\ntagcodepage=windows-1251\r\n"), "windows-1251"},
        // An older file without the key reads "", which is windows-1252.
        {test::PreviousRunIni("[Options]\r\nIntroLength=7\r\n"), ""},
        // No run recorded: the first run's default.
        {"[Options]\r\nTagCodepage=KOI8-R\r\n", "windows-1252"},
        {"", "windows-1252"},
    };
    for (const auto& [ini, expected] : cases) {
        EXPECT_EQ(SavedTagCodepage(ProfileFile::Parse(ini)), expected) << ini;
    }
}

TEST(CacheCodepage, NamesCompareByTheCodepageTheyGive) {
    const std::vector<std::tuple<std::string, std::string, bool>> cases = {
        {"windows-1252", "windows-1252", true},
        {"", "windows-1252", true},              // empty is windows-1252
        {"no-such-page", "windows-1252", true},  // so is an unknown name
        {"KOI8-R", "koi8-r", true},
        {" KOI8-R ", "KOI8-R", true},
        {"windows-1251", "windows-1252", false},
        {"KOI8-R", "KOI8-U", false},
        {"", "ISO-8859-2", false},
    };
    for (const auto& [a, b, same] : cases) {
        EXPECT_EQ(SameTagCodepage(a, b), same) << a << " / " << b;
    }
}

// A session whose cache holds two records read in windows-1252.
void FillSession(Session& session) {
    session.CacheCodepage = "windows-1252";
    session.Settings.TagCodepage = "windows-1252";
    session.SongCache = test::CacheOf({test::StoredRecord("a.mp3", "20240101000000"),
                                       test::StoredRecord("b.mp3", "20240101000000")});
}

TEST(CacheCodepage, TheSameCodepageKeepsTheCache) {
    for (const SettingScope scope : {SettingScope::Saved, SettingScope::ThisRun}) {
        Session session;
        FillSession(session);
        session.Settings.TagCodepage = "WINDOWS-1252";
        EXPECT_FALSE(FlushCacheOnCodepageChange(session, scope));
        EXPECT_EQ(session.SongCache.UpperBound(), 2);
        EXPECT_FALSE(session.CacheSaveBlocked);
    }
}

TEST(CacheCodepage, AChangeForThisRunEmptiesTheCacheAndHoldsItBack) {
    Session session;
    FillSession(session);
    session.Settings.TagCodepage = "KOI8-R";
    EXPECT_FALSE(FlushCacheOnCodepageChange(session, SettingScope::ThisRun));
    EXPECT_EQ(session.SongCache.UpperBound(), 0);
    EXPECT_TRUE(session.CacheSaveBlocked);
    EXPECT_EQ(session.CacheCodepage, "KOI8-R");

    // Songs read in this run's code page are not flushed again by a later check.
    session.SongCache = test::CacheOf({test::StoredRecord("c.mp3", "20240101000000")});
    EXPECT_FALSE(FlushCacheOnCodepageChange(session, SettingScope::ThisRun));
    EXPECT_EQ(session.SongCache.UpperBound(), 1);
    EXPECT_TRUE(session.CacheSaveBlocked);
}

TEST(CacheCodepage, ASavedChangeEmptiesTheCacheAndAsksForItToBeSaved) {
    Session session;
    FillSession(session);
    session.Settings.TagCodepage = "windows-1251";
    EXPECT_TRUE(FlushCacheOnCodepageChange(session, SettingScope::Saved));
    EXPECT_EQ(session.SongCache.UpperBound(), 0);
    EXPECT_FALSE(session.CacheSaveBlocked);
    EXPECT_EQ(session.CacheCodepage, "windows-1251");
}

TEST(CacheCodepage, SavingThisRunsCodepageEndsTheHold) {
    Session session;
    FillSession(session);
    session.Settings.TagCodepage = "KOI8-R";
    FlushCacheOnCodepageChange(session, SettingScope::ThisRun);
    session.SongCache = test::CacheOf({test::StoredRecord("c.mp3", "20240101000000")});
    // The settings file now takes KOI8-R: the cache read in it must replace cache.dat.
    EXPECT_TRUE(FlushCacheOnCodepageChange(session, SettingScope::Saved));
    EXPECT_FALSE(session.CacheSaveBlocked);
    EXPECT_EQ(session.SongCache.UpperBound(), 1);
}

}  // namespace
}  // namespace jk
