#include "app/SongTagEdit.h"

#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

namespace jk {
namespace {

SongInfo SongWith(std::string album, std::int16_t track) {
    SongInfo song;
    song.Title = "Blue";
    song.Artist = "Ann";
    song.Album = std::move(album);
    song.Comment = "fine";
    song.Year = "1999";
    song.Genre = "Jazz";
    song.Track = track;
    return song;
}

TEST(SongTagEdit, OnlyTheSuffixOfTheSongsOwnTrackIsStripped) {
    const std::vector<std::tuple<std::string, int, std::string>> cases = {
        {"Sea - 03", 3, "Sea"},
        {"Greatest - 07", 7, "Greatest"},  // an ID3v1.0 album that carried its track
        {"- 12", 12, ""},
        {"Sea - 03", 4, "Sea - 03"},  // another number: the album's own text
        {"Sea - 03", 0, "Sea - 03"},
        {"Sea", 3, "Sea"},
        {"Side - 100", 100, "Side"},
        {"", 5, ""},
    };
    for (const auto& [album, track, expected] : cases) {
        SongInfo song = SongWith(album, static_cast<std::int16_t>(track));
        StripTrackSuffix(song);
        EXPECT_EQ(song.Album, expected) << album << " / " << track;
    }
}

TEST(SongTagEdit, ChangesApplyAfterTheSuffixIsStripped) {
    TagChanges changes;
    changes.Title = "Green";
    changes.Track = 9;
    const SongInfo edited = EditedSong(SongWith("Sea - 03", 3), changes);
    EXPECT_EQ(edited.Title, "Green");
    EXPECT_EQ(edited.Album, "Sea");
    EXPECT_EQ(edited.Track, 9);
    EXPECT_EQ(edited.Artist, "Ann");
    EXPECT_EQ(edited.Comment, "fine");

    TagChanges album;
    album.Album = "Lake - 03";  // given by the user: written as it stands
    album.Comment = "";
    const SongInfo renamed = EditedSong(SongWith("Sea - 03", 3), album);
    EXPECT_EQ(renamed.Album, "Lake - 03");
    EXPECT_EQ(renamed.Comment, "");
    EXPECT_EQ(renamed.Track, 3);
}

TEST(SongTagEdit, TheFailureReadsAsTheTagDialogsWithTheReasonWhenTheTagWasRefused) {
    const std::string permissions =
        "The tag for /music/a.mp3 could not be written successfully.  Perhaps you don't have "
        "write-permissions to the file.";
    EXPECT_EQ(TagWriteFailedText("/music/a.mp3"), permissions);
    EXPECT_EQ(TagWriteFailedText("/music/a.mp3", TagWriteResult{TagFault::FileAccess, {}, 0}),
              permissions);
    EXPECT_EQ(TagWriteFailedText("/music/a.mp3", TagWriteResult{TagFault::FileMissing, {}, 0}),
              permissions);
    EXPECT_EQ(
        TagWriteFailedText("/music/a.mp3", TagWriteResult{TagFault::FieldTooLong, "EAL", 40000}),
        "The tag for /music/a.mp3 could not be written successfully.  Its album would take 40000 "
        "bytes in the Lyrics3 block, and a field there holds at most 32767.");
    EXPECT_EQ(
        TagWriteFailedText("/music/a.mp3", TagWriteResult{TagFault::EndMarkWithoutBlock, {}, 0}),
        "The tag for /music/a.mp3 could not be written successfully.  It has a Lyrics3 end "
        "mark, but no block ahead of it and no ID3v1 tag behind it, so there is no tag to "
        "take off.");
}

}  // namespace
}  // namespace jk
