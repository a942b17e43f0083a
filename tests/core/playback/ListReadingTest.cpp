#include "playback/ListReading.h"

#include <string>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "PlaybackTestSupport.h"
#include "playback/ListLines.h"
#include "playback/PlaylistCommands.h"

namespace jk {
namespace {

using namespace std::string_literals;
using test::FakeSongs;
using test::ScratchFolder;
using test::WriteBytes;

std::vector<std::string_view> Column0(const RowList& rows) {
    std::vector<std::string_view> texts;
    for (const ListRow& row : rows) {
        texts.push_back(row.Get(Column::Title));
    }
    return texts;
}

TEST(OpenListNow, SkipsExtendedInfoAndMakesGhostsOfLinesThatPointNowhere) {
    ScratchFolder dir;
    FakeSongs songs;
    songs.Add(dir / "a.mp3", "Song A");
    const std::string list = dir / "list.m3u";
    WriteBytes(list,
               "#EXTM3U\r\n#EXTINF:123,A\r\na.mp3\r\n#extinf:9,x\r\n#ExtInf:1,y\r\n"
               "# a comment\r\n\r\n #EXTINF indented\r\nsub/gone_away.live.mp3\r\n");
    RowList rows;
    ASSERT_TRUE(OpenListNow(list, rows, songs.Source(), 0).Ok());
    EXPECT_EQ(Column0(rows),
              (std::vector<std::string_view>{"Song A", "* # a comment", "* ", "*  #EXTINF indented",
                                             "* gone away.live"}));
    const ListRow& ghost = rows.back();
    EXPECT_EQ(ghost.Get(Column::Filename), dir / "sub/gone_away.live.mp3");
    EXPECT_EQ(rows[2].Get(Column::Filename), dir.Path() + "/");
    for (std::size_t c = 1; c < kColumnCount; ++c) {
        EXPECT_EQ(ghost.Get(c).empty(), c != static_cast<std::size_t>(Column::Filename));
    }
    // Only HideGhosts 1 drops them.
    const std::pair<std::int16_t, std::size_t> hidden[] = {{1, 1}, {-1, 5}, {2, 5}};
    for (const auto& [hideGhosts, count] : hidden) {
        ASSERT_TRUE(OpenListNow(list, rows, songs.Source(), hideGhosts).Ok());
        EXPECT_EQ(rows.size(), count) << hideGhosts;
    }
}

TEST(OpenListNow, BuildsTheRowOfASongFromItsRecord) {
    ScratchFolder dir;
    FakeSongs songs;
    songs.Add(dir / "My_Song.mp3", "Title   ").Bitrate = "64";
    songs.Add(dir / "My_Song2.mp3", "   ").Bitrate = "12345";
    const std::string list = dir / "list.m3u";
    WriteBytes(list, "My_Song.mp3\nMy_Song2.mp3  \n");
    RowList rows;
    ASSERT_TRUE(OpenListNow(list, rows, songs.Source(), 0).Ok());
    const std::string path = dir / "My_Song.mp3";
    EXPECT_EQ(rows.at(0).All(), (std::array<std::string_view, kColumnCount>{
                                    "Title", "Artist", "Album", "1999", "Rock", "03:25", "64  ",
                                    path, "Comment", "3300000", "2000-02-26 12:00:00", "MUSIC"}));
    EXPECT_EQ(rows.at(1).Get(Column::Title), "My Song2");
    EXPECT_EQ(rows.at(1).Get(Column::Bitrate), "1234");
    EXPECT_EQ(rows.at(1).Get(Column::Filename), dir / "My_Song2.mp3");  // trimmed by the source
}

TEST(OpenListNow, ReadsTheFormsOtherProgramsWrite) {
    ScratchFolder dir;
    FakeSongs songs;
    songs.Add(dir / "a.mp3", "A");
    songs.Add(dir / "sub/b.mp3", "B");
    songs.Add(dir / "Café.mp3", "C");
    songs.Add(dir / "space name.mp3", "D");
    const std::pair<std::string, std::vector<std::string_view>> cases[] = {
        {"a.mp3\nsub/b.mp3", {"A", "B"}},                // LF, no final line end
        {"a.mp3\rsub/b.mp3\r", {"A", "B"}},              // CR alone
        {"\xEF\xBB\xBF#EXTM3U\r\na.mp3\r\n", {"A"}},     // UTF-8 byte order mark
        {"sub\\b.mp3\r\n", {"B"}},                       // Windows folders
        {"Caf\xC3\xA9.mp3\nCaf\xE9.mp3\n", {"C", "C"}},  // UTF-8, then windows-1252
        {"file://" + dir.Path() + "/space%20name.mp3", {"D"}},
        {"\xFF\xFE"
         "a\0.\0m\0p\0"
         "3\0\r\0\n\0"s,
         {"A"}},  // UTF-16, little-endian
        {"\xFE\xFF\0a\0.\0m\0p\0"
         "3"s,
         {"A"}},  // and big-endian
    };
    for (const auto& [bytes, titles] : cases) {
        WriteBytes(dir / "foreign.m3u8", bytes);
        RowList rows;
        ASSERT_TRUE(OpenListNow(dir / "foreign.m3u8", rows, songs.Source(), 1).Ok());
        EXPECT_EQ(Column0(rows), titles) << bytes;
    }
}

TEST(OpenListNow, SurvivesBinaryBytesAndVeryLongLines) {
    ScratchFolder dir;
    FakeSongs songs;
    songs.Add(dir / "a.mp3", "A");
    const std::string bytes = "a.mp3\0garbage\n\x01\x02\xFF\xFE\x80\n"s +
                              std::string(3'000'000, 'x') + "\n" + std::string(2'000, '/') +
                              "\na.mp3";
    WriteBytes(dir / "binary.m3u", bytes);
    RowList rows;
    ASSERT_TRUE(OpenListNow(dir / "binary.m3u", rows, songs.Source(), 0).Ok());
    ASSERT_EQ(rows.size(), 5u);
    EXPECT_EQ(rows[0].Get(Column::Filename), (dir / "a.mp3") + "\0garbage"s);
    EXPECT_EQ(rows[4].Get(Column::Title), "A");
    EXPECT_EQ(songs.Lookups(), 4);  // a line with a NUL byte names no file and isn't looked up
}

TEST(OpenListNow, ALineTooDeepEndsTheReadingWithTheRowsReadSoFar) {
    ScratchFolder dir;
    FakeSongs songs;
    std::string deep;
    for (int i = 0; i < 51; ++i) {
        deep += "d/";
    }
    WriteBytes(dir / "deep.m3u", "a.mp3\n" + deep + "x.mp3\na.mp3\n");
    RowList rows;
    EXPECT_FALSE(OpenListNow(dir / "deep.m3u", rows, songs.Source(), 0).Ok());
    EXPECT_EQ(rows.size(), 1u);
}

TEST(OpenListNow, CostsOneSongLookupPerSongLine) {
    ScratchFolder dir;
    FakeSongs songs;
    std::string bytes = "#EXTM3U\n";
    for (int i = 0; i < 1000; ++i) {
        songs.Add(dir / ("s" + std::to_string(i) + ".mp3"));
        bytes += "#EXTINF:1,x\ns" + std::to_string(i) + ".mp3\n";
    }
    WriteBytes(dir / "big.m3u", bytes);
    RowList rows(2);
    ASSERT_TRUE(AppendListNow(dir / "big.m3u", rows, songs.Source(), 0).Ok());
    EXPECT_EQ(rows.size(), 1002u);
    EXPECT_EQ(songs.Lookups(), 1000);

    EXPECT_TRUE(OpenListNow("", rows, songs.Source(), 0).Ok());  // no path: nothing happens
    EXPECT_EQ(rows.size(), 1002u);
    EXPECT_FALSE(OpenListNow(dir / "none.m3u", rows, songs.Source(), 0).Ok());
    // Neither a folder nor a pipe without a writer holds the reading up.
    EXPECT_FALSE(OpenListNow(dir.Path(), rows, songs.Source(), 0).Ok());
    ASSERT_EQ(::mkfifo((dir / "pipe.m3u").c_str(), 0600), 0);
    EXPECT_FALSE(OpenListNow(dir / "pipe.m3u", rows, songs.Source(), 0).Ok());
}

TEST(OpenLastList, ReadsWithoutTheExtTestAndToleratesAMissingFile) {
    ScratchFolder dir;
    FakeSongs songs;
    songs.Add(dir / "a.mp3", "A");
    RowList rows(1);
    EXPECT_TRUE(OpenLastList(dir.Path(), rows, songs.Source(), 0).Ok());
    EXPECT_TRUE(rows.empty());
    WriteBytes(dir / "lastlist.m3u", "#EXTM3U\r\na.mp3\r\n");
    ASSERT_TRUE(OpenLastList(dir.Path() + "/", rows, songs.Source(), 0).Ok());
    EXPECT_EQ(Column0(rows), (std::vector<std::string_view>{"* #EXTM3U", "A"}));
}

TEST(OpenListNow, WindowsPathsThatLeadNowhereHereAreSavedAsTheyWere) {
    ScratchFolder dir;
    FakeSongs songs;
    const std::string lines = "C:\\My Music\\Best_Of.mp3\r\n\\\\server\\share\\Live_Set.mp3\r\n";
    WriteBytes(dir / "windows.m3u", lines);
    PlaylistState state;
    ASSERT_TRUE(OpenListNow(dir / "windows.m3u", state.Rows, songs.Source(), 0).Ok());
    EXPECT_EQ(Column0(state.Rows), (std::vector<std::string_view>{"* Best Of", "* Live Set"}));
    ListSettings settings;
    settings.RelativePaths = 1;
    ASSERT_EQ(SaveAsList(state, dir / "again.m3u", settings).outcome, SaveOutcome::Saved);
    EXPECT_EQ(test::ReadBytes(dir / "again.m3u"), lines);
}

TEST(ListLines, SplitAtEveryKindOfLineEndAndReadFileUrls) {
    const std::string text = "a\r\nb\nc\rd\r\r\ne";
    std::vector<std::string_view> lines;
    std::size_t pos = 0;
    for (std::string_view line; NextListLine(text, pos, line);) {
        lines.push_back(line);
    }
    EXPECT_EQ(lines, (std::vector<std::string_view>{"a", "b", "c", "d", "", "e"}));

    const std::pair<std::string_view, std::string_view> urls[] = {
        {"file:///home/me/a%20b.mp3", "/home/me/a b.mp3"},
        {"FILE:/home/me/x.mp3", "/home/me/x.mp3"},
        {"file://localhost/x.mp3", "/x.mp3"},
        {"file:///C:/Music/x.mp3", "C:/Music/x.mp3"},
        {"file:///caf%C3%A9%E9.mp3", "/caf\xC3\x83\xC2\xA9\xC3\xA9.mp3"},  // not UTF-8: 1252
        {"file:///bad%zz%4", "/bad%zz%4"},
        {"file://server/share/x.mp3", ""},  // another host's file is no path here
        {"files/x.mp3", ""},
    };
    for (const auto& [url, expected] : urls) {
        std::string path;
        EXPECT_EQ(FileUrlToPath(url, path), !expected.empty()) << url;
        EXPECT_EQ(path, expected) << url;
    }
}

}  // namespace
}  // namespace jk
