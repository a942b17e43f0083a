#include "metadata/Id3v2Texts.h"

#include <gtest/gtest.h>

#include "core/metadata/SongBytes.h"

namespace jk {
namespace {

using test::Bytes;
using test::Frame22;
using test::Frame23;
using test::Frame24;
using test::Id3v2Tag;
using test::Text;

std::string Latin1(std::string_view text) {
    return std::string(1, '\0') + std::string(text);
}
std::string Utf8(std::string_view text) {
    return std::string(1, '\3') + std::string(text);
}
// UTF-16 with a little-endian byte order mark, from ASCII and a few code points.
std::string Utf16(std::u16string_view text, bool bom = true) {
    std::string out = bom ? Text({1, 0xFF, 0xFE}) : Text({2});
    for (char16_t c : text) {
        if (bom) {
            out += Text({c & 0xFF, c >> 8});
        } else {
            out += Text({c >> 8, c & 0xFF});
        }
    }
    return out;
}
std::string Comment(std::string_view description, std::string_view text) {
    return std::string(1, '\0') + "eng" + std::string(description) + std::string(1, '\0') +
           std::string(text);
}

ID3v2Texts TextsOf(const std::string& tag) {
    const std::string file = tag + test::Repeat(test::Mp3Frame128(), 2);
    MemoryByteSource source(file);
    return ReadID3v2Texts(source);
}

TEST(ReadID3v2Texts, ReadsVersion23InEveryEncoding) {
    const std::string frames =
        Frame23("TIT2", Latin1("Caf\xE9")) + Frame23("TPE1", Utf16(u"\u00C5sa")) +
        Frame23("TALB", Utf16(u"Big", false)) + Frame23("TYER", Latin1("1987")) +
        Frame23("COMM", Comment("", "Nice")) + Frame23("COMM", Comment("x", "Second")) +
        Frame23("TRCK", Latin1("3/12")) + Frame23("TCON", Latin1("(17)"));
    const ID3v2Texts texts = TextsOf(Id3v2Tag(3, frames, 64));
    EXPECT_EQ(texts.Title, "Caf\xC3\xA9");
    EXPECT_EQ(texts.Artist, "\xC3\x85sa");
    EXPECT_EQ(texts.Album, "Big");
    EXPECT_EQ(texts.Year, "1987");
    EXPECT_EQ(texts.Comment, "Nice");  // the first COMM
    EXPECT_EQ(texts.Track, 3);
    EXPECT_EQ(texts.Genre, "Rock");
}

TEST(ReadID3v2Texts, ReadsVersion24WithUtf8AndRecordingTime) {
    const std::string frames = Frame24("TIT2", Utf8("\xC3\x9C"
                                                    "ber")) +
                               Frame24("TDRC", Utf8("2004-05-06")) +
                               Frame24("TCON", Utf8("Ambient"));
    const ID3v2Texts texts = TextsOf(Id3v2Tag(4, frames, 10));
    EXPECT_EQ(texts.Title,
              "\xC3\x9C"
              "ber");
    EXPECT_EQ(texts.Year, "2004");
    EXPECT_EQ(texts.Genre, "Ambient");
}

TEST(ReadID3v2Texts, ReadsVersion22) {
    const std::string frames = Frame22("TT2", Latin1("Old")) + Frame22("TP1", Latin1("Timer")) +
                               Frame22("TYE", Latin1("1999")) + Frame22("TRK", Latin1("7"));
    const ID3v2Texts texts = TextsOf(Id3v2Tag(2, frames, 20));
    EXPECT_EQ(texts.Title, "Old");
    EXPECT_EQ(texts.Artist, "Timer");
    EXPECT_EQ(texts.Year, "1999");
    EXPECT_EQ(texts.Track, 7);
}

// Unsynchronisation: every 0xFF gets a 0x00 behind it.
std::string Unsynchronise(const std::string& bytes) {
    std::string out;
    for (char c : bytes) {
        out.push_back(c);
        if (static_cast<unsigned char>(c) == 0xFF) {
            out.push_back('\0');
        }
    }
    return out;
}

TEST(ReadID3v2Texts, UndoesUnsynchronisationOfAWhole23Tag) {
    const std::string frames =
        Frame23("TIT2", Utf16(u"\u00FF\u00FFy")) + Frame23("TPE1", Latin1("After"));
    const std::string body = Unsynchronise(frames);
    const std::string tag =
        test::Id3v2Header(3, 0x80, static_cast<std::uint32_t>(body.size())) + body;
    const ID3v2Texts texts = TextsOf(tag);
    EXPECT_EQ(texts.Title, "\xC3\xBF\xC3\xBFy");
    EXPECT_EQ(texts.Artist, "After");
}

TEST(ReadID3v2Texts, UndoesUnsynchronisationOfA24Frame) {
    const std::string body = Unsynchronise(Latin1("\xFF\xFE!"));
    const std::string frames = Frame24("TIT2", body, 0x02) + Frame24("TPE1", Latin1("Next"));
    const ID3v2Texts texts = TextsOf(Id3v2Tag(4, frames));
    EXPECT_EQ(texts.Title, "\xC3\xBF\xC3\xBE!");
    EXPECT_EQ(texts.Artist, "Next");
}

TEST(ReadID3v2Texts, SkipsExtendedHeaders) {
    const std::string ext23 = test::BigEndian32(6) + Bytes(6);
    EXPECT_EQ(TextsOf(Id3v2Tag(3, ext23 + Frame23("TIT2", Latin1("Three")), 0, 0x40)).Title,
              "Three");
    const std::string ext24 = test::Synchsafe32(6) + Text({1, 0});
    EXPECT_EQ(TextsOf(Id3v2Tag(4, ext24 + Frame24("TIT2", Latin1("Four")), 0, 0x40)).Title, "Four");
}

TEST(ReadID3v2Texts, ReadsPlainSizesInA24TagWhenOnlyTheyLandOnAFrame) {
    // A 200-byte body written with a plain size: synchsafe reading would make it 328 bytes.
    const std::string body = Latin1(std::string(199, 'a'));
    const std::string frames =
        "TALB" + test::BigEndian32(200) + Bytes(2) + body + Frame24("TIT2", Latin1("Found"));
    const ID3v2Texts texts = TextsOf(Id3v2Tag(4, frames, 30));
    EXPECT_EQ(texts.Album, std::string(199, 'a'));
    EXPECT_EQ(texts.Title, "Found");
}

TEST(ReadID3v2Texts, StopsSafelyAtBrokenFrames) {
    // A frame that claims more than the tag holds ends the walk; what came before stays.
    const std::string frames = Frame23("TIT2", Latin1("Kept")) + "TPE1" +
                               test::BigEndian32(100000) + Bytes(2) + Latin1("x");
    const ID3v2Texts texts = TextsOf(Id3v2Tag(3, frames));
    EXPECT_EQ(texts.Title, "Kept");
    EXPECT_EQ(texts.Artist, "");
    // A tag whose size runs past the file, garbage ids, an unknown version.
    EXPECT_EQ(TextsOf(test::Id3v2Header(3, 0, 5000000) + Frame23("TIT2", Latin1("Cut"))).Title,
              "Cut");
    EXPECT_EQ(TextsOf(Id3v2Tag(3, "ti!2" + Bytes(30))).Title, "");
    EXPECT_EQ(TextsOf(Id3v2Tag(5, Frame23("TIT2", Latin1("Five")))).Title, "");
    EXPECT_EQ(TextsOf(Id3v2Tag(3, Frame23("TIT2", ""))).Title, "");
}

TEST(ResolveID3v2Genre, TakesNumbersReferencesAndRefinements) {
    struct Case {
        std::vector<std::string> values;
        std::string genre;
    };
    const Case cases[] = {
        {{"17"}, "Rock"},
        {{"(17)"}, "Rock"},
        {{"(17)Hard Stuff"}, "Hard Stuff"},
        {{"(4)(17)"}, "Disco"},
        {{"(RX)"}, "Remix"},
        {{"(CR)"}, "Cover"},
        {{"((Bracketed)"}, "(Bracketed)"},
        {{"(200)"}, ""},
        {{"200", "Jazz Fusion"}, "Jazz Fusion"},
        {{"", "  Trance  "}, "Trance"},
        {{}, ""},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(ResolveID3v2Genre(c.values), c.genre) << (c.values.empty() ? "" : c.values[0]);
    }
}

TEST(MergeID3v2Texts, FillsEmptyFieldsAndCompletesCutOnes) {
    SongInfo song;
    song.Title = "";
    song.Artist = "Thirty characters long artist.";  // an ID3v1 field filled to its width
    song.Album = "Thirty characters long album!!";   // filled but not the start of the text
    song.Comment = "Mine";
    song.Year = "    ";
    song.Genre = "Unknown";
    ID3v2Texts texts;
    texts.Title = "Whole title";
    texts.Artist = "Thirty characters long artist. And more";
    texts.Album = "Another album entirely, longer than thirty";
    texts.Comment = "Theirs";
    texts.Year = "1975";
    texts.Genre = "Rock";
    texts.Track = 9;
    MergeID3v2Texts(song, texts);
    EXPECT_EQ(song.Title, "Whole title");
    EXPECT_EQ(song.Artist, "Thirty characters long artist. And more");
    EXPECT_EQ(song.Album, "Thirty characters long album!!");
    EXPECT_EQ(song.Comment, "Mine");
    EXPECT_EQ(song.Year, "1975");
    EXPECT_EQ(song.Genre, "Rock");
    EXPECT_EQ(song.Track, 9);
}

TEST(MergeID3v2Texts, LeavesFieldsThatHoldTheirOwnValues) {
    SongInfo song;
    song.Title = "Short";
    song.Year = "2001";
    song.Genre = "Pop";
    song.Track = 2;
    ID3v2Texts texts;
    texts.Title = "Short and longer";
    texts.Year = "1975";
    texts.Genre = "Rock";
    texts.Track = 9;
    MergeID3v2Texts(song, texts);
    EXPECT_EQ(song.Title, "Short");
    EXPECT_EQ(song.Year, "2001");
    EXPECT_EQ(song.Genre, "Pop");
    EXPECT_EQ(song.Track, 2);
}

}  // namespace
}  // namespace jk
