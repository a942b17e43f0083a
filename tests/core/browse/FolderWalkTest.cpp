#include "browse/FolderWalk.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <mutex>
#include <string>
#include <vector>

#include "FakeFolderLister.h"

namespace jk {
namespace {

using Names = std::vector<std::string>;

// Records what the walk hands over, asking for the look-ahead it is given. With a look-ahead,
// files are announced on the walk's planner thread.
class RecordingScanner final : public SongScanner {
public:
    explicit RecordingScanner(std::size_t lookAhead = 0) : m_lookAhead(lookAhead) {}

    std::size_t LookAhead() const override { return m_lookAhead; }
    void Announce(std::string path) override {
        std::lock_guard lock(m_mutex);
        ++announced;
        m_pending.push_back(std::move(path));
    }
    void ScanNext() override {
        {
            std::lock_guard lock(m_mutex);
            ASSERT_FALSE(m_pending.empty()) << "a file is scanned before it is announced";
            scanned.push_back(m_pending.front());
            m_pending.pop_front();
        }
        if (onScan) {
            onScan();
        }
    }
    void DropAnnounced() override {
        std::lock_guard lock(m_mutex);
        dropped += m_pending.size();
        m_pending.clear();
    }

    Names scanned;
    std::size_t announced = 0;
    std::size_t dropped = 0;
    std::function<void()> onScan;

private:
    std::size_t m_lookAhead;
    std::mutex m_mutex;
    std::deque<std::string> m_pending;
};

struct Progress {
    std::vector<std::pair<std::string, int>> seen;
    int stopAfterCalls = -1;  // returns false from this call on

