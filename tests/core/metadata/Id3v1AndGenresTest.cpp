#include <gtest/gtest.h>

#include "core/metadata/SongBytes.h"
#include "metadata/Genres.h"
#include "metadata/Id3v1.h"

namespace jk {
namespace {

using test::Bytes;
using test::Field;
using test::Id3v1;
using test::Text;

SongInfo ReadTagged(const std::string& tag, const SingleByteCodepage* page = nullptr) {
    const std::string file = Bytes(500) + tag;
    MemoryByteSource source(file);
    const SongReadContext context{page ? *page : SingleByteCodepage::Windows1252(), false};
    Outcome<SongInfo> song = ReadID3Song(source, context);
    EXPECT_TRUE(song.Ok());
    return song.Ok() ? *song : SongInfo{};
}

TEST(HasID3Tag, LooksForTagWithItsCaseInTheLast128Bytes) {
    const auto has = [](const std::string& file) {
        MemoryByteSource source(file);
        return HasID3Tag(source);
    };
    EXPECT_TRUE(has(Bytes(10) + Id3v1("x")));
    EXPECT_TRUE(has(Id3v1("x")));
    EXPECT_FALSE(has(Bytes(10) + Id3v1("x") + Bytes(1)));
    std::string lower = Bytes(10) + Id3v1("x");
    lower.replace(10, 3, "tag");
    EXPECT_FALSE(has(lower));
    EXPECT_FALSE(has(Bytes(127)));
}

TEST(ReadID3Song, TrimsThenCutsAtNullAndLeavesTheYearUntrimmed) {
    const SongInfo song = ReadTagged("TAG" + Field("  Title  ", 30) + Field("Art", 30, '\0') +
                                     Field(std::string("Alb \0junk", 9), 30) +
                                     Text({' ', '9', '9', 0}) + Field("Note", 30) + Text({8}));
    EXPECT_EQ(song.Title, "Title");
    EXPECT_EQ(song.Artist, "Art");
    EXPECT_EQ(song.Album, "Alb ");  // the blank ahead of the NUL stays
    EXPECT_EQ(song.Year, " 99");
    EXPECT_EQ(song.Comment, "Note");
    EXPECT_EQ(song.Genre, "Jazz");
    EXPECT_EQ(song.Track, 0);
}

TEST(ReadID3Song, TheTwentyNinthCommentByteDecidesTheTrack) {
    struct Case {
        std::string comment30;
        std::string comment;
        int track;
    };
    const Case cases[] = {
        {test::Comment11("Short", 7), "Short", 7},
        {test::Comment11("Short", 0), "Short", 0},
        // Byte 29 not zero: all 30 characters, no track even with byte 30 set.
        {Field("abcdefghijklmnopqrstuvwxyz12", 28) + "3" + Text({9}),
         "abcdefghijklmnopqrstuvwxyz123\t", 0},
        {test::Comment11(Field("", 28, 'c'), 255), std::string(28, 'c'), 255},
    };
    for (const Case& c : cases) {
        const SongInfo song = ReadTagged(Id3v1("t", "a", "b", "2000", c.comment30));
        EXPECT_EQ(song.Comment, c.comment);
        EXPECT_EQ(song.Track, c.track);
    }
}

TEST(ReadID3Song, BlanksAndNullsReadAlike) {
    EXPECT_EQ(ReadTagged(Id3v1(Bytes(30, ' '))).Title, "");
    EXPECT_EQ(ReadTagged("TAG" + Bytes(30) + Bytes(94, ' ') + Text({0})).Title, "");
    const SongInfo nulls = ReadTagged("TAG" + Field("Same", 30, '\0') + Bytes(94) + Text({0}));
    const SongInfo blanks = ReadTagged("TAG" + Field("Same", 30, ' ') + Bytes(94) + Text({0}));
    EXPECT_EQ(nulls.Title, blanks.Title);
    EXPECT_EQ(nulls.Year, "");
}

TEST(ReadID3Song, GenreBytesOutsideTheTableReadUnknown) {
    EXPECT_EQ(ReadTagged(Id3v1("t", "", "", "", "", 147)).Genre, "Synthpop");
    EXPECT_EQ(ReadTagged(Id3v1("t", "", "", "", "", 148)).Genre, "Unknown");
    EXPECT_EQ(ReadTagged(Id3v1("t", "", "", "", "", 255)).Genre, "Unknown");
}

TEST(ReadID3Song, DecodesTextInTheTagCodePage) {
    const std::string title = Text({0xC0, 0xE1, 0xE2});  // windows-1251: "Абв"
    EXPECT_EQ(ReadTagged(Id3v1(title)).Title, "\xC3\x80\xC3\xA1\xC3\xA2");
    const auto cyrillic = SingleByteCodepage::Get("windows-1251");
    EXPECT_EQ(ReadTagged(Id3v1(title), cyrillic.get()).Title, "\xD0\x90\xD0\xB1\xD0\xB2");
}

TEST(Genres, NameAndNumberLookUps) {
    EXPECT_EQ(GenreName(0), "Blues");
    EXPECT_EQ(GenreName(17), "Rock");
    EXPECT_EQ(GenreName(-1), "Unknown");
    EXPECT_EQ(GenreName(148), "Unknown");
    EXPECT_EQ(GenreNumber("  Rock "), 17);
    EXPECT_EQ(GenreNumber("rock"), 255);  // case counts
    EXPECT_EQ(GenreNumber("Unknown"), 255);
    EXPECT_EQ(GenreNumber(""), 255);
}

TEST(Genres, SortIndexIsUntrimmedAndFallsOnSoundClip) {
    EXPECT_EQ(GenreSortIndex("Acapella"), 0);
    EXPECT_EQ(GenreSortIndex("Eurodance"), 49);
    EXPECT_EQ(GenreSortIndex("Euro-House"), 50);
    EXPECT_EQ(GenreSortIndex("Vocal"), 147);
    EXPECT_EQ(GenreSortIndex("Sound Clip"), 128);
    EXPECT_EQ(GenreSortIndex(" Rock"), 128);
    EXPECT_EQ(GenreSortIndex("Nonsense"), 128);
}

TEST(Genres, BothOrdersHoldTheSameNamesAndTheListIsNumeric) {
    std::vector<std::string_view> a(GenresByNumber().begin(), GenresByNumber().end());
    std::vector<std::string_view> b(GenresSorted().begin(), GenresSorted().end());
    std::sort(a.begin(), a.end());
    std::sort(b.begin(), b.end());
    EXPECT_EQ(a, b);
    std::vector<std::string> list{"first"};
    FillGenreList(list);
    ASSERT_EQ(list.size(), 149u);
    EXPECT_EQ(list[1], "Blues");
    EXPECT_EQ(list[148], "Synthpop");
}

}  // namespace
}  // namespace jk
