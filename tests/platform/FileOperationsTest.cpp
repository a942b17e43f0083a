// Copying, moving and trashing files: a file in the way is never overwritten, and the trash is
// the freedesktop one under XDG_DATA_HOME.

#include "platform/FileOperations.h"
#include "util/FileIo.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>

#include "support/TempFolder.h"

namespace jk {
namespace {

TEST(FileOperations, CopyAndMoveNeverOverwrite) {
    test::TempFolder folder;
    const std::string a = folder.Write("a.mp3", "song a");
    const std::string b = folder.Write("b.mp3", "song b");
    const std::string c = folder.File("c.mp3");
    EXPECT_FALSE(CopyFileTo(a, b).ok);
    EXPECT_FALSE(MoveFileTo(a, b).ok);
    EXPECT_EQ(test::ReadBytes(b), "song b");
    EXPECT_TRUE(CopyFileTo(a, c).ok);
    EXPECT_EQ(test::ReadBytes(c), "song a");
    // The copy keeps the file's date (to the millisecond the desktop's file layer keeps).
    const auto apart = std::filesystem::last_write_time(a) - std::filesystem::last_write_time(c);
    EXPECT_LT(std::chrono::abs(apart), std::chrono::milliseconds(2));
    std::filesystem::remove(c);
    EXPECT_TRUE(MoveFileTo(a, c).ok);
    EXPECT_FALSE(PathExists(a));
    EXPECT_EQ(test::ReadBytes(c), "song a");
    EXPECT_TRUE(FolderExists(folder.Path()));
    EXPECT_FALSE(FolderExists(c));
    EXPECT_EQ(MoveToTrash(a).error, "the file is gone");
    EXPECT_EQ(MoveToTrash(folder.Path()).error, "a folder, not a file");  // never a whole folder
    EXPECT_TRUE(FolderExists(folder.Path()));
}

TEST(FileOperations, TrashedFilesCanBeRestoredFromTheTrash) {
    test::TempFolder folder;
    const std::string home = folder.File("data");
    std::filesystem::create_directories(home);
    ::setenv("XDG_DATA_HOME", home.c_str(), 1);
    const std::string song = folder.Write("song.mp3", "x");
    const FileResult result = MoveToTrash(song);
    ::unsetenv("XDG_DATA_HOME");
    if (!result.ok) {
        GTEST_SKIP() << "no trash here: " << result.error;
    }
    EXPECT_FALSE(PathExists(song));
    EXPECT_TRUE(std::filesystem::exists(home + "/Trash/files/song.mp3"));
}

}  // namespace
}  // namespace jk
