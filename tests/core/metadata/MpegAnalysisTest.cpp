#include "metadata/MpegAnalysis.h"

#include <gtest/gtest.h>

#include "core/metadata/SongBytes.h"

namespace jk {
namespace {

using test::Bytes;
using test::Text;

// A ten-byte ID3v2 header whose size bytes are b7..b10 (1-based positions 7 to 10).
std::string TagHead(int b7, int b8, int b9, int b10, const char* mark = "ID3") {
    return std::string(mark) + Text({3, 0, 0, b7, b8, b9, b10});
}

std::int16_t SizeOf(const std::string& bytes) {
    MemoryByteSource source(bytes);
    return GetID3v2Size(source);
}

TEST(GetID3v2Size, SumsTheLowerThreeSizeBytesAndAddsTen) {
    EXPECT_EQ(SizeOf(TagHead(0, 0, 7, 104) + Bytes(200)), 1010);
    // The highest size byte takes no part in the sum.
    EXPECT_EQ(SizeOf(TagHead(127, 0, 7, 104) + Bytes(200)), 1010);
    // "ID3" is compared upper-cased.
    EXPECT_EQ(SizeOf(TagHead(0, 0, 7, 104, "iD3") + Bytes(200)), 1010);
}

TEST(GetID3v2Size, WrapsInSixteenBitsWithTheTen) {
    EXPECT_EQ(SizeOf(TagHead(0, 1, 127, 117) + Bytes(200)), 32767);   // sum 32757
    EXPECT_EQ(SizeOf(TagHead(0, 1, 127, 118) + Bytes(200)), -32768);  // sum 32758
    EXPECT_EQ(SizeOf(TagHead(0, 127, 127, 127) + Bytes(200)), 9);     // 2097151 wraps to -1
}

TEST(GetID3v2Size, IsZeroWithoutAValidHeader) {
    EXPECT_EQ(SizeOf(TagHead(0, 0, 7, 104, "ID4") + Bytes(200)), 0);
    EXPECT_EQ(SizeOf(TagHead(0, 0, 7, 128) + Bytes(200)), 0);
    EXPECT_EQ(SizeOf(TagHead(128, 0, 7, 1) + Bytes(200)), 0);
    EXPECT_EQ(SizeOf("ID3" + Text({255, 0, 0, 0, 0, 7, 104}) + Bytes(200)), 0);
    EXPECT_EQ(SizeOf("ID3" + Text({3, 255, 0, 0, 0, 7, 104}) + Bytes(200)), 0);
    EXPECT_EQ(SizeOf(TagHead(0, 0, 7, 104).substr(0, 9)), 0);  // below ten bytes
}

TEST(FrameBitrate, LooksUpLayerVersionAndIndex) {
    struct Case {
        int b1;
        int b2;
        int kbps;
    };
    const Case cases[] = {
        {0xFB, 0x90, 128},  // V1 L3 index 9
        {0xF3, 0x80, 64},   // V2 L3 index 8
        {0xE3, 0x80, 64},   // V2.5 shares the V2 columns
        {0xFD, 0xA0, 192},  // V1 L2 index 10
        {0xFF, 0xE0, 448},  // V1 L1 index 14
        {0xF7, 0xC0, 192},  // V2 L1 index 12
        {0xF5, 0xE0, 160},  // V2 L2 index 14
        {0xF9, 0x90, 128},  // layer bits 00 read as Layer III
        {0xFB, 0x00, 0},    // index 0
        {0xFB, 0xF0, 0},    // index 15
    };
    for (const Case& c : cases) {
        EXPECT_EQ(
            FrameBitrate(0xFF, static_cast<std::uint8_t>(c.b1), static_cast<std::uint8_t>(c.b2)),
            c.kbps)
            << std::hex << c.b1 << " " << c.b2;
    }
}

TEST(IsHeaderWindow, DemandsSyncLayerBitsAndABitrateByte) {
    EXPECT_TRUE(IsHeaderWindow(255, 0xFB, 0x90));
    EXPECT_FALSE(IsHeaderWindow(254, 0xFB, 0x90));
    EXPECT_FALSE(IsHeaderWindow(255, 16, 0x90));  // b1 must be above 16
    EXPECT_TRUE(IsHeaderWindow(255, 18, 0x90));
    EXPECT_FALSE(IsHeaderWindow(255, 255, 0x90));
    EXPECT_FALSE(IsHeaderWindow(255, 0xF9, 0x90));  // layer bits clear
    EXPECT_FALSE(IsHeaderWindow(255, 0xFB, 255));
    EXPECT_FALSE(IsHeaderWindow(255, 0xFB, 0));
}

Outcome<std::int16_t> BitrateOf(const std::string& bytes) {
    MemoryByteSource source(bytes);
    return GetBitrate(source);
}

// A 200-byte file of zeros with an MPEG-2 Layer III header (64 kbit/s) at 0-based `at`.
std::string HeaderAt(std::size_t at, std::string prefix = "") {
    std::string file = prefix + Bytes(200);
    file.replace(at, 3, Text({0xFF, 0xF3, 0x80}));
    return file;
}

TEST(GetBitrate, FindsAHeaderBeginningWithinNinetyEightBytes) {
    EXPECT_EQ(*BitrateOf(HeaderAt(0)), 64);
    EXPECT_EQ(*BitrateOf(HeaderAt(97)), 64);   // the 98th byte behind the (absent) tag
    EXPECT_EQ(*BitrateOf(HeaderAt(98)), 128);  // the 99th is not looked at
    EXPECT_EQ(*BitrateOf(Bytes(200)), 128);    // no sync at all
}

TEST(GetBitrate, SearchesBehindTheTag) {
    // A tag of 1000 bytes: GetID3v2Size gives 1010, the search runs from 0-based 1010.
    const std::string tag = TagHead(0, 0, 7, 104) + Bytes(1000);
    EXPECT_EQ(*BitrateOf(HeaderAt(1010, tag)), 64);
    EXPECT_EQ(*BitrateOf(HeaderAt(1010 + 97, tag)), 64);
    EXPECT_EQ(*BitrateOf(HeaderAt(1010 + 98, tag)), 128);
    EXPECT_EQ(*BitrateOf(HeaderAt(1009, tag)), 128);  // inside the skipped bytes
}

TEST(GetBitrate, AnIndexOfZeroOrFifteenGivesTheDefault) {
    std::string file = Bytes(200);
    file.replace(10, 3, Text({0xFF, 0xFB, 0xF0}));
    EXPECT_EQ(*BitrateOf(file), 128);
    file.replace(10, 3, Text({0xFF, 0xFB, 0x0C}));
    EXPECT_EQ(*BitrateOf(file), 128);
}

TEST(GetBitrate, ATagSizeOutsideTheFileFailsTheRead) {
    const std::string negative = TagHead(0, 1, 127, 118) + Bytes(200);
    EXPECT_EQ(BitrateOf(negative).Fault(), ReadFault::NegativeLength);
    const std::string beyond = TagHead(0, 0, 2, 0) + Bytes(200);  // 256 + 10 > 210
    EXPECT_EQ(BitrateOf(beyond).Fault(), ReadFault::PastEnd);
}

TEST(GetBitrate, TooFewBytesBehindTheTagFailInTheXingRead) {
    // The Xing reader looks 17 bytes or more behind the tag before the search begins.
    const std::string file = TagHead(0, 0, 1, 60) + Bytes(190);  // tag size 198 of 200
    EXPECT_EQ(BitrateOf(file).Fault(), ReadFault::PastEnd);
}

// A Xing header in an MPEG-1 Layer III stereo frame at the head: flags, then the fields.
std::string XingHead(std::uint32_t flags, std::uint32_t frames, int b1 = 0xFB, int b2 = 0x90,
                     int b3 = 0x00, std::size_t sideInfo = 32) {
    std::string head =
        Text({0xFF, b1, b2, b3}) + Bytes(sideInfo) + "Xing" + test::BigEndian32(flags);
    if (flags & 1) {
        head += test::BigEndian32(frames);
    }
    return head;
}

TEST(Xing, TheWorkedExampleGives261SecondsAnd184Kbps) {
    test::SparseSource source(6000000, XingHead(1, 10000));
    XingHeader header;
    ASSERT_TRUE(*ReadXingHeader(header, source));
    EXPECT_EQ(header.h_id, 1);
    EXPECT_EQ(header.samprate, 44100);
    EXPECT_EQ(header.frames, 10000);
    EXPECT_EQ(header.vbr_scale, -1);
    EXPECT_EQ(*XingBitrate(header, source.Size()), 184);
    EXPECT_EQ(*GetBitrate(source), 184);
    EXPECT_EQ(*GetSongSeconds(source.Size(), 184), 261);
}

TEST(Xing, NoFrameCountGivesTheDefault) {
    test::SparseSource cleared(6000000, XingHead(0, 0));
    EXPECT_EQ(*GetBitrate(cleared), 128);
    test::SparseSource zero(6000000, XingHead(1, 0));
    EXPECT_EQ(*GetBitrate(zero), 128);
}

TEST(Xing, IsSoughtOnlyWhereTheSideInformationEnds) {
    // MPEG-1 mono skips 17 bytes, MPEG-2 stereo 17, MPEG-2 mono 9.
    struct Case {
        int b1;
        int b3;
        std::size_t side;
        std::int32_t rate;
    };
    for (const Case c :
         {Case{0xFB, 0xC0, 17, 44100}, Case{0xF3, 0x00, 17, 22050}, Case{0xF3, 0xC0, 9, 22050}}) {
        test::SparseSource source(6000000, XingHead(1, 10000, c.b1, 0x90, c.b3, c.side));
        XingHeader header;
        EXPECT_TRUE(*ReadXingHeader(header, source)) << c.side;
        EXPECT_EQ(header.samprate, c.rate);
    }
    test::SparseSource misplaced(6000000, XingHead(1, 10000, 0xFB, 0x90, 0x00, 17));
    XingHeader header;
    EXPECT_FALSE(*ReadXingHeader(header, misplaced));
}

TEST(Xing, KeepsTheFillerRateAndTheCaseOfTheMark) {
    test::SparseSource filler(6000000, XingHead(1, 10000, 0xFB, 0x9C));
    XingHeader header;
    ASSERT_TRUE(*ReadXingHeader(header, filler));
    EXPECT_EQ(header.samprate, 99999);
    test::SparseSource halved(6000000, XingHead(1, 10000, 0xF3, 0x9C, 0x00, 17));
    ASSERT_TRUE(*ReadXingHeader(header, halved));
    EXPECT_EQ(header.samprate, 49999);
    std::string lower = XingHead(1, 10000);
    lower.replace(36, 4, "xing");
    test::SparseSource lowered(6000000, lower);
    EXPECT_FALSE(*ReadXingHeader(header, lowered));
}

TEST(Xing, ReadsTheTableAndScaleWhenFlagged) {
    std::string head = XingHead(15, 500) + test::BigEndian32(123456);
    for (int i = 0; i < 100; ++i) {
        head.push_back(static_cast<char>(i + 1));
    }
    head += test::BigEndian32(77);
    test::SparseSource source(100000, head);
    XingHeader header;
    ASSERT_TRUE(*ReadXingHeader(header, source));
    EXPECT_EQ(header.bytes, 123456);
    EXPECT_EQ(header.toc[0], 1);
    EXPECT_EQ(header.toc[99], 100);
    EXPECT_EQ(header.vbr_scale, 77);
}

TEST(Xing, OverflowsOfThirtyTwoBitsFail) {
    // A Xing integer whose first byte is 0x80 or more.
    test::SparseSource high(6000000, XingHead(1, 0x80000000u));
    EXPECT_EQ(GetBitrate(high).Fault(), ReadFault::Overflow32);
    // frames * 1152 past 2^31 - 1.
    test::SparseSource many(6000000, XingHead(1, 1864136));
    EXPECT_EQ(GetBitrate(many).Fault(), ReadFault::Overflow32);
    test::SparseSource most(6000000, XingHead(1, 1864135));
    EXPECT_TRUE(GetBitrate(most).Ok());
    // The file length times 8.
    test::SparseSource huge(268435456, XingHead(1, 10000));
    EXPECT_EQ(GetBitrate(huge).Fault(), ReadFault::Overflow32);
}

TEST(Xing, ABitrateBeyondSixteenBitsFails) {
    // 39 frames make one second; 5,000,000 bytes in one second is 40000 kbit/s.
    test::SparseSource source(5000000, XingHead(1, 39));
    EXPECT_EQ(GetBitrate(source).Fault(), ReadFault::Overflow16);
}

TEST(Xing, ATableBeyondTheFileFailsTheRead) {
    std::string file = XingHead(4, 0);
    file.resize(132, '\0');
    MemoryByteSource source(file);
    EXPECT_EQ(GetBitrate(source).Fault(), ReadFault::PastEnd);
}

TEST(GetSongSeconds, RoundsHalfToEvenAndFailsOutsideItsWidths) {
    EXPECT_EQ(*GetSongSeconds(40000, 128), 2);  // 2.5
    EXPECT_EQ(*GetSongSeconds(56000, 128), 4);  // 3.5
    EXPECT_EQ(*GetSongSeconds(131068000, 32), 32767);
    EXPECT_EQ(GetSongSeconds(131072000, 32).Fault(), ReadFault::Overflow16);
    EXPECT_EQ(*GetSongSeconds(268435455, 128), 16777);
    EXPECT_EQ(GetSongSeconds(268435456, 128).Fault(), ReadFault::Overflow32);
}

}  // namespace
}  // namespace jk
