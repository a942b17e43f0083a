#include "app/Shutdown.h"
#include "playback/PlaylistCommands.h"

#include <filesystem>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "app/ProfileFile.h"
#include "app/Session.h"
#include "app/SettingsStore.h"
#include "core/app/Recorder.h"
#include "support/TempFolder.h"

namespace jk {
namespace {

void Prepare(Session& session, const test::TempFolder& folder) {
    LoadDefaults(session, "");
    session.AppPath = folder.Folder();
}

TEST(Shutdown, WritesEverythingInTheReverseOrderOfStartup) {
    const test::TempFolder folder;
    Session session;
    Prepare(session, folder);
    session.Settings.RememberList = "1";
    session.VirtualDirty = -1;
    test::Recorder recorder;
    const ShutdownResult result = FormUnload(session, recorder, recorder);

    const std::vector<std::string> expected = {
        "front:StoreWindowPosition",
        "front:StopTimers",
        "panel:AutoSaving list...",
        "data:SaveLastList",
        "panel:Cleaning cache...",
        "data:TrimCache",
        "panel:Saving bookmarks...",
        "data:SaveBookmarks",
        "panel:Saving cache...",
        "data:SaveCache",
        "panel:Backing up virtual cache...",
        "data:BackupVirtualCache",
        "panel:Saving virtual drives...",
        "data:SaveVirtualCache",
        "front:RemoveTrayIcons",
        "data:UnhidePlayerWindow",
        "panel:Writing INI...",
        "front:StoreWindowLayout",
    };
    EXPECT_EQ(recorder.log, expected);
    EXPECT_FALSE(result.cancelled);
    EXPECT_TRUE(result.iniWritten);
    const ProfileFile written = ProfileFile::Load(folder.File("jukarra2.ini"));
    EXPECT_EQ(written.GetINI("INIexists", "Check"), "1");
    EXPECT_EQ(written.GetINI("WindowPosition", "Width"), "10500");
}

TEST(Shutdown, CancelAtTheSaveQuestionLeavesEveryFileUntouched) {
    const test::TempFolder folder;
    folder.Write("jukarra2.ini", "[INIexists]\r\nCheck=1\r\n");
    const auto old = std::filesystem::file_time_type::clock::now() - std::chrono::hours(48);
    std::filesystem::last_write_time(folder.File("jukarra2.ini"), old);

    Session session;
    Prepare(session, folder);
    session.Playlist.PlaylistSaved = false;
    session.Playlist.CurrentList = "mine.m3u";
    session.VirtualDirty = 1;
    session.Settings.RememberList = "1";
    test::Recorder recorder;
    recorder.playlistSongs = 2;
    recorder.answer = SaveAnswer::Cancel;
    const ShutdownResult result = FormUnload(session, recorder, recorder);

    EXPECT_TRUE(result.cancelled);
    EXPECT_EQ(recorder.log,
              (std::vector<std::string>{"front:StoreWindowPosition", "panel:Shutting down...",
                                        "front:AskSaveList", "panel:"}));
    ASSERT_EQ(recorder.messages.size(), 1u);
    EXPECT_EQ(recorder.messages[0], SaveQuestion());
    EXPECT_EQ(folder.Read("jukarra2.ini"), "[INIexists]\r\nCheck=1\r\n");
    EXPECT_EQ(std::filesystem::last_write_time(folder.File("jukarra2.ini")), old);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Folder()),
                            std::filesystem::directory_iterator()),
              1);
    EXPECT_FALSE(session.Playlist.PlaylistSaved);
    EXPECT_EQ(session.Playlist.CurrentList, "mine.m3u");
}

TEST(Shutdown, AnUnsavedPlaylistIsSavedOrDroppedAsTheUserSays) {
    struct Case {
        std::int16_t neverAsk;
        std::int16_t neverAskSave;
        SaveAnswer answer;
        bool asked;
        bool saved;
    };
    const std::vector<Case> cases = {
        {0, 0, SaveAnswer::Yes, true, true},   {0, 0, SaveAnswer::No, true, false},
        {0, 1, SaveAnswer::No, true, false},   {1, 1, SaveAnswer::No, false, true},
        {1, 0, SaveAnswer::Yes, false, false}, {-1, 1, SaveAnswer::No, true, false},
    };
    for (const Case& c : cases) {
        const test::TempFolder folder;
        Session session;
        Prepare(session, folder);
        session.Playlist.PlaylistSaved = false;
        session.Playlist.CurrentList = "mine.m3u";
        session.Settings.NeverAsk = c.neverAsk;
        session.Settings.NeverAskSave = c.neverAskSave;
        test::Recorder recorder;
        recorder.playlistSongs = 1;
        recorder.answer = c.answer;
        const ShutdownResult result = FormUnload(session, recorder, recorder);
        const std::string label = std::to_string(c.neverAsk) + "/" + std::to_string(c.neverAskSave);
        EXPECT_FALSE(result.cancelled) << label;
        EXPECT_EQ(recorder.Ran("front:AskSaveList"), c.asked) << label;
        EXPECT_EQ(recorder.Ran("front:SaveListClick"), c.saved) << label;
        EXPECT_EQ(session.Playlist.PlaylistSaved, c.saved) << label;
        EXPECT_EQ(session.Playlist.CurrentList, c.saved ? "" : "mine.m3u") << label;
        EXPECT_TRUE(recorder.Ran("front:StoreWindowLayout")) << label;
    }
}

