#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "support/TempFolder.h"
#include "util/FileIo.h"

// The file layer's failures. The tests run as root in CI, where permission bits stop nothing,
// so every failure here is one that stops root too: a folder in the way, a path through a
// file, a file system that takes no new files, a file size limit, a device that is always full.

namespace jk {
namespace {

namespace fs = std::filesystem;

// What is in a folder besides the names given (a temporary file left behind, say).
std::vector<std::string> OtherEntries(const std::string& folder,
                                      const std::vector<std::string>& expected) {
    std::vector<std::string> others;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        const std::string name = entry.path().filename().string();
        if (std::find(expected.begin(), expected.end(), name) == expected.end()) {
            others.push_back(name);
        }
    }
    return others;
}

// Holds the process to files of at most `bytes` while it lives; a write past that fails with
// EFBIG, as a full disk fails with ENOSPC.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) {
        ::getrlimit(RLIMIT_FSIZE, &m_old);
        m_oldHandler = std::signal(SIGXFSZ, SIG_IGN);
        struct rlimit limited = m_old;
        limited.rlim_cur = bytes;
        m_set = ::setrlimit(RLIMIT_FSIZE, &limited) == 0;
    }
    ~FileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &m_old);
        std::signal(SIGXFSZ, m_oldHandler);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    bool Set() const { return m_set; }

private:
    struct rlimit m_old {};
    void (*m_oldHandler)(int) = nullptr;
    bool m_set = false;
};

TEST(WriteFileAtomically, ReplacesTheFileAndKeepsItsPermissions) {
    test::TempFolder folder;
    const std::string path = folder.Write("data.ini", "old");
    ASSERT_EQ(::chmod(path.c_str(), 0600), 0);
    ASSERT_TRUE(WriteFileAtomically(path, "new").ok);
    EXPECT_EQ(test::ReadBytes(path), "new");
    struct stat st {};
    ASSERT_EQ(::stat(path.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 07777, 0600u);
    EXPECT_TRUE(OtherEntries(folder.Path(), {"data.ini"}).empty());
    ASSERT_TRUE(WriteFileAtomically(folder.File("empty.ini"), "").ok);
    EXPECT_EQ(test::ReadBytes(folder.File("empty.ini")), "");
}

TEST(WriteFileAtomically, FailsWithAReasonAndLeavesNothingBehind) {
    test::TempFolder folder;
    test::WriteBytes(folder.File("full/keep.txt"), "kept");  // a folder that is not empty
    const std::string file = folder.Write("plain.txt", "plain");
    const struct {
        std::string path;
        const char* why;
    } cases[] = {
        // The rename fails: a folder stands where the file would go.
        {folder.File("full"), "a folder in the way"},
        // The temporary file cannot be made.
        {file + "/inside.txt", "a path through a file"},
        {folder.File("missing/x.txt"), "a missing folder"},
        {"/proc/jukarra-test.ini", "a file system that takes no new files"},
    };
    for (const auto& c : cases) {
        const IoResult result = WriteFileAtomically(c.path, "data");
        EXPECT_FALSE(result.ok) << c.why;
        EXPECT_NE(result.error.find("cannot write " + c.path + ": "), std::string::npos)
            << c.why << ": " << result.error;
        EXPECT_GT(result.error.size(), ("cannot write " + c.path + ": ").size()) << c.why;
    }
    EXPECT_EQ(test::ReadBytes(folder.File("full/keep.txt")), "kept");
    EXPECT_EQ(test::ReadBytes(file), "plain");
    EXPECT_TRUE(OtherEntries(folder.Path(), {"full", "plain.txt"}).empty());
    EXPECT_TRUE(OtherEntries(folder.File("full"), {"keep.txt"}).empty());
}

TEST(WriteFileAtomically, AWriteThatRunsOutOfRoomKeepsTheOldFile) {
    test::TempFolder folder;
    const std::string path = folder.Write("cache.dat", "the old cache");
    IoResult result;
    {
        const FileSizeLimit limit(4096);
        ASSERT_TRUE(limit.Set());
        result = WriteFileAtomically(path, std::string(10000, 'x'));
    }
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.error.rfind("cannot write " + path + ": ", 0), 0u) << result.error;
    EXPECT_EQ(test::ReadBytes(path), "the old cache");
    EXPECT_TRUE(OtherEntries(folder.Path(), {"cache.dat"}).empty());
}

