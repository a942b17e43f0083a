#include "metadata/Id3v2Texts.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

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
    EXPECT_EQ(texts.Comment, "Nice");  // the COMM without a description
    EXPECT_EQ(texts.Track, 3);
    EXPECT_EQ(texts.Genre, "Rock");
}

TEST(ReadID3v2Texts, TakesTheCommentAUserWroteOverThePlayersOwn) {
    const std::string norm = Frame23(
        "COMM", Comment("iTunNORM", " 80000000 00000000 00000000 00000000 00000000 00000000"));
    const std::string smpb = Frame23("COMM", Comment("iTunSMPB", " 00000000 00000210 000007E0"));
    const std::string pgap = Frame23("COMM", Comment("iTunPGAP", "0"));
    const struct {
        const char* what;
        std::string frames;
        const char* comment;
    } cases[] = {
        {"iTunes' three, then a plain one",
         norm + smpb + pgap + Frame23("COMM", Comment("", "Mine")), "Mine"},
        {"only iTunes' own", norm + smpb + pgap, ""},
        {"a described one stands in", norm + Frame23("COMM", Comment("Notes", "Liner")) + pgap,
         "Liner"},
        {"the first described one",
         Frame23("COMM", Comment("A", "First")) + Frame23("COMM", Comment("B", "Second")), "First"},
        {"a plain one behind a described one",
         Frame23("COMM", Comment("Notes", "Liner")) + norm + Frame23("COMM", Comment("", "Mine")),
         "Mine"},
        {"the first plain one",
         Frame23("COMM", Comment("", "One")) + Frame23("COMM", Comment("", "Two")), "One"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(TextsOf(Id3v2Tag(3, c.frames, 16)).Comment, c.comment) << c.what;
        EXPECT_EQ(TextsOf(Id3v2Tag(4, c.frames, 16)).Comment, c.comment) << c.what << " (2.4)";
    }
    // ID3v2.2's COM frames follow the same rule.
    const std::string v22 =
        Frame22("COM", Comment("iTunNORM", " 80000000")) + Frame22("COM", Comment("", "Old"));
    EXPECT_EQ(TextsOf(Id3v2Tag(2, v22, 8)).Comment, "Old");
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

// The texts of a frame body built from random pieces: plain and odd characters in every
// encoding, byte order marks, surrogates, zero units and bytes, cut units.
std::string RandomTextBody(std::mt19937& random, int encoding) {
    const auto pick = [&random](std::size_t n) { return static_cast<std::size_t>(random() % n); };
    std::string body = Text({encoding});
    if (encoding == 1 || encoding == 2) {
        const std::vector<std::string> boms = {Text({0xFF, 0xFE}), Text({0xFE, 0xFF}),
                                               Text({0xFF, 0xFF}), ""};
        const bool little = encoding == 1 && pick(3) != 0;
        if (encoding == 1) {
            body += pick(6) == 0 ? boms[pick(boms.size())] : little ? boms[0] : boms[1];
        } else if (pick(8) == 0) {
            body += boms[pick(2)];
        }
        const std::vector<char16_t> units = {u'a',   u'Z',   u' ',   u'7',   u'/',   0x00E9, 0x20AC,
                                             0x4E2D, 0xFEFF, 0xFFFE, 0xFFFF, 0xD83D, 0xDE00, 0};
        for (std::size_t n = pick(12); n > 0; --n) {
            const char16_t unit = units[pick(units.size())];
            body += little ? Text({unit & 0xFF, unit >> 8}) : Text({unit >> 8, unit & 0xFF});
        }
    } else {
        const std::vector<std::string> pieces = {"a",
                                                 "Z",
                                                 " ",
                                                 "7",
                                                 "/",
                                                 std::string(1, '\0'),
                                                 "\xE9",
                                                 "\xC3\xA9",
                                                 "\xE2\x82\xAC",
                                                 "\xEF\xBB\xBF",
                                                 "\xEF\xBF\xBE",
                                                 "\xED\xA0\x80",
                                                 "\xF0\x9F\x98\x80",
                                                 "\xC0\xAF",
                                                 "\xE0\x80\xAF",
                                                 "\x80",
                                                 "\xC3"};
        for (std::size_t n = pick(12); n > 0; --n) {
            body += pieces[pick(pieces.size())];
        }
    }
    if (pick(4) == 0) {
        body += Bytes(pick(4));  // terminators, or an odd zero byte
    }
    if (pick(6) == 0) {
        body += std::string(150, 'x');  // a size that needs two synchsafe bytes
    }
    return body;
}

// A genre frame's body: references, refinements and texts, in one of the four encodings.
std::string RandomGenreBody(std::mt19937& random) {
    const std::vector<std::string> values = {
        "(17)",     "(017)",    "(0)",  "(191)", "(192)",    "(200)",   "(255)",  "(256)",
        "(999)",    "(9999)",   "()",   "(",     "(17)Rock", "(17)Pop", "((Text", "(RX)",
        "(CR)",     "17",       "Rock", " (17)", "(17) ",    "( 17)",   "(+17)",  "(-1)",
        "(17)(18)", "(80)Folk", "Folk", "(1a)",  "Rock\xE9", "x"};
    const int encoding = static_cast<int>(random() % 4);
    std::string text = values[random() % values.size()];
    if (random() % 8 == 0) {
        text += std::string(1, '\0') + values[random() % values.size()];  // a second value
    }
    std::string body = Text({encoding});
    if (encoding == 1 || encoding == 2) {
        body += encoding == 1 ? Text({0xFF, 0xFE}) : "";
        for (const char c : text) {
            const auto unit = static_cast<unsigned char>(c);
            body += encoding == 1 ? Text({unit, 0}) : Text({0, unit});
        }
    } else {
        body += encoding == 3 && text.find('\xE9') != std::string::npos ? "Rock\xC3\xA9" : text;
    }
    if (random() % 3 == 0) {
        body += Bytes(random() % 3);
    }
    return body;
}

TEST(ReadID3v2Texts, ReadsPlainTextFramesAsTagLibDoes) {
    // Plain text frames are read without TagLib; on every frame the two readings must agree.
    const std::vector<std::string> ids = {"TIT2", "TPE1", "TALB", "TYER", "TDRC", "TRCK", "TCON"};
    std::mt19937 random(2024);
    for (int i = 0; i < 6000; ++i) {
        const int major = random() % 2 == 0 ? 3 : 4;
        std::string frames;
        for (int n = 1 + static_cast<int>(random() % 4); n > 0; --n) {
            const int encoding = random() % 10 == 0 ? 4 : static_cast<int>(random() % 4);
            const std::string& id = ids[random() % ids.size()];
            const std::string body = id == "TCON" && random() % 3 != 0
                                         ? RandomGenreBody(random)
                                         : RandomTextBody(random, encoding);
            const int flags = random() % 10 == 0 ? static_cast<int>(random() % 256) : 0;
            frames += major == 3 ? Frame23(id, body) : Frame24(id, body, flags);
        }
        const int tagFlags = random() % 10 == 0 ? 0x80 : 0;
        const std::string file =
            Id3v2Tag(major, frames, random() % 20, tagFlags) + test::Repeat(test::Mp3Frame128(), 2);
        MemoryByteSource source(file);
        const ID3v2Texts fast = ReadID3v2Texts(source);
        const ID3v2Texts reference = ReadID3v2TextsThroughTagLib(source);
        SCOPED_TRACE(testing::PrintToString(file.substr(0, 200)));
        EXPECT_EQ(fast.Title, reference.Title);
        EXPECT_EQ(fast.Artist, reference.Artist);
        EXPECT_EQ(fast.Album, reference.Album);
        EXPECT_EQ(fast.Year, reference.Year);
        EXPECT_EQ(fast.Genre, reference.Genre);
        EXPECT_EQ(fast.Track, reference.Track);
        if (HasFailure()) {
            break;
        }
    }
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
