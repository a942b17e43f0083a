// The player's side of the main window under the offscreen platform, against a recording
// player: the remote items and transport keys reach it, the items it cannot carry out are
// hidden, the play items hand the playlist over, IntroPlay's key switches the setting, and the
// status bar shows the player's time, song and volume.

#include <algorithm>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include <QAction>
#include <QFile>
#include <QLabel>
#include <QMessageBox>
#include <QProgressBar>
#include <QTemporaryDir>
#include <QTest>

#include "DesktopTestSupport.h"
#include "WindowShots.h"
#include "app/Session.h"
#include "app/ui/DesktopProgram.h"
#include "app/ui/ListPane.h"
#include "app/ui/MainPlayer.h"
#include "app/ui/MainSetupEffects.h"
#include "catalogue/VirtualVolumes.h"
#include "platform/SystemPlayerPlatform.h"
#include "playback/PlayerBridge.h"
#include "playback/PlayerTransport.h"
#include "playback/ui/PlaylistModel.h"

using jk::test::BoxAnswerer;
using jk::test::FolderOf;
using jk::test::WritePreviousRun;

namespace {

// Records each call as a word; reports the state it is given.
class RecordingPlayer final : public jk::PlayerTransport {
public:
    explicit RecordingPlayer(std::vector<std::string>& calls) : m_calls(calls) {}
    jk::PlayerStatus status;

    bool Running() override { return true; }
    void Play() override { m_calls.emplace_back("Play"); }
    void Pause() override { m_calls.emplace_back("Pause"); }
    void Stop() override { m_calls.emplace_back("Stop"); }
    void Next() override { m_calls.emplace_back("Next"); }
    void Previous() override { m_calls.emplace_back("Previous"); }
    bool HasMessageRoad() override { return true; }
    void ClearList() override { m_calls.emplace_back("Clear"); }
    jk::AddResult AddSongs(std::span<const std::string> paths) override {
        for (const std::string& path : paths) {
            m_calls.push_back("Add " + path);
        }
        if (onAdd) {
            onAdd();
        }
        return jk::AddResult::Added;
    }
    std::function<void()> onAdd;
    jk::PlayerStatus Status() override { return status; }

private:
    std::vector<std::string>& m_calls;
};

// A started desktop program over a fresh data folder whose player is a RecordingPlayer writing
// to `calls`; `player` is the one made last.
struct RecordedProgram {
    RecordedProgram() {
        WritePreviousRun(dir);
        data.UsePlayer(&bridge);
        program = std::make_unique<jk::DesktopProgram>(FolderOf(dir), data);
        program->UsePlayer(bridge);
        program->Start();
    }

    QTemporaryDir dir;
    std::vector<std::string> calls;
    RecordingPlayer* player = nullptr;
    jk::SystemPlayerPlatform platform;
    jk::PlayerBridge bridge{platform, {}, [this](const jk::PlayerTarget&) {
                                auto made = std::make_unique<RecordingPlayer>(calls);
                                player = made.get();
                                return made;
                            }};
    jk::SessionData data;
    std::unique_ptr<jk::DesktopProgram> program;
};

}  // namespace

class MainPlayerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theWindowSteersThePlayerItNames();
    void aPlayOfSongsOnAnAbsentDiscAsksForIt();
    void aLongListShowsItsProgressWhileItLoads();
};

