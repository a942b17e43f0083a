#include "app/SessionData.h"

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "app/Session.h"
#include "app/SettingsTable.h"
#include "app/Shutdown.h"
#include "app/Startup.h"
#include "catalogue/VBaseFile.h"
#include "core/app/CacheTestSupport.h"
#include "support/TempFolder.h"
#include "util/TimeHelpers.h"

namespace jk {
namespace {

class QuietFront final : public StartupFront,
                         public ShutdownFront,
                         public PaneFront,
                         public MessageFront {
public:
    std::vector<std::int64_t> progress;

    bool ShowProgress(std::int64_t done, std::int64_t /*total*/) override {
        progress.push_back(done);
        return true;
    }
    SaveAnswer AskSaveList(const UserMessage& /*question*/) override { return SaveAnswer::No; }
    void ShowMessage(const UserMessage& /*message*/) override {}
};

class SessionDataCache : public ::testing::Test {
protected:
    // A previous run's folder: 7 days of expiry, and a cache of a recent record, an expired
    // one, two of the same name, and a last one (never tested for age).
    SessionDataCache() {
        folder.Write("jukarra2.ini",
                     test::PreviousRunIni("[Options]\r\nExpireMode=2\r\nMaxCache=7\r\n"
                                          "TagCodepage=windows-1252\r\n"));
        const std::string now = NowStamp14();
        SongCache cache = test::CacheOf({
            test::StoredRecord("a.mp3", now),
            test::StoredRecord("b.mp3", "20000101000000"),
            test::StoredRecord("c.mp3", "20000101000000", "older"),
            test::StoredRecord("c.mp3", now, "newer"),
            test::StoredRecord("d.mp3", "20000101000000"),
        });
        EXPECT_TRUE(SaveCache(cache, folder.Folder()).ok);
        std::string path = folder.Folder();
        path.pop_back();
        environment.dataFolder = path;
    }

    void Start(Session& session) { RunStartup(session, front, data, environment); }
    void Override(std::string_view key, std::string value) {
        environment.overrides.push_back({FindSetting(key).field, std::move(value)});
    }
    std::string CacheBytes() const { return folder.Read("cache.dat"); }

    test::TempFolder folder;
    StartupEnvironment environment;
    QuietFront front;
    SessionData data;
};

TEST_F(SessionDataCache, StartupLoadsTheCacheAndOptimizesIt) {
    Session session;
    Start(session);
    EXPECT_EQ(test::KeysOf(session.SongCache),
              (std::vector<std::string>{"a.mp3", "c.mp3", "d.mp3"}));
    EXPECT_EQ(session.SongCache.Record(2).Title, "newer");
    EXPECT_EQ(session.CacheCodepage, "windows-1252");
    EXPECT_FALSE(session.CacheSaveBlocked);
    EXPECT_FALSE(front.progress.empty());  // the splash followed the load
}

TEST_F(SessionDataCache, ShutdownTrimsToTheLimitAndSavesTheCache) {
    Session session;
    Start(session);
    session.CacheLimit = 2;
    ASSERT_TRUE(FormUnload(session, front, data).iniWritten);
    EXPECT_EQ(test::KeysOnDisk(folder.Folder()), (std::vector<std::string>{"a.mp3", "c.mp3"}));
}

TEST_F(SessionDataCache, ATagCodepageForThisRunEmptiesTheCacheAndKeepsTheFile) {
    Override("TagCodepage", "KOI8-R");
    const std::string before = CacheBytes();
    Session session;
    Start(session);
    EXPECT_EQ(session.SongCache.UpperBound(), 0);
    EXPECT_TRUE(session.CacheSaveBlocked);
    FormUnload(session, front, data);
    EXPECT_EQ(CacheBytes(), before);
}

TEST_F(SessionDataCache, AnOverrideThatNamesTheSavedCodepageKeepsTheCache) {
    Override("TagCodepage", "WINDOWS-1252");
    Session session;
    Start(session);
    EXPECT_EQ(session.SongCache.UpperBound(), 3);
    EXPECT_FALSE(session.CacheSaveBlocked);
}

}  // namespace
}  // namespace jk