TEST(Shutdown, AnUnattendedCloseAsksNothingAndSavesOnlyOnAStandingOrder) {
    struct Case {
        std::int16_t neverAsk;
        std::int16_t neverAskSave;
        std::string currentList;
        bool saved;
    };
    const std::vector<Case> cases = {
        {0, 0, "mine.m3u", false}, {0, 1, "mine.m3u", false}, {1, 0, "mine.m3u", false},
        {1, 1, "mine.m3u", true},  {1, 1, "", false},  // an untitled list would need the dialog
    };
    for (const Case& c : cases) {
        const test::TempFolder folder;
        Session session;
        Prepare(session, folder);
        session.Settings.RememberList = "1";
        session.Playlist.PlaylistSaved = false;
        session.Playlist.CurrentList = c.currentList;
        session.Settings.NeverAsk = c.neverAsk;
        session.Settings.NeverAskSave = c.neverAskSave;
        test::Recorder recorder;
        recorder.playlistSongs = 2;
        recorder.answer = SaveAnswer::Cancel;
        const ShutdownResult result =
            FormUnload(session, recorder, recorder, CloseRequest::Unattended);
        const std::string label = std::to_string(c.neverAsk) + "/" +
                                  std::to_string(c.neverAskSave) + " '" + c.currentList + "'";
        EXPECT_FALSE(result.cancelled) << label;
        EXPECT_FALSE(recorder.Ran("front:AskSaveList")) << label;
        EXPECT_EQ(recorder.Ran("front:SaveListClick"), c.saved) << label;
        EXPECT_TRUE(recorder.Ran("data:SaveLastList")) << label;
        EXPECT_TRUE(recorder.Ran("front:StoreWindowLayout")) << label;
    }
}

TEST(Shutdown, AsksNothingForASavedOrEmptyPlaylist) {
    for (const auto& [saved, songs] :
         std::vector<std::pair<bool, std::size_t>>{{true, 5}, {false, 0}}) {
        const test::TempFolder folder;
        Session session;
        Prepare(session, folder);
        session.Playlist.PlaylistSaved = saved;
        session.Playlist.CurrentList = "named.m3u";
        test::Recorder recorder;
        recorder.playlistSongs = songs;
        FormUnload(session, recorder, recorder);
        EXPECT_FALSE(recorder.Ran("front:AskSaveList"));
        EXPECT_FALSE(recorder.Ran("panel:Shutting down..."));
    }
}

TEST(Shutdown, LeavesTheVirtualDrivesAndTheLastListAloneWhenNotWanted) {
    const test::TempFolder folder;
    Session session;
    Prepare(session, folder);
    session.VirtualDirty = 0;
    session.Settings.RememberList = "0";
    test::Recorder recorder;
    FormUnload(session, recorder, recorder);
    EXPECT_FALSE(recorder.Ran("data:BackupVirtualCache"));
    EXPECT_FALSE(recorder.Ran("data:SaveVirtualCache"));
    EXPECT_FALSE(recorder.Ran("data:SaveLastList"));
    EXPECT_TRUE(recorder.Ran("data:SaveCache"));
}

TEST(Shutdown, ReportsFailuresAndStillGoesOn) {
    const test::TempFolder folder;
    Session session;
    Prepare(session, folder);
    session.AppPath = folder.File("gone/");
    session.Settings.RememberList = "1";
    test::Recorder recorder;
    recorder.lastListFailure = UserMessage{"Current playlist could not be saved successfully.",
                                           "Uh-oh...", MessageIcon::Information};
    const ShutdownResult result = FormUnload(session, recorder, recorder);
    EXPECT_FALSE(result.iniWritten);
    EXPECT_FALSE(result.iniError.empty());
    EXPECT_TRUE(recorder.Ran("data:SaveCache"));
    ASSERT_EQ(recorder.messages.size(), 2u);
    EXPECT_EQ(recorder.messages[0].title, "Uh-oh...");
    EXPECT_EQ(recorder.messages[1], IniSaveFailedMessage());
    EXPECT_EQ(recorder.log.back(), "front:ShowMessage Sorry...");
}

}  // namespace
}  // namespace jk