void MainPlayerTest::theWindowSteersThePlayerItNames() {
    RecordedProgram rig;
    std::vector<std::string>& calls = rig.calls;
    RecordingPlayer*& player = rig.player;
    jk::DesktopProgram& program = *rig.program;
    jk::Main& main = program.MainWindow();
    jk::Session& session = program.State();

    // Setup's "Okay" with mpv named: the seam aims the bridge and the window follows.
    session.Settings.PlayerExes[1] = "/usr/bin/mpv";
    session.Settings.ShowCurrSong = 1;
    program.SetupEffectsOfMain().UpdatePlayerMode();
    program.SetupEffectsOfMain().SetPlayerMode();
    QCOMPARE(session.PlayerKind, std::int16_t{6});
    QVERIFY(player != nullptr);
    for (const char* shown : {"PlayPlayer", "NextPlayer", "VolumeUp", "VolumeFade", "ClosePlayer",
                              "RemoteNext", "PlayList", "QueueAll"}) {
        QVERIFY2(main.Action(shown)->isVisible(), shown);
        QVERIFY2(main.Action(shown)->isEnabled(), shown);
    }
    for (const char* hidden : {"WinAMP_GEQ", "WinAMP_Execute", "MinimizePlayer", "RemoteRestore"}) {
        QVERIFY2(!main.Action(hidden)->isVisible(), hidden);
    }

    main.Action("NextPlayer")->trigger();
    main.ToolbarButton("remotepause")->trigger();
    main.Action("RemotePrev")->trigger();
    QCOMPARE(calls, (std::vector<std::string>{"Next", "Pause", "Previous"}));

    calls.clear();
    jk::test::GiveUnsavedRows(session, 3);
    program.MainWindow().PlaylistFilledOutside();
    main.Action("PlayList")->trigger();
    QCOMPARE(calls.front(), std::string("Clear"));
    QCOMPARE(calls[1], std::string("Add /music/song0.mp3"));
    QCOMPARE(calls.back(), std::string("Add /music/song2.mp3"));
    QVERIFY(std::find(calls.begin(), calls.end(), "Play") != calls.end());

    const int intro = session.Settings.IntroPlay;
    main.ToolbarButton("introplay")->trigger();
    QCOMPARE(int{session.Settings.IntroPlay}, intro == 1 ? 0 : 1);
    QCOMPARE(main.ToolbarButton("introplay")->isChecked(), session.Settings.IntroPlay == 1);

    player->status.state = jk::PlayState::Playing;
    player->status.positionMs = 65'000;
    player->status.lengthMs = 200'000;
    player->status.volume = 40;
    player->status.title = "A song";
    program.Player()->StatusTick();
    QCOMPARE(main.findChild<QLabel*>(QStringLiteral("Panel4"))->text(), QStringLiteral("A song"));
    QCOMPARE(main.findChild<QLabel*>(QStringLiteral("Panel6"))->text(), QStringLiteral("  40%"));
    QVERIFY(!main.findChild<QLabel*>(QStringLiteral("Panel7"))->text().isEmpty());
    player->status.state = jk::PlayState::Paused;
    program.Player()->StatusTick();
    QCOMPARE(main.findChild<QLabel*>(QStringLiteral("Panel7"))->text(), QStringLiteral("Pause"));

    // Setup's "Okay" switching ShowCurrSong off empties the time and song panels; on again, they
    // are filled at once, not at the timer's next change.
    session.Settings.ShowCurrSong = 0;
    program.SetupEffectsOfMain().ShowCurrSongChanged(false);
    QVERIFY(main.findChild<QLabel*>(QStringLiteral("Panel4"))->text().isEmpty());
    QVERIFY(main.findChild<QLabel*>(QStringLiteral("Panel7"))->text().isEmpty());
    session.Settings.ShowCurrSong = 1;
    program.SetupEffectsOfMain().ShowCurrSongChanged(true);
    QCOMPARE(main.findChild<QLabel*>(QStringLiteral("Panel4"))->text(), QStringLiteral("A song"));
    QCOMPARE(main.findChild<QLabel*>(QStringLiteral("Panel7"))->text(), QStringLiteral("Pause"));

    main.resize(1280, 800);
    main.show();
    QVERIFY(QTest::qWaitForWindowExposed(&main));
    jk::test::SaveShot(main, QStringLiteral("main-player"));

    // Setup's "Okay" changing to a player that reports nothing leaves none of the last one's
    // time, song or volume behind, and later ticks write nothing.
    session.Settings.PlayerExes[1] = "/opt/kjofol/KJofol.exe";
    program.SetupEffectsOfMain().UpdatePlayerMode();
    program.SetupEffectsOfMain().SetPlayerMode();
    QCOMPARE(session.PlayerKind, std::int16_t{5});
    for (const char* panel : {"Panel4", "Panel6", "Panel7"}) {
        QVERIFY2(main.findChild<QLabel*>(QString::fromLatin1(panel))->text().isEmpty(), panel);
    }
    QVERIFY(!main.findChild<QLabel*>(QStringLiteral("Panel4"))->isVisible());
    program.Player()->StatusTick();
    QVERIFY(main.findChild<QLabel*>(QStringLiteral("Panel4"))->text().isEmpty());
    session.Playlist.PlaylistSaved = true;
    QVERIFY(main.close());
}

