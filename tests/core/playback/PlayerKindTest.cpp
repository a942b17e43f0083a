#include "playback/PlayerKind.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "playback/PlayerBridge.h"
#include "playback/PlayerCommands.h"

namespace jk {
namespace {

TEST(PlayerKind, SetPlayerModeReadsTheFileNameOnly) {
    struct Case {
        std::string path;
        std::string mprisPlayer;
        std::int16_t kind;
        std::string mprisName;
    };
    const std::vector<Case> cases = {
        {"/usr/bin/mpv", "", kPlayerMpv, ""},
        {"  /usr/bin/mpv  ", "", kPlayerMpv, ""},
        {"mpv", "", kPlayerMpv, ""},
        {"/home/nadia/bin/audacious", "", kPlayerMpris, "audacious"},
        {"/opt/winamp/winamp.exe", "", kPlayerWinamp, ""},
        {"C:\\Program Files\\Winamp\\WINAMP.EXE", "", kPlayerWinamp, ""},
        {"/opt/WinPlay3/WINPLAY3.EXE", "", kPlayerWinPlay3, ""},
        {"/opt/nad/nad.exe", "", kPlayerNad, ""},
        {"/opt/sonique/sonique.exe", "", kPlayerSonique, ""},
        {"/opt/kjofol/KJofol.exe", "", kPlayerKJofol, ""},
        {"/usr/bin/vlc", "", kPlayerMpris, "vlc"},
        {"/usr/bin/deadbeef", "", kPlayerMpris, "deadbeef"},
        {"/usr/bin/celluloid", "", kPlayerMpris, "celluloid"},
        {"/usr/bin/Rhythmbox", "", kPlayerMpris, "rhythmbox"},
        // The folders name players, the file names none: the kind stays as it was.
        {"/opt/winamp/mpv-nad/play", "", 4, ""},
        {"/home/vlc/bin/xmms", "", 4, ""},
        {"", "", 4, ""},
        // MprisPlayer wins over whatever the path says.
        {"/usr/bin/mpv", "mpv", kPlayerMpris, "mpv"},
        {"/opt/winamp/winamp.exe", " vlc ", kPlayerMpris, "vlc"},
        {"/usr/bin/vlc", "   ", kPlayerMpris, "vlc"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(PlayerKindFor(c.path, c.mprisPlayer, 4), c.kind) << c.path;
        EXPECT_EQ(MprisNameFor(c.path, c.mprisPlayer), c.mprisName) << c.path;
        const PlayerTarget target = PlayerTargetFor(c.path, c.mprisPlayer, 4, "/data/");
        EXPECT_EQ(target.kind, c.kind) << c.path;
    }
}

TEST(PlayerKind, TheWinampAndWinplayTestsLookAtTheFileName) {
    EXPECT_TRUE(IsWinampPath("/opt/WinAmp5/WINAMP.EXE"));
    EXPECT_FALSE(IsWinampPath("/home/winamp/bin/mpv"));
    EXPECT_TRUE(IsWinPlayPath("/opt/x/WinPlay3.exe"));
    EXPECT_FALSE(IsWinPlayPath("/winplay/mpv"));
    EXPECT_TRUE(IsMpvPath("/usr/local/bin/mpv"));
    EXPECT_FALSE(IsMpvPath("/home/mpv/bin/vlc"));
}

TEST(PlayerKind, EachKindShowsTheCommandsItCanCarry) {
    using C = PlayerCommand;
    const PlayerAbilities all;
    const PlayerCommandSet winamp = ShownPlayerCommands(kPlayerWinamp, all);
    for (std::size_t i = 0; i < kPlayerCommandCount; ++i) {
        EXPECT_TRUE(winamp.Has(static_cast<C>(i))) << i;
    }
    for (const std::int16_t kind : {kPlayerWinPlay3, kPlayerNad, kPlayerSonique, kPlayerKJofol}) {
        const PlayerCommandSet shown = ShownPlayerCommands(kind, all);
        EXPECT_TRUE(shown.Has(C::Next) && shown.Has(C::Close) && shown.Has(C::Minimize)) << kind;
        EXPECT_FALSE(shown.Has(C::VolumeUp) || shown.Has(C::Fade) || shown.Has(C::Equalizer))
            << kind;
    }
    const PlayerCommandSet mpv = ShownPlayerCommands(kPlayerMpv, all);
    EXPECT_TRUE(mpv.Has(C::Fade) && mpv.Has(C::SkipBack) && mpv.Has(C::Close));
    EXPECT_FALSE(mpv.Has(C::Equalizer) || mpv.Has(C::PlugInRun) || mpv.Has(C::Minimize) ||
                 mpv.Has(C::Restore));

    PlayerAbilities mpris;
    mpris.canGoNext = false;
    mpris.canSeek = false;
    mpris.canQuit = false;
    const PlayerCommandSet shown = ShownPlayerCommands(kPlayerMpris, mpris);
    EXPECT_TRUE(shown.Has(C::Play) && shown.Has(C::Previous) && shown.Has(C::Restore) &&
                shown.Has(C::VolumeUp));
    EXPECT_FALSE(shown.Has(C::Next) || shown.Has(C::SkipAhead) || shown.Has(C::Close) ||
                 shown.Has(C::Minimize) || shown.Has(C::Equalizer));
    mpris.canControl = false;
    EXPECT_FALSE(ShownPlayerCommands(kPlayerMpris, mpris).Has(C::Fade));

    for (const std::int16_t kind : {0, 8, -1}) {
        EXPECT_TRUE(ShownPlayerCommands(kind, all).Empty()) << kind;
    }
}

TEST(PlayerKind, RemoteCommandNamesGoBothWays) {
    for (std::size_t i = 0; i < kPlayerCommandCount; ++i) {
        const auto command = static_cast<PlayerCommand>(i);
        EXPECT_EQ(RemoteCommandNamed(RemoteCommandName(command)), command) << i;
    }
    EXPECT_EQ(RemoteCommandNamed("vol-up"), PlayerCommand::VolumeUp);
    EXPECT_EQ(RemoteCommandNamed("Play"), PlayerCommand::Count);
}

}  // namespace
}  // namespace jk
