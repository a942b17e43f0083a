#include "browse/VirtualTree.h"

#include <gtest/gtest.h>

#include "FakeFolderLister.h"

namespace jk {
namespace {

VirtualVolume VolumeOf(const std::string& name, const std::vector<std::string>& paths) {
    VirtualVolume volume(name);
    for (const std::string& path : paths) {
        SongInfo song;
        song.Title = "t";
        song.Path = path;
        song.Volume = name;
        volume.Append(song);
    }
    return volume;
}

std::vector<std::string> TextsOf(const std::vector<std::unique_ptr<TreeNode>>& nodes) {
    std::vector<std::string> texts;
    for (const auto& node : nodes) {
        texts.push_back(node->Text);
    }
    return texts;
}

TEST(VirtualTreeTest, RootsGoAmongTheVirtualRootsIgnoringCaseAndFoldersStaySorted) {
    test::FakeFolderLister fs;
    FolderTree tree(fs);
    tree.AddRoot("/", "/", 1, false);
    for (const char* name : {"rock", "Jazz", "blues"}) {
        VirtualVolume volume = VolumeOf(name, {"/media/ann/D/x.mp3"});
        AddVirtualVolume(tree, AddVolumeTree(volume));
    }
    tree.AddRoot("/home/ann", "Home", kImageHome, false);
    VirtualVolume pop = VolumeOf("Pop", {"/media/ann/P/b/2.mp3", "/media/ann/P/A/1.mp3",
                                         "/media/ann/P/c/d/3.mp3", "/media/ann/P/top.mp3"});
    TreeNode* root = AddVirtualVolume(tree, AddVolumeTree(pop));
    ASSERT_NE(root, nullptr);
    // Before the first virtual root that sorts after it; real roots are passed over.
    EXPECT_EQ(TextsOf(tree.Roots()),
              (std::vector<std::string>{"/", "blues", "Jazz", "Pop", "rock", "Home"}));
    EXPECT_EQ(root->Image, kImageVirtual);
    EXPECT_EQ(TextsOf(root->Children), (std::vector<std::string>{"A", "b", "c"}));
    EXPECT_EQ(root->Children[2]->Children[0]->Key, "Pop/c/d");
    EXPECT_EQ(root->Children[2]->Children[0]->Image, kImageFolder);
    EXPECT_FALSE(root->Children[0]->IsReal());

    // A rename makes the root anew under its new name and place.
    pop.Name = "Ambient";
    RefreshVirtualVolume(tree, "Pop", AddVolumeTree(pop));
    EXPECT_EQ(TextsOf(tree.Roots()),
              (std::vector<std::string>{"/", "Ambient", "blues", "Jazz", "rock", "Home"}));
}

TEST(VirtualTreeTest, TheVirtualRoadFindsAKeyOrItsNearestParent) {
    test::FakeFolderLister fs;
    FolderTree tree(fs);
    tree.SetVirtualRoad(FindVirtualNode);
    VirtualVolume cd = VolumeOf("CD", {"/media/ann/CD/rock/a/1.mp3", "/media/ann/CD/jazz/2.mp3"});
    AddVirtualVolume(tree, AddVolumeTree(cd));
    struct Case {
        const char* key;
        const char* reached;  // "" for none
    };
    const Case cases[] = {
        {"CD/rock/a", "CD/rock/a"}, {"CD", "CD"},       {"CD/rock/gone/deeper", "CD/rock"},
        {"CD/gone", "CD"},          {"Other/rock", ""}, {"CD/jazz", "CD/jazz"},
    };
    for (const Case& c : cases) {
        TreeNode* node = tree.ExpandToPath(c.key);
        EXPECT_EQ(node != nullptr ? node->Key : std::string(), c.reached) << c.key;
    }
    EXPECT_EQ(tree.Selected()->Key, "CD/jazz");
}

}  // namespace
}  // namespace jk
