#include "app/Session.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "app/Messages.h"

namespace jk {
namespace {

TEST(Session, MaxCacheChoosesTheCacheLimit) {
    const std::vector<std::pair<std::int16_t, std::int32_t>> cases = {
        {0, 0},    {1, 50},   {2, 100},     {3, 250},   {4, 500},
        {5, 1000}, {6, 2500}, {7, 1000000}, {-1, 1234}, {8, 1234},
    };
    for (const auto& [maxCache, expected] : cases) {
        Session session;
        session.CacheLimit = 1234;
        session.Settings.MaxCache = maxCache;
        ApplyMaxCache(session);
        EXPECT_EQ(session.CacheLimit, expected) << maxCache;
    }
}

TEST(Session, FilterModeChoosesTheFileFilter) {
    const std::vector<std::pair<std::int16_t, std::string>> cases = {
        {0, "*.mp3"}, {1, "*.mp*"}, {2, "*.*"}, {3, "*.mp*"}, {-1, "*.mp*"},
    };
    for (const auto& [mode, expected] : cases) {
        Session session;
        session.FileFilter = "*.mp*";
        session.Settings.FilterMode = mode;
        ApplyFilterMode(session);
        EXPECT_EQ(session.FileFilter, expected) << mode;
    }
}

TEST(Session, WinampOnlyCommandsFollowThePlayerPath) {
    Session session;
    for (const auto& [path, expected] :
         std::vector<std::pair<std::string, bool>>{{"C:\\Program Files\\WINAMP\\winamp.exe", true},
                                                   {"/opt/WinAmp2/run", false},
                                                   {"/opt/x/WinAmp.EXE", true},
                                                   {"/usr/bin/mpv", false},
                                                   {"", false}}) {
        session.Settings.PlayerExes[1] = path;
        EXPECT_EQ(IsWinampOnlyMode(session.Settings), expected) << path;
    }
}

TEST(VersionCheck, OffersANewVersionAfter45Days) {
    EXPECT_EQ(DaysSinceBuild(2000, 2, 26), 0);
    EXPECT_EQ(DaysSinceBuild(2000, 3, 1), 4);  // 2000 has a 29 February
    EXPECT_EQ(DaysSinceBuild(2000, 2, 1), -25);
    EXPECT_EQ(DaysSinceBuild(2001, 2, 26), 366);
    EXPECT_FALSE(VersionCheckText(2000, 4, 11).has_value());  // day 45
    EXPECT_FALSE(VersionCheckText(1999, 12, 31).has_value());
    EXPECT_EQ(VersionCheckText(2000, 4, 12).value(),
              "This version of Jukarra is  46 days old.\nWould you like to check for a new "
              "version?");
}

TEST(Messages, KeepTheirWordsAndTitles) {
    EXPECT_EQ(ErrorBox().title, "You forgot something...");
    EXPECT_EQ(ErrorBox().text,
              "Sorry, this tool requires you to have at least one file in the Playlist to "
              "function.\n\nTo add files to the playlist, right-click on selected items in the "
              "Files pane and Add them.\nYou can use the Folder menu to add groups of files.  Or "
              "simply drag & drop them into the Playlist.");
    EXPECT_EQ(ErrorBox().icon, MessageIcon::Warning);
    EXPECT_EQ(WelcomeMessage().title, "Welcome!");
    EXPECT_EQ(WelcomeMessage().icon, MessageIcon::Information);
    EXPECT_EQ(IniSaveFailedMessage().text, "INI file could not be saved successfully.");
    EXPECT_EQ(IniSaveFailedMessage().title, "Sorry...");
}

}  // namespace
}  // namespace jk
