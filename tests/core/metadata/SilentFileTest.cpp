#include "metadata/SilentFile.h"

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "metadata/SilentMp3.h"
#include "support/TempFolder.h"
#include "util/FileIo.h"

namespace jk {
namespace {

std::string BytesOf(const std::string& path) {
    std::string bytes;
    EXPECT_TRUE(ReadWholeFile(path, bytes, 1 << 24).ok);
    return bytes;
}

std::size_t EntriesIn(const std::string& folder) {
    std::size_t count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder)) {
        ++count;
    }
    return count;
}

TEST(SilentFileAt, SizeZeroIsOneFrameAndTheWizardsTag) {
    const test::TempFolder folder;
    const std::string path = folder.File("quiet.mp3");
    ASSERT_TRUE(MakeSilentFileAt(path, "0").ok);
    const std::string bytes = BytesOf(path);
    ASSERT_EQ(bytes.size(), kSilentFrameBytes + 128);
    EXPECT_EQ(bytes.substr(0, kSilentFrameBytes),
              std::string(SilentFrame().begin(), SilentFrame().end()));
    EXPECT_EQ(bytes.substr(kSilentFrameBytes, 19), "TAGSound of Silence");
    EXPECT_EQ(EntriesIn(folder.Path()), 1U);  // no working folder left behind
}

TEST(SilentFileAt, TheSameSizeGivesTheSameFileAsTheWizard) {
    const test::TempFolder folder;
    const std::string path = folder.File("mine.mp3");
    ASSERT_TRUE(MakeSilentFileAt(path, " 20 ").ok);
    std::string wizard;
    ASSERT_TRUE(MakeSilentFile(folder.Path(), "20", &wizard).ok);
    EXPECT_EQ(BytesOf(path), BytesOf(wizard));
    EXPECT_GE(BytesOf(path).size(), 20U * 1024 + 128);
}

TEST(SilentFileAt, AnExistingFileIsReplaced) {
    const test::TempFolder folder;
    const std::string path = folder.File("old.mp3");
    ASSERT_TRUE(WriteFileAtomically(path, std::string(100000, 'x')).ok);
    ASSERT_TRUE(MakeSilentFileAt(path, "0").ok);
    EXPECT_EQ(BytesOf(path).size(), kSilentFrameBytes + 128);
}

TEST(SilentFileAt, APlaceThatCannotHoldTheFileFailsWithAReason) {
    const test::TempFolder folder;
    for (const std::string& path :
         {folder.File("no-such-folder/a.mp3"), folder.Path(), folder.File("")}) {
        const IoResult result = MakeSilentFileAt(path, "0");
        EXPECT_FALSE(result.ok) << path;
        EXPECT_FALSE(result.error.empty()) << path;
    }
    EXPECT_EQ(EntriesIn(folder.Path()), 0U);
}

}  // namespace
}  // namespace jk