    ScanProgressFn Fn() {
        return [this](const ScanProgress& p) {
            EXPECT_EQ(p.Maximum, 30);
            seen.emplace_back(std::string(p.Status), p.Value);
            return stopAfterCalls < 0 || static_cast<int>(seen.size()) < stopAfterCalls;
        };
    }
};

// /music: files first, then sub-folders in listing order, depth first.
test::FakeFolderLister MusicTree() {
    test::FakeFolderLister fs;
    fs.AddFolder("/music", {"b/", "2.mp3", "a/", "1.mp3", "cover.jpg"});
    fs.AddFolder("/music/b", {"b2/", "b1.mp3"});
    fs.AddFolder("/music/b/b2", {"deep.mp3"});
    fs.AddFolder("/music/a", {"a1.mp3", "a2.mp3", "a3.mp3"});
    return fs;
}

TEST(ScanStatusText, ShowsTheCountOnlyForMoreThanOneSong) {
    EXPECT_EQ(ScanStatusText("Album", 0), "Scanning: Album");
    EXPECT_EQ(ScanStatusText("Album", 1), "Scanning: Album");
    EXPECT_EQ(ScanStatusText("Album", 2), "Scanning: Album | 2 songs");
    EXPECT_EQ(ScanStatusText("", 400), "Scanning:  | 400 songs");
}

TEST(ScanProgressValue, IsTheWholePartOfThirtiethsDone) {
    EXPECT_EQ(ScanProgressValue(1, 3), 10);
    EXPECT_EQ(ScanProgressValue(2, 3), 20);
    EXPECT_EQ(ScanProgressValue(3, 3), 30);
    EXPECT_EQ(ScanProgressValue(1, 7), 4);
    EXPECT_EQ(ScanProgressValue(1, 31), 0);
    EXPECT_EQ(ScanProgressValue(0, 0), 0);
}

TEST(FolderWalk, ScansDepthFirstPreOrderFilesBeforeSubfoldersHoweverFarItLooksAhead) {
    for (const std::size_t lookAhead : {0u, 1u, 3u, 1000u}) {
        test::FakeFolderLister fs = MusicTree();
        RecordingScanner scanner(lookAhead);
        Progress progress;
        FolderWalk walk(fs, scanner, progress.Fn(), WalkOptions{});
        walk.Walk("/music");
        EXPECT_EQ(scanner.scanned,
                  (Names{"/music/2.mp3", "/music/1.mp3", "/music/b/b1.mp3", "/music/b/b2/deep.mp3",
                         "/music/a/a1.mp3", "/music/a/a2.mp3", "/music/a/a3.mp3"}))
            << lookAhead;
        EXPECT_EQ(scanner.dropped, 0u);
        EXPECT_EQ(progress.seen.size(), 11u) << lookAhead;
    }
}

TEST(FolderWalk, WithoutLookAheadListsEachFolderOnlyWhenItsTurnComes) {
    test::FakeFolderLister fs = MusicTree();
    RecordingScanner scanner;
    std::vector<std::size_t> listedAtScan;
    scanner.onScan = [&] { listedAtScan.push_back(fs.listed.size()); };
    FolderWalk walk(fs, scanner, {}, WalkOptions{});
    walk.Walk("/music");
    EXPECT_EQ(fs.listed, (Names{"/music/", "/music/b/", "/music/b/b2/", "/music/a/"}));
    EXPECT_EQ(listedAtScan, (std::vector<std::size_t>{1, 1, 2, 3, 4, 4, 4}));
}

TEST(FolderWalk, ReportsEachFoldersStatusThenItsBar) {
    test::FakeFolderLister fs = MusicTree();
    RecordingScanner scanner;
    Progress progress;
    FolderWalk walk(fs, scanner, progress.Fn(), WalkOptions{});
    walk.Walk("/music/");
    const std::vector<std::pair<std::string, int>> expected = {{"Scanning: music | 2 songs", 0},
                                                               {"Scanning: music | 2 songs", 15},
                                                               {"Scanning: music | 2 songs", 30},
                                                               {"Scanning: b", 0},
                                                               {"Scanning: b", 30},
                                                               {"Scanning: b2", 0},
                                                               {"Scanning: b2", 30},
                                                               {"Scanning: a | 3 songs", 0},
                                                               {"Scanning: a | 3 songs", 10},
                                                               {"Scanning: a | 3 songs", 20},
                                                               {"Scanning: a | 3 songs", 30}};
    EXPECT_EQ(progress.seen, expected);
}

TEST(FolderWalk, StopsBetweenItemsAndFinishesTheSongUnderWay) {
    // Stopping after the n-th progress call leaves exactly the songs scanned before it.
    struct Case {
        int stopAfterCalls;
        Names scanned;
        std::size_t listedWithoutLookAhead;
    };
    const Case cases[] = {
        {1, {}, 1},  // at the first folder's status: no file is begun
        {2, {"/music/2.mp3"}, 1},
        {3, {"/music/2.mp3", "/music/1.mp3"}, 1},  // no sub-folder is entered
        {4, {"/music/2.mp3", "/music/1.mp3"}, 2},  // stopped at b's status: b's file not begun
        {5, {"/music/2.mp3", "/music/1.mp3", "/music/b/b1.mp3"}, 2},
    };
    for (const std::size_t lookAhead : {0u, 2u, 1000u}) {
        for (const Case& c : cases) {
            test::FakeFolderLister fs = MusicTree();
            RecordingScanner scanner(lookAhead);
            Progress progress;
            progress.stopAfterCalls = c.stopAfterCalls;
            FolderWalk walk(fs, scanner, progress.Fn(), WalkOptions{});
            walk.Walk("/music");
            EXPECT_TRUE(walk.Cancelled());
            EXPECT_EQ(scanner.scanned, c.scanned) << "stop after " << c.stopAfterCalls;
            EXPECT_EQ(static_cast<int>(progress.seen.size()), c.stopAfterCalls);
            // What was announced and not scanned is dropped, so no read-ahead outlives the walk.
            EXPECT_EQ(scanner.announced, scanner.scanned.size() + scanner.dropped);
            if (lookAhead == 0) {
                EXPECT_EQ(fs.listed.size(), c.listedWithoutLookAhead) << c.stopAfterCalls;
            }
        }
    }
}

TEST(FolderWalk, CancelFromOutsideStopsBeforeTheNextFile) {
    test::FakeFolderLister fs = MusicTree();
    RecordingScanner scanner;
    FolderWalk walk(fs, scanner, {}, WalkOptions{});
    scanner.onScan = [&] {
        if (scanner.scanned.size() == 4) {
            walk.Cancel();
        }
    };
    walk.Walk("/music");
    EXPECT_EQ(scanner.scanned.size(), 4u);
    EXPECT_EQ(scanner.scanned.back(), "/music/b/b2/deep.mp3");
}

TEST(FolderWalk, LeavesOutTemporaryInternetAndSystemFoldersButEntersTrash) {
    test::FakeFolderLister fs;
    fs.AddFolder("/", {"proc/", "run/", "home/", "dev/", "sys/"});
    fs.AddFolder("/proc", {"x.mp3"});
    fs.AddFolder("/sys", {"x.mp3"});
    fs.AddFolder("/dev", {"x.mp3"});
    fs.AddFolder("/run", {"media/", "user/"});
    fs.AddFolder("/run/media", {"y.mp3"});
    fs.AddFolder("/home",
                 {"Temporary Internet Files/", "TEMPORARY INTERNET/", ".Trash-1000/", "ok.mp3"});
    fs.AddFolder("/home/Temporary Internet Files", {"t.mp3"});
    fs.AddFolder("/home/TEMPORARY INTERNET", {"t.mp3"});
    fs.AddFolder("/home/.Trash-1000", {"in-trash.mp3"});
    RecordingScanner scanner;
    FolderWalk walk(fs, scanner, {}, WalkOptions{});
    walk.Walk("/");
    // The trash is entered (its files reach the song scan, which refuses them).
    EXPECT_EQ(scanner.scanned, (Names{"/home/ok.mp3", "/home/.Trash-1000/in-trash.mp3"}));
    for (const std::string& listed : fs.listed) {
        EXPECT_EQ(listed.find("proc"), std::string::npos);
        EXPECT_EQ(listed.find("/run"), std::string::npos) << "/run is not entered at all";
        EXPECT_EQ(listed.find("emporary"), std::string::npos);
    }

    // Walked directly, /run/media is allowed and /proc is not.
    RecordingScanner direct;
    FolderWalk(fs, direct, {}, WalkOptions{}).Walk("/run/media");
    FolderWalk(fs, direct, {}, WalkOptions{}).Walk("/proc/");
    EXPECT_EQ(direct.scanned, Names{"/run/media/y.mp3"});
}

TEST(FolderWalk, NeverEntersAFolderTwiceSoABindMountCannotLoop) {
    test::FakeFolderLister fs;
    fs.AddFolder("/m", {"a.mp3", "loop/", "twin/", "twin-again/"});
    fs.AliasFolder("/m/loop", "/m");  // a bind mount of the parent inside itself
    fs.AddFolder("/m/twin", {"t.mp3"});
    fs.AliasFolder("/m/twin-again", "/m/twin");
    RecordingScanner scanner;
    FolderWalk walk(fs, scanner, {}, WalkOptions{});
    walk.Walk("/m");
    EXPECT_EQ(scanner.scanned, (Names{"/m/a.mp3", "/m/twin/t.mp3"}));
    EXPECT_LT(fs.listCalls, 10);
}

TEST(FolderWalk, GoesOnPastFoldersThatCannotBeReadOrHaveVanished) {
    test::FakeFolderLister fs;
    fs.AddFolder("/m", {"locked/", "gone/", "fine/", "top.mp3"});
    fs.AddFolder("/m/locked", {"secret.mp3"});
    fs.MakeUnreadable("/m/locked");
    // "gone" is listed by its parent but has no folder of its own any more.
    fs.AddFolder("/m/fine", {"f.mp3"});
    RecordingScanner scanner;
    Progress progress;
    FolderWalk walk(fs, scanner, progress.Fn(), WalkOptions{});
    walk.Walk("/m");
    EXPECT_EQ(scanner.scanned, (Names{"/m/top.mp3", "/m/fine/f.mp3"}));
    // An unreadable folder is visited as an empty one.
    EXPECT_EQ(progress.seen[2], (std::pair<std::string, int>{"Scanning: locked", 0}));
    EXPECT_EQ(progress.seen[3], (std::pair<std::string, int>{"Scanning: gone", 0}));
    EXPECT_FALSE(walk.Cancelled());
}

TEST(FolderWalk, HeldToOneFilesystemLeavesOtherDevicesOut) {
    test::FakeFolderLister fs;
    fs.AddFolder("/", {"media/", "root.mp3"}, 1);
    fs.AddFolder("/media", {"usb/"}, 1);
    fs.AddFolder("/media/usb", {"stick.mp3"}, 2);
    {
        RecordingScanner scanner;
        FolderWalk(fs, scanner, {}, WalkOptions{}).Walk("/", true);
        EXPECT_EQ(scanner.scanned, Names{"/root.mp3"});
    }
    {
        RecordingScanner scanner;
        FolderWalk(fs, scanner, {}, WalkOptions{}).Walk("/", false);
        EXPECT_EQ(scanner.scanned, (Names{"/root.mp3", "/media/usb/stick.mp3"}));
    }
    {
        // One object walking two drives in turn takes each drive's own device.
        RecordingScanner scanner;
        FolderWalk walk(fs, scanner, {}, WalkOptions{kFilterMp3, true});
        walk.Walk("/");
        walk.Walk("/media/usb");
        EXPECT_EQ(scanner.scanned, (Names{"/root.mp3", "/media/usb/stick.mp3"}));
    }
}

}  // namespace
}  // namespace jk
