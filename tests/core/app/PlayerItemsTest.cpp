#include "app/PlayerItems.h"

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "app/CommandSurface.h"
#include "app/PlayerSession.h"
#include "app/Session.h"
#include "core/playback/PlaybackTestSupport.h"
#include "core/playback/PlayerFakes.h"
#include "playback/ShuffleRandom.h"

namespace jk {
namespace {

using Calls = std::vector<std::string>;

// Every item the player's part owns is bound by one of the tables, and no name is bound
// twice: an item left out would stay disabled for good.
TEST(PlayerItems, BindEveryItemThePlayerOwnsOnce) {
    std::set<std::string_view> bound;
    for (const PlayItem& item : PlayItems()) {
        EXPECT_TRUE(bound.insert(item.Name).second) << item.Name;
    }
    for (const RemoteItem& item : RemoteItems()) {
        EXPECT_TRUE(bound.insert(item.Name).second) << item.Name;
    }
    std::set<std::string_view> owned;
    for (const MenuEntry& entry : MenuTable()) {
        if (entry.Kind == MenuEntryKind::Item && entry.Owner == kOwnerPlay) {
            owned.insert(entry.Name);
        }
    }
    EXPECT_EQ(bound, owned);
    for (const RemoteItem& key : RemoteToolbarKeys()) {
        bool found = false;
        for (const ToolbarButton& button : ToolbarTable()) {
            found = found || button.Key == key.Name;
        }
        EXPECT_TRUE(found) << key.Name;
    }
}

TEST(PlayerItems, TwinItemsOfMenusAndPopUpsDoTheSame) {
    const auto find = [](std::string_view name) {
        for (const PlayItem& item : PlayItems()) {
            if (item.Name == name) {
                return item;
            }
        }
        ADD_FAILURE() << name;
        return PlayItem{};
    };
    const std::vector<std::vector<std::string_view>> twins = {
        {"PlayList", "PlayPlaylist", "Play", "OpenAndPlayList"},
        {"playselected", "SelPlay"},
        {"JukarraList2", "JukarraList", "Jukarra"},
        {"PlayFolderNow", "PlayFolder"},
        {"JPlayFolderNow", "JukarraFolder"},
        {"QueueAll", "QueAll"},
        {"QueueSelect", "QueSelected"},
    };
    for (const auto& group : twins) {
        const PlayItem first = find(group.front());
        for (const std::string_view name : group) {
            const PlayItem item = find(name);
            EXPECT_EQ(item.Pane, first.Pane) << name;
            EXPECT_EQ(item.What, first.What) << name;
        }
    }
}

class RunPlayItemTest : public ::testing::Test, protected test::FakeBridgeRig {
protected:
    RunPlayItemTest() {
        session.AppPath = folder.Folder();
        session.Settings.PlayerExes[1] = "/usr/bin/mpv";
        session.Settings.HighLoad = 200;
        SetPlayerMode(session, bridge);
        for (int i = 1; i <= 4; ++i) {
            pane.push_back(test::RowAt("/m/" + std::to_string(i), "a" + std::to_string(i), i == 2));
        }
    }
    Calls Run(PlayWhat what) {
        log.calls.clear();
        RunPlayItem({"x", PlayPane::Playlist, what}, pane, session, bridge, front, random);
        return log.calls;
    }

    test::TempFolder folder;
    Session session;
    RowList pane;
    PlayFront front;
    ShuffleRandom random{7};
};

TEST_F(RunPlayItemTest, EachKindOfItemHandsItsSongsOver) {
    EXPECT_EQ(Run(PlayWhat::Selected), (Calls{"Clear", "Add /m/2", "Batch 1", "Play"}));
    EXPECT_EQ(Run(PlayWhat::QueueSelected), (Calls{"Add /m/2", "Batch 1"}));
    const Calls all = Run(PlayWhat::QueueAll);
    EXPECT_EQ(all.front(), "Add /m/1");
    EXPECT_EQ(std::count(all.begin(), all.end(), "Clear"), 0);
    const Calls wrapped = Run(PlayWhat::FromHere);
    EXPECT_EQ(std::vector<std::string>(wrapped.begin(), wrapped.begin() + 2),
              (Calls{"Clear", "Add /m/2"}));
    const Calls shuffled = Run(PlayWhat::Shuffled);
    EXPECT_EQ(std::count_if(shuffled.begin(), shuffled.end(),
                            [](const std::string& call) { return call.rfind("Add ", 0) == 0; }),
              4);
}

}  // namespace
}  // namespace jk
