#include "metadata/ExactStream.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "core/metadata/SongBytes.h"
#include "metadata/SongFileReader.h"
#include "metadata/SongReadContext.h"
#include "support/TempFolder.h"

namespace jk {
namespace {

using test::Bytes;
using test::Mp3Frame128;
using test::Repeat;
using test::Text;

StreamFacts FactsOf(const std::string& file) {
    MemoryByteSource source(file);
    const Outcome<StreamFacts> facts = ReadStreamExactly(source);
    EXPECT_TRUE(facts.Ok());
    return facts.Ok() ? *facts : StreamFacts{-1, -1};
}

// 100 frames at 128 kbit/s: 41,700 bytes, 2.6 seconds.
const std::string kCbr = Repeat(Mp3Frame128(), 100);

TEST(ExactStream, ConstantRateTimeCountsOnlyTheAudio) {
    EXPECT_EQ(FactsOf(kCbr).bitrate, 128);
    EXPECT_EQ(FactsOf(kCbr).seconds, 3);
    // Tags at both ends leave the result alone, even a tag too large for 16 bits.
    const std::string bigTag = test::Id3v2Tag(3, "", 40000);
    const std::string tail = Bytes(200, 'a') + test::Lyrics3({{"ETT", "x"}}) + test::Id3v1("t");
    const StreamFacts tagged = FactsOf(bigTag + kCbr + tail);
    EXPECT_EQ(tagged.bitrate, 128);
    // The 200 bytes ahead of the Lyrics3 block are audio: 41,900 bytes.
    EXPECT_EQ(tagged.seconds, 3);
    // Eight seconds of audio bytes less exactly: a tag counted in would tip it.
    const std::string eight = Repeat(Mp3Frame128(), 306) + Bytes(128000 - 306 * 417, '\x55');
    EXPECT_EQ(FactsOf(eight + test::Id3v1("t")).seconds, 8);
}

TEST(ExactStream, AnApeTagAndStackedID3v2TagsAreNotAudio) {
    const std::string ape = "APETAGEX" + Text({0xD0, 7, 0, 0}) + Text({64, 0, 0, 0}) +
                            Text({0, 0, 0, 0}) + Text({0, 0, 0, 0x80}) + Bytes(8);
    const std::string apeTag = ape + Bytes(32, 'z') + ape;  // header, items, footer
    const std::string withApe = kCbr + apeTag + test::Id3v1("t");
    MemoryByteSource source(withApe);
    EXPECT_EQ(*AudioEnd(source), static_cast<std::int64_t>(kCbr.size()));

    const std::string stacked = test::Id3v2Tag(3, "", 100) + test::Id3v2Tag(4, "", 50, 0x10);
    const std::string file = stacked + kCbr;
    MemoryByteSource stackedSource(file);
    EXPECT_EQ(*AudioStart(stackedSource), 110 + 60 + 10);
}

TEST(ExactStream, TheFirstFrameIsConfirmedByTheNext) {
    // A lone header in the junk ahead of the audio is passed over.
    const std::string junk = Bytes(300) + Text({0xFF, 0xFB, 0x50, 0x00}) + Bytes(300);
    const std::string file = junk + Repeat(test::MpegFrame(0xF3, 0x80, 0x00, 208), 200);
    const StreamFacts facts = FactsOf(file);
    EXPECT_EQ(facts.bitrate, 64);  // MPEG-2 Layer III, 22050 Hz, 208-byte frames
    EXPECT_EQ(facts.seconds, 5);   // 41,600 bytes at 64 kbit/s: 5.2 s
}

TEST(ExactStream, SeeksSyncWithinSixtyFourKibibytes) {
    const std::string near = Bytes(65535) + kCbr;
    EXPECT_EQ(FactsOf(near).bitrate, 128);
    const std::string far = Bytes(65536 + 1000) + Repeat(test::MpegFrame(0xF3, 0x80, 0, 208), 50);
    const StreamFacts none = FactsOf(far);
    EXPECT_EQ(none.bitrate, 128);  // no frame: the default, over every byte
    EXPECT_EQ(none.seconds, 5);    // 76,936 bytes at 128 kbit/s
}

std::string XingFrame(const char* mark, std::uint32_t frames, std::uint32_t bytes,
                      std::string lame = "") {
    std::string body = Bytes(32) + mark + test::BigEndian32(3) + test::BigEndian32(frames) +
                       test::BigEndian32(bytes) + lame;
    return Mp3Frame128(body);
}

TEST(ExactStream, XingGivesFrameCountTimeAndAverageRate) {
    // 1000 frames of 1152 samples at 44100 Hz: 26.12 s; 300,417 bytes less the header frame.
    const std::string file = XingFrame("Xing", 1000, 300417) + kCbr;
    const StreamFacts facts = FactsOf(file);
    EXPECT_EQ(facts.seconds, 26);
    EXPECT_EQ(facts.bitrate, 92);  // 300,000 * 8 / 26.122 s
}

TEST(ExactStream, InfoKeepsTheFrameRate) {
    const StreamFacts facts = FactsOf(XingFrame("Info", 1000, 900000) + kCbr);
    EXPECT_EQ(facts.bitrate, 128);
    EXPECT_EQ(facts.seconds, 26);
}

TEST(ExactStream, LameDelayAndPaddingAreNotHeard) {
    // 100 frames: 2.61 s; less 2000 + 3000 samples of delay and padding: 2.499 s.
    std::string lame = "LAME3.100" + Bytes(12);
    lame += Text({0x7D, 0x0B, 0xB8});  // 2000 and 3000 in twelve bits each
    const StreamFacts facts = FactsOf(XingFrame("Xing", 100, 30000, lame) + kCbr);
    EXPECT_EQ(facts.seconds, 2);
}

TEST(ExactStream, VbriGivesFramesAndBytes) {
    const std::string body = Bytes(32) + "VBRI" + Text({0, 1, 0, 0, 0, 50}) +
                             test::BigEndian32(500000) + test::BigEndian32(2000);
    const StreamFacts facts = FactsOf(Mp3Frame128(body) + kCbr);
    EXPECT_EQ(facts.seconds, 52);  // 2000 * 1152 / 44100 = 52.2
    EXPECT_EQ(facts.bitrate, 77);  // 500,000 * 8 / 52.24 s
}

TEST(ExactStream, ALoneFrameFillingTheAudioCounts) {
    const StreamFacts facts = FactsOf(Mp3Frame128() + test::Id3v1("t"));
    EXPECT_EQ(facts.bitrate, 128);
    EXPECT_EQ(facts.seconds, 0);
}

TEST(ExactStream, TimeTextGrowsPastTwoMinuteDigits) {
    // 6005 s at 128 kbit/s: 96,080,000 bytes of audio.
    test::SparseSource source(96080000, Repeat(Mp3Frame128(), 2) + Bytes(417 * 4, '\0'));
    SongInfo song;
    ASSERT_TRUE(FillBitrateAndTime(song, source, true).Ok());
    EXPECT_EQ(song.Bitrate, "128");
    EXPECT_EQ(song.Time, "100:05");
    // The Parts' own analysis fails a time of more than 32767 seconds at this length.
    test::SparseSource longer(600000000, Repeat(Mp3Frame128(), 2));
    EXPECT_FALSE(FillBitrateAndTime(song, longer, false).Ok());
    EXPECT_TRUE(FillBitrateAndTime(song, longer, true).Ok());
    EXPECT_EQ(song.Time, "625:00");
}

TEST(ExactStream, AFileReadsAsItsBytesInMemory) {
    // From a file only what the search looks at is read; the answer must be the one it gives
    // over all the bytes in memory. Candidates sit around the edge of the first look (8 KiB),
    // behind junk, Xing frames and headers that only the VBR header confirms.
    test::TempFolder folder;
    std::mt19937 random(3);
    const std::string lame = "LAME3.100" + Bytes(12) + Text({0x24, 0x00, 0x50});
    const std::string xing = test::MpegFrame(0xFB, 0x90, 0x00, 417,
                                             Bytes(32) + "Xing" + test::BigEndian32(0x0F) +
                                                 test::BigEndian32(400) + test::BigEndian32(90000) +
                                                 Bytes(100, '\x01') + test::BigEndian32(50) + lame);
    const std::string lone = test::MpegFrame(0xFB, 0x90, 0x00, 417, Bytes(32) + "Info");
    for (int i = 0; i < 300; ++i) {
        std::string file = random() % 3 == 0 ? test::Id3v2Tag(3, "", random() % 5000) : "";
        file += Bytes(random() % 3 == 0 ? 8192 - 200 + random() % 400 : random() % 100, '\x12');
        file += random() % 4 == 0 ? xing : random() % 3 == 0 ? lone + Bytes(50, '\xFF') : "";
        file += Repeat(Mp3Frame128(), random() % 40) + test::Id3v1("t");
        MemoryByteSource memory(file);
        const Outcome<StreamFacts> expected = ReadStreamExactly(memory);
        const std::string path = folder.Write("song.mp3", file);
        FileSourceBuffers buffers;
        FileByteSource source(path, static_cast<std::int64_t>(file.size()), buffers);
        PreloadSongBlocks(source);
        const Outcome<StreamFacts> got = ReadStreamExactly(source);
        ASSERT_EQ(got.Ok(), expected.Ok()) << i;
        if (got.Ok()) {
            EXPECT_EQ(got->bitrate, expected->bitrate) << i;
            EXPECT_EQ(got->seconds, expected->seconds) << i;
        }
    }
}

TEST(ParseMpegFrameHeader, RefusesReservedAndFreeFormatHeaders) {
    const auto parse = [](std::initializer_list<int> bytes) {
        const std::string b = Text(bytes);
        return ParseMpegFrameHeader(ByteView(reinterpret_cast<const std::uint8_t*>(b.data()), 4));
    };
    EXPECT_EQ(parse({0xFF, 0xFB, 0x90, 0})->frameLength, 417);
    EXPECT_EQ(parse({0xFF, 0xFB, 0x92, 0})->frameLength, 418);
    EXPECT_EQ(parse({0xFF, 0xFD, 0x10, 0})->frameLength, 104);    // Layer II, 32 kbit/s
    EXPECT_EQ(parse({0xFF, 0xFF, 0x10, 0})->frameLength, 8 * 4);  // Layer I, 32 kbit/s
    EXPECT_EQ(parse({0xFF, 0xE3, 0x80, 0})->sampleRate, 11025);   // MPEG-2.5
    EXPECT_FALSE(parse({0xFF, 0xEB, 0x90, 0}));                   // reserved version
    EXPECT_FALSE(parse({0xFF, 0xF9, 0x90, 0}));                   // reserved layer
    EXPECT_FALSE(parse({0xFF, 0xFB, 0x00, 0}));                   // free format
    EXPECT_FALSE(parse({0xFF, 0xFB, 0xF0, 0}));                   // bad index
    EXPECT_FALSE(parse({0xFF, 0xFB, 0x9C, 0}));                   // reserved sampling rate
}

}  // namespace
}  // namespace jk
