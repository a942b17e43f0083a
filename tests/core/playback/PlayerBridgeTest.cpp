#include "playback/PlayerBridge.h"

#include <chrono>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/playback/FakeMpv.h"
#include "core/playback/PlayerFakes.h"
#include "playback/PlayerKind.h"
#include "playback/StatusPanels.h"

namespace jk {
namespace {

using namespace std::chrono_literals;
using Calls = std::vector<std::string>;

class PlayerBridgeTest : public ::testing::Test {
protected:
    void Aim(std::int16_t kind, std::string path = "/usr/bin/player") {
        bridge.Aim({kind, std::move(path), "", "/data/"});
    }
    test::CallLog log;
    test::FakePlatform platform;
    test::FakeClock clock;
    int opened = 0;
    test::FakeTransport* player = nullptr;
    PlayerBridge bridge{platform, {}, [this](const PlayerTarget&) {
                            ++opened;
                            auto made = std::make_unique<test::FakeTransport>(log);
                            player = made.get();
                            return made;
                        }};
};

TEST_F(PlayerBridgeTest, TheTransportIsOpenedAfreshOnlyWhenTheTargetChanges) {
    Aim(kPlayerMpv);
    const int before = opened;
    Aim(kPlayerMpv);
    EXPECT_EQ(opened, before);
    Aim(kPlayerMpris);
    EXPECT_EQ(opened, before + 1);
    bridge.Aim({kPlayerMpris, "/usr/bin/player", "", "/other/"});
    EXPECT_EQ(opened, before + 2);
}

TEST_F(PlayerBridgeTest, AFadeRampsTheVolumeDownThenStopsAndRestoresIt) {
    Aim(kPlayerMpv);
    player->volume = 80;
    EXPECT_FALSE(bridge.Command(PlayerCommand::Fade, clock.Now()));
    EXPECT_TRUE(bridge.Fading());
    for (int step = 0; step < 40 && bridge.Fading(); ++step) {
        clock.Advance(kFadeStepInterval);
        bridge.Tick(clock.Now());
    }
    EXPECT_FALSE(bridge.Fading());
    ASSERT_GE(log.calls.size(), 4u);
    EXPECT_EQ(log.calls.front(), "SetVolume 77");  // 100 ms of 3 s
    EXPECT_EQ(log.calls[log.calls.size() - 3], "SetVolume 3");
    EXPECT_EQ(log.calls[log.calls.size() - 2], "Stop");
    EXPECT_EQ(log.calls.back(), "SetVolume 80");
}

TEST_F(PlayerBridgeTest, AFadeEndsWhenThePlayerGoesOrIsStopped) {
    Aim(kPlayerMpv);
    bridge.Command(PlayerCommand::Fade, clock.Now());
    player->running = false;
    clock.Advance(kFadeStepInterval);
    bridge.Tick(clock.Now());
    EXPECT_FALSE(bridge.Fading());
    EXPECT_EQ(log.calls, Calls{});

    player->running = true;
    bridge.Command(PlayerCommand::Fade, clock.Now());
    bridge.Command(PlayerCommand::Stop, clock.Now());
    EXPECT_FALSE(bridge.Fading());
}

TEST_F(PlayerBridgeTest, VolumeCommandsGiveThePanelsText) {
    Aim(kPlayerMpv);
    player->volume = 45;
    EXPECT_EQ(bridge.Command(PlayerCommand::VolumeUp, clock.Now()), "  50%");
    player->running = false;
    EXPECT_EQ(bridge.Command(PlayerCommand::VolumeUp, clock.Now()), std::nullopt);
}

TEST_F(PlayerBridgeTest, AKindOutsideOneToSevenDoesNothing) {
    PlayerBridge plain(platform);
    for (const std::int16_t kind : {0, 8, -3}) {
        plain.Aim({kind, "/usr/bin/mpv", "", "/data/"});
        EXPECT_FALSE(plain.Running());
        for (std::size_t i = 0; i < kPlayerCommandCount; ++i) {
            plain.Command(static_cast<PlayerCommand>(i), clock.Now());
        }
        EXPECT_FALSE(plain.Fading());
    }
    EXPECT_TRUE(platform.started.empty());
}

TEST_F(PlayerBridgeTest, ThePlayerIsStartedWithItsArguments) {
    PlayerBridge plain(platform);
    plain.Aim({kPlayerMpv, "/usr/bin/mpv", "", "/data/"});
    EXPECT_TRUE(plain.StartPlayer().ok);
    plain.Aim({kPlayerMpris, "/usr/bin/audacious", "audacious", "/data/"});
    plain.StartPlayer();
    plain.Aim({kPlayerMpris, "", "vlc", "/data/"});
    EXPECT_FALSE(plain.StartPlayer().ok);
    ASSERT_EQ(platform.started.size(), 2u);
    EXPECT_EQ(platform.started[0].arguments,
              (std::vector<std::string>{"--idle=yes", "--no-video", "--force-window=no",
                                        "--input-ipc-server=/data/mpv.sock"}));
    EXPECT_TRUE(platform.started[1].arguments.empty());
}

TEST_F(PlayerBridgeTest, TheStandardTransportsReachTheirPlayers) {
    test::FakeMpvState mpv;
    std::string socket;
    platform.channels = [&](const std::string& path) {
        socket = path;
        return std::make_unique<test::FakeMpvChannel>(mpv);
    };
    PlayerBridge plain(platform);
    plain.Aim({kPlayerMpv, "/usr/bin/mpv", "", "/data/"});
    EXPECT_EQ(socket, "/data/mpv.sock");
    EXPECT_TRUE(plain.Running());
    EXPECT_EQ(&plain.OwnMpv(), &plain.Transport());
    mpv.listening = false;
    EXPECT_FALSE(plain.Running());
    plain.Aim({kPlayerMpris, "/usr/bin/mpv", "mpv", "/data/"});
    EXPECT_FALSE(plain.Running());  // nobody on the bus
    EXPECT_NE(&plain.OwnMpv(), &plain.Transport());
}

TEST(StatusPanels, TheTimePanelByStateAndTimeMode) {
    PlayerStatus status;
    status.state = PlayState::Playing;
    status.positionMs = 65999;
    status.lengthMs = 200000;
    EXPECT_EQ(TimePanelText(status, 0), "01:05");
    EXPECT_EQ(TimePanelText(status, 1), "- 02:14");
    status.positionMs = 250000;  // past the end the remaining time is none
    EXPECT_EQ(TimePanelText(status, 1), "- 00:00");
    status.lengthMs = -1;
    EXPECT_EQ(TimePanelText(status, 1), "04:10");
    status.state = PlayState::Paused;
    EXPECT_EQ(TimePanelText(status, 0), "Pause");
    status.state = PlayState::Stopped;
    EXPECT_EQ(TimePanelText(status, 0), std::nullopt);
}

TEST(StatusPanels, EachPanelIsWrittenOnlyWhenItChanges) {
    StatusPanels panels;
    PlayerStatus status;
    status.state = PlayState::Playing;
    status.positionMs = 1000;
    status.volume = 7;
    status.title = "Band - Song";
    StatusPanelUpdate update = panels.Update(status, 0);
    EXPECT_EQ(update.time, "00:01");
    EXPECT_EQ(update.volume, "  7%");
    EXPECT_EQ(update.song, "Band - Song");

    status.positionMs = 1400;
    update = panels.Update(status, 0);
    EXPECT_FALSE(update.time || update.volume || update.song);

    status.positionMs = 2000;
    status.volume = 8;
    update = panels.Update(status, 0);
    EXPECT_EQ(update.time, "00:02");
    EXPECT_EQ(update.volume, "  8%");
    EXPECT_FALSE(update.song);

    // A volume command wrote the panel itself.
    panels.Shown({std::nullopt, "  9%", std::nullopt});
    status.volume = 9;
    EXPECT_FALSE(panels.Update(status, 0).volume);
}

}  // namespace
}  // namespace jk