TEST(AtomicFileWriter, KeepsTheFirstFailureAndCleansUpWhenDropped) {
    test::TempFolder folder;
    const std::string path = folder.Write("list.m3u", "old list");
    {
        AtomicFileWriter dropped(path);
        EXPECT_TRUE(dropped.Write("half a list"));
    }
    EXPECT_EQ(test::ReadBytes(path), "old list");
    EXPECT_TRUE(OtherEntries(folder.Path(), {"list.m3u"}).empty());

    AtomicFileWriter pieces(path);
    EXPECT_TRUE(pieces.Write("one,"));
    EXPECT_TRUE(pieces.Write(""));
    EXPECT_TRUE(pieces.Write("two"));
    EXPECT_TRUE(pieces.Commit().ok);
    EXPECT_EQ(test::ReadBytes(path), "one,two");

    IoResult result;
    {
        AtomicFileWriter limited(path);
        const FileSizeLimit limit(4096);
        ASSERT_TRUE(limit.Set());
        EXPECT_TRUE(limited.Write(std::string(4000, 'a')));
        EXPECT_FALSE(limited.Write(std::string(4000, 'b')));
        EXPECT_FALSE(limited.Write("c"));  // nothing more is written once a write failed
        result = limited.Commit();
    }
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.error, "cannot write " + path + ": " + std::strerror(EFBIG));
    EXPECT_EQ(test::ReadBytes(path), "one,two");
    EXPECT_TRUE(OtherEntries(folder.Path(), {"list.m3u"}).empty());

    AtomicFileWriter nowhere(folder.File("missing/list.m3u"));
    EXPECT_FALSE(nowhere.Write("x"));
    EXPECT_EQ(nowhere.Commit().error,
              "cannot write " + folder.File("missing/list.m3u") + ": " + std::strerror(ENOENT));
}

TEST(ReadWholeFile, HoldsFilesToTheLimit) {
    test::TempFolder folder;
    const std::string path = folder.Write("ten.txt", "0123456789");
    std::string out = "stale";
    EXPECT_TRUE(ReadWholeFile(path, out, 10).ok);
    EXPECT_EQ(out, "0123456789");
    const IoResult over = ReadWholeFile(path, out, 9);
    EXPECT_FALSE(over.ok);
    EXPECT_EQ(over.error, path + " is larger than 9 bytes");
    EXPECT_EQ(out, "");
    EXPECT_EQ(ReadWholeFile(folder.Path(), out, 10).error, folder.Path() + " is a folder");
    EXPECT_EQ(ReadWholeFile(folder.File("none"), out, 10).error,
              "cannot open " + folder.File("none") + ": " + std::strerror(ENOENT));
    // Larger than one read, and exactly two reads long.
    const std::string big(std::size_t{3} << 20, 'b');
    test::WriteBytes(path, big);
    EXPECT_TRUE(ReadWholeFile(path, out, std::int64_t{4} << 20).ok);
    EXPECT_EQ(out.size(), big.size());
    test::WriteBytes(path, std::string(std::size_t{2} << 20, 'c'));
    EXPECT_TRUE(ReadWholeFile(path, out, std::int64_t{2} << 20).ok);
    EXPECT_EQ(out.size(), std::size_t{2} << 20);
}

