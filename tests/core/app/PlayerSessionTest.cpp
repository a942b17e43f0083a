#include "app/PlayerSession.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "app/Session.h"
#include "core/playback/PlaybackTestSupport.h"
#include "core/playback/PlayerFakes.h"
#include "playback/PlayerKind.h"

namespace jk {
namespace {

using Calls = std::vector<std::string>;

class PlayerSessionTest : public ::testing::Test, protected test::FakeBridgeRig {
protected:
    PlayerSessionTest() {
        session.AppPath = folder.Folder();
        session.Settings.PlayerExes[1] = "/usr/bin/mpv";
        session.Settings.HighLoad = 200;
        session.Settings.ShowCurrSong = 1;
        SetPlayerMode(session, bridge);
        for (int i = 1; i <= 4; ++i) {
            pane.push_back(test::RowAt("/m/" + std::to_string(i), "a" + std::to_string(i), i == 3));
        }
    }
    Calls Adds() const {
        Calls adds;
        for (const std::string& call : log.calls) {
            if (call.rfind("Add ", 0) == 0) {
                adds.push_back(call.substr(4));
            }
        }
        return adds;
    }

    test::TempFolder folder;
    Session session;
    RowList pane;
    PlayFront front;
};

TEST_F(PlayerSessionTest, SetPlayerModeKeepsTheKindWhenThePathNamesNone) {
    EXPECT_EQ(session.PlayerKind, kPlayerMpv);
    EXPECT_EQ(bridge.Target().dataFolder, folder.Folder());
    session.Settings.PlayerExes[1] = "/usr/bin/xmms";
    SetPlayerMode(session, bridge);
    EXPECT_EQ(session.PlayerKind, kPlayerMpv);
    session.Settings.MprisPlayer = "xmms";
    SetPlayerMode(session, bridge);
    EXPECT_EQ(session.PlayerKind, kPlayerMpris);
    EXPECT_EQ(bridge.Target().mprisName, "xmms");
    const PlayerMode mode = UpdatePlayerMode(bridge);
    EXPECT_EQ(mode.kind, kPlayerMpris);
    EXPECT_TRUE(mode.volumePanel);
}

TEST_F(PlayerSessionTest, EachPlayCommandMakesItsList) {
    PlayAllRows(pane, session, bridge, front);
    EXPECT_EQ(Adds(), (Calls{"/m/1", "/m/2", "/m/3", "/m/4"}));
    log.calls.clear();
    PlaySelectedRows(pane, session, bridge, front);
    EXPECT_EQ(log.calls, (Calls{"Clear", "Add /m/3", "Batch 1", "Play"}));
    log.calls.clear();
    WrapPlay(pane, session, bridge, front);
    EXPECT_EQ(Adds(), (Calls{"/m/3", "/m/4", "/m/1", "/m/2"}));
    log.calls.clear();
    QueueRows(pane, true, session, bridge, front);
    EXPECT_EQ(log.calls, (Calls{"Add /m/3", "Batch 1"}));
    log.calls.clear();
    QueueRows(pane, false, session, bridge, front);
    EXPECT_EQ(Adds().size(), 4u);
    EXPECT_EQ(log.calls.front(), "Add /m/1");  // no clear, no stop
    log.calls.clear();
    ShuffleRandom random(7);
    JukarraPlay(pane, session, bridge, front, random);
    Calls shuffled = Adds();
    std::sort(shuffled.begin(), shuffled.end());
    EXPECT_EQ(shuffled, (Calls{"/m/1", "/m/2", "/m/3", "/m/4"}));
    EXPECT_EQ(pane[0].Get(Column::Filename), "/m/1");  // the pane keeps its order
}

TEST_F(PlayerSessionTest, TheStatusTimerActsForPlayersThatReportWhileTheDisplayIsOn) {
    StatusPanels panels;
    player->status.state = PlayState::Paused;
    player->status.volume = 40;
    StatusPanelUpdate update = StatusTimer(session, bridge, panels);
    EXPECT_EQ(update.time, "Pause");
    EXPECT_EQ(update.volume, "  40%");

    player->status.volume = 41;
    session.Settings.ShowCurrSong = 0;
    EXPECT_FALSE(StatusTimer(session, bridge, panels).volume);
    session.Settings.ShowCurrSong = 1;
    player->running = false;
    EXPECT_FALSE(StatusTimer(session, bridge, panels).volume);

    session.Settings.PlayerExes[1] = "/opt/nad/nad.exe";
    SetPlayerMode(session, bridge);
    player->status.volume = 42;
    EXPECT_FALSE(StatusTimer(session, bridge, panels).volume);
}

TEST_F(PlayerSessionTest, TheIntroPlayTimerReadsTheSettingsEachTick) {
    IntroPlay intro;
    player->status.state = PlayState::Playing;
    player->status.positionMs = 20000;
    player->status.lengthMs = 100000;
    EXPECT_EQ(IntroPlayTimer(session, bridge, intro), IntroAction::Nothing);
    session.Settings.IntroPlay = 1;
    session.Settings.IntroSkip = 10;
    session.Settings.IntroLength = 5;
    EXPECT_EQ(IntroPlayTimer(session, bridge, intro), IntroAction::MovedOn);
}

}  // namespace
}  // namespace jk