void MainPlayerTest::aPlayOfSongsOnAnAbsentDiscAsksForIt() {
    RecordedProgram rig;
    std::vector<std::string>& calls = rig.calls;
    jk::DesktopProgram& program = *rig.program;
    jk::Main& main = program.MainWindow();
    jk::Session& session = program.State();
    session.Settings.PlayerExes[1] = "/usr/bin/mpv";
    program.SetupEffectsOfMain().SetPlayerMode();

    // SUMMER_99 was scanned at /media/ann/SUMMER_99; a song of the data folder stands beside.
    session.Settings.DiscIdentity = 1;
    jk::VirtualVolume volume("SUMMER_99");
    for (const char* path : {"/media/ann/SUMMER_99/one.mp3", "/media/ann/SUMMER_99/two.mp3"}) {
        jk::SongInfo song;
        song.Path = path;
        jk::VolumeAppend(volume, song);
    }
    session.Virtual.Volumes.push_back(std::move(volume));
    session.Virtual.Discs.push_back(
        {"SUMMER_99", "SUMMER99", "", "iso9660", "/media/ann/SUMMER_99", "20260101120000"});
    const std::string here = FolderOf(rig.dir) + "here.mp3";
    QFile(QString::fromStdString(here)).open(QIODevice::WriteOnly);
    int listings = 0;
    jk::MountedDiscs mounted;
    session.DiscLister = [&] {
        ++listings;
        return mounted;
    };
    const auto fillRows = [&](const std::vector<std::string>& paths) {
        session.Playlist.Rows.clear();
        for (const std::string& path : paths) {
            session.Playlist.Rows.push_back(jk::GhostRow(path));
        }
        main.PlaylistFilledOutside();
        calls.clear();
    };
    const auto playRows = [&](const std::vector<std::string>& paths) {
        fillRows(paths);
        main.Action("PlayList")->trigger();
    };
    const std::vector<std::string> onDisc{"/media/ann/SUMMER_99/one.mp3",
                                          "/media/ann/SUMMER_99/two.mp3"};

    {
        // Cancel: nothing reaches the player.
        BoxAnswerer answerer({QMessageBox::Cancel});
        playRows(onDisc);
        QCOMPARE(answerer.seen.size(), 1);
        QCOMPARE(answerer.seen[0].title, QStringLiteral("Insert disc"));
        QCOMPARE(answerer.seen[0].text,
                 QStringLiteral("Please insert the disc \"SUMMER_99\" (label SUMMER99) to play "
                                "these 2 songs."));
        QVERIFY(calls.empty());
    }
    {
        // Retry once the disc is in, mounted elsewhere: its songs play from there.
        BoxAnswerer answerer({QMessageBox::Retry});
        listings = 0;
        session.DiscLister = [&] {
            if (listings++ > 0) {
                return jk::MountedDiscs{{"/run/media/ann/SUMMER99", "SUMMER99", "", "iso9660"}};
            }
            return jk::MountedDiscs{};
        };
        playRows(onDisc);
        QCOMPARE(answerer.seen.size(), 1);
        QVERIFY(std::find(calls.begin(), calls.end(), "Add /run/media/ann/SUMMER99/two.mp3") !=
                calls.end());
        QVERIFY(std::find(calls.begin(), calls.end(), "Play") != calls.end());
    }
    session.DiscLister = [] { return jk::MountedDiscs{}; };
    {
        // Present songs beside absent ones: the others play on Yes, nothing on No.
        BoxAnswerer answerer({QMessageBox::No, QMessageBox::Yes});
        playRows({here, onDisc[0]});
        QVERIFY(calls.empty());
        playRows({onDisc[1], here});
        QCOMPARE(answerer.seen.size(), 2);
        QCOMPARE(answerer.seen[1].text,
                 QStringLiteral("1 songs are on discs that are not inserted: SUMMER_99.  Play the "
                                "others?"));
        QVERIFY(std::find(calls.begin(), calls.end(), "Add " + here) != calls.end());
        QVERIFY(std::find(calls.begin(), calls.end(), "Add " + onDisc[1]) == calls.end());
    }
    {
        // A queue passes the same check.
        BoxAnswerer answerer({QMessageBox::Cancel});
        fillRows(onDisc);
        main.Action("QueueAll")->trigger();
        QCOMPARE(answerer.seen.size(), 1);
        QVERIFY(calls.empty());
    }
    {
        // Without DiscIdentity nothing is asked: the songs go as they are.
        session.Settings.DiscIdentity = 0;
        BoxAnswerer answerer({});
        playRows(onDisc);
        QVERIFY(answerer.seen.isEmpty());
        QVERIFY(std::find(calls.begin(), calls.end(), "Add " + onDisc[0]) != calls.end());
    }
    session.Playlist.PlaylistSaved = true;
    QVERIFY(main.close());
}

void MainPlayerTest::aLongListShowsItsProgressWhileItLoads() {
    RecordedProgram rig;
    RecordingPlayer*& player = rig.player;
    jk::DesktopProgram& program = *rig.program;
    jk::Main& main = program.MainWindow();
    jk::Session& session = program.State();
    session.Settings.PlayerExes[1] = "/usr/bin/mpv";
    program.SetupEffectsOfMain().SetPlayerMode();
    QVERIFY(player != nullptr);
    main.show();
    QVERIFY(QTest::qWaitForWindowExposed(&main));

    auto* bar = main.findChild<QProgressBar*>(QStringLiteral("LoadProgress"));
    QVERIFY(bar != nullptr);
    QVERIFY(!bar->isVisible());
    // Between the batches the bar shows how far the list has gone, and the panel says it.
    std::vector<int> seen;
    player->onAdd = [&] {
        if (bar->isVisible()) {
            seen.push_back(bar->value() * 100 / bar->maximum());
        }
    };
    jk::test::GiveUnsavedRows(session, 1000);
    main.PlaylistFilledOutside();
    main.Action("PlayList")->trigger();
    QVERIFY(!seen.empty());
    QVERIFY(std::is_sorted(seen.begin(), seen.end()));
    QVERIFY(seen.back() > seen.front() && seen.back() < 100);
    QVERIFY(!bar->isVisible());
    QVERIFY(!main.PanelText().startsWith(QStringLiteral("Loading songs")));
    player->onAdd = {};
    session.Playlist.PlaylistSaved = true;
    QVERIFY(main.close());
}

QTEST_MAIN(MainPlayerTest)
#include "tst_MainPlayer.moc"
