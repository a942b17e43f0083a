// The command surface as data: every item hangs below a menu that stands before it, names are
// unique, the toolbar's commands are menu items, and the items wired by other parts name them.

#include "app/CommandSurface.h"

#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace jk {
namespace {

TEST(CommandSurface, EveryEntryHangsBelowAMenuThatStandsBeforeIt) {
    std::set<std::string_view> menus;
    std::set<std::string_view> names;
    for (const MenuEntry& entry : MenuTable()) {
        if (!entry.Parent.empty()) {
            EXPECT_TRUE(menus.contains(entry.Parent)) << entry.Name << " below " << entry.Parent;
        } else {
            EXPECT_EQ(entry.Kind, MenuEntryKind::Menu) << entry.Name;
        }
        if (entry.Kind == MenuEntryKind::Separator) {
            EXPECT_FALSE(entry.Parent.empty());
            continue;
        }
        EXPECT_TRUE(names.insert(entry.Name).second) << "twice: " << entry.Name;
        EXPECT_EQ(FindMenuEntry(entry.Name), &entry);
        if (entry.Kind == MenuEntryKind::Menu) {
            menus.insert(entry.Name);
        }
        if (entry.Kind == MenuEntryKind::List) {
            EXPECT_GT(entry.Count, 0) << entry.Name;
        } else {
            EXPECT_FALSE(entry.Caption.empty()) << entry.Name;
        }
    }
    EXPECT_EQ(FindMenuEntry(""), nullptr);
    EXPECT_EQ(FindMenuEntry("NoSuchItem"), nullptr);
}

TEST(CommandSurface, TheRunTimeListsAndTheCommandsOfOtherParts) {
    EXPECT_EQ(FindMenuEntry("LastList")->Count, 8);
    EXPECT_EQ(FindMenuEntry("LastPath")->Count, 15);
    EXPECT_EQ(FindMenuEntry("Mark")->Count, 10);
    EXPECT_EQ(FindMenuEntry("OpenAndPlayList")->Owner, kOwnerPlay);
    EXPECT_EQ(FindMenuEntry("Bookmark_Add")->Owner, kOwnerVirtualDrives);
    EXPECT_EQ(FindMenuEntry("mOptions")->Owner, kOwnerSetup);
    EXPECT_EQ(FindMenuEntry("CacheWizard")->Owner, kOwnerSetup);
    EXPECT_EQ(FindMenuEntry("SilentMP3Wiz")->Owner, kOwnerSetup);
    EXPECT_EQ(FindMenuEntry("ShuffleOnly")->Owner, "");
    // The offline items and the separators above them are reserved: hidden, with no handler.
    std::vector<std::string_view> reserved;
    for (const MenuEntry& entry : MenuTable()) {
        if (entry.Owner == kOwnerReserved) {
            reserved.push_back(entry.Name);
        }
    }
    EXPECT_EQ(reserved, (std::vector<std::string_view>{"zzzDashOffline2", "MakeFileOffline",
                                                       "zzzDashOffline", "MakeSongOffline"}));
    EXPECT_EQ(FindMenuEntry("FilesMenu")->Place, MenuPlace::Popup);
    EXPECT_EQ(FindMenuEntry("traymenu")->Place, MenuPlace::Popup);
    EXPECT_EQ(FindMenuEntry("FileMenu")->Place, MenuPlace::MenuBar);
    EXPECT_TRUE(FindMenuEntry("ShowGridlines")->Checkable);
    EXPECT_EQ(FindMenuEntry("NewList")->Shortcut, "Ctrl+N");
}

TEST(CommandSurface, EveryToolbarKeyRunsAMenuItemOrItsOwnCommand) {
    std::set<std::string_view> keys;
    for (const ToolbarButton& button : ToolbarTable()) {
        EXPECT_TRUE(keys.insert(button.Key).second) << button.Key;
        EXPECT_FALSE(button.Icon.empty()) << button.Key;
        if (!button.Command.empty()) {
            EXPECT_NE(FindMenuEntry(button.Command), nullptr) << button.Key;
        }
    }
    for (const char* key :
         {"new",        "open",       "save",      "addall",     "addsel",     "removesel",
          "removeall",  "uplevel",    "recycle",   "properties", "refresh",    "playfol",
          "playsel",    "playlist",   "jukarra",   "addvdrive",  "introplay",  "search",
          "bookmarks",  "slideup",    "slidedown", "remoteplay", "remotestop", "remotepause",
          "remoteprev", "remotenext", "about"}) {
        EXPECT_TRUE(keys.contains(key)) << key;
    }
    EXPECT_EQ(keys.size(), 27u);
}

}  // namespace
}  // namespace jk