TEST(ReadWholeFile, TrustsTheBytesReadOverTheSizeTheSystemStated) {
    // /proc states a size of 0 and gives more: the limit holds for what is read.
    std::string out;
    ASSERT_TRUE(ReadWholeFile("/proc/self/status", out, 1 << 20).ok);
    EXPECT_EQ(out.rfind("Name:", 0), 0u);
    const IoResult over = ReadWholeFile("/proc/self/status", out, 16);
    EXPECT_FALSE(over.ok);
    EXPECT_EQ(over.error, "/proc/self/status is larger than 16 bytes");
    EXPECT_EQ(out, "");
    // /sys states a page and gives a line, as a file that shrank after its size was taken.
    const std::string sysFile = "/sys/kernel/mm/transparent_hugepage/enabled";
    if (const std::int64_t stated = StatPath(sysFile).size; stated > 100) {
        ASSERT_TRUE(ReadWholeFile(sysFile, out, stated).ok);
        EXPECT_LT(out.size(), 100u);
        EXPECT_EQ(out.back(), '\n');
        EXPECT_FALSE(ReadWholeFile(sysFile, out, 100).ok);  // the size stated is held to the limit
    }
}

TEST(ReadFile, ReadsShortAtTheEndOfAFileThatShrank) {
    test::TempFolder folder;
    const std::string path = folder.Write("song.mp3", std::string(1000, 's'));
    ReadFile file(path);
    ASSERT_TRUE(file.IsOpen());
    const FileStatus before = file.Status();
    EXPECT_EQ(before.size, 1000);
    ASSERT_EQ(::truncate(path.c_str(), 600), 0);
    std::vector<std::uint8_t> buffer(before.size);
    EXPECT_EQ(file.ReadAt(0, buffer), 600);
    // From memory: short at the end too, or -1 where the file system cannot tell.
    const std::int64_t cached = file.ReadCachedAt(0, buffer);
    EXPECT_TRUE(cached == 600 || cached == -1) << cached;
    EXPECT_EQ(file.ReadAt(600, buffer), 0);
    EXPECT_EQ(file.ReadAt(900, std::span(buffer).first(100)), 0);
    EXPECT_EQ(file.ReadAt(-1, buffer), -1);
    EXPECT_EQ(file.ReadCachedAt(-1, buffer), -1);
    EXPECT_EQ(file.ReadAt(0, {}), 0);
    EXPECT_EQ(file.Size(), 600);

    const ReadFile closed;
    EXPECT_EQ(closed.ReadAt(0, buffer), -1);
    EXPECT_EQ(closed.ReadCachedAt(0, buffer), -1);
    EXPECT_EQ(closed.Size(), -1);
    EXPECT_FALSE(closed.Status().exists);
    EXPECT_FALSE(ReadFile(folder.File("none")).IsOpen());
    EXPECT_FALSE(ReadFile("").IsOpen());
}

TEST(ReadFile, OpensByNameInAFolderThatMoved) {
    test::TempFolder folder;
    test::WriteBytes(folder.File("old/a.mp3"), "abc");
    const FolderHandle handle(folder.File("old"));
    ASSERT_TRUE(handle.IsOpen());
    ASSERT_EQ(::rename(folder.File("old").c_str(), folder.File("new").c_str()), 0);
    EXPECT_EQ(handle.StatAt("a.mp3").size, 3);
    EXPECT_FALSE(handle.StatAt("b.mp3").exists);
    EXPECT_FALSE(handle.StatAt("").exists);
    ReadFile file(handle, "a.mp3");
    ASSERT_TRUE(file.IsOpen());
    std::vector<std::uint8_t> buffer(3);
    EXPECT_EQ(file.ReadAt(0, buffer), 3);
    EXPECT_FALSE(ReadFile(FolderHandle(), "a.mp3").IsOpen());
    EXPECT_FALSE(FolderHandle(folder.File("new/a.mp3")).IsOpen());  // a file, not a folder
}

