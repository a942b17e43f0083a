#include "browse/FolderScan.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "FakeFolderLister.h"

namespace jk {
namespace {

using Names = std::vector<std::string>;

// Songs titled by their bare names; a name starting with "bad" cannot be read.
SongReadFn FakeSongs() {
    return [](std::string& path, const PrefetchedBytes*) {
        const std::string name = path.substr(path.find_last_of('/') + 1);
        if (name.rfind("bad", 0) == 0) {
            return NonExistantSong();
        }
        SongInfo song;
        song.Title = name;
        song.Path = path;
        return song;
    };
}

Names Filenames(const RowList& rows) {
    Names names;
    for (const ListRow& row : rows) {
        names.emplace_back(row.Get(Column::Filename));
    }
    return names;
}

ScanSetup FakeSetup(test::FakeFolderLister& fs, int threads) {
    ScanSetup setup;
    setup.Lister = &fs;
    setup.ReadSong = FakeSongs();
    setup.ReadAheadThreads = threads;
    return setup;
}

test::FakeFolderLister Machine() {
    test::FakeFolderLister fs;
    fs.AddFolder("/", {"music/", "home/", "media/"}, 1);
    fs.AddFolder("/music", {"z.mp3", "bad.mp3", "sub/", "a.mp3", "b.txt"}, 1);
    fs.AddFolder("/music/sub", {"s.mp3", "Recycled/"}, 1);
    fs.AddFolder("/music/sub/Recycled", {"r.mp3"}, 1);
    fs.AddFolder("/home", {"ann/"}, 1);
    fs.AddFolder("/home/ann", {"h.mp3"}, 1);
    fs.AddFolder("/media", {"usb/"}, 1);
    fs.AddFolder("/media/usb", {"u.mp3"}, 2);
    return fs;
}

TEST(RecurseDirReal, AppendsReadableSongsInWalkOrderWithAnyNumberOfReaders) {
    for (const int threads : {0, 4}) {
        test::FakeFolderLister fs = Machine();
        RowList rows;
        rows.push_back(ListRow());  // rows already on the list stay
        const ScanResult result = RecurseDirReal("/music", rows, FakeSetup(fs, threads));
        EXPECT_EQ(result.Added, 3u);
        EXPECT_FALSE(result.Aborted);
        EXPECT_EQ(Filenames(rows), (Names{"", "/music/z.mp3", "/music/a.mp3", "/music/sub/s.mp3"}));
    }
}

TEST(RecurseDirReal, KeepsTheRowsAddedBeforeAnAbort) {
    test::FakeFolderLister fs = Machine();
    ScanSetup setup = FakeSetup(fs, 2);
    int calls = 0;
    setup.Progress = [&calls](const ScanProgress&) { return ++calls < 3; };
    RowList rows;
    const ScanResult result = RecurseDirReal("/music", rows, setup);
    EXPECT_TRUE(result.Aborted);
    EXPECT_EQ(Filenames(rows), Names{"/music/z.mp3"});
}

TEST(RecurseTotal, WalksEachReadyDriveOnItsOwnFilesystemAndLeavesHomeOut) {
    test::FakeFolderLister fs = Machine();
    const DriveList drives = {
        DriveRoot{"/", "/", "", kDriveFixed, 1, false},
        DriveRoot{"/media/usb", "usb", "usb", kDriveRemovable, 2, false},
        DriveRoot{"/media/cd", "cd", "cd", kDriveNotReady, 3, false},
        DriveRoot{"/home/ann", "ann", "ann", kDriveFixed, 1, true},
    };
    RowList rows;
    const ScanResult result = RecurseTotal(drives, rows, FakeSetup(fs, 3));
    EXPECT_EQ(Filenames(rows), (Names{"/music/z.mp3", "/music/a.mp3", "/music/sub/s.mp3",
                                      "/home/ann/h.mp3", "/media/usb/u.mp3"}));
    EXPECT_EQ(result.Added, 5u);
    for (const std::string& listed : fs.listed) {
        EXPECT_NE(listed, "/media/cd/");
    }
}

TEST(GetFolderNow, ReplacesTheRowsWithOneFoldersSongs) {
    test::FakeFolderLister fs = Machine();
    RowList rows;
    rows.push_back(ListRow());
    std::string path = "/music";
    const ScanResult result = GetFolderNow(path, rows, FakeSetup(fs, 2));
    EXPECT_EQ(path, "/music/");
    EXPECT_EQ(result.Added, 2u);
    EXPECT_EQ(Filenames(rows), (Names{"/music/z.mp3", "/music/a.mp3"}));
}

}  // namespace
}  // namespace jk
