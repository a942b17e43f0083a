#include "app/CacheSaving.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "app/Session.h"
#include "app/SettingsStore.h"
#include "catalogue/VBaseFile.h"
#include "core/app/CacheTestSupport.h"
#include "support/TempFolder.h"

namespace jk {
namespace {

using test::IniValue;
using test::KeysOnDisk;

class CacheSaving : public ::testing::Test {
protected:
    CacheSaving() {
        LoadDefaults(session, "");
        session.AppPath = folder.Folder();
        session.CacheCodepage = "windows-1252";
        session.SongCache = test::CacheOf({test::StoredRecord("a.mp3", "20240103000000"),
                                           test::StoredRecord("b.mp3", "20240101000000"),
                                           test::StoredRecord("c.mp3", "20240102000000")});
        session.Settings.TotalCacheHits = 5;
        session.Settings.CacheHits = 3;
    }
    std::string Ini() const { return folder.File("jukarra2.ini"); }
    // A cache.dat holding one record, "old.mp3".
    void WriteOldCache() const {
        SongCache old = test::CacheOf({test::StoredRecord("old.mp3", "20240101000000")});
        ASSERT_TRUE(SaveCache(old, folder.Folder()).ok);
    }

    test::TempFolder folder;
    Session session;
};

TEST_F(CacheSaving, AnExistingSettingsFileTakesOnlyTheCounters) {
    folder.Write(
        "jukarra2.ini",
        test::PreviousRunIni("[Options]\r\nIntroLength=12\r\n[Records]\r\nCacheHits=1\r\n"));
    session.Settings.IntroLength = 30;  // as a --set override leaves it
    ASSERT_TRUE(SaveLookupResults(session).ok);
    EXPECT_EQ(IniValue(Ini(), "Options", "IntroLength"), "12");
    EXPECT_EQ(IniValue(Ini(), "Records", "TotalCacheHits"), "5");
    EXPECT_EQ(IniValue(Ini(), "Records", "CacheHits"), "3");
    EXPECT_EQ(KeysOnDisk(folder.Folder()), (std::vector<std::string>{"a.mp3", "b.mp3", "c.mp3"}));
}

TEST_F(CacheSaving, AFolderWithoutAPreviousRunGetsTheWholeSettings) {
    ASSERT_TRUE(SaveLookupResults(session).ok);
    EXPECT_EQ(IniValue(Ini(), "INIexists", "Check"), "1");
    EXPECT_EQ(IniValue(Ini(), "Options", "IntroLength"), "7");
    EXPECT_EQ(IniValue(Ini(), "Records", "TotalCacheHits"), "5");
    EXPECT_EQ(KeysOnDisk(folder.Folder()).size(), 3U);
}

TEST_F(CacheSaving, TheCacheIsTrimmedToItsLimitKeepingTheMostRecentlyUsed) {
    session.CacheLimit = 2;
    ASSERT_TRUE(SaveLookupResults(session).ok);
    EXPECT_EQ(KeysOnDisk(folder.Folder()), (std::vector<std::string>{"a.mp3", "c.mp3"}));

    session.CacheLimit = 1;
    session.CacheFrozen = -1;
    ASSERT_TRUE(SaveLookupResults(session).ok);
    EXPECT_EQ(KeysOnDisk(folder.Folder()).size(), 2U);
}

TEST_F(CacheSaving, AHeldBackCacheLeavesCacheDatAloneButSavesTheCounters) {
    folder.Write("jukarra2.ini", test::PreviousRunIni("[Options]\r\nTagCodepage=windows-1252\r\n"));
    WriteOldCache();
    session.Settings.TagCodepage = "KOI8-R";
    session.CacheCodepage = "KOI8-R";
    session.CacheSaveBlocked = true;
    ASSERT_TRUE(SaveLookupResults(session).ok);
    EXPECT_EQ(KeysOnDisk(folder.Folder()), std::vector<std::string>{"old.mp3"});
    EXPECT_EQ(IniValue(Ini(), "Records", "TotalCacheHits"), "5");
    EXPECT_EQ(IniValue(Ini(), "Options", "TagCodepage"), "windows-1252");
}

TEST_F(CacheSaving, AFirstRunSavesItsCodepageAndTheCacheWithIt) {
    WriteOldCache();
    session.Settings.TagCodepage = "KOI8-R";
    session.CacheCodepage = "KOI8-R";
    session.CacheSaveBlocked = true;
    session.SongCache.Clear();
    ASSERT_TRUE(SaveCacheCounters(session).ok);
    EXPECT_EQ(IniValue(Ini(), "Options", "TagCodepage"), "KOI8-R");
    EXPECT_TRUE(KeysOnDisk(folder.Folder()).empty());
    EXPECT_FALSE(session.CacheSaveBlocked);
}

TEST_F(CacheSaving, AFailedWriteIsReported) {
    session.AppPath = folder.File("missing-folder/");
    const IoResult result = SaveLookupResults(session);
    EXPECT_FALSE(result.ok);
    EXPECT_FALSE(result.error.empty());
}

}  // namespace
}  // namespace jk
