#include "browse/FolderTree.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "FakeFolderLister.h"

namespace jk {
namespace {

using Names = std::vector<std::string>;

Names Keys(const std::vector<std::unique_ptr<TreeNode>>& nodes) {
    Names keys;
    for (const auto& node : nodes) {
        keys.push_back(node->Key);
    }
    return keys;
}

Names Texts(const std::vector<std::unique_ptr<TreeNode>>& nodes) {
    Names texts;
    for (const auto& node : nodes) {
        texts.push_back(node->Text);
    }
    return texts;
}

DriveList Drives() {
    return {
        DriveRoot{"/", "/", "", kDriveFixed, 1, false},
        DriveRoot{"/mnt/gone", "gone", "gone", kDriveNotReady, 9, false},
        DriveRoot{"/media/ann/USB", "MY STICK", "MY STICK", kDriveRemovable, 2, false},
        DriveRoot{"/home/ann", "ann", "ann", kDriveFixed, 1, true},
    };
}

test::FakeFolderLister Disk() {
    test::FakeFolderLister fs;
    fs.AddFolder("/", {"media/", "home/", "empty/"});
    fs.AddFolder("/home", {"ann/"});
    fs.AddFolder("/home/ann", {"Music/", "notes.txt"});
    fs.AddFolder("/home/ann/Music", {"b/", "A/", "a/", "x.mp3"});
    fs.AddFolder("/home/ann/Music/b", {"inner/"});
    fs.AddFolder("/home/ann/Music/b/inner", {});
    fs.AddFolder("/home/ann/Music/A", {});
    fs.AddFolder("/home/ann/Music/a", {});
    fs.AddFolder("/empty", {"song.mp3"});
    fs.AddFolder("/media", {"ann/"});
    fs.AddFolder("/media/ann", {"USB/"});
    fs.AddFolder("/media/ann/USB", {"Albums/"});
    fs.AddFolder("/media/ann/USB/Albums", {});
    return fs;
}

// Records the observer calls as text.
class Log final : public TreeObserver {
public:
    void ChildrenAboutToBeRemoved(const TreeNode* parent, std::size_t first,
                                  std::size_t last) override {
        calls.push_back("remove " + Name(parent) + " " + std::to_string(first) + "-" +
                        std::to_string(last));
    }
    void ChildrenRemoved() override { calls.push_back("removed"); }
    void ChildrenAboutToBeInserted(const TreeNode* parent, std::size_t first,
                                   std::size_t last) override {
        calls.push_back("insert " + Name(parent) + " " + std::to_string(first) + "-" +
                        std::to_string(last));
    }
    void ChildrenInserted() override { calls.push_back("inserted"); }
    Names calls;

private:
    static std::string Name(const TreeNode* node) { return node ? node->Key : "(roots)"; }
};

TEST(FolderTree, InitializeDrivesShowsReadyDrivesAndHomeEachBehindAPlaceholder) {
    test::FakeFolderLister fs = Disk();
    FolderTree tree(fs);
    tree.AddRoot("Old disc", "Old disc", kImageVirtual, false);
    tree.InitializeDrives(Drives());
    EXPECT_EQ(Keys(tree.Roots()), (Names{"/", "/media/ann/USB", "/home/ann"}));
    EXPECT_EQ(Texts(tree.Roots()), (Names{"/", "MY STICK", "ann"}));
    EXPECT_EQ(tree.Roots()[1]->Image, kDriveRemovable);
    EXPECT_EQ(tree.Roots()[2]->Image, kImageHome);
    for (const auto& root : tree.Roots()) {
        ASSERT_EQ(root->Children.size(), 1u);
        EXPECT_TRUE(root->HasPlaceholder());
        EXPECT_EQ(root->Children[0]->Key, "spacer" + root->Key);
        EXPECT_EQ(root->Children[0]->Text, "spacer");
    }
    EXPECT_EQ(fs.listCalls, 0) << "no drive is read until it is opened";
}

TEST(FolderTree, ExpandForChildrenFillsOneLevelAndMarksFoldersWithSubfolders) {
    test::FakeFolderLister fs = Disk();
    FolderTree tree(fs);
    tree.InitializeDrives(Drives());
    TreeNode& root = *tree.Roots()[0];
    tree.ExpandForChildren(root);
    EXPECT_EQ(Keys(root.Children), (Names{"/empty", "/home", "/media"}));
    EXPECT_FALSE(root.Children[0]->HasPlaceholder()) << "/empty holds only a file";
    EXPECT_TRUE(root.Children[1]->HasPlaceholder());
    EXPECT_EQ(root.Children[1]->Children[0]->Key, "spacer/home");

    TreeNode& empty = *root.Children[0];
    tree.ExpandForChildren(empty);
    EXPECT_TRUE(empty.Children.empty());

    const int calls = fs.listCalls;
    tree.ExpandForChildren(root);
    EXPECT_EQ(fs.listCalls, calls) << "a filled node is not read again";
}

TEST(FolderTree, ADriveWithoutSubfoldersLosesItsPlaceholderWhenOpened) {
    test::FakeFolderLister fs;
    fs.AddFolder("/", {"only.mp3"});
    FolderTree tree(fs);
    tree.InitializeDrives({DriveRoot{"/", "/", "", kDriveFixed, 1, false}});
    TreeNode& root = *tree.Roots()[0];
    EXPECT_TRUE(root.HasPlaceholder());
    tree.ExpandForChildren(root);
    EXPECT_TRUE(root.Children.empty());
}

TEST(FolderTree, ChildrenAreInNameOrderWhateverTheListingOrder) {
    test::FakeFolderLister fs = Disk();
    FolderTree tree(fs);
    tree.InitializeDrives(Drives());
    TreeNode* music = tree.ExpandToPath("/home/ann/Music");
    ASSERT_NE(music, nullptr);
    tree.ExpandForChildren(*music);
    EXPECT_EQ(Texts(music->Children), (Names{"A", "a", "b"}));
    EXPECT_EQ(music->Children[2]->Key, "/home/ann/Music/b");
}

TEST(FolderTree, ExpandToPathOpensTheWayDownFromTheDriveThatHoldsThePath) {
    test::FakeFolderLister fs = Disk();
    FolderTree tree(fs);
    tree.InitializeDrives(Drives());
    TreeNode* node = tree.ExpandToPath("/home/ann/Music/b/");
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->Key, "/home/ann/Music/b");
    EXPECT_EQ(tree.Selected(), node);
    EXPECT_EQ(tree.IndexOf(*node), 2u);
    // Under "/", not under the home shortcut.
    EXPECT_EQ(node->Parent->Parent->Parent->Parent, tree.Roots()[0].get());

