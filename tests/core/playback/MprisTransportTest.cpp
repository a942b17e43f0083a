#include "playback/MprisTransport.h"

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace jk {
namespace {

using Calls = std::vector<std::string>;

// One player on a bus, with a track list when asked for; every call is written down.
struct FakeBusState {
    std::vector<std::string> names = {"org.freedesktop.DBus", ":1.7", "org.mpris.MediaPlayer2.vlc"};
    MprisPlayerState player;
    MprisRootState root;
    std::vector<std::string> tracks;
    int nextTrack = 1;
    Calls calls;
};

class FakeBus : public MprisBus {
public:
    explicit FakeBus(FakeBusState& state) : m_state(state) {}

    std::vector<std::string> ListNames() override {
        m_state.calls.push_back("ListNames");
        return m_state.names;
    }
    bool NameHasOwner(const std::string& name) override {
        return std::find(m_state.names.begin(), m_state.names.end(), name) != m_state.names.end();
    }
    bool CallPlayer(const std::string& bus, std::string_view method) override {
        return Record(bus, std::string(method));
    }
    bool Seek(const std::string& bus, std::int64_t offset) override {
        return Record(bus, "Seek " + std::to_string(offset));
    }
    bool SetPosition(const std::string& bus, const std::string& track,
                     std::int64_t position) override {
        return Record(bus, "SetPosition " + track + " " + std::to_string(position));
    }
    bool OpenUri(const std::string& bus, const std::string& uri) override {
        return Record(bus, "OpenUri " + uri);
    }
    bool SetVolume(const std::string& bus, double volume) override {
        m_state.player.volume = volume;
        return Record(bus, "Volume " + std::to_string(volume).substr(0, 4));
    }
    std::optional<MprisPlayerState> PlayerState(const std::string& bus) override {
        return Known(bus) ? std::optional(m_state.player) : std::nullopt;
    }
    bool CallRoot(const std::string& bus, std::string_view method) override {
        return Record(bus, std::string(method));
    }
    std::optional<MprisRootState> RootState(const std::string& bus) override {
        return Known(bus) ? std::optional(m_state.root) : std::nullopt;
    }
    std::optional<std::vector<std::string>> Tracks(const std::string& bus) override {
        if (!Known(bus) || !m_state.root.hasTrackList) {
            return std::nullopt;
        }
        return m_state.tracks;
    }
    bool AddTrack(const std::string& bus, const std::string& uri, const std::string& after,
                  bool current) override {
        const std::string id = "/t/" + std::to_string(m_state.nextTrack++);
        const auto at = std::find(m_state.tracks.begin(), m_state.tracks.end(), after);
        m_state.tracks.insert(at == m_state.tracks.end() ? m_state.tracks.begin() : at + 1, id);
        return Record(bus, "AddTrack " + uri + " after " + after + (current ? " current" : ""));
    }
    bool RemoveTrack(const std::string& bus, const std::string& track) override {
        std::erase(m_state.tracks, track);
        return Record(bus, "RemoveTrack " + track);
    }

private:
    bool Known(const std::string& bus) const { return bus == "org.mpris.MediaPlayer2.vlc"; }
    bool Record(const std::string& bus, std::string call) {
        if (!Known(bus)) {
            return false;
        }
        m_state.calls.push_back(std::move(call));
        return true;
    }
    FakeBusState& m_state;
};

class MprisTransportTest : public ::testing::Test {
protected:
    MprisTransport Make(std::string name = "vlc") {
        return MprisTransport(std::make_unique<FakeBus>(bus), std::move(name));
    }
    Calls Commands() const {
        Calls calls;
        for (const std::string& call : bus.calls) {
            if (call != "ListNames") {
                calls.push_back(call);
            }
        }
        return calls;
    }
    FakeBusState bus;
};

TEST(MprisNames, ThePlayerIsFoundByItsNameOnTheBus) {
    const std::vector<std::string> names = {
        ":1.4",
        "org.mpris.MediaPlayer2.mpv.instance4711",
        "org.mpris.MediaPlayer2.mpvx",
        "org.mpris.MediaPlayer2.io.github.celluloid_player.Celluloid",
        "org.mpris.MediaPlayer2.DeaDBeeF",
        "org.mpris.MediaPlayer2.vlc",
        "org.mpris.MediaPlayer2.VLC",
    };
    EXPECT_EQ(MatchMprisBusName(names, "vlc"), "org.mpris.MediaPlayer2.vlc");
    EXPECT_EQ(MatchMprisBusName(names, "VLC"), "org.mpris.MediaPlayer2.VLC");
    EXPECT_EQ(MatchMprisBusName(names, "mpv"), "org.mpris.MediaPlayer2.mpv.instance4711");
    EXPECT_EQ(MatchMprisBusName(names, "celluloid"),
              "org.mpris.MediaPlayer2.io.github.celluloid_player.Celluloid");
    EXPECT_EQ(MatchMprisBusName(names, "deadbeef"), "org.mpris.MediaPlayer2.DeaDBeeF");
    EXPECT_EQ(MatchMprisBusName(names, "audacious"), "");
    EXPECT_EQ(MatchMprisBusName(names, ""), "");
    EXPECT_EQ(MatchMprisBusName({}, "vlc"), "");
}

TEST_F(MprisTransportTest, CommandsGoToTheNamedPlayerOnly) {
    MprisTransport player = Make();
    EXPECT_TRUE(player.Running());
    EXPECT_EQ(player.BusName(), "org.mpris.MediaPlayer2.vlc");
    bus.player.volume = 0.5;
    player.Play();
    player.Pause();
    player.Stop();
    player.Next();
    player.Previous();
    player.SkipAhead();
    player.SkipBack();
    player.VolumeUp();
    player.Close();    // CanQuit is false
    player.Restore();  // CanRaise is false
    bus.root.canQuit = true;
    bus.root.canRaise = true;
    player.Restore();
    player.Close();
    EXPECT_EQ(Commands(), (Calls{"Play", "PlayPause", "Stop", "Next", "Previous", "Seek 5000000",
                                 "Seek -5000000", "Volume 0.55", "Raise", "Quit"}));

    MprisTransport absent = Make("audacious");
    EXPECT_FALSE(absent.Running());
    bus.calls.clear();
    absent.Play();
    absent.VolumeUp();
    EXPECT_EQ(Commands(), Calls{});
}

TEST_F(MprisTransportTest, AbilitiesComeFromTheCanProperties) {
    bus.player.canPlay = true;
    bus.player.canGoNext = true;
    bus.root.canQuit = true;
    bus.root.hasTrackList = true;
    const PlayerAbilities can = Make().Abilities();
    EXPECT_TRUE(can.canPlay && can.canGoNext && can.canQuit && can.hasTrackList);
    EXPECT_FALSE(can.canPause || can.canGoPrevious || can.canSeek || can.canControl ||
                 can.canRaise);
    const PlayerAbilities none = Make("rhythmbox").Abilities();
    EXPECT_FALSE(none.canPlay || none.canQuit);
}

TEST_F(MprisTransportTest, TheTrackListRoadReplacesTheListInOrder) {
    bus.root.hasTrackList = true;
    bus.tracks = {"/old/1", "/old/2"};
    MprisTransport player = Make();
    ASSERT_TRUE(player.HasMessageRoad());
    player.ClearList();
    const std::vector<std::string> songs = {"/m/a b.mp3", "/m/ü\n.mp3"};
    EXPECT_EQ(player.AddSongs(songs), AddResult::Added);
    EXPECT_EQ(bus.tracks, (std::vector<std::string>{"/t/1", "/t/2"}));
    EXPECT_EQ(Commands(),
              (Calls{"RemoveTrack /old/1", "RemoveTrack /old/2",
                     "AddTrack file:///m/a%20b.mp3 after /org/mpris/MediaPlayer2/TrackList/NoTrack "
                     "current",
                     "AddTrack file:///m/%C3%BC%0A.mp3 after /t/1"}));
    bus.player.playbackStatus = "Playing";
    bus.player.metadata.trackId = "/t/2";
    EXPECT_EQ(player.ListIndex(), 1);
    EXPECT_EQ(player.ListLength(), 2);
}

TEST_F(MprisTransportTest, WithoutTrackListSongsAreOpened) {
    MprisTransport player = Make();
    EXPECT_FALSE(player.HasMessageRoad());
    EXPECT_EQ(player.ListIndex(), -1);
    EXPECT_EQ(player.ListLength(), -1);
    EXPECT_TRUE(player.OpenAndPlay("/data/templist.m3u"));
    EXPECT_EQ(Commands(), (Calls{"OpenUri file:///data/templist.m3u"}));
}

TEST_F(MprisTransportTest, TheStatusReadsThePlayersProperties) {
    bus.player.playbackStatus = "Playing";
    bus.player.positionUs = 61500000;
    bus.player.volume = 0.255;
    bus.player.canGoNext = false;
    bus.player.metadata = {"/t/9", "file:///m/song.mp3", "Title", {"One", " ", "Two"}, 200000000};
    MprisTransport player = Make();
    PlayerStatus status = player.Status();
    EXPECT_EQ(status.state, PlayState::Playing);
    EXPECT_EQ(status.positionMs, 61500);
    EXPECT_EQ(status.lengthMs, 200000);
    EXPECT_EQ(status.volume, 26);
    EXPECT_EQ(status.title, "One, Two - Title");
    EXPECT_FALSE(status.canGoNext);
    EXPECT_EQ(player.Volume(), 26);

    player.SeekTo(45000);
    EXPECT_EQ(Commands().back(), "SetPosition /t/9 45000000");
    bus.player.metadata.trackId.clear();
    player.SeekTo(45000);
    EXPECT_EQ(Commands().back(), "Seek -16500000");

    bus.player.metadata.title.clear();
    EXPECT_EQ(player.Status().title, "song.mp3");
    bus.player.playbackStatus = "Paused";
    EXPECT_EQ(player.Status().state, PlayState::Paused);
    bus.player.playbackStatus = "Stopped";
    EXPECT_EQ(player.Status().positionMs, -1);
}

}  // namespace
}  // namespace jk
