// The playlist and the drives in the session: the last list opened at start-up and written at
// shutdown through the real data steps, and the drive roots the tree is given.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "app/Session.h"
#include "app/SessionData.h"
#include "app/Shutdown.h"
#include "app/Startup.h"
#include "playback/ListWriting.h"
#include "playback/SongRows.h"
#include "support/TempFolder.h"
#include "util/FileIo.h"

namespace jk {
namespace {

// A front end without windows that keeps what it was told.
class SilentFront final : public MessageFront {
public:
    std::vector<UserMessage> messages;

    SaveAnswer AskSaveList(const UserMessage& question) override {
        messages.push_back(question);
        return SaveAnswer::No;
    }
    void ShowMessage(const UserMessage& message) override { messages.push_back(message); }
};

std::vector<std::string> PathsOf(const RowList& rows) {
    std::vector<std::string> paths;
    for (const ListRow& row : rows) {
        paths.emplace_back(row.Get(Column::Filename));
    }
    return paths;
}

class SessionPlaylist : public ::testing::Test {
protected:
    SessionPlaylist() {
        std::string song;
        EXPECT_TRUE(
            ReadWholeFile(std::string(JUKARRA_TEST_DATA) + "/songs/cbr64-id3v1.mp3", song, 1 << 20)
                .ok);
        folder.Write("Plain.mp3", song);
        environment.dataFolder = folder.Folder();
    }

    // A previous run's settings with the given lines in [Options], and a "lastlist.m3u" that
    // names a song, a song that has gone, and a head line (read as a song, since only this
    // program writes that file).
    void PreviousRun(const std::string& options) {
        folder.Write("jukarra2.ini", "[INIexists]\r\nCheck=1\r\n[Options]\r\n" + options);
        folder.Write("lastlist.m3u", folder.File("Plain.mp3") + "\r\n" + folder.File("gone.mp3") +
                                         "\r\n#EXTM3U\r\n");
    }

    test::TempFolder folder;
    StartupEnvironment environment;
    SilentFront front;
    SessionData data;
};

TEST_F(SessionPlaylist, StartupOpensTheLastListWhenRememberListIsOne) {
    struct Case {
        std::string options;
        std::vector<std::string> paths;  // "" marks the head line's ghost
    };
    const std::string plain = folder.File("Plain.mp3");
    const std::string gone = folder.File("gone.mp3");
    const std::string head = folder.File("#EXTM3U");
    const std::vector<Case> cases = {
        {"RememberList=1\r\n", {plain, gone, head}},
        {"RememberList=1.0\r\n", {plain, gone, head}},
        {"RememberList=1\r\nHideGhosts=1\r\n", {plain}},
        {"RememberList=0\r\n", {}},
        {"RememberList=-1\r\n", {}},
        {"", {}},
    };
    for (const Case& c : cases) {
        PreviousRun(c.options);
        Session session;
        RunStartup(session, SessionFront::MessagesOnly(front), data, environment);
        EXPECT_EQ(PathsOf(session.Playlist.Rows), c.paths) << c.options;
        // The list read back is the one kept between runs: untitled, nothing to save.
        EXPECT_EQ(session.Playlist.CurrentList, "") << c.options;
        EXPECT_TRUE(session.Playlist.PlaylistSaved) << c.options;
        EXPECT_EQ(PlaylistCaption(session), "Untitled - Ostrel Jukarra 2.62");
    }
}

TEST_F(SessionPlaylist, TheLastListComesThroughTheSongCache) {
    PreviousRun("RememberList=1\r\n");
    Session session;
    RunStartup(session, SessionFront::MessagesOnly(front), data, environment);
    ASSERT_EQ(session.Playlist.Rows.size(), 3u);
    EXPECT_EQ(session.Playlist.Rows[0].Get(Column::Title), "Plain Title");
    EXPECT_EQ(session.Playlist.Rows[1].Get(Column::Title), "* gone");
    EXPECT_EQ(session.SongCache.UpperBound(), 1);
    EXPECT_EQ(session.Settings.TotalCacheHits, 1);
}

TEST_F(SessionPlaylist, ShutdownWritesTheListThatTheNextStartupReads) {
    PreviousRun("RememberList=1\r\n");
    Session first;
    RunStartup(first, SessionFront::MessagesOnly(front), data, environment);
    const std::string other = folder.File("other.mp3");
    first.Playlist.Rows.push_back(GhostRow(other));
    ASSERT_FALSE(FormUnload(first, SessionFront::MessagesOnly(front), data).cancelled);
    EXPECT_EQ(folder.Read("lastlist.m3u"), folder.File("Plain.mp3") + "\r\n" +
                                               folder.File("gone.mp3") + "\r\n" +
                                               folder.File("#EXTM3U") + "\r\n" + other + "\r\n");

    Session second;
    RunStartup(second, SessionFront::MessagesOnly(front), data, environment);
    EXPECT_EQ(PathsOf(second.Playlist.Rows), PathsOf(first.Playlist.Rows));
}

TEST_F(SessionPlaylist, ALastListThatCannotBeWrittenTellsTheUserAndShutdownGoesOn) {
    Session session;
    LoadDefaults(session, "");
    session.Settings.RememberList = "1";
    // The data folder's path runs through a file, so nothing can be created in it.
    session.AppPath = folder.File("Plain.mp3") + "/";
    session.Playlist.Rows.push_back(GhostRow("/music/a.mp3"));

    EXPECT_EQ(data.SaveLastList(session), SaveFailedMessage());
    EXPECT_EQ(SaveFailedMessage().title, "Uh-oh...");

    const ShutdownResult result = FormUnload(session, SessionFront::MessagesOnly(front), data);
    EXPECT_FALSE(result.cancelled);
    ASSERT_FALSE(front.messages.empty());
    EXPECT_EQ(front.messages.front(), SaveFailedMessage());
}

TEST_F(SessionPlaylist, ShutdownAsksOnlyForAnUnsavedListWithSongs) {
    for (const bool withRows : {false, true}) {
        Session session;
        LoadDefaults(session, "");
        session.AppPath = folder.Folder();
        session.Playlist.CurrentList = "mine.m3u";
        session.Playlist.PlaylistSaved = false;
        if (withRows) {
            session.Playlist.Rows.push_back(GhostRow("/music/a.mp3"));
        }
        SilentFront asked;
        FormUnload(session, SessionFront::MessagesOnly(asked), data);
        EXPECT_EQ(asked.messages.size(), withRows ? 1u : 0u) << withRows;
    }
}

TEST(SessionDrives, TheTreeIsGivenEveryDriveThatIsReadyInItsOrder) {
    const DriveList listed = {
        {"/", "/", "", kDriveFixed, 1, false},
        {"/media/ann/CD", "CD", "CD", kDriveNotReady, 2, false},
        {"/media/ann/USB", "USB", "USB", kDriveRemovable, 3, false},
        {"/home/ann", "ann", "ann", kDriveFixed, 1, true},
    };
    Session session;
    SessionData data;
    session.DriveLister = [&listed] { return listed; };
    data.InitializeDrives(session);
    std::vector<std::string> roots;
    for (const DriveRoot& drive : session.Drives) {
        roots.push_back(drive.Root);
    }
    EXPECT_EQ(roots, (std::vector<std::string>{"/", "/media/ann/USB", "/home/ann"}));
    EXPECT_TRUE(session.Drives.back().HomeShortcut);

    // A front end that gives no drive list leaves the tree without drive roots.
    session.DriveLister = nullptr;
    data.InitializeDrives(session);
    EXPECT_TRUE(session.Drives.empty());
}

}  // namespace
}  // namespace jk