TEST(StatPath, FollowsLinksUnlessToldNot) {
    test::TempFolder folder;
    test::WriteBytes(folder.File("real/a.mp3"), "abcd");
    fs::create_directory_symlink(folder.File("real"), folder.File("link"));
    EXPECT_TRUE(StatPath(folder.File("link")).isDirectory);
    EXPECT_FALSE(StatPathNoFollow(folder.File("link")).isDirectory);
    EXPECT_TRUE(StatPathNoFollow(folder.File("link")).exists);
    EXPECT_EQ(StatPath(folder.File("link/a.mp3")).size, 4);
    EXPECT_TRUE(FileExists(folder.File("link/a.mp3")));
    EXPECT_FALSE(FileExists(folder.File("link")));
    EXPECT_TRUE(FolderExists(folder.File("link")));
    EXPECT_FALSE(FolderExists(folder.File("link/a.mp3")));
    EXPECT_FALSE(StatPath("").exists);
    EXPECT_FALSE(StatPathNoFollow("").exists);
}

TEST(ReadWriteFile, ReportsWritesThatCannotLand) {
    {
        // A device that is always full: every write fails with ENOSPC.
        ReadWriteFile full("/dev/full");
        ASSERT_TRUE(full.IsOpen());
        const std::uint8_t byte = 1;
        EXPECT_FALSE(full.WriteAt(0, std::span(&byte, 1)));
    }
    test::TempFolder folder;
    const std::string path = folder.Write("tag.mp3", "0123456789");
    ReadWriteFile file(path);
    ASSERT_TRUE(file.IsOpen());
    const std::uint8_t bytes[] = {'a', 'b'};
    EXPECT_FALSE(file.WriteAt(-1, bytes));
    EXPECT_FALSE(file.TruncateTo(-1));
    EXPECT_TRUE(file.WriteAt(12, bytes));  // past the end: the gap reads as zeros
    EXPECT_EQ(file.Size(), 14);
    EXPECT_TRUE(file.TruncateTo(4));
    EXPECT_TRUE(file.Close());
    EXPECT_TRUE(file.Close());
    EXPECT_FALSE(file.WriteAt(0, bytes));
    EXPECT_EQ(file.Size(), -1);
    EXPECT_EQ(test::ReadBytes(path), "0123");
    EXPECT_FALSE(ReadWriteFile(folder.File("none")).IsOpen());
    ReadWriteFile created(folder.File("new.mp3"), ReadWriteFile::Mode::CreateOrTruncate);
    EXPECT_EQ(created.Size(), 0);
}

TEST(TruncateFileBy, CutsFromTheEndAndRefusesBadCounts) {
    test::TempFolder folder;
    const std::string path = folder.Write("cut.mp3", "0123456789");
    const struct {
        std::int64_t bytes;
        bool ok;
        const char* left;
    } cases[] = {
        {-1, false, "0123456789"},
        {11, false, "0123456789"},
        {0, true, "0123456789"},
        {3, true, "0123456"},
        {7, true, ""},
        {1, false, ""},
    };
    for (const auto& c : cases) {
        const IoResult result = TruncateFileBy(path, c.bytes);
        EXPECT_EQ(result.ok, c.ok) << c.bytes << ": " << result.error;
        EXPECT_EQ(test::ReadBytes(path), c.left) << c.bytes;
    }
    EXPECT_EQ(TruncateFileBy(path, 1).error, "cannot cut 1 bytes from " + path + ", which holds 0");
    EXPECT_FALSE(TruncateFileBy(folder.File("none"), 0).ok);
    EXPECT_FALSE(TruncateFileBy("/dev/null/x", 0).ok);
}

TEST(AddOwnerWritePermission, AddsOnlyTheOwnersWriteBit) {
    test::TempFolder folder;
    const std::string path = folder.Write("ro.mp3", "x");
    ASSERT_EQ(::chmod(path.c_str(), 0444), 0);
    EXPECT_TRUE(AddOwnerWritePermission(path));
    struct stat st {};
    ASSERT_EQ(::stat(path.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 07777, 0644u);
    EXPECT_TRUE(AddOwnerWritePermission(path));
    EXPECT_FALSE(AddOwnerWritePermission(folder.File("none")));
    EXPECT_FALSE(AddOwnerWritePermission(""));
}

}  // namespace
}  // namespace jk
