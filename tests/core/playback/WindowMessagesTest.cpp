#include "playback/WindowMessages.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/playback/PlayerFakes.h"
#include "playback/PlayerKind.h"
#include "playback/WindowMessageTransport.h"
#include "support/TempFolder.h"

namespace jk {
namespace {

using Log = std::vector<std::string>;

Log Sent(std::int16_t kind, const std::function<void(WindowMessageTransport&)>& act) {
    test::RecordingWindows windows;
    WindowMessageTransport player(kind, windows, "/data/");
    act(player);
    return windows.log;
}

TEST(WindowMessages, TheTransportTableOfEachKind) {
    struct Case {
        std::int16_t kind;
        void (PlayerTransport::*command)();
        Log log;
    };
    const std::vector<Case> cases = {
        // WinPlay3 presses and releases the button of the command's ID.
        {kPlayerWinPlay3,
         &PlayerTransport::Next,
         {"Post 140014 513 0 0", "Post 140014 243 1 0", "Post 140014 514 0 0",
          "Post 140014 243 0 0"}},
        {kPlayerWinPlay3,
         &PlayerTransport::Previous,
         {"Post 140013 513 0 0", "Post 140013 243 1 0", "Post 140013 514 0 0",
          "Post 140013 243 0 0"}},
        {kPlayerWinamp, &PlayerTransport::Next, {"Post 2 256 66 0"}},
        {kPlayerWinamp, &PlayerTransport::Play, {"Send 2 273 40045 0"}},
        {kPlayerWinamp, &PlayerTransport::Stop, {"Post 2 256 86 0"}},
        // NAD's Next and Previous are WinPlay3's the other way round.
        {kPlayerNad, &PlayerTransport::Next, {"Send 3 273 40013 0"}},
        {kPlayerNad, &PlayerTransport::Previous, {"Send 3 273 40014 0"}},
        {kPlayerNad, &PlayerTransport::Pause, {"Send 3 273 40012 0"}},
        {kPlayerSonique, &PlayerTransport::Play, {"Post 4 256 88 0"}},
        // K-Jofol's Next alone is a lower-case "b", key down then key up.
        {kPlayerKJofol, &PlayerTransport::Next, {"Post 5 256 98 0", "Post 5 257 98 0"}},
        {kPlayerKJofol, &PlayerTransport::Previous, {"Post 5 256 90 0", "Post 5 257 90 0"}},
        // The Winamp-only commands go to Winamp alone.
        {kPlayerWinamp, &PlayerTransport::VolumeUp, {"Post 2 273 40058 0"}},
        {kPlayerWinamp, &PlayerTransport::Fade, {"Post 2 273 40147 0"}},
        {kPlayerWinamp, &PlayerTransport::SkipBack, {"Post 2 273 40061 0"}},
        {kPlayerWinamp, &PlayerTransport::PlugInRun, {"Send 2 273 40192 0"}},
        {kPlayerNad, &PlayerTransport::VolumeUp, {}},
        {kPlayerSonique, &PlayerTransport::Fade, {}},
        {kPlayerWinamp, &PlayerTransport::Close, {"Send 2 274 61536 0"}},
        {kPlayerKJofol, &PlayerTransport::Restore, {"Send 5 274 61728 0"}},
        // WinPlay3's Minimize also hides its window.
        {kPlayerWinPlay3, &PlayerTransport::Minimize, {"Send 1 274 61472 0", "Show 1 0"}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Sent(c.kind, [&c](WindowMessageTransport& player) { (player.*c.command)(); }),
                  c.log)
            << c.kind << " " << (c.log.empty() ? "" : c.log[0]);
    }
}

TEST(WindowMessages, NoWindowAndNoKindMeanNoMessage) {
    test::RecordingWindows windows;
    windows.windowsExist = false;
    for (std::int16_t kind = 0; kind <= 8; ++kind) {
        WindowMessageTransport player(kind, windows, "/data/");
        player.Play();
        player.Next();
        player.VolumeUp();
        player.Close();
        player.ClearList();
        const std::string path = "/a";
        EXPECT_EQ(player.AddSongs({&path, 1}), AddResult::Failed);
        EXPECT_FALSE(player.Running());
    }
    EXPECT_TRUE(windows.log.empty());
    // The plain messenger of this system finds no window of any kind.
    WindowMessenger none;
    for (std::int16_t kind = 1; kind <= 5; ++kind) {
        EXPECT_FALSE(WindowMessageTransport(kind, none, "/data/").Running());
    }
}

TEST(WindowMessages, WinPlay3RecordsItsWindowState) {
    test::RecordingWindows windows;
    WindowMessageTransport player(kPlayerWinPlay3, windows, "/data/");
    EXPECT_EQ(player.RecordedWindowState(), 0);
    player.Minimize();
    EXPECT_EQ(player.RecordedWindowState(), 2);
    player.Restore();
    EXPECT_EQ(player.RecordedWindowState(), 1);
    UnhideWinPlay3(windows);
    EXPECT_EQ(windows.log.back(), "Show 1 -1");
    windows.windowsExist = false;
    UnhideWinPlay3(windows);
    EXPECT_EQ(windows.log.back(), "Show 0 -1");  // sent whether or not a window was found
}

TEST(WindowMessages, TheMessageRoadOfWinampAndNad) {
    const std::vector<std::string> songs = {"/music/a.mp3", "/b"};
    EXPECT_EQ(Sent(kPlayerWinamp,
                   [&](WindowMessageTransport& player) {
                       player.ClearList();
                       EXPECT_EQ(player.AddSongs(songs), AddResult::Added);
                   }),
              (Log{"Send 2 1024 0 101", "CopyData 2 100 13 /music/a.mp3 255",
                   "CopyData 2 100 3 /b 255"}));
    // NAD's clear carries the record as the last add left it: zero on a first run.
    EXPECT_EQ(Sent(kPlayerNad,
                   [&](WindowMessageTransport& player) {
                       player.ClearList();
                       player.AddSongs(songs);
                       player.ClearList();
                   }),
              (Log{"CopyData 3 0 0  255", "CopyData 3 1 12 /music/a.mp3 255",
                   "CopyData 3 1 2 /b 255", "CopyData 3 1 2 /b 255"}));
    EXPECT_FALSE(WindowMessageTransport(kPlayerSonique, *std::make_unique<test::RecordingWindows>(),
                                        "/data/")
                     .HasMessageRoad());
}

TEST(WindowMessages, APathLongerThanTheBufferEndsTheCommand) {
    const std::vector<std::string> songs = {"/ok", std::string(254, 'x'), std::string(255, 'y'),
                                            "/never"};
    const Log log = Sent(kPlayerWinamp, [&](WindowMessageTransport& player) {
        EXPECT_EQ(player.AddSongs(songs), AddResult::PathTooLong);
    });
    ASSERT_EQ(log.size(), 2u);
    EXPECT_EQ(log[1].substr(0, 14), "CopyData 2 100");
}

TEST(WindowMessages, ThePollAsksWinampItsState) {
    test::TempFolder folder;
    test::RecordingWindows windows;
    windows.windowText = "12. Artist - Song. Title - Winamp";
    windows.answer = [](std::uint32_t, std::uint64_t w, std::int64_t l) -> std::int64_t {
        switch (l) {
            case kWinampPlayState:
                return 3;
            case kWinampPosition:
                return w == 0 ? 65432 : 200;
            case kWinampWriteList:
                return 4;
            default:
                return 0;
        }
    };
    WindowMessageTransport player(kPlayerWinamp, windows, folder.Folder());
    const PlayerStatus status = player.Status();
    EXPECT_EQ(status.state, PlayState::Paused);
    EXPECT_EQ(status.positionMs, 65432);
    EXPECT_EQ(status.lengthMs, 200000);
    EXPECT_EQ(status.title, "Artist - Song. Title");
    EXPECT_EQ(player.ListIndex(), 4);
    EXPECT_EQ(player.ListLength(), -1);  // no winamp.m3u
    folder.Write("winamp.m3u", "#EXTM3U\r\na\r\nb\r\nc");
    EXPECT_EQ(player.ListLength(), 4);
    player.SeekTo(45000);
    EXPECT_EQ(windows.log.back(), "Send 2 1024 45000 106");
}

TEST(WindowMessages, ListLinesAreCountedUpToTheLimit) {
    test::TempFolder folder;
    EXPECT_EQ(CountListLines(folder.Write("empty", ""), 10), 0);
    EXPECT_EQ(CountListLines(folder.Write("two", "a\nb\n"), 10), 2);
    EXPECT_EQ(CountListLines(folder.Write("blank", "\n\n\n"), 10), 3);
    EXPECT_EQ(CountListLines(folder.Write("many", std::string(50, '\n')), 10), 10);
    EXPECT_EQ(CountListLines(folder.File("none"), 10), -1);
}

TEST(WindowMessages, WinampsTitleBecomesTheSongPanel) {
    EXPECT_EQ(WinampSongTitle("3. Band - Song - Winamp"), "Band - Song");
    EXPECT_EQ(WinampSongTitle("No number - Winamp"), "No number");
    EXPECT_EQ(WinampSongTitle("7. Page - Microsoft Internet Explorer"), "Page");
    EXPECT_EQ(WinampSongTitle(std::string("1. Cut") + '\0' + "junk - Winamp"), "Cut");
    EXPECT_EQ(WinampSongTitle(""), "");
}

}  // namespace
}  // namespace jk
