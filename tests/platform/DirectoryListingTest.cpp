#include "platform/DirectoryListing.h"

#include <gtest/gtest.h>

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <deque>
#include <filesystem>
#include <fstream>
#include <string>
#include <unordered_map>
#include <vector>

#include "browse/FolderScan.h"
#include "browse/FolderWalk.h"
#include "catalogue/SongCache.h"

namespace jk {
namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

class ListingTempTree {
public:
    ListingTempTree() {
        root_ = fs::temp_directory_path() / ("jk-listing-" + std::to_string(::getpid()));
        fs::remove_all(root_);
        fs::create_directories(root_);
    }
    ~ListingTempTree() {
        std::error_code ignored;
        fs::permissions(root_ / "locked", fs::perms::owner_all, ignored);
        fs::remove_all(root_, ignored);
    }
    std::string Path(const std::string& rel = "") const {
        return rel.empty() ? root_.string() : (root_ / rel).string();
    }
    void Folder(const std::string& rel) { fs::create_directories(root_ / rel); }
    void File(const std::string& rel, std::size_t size = 200) {
        std::ofstream out(root_ / rel, std::ios::binary);
        out << std::string(size, 'x');
    }
    void Link(const std::string& target, const std::string& rel) {
        fs::create_symlink(target, root_ / rel);
    }

private:
    fs::path root_;
};

// What the lister gives, as "name" for files and "name/" for folders.
Names ListAll(FolderLister& lister, const std::string& folder, ListResult* result = nullptr,
              FolderId* id = nullptr, std::optional<std::uint64_t> onlyDevice = std::nullopt) {
    Names names;
    FolderId ignored;
    const ListResult r = lister.List(
        folder, onlyDevice, id ? *id : ignored, [&names](std::string_view name, EntryKind kind) {
            names.push_back(std::string(name) + (kind == EntryKind::Folder ? "/" : ""));
            return true;
        });
    if (result) {
        *result = r;
    }
    return names;
}

// The order readdir itself gives, without "." and "..".
Names RawOrder(const std::string& folder) {
    Names names;
    DIR* dir = ::opendir(folder.c_str());
    while (const dirent* e = ::readdir(dir)) {
        if (std::strcmp(e->d_name, ".") != 0 && std::strcmp(e->d_name, "..") != 0) {
            names.emplace_back(e->d_name);
        }
    }
    ::closedir(dir);
    return names;
}

TEST(PosixFolderLister, KeepsTheFileSystemsOrderAndGivesTheFolderBit) {
    ListingTempTree tree;
    for (int i = 0; i < 60; ++i) {
        tree.File("song" + std::to_string(i) + ".mp3");
        if (i % 7 == 0) {
            tree.Folder("folder" + std::to_string(i));
        }
    }
    PosixFolderLister lister(std::unordered_map<std::string, std::uint64_t>{});
    FolderId id;
    ListResult result{};
    Names listed = ListAll(lister, tree.Path() + "/", &result, &id);
    EXPECT_EQ(result, ListResult::Listed);
    Names withoutDots;
    for (const std::string& name : listed) {
        if (name != "./" && name != "../") {
            withoutDots.push_back(name.back() == '/' ? name.substr(0, name.size() - 1) : name);
        }
        if (name.rfind("folder", 0) == 0) {
            EXPECT_EQ(name.back(), '/') << name;
        }
        if (name.rfind("song", 0) == 0) {
            EXPECT_NE(name.back(), '/') << name;
        }
    }
    EXPECT_EQ(withoutDots, RawOrder(tree.Path()));
    struct stat st {};
    ASSERT_EQ(::stat(tree.Path().c_str(), &st), 0);
    EXPECT_EQ(id.device, static_cast<std::uint64_t>(st.st_dev));
    EXPECT_EQ(id.inode, static_cast<std::uint64_t>(st.st_ino));
}

TEST(PosixFolderLister, NeverListsALinkToAFolderAndGivesOtherLinksAsFiles) {
    ListingTempTree tree;
    tree.Folder("real");
    tree.File("real/song.mp3");
    tree.Link("real", "folder-link");
    tree.Link("real/song.mp3", "file-link.mp3");
    tree.Link("nowhere", "dangling.mp3");
    tree.Link(".", "self");
    tree.Link("loop-b", "loop-a");
    tree.Link("loop-a", "loop-b");
    PosixFolderLister lister(std::unordered_map<std::string, std::uint64_t>{});
    Names listed = ListAll(lister, tree.Path() + "/");
    std::sort(listed.begin(), listed.end());
    EXPECT_EQ(listed,
              (Names{"../", "./", "dangling.mp3", "file-link.mp3", "loop-a", "loop-b", "real/"}));
}

TEST(PosixFolderLister, CannotReadWhatIsGoneOrNoFolder) {
    ListingTempTree tree;
    tree.File("plain.mp3");
    PosixFolderLister lister(std::unordered_map<std::string, std::uint64_t>{});
    ListResult result{};
    EXPECT_TRUE(ListAll(lister, tree.Path("gone") + "/", &result).empty());
    EXPECT_EQ(result, ListResult::Unreadable);
    ListAll(lister, tree.Path("plain.mp3") + "/", &result);
    EXPECT_EQ(result, ListResult::Unreadable);
    EXPECT_TRUE(lister.IsFolder(tree.Path()));
    EXPECT_FALSE(lister.IsFolder(tree.Path("plain.mp3")));
    EXPECT_FALSE(lister.IsFolder(tree.Path("gone")));
}

TEST(PosixFolderLister, CannotReadAFolderWithoutPermission) {
    if (::geteuid() == 0) {
        GTEST_SKIP() << "root reads every folder";
    }
    ListingTempTree tree;
    tree.Folder("locked");
    tree.File("locked/secret.mp3");
    fs::permissions(tree.Path("locked"), fs::perms::none);
    PosixFolderLister lister(std::unordered_map<std::string, std::uint64_t>{});
    ListResult result{};
    EXPECT_TRUE(ListAll(lister, tree.Path("locked") + "/", &result).empty());
    EXPECT_EQ(result, ListResult::Unreadable);
}

TEST(PosixFolderLister, RefusesAnotherFilesystemsMountPointWithoutOpeningIt) {
    ListingTempTree tree;
    tree.Folder("same");
    struct stat st {};
    ASSERT_EQ(::stat(tree.Path().c_str(), &st), 0);
    const auto device = static_cast<std::uint64_t>(st.st_dev);
    // "elsewhere" does not even exist: only the mount table can have answered.
    PosixFolderLister lister({{tree.Path("elsewhere"), device + 1}, {tree.Path("same"), device}});
    ListResult result{};
    ListAll(lister, tree.Path("elsewhere") + "/", &result, nullptr, device);
    EXPECT_EQ(result, ListResult::OtherFilesystem);
    ListAll(lister, tree.Path("same") + "/", &result, nullptr, device);
    EXPECT_EQ(result, ListResult::Listed);
    // A folder the mount table doesn't know is still checked by its own device number.
    ListAll(lister, tree.Path() + "/", &result, nullptr, device + 7);
    EXPECT_EQ(result, ListResult::OtherFilesystem);
}

class RecordingScanner final : public SongScanner {
public:
    void Announce(std::string path) override { m_pending.push_back(std::move(path)); }
    void ScanNext() override {
        scanned.push_back(m_pending.front());
        m_pending.pop_front();
    }
    void DropAnnounced() override { m_pending.clear(); }
    Names scanned;

private:
    std::deque<std::string> m_pending;
};

TEST(FolderWalkOnDisk, FollowsNoLinkToAFolderSoLinkLoopsEnd) {
    ListingTempTree tree;
    tree.Folder("a/b");
    tree.File("a/one.mp3");
    tree.File("a/b/two.mp3");
    tree.Link("..", "a/b/up");                 // back to a
    tree.Link(tree.Path(), "a/b/top");         // back to the walk's start
    tree.Link("../one.mp3", "a/b/again.mp3");  // a link to a file is a file
    PosixFolderLister lister;
    RecordingScanner scanner;
    FolderWalk walk(lister, scanner, {}, WalkOptions{});
    walk.Walk(tree.Path());
    Names scanned = scanner.scanned;
    std::sort(scanned.begin(), scanned.end());
    EXPECT_EQ(scanned, (Names{tree.Path("a/b/again.mp3"), tree.Path("a/b/two.mp3"),
                              tree.Path("a/one.mp3")}));
}

TEST(FolderWalkOnDisk, StartsAtALinkedFolderTheUserChose) {
    ListingTempTree tree;
    tree.Folder("music");
    tree.File("music/x.mp3");
    tree.Link("music", "shortcut");
    PosixFolderLister lister;
    RecordingScanner scanner;
    FolderWalk(lister, scanner, {}, WalkOptions{}).Walk(tree.Path("shortcut"));
    EXPECT_EQ(scanner.scanned, Names{tree.Path("shortcut/x.mp3")});
}

TEST(RecurseDirRealOnDisk, ReadsAheadWithoutChangingTheOrder) {
    ListingTempTree tree;
    for (int d = 0; d < 5; ++d) {
        tree.Folder("d" + std::to_string(d));
        for (int f = 0; f < 40; ++f) {
            tree.File("d" + std::to_string(d) + "/s" + std::to_string(f) + ".mp3", 300 + f);
        }
    }
    PosixFolderLister lister;
    std::vector<Names> orders;
    for (const int threads : {0, 8}) {
        SongCache cache;
        std::int32_t lookups = 0;
        std::int32_t hits = 0;
        SongLookup lookup(cache, {lookups, hits});
        ScanSetup setup;
        setup.Lister = &lister;
        setup.Lookup = &lookup;
        setup.ReadAheadThreads = threads;
        RowList rows;
        const ScanResult result = RecurseDirReal(tree.Path(), rows, setup);
        EXPECT_EQ(result.Added, 200u);
        Names order;
        for (const ListRow& row : rows) {
            order.emplace_back(row.Get(Column::Filename));
        }
        orders.push_back(order);
    }
    EXPECT_EQ(orders[0], orders[1]);
}

}  // namespace
}  // namespace jk
