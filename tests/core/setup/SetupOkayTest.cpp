#include "setup/SetupOkay.h"

#include <ctime>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "app/Session.h"
#include "catalogue/SongCache.h"
#include "support/CacheRecords.h"

namespace jk {
namespace {

// Writes down each effect with its argument, in the order they came.
class EffectRecorder final : public SetupEffects {
public:
    std::vector<std::string> calls;

    void SetTop(bool alwaysOnTop) override { Add("SetTop", alwaysOnTop); }
    void UpdateWindowsMode(std::int16_t windowsMode) override {
        calls.push_back("UpdateWindowsMode " + std::to_string(windowsMode));
    }
    void ListCurrentFolderAfresh() override { calls.push_back("ListCurrentFolderAfresh"); }
    void ApplyDelMode(bool enabled) override { Add("ApplyDelMode", enabled); }
    void ShowGridLines(bool on) override { Add("ShowGridLines", on); }
    void ShowCurrSongChanged(bool on) override { Add("ShowCurrSongChanged", on); }
    void UpdatePlayerMode() override { calls.push_back("UpdatePlayerMode"); }
    void SetPlayerMode() override { calls.push_back("SetPlayerMode"); }
    void ResizeForm() override { calls.push_back("ResizeForm"); }

private:
    void Add(const char* name, bool value) {
        calls.push_back(std::string(name) + (value ? " on" : " off"));
    }
};

class SetupOkayTest : public ::testing::Test {
protected:
    SetupOkayTest() {
        LoadDefaults(session, "/usr/bin/mpv");
        ApplyMaxCache(session);
        ApplyFilterMode(session);
        session.CacheCodepage = session.Settings.TagCodepage;
    }

    SetupForm Opened() const { return InitializeSetupForm(session.Settings); }

    Session session;
    EffectRecorder effects;
};

TEST_F(SetupOkayTest, WithNothingChangedTheWindowIsBroughtUpToDateInOrder) {
    SetupOkay(session, Opened(), effects);
    EXPECT_EQ(effects.calls,
              (std::vector<std::string>{"SetTop off", "UpdateWindowsMode 0", "ShowGridLines on",
                                        "UpdatePlayerMode", "SetPlayerMode", "ResizeForm"}));
}

TEST_F(SetupOkayTest, ChangesAreAppliedInTheirPlaces) {
    session.Settings.AlwaysOnTop = 1;
    SetupForm form = Opened();
    form["Combo10"].choice = 2;  // FilterMode: every file
    form["Combo11"].choice = 2;  // DelMode: disabled
    form["Combo8"].choice = 1;   // WindowsMode: taskbar and tray
    form["Check11"].checked = false;
    form["Check13"].checked = false;
    SetupOkay(session, form, effects);
    EXPECT_EQ(effects.calls, (std::vector<std::string>{
                                 "SetTop on", "UpdateWindowsMode 1", "ListCurrentFolderAfresh",
                                 "ApplyDelMode off", "ShowGridLines off", "ShowCurrSongChanged off",
                                 "UpdatePlayerMode", "SetPlayerMode", "ResizeForm"}));
    EXPECT_EQ(session.FileFilter, "*.*");
    EXPECT_EQ(session.Settings.DelMode, 2);
}

TEST_F(SetupOkayTest, DelModeBackFromDisabledSwitchesTheDeleteCommandsOn) {
    session.Settings.DelMode = 2;
    SetupForm form = Opened();
    form["Combo11"].choice = 1;
    SetupOkay(session, form, effects);
    EXPECT_NE(std::find(effects.calls.begin(), effects.calls.end(), "ApplyDelMode on"),
              effects.calls.end());
    EXPECT_TRUE(DeleteCommandsEnabled(0));
    EXPECT_TRUE(DeleteCommandsEnabled(1));
    EXPECT_FALSE(DeleteCommandsEnabled(2));
}

TEST_F(SetupOkayTest, TheCacheSizeSetsTheCacheLimit) {
    struct Case {
        int choice;
        std::int32_t limit;
    };
    for (const Case c : {Case{0, 0}, Case{1, 50}, Case{6, 2500}, Case{7, 1000000}}) {
        SetupForm form = Opened();
        form["Combo6"].choice = c.choice;
        SetupOkay(session, form, effects);
        EXPECT_EQ(session.Settings.MaxCache, c.choice);
        EXPECT_EQ(session.CacheLimit, c.limit) << c.choice;
    }
}

TEST_F(SetupOkayTest, AShorterExpiryTakesEffectAtOnce) {
    // Used five days ago: kept for a week, gone after three days.
    const std::time_t then = std::time(nullptr) - 5 * 24 * 3600;
    std::tm local{};
    localtime_r(&then, &local);
    char stamp[16];
    std::strftime(stamp, sizeof stamp, "%Y%m%d%H%M%S", &local);
    SongInfo used;
    used.Path = "used.mp3";
    used.LastUsed = stamp;
    SongInfo last;
    last.Path = "zzz.mp3";
    last.LastUsed = stamp;  // the last record is never aged
    session.SongCache = test::CacheOf({used, last});

    SetupOkay(session, Opened(), effects);  // ExpireMode 2: a week
    EXPECT_EQ(test::KeysOf(session.SongCache), (std::vector<std::string>{"used.mp3", "zzz.mp3"}));
    SetupForm form = Opened();
    form["Combo7"].choice = 1;  // after 3 days
    SetupOkay(session, form, effects);
    EXPECT_EQ(test::KeysOf(session.SongCache), (std::vector<std::string>{"zzz.mp3"}));
}

TEST_F(SetupOkayTest, ANewTagCodepageEmptiesTheCache) {
    SongInfo song;
    song.Path = "a.mp3";
    song.LastUsed = "29991231120000";
    session.SongCache = test::CacheOf({song, song});
    SetupForm form = Opened();
    SetupOkay(session, form, effects);
    EXPECT_EQ(session.SongCache.UpperBound(), 1);  // only the duplicate went

    form["cboTagCodepage"].choice = 2;  // windows-1251
    SetupOkay(session, form, effects);
    EXPECT_EQ(session.Settings.TagCodepage, "windows-1251");
    EXPECT_EQ(session.SongCache.UpperBound(), 0);
    EXPECT_EQ(session.CacheCodepage, "windows-1251");
}

TEST_F(SetupOkayTest, ThePlayerListsTextBecomesThePlayer) {
    session.Settings.PlayerHistory[1] = "/usr/bin/mpv";
    SetupForm form = Opened();
    form["Combo5"].text = "/usr/bin/audacious";
    SetupOkay(session, form, effects);
    EXPECT_EQ(CurrentPlayerPath(session.Settings), "/usr/bin/audacious");
    EXPECT_EQ(session.Settings.PlayerHistory[1], "/usr/bin/audacious");
    EXPECT_EQ(session.Settings.PlayerHistory[2], "/usr/bin/mpv");
}

}  // namespace
}  // namespace jk
