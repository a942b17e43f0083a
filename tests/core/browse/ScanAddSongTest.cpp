#include "browse/ScanAddSong.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "SongFiles.h"
#include "listing/RowCopy.h"

namespace jk {
namespace {

SongInfo FullSong(std::string path = "/m/song.mp3") {
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
    song.Path = std::move(path);
    song.Volume = " USB ";
    return song;
}

TEST(FilesPaneRow, TrimsTheTextsAndCutsOrPadsTheBitrateToFourCharacters) {
    const std::array<std::string_view, kColumnCount> expected = {
        "Title", "Artist",      "Album - 03", "",       "Rock",       "03:25",
        "128 ",  "/m/song.mp3", "note",       " 4096 ", " 1/2/2003 ", " USB "};
    EXPECT_EQ(FilesPaneRow(FullSong()).All(), expected)
        << "Size, Date and Volume stand as they are";
    for (const auto& [bitrate, shown] : std::vector<std::pair<std::string, std::string>>{
             {"", "    "}, {"64", "64  "}, {"1411", "1411"}, {"32000", "3200"}, {" 96", " 96 "}}) {
        SongInfo song = FullSong();
        song.Bitrate = bitrate;
        EXPECT_EQ(FilesPaneRow(song).Get(Column::Bitrate), shown) << bitrate;
    }
}

TEST(FilesPaneRow, ShowsAnUntitledSongByItsNameWithBlanksForUnderscores) {
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
        SongInfo song = FullSong(c.path);
        song.Title = c.title;
        EXPECT_EQ(FilesPaneRow(song).Get(Column::Title), c.shown) << c.path;
    }
}

// Songs in a temporary folder, looked up through a song cache as the program does.
class ScanAddSongTest : public ::testing::Test {
protected:
    std::string Song(std::string_view name, std::string_view title = "Song") {
        const std::string path = m_folder.File(name);
        test::WriteSongFile(path, title);
        return path;
    }

    test::TempFolder m_folder;
    test::CacheLookups m_songs;
};

TEST_F(ScanAddSongTest, RefusesFilteredRecycledAndTrashedFilesWithoutLookingThemUp) {
    struct Case {
        std::string name;
        int mode;
        bool added;
    };
    const Case cases[] = {
        {"a.mp3", 0, true},
        {"b.MP3", 0, true},
        {"c.mp2", 0, false},
        {"d.mp2", 1, true},
        {"e.wav", 2, true},
        {"f.mp3", 5, false},
        {"Recycler/a.mp3", 2, false},
        {"WINDOWS/Recent/a.mp3", 2, false},
        {".Trash-1000/files/a.mp3", 2, false},
        {".local/share/Trash/files/a.mp3", 2, false},
    };
    for (const Case& c : cases) {
        const std::string path = Song(c.name);
        RowList rows;
        const std::int32_t before = m_songs.total;
        EXPECT_EQ(ScanAddSong(path, rows, c.mode, m_songs.lookup), c.added) << c.name;
        EXPECT_EQ(rows.size(), c.added ? 1u : 0u) << c.name;
        EXPECT_EQ(m_songs.total - before, c.added ? 1 : 0) << c.name;
    }
}

TEST_F(ScanAddSongTest, AddsNothingForAFileThatCannotBeRead) {
    test::WriteBytes(m_folder.File("short.mp3"), "too short for a song");
    for (const char* name : {"missing.mp3", "short.mp3"}) {
        RowList rows;
        EXPECT_FALSE(ScanAddSong(m_folder.File(name), rows, 0, m_songs.lookup)) << name;
        EXPECT_TRUE(rows.empty()) << name;
    }
}

TEST_F(ScanAddSongTest, LooksThePathUpTrimmedAndShowsItTrimmed) {
    const std::string path = Song("odd_name.mp3", "");
    // Read from the file, then a cache hit: the cache stores an empty title as the file's name.
    for (const char* title : {"odd name", "odd_name"}) {
        RowList rows;
        ASSERT_TRUE(ScanAddSong("  " + path + "  ", rows, 2, m_songs.lookup));
        EXPECT_EQ(rows[0].Get(Column::Filename), path);
        EXPECT_EQ(rows[0].Get(Column::Title), title);
        EXPECT_EQ(rows[0].Get(Column::Artist), "Artist");
    }
    EXPECT_EQ(m_songs.hits, 1);
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
