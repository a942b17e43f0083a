#include "metadata/SilentMp3.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "metadata/SongFileReader.h"
#include "support/TempFolder.h"

namespace jk {
namespace {

SongInfo ReadFile(const std::string& path, bool exact) {
    SongReadOptions options;
    options.exactTimes = exact;
    return SongReader(options).Read(path, FileAtHand(StatPath(path)));
}

TEST(SilentFrame, IsTheFixedFrame) {
    const auto& frame = SilentFrame();
    ASSERT_EQ(frame.size(), 418u);
    EXPECT_EQ(frame[0], 255);
    EXPECT_EQ(frame[1], 251);
    EXPECT_EQ(frame[2], 144);
    EXPECT_EQ(frame[3], 68);
    int nonZeroHead = 0;
    for (std::size_t i = 4; i < 36; ++i) {
        nonZeroHead += frame[i] != 0;
    }
    EXPECT_EQ(nonZeroHead, 7);
    EXPECT_EQ(frame[9], 75);
    EXPECT_EQ(frame[16], 9);
    EXPECT_EQ(frame[17], 96);
    EXPECT_EQ(frame[23], 1);
    EXPECT_EQ(frame[24], 44);
    EXPECT_EQ(frame[31], 37);
    EXPECT_EQ(frame[32], 128);
    for (std::size_t i = 36; i < 418; ++i) {
        ASSERT_EQ(frame[i], 255) << i;
    }
}

TEST(MakeSilentFile, ASizeOfZeroLeavesOneFrameAndTheTag) {
    test::TempFolder folder;
    std::string path;
    ASSERT_TRUE(MakeSilentFile(folder.Path(), " 0 ", &path).ok);
    EXPECT_EQ(path, folder.File("0KB.mp3"));
    const std::string bytes = test::ReadBytes(path);
    ASSERT_EQ(bytes.size(), 418u + 128u);
    EXPECT_EQ(bytes.substr(0, 418), std::string(SilentFrame().begin(), SilentFrame().end()));
    const SongInfo song = ReadFile(path, false);
    EXPECT_EQ(song.Title, "Sound of Silence");
    EXPECT_EQ(song.Artist, "Marlow & Thane");
    EXPECT_EQ(song.Album, "Ratio Sites Suck!");
    EXPECT_EQ(song.Comment, "Have a nice day =)");
    EXPECT_EQ(song.Year, "1999");
    EXPECT_EQ(song.Genre, "Unknown");
}

TEST(MakeSilentFile, WritesBlocksUntilTheSizeIsReached) {
    test::TempFolder folder;
    std::string path;
    ASSERT_TRUE(MakeSilentFile(folder.Path(), "20", &path).ok);
    // One frame, then blocks of 32 frames: 418 + 2 * 13376 reaches 20 * 1024.
    EXPECT_EQ(StatPath(path).size, 418 + 2 * 13376 + 128);
    const SongInfo song = ReadFile(path, true);
    EXPECT_EQ(song.Bitrate, "128");
    EXPECT_EQ(song.Time, "00:02");
    // Exactly one block's worth: the test comes before each write.
    ASSERT_TRUE(MakeSilentFile(folder.Path(), "13.0703125", &path).ok);
    EXPECT_EQ(StatPath(path).size, 418 + 13376 + 128);
}

TEST(MakeSilentFile, ReplacesAReadOnlyFileAndRefusesPathsInTheSize) {
    test::TempFolder folder;
    const std::string old = folder.Write("1KB.mp3", "old");
    ::chmod(old.c_str(), 0444);
    ASSERT_TRUE(MakeSilentFile(folder.Path(), "1").ok);
    EXPECT_EQ(StatPath(old).size, 418 + 13376 + 128);
    EXPECT_FALSE(MakeSilentFile(folder.Path(), "../5").ok);
    EXPECT_FALSE(MakeSilentFile(folder.Path(), "9999999999").ok);
    EXPECT_FALSE(MakeSilentFile(folder.File("no such folder"), "1").ok);
}

TEST(MakeSilentMP3, WritesAboutOneSecond) {
    test::TempFolder folder;
    ASSERT_TRUE(MakeSilentMP3(folder.Path()).ok);
    const std::string path = folder.File("silent.mp3");
    EXPECT_EQ(StatPath(path).size, 39 * 418 + 128);
    const SongInfo song = ReadFile(path, false);
    EXPECT_EQ(song.Title, "Sound of Silence");
    EXPECT_EQ(song.Artist, "Jukarra2");
    EXPECT_EQ(song.Comment, "Have a nice day =)");
    EXPECT_EQ(song.Time, "00:01");
}

TEST(MakeSilentMP3, ASpacerLastsTheDelayAskedFor) {
    EXPECT_EQ(SilentFramesFor(1), 39u);
    EXPECT_EQ(SilentFramesFor(2), 77u);
    EXPECT_EQ(SilentFramesFor(0), 39u);
    EXPECT_EQ(SilentFramesFor(-5), 39u);
    EXPECT_EQ(SilentFramesFor(9999), SilentFramesFor(3600));
    test::TempFolder folder;
    ASSERT_TRUE(MakeSilentMP3(folder.Path(), 12).ok);
    const std::string path = folder.File("silent.mp3");
    EXPECT_EQ(StatPath(path).size, static_cast<std::int64_t>(SilentFramesFor(12) * 418 + 128));
    EXPECT_EQ(ReadFile(path, true).Time, "00:12");
}

}  // namespace
}  // namespace jk
