#include "playback/MpvTransport.h"

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/playback/FakeMpv.h"
#include "core/playback/PlayerFakes.h"

namespace jk {
namespace {

using Words = std::vector<std::string>;

class MpvTransportTest : public ::testing::Test {
protected:
    MpvTransport Make() {
        return MpvTransport(std::make_unique<test::FakeMpvChannel>(mpv), {},
                            [this] { return clock.Now(); });
    }
    test::FakeMpvState mpv;
    test::FakeClock clock;
};

TEST_F(MpvTransportTest, ANewListReplacesTheOldOneWholeWhileASongPlays) {
    mpv.playlist = {"/old/1", "/old/2", "/old/3"};
    mpv.pos = 1;
    MpvTransport player = Make();
    player.ClearList();
    const std::vector<std::string> songs = {"/new/1", "/new/2", "/new/3"};
    EXPECT_EQ(player.AddSongs({songs.data(), 1}), AddResult::Added);
    EXPECT_EQ(player.AddSongs({songs.data() + 1, 2}), AddResult::Added);
    EXPECT_EQ(mpv.playlist, songs);
    EXPECT_EQ(mpv.pos, 0);
    EXPECT_EQ(mpv.commands, (Words{"playlist-clear", "loadfile /new/1 replace",
                                   "loadfile /new/2 append", "loadfile /new/3 append"}));
    EXPECT_EQ(mpv.exchanges, 3);  // the two last in one go
}

TEST_F(MpvTransportTest, AQueueAppendsBehindWhatPlays) {
    mpv.playlist = {"/old/1"};
    mpv.pos = 0;
    MpvTransport player = Make();
    const std::vector<std::string> songs = {"/q/1", "/q/2"};
    player.AddSongs(songs);
    EXPECT_EQ(mpv.playlist, (Words{"/old/1", "/q/1", "/q/2"}));
    EXPECT_EQ(mpv.pos, 0);
}

TEST_F(MpvTransportTest, PlayStartsAnIdlePlayerAndUnpauses) {
    mpv.playlist = {"/a", "/b"};
    mpv.paused = true;
    MpvTransport player = Make();
    player.Play();
    EXPECT_EQ(mpv.pos, 0);
    EXPECT_FALSE(mpv.paused);
    mpv.commands.clear();
    mpv.paused = true;
    player.Play();  // playing already: only unpaused
    EXPECT_EQ(mpv.commands, (Words{"get_property idle-active", "get_property playlist-pos",
                                   "get_property playlist-count", "set_property pause false"}));
}

TEST_F(MpvTransportTest, PlayAfterStopStartsWhereTheListStood) {
    mpv.playlist = {"/a", "/b", "/c"};
    mpv.pos = 2;
    MpvTransport player = Make();
    player.Stop();
    EXPECT_EQ(mpv.pos, -1);
    player.Play();
    EXPECT_EQ(mpv.pos, 2);
    player.ClearList();  // a new list starts at its start
    mpv.pos = -1;
    player.Play();
    EXPECT_EQ(mpv.pos, 0);
}

TEST_F(MpvTransportTest, TheRemoteCommandsMapToMpvsOwn) {
    mpv.playlist = {"/a", "/b"};
    mpv.pos = 0;
    MpvTransport player = Make();
    player.Next();
    player.Previous();
    player.Pause();
    player.VolumeUp();
    player.VolumeDown();
    player.SkipAhead();
    player.SkipBack();
    player.SeekTo(45000);
    player.Stop();
    player.Close();
    EXPECT_EQ(mpv.commands,
              (Words{"playlist-next", "playlist-prev", "cycle pause", "add volume 5",
                     "add volume -5", "seek 5 relative", "seek -5 relative", "seek 45 absolute",
                     "get_property playlist-pos", "stop keep-playlist", "quit"}));
    EXPECT_FALSE(player.Running());
}

TEST_F(MpvTransportTest, TheStatusReadsTheSongPlaying) {
    mpv.playlist = {"/m/first.mp3", "/m/second.mp3"};
    mpv.pos = 1;
    mpv.timePos = 61.4996;
    mpv.duration = 200.25;
    mpv.volume = 55;
    MpvTransport player = Make();
    PlayerStatus status = player.Status();
    EXPECT_EQ(status.state, PlayState::Playing);
    EXPECT_EQ(status.positionMs, 61500);
    EXPECT_EQ(status.lengthMs, 200250);
    EXPECT_EQ(status.volume, 55);
    EXPECT_EQ(status.title, "second.mp3");
    EXPECT_EQ(status.trackKey, "/m/second.mp3");
    EXPECT_EQ(player.ListIndex(), 1);
    EXPECT_EQ(player.ListLength(), 2);
    EXPECT_EQ(player.Volume(), 55);

    mpv.paused = true;
    EXPECT_EQ(player.Status().state, PlayState::Paused);
    mpv.pos = -1;
    status = player.Status();
    EXPECT_EQ(status.state, PlayState::Stopped);
    EXPECT_EQ(status.positionMs, -1);
}

TEST_F(MpvTransportTest, ARefusingSocketIsAPlayerThatDoesNotRun) {
    mpv.listening = false;
    MpvTransport player = Make();
    EXPECT_FALSE(player.Running());
    EXPECT_FALSE(player.HasMessageRoad());
    player.Play();
    EXPECT_EQ(player.Status().state, PlayState::Stopped);
    EXPECT_EQ(player.ListIndex(), -1);
    const std::string path = "/a";
    EXPECT_EQ(player.AddSongs({&path, 1}), AddResult::Failed);
    EXPECT_TRUE(mpv.commands.empty());
}

TEST_F(MpvTransportTest, AHungPlayerCostsOneTimeOutThenRests) {
    mpv.silent = true;
    MpvTransport player = Make();
    EXPECT_TRUE(player.Running());
    player.Next();
    EXPECT_EQ(mpv.exchanges, 1);
    // While it rests nothing is sent: the caller is not held up again.
    EXPECT_FALSE(player.Running());
    player.Next();
    player.Status();
    EXPECT_EQ(mpv.exchanges, 1);
    clock.Advance(std::chrono::milliseconds(MpvTimeouts{}.restMs));
    mpv.silent = false;
    EXPECT_TRUE(player.Running());
    player.Next();
    EXPECT_EQ(mpv.exchanges, 2);
}

TEST_F(MpvTransportTest, ASecondStartsListReplacesOrAppends) {
    mpv.playlist = {"/a"};
    mpv.pos = 0;
    mpv.paused = true;
    MpvTransport player = Make();
    EXPECT_TRUE(player.TakeListFile("/data/templist.m3u", true));
    EXPECT_EQ(mpv.playlist, (Words{"/a", "list:/data/templist.m3u"}));
    EXPECT_TRUE(mpv.paused);
    EXPECT_TRUE(player.TakeListFile("/data/templist.m3u", false));
    EXPECT_FALSE(mpv.paused);
}

}  // namespace
}  // namespace jk
