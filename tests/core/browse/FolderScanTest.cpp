#include "browse/FolderScan.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "FakeFolderLister.h"
#include "SongFiles.h"

namespace jk {
namespace {

using Names = std::vector<std::string>;

Names Filenames(const RowList& rows) {
    Names names;
    for (const ListRow& row : rows) {
        names.emplace_back(row.Get(Column::Filename));
    }
    return names;
}

// A machine whose folders are listed by a fake lister and whose songs are real files below a
// temporary folder (the machine's "/"); "bad.mp3" is too short to be a song.
class FolderScanTest : public ::testing::Test {
protected:
    FolderScanTest() {
        m_fs.AddFolder(Root(), {"music/", "home/", "media/"}, 1);
        m_fs.AddFolder(At("/music"), {"z.mp3", "bad.mp3", "sub/", "a.mp3", "b.txt"}, 1);
        m_fs.AddFolder(At("/music/sub"), {"s.mp3", "Recycled/"}, 1);
        m_fs.AddFolder(At("/music/sub/Recycled"), {"r.mp3"}, 1);
        m_fs.AddFolder(At("/home"), {"ann/"}, 1);
        m_fs.AddFolder(At("/home/ann"), {"h.mp3"}, 1);
        m_fs.AddFolder(At("/media"), {"usb/"}, 1);
        m_fs.AddFolder(At("/media/usb"), {"u.mp3"}, 2);
        for (const char* song :
             {"/music/z.mp3", "/music/a.mp3", "/music/b.txt", "/music/sub/s.mp3",
              "/music/sub/Recycled/r.mp3", "/home/ann/h.mp3", "/media/usb/u.mp3"}) {
            test::WriteSongFile(At(song), "Song");
        }
        test::WriteBytes(At("/music/bad.mp3"), "short");
    }

    const std::string& Root() const { return m_root.Path(); }
    std::string At(std::string_view path) const { return Root() + std::string(path); }
    Names At(const Names& paths) const {
        Names out;
        for (const std::string& path : paths) {
            out.push_back(path.empty() ? path : At(path));
        }
        return out;
    }
    ScanSetup Setup(int threads) {
        ScanSetup setup;
        setup.Lister = &m_fs;
        setup.Lookup = &m_songs.lookup;
        setup.ReadAheadThreads = threads;
        return setup;
    }

    test::TempFolder m_root;
    test::FakeFolderLister m_fs;
    test::CacheLookups m_songs;
};

TEST_F(FolderScanTest, RecurseDirRealAppendsReadableSongsInWalkOrderWithAnyNumberOfReaders) {
    for (const int threads : {0, 4}) {
        for (int pass = 0; pass < 2; ++pass) {  // from the files, then from the cache
            RowList rows;
            rows.push_back(ListRow());  // rows already on the list stay
            const ScanResult result = RecurseDirReal(At("/music"), rows, Setup(threads));
            EXPECT_EQ(result.Added, 3u);
            EXPECT_FALSE(result.Aborted);
            EXPECT_EQ(Filenames(rows),
                      At(Names{"", "/music/z.mp3", "/music/a.mp3", "/music/sub/s.mp3"}));
        }
    }
    EXPECT_EQ(m_songs.cache.UpperBound(), 3);
    EXPECT_EQ(m_songs.total, 12);
    EXPECT_EQ(m_songs.hits, 9);
}

TEST_F(FolderScanTest, RecurseDirRealKeepsTheRowsAddedBeforeAnAbort) {
    ScanSetup setup = Setup(2);
    int calls = 0;
    setup.Progress = [&calls](const ScanProgress&) { return ++calls < 3; };
    RowList rows;
    const ScanResult result = RecurseDirReal(At("/music"), rows, setup);
    EXPECT_TRUE(result.Aborted);
    EXPECT_EQ(Filenames(rows), At(Names{"/music/z.mp3"}));
}

TEST_F(FolderScanTest, RecurseTotalWalksEachReadyDriveOnItsOwnFilesystemAndLeavesHomeOut) {
    const DriveList drives = {
        DriveRoot{Root(), "/", "", kDriveFixed, 1, false},
        DriveRoot{At("/media/usb"), "usb", "usb", kDriveRemovable, 2, false},
        DriveRoot{At("/media/cd"), "cd", "cd", kDriveNotReady, 3, false},
        DriveRoot{At("/home/ann"), "ann", "ann", kDriveFixed, 1, true},
    };
    RowList rows;
    const ScanResult result = RecurseTotal(drives, rows, Setup(3));
    EXPECT_EQ(Filenames(rows), At(Names{"/music/z.mp3", "/music/a.mp3", "/music/sub/s.mp3",
                                        "/home/ann/h.mp3", "/media/usb/u.mp3"}));
    EXPECT_EQ(result.Added, 5u);
    for (const std::string& listed : m_fs.listed) {
        EXPECT_NE(listed, At("/media/cd/"));
    }
}

TEST_F(FolderScanTest, GetFolderNowReplacesTheRowsWithOneFoldersSongs) {
    RowList rows;
    rows.push_back(ListRow());
    std::string path = At("/music");
    const ScanResult result = GetFolderNow(path, rows, Setup(2));
    EXPECT_EQ(path, At("/music/"));
    EXPECT_EQ(result.Added, 2u);
    EXPECT_EQ(Filenames(rows), At(Names{"/music/z.mp3", "/music/a.mp3"}));
}

}  // namespace
}  // namespace jk
