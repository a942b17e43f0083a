#include "browse/ScanAddSong.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "listing/RowCopy.h"

namespace jk {
namespace {

SongInfo FullSong() {
    SongInfo song;
    song.Title = "  Title  ";
    song.Artist = " Artist ";
    song.Album = "Album - 03 ";
    song.Comment = " note ";
    song.Genre = "Rock ";
    song.Year = "    ";
    song.Bitrate = "128";
    song.Date = " 1/2/2003 ";
    song.Size = " 4096 ";
    song.Time = " 03:25";
    song.Volume = " USB ";
    return song;
}

// A song source that gives `song` with Path set to the trimmed path, as GetSongInfo does.
SongReadFn Source(SongInfo song, std::vector<std::string>* asked = nullptr) {
    return [song, asked](std::string& path, const PrefetchedBytes*) {
        if (asked) {
            asked->push_back(path);
        }
        while (!path.empty() && path.back() == ' ') {
            path.pop_back();
        }
        SongInfo out = song;
        if (!IsNonExistant(out)) {
            out.Path = path;
        }
        return out;
    };
}

TEST(ScanAddSong, BuildsTheRowWithTrimmedTextsAndAFourCharacterBitrate) {
    RowList rows;
    ASSERT_TRUE(ScanAddSong("/m/song.mp3", rows, 0, Source(FullSong())));
    ASSERT_EQ(rows.size(), 1u);
    const auto c = rows[0].All();
    const std::array<std::string_view, kColumnCount> expected = {
        "Title", "Artist",      "Album - 03", "",       "Rock",       "03:25",
        "128 ",  "/m/song.mp3", "note",       " 4096 ", " 1/2/2003 ", " USB "};
    EXPECT_EQ(c, expected) << "Size, Date and Volume stand as they are";
}

TEST(ScanAddSong, CutsOrPadsTheBitrateToFourCharacters) {
    for (const auto& [bitrate, shown] : std::vector<std::pair<std::string, std::string>>{
             {"", "    "}, {"64", "64  "}, {"1411", "1411"}, {"32000", "3200"}, {" 96", " 96 "}}) {
        SongInfo song = FullSong();
        song.Bitrate = bitrate;
        RowList rows;
        ScanAddSong("/m/a.mp3", rows, 0, Source(song));
        EXPECT_EQ(rows.at(0).Get(Column::Bitrate), shown) << bitrate;
    }
}

TEST(ScanAddSong, ShowsAnUntitledSongByItsNameWithBlanksForUnderscores) {
    struct Case {
        std::string title;
        std::string path;
        std::string shown;
    };
    const Case cases[] = {
        {"", "/m/My_Best_Song.mp3", "My Best Song"},
        {"   ", "/m/a_b.c_d.mp3", "a b.c d"},
        {"", "/m/ spaced _name .mp3", "spaced  name "},  // trimmed before the extension goes
        {"", "/m/.hidden.mp3", ".hidden"},
        {" Real ", "/m/x_y.mp3", "Real"},
    };
    for (const Case& c : cases) {
        SongInfo song = FullSong();
        song.Title = c.title;
        RowList rows;
        ASSERT_TRUE(ScanAddSong(c.path, rows, 2, Source(song))) << c.path;
        EXPECT_EQ(rows[0].Get(Column::Title), c.shown) << c.path;
    }
}

TEST(ScanAddSong, RefusesFilteredRecycledAndTrashedFilesWithoutReadingThem) {
    struct Case {
        std::string path;
        int mode;
        bool added;
    };
    const Case cases[] = {
        {"/m/a.mp3", 0, true},
        {"/m/a.MP3", 0, true},
        {"/m/a.mp2", 0, false},
        {"/m/a.mp2", 1, true},
        {"/m/a.wav", 2, true},
        {"/m/a.mp3", 5, false},
        {"/m/Recycler/a.mp3", 2, false},
        {"/c/WINDOWS/Recent/a.mp3", 2, false},
        {"/u/.Trash-1000/files/a.mp3", 2, false},
        {"/h/.local/share/Trash/files/a.mp3", 2, false},
    };
    for (const Case& c : cases) {
        std::vector<std::string> asked;
        RowList rows;
        EXPECT_EQ(ScanAddSong(c.path, rows, c.mode, Source(FullSong(), &asked)), c.added) << c.path;
        EXPECT_EQ(rows.size(), c.added ? 1u : 0u) << c.path;
        EXPECT_EQ(asked.size(), c.added ? 1u : 0u) << c.path;
    }
}

TEST(ScanAddSong, AddsNothingForAFileThatCannotBeRead) {
    RowList rows;
    EXPECT_FALSE(ScanAddSong("/m/gone.mp3", rows, 0, Source(NonExistantSong())));
    EXPECT_TRUE(rows.empty());
}

TEST(ScanAddSong, ReadsThePathAsGivenAndShowsItTrimmed) {
    std::vector<std::string> asked;
    RowList rows;
    ASSERT_TRUE(ScanAddSong("/m/odd.mp3  ", rows, 2, Source(FullSong(), &asked)));
    EXPECT_EQ(asked, std::vector<std::string>{"/m/odd.mp3  "});
    EXPECT_EQ(rows[0].Get(Column::Filename), "/m/odd.mp3");
}

ListRow Row(std::array<std::string_view, kColumnCount> columns, bool selected = false) {
    ListRow row(columns);
    row.SetSelected(selected);
    return row;
}

TEST(PlaylistRowOf, CutsTrailingBlanksOfTextColumnsOnlyAndNamesUntitledRowsByPath) {
    const ListRow source = Row({"Title  ", " Artist ", "Album ", " 1999 ", " Pop ", " 3:00 ",
                                "128 ", " /m/a.mp3 ", "note  ", " 100 ", " date ", " USB "});
    const std::array<std::string_view, kColumnCount> expected = {
        "Title", " Artist",   "Album", " 1999 ", " Pop ",  " 3:00 ",
        "128 ",  " /m/a.mp3", "note",  " 100 ",  " date ", " USB"};
    EXPECT_EQ(PlaylistRowOf(source).All(), expected);

    const ListRow untitled = Row({"   ", "", "", "", "", "", "", "/m/b c.mp3  ", "", "", "", ""});
    EXPECT_EQ(PlaylistRowOf(untitled).Get(Column::Title), "/m/b c.mp3");
}

TEST(GetDirAndAddToList, AppendAllOrSelectedRowsAllowingDuplicates) {
    RowList files;
    files.push_back(Row({"One", "", "", "", "", "", "", "/1.mp3", "", "", "", ""}, false));
    files.push_back(Row({"Two", "", "", "", "", "", "", "/2.mp3", "", "", "", ""}, true));
    files.push_back(Row({"Three", "", "", "", "", "", "", "/3.mp3", "", "", "", ""}, true));
    RowList playlist;
    EXPECT_EQ(GetDir(files, playlist), 3u);
    EXPECT_EQ(AddToList(files, playlist), 2u);
    ASSERT_EQ(playlist.size(), 5u);
    EXPECT_EQ(playlist[3].Get(Column::Title), "Two");
    EXPECT_EQ(playlist[4].Get(Column::Title), "Three");
    EXPECT_FALSE(playlist[4].Selected());
    EXPECT_EQ(GetDir(playlist, playlist), 5u) << "a list appended to itself is read first";
    EXPECT_EQ(playlist.size(), 10u);
}

}  // namespace
}  // namespace jk
