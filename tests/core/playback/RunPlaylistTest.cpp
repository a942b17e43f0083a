#include "playback/RunPlaylist.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/playback/FakeMpv.h"
#include "core/playback/PlayerFakes.h"
#include "playback/PlayerKind.h"
#include "support/TempFolder.h"
#include "util/FileIo.h"

namespace jk {
namespace {

using Calls = std::vector<std::string>;

class RunPlaylistTest : public ::testing::Test, protected test::FakeBridgeRig {
protected:
    void Aim(std::int16_t kind, std::string path = "/usr/bin/player") {
        PlayerTarget target;
        target.kind = kind;
        target.playerPath = std::move(path);
        target.dataFolder = folder.Folder();
        bridge.Aim(target);
    }
    RunPlaylistResult Run(std::vector<std::string> songs, bool queue = false) {
        return RunPlaylist(std::move(songs), queue, settings, bridge, front);
    }
    std::string TempList() const { return folder.Read("templist.m3u"); }

    test::TempFolder folder;
    PlaySettings settings{.LoadMode = 0, .HighLoad = 200, .HighLoadMode = 2};
    std::vector<UserMessage> messages;
    int minimized = 0;
    bool sheetShows = false;
    PlayFront front{
        .propertySheetVisible = [this] { return sheetShows; },
        .minimizeMain = [this] { ++minimized; },
        .showWinPlayIcon = [this] { log.Add("WinPlayIcon"); },
        .showMessage = [this](const UserMessage& message) { messages.push_back(message); },
        .progress = {},
        .askRetry = {},
        .askYesNo = {},
    };
};

TEST_F(RunPlaylistTest, TheMessageRoadCallsInTheOrderOfEachLoadMode) {
    struct Case {
        std::string name;
        std::int16_t loadMode;
        bool queue;
        std::vector<std::string> songs;
        Calls calls;
    };
    const std::vector<Case> cases = {
        {"replace, two songs: play once the first is in",
         1,
         false,
         {"/a", "/b"},
         {"Stop", "Clear", "Add /a", "Batch 1", "Play", "Add /b", "Batch 1"}},
        {"replace, one song: stop, clear, add, play once",
         1,
         false,
         {"/a"},
         {"Stop", "Clear", "Add /a", "Batch 1", "Play"}},
        {"add, three songs: no stop",
         0,
         false,
         {"/a", "/b", "/c"},
         {"Clear", "Add /a", "Batch 1", "Play", "Add /b", "Add /c", "Batch 2"}},
        {"add, one song", 0, false, {"/a"}, {"Clear", "Add /a", "Batch 1", "Play"}},
        {"queue in replace mode: only adds",
         1,
         true,
         {"/a", "/b"},
         {"Add /a", "Batch 1", "Add /b", "Batch 1"}},
        {"queue of one song: no play", 0, true, {"/a"}, {"Add /a", "Batch 1"}},
    };
    for (const Case& c : cases) {
        log.calls.clear();
        settings.LoadMode = c.loadMode;
        Aim(kPlayerMpv);
        const RunPlaylistResult result = Run(c.songs, c.queue);
        EXPECT_EQ(log.calls, c.calls) << c.name;
        EXPECT_EQ(result.road, PlayRoad::Messages) << c.name;
        EXPECT_EQ(result.sent, c.songs.size()) << c.name;
        EXPECT_EQ(result.mode, c.queue ? 0 : c.loadMode) << c.name;
    }
    EXPECT_TRUE(platform.started.empty());
    EXPECT_FALSE(FileExists(folder.File("templist.m3u")));
}

TEST_F(RunPlaylistTest, ALongListGoesInBatchesWithProgressBetweenThem) {
    Aim(kPlayerMpv);
    std::vector<std::string> songs;
    for (int i = 0; i < 100000; ++i) {
        songs.push_back("/music/song " + std::to_string(i) + ".mp3");
    }
    settings.HighLoadMode = 0;  // 100,000 is always above HighLoad, a 16-bit number
    std::vector<std::int64_t> done;
    front.progress = [&done](std::int64_t at, std::int64_t total) {
        EXPECT_EQ(total, 100000);
        done.push_back(at);
        return true;
    };
    const RunPlaylistResult result = Run(songs);
    EXPECT_EQ(result.sent, 100000u);
    ASSERT_EQ(done.size(), 1u + (99999 + kMessageRoadBatch - 1) / kMessageRoadBatch);
    EXPECT_EQ(done[0], 1);
    EXPECT_EQ(done[1], 1 + static_cast<std::int64_t>(kMessageRoadBatch));
    EXPECT_EQ(done.back(), 100000);
    EXPECT_EQ(log.calls[3], "Play");  // after the first song's batch
    EXPECT_EQ(log.calls.back(), "Batch " + std::to_string(99999 % kMessageRoadBatch));
}

TEST_F(RunPlaylistTest, ProgressThatSaysStopEndsTheLoad) {
    Aim(kPlayerMpv);
    settings.HighLoadMode = 0;
    front.progress = [](std::int64_t at, std::int64_t) { return at < 201; };
    const RunPlaylistResult result = Run(std::vector<std::string>(1000, "/a"));
    EXPECT_TRUE(result.stopped);
    EXPECT_EQ(result.sent, 201u);
    EXPECT_EQ(minimized, 0);
}

TEST_F(RunPlaylistTest, APlayerThatDiesMidListEndsTheCommand) {
    Aim(kPlayerMpv);
    player->addsBeforeDying = 2;
    settings.AutoMinimize = 1;
    const RunPlaylistResult result = Run({"/a", "/b", "/c", "/d"});
    EXPECT_EQ(result.error, "the player stopped answering");
    EXPECT_EQ(result.sent, 1u);
    EXPECT_EQ(log.calls, (Calls{"Clear", "Add /a", "Batch 1", "Play", "Add /b"}));
    EXPECT_EQ(minimized, 0);
    EXPECT_TRUE(messages.empty());  // nothing checks that a command had an effect
}

TEST_F(RunPlaylistTest, AnEmptyListDoesNothing) {
    Aim(kPlayerMpv);
    const RunPlaylistResult result = Run({});
    EXPECT_EQ(result.road, PlayRoad::Nothing);
    EXPECT_TRUE(log.calls.empty());
    EXPECT_FALSE(FileExists(folder.File("templist.m3u")));
}

TEST_F(RunPlaylistTest, HighLoadPicksTheModeAtItsBoundary) {
    settings = {.LoadMode = 1, .HighLoad = 3, .HighLoadMode = 2};
    EXPECT_EQ(LoadModeFor(3, false, settings), 1);
    EXPECT_EQ(LoadModeFor(4, false, settings), 2);
    EXPECT_EQ(LoadModeFor(4, true, settings), 0);
    settings.HighLoad = -1;
    EXPECT_EQ(LoadModeFor(0, false, settings), 2);
    settings.HighLoad = 3;

    Aim(kPlayerMpv);
    EXPECT_EQ(Run({"/a", "/b", "/c"}).road, PlayRoad::Messages);
    EXPECT_EQ(Run({"/a", "/b", "/c", "/d"}).road, PlayRoad::CommandLine);
    EXPECT_EQ(Run({"/a", "/b", "/c", "/d"}, true).road, PlayRoad::Messages);
}

TEST_F(RunPlaylistTest, TheSpacerNeedsADelayAndWidensTheList) {
    Aim(kPlayerMpv);
    settings.Spacer = 1;
    settings.Delay = 0;
    EXPECT_EQ(Run({"/a", "/b"}).entries, 2u);
    EXPECT_FALSE(FileExists(folder.File("silent.mp3")));

    settings.Delay = 2;
    log.calls.clear();
    const RunPlaylistResult result = Run({"/a", "/b", "/c"});
    EXPECT_EQ(result.entries, 5u);
    const std::string silent = folder.File("silent.mp3");
    EXPECT_TRUE(FileExists(silent));
    EXPECT_EQ(log.calls, (Calls{"Clear", "Add /a", "Batch 1", "Play", "Add " + silent, "Add /b",
                                "Add " + silent, "Add /c", "Batch 4"}));
    EXPECT_EQ(InterleaveSpacer({"/a"}, "s"), (std::vector<std::string>{"/a"}));
}

TEST_F(RunPlaylistTest, TheCommandLineRoadIsTakenWhereThePartSaysEvenForARunningPlayer) {
    struct Case {
        std::int16_t kind;
        bool running;
        std::int16_t loadMode;
        PlayRoad road;
    };
    const std::vector<Case> cases = {
        {kPlayerWinPlay3, true, 0, PlayRoad::CommandLine},
        {kPlayerSonique, true, 0, PlayRoad::CommandLine},
        {kPlayerKJofol, true, 0, PlayRoad::CommandLine},
        {kPlayerWinamp, false, 0, PlayRoad::CommandLine},
        {kPlayerWinamp, true, 0, PlayRoad::Messages},
        {kPlayerNad, true, 1, PlayRoad::Messages},
        {kPlayerWinamp, true, 2, PlayRoad::CommandLine},
        {kPlayerMpv, false, 1, PlayRoad::CommandLine},
        {0, false, 0, PlayRoad::CommandLine},  // no kind finds a player: the list still goes
    };
    for (const Case& c : cases) {
        Aim(c.kind, "/opt/player-" + std::to_string(c.kind));
        player->running = c.running;
        settings.LoadMode = c.loadMode;
        platform.started.clear();
        log.calls.clear();
        EXPECT_EQ(Run({"/a", "/b"}).road, c.road) << c.kind << " " << c.running;
        EXPECT_EQ(platform.started.size(), c.road == PlayRoad::CommandLine ? 1u : 0u) << c.kind;
        if (c.road == PlayRoad::CommandLine) {
            EXPECT_TRUE(log.calls.empty()) << c.kind;
        }
    }
}

TEST_F(RunPlaylistTest, TheCommandLineRoadStartsThePlayerWithTempList) {
    Aim(kPlayerWinamp, "  /opt/winamp/winamp.exe  ");
    player->running = false;
    const RunPlaylistResult result =
        Run({"  /music/with blank.mp3 ", "/music/quote\"d.mp3", "d:\\\\old\\form.mp3",
             "/music/new\nline.mp3", "/music/ünï.mp3"});
    EXPECT_EQ(result.road, PlayRoad::CommandLine);
    EXPECT_EQ(TempList(),
              "/music/with blank.mp3\r\n/music/quote\"d.mp3\r\nd:\\old\\form.mp3\r\n"
              "file:///music/new%0Aline.mp3\r\n/music/ünï.mp3\r\n");
    ASSERT_EQ(platform.started.size(), 1u);
    EXPECT_EQ(platform.started[0].program, "/opt/winamp/winamp.exe");
    EXPECT_EQ(platform.started[0].arguments,
              (std::vector<std::string>{folder.File("templist.m3u")}));
    EXPECT_TRUE(messages.empty());
}

TEST_F(RunPlaylistTest, MpvIsStartedIdleOnItsSocketWithTheList) {
    Aim(kPlayerMpv, "/usr/bin/mpv");
    player->running = false;
    Run({"/a"});
    ASSERT_EQ(platform.started.size(), 1u);
    EXPECT_EQ(platform.started[0].arguments,
              (std::vector<std::string>{"--idle=yes", "--no-video", "--force-window=no",
                                        "--input-ipc-server=" + folder.File("mpv.sock"),
                                        folder.File("templist.m3u")}));
}

TEST_F(RunPlaylistTest, ARunningMpvOfThisFolderTakesTheListInsteadOfASecondStart) {
    test::FakeMpvState mpv;
    mpv.playlist = {"/old"};
    mpv.pos = 0;
    platform.channels = [&mpv](const std::string&) {
        return std::make_unique<test::FakeMpvChannel>(mpv);
    };
    Aim(kPlayerMpris, "/usr/bin/mpv");
    player->running = true;
    player->messageRoad = false;
    Run({"/a", "/b"}, true);  // a queue to a player without a track list
    EXPECT_TRUE(platform.started.empty());
    EXPECT_EQ(mpv.playlist,
              (std::vector<std::string>{"/old", "list:" + folder.File("templist.m3u")}));

    settings.LoadMode = 2;
    EXPECT_EQ(Run({"/c", "/d"}).road, PlayRoad::RunningPlayer);
    EXPECT_EQ(mpv.playlist[static_cast<std::size_t>(mpv.pos)],
              "list:" + folder.File("templist.m3u"));
    EXPECT_FALSE(mpv.paused);
}

TEST_F(RunPlaylistTest, AnMprisPlayerWithoutTrackListOpensTheListOrTheSong) {
    Aim(kPlayerMpris, "/usr/bin/vlc");
    player->messageRoad = false;
    settings.LoadMode = 1;
    EXPECT_EQ(Run({" /music/one song.mp3 "}).road, PlayRoad::OpenUri);
    EXPECT_EQ(log.calls, (Calls{"Open /music/one song.mp3"}));

    log.calls.clear();
    EXPECT_EQ(Run({"/a", "/b"}).road, PlayRoad::OpenUri);
    EXPECT_EQ(log.calls, (Calls{"Open " + folder.File("templist.m3u")}));
    EXPECT_EQ(TempList(), "/a\r\n/b\r\n");

    // A player that refuses the file gets the list on its command line.
    player->opensFiles = false;
    EXPECT_EQ(Run({"/a", "/b"}).road, PlayRoad::CommandLine);
    EXPECT_EQ(platform.started.size(), 1u);
}

TEST_F(RunPlaylistTest, APlayerThatCannotStartGetsTheUhOhMessage) {
    Aim(kPlayerMpv, "/nowhere/mpv");
    player->running = false;
    platform.startFails = true;
    const RunPlaylistResult result = Run({"/a"});
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].title, "Uh-oh...");
    EXPECT_EQ(messages[0].text,
              "Player executable file not found.  Please check your Setup settings again.");
    EXPECT_EQ(messages[0].icon, MessageIcon::Warning);
    EXPECT_EQ(result.error, "/nowhere/mpv: no such program");

