// The bridge against mpv steered as an MPRIS player through its plug-in, on the session bus
// that dbus-run-session gives the test.

#include <chrono>
#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/SystemPlayerPlatform.h"
#include "playback/IntroPlay.h"
#include "playback/MprisTransport.h"
#include "playback/PlayerKind.h"
#include "playback/RunPlaylist.h"
#include "players/RealPlayers.h"

namespace jk {
namespace {

using namespace std::chrono_literals;

class MprisPlayerTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (test::RealMpv().empty()) {
            GTEST_SKIP() << "mpv is not installed: the MPRIS tests are skipped";
        }
        if (test::MprisPlugIn().empty()) {
            GTEST_SKIP() << "mpv's MPRIS plug-in (mpv-mpris) is not installed";
        }
        if (std::getenv("DBUS_SESSION_BUS_ADDRESS") == nullptr) {
            GTEST_SKIP() << "no session bus: run these tests under dbus-run-session";
        }
        folder = std::make_unique<test::MpvFolder>(true);
        bridge.Aim(PlayerTargetFor(folder->Player(), "mpv", 0, folder->Folder()));
        ASSERT_EQ(bridge.Kind(), kPlayerMpris);
        // The bus lets the name of an earlier test's player go a moment after it ended.
        ASSERT_TRUE(test::WaitFor([this] { return !bridge.Running(); }));
    }

    // Plays `songs` on a player that does not run yet: it is started with them on its command
    // line. (mpv's plug-in of Debian 12 may miss the first changes of an mpv started idle.)
    void StartWith(const std::vector<std::string>& songs) {
        const RunPlaylistResult result = RunPlaylist(songs, false, settings, bridge, front);
        ASSERT_EQ(result.road, PlayRoad::CommandLine);
        ASSERT_TRUE(test::WaitFor([this] { return folder->AnsweringPid() > 0; }));
        ASSERT_TRUE(test::WaitFor([this] { return bridge.Running(); }));
        ASSERT_TRUE(
            test::WaitFor([this] { return Player().Status().state == PlayState::Playing; }));
    }
    std::vector<std::string> Songs(const std::string& folderName, int count, int seconds) {
        std::vector<std::string> songs;
        for (int i = 1; i <= count; ++i) {
            songs.push_back(test::WriteSilentSong(
                folder->File(folderName + "/song " + std::to_string(i) + " ü.mp3"), seconds));
        }
        return songs;
    }
    PlayerTransport& Player() { return bridge.Transport(); }
    bool Playing(std::string_view name) {
        const PlayerStatus status = Player().Status();
        return status.state == PlayState::Playing &&
               status.trackKey.find(name) != std::string::npos;
    }

    std::unique_ptr<test::MpvFolder> folder;
    SystemPlayerPlatform platform;
    PlayerBridge bridge{platform};
    PlaySettings settings{.LoadMode = 1, .HighLoad = 200, .HighLoadMode = 1};
    PlayFront front;
};

TEST_F(MprisPlayerTest, ThePlayerIsFoundAndShowsWhatItCanDo) {
    StartWith(Songs("music", 2, 600));
    auto& mpris = static_cast<MprisTransport&>(Player());
    EXPECT_EQ(mpris.BusName(), "org.mpris.MediaPlayer2.mpv");
    const PlayerAbilities can = Player().Abilities();
    EXPECT_TRUE(can.canPlay && can.canPause && can.canSeek && can.canControl && can.canQuit);
    EXPECT_FALSE(can.hasTrackList);
    const PlayerCommandSet shown = ShownPlayerCommands(kPlayerMpris, can);
    EXPECT_TRUE(shown.Has(PlayerCommand::Close));
    EXPECT_FALSE(shown.Has(PlayerCommand::Restore));  // mpv cannot raise a window it lacks
}

TEST_F(MprisPlayerTest, AListPlaysAndTheRemoteCommandsReadBack) {
    const std::vector<std::string> songs = Songs("music", 3, 600);
    StartWith(songs);
    ASSERT_TRUE(test::WaitFor([this] { return Playing("song%201"); }));
    EXPECT_EQ(Player().Status().title, "song 1 ü.mp3");

    bridge.Command(PlayerCommand::Next, {});
    ASSERT_TRUE(test::WaitFor([this] { return Playing("song%202"); }));
    bridge.Command(PlayerCommand::Previous, {});
    ASSERT_TRUE(test::WaitFor([this] { return Playing("song%201"); }));

    bridge.Command(PlayerCommand::SkipAhead, {});
    EXPECT_TRUE(test::WaitFor([this] { return Player().Status().positionMs >= 5000; }));
    bridge.Command(PlayerCommand::Pause, {});
    EXPECT_TRUE(test::WaitFor([this] { return Player().Status().state == PlayState::Paused; }));
    bridge.Command(PlayerCommand::Pause, {});
    EXPECT_TRUE(test::WaitFor([this] { return Player().Status().state == PlayState::Playing; }));
    EXPECT_EQ(bridge.Command(PlayerCommand::VolumeDown, {}), "  95%");

    // A list for the running player: it opens templist.m3u and plays it at once.
    const RunPlaylistResult second =
        RunPlaylist({songs[2], songs[0]}, false, settings, bridge, front);
    EXPECT_EQ(second.road, PlayRoad::OpenUri);
    ASSERT_TRUE(test::WaitFor([this] { return Playing("song%203"); }));

    bridge.Command(PlayerCommand::Stop, {});
    EXPECT_TRUE(test::WaitFor([this] { return Player().Status().state == PlayState::Stopped; }));
    bridge.Command(PlayerCommand::Close, {});
    EXPECT_TRUE(test::WaitFor([this] { return !bridge.Running(); }));
}

TEST_F(MprisPlayerTest, IntroPlayStopsAfterTheLastSong) {
    StartWith(Songs("short", 2, 20));
    IntroPlay intro;
    std::vector<IntroAction> actions;
    const bool stopped = test::WaitFor(
        [&] {
            const IntroAction action = intro.Tick({1, 3, 1}, Player());
            if (action != IntroAction::Nothing) {
                actions.push_back(action);
            }
            return action == IntroAction::Stopped;
        },
        30s);
    ASSERT_TRUE(stopped);
    using A = IntroAction;
    // The plug-in of Debian 12 says it can always go on: the move past the last song that went
    // nowhere is caught by the next tick. Later plug-ins say so, and the tick stops at once.
    ASSERT_GE(actions.size(), 4u);
    EXPECT_EQ(std::vector<A>(actions.begin(), actions.begin() + 3),
              (std::vector<A>{A::SkippedStart, A::MovedOn, A::SkippedStart}));
    const std::vector<A> end(actions.begin() + 3, actions.end());
    EXPECT_TRUE(end == std::vector<A>{A::Stopped} ||
                end == (std::vector<A>{A::MovedOn, A::Stopped}));
    EXPECT_TRUE(test::WaitFor([this] { return Player().Status().state == PlayState::Stopped; }));
}

}  // namespace
}  // namespace jk
