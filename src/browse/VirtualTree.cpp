#include "browse/VirtualTree.h"

#include <algorithm>
#include <unordered_map>

#include "util/Utf8.h"

namespace jk {
namespace {

// Where a folder goes among its sorted siblings.
std::size_t SortedPosition(const TreeNode& parent, std::string_view text) {
    const auto& children = parent.Children;
    const auto at = std::upper_bound(children.begin(), children.end(), text,
                                     [](std::string_view t, const std::unique_ptr<TreeNode>& c) {
                                         return CompareNoCase(t, c->Text) < 0;
                                     });
    return static_cast<std::size_t>(at - children.begin());
}

TreeNode* FindBelow(TreeNode& node, std::string_view key) {
    if (node.Key == key) {
        return &node;
    }
    for (const auto& child : node.Children) {
        // Only a node whose key begins the wanted one can hold it.
        if (key.size() > child->Key.size() && key.compare(0, child->Key.size(), child->Key) != 0) {
            continue;
        }
        if (TreeNode* found = FindBelow(*child, key)) {
            return found;
        }
    }
    return nullptr;
}

}  // namespace

TreeNode* AddVirtualVolume(FolderTree& tree, const std::vector<VirtualFolderNode>& nodes) {
    if (nodes.empty()) {
        return nullptr;
    }
    std::vector<TreeRootInfo> roots;
    for (const auto& root : tree.Roots()) {
        roots.push_back({root->Text, root->Image == kImageVirtual});
    }
    const VirtualFolderNode& top = nodes.front();
    TreeNode& root = tree.InsertNode(nullptr, VirtualRootPosition(roots, top.Text), top.Key,
                                     top.Text, kImageVirtual);
    std::unordered_map<std::string_view, TreeNode*> byKey;
    byKey.emplace(root.Key, &root);
    for (std::size_t i = 1; i < nodes.size(); ++i) {
        const VirtualFolderNode& node = nodes[i];
        const auto parent = byKey.find(node.ParentKey);
        if (parent == byKey.end()) {
            continue;  // AddVolumeTree gives parents first; a stray node has nowhere to go
        }
        TreeNode& added =
            tree.InsertNode(parent->second, SortedPosition(*parent->second, node.Text), node.Key,
                            node.Text, kImageFolder);
        byKey.emplace(added.Key, &added);
    }
    return &root;
}

void AddVirtualRoots(FolderTree& tree, const std::vector<std::vector<VirtualFolderNode>>& trees) {
    for (const auto& nodes : trees) {
        AddVirtualVolume(tree, nodes);
    }
}

TreeNode* RefreshVirtualVolume(FolderTree& tree, std::string_view name,
                               const std::vector<VirtualFolderNode>& nodes) {
    tree.RemoveRootNode(name);
    return AddVirtualVolume(tree, nodes);
}

TreeNode* FindVirtualNode(FolderTree& tree, const std::string& key) {
    TreeNode* root = tree.FindRoot(SplitVirtualKey(key).Volume);
    if (root == nullptr || root->IsReal()) {
        return nullptr;
    }
    std::string_view wanted = key;
    while (true) {
        if (TreeNode* found = FindBelow(*root, wanted)) {
            return found;
        }
        const std::size_t sep = wanted.find_last_of("/\\");
        if (sep == std::string_view::npos || sep < root->Key.size()) {
            return root;
        }
        wanted = wanted.substr(0, sep);
    }
}

}  // namespace jk
