#include "playback/PlaylistCommands.h"

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "PlaybackTestSupport.h"
#include "playback/ListWriting.h"
#include "playback/PlaylistTitle.h"
#include "playback/RecentLists.h"
#include "util/FileIo.h"
#include "util/PathHelpers.h"

namespace jk {
namespace {

using test::FakeSongs;
using test::ReadBytes;
using test::RowAt;
using test::ScratchFolder;
using test::WriteBytes;

// The program hands its caption in; lists only place it.
constexpr std::string_view kCaption = "Ostrel Jukarra 2.62";

PlaylistState Named(const std::string& listPath, RowList rows, bool saved = false) {
    PlaylistState state;
    state.Rows = std::move(rows);
    state.CurrentList = std::string(BareName(listPath));
    state.RecentLists[0] = listPath;
    state.PlaylistSaved = saved;
    return state;
}

TEST(WindowTitle, FollowsTheNameAndTheSavedState) {
    EXPECT_EQ(WindowTitle("rock.m3u", true, kCaption), "rock.m3u - Ostrel Jukarra 2.62");
    EXPECT_EQ(WindowTitle("", true, kCaption), "Untitled - Ostrel Jukarra 2.62");
    EXPECT_EQ(WindowTitle("rock.m3u", false, kCaption), "rock.m3u* - Ostrel Jukarra 2.62");
    EXPECT_EQ(WindowTitle("", false, kCaption), "Untitled* - Ostrel Jukarra 2.62");
}

TEST(SaveList, WritesRelativeLinesEndedByCrLfThatReadBackAsTheSamePaths) {
    ScratchFolder dir;
    const std::string list = dir / "lists/a.m3u";
    WriteBytes(list, "");
    PlaylistState state = Named(list, {RowAt(dir / "lists/x.mp3"), RowAt(dir / "music/y.mp3"),
                                       RowAt("/media/me/DISK/z.mp3")});
    ListSettings settings;
    settings.RelativePaths = 1;
    const SaveResult saved = SaveList(state, settings, {});
    ASSERT_EQ(saved.outcome, SaveOutcome::Saved) << saved.reason;
    EXPECT_TRUE(state.PlaylistSaved);
    EXPECT_EQ(ReadBytes(list), "x.mp3\r\n../music/y.mp3\r\n/media/me/DISK/z.mp3\r\n");

    FakeSongs songs;  // none exist: ghost rows keep their paths
    RowList back;
    ASSERT_TRUE(OpenListNow(list, back, songs.Source(), 0).Ok());
    ASSERT_EQ(back.size(), 3u);
    for (std::size_t i = 0; i < back.size(); ++i) {
        EXPECT_EQ(back[i].Get(Column::Filename), state.Rows[i].Get(Column::Filename));
    }
    // An unchanged list writes nothing.
    WriteBytes(list, "as it was");
    EXPECT_EQ(SaveList(state, settings, {}).outcome, SaveOutcome::Unchanged);
    EXPECT_EQ(ReadBytes(list), "as it was");
}

TEST(SaveList, AnUntitledListIsSavedUnderANewName) {
    ScratchFolder dir;
    PlaylistState state;
    state.Rows = {RowAt(dir / "x.mp3")};
    state.PlaylistSaved = false;
    state.RecentLists[0] = dir / "older.m3u";
    EXPECT_EQ(SaveList(state, {}, [] { return std::string(); }).outcome, SaveOutcome::Cancelled);
    EXPECT_FALSE(state.PlaylistSaved);

    const std::string chosen = dir / "new.m3u";
    EXPECT_EQ(SaveList(state, {}, [&] { return chosen; }).outcome, SaveOutcome::Saved);
    EXPECT_TRUE(state.PlaylistSaved);
    EXPECT_EQ(state.CurrentList, "new.m3u");
    EXPECT_EQ(state.RecentLists[1], dir / "older.m3u");
    EXPECT_EQ(ReadBytes(chosen), (dir / "x.mp3") + "\r\n");  // relative paths off: as it stands
}

TEST(SaveList, FailuresLeaveTheListUnsavedWithAReason) {
    ScratchFolder dir;
    const std::string notAFolder = dir / "file";
    WriteBytes(notAFolder, "");
    PlaylistState state = Named(notAFolder + "/a.m3u", {RowAt(dir / "x.mp3")});
    SaveResult result = SaveList(state, {}, {});
    EXPECT_EQ(result.outcome, SaveOutcome::Failed);
    EXPECT_FALSE(result.reason.empty());
    EXPECT_EQ(SaveAsList(state, notAFolder + "/b.m3u", {}).outcome, SaveOutcome::Failed);
    EXPECT_EQ(state.CurrentList, "a.m3u");
    EXPECT_FALSE(state.PlaylistSaved);
    EXPECT_FALSE(SaveLastList(notAFolder, state.Rows).ok);
    EXPECT_EQ(SaveFailedMessage().text, "Current playlist could not be saved successfully.");
    EXPECT_EQ(SaveFailedMessage().title, "Uh-oh...");

    // A path deeper than 40 folders is an error too, and nothing is written.
    std::string deep = "/music";
    for (int i = 0; i < 41; ++i) {
        deep += "/d";
    }
    PlaylistState tooDeep = Named(dir / "deep.m3u", {RowAt(deep + "/x.mp3")});
    ListSettings relative;
    relative.RelativePaths = 1;
    result = SaveList(tooDeep, relative, {});
    EXPECT_EQ(result.outcome, SaveOutcome::Failed);
    EXPECT_NE(result.reason.find("40 folders"), std::string::npos);
    EXPECT_FALSE(FileExists(dir / "deep.m3u"));
}

TEST(SaveLastList, WritesEveryPathAsItStands) {
    ScratchFolder dir;
    ASSERT_TRUE(SaveLastList(dir.Path(), {RowAt(dir / "a.mp3"), RowAt("b.mp3"), RowAt("")}).ok);
    EXPECT_EQ(ReadBytes(dir / "lastlist.m3u"), (dir / "a.mp3") + "\r\nb.mp3\r\n\r\n");
    EXPECT_EQ(PathForPlayer("/m/Long Name.mp3", "/opt/WINPLAY3.EXE"), "/m/Long Name.mp3");
}

TEST(OpenList, NamesTheListAndKeepsOneRecentEntryPerPath) {
    ScratchFolder dir;
    FakeSongs songs;
    const std::string rock = dir / "Rock.m3u";
    const std::string other = dir / "other.m3u";
    WriteBytes(rock, "a.mp3\r\n");
    WriteBytes(other, "");
    PlaylistState state = Named(other, {RowAt("/old.mp3")});

    ASSERT_TRUE(OpenList(state, rock, songs.Source(), {}).Ok());
    ASSERT_TRUE(OpenList(state, rock, songs.Source(), {}).Ok());
    EXPECT_EQ(state.CurrentList, "Rock.m3u");
    EXPECT_TRUE(state.PlaylistSaved);
    EXPECT_EQ(state.Rows.size(), 1u);
    EXPECT_EQ((std::vector<std::string>(state.RecentLists.begin(), state.RecentLists.begin() + 3)),
              (std::vector<std::string>{rock, other, ""}));

    ASSERT_TRUE(OpenRecentList(state, 1, songs.Source(), {}).Ok());  // the menu's second item
    EXPECT_EQ(state.CurrentList, "other.m3u");
    EXPECT_EQ(state.RecentLists[0], other);
    EXPECT_TRUE(state.Rows.empty());

    ASSERT_TRUE(AppendToList(state, rock, songs.Source(), {}).Ok());
    EXPECT_EQ(state.Rows.size(), 1u);
    EXPECT_FALSE(state.PlaylistSaved);
    EXPECT_EQ(state.CurrentList, "other.m3u");
}

TEST(RecentLists, QueueTrimmedPathsComparedAsTheyStand) {
    PathHistory recent;
    for (std::string_view path : {"/l/a.m3u", "  /l/b.m3u ", "/l/a.m3u", "/l/A.m3u"}) {
        LastQueue(recent, path);
    }
    EXPECT_EQ((std::vector<std::string>(recent.begin(), recent.begin() + 4)),
              (std::vector<std::string>{"/l/A.m3u", "/l/a.m3u", "/l/b.m3u", ""}));
    for (int i = 0; i < 20; ++i) {
        PathQueue(recent, "/f/" + std::to_string(i));
    }
    EXPECT_EQ(recent[0], "/f/19");
    EXPECT_EQ(recent[14], "/f/5");
    EXPECT_EQ(GoListKey(1), "Path1");
    EXPECT_EQ(GoListKey(10), "Path0");
    EXPECT_EQ(GoListKey(11), "PathA");
    EXPECT_EQ(GoListKey(15), "PathE");
    EXPECT_EQ(GoListKey(16), "");

    PathHistory lists;
    EXPECT_FALSE(UpdateLastLists(lists).separatorVisible);
    lists[1] = "/other/jazz.m3u";
    lists[8] = "/ninth/never.m3u";
    const RecentListMenu menu = UpdateLastLists(lists);
    EXPECT_TRUE(menu.separatorVisible);
    EXPECT_EQ(menu.captions[1], "&2 jazz.m3u");
    EXPECT_EQ(menu.visible, (std::array<bool, 8>{false, true}));
}

TEST(RemoveFromList, DropsTheSelectedRowsAndMarksAChange) {
    PlaylistState state;
    state.Rows = {RowAt("/1", "", true), RowAt("/2", "", true), RowAt("/3"), RowAt("/4", "", true),
                  RowAt("/5")};
    RemoveFromList(state);
    ASSERT_EQ(state.Rows.size(), 2u);
    EXPECT_EQ(state.Rows[1].Get(Column::Filename), "/5");
    EXPECT_FALSE(state.PlaylistSaved);
    PlaylistState empty;
    RemoveFromList(empty);
    EXPECT_TRUE(empty.PlaylistSaved);

    NewList(state);
    EXPECT_TRUE(state.Rows.empty());
    EXPECT_EQ(WindowTitle(state.CurrentList, state.PlaylistSaved, kCaption),
              "Untitled - Ostrel Jukarra 2.62");
}

TEST(ReadyToDropList, AsksOnlyWhenThereIsSomethingToLose) {
    ScratchFolder dir;
    int asked = 0;
    SaveAnswer answer = SaveAnswer::Cancel;
    std::vector<std::string> told;
    const DropListFrontEnd frontEnd{
        [&](const UserMessage& question) {
            ++asked;
            EXPECT_EQ(question.text, "Playlist not saved.  Would you like to save it?");
            EXPECT_EQ(question.title, "Save list?");
            return answer;
        },
        [] { return std::string(); },
        [&](const UserMessage& message, const std::string&) { told.emplace_back(message.text); }};

    PlaylistState fresh;
    fresh.PlaylistSaved = false;  // untitled and empty
    EXPECT_TRUE(ReadyToDropList(fresh, {}, frontEnd));
    PlaylistState saved = Named(dir / "a.m3u", {RowAt("/a.mp3")}, true);
    EXPECT_TRUE(ReadyToDropList(saved, {}, frontEnd));
    EXPECT_EQ(asked, 0);

    PlaylistState changed = Named(dir / "a.m3u", {RowAt("/a.mp3")});
    answer = SaveAnswer::Cancel;
    EXPECT_FALSE(ReadyToDropList(changed, {}, frontEnd));
    answer = SaveAnswer::No;
    EXPECT_TRUE(ReadyToDropList(changed, {}, frontEnd));
    EXPECT_FALSE(FileExists(dir / "a.m3u"));
    answer = SaveAnswer::Yes;
    EXPECT_TRUE(ReadyToDropList(changed, {}, frontEnd));
    EXPECT_EQ(ReadBytes(dir / "a.m3u"), "/a.mp3\r\n");
    EXPECT_EQ(asked, 3);

    // A save that fails is told, and the list stays.
    PlaylistState failing = Named(dir / "no such folder/a.m3u", {RowAt("/a.mp3")});
    EXPECT_FALSE(ReadyToDropList(failing, {}, frontEnd));
    EXPECT_EQ(told, std::vector<std::string>{"Current playlist could not be saved successfully."});
}

}  // namespace
}  // namespace jk