    TreeNode* usb = tree.ExpandToPath("/media/ann/USB/Albums");
    ASSERT_NE(usb, nullptr);
    EXPECT_EQ(usb->Parent, tree.Roots()[1].get()) << "the removable drive's own root";
}

TEST(FolderTree, ExpandToPathShortensAVanishedPathToItsNearestParent) {
    test::FakeFolderLister fs = Disk();
    FolderTree tree(fs);
    tree.InitializeDrives(Drives());
    TreeNode* node = tree.ExpandToPath("/home/ann/Music/b/gone/deeper");
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->Key, "/home/ann/Music/b");
    TreeNode* top = tree.ExpandToPath("/nowhere/at/all");
    ASSERT_NE(top, nullptr);
    EXPECT_EQ(top, tree.Roots()[0].get());
}

TEST(FolderTree, VirtualPathsTakeTheVirtualRoad) {
    test::FakeFolderLister fs = Disk();
    FolderTree tree(fs);
    tree.InitializeDrives(Drives());
    EXPECT_EQ(tree.ExpandToPath("Old disc/Album"), nullptr);
    EXPECT_EQ(fs.listCalls, 0);

    TreeNode& disc = tree.AddRoot("Old disc", "Old disc", kImageVirtual, false);
    std::string asked;
    tree.SetVirtualRoad([&](FolderTree&, const std::string& path) {
        asked = path;
        return &disc;
    });
    EXPECT_EQ(tree.ExpandToPath("Old disc/Album"), &disc);
    EXPECT_EQ(asked, "Old disc/Album");
    EXPECT_EQ(tree.Selected(), &disc);
    EXPECT_FALSE(disc.IsReal());
}

TEST(FolderTree, UpLevelSelectsTheParentUntilARoot) {
    test::FakeFolderLister fs = Disk();
    FolderTree tree(fs);
    tree.InitializeDrives(Drives());
    tree.ExpandToPath("/home/ann");
    EXPECT_EQ(tree.UpLevel()->Key, "/home");
    EXPECT_EQ(tree.UpLevel()->Key, "/");
    EXPECT_EQ(tree.UpLevel(), nullptr);
    EXPECT_EQ(tree.Selected()->Key, "/");
}

TEST(FolderTree, OpenFolderFillsAChildlessNodeOnce) {
    test::FakeFolderLister fs = Disk();
    FolderTree tree(fs);
    TreeNode& root = tree.AddRoot("/", "/", kDriveFixed, false);
    EXPECT_EQ(tree.OpenFolder(root), "/");
    EXPECT_EQ(root.Children.size(), 3u);
    const int calls = fs.listCalls;
    tree.OpenFolder(root);
    EXPECT_EQ(fs.listCalls, calls);
}

TEST(FolderTree, TellsItsObserverOfEveryChangeAsRanges) {
    test::FakeFolderLister fs = Disk();
    FolderTree tree(fs);
    Log log;
    tree.SetObserver(&log);
    tree.InitializeDrives(Drives());
    tree.ExpandForChildren(*tree.Roots()[0]);
    tree.ExpandToPath("/media/ann/USB/Albums");
    EXPECT_TRUE(tree.RemoveRootNode("/media/ann/USB"));
    EXPECT_FALSE(tree.RemoveRootNode("/media/ann/USB"));
    EXPECT_EQ(tree.Selected(), nullptr) << "the selected node went with its root";
    EXPECT_EQ(log.calls,
              (Names{"insert (roots) 0-0", "inserted", "insert (roots) 1-1", "inserted",
                     "insert (roots) 2-2", "inserted", "remove / 0-0", "removed", "insert / 0-2",
                     "inserted", "remove /media/ann/USB 0-0", "removed",
                     "insert /media/ann/USB 0-0", "inserted", "remove (roots) 1-1", "removed"}));
}

}  // namespace
}  // namespace jk
