// The bridge against a real mpv, steered over its socket with no sound device.

#include <chrono>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/SystemPlayerPlatform.h"
#include "playback/IntroPlay.h"
#include "playback/PlayerKind.h"
#include "playback/RunPlaylist.h"
#include "players/RealPlayers.h"
#include "util/FileIo.h"

namespace jk {
namespace {

using namespace std::chrono_literals;

class MpvPlayerTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (test::RealMpv().empty()) {
            GTEST_SKIP() << "mpv is not installed: the tests against a real mpv are skipped";
        }
        bridge.Aim({kPlayerMpv, folder.Player(), "", folder.Folder()});
        for (const char* name : {"one song.mp3", "two \"quoted\" 'song'.mp3", "drei ünï.mp3"}) {
            songs.push_back(test::WriteSilentSong(folder.File(std::string("music/") + name), 600));
        }
    }

    // Starts mpv idle, as start-up does, and waits until it answers.
    void StartIdle() {
        ASSERT_TRUE(bridge.StartPlayer().ok);
        ASSERT_TRUE(test::WaitFor([this] { return bridge.Running(); }));
        ASSERT_GT(folder.AnsweringPid(), 0);
    }
    PlayerTransport& Player() { return bridge.Transport(); }
    bool PlaysSong(std::size_t index) {
        const PlayerStatus status = Player().Status();
        return status.state == PlayState::Playing && status.trackKey == songs[index] &&
               Player().ListIndex() == static_cast<std::int32_t>(index);
    }

    test::MpvFolder folder;
    SystemPlayerPlatform platform;
    PlayerBridge bridge{platform};
    PlaySettings settings{.LoadMode = 1, .HighLoad = 200, .HighLoadMode = 1};
    PlayFront front;
    std::vector<std::string> songs;
};

TEST_F(MpvPlayerTest, AListOfThreePlaysAndNextAndPreviousMoveTheIndex) {
    StartIdle();
    const RunPlaylistResult result = RunPlaylist(songs, false, settings, bridge, front);
    EXPECT_EQ(result.road, PlayRoad::Messages);
    EXPECT_EQ(result.sent, 3u);
    ASSERT_TRUE(test::WaitFor([this] { return PlaysSong(0); }));
    EXPECT_EQ(Player().ListLength(), 3);
    EXPECT_EQ(Player().Status().title, "one song.mp3");

    bridge.Command(PlayerCommand::Next, {});
    ASSERT_TRUE(test::WaitFor([this] { return PlaysSong(1); }));
    bridge.Command(PlayerCommand::Next, {});
    ASSERT_TRUE(test::WaitFor([this] { return PlaysSong(2); }));
    bridge.Command(PlayerCommand::Previous, {});
    ASSERT_TRUE(test::WaitFor([this] { return PlaysSong(1); }));

    bridge.Command(PlayerCommand::Pause, {});
    EXPECT_TRUE(test::WaitFor([this] { return Player().Status().state == PlayState::Paused; }));
    bridge.Command(PlayerCommand::Play, {});
    EXPECT_TRUE(test::WaitFor([this] { return Player().Status().state == PlayState::Playing; }));
    bridge.Command(PlayerCommand::Stop, {});
    EXPECT_TRUE(test::WaitFor([this] { return Player().Status().state == PlayState::Stopped; }));
    // The list stays, and play starts it again where it stood.
    EXPECT_EQ(Player().ListLength(), 3);
    bridge.Command(PlayerCommand::Play, {});
    EXPECT_TRUE(test::WaitFor([this] { return PlaysSong(1); }));

    // A second list replaces the first whole, the song playing included.
    const std::vector<std::string> second = {songs[2]};
    RunPlaylist(second, false, settings, bridge, front);
    EXPECT_TRUE(test::WaitFor(
        [this] { return Player().ListLength() == 1 && Player().Status().trackKey == songs[2]; }));
}

TEST_F(MpvPlayerTest, AFirstSongThatCannotBeOpenedLeavesTheRestPlaying) {
    StartIdle();
    // mpv goes idle on a first song it cannot open when nothing stands behind it yet.
    const std::vector<std::string> list = {folder.File("music/gone.mp3"), songs[0], songs[1]};
    const RunPlaylistResult result = RunPlaylist(list, false, settings, bridge, front);
    EXPECT_EQ(result.sent, 3u);
    EXPECT_TRUE(test::WaitFor([this] {
        const PlayerStatus status = Player().Status();
        return status.state == PlayState::Playing && status.trackKey == songs[0];
    }));
}

TEST_F(MpvPlayerTest, EnqueueAddsWithoutInterrupting) {
    StartIdle();
    const std::vector<std::string> first = {songs[0]};
    RunPlaylist(first, false, settings, bridge, front);
    ASSERT_TRUE(
        test::WaitFor([this] { return PlaysSong(0) && Player().Status().positionMs > 300; }));
    const std::int64_t before = Player().Status().positionMs;
    const RunPlaylistResult result =
        RunPlaylist({songs[1], songs[2]}, true, settings, bridge, front);
    EXPECT_EQ(result.road, PlayRoad::Messages);
    EXPECT_EQ(Player().ListLength(), 3);
    const PlayerStatus status = Player().Status();
    EXPECT_EQ(status.trackKey, songs[0]);
    EXPECT_EQ(status.state, PlayState::Playing);
    EXPECT_GE(status.positionMs, before);
}

