#pragma once

// The catalogued volumes in the folder tree: each volume's root among the virtual roots in
// order of name (ignoring case), its folders below it kept sorted, and the virtual road of
// ExpandToPath. The nodes come from AddVolumeTree (Session::VirtualTrees).

#include <string>
#include <string_view>
#include <vector>

#include "browse/FolderTree.h"
#include "catalogue/VirtualFolders.h"

namespace jk {

// AddVolumeTree's step in the tree: `nodes` (the root first, parents before children) become
// nodes of image 8 (the root) and 6 (folders). Returns the root; null for no nodes.
TreeNode* AddVirtualVolume(FolderTree& tree, const std::vector<VirtualFolderNode>& nodes);
// LoadVirtualFolders' step: every volume's root, in the table's order.
void AddVirtualRoots(FolderTree& tree, const std::vector<std::vector<VirtualFolderNode>>& trees);
// RefreshVirtualTree: the volume's root removed (RemoveRootNode) and made anew from `nodes`.
TreeNode* RefreshVirtualVolume(FolderTree& tree, std::string_view name,
                               const std::vector<VirtualFolderNode>& nodes);

// The virtual road (FolderTree::SetVirtualRoad): the node of a virtual key, or of its nearest
// ancestor that is in the tree; null when its volume has no root.
TreeNode* FindVirtualNode(FolderTree& tree, const std::string& key);

}  // namespace jk
