#include "metadata/Lyrics3.h"

#include <gtest/gtest.h>

#include "core/metadata/SongBytes.h"

namespace jk {
namespace {

using test::Bytes;
using test::Id3v1;
using test::Lyrics3;

const SongReadContext kContext{SingleByteCodepage::Windows1252(), false};

Outcome<SongInfo> ReadWithBlock(const std::string& block, const std::string& tag) {
    const std::string file = Bytes(300) + block + tag;
    MemoryByteSource source(file);
    return ReadLyrics3Song(source, kContext);
}

TEST(HasLyrics3Tag, LooksAtTheEndMarkAheadOfTheID3v1Tag) {
    const auto has = [](const std::string& file) {
        MemoryByteSource source(file);
        return HasLyrics3Tag(source);
    };
    EXPECT_TRUE(has(Bytes(100) + Lyrics3({{"ETT", "x"}}) + Id3v1("x")));
    EXPECT_FALSE(has(Bytes(100) + Lyrics3({{"ETT", "x"}})));  // no ID3v1 behind it
    EXPECT_FALSE(has(Bytes(100) + Lyrics3({{"ETT", "x"}}) + Id3v1("x") + "z"));
    // 137 bytes hold the mark at the very start; 132 to 136 can't.
    EXPECT_TRUE(has("LYRICS200" + Id3v1("x")));
    for (std::size_t cut = 1; cut <= 5; ++cut) {
        EXPECT_FALSE(has(std::string("LYRICS200").substr(cut) + Id3v1("x")));
    }
}

TEST(ParseLyrics3Block, WalksIdsSizesAndData) {
    const auto fields = ParseLyrics3Block(
        "LYRICSBEGININD00002"
        "10ETT00005Hello"
        "EAR00000");
    ASSERT_TRUE(fields.Ok());
    ASSERT_EQ(fields->size(), 3u);
    EXPECT_EQ((*fields)[0], (Lyrics3Field{"IND", 2, "10"}));
    EXPECT_EQ((*fields)[1], (Lyrics3Field{"ETT", 5, "Hello"}));
    EXPECT_EQ((*fields)[2], (Lyrics3Field{"EAR", 0, ""}));
}

TEST(ParseLyrics3Block, ASizeBeyondTheTextTakesWhatRemains) {
    const auto fields = ParseLyrics3Block("LYRICSBEGINETT00099Short");
    ASSERT_TRUE(fields.Ok());
    ASSERT_EQ(fields->size(), 1u);
    EXPECT_EQ((*fields)[0].Data, "Short");
    EXPECT_EQ((*fields)[0].Size, 99);
    const auto stub = ParseLyrics3Block("LYRICSBEGINET");
    ASSERT_TRUE(stub.Ok());
    EXPECT_EQ((*stub)[0], (Lyrics3Field{"ET", 0, ""}));
    EXPECT_TRUE(ParseLyrics3Block("LYRICSBEGIN")->empty());
}

TEST(ParseLyrics3Block, SizesOutsideSixteenBitsOrNegativeFail) {
    EXPECT_TRUE(ParseLyrics3Block("LYRICSBEGINETT32767x").Ok());
    EXPECT_EQ(ParseLyrics3Block("LYRICSBEGINETT32768x").Fault(), ReadFault::Overflow16);
    EXPECT_EQ(ParseLyrics3Block("LYRICSBEGINETT-0001x").Fault(), ReadFault::NegativeLength);
}

TEST(ReadLyrics3Song, TheLongerTextWins) {
    const std::string id3Title30 = "Thirty characters of title 123";
    ASSERT_EQ(id3Title30.size(), 30u);
    struct Case {
        std::string ett;
        std::string id3Title;
        std::string expected;
    };
    const Case cases[] = {
        {std::string(29, 'e'), id3Title30, id3Title30},            // shorter extended text loses
        {std::string(30, 'e'), id3Title30, std::string(30, 'e')},  // equal length: extended
        {id3Title30 + " and more", id3Title30, id3Title30 + " and more"},
        {"", "From ID3", "From ID3"},  // an empty ETT loses unless ID3v1 is empty too
        {"  Padded  ", "Pad", "Padded"},
    };
    for (const Case& c : cases) {
        const auto song = ReadWithBlock(Lyrics3({{"ETT", c.ett}}), Id3v1(c.id3Title, "Artist"));
        ASSERT_TRUE(song.Ok());
        EXPECT_EQ(song->Title, c.expected) << c.ett;
        EXPECT_EQ(song->Artist, "Artist");
    }
}

TEST(ReadLyrics3Song, TheLastOfRepeatedFieldsCountsAndOtherFieldsComeFromID3v1) {
    const auto song = ReadWithBlock(Lyrics3({{"IND", "11"},
                                             {"EAL", "First album"},
                                             {"LYR", "la la"},
                                             {"EAL", "Second album name"}}),
                                    Id3v1("T", "A", "B", "1999", test::Comment11("c", 4), 13));
    ASSERT_TRUE(song.Ok());
    EXPECT_EQ(song->Album, "Second album name");
    EXPECT_EQ(song->Title, "T");
    EXPECT_EQ(song->Year, "1999");
    EXPECT_EQ(song->Track, 4);
    EXPECT_EQ(song->Genre, "Pop");
}

TEST(ReadLyrics3Song, AChanceHitReadsAsID3v1) {
    // The end mark and size digits are there, but the block does not begin "LYRICSBEGIN".
    const std::string fake = Bytes(20, 'x') + "000020LYRICS200";
    const auto song = ReadWithBlock(fake, Id3v1("Plain", "A"));
    ASSERT_TRUE(song.Ok());
    EXPECT_EQ(song->Title, "Plain");
    const auto empty = ReadWithBlock("000000LYRICS200", Id3v1("Zero"));
    ASSERT_TRUE(empty.Ok());
    EXPECT_EQ(empty->Title, "Zero");
}

TEST(ReadLyrics3Song, BadSizeDigitsFailTheRead) {
    EXPECT_EQ(ReadWithBlock("999999LYRICS200", Id3v1("x")).Fault(), ReadFault::BeforeStart);
    EXPECT_EQ(ReadWithBlock("-00001LYRICS200", Id3v1("x")).Fault(), ReadFault::NegativeLength);
    EXPECT_EQ(ReadWithBlock(Lyrics3({{"ETT", std::string(40000, 'l')}}), Id3v1("x")).Fault(),
              ReadFault::Overflow16);
    // The size digits would stand before the first byte of a 137-byte file.
    const std::string tiny = "LYRICS200" + Id3v1("x");
    MemoryByteSource source(tiny);
    EXPECT_EQ(ReadLyrics3Song(source, kContext).Fault(), ReadFault::BeforeStart);
}

TEST(BuildLyrics3Block, PutsIndFirstDropsEmptyFieldsAndTrims) {
    const std::vector<Lyrics3Field> fields = {{"EAL", 5, "Album"},
                                              {"LYR", 0, ""},
                                              {"IND", 7, "10"},
                                              {"ETT", 9, "  Title  "},
                                              {"IND", 2, "01"}};
    const std::string block = BuildLyrics3Block(fields);
    const std::string body =
        "LYRICSBEGIN"
        "IND00007"
        "10"
        "EAL00005Album"
        "ETT00005Title";
    EXPECT_EQ(block, body +
                         "000047"
                         "LYRICS200");
    EXPECT_EQ(BuildLyrics3Block({}), "LYRICSBEGIN000011LYRICS200");
}

TEST(BuildLyrics3Block, RoundTripsThroughTheParser) {
    const std::string block = Lyrics3({{"IND", "11"}, {"ETT", "Title"}, {"EAR", "Artist"}});
    const std::string parsed = block.substr(0, block.size() - 15);
    const auto fields = ParseLyrics3Block(parsed);
    ASSERT_TRUE(fields.Ok());
    EXPECT_EQ(BuildLyrics3Block(*fields), block);
}

TEST(GenuineLyrics3BlockSize, AcceptsOnlyAWholeBlockWithItsTag) {
    const auto size = [](const std::string& file) {
        MemoryByteSource source(file);
        return GenuineLyrics3BlockSize(source);
    };
    const std::string block = Lyrics3({{"ETT", "x"}});
    EXPECT_EQ(size(Bytes(50) + block + Id3v1("x")), block.size() - 15);
    EXPECT_FALSE(size(Bytes(50) + Bytes(20, 'x') + "000020LYRICS200" + Id3v1("x")));
    EXPECT_FALSE(size(Bytes(50) + Bytes(20, 'x') + "9999x0LYRICS200" + Id3v1("x")));
    EXPECT_FALSE(size(Bytes(50) + "999999LYRICS200" + Id3v1("x")));
}

}  // namespace
}  // namespace jk