    messages.clear();
    Aim(kPlayerMpv, "   ");
    player->running = false;
    Run({"/a"});
    EXPECT_EQ(messages.size(), 1u);
}

TEST_F(RunPlaylistTest, AutoMinimizeNeedsMoreThanOneSongNoSheetAndOnTheMessageRoadNoQueue) {
    struct Case {
        bool running;
        std::size_t songs;
        bool queue;
        bool sheet;
        std::int16_t autoMinimize;
        int minimized;
    };
    const std::vector<Case> cases = {
        {true, 2, false, false, 1, 1},  {true, 1, false, false, 1, 0},
        {true, 2, true, false, 1, 0},   {true, 2, false, true, 1, 0},
        {true, 2, false, false, 0, 0},  {false, 2, true, false, 1, 1},
        {false, 1, false, false, 1, 0}, {false, 2, false, true, 1, 0},
    };
    for (const Case& c : cases) {
        Aim(kPlayerMpv);
        player->running = c.running;
        minimized = 0;
        sheetShows = c.sheet;
        settings.AutoMinimize = c.autoMinimize;
        Run(std::vector<std::string>(c.songs, "/a"), c.queue);
        EXPECT_EQ(minimized, c.minimized) << c.running << c.songs << c.queue << c.sheet;
    }
}

TEST_F(RunPlaylistTest, TheWinPlayIconGoesUpBeforeAWinPlay3Starts) {
    Aim(kPlayerWinPlay3, "/opt/WinPlay3/WINPLAY3.EXE");
    Run({"/a"});
    EXPECT_EQ(log.calls, (Calls{"WinPlayIcon"}));
    EXPECT_EQ(platform.started.size(), 1u);
}

}  // namespace
}  // namespace jk