TEST_F(MpvPlayerTest, VolumeAndFadeWork) {
    StartIdle();
    RunPlaylist(songs, false, settings, bridge, front);
    ASSERT_TRUE(test::WaitFor([this] { return PlaysSong(0); }));
    EXPECT_EQ(bridge.Command(PlayerCommand::VolumeDown, {}), "  95%");
    EXPECT_EQ(bridge.Command(PlayerCommand::VolumeUp, {}), "  100%");
    bridge.Command(PlayerCommand::Fade, std::chrono::steady_clock::now());
    ASSERT_TRUE(bridge.Fading());
    std::int32_t lowest = 100;
    ASSERT_TRUE(test::WaitFor(
        [&] {
            bridge.Tick(std::chrono::steady_clock::now());
            if (bridge.Fading()) {
                lowest = std::min(lowest, Player().Volume().value_or(100));
            }
            return !bridge.Fading();
        },
        10s));
    EXPECT_LT(lowest, 50);
    EXPECT_EQ(Player().Status().state, PlayState::Stopped);
    EXPECT_EQ(Player().Volume(), 100);
}

TEST_F(MpvPlayerTest, IntroPlaySkipsAndMovesOnThroughSongsOfKnownLengths) {
    StartIdle();
    std::vector<std::string> shortSongs;
    for (int i = 0; i < 3; ++i) {
        shortSongs.push_back(
            test::WriteSilentSong(folder.File("short/" + std::to_string(i) + ".mp3"), 20));
    }
    RunPlaylist(shortSongs, false, settings, bridge, front);
    IntroPlay intro;
    std::vector<IntroAction> actions;
    std::vector<std::int32_t> indexes;
    const IntroSettings introSettings{1, 3, 1};
    const bool stopped = test::WaitFor(
        [&] {
            const IntroAction action = intro.Tick(introSettings, Player());
            if (action != IntroAction::Nothing) {
                actions.push_back(action);
            }
            if (action == IntroAction::SkippedStart || action == IntroAction::MovedOn) {
                indexes.push_back(Player().ListIndex());
            }
            return action == IntroAction::Stopped;
        },
        30s);
    ASSERT_TRUE(stopped);
    using A = IntroAction;
    EXPECT_EQ(actions, (std::vector<A>{A::SkippedStart, A::MovedOn, A::SkippedStart, A::MovedOn,
                                       A::SkippedStart, A::Stopped}));
    EXPECT_EQ(indexes, (std::vector<std::int32_t>{0, 1, 1, 2, 2}));
    EXPECT_EQ(Player().Status().state, PlayState::Stopped);
}

TEST_F(MpvPlayerTest, TheCommandLineRoadStartsMpvWithTempList) {
    ASSERT_FALSE(bridge.Running());
    const RunPlaylistResult result = RunPlaylist(songs, false, settings, bridge, front);
    EXPECT_EQ(result.road, PlayRoad::CommandLine);
    EXPECT_EQ(result.error, "");
    EXPECT_TRUE(FileExists(folder.File("templist.m3u")));
    ASSERT_TRUE(test::WaitFor([this] { return bridge.Running(); }));
    ASSERT_GT(folder.AnsweringPid(), 0);
    ASSERT_TRUE(test::WaitFor([this] { return PlaysSong(0); }));
    EXPECT_EQ(Player().ListLength(), 3);

    // With mode 2 the running mpv takes the new list, as a second start would.
    settings.LoadMode = 2;
    EXPECT_EQ(RunPlaylist({songs[2], songs[1]}, false, settings, bridge, front).road,
              PlayRoad::RunningPlayer);
    EXPECT_TRUE(test::WaitFor([this] { return Player().Status().trackKey == songs[2]; }));
}

TEST_F(MpvPlayerTest, OddPathsReachMpvAsTheyAre) {
    StartIdle();
    const std::vector<std::string> odd = {
        test::WriteSilentSong(folder.File("odd/new\nline.mp3"), 600),
        test::WriteSilentSong(folder.File("odd/tab\tand \\ back.mp3"), 600),
    };
    RunPlaylist(odd, false, settings, bridge, front);
    EXPECT_TRUE(test::WaitFor([&] { return Player().Status().trackKey == odd[0]; }));
    bridge.Command(PlayerCommand::Next, {});
    EXPECT_TRUE(test::WaitFor([&] { return Player().Status().trackKey == odd[1]; }));
}

TEST_F(MpvPlayerTest, APlayerThatDiesMidListEndsTheLoadWithoutHanging) {
    StartIdle();
    const pid_t pid = folder.AnsweringPid();
    const std::vector<std::string> many(20000, songs[0]);
    front.progress = [pid](std::int64_t done, std::int64_t) {
        if (done > 1000) {
            ::kill(pid, SIGKILL);
        }
        return true;
    };
    const auto start = std::chrono::steady_clock::now();
    const RunPlaylistResult result = RunPlaylist(many, false, settings, bridge, front);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
    EXPECT_EQ(result.error, "the player stopped answering");
    EXPECT_LT(result.sent, many.size());
    // The process may take a moment to go after the signal.
    EXPECT_TRUE(test::WaitFor([this] { return !bridge.Running(); }));
}

}  // namespace
}  // namespace jk
