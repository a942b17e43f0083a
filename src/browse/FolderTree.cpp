#include "browse/FolderTree.h"

#include <algorithm>

#include "browse/FolderEntries.h"
#include "listing/WalkRules.h"
#include "util/PathHelpers.h"
#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {
namespace {

std::unique_ptr<TreeNode> MakeNode(std::string key, std::string text, int image) {
    auto node = std::make_unique<TreeNode>();
    node->Key = std::move(key);
    node->Text = std::move(text);
    node->Image = image;
    return node;
}

// True when `key` names `path` itself or a folder above it.
bool KeyHolds(std::string_view key, std::string_view path) {
    if (key == "/") {
        return StartsWith(path, "/");
    }
    return StartsWith(path, key) && (path.size() == key.size() || path[key.size()] == '/');
}

}  // namespace

bool TreeNode::IsPlaceholder() const {
    return Parent != nullptr && Key.size() == kSpacer.size() + Parent->Key.size() &&
           StartsWith(Key, kSpacer) && std::string_view(Key).substr(kSpacer.size()) == Parent->Key;
}

bool TreeNode::IsReal() const {
    return IsRealPath(Key);
}

bool TreeNode::HasPlaceholder() const {
    return !Children.empty() && Children.front()->IsPlaceholder();
}

FolderTree::FolderTree(FolderLister& lister) : m_lister(lister) {}

const std::vector<std::unique_ptr<TreeNode>>& FolderTree::ChildrenOf(const TreeNode* parent) const {
    return parent == nullptr ? m_roots : parent->Children;
}

std::size_t FolderTree::IndexOf(const TreeNode& node) const {
    const auto& siblings = ChildrenOf(node.Parent);
    const auto found = std::find_if(siblings.begin(), siblings.end(), [&node](const auto& sibling) {
        return sibling.get() == &node;
    });
    return static_cast<std::size_t>(found - siblings.begin());
}

bool FolderTree::Holds(const TreeNode* ancestor, const TreeNode* node) const {
    for (; node != nullptr; node = node->Parent) {
        if (node == ancestor) {
            return true;
        }
    }
    return false;
}

void FolderTree::RemoveChildren(TreeNode* parent, std::size_t first, std::size_t count) {
    auto& children = parent == nullptr ? m_roots : parent->Children;
    if (count == 0 || first >= children.size()) {
        return;
    }
    count = std::min(count, children.size() - first);
    for (std::size_t i = first; i < first + count; ++i) {
        if (Holds(children[i].get(), m_selected)) {
            m_selected = nullptr;
        }
    }
    if (m_observer) {
        m_observer->ChildrenAboutToBeRemoved(parent, first, first + count - 1);
    }
    const auto begin = children.begin() + static_cast<std::ptrdiff_t>(first);
    children.erase(begin, begin + static_cast<std::ptrdiff_t>(count));
    if (m_observer) {
        m_observer->ChildrenRemoved();
    }
}

TreeNode& FolderTree::AppendChild(TreeNode* parent, std::unique_ptr<TreeNode> child) {
    const std::size_t end = ChildrenOf(parent).size();
    return InsertChild(parent, end, std::move(child));
}

TreeNode& FolderTree::InsertChild(TreeNode* parent, std::size_t at,
                                  std::unique_ptr<TreeNode> child) {
    auto& children = parent == nullptr ? m_roots : parent->Children;
    child->Parent = parent;
    at = std::min(at, children.size());
    if (m_observer) {
        m_observer->ChildrenAboutToBeInserted(parent, at, at);
    }
    TreeNode& inserted =
        **children.insert(children.begin() + static_cast<std::ptrdiff_t>(at), std::move(child));
    if (m_observer) {
        m_observer->ChildrenInserted();
    }
    return inserted;
}

TreeNode& FolderTree::InsertNode(TreeNode* parent, std::size_t at, std::string key,
                                 std::string text, int image) {
    return InsertChild(parent, at, MakeNode(std::move(key), std::move(text), image));
}

void FolderTree::AddPlaceholder(TreeNode& node) {
    auto placeholder =
        MakeNode(std::string(kSpacer) + node.Key, std::string(kSpacer), kImagePlaceholder);
    placeholder->Parent = &node;
    node.Children.push_back(std::move(placeholder));
}

void FolderTree::InitializeDrives(const DriveList& drives) {
    RemoveChildren(nullptr, 0, m_roots.size());
    for (const DriveRoot& drive : drives) {
        if (drive.Type == kDriveNotReady) {
            continue;
        }
        const int image = drive.HomeShortcut ? kImageHome : drive.Type;
        AddRoot(drive.Root, drive.Text.empty() ? drive.Root : drive.Text, image, true);
    }
}

TreeNode& FolderTree::AddRoot(std::string key, std::string text, int image, bool placeholder) {
    auto root = MakeNode(std::move(key), std::move(text), image);
    if (placeholder) {
        AddPlaceholder(*root);
    }
    return AppendChild(nullptr, std::move(root));
}

bool FolderTree::RemoveRootNode(std::string_view key) {
    TreeNode* root = FindRoot(key);
    if (root == nullptr) {
        return false;
    }
    RemoveChildren(nullptr, IndexOf(*root), 1);
    return true;
}

TreeNode* FolderTree::FindRoot(std::string_view key) const {
    for (const auto& root : m_roots) {
        if (root->Key == key) {
            return root.get();
        }
    }
    return nullptr;
}

void FolderTree::ExpandForChildren(TreeNode& node) {
    if (!node.IsReal() || !node.HasPlaceholder()) {
        return;
    }
    const bool hasSubfolders = FolderHasSubfolders(node.Key, m_lister);
    RemoveChildren(&node, 0, 1);
    if (hasSubfolders) {
        GetOneLevel(node.Key, node);
    }
}

void FolderTree::GetOneLevel(const std::string& path, TreeNode& node) {
    std::string folder = path;
    std::vector<std::string> dirs;
    std::vector<std::string> files;
    GetFolderEntries(folder, dirs, files, kFilterNone, m_lister);
    // The listing keeps the file system's order; a tree reads best in name order.
    std::sort(dirs.begin(), dirs.end(), [](const std::string& a, const std::string& b) {
        const int order = CompareNoCase(a, b);
        return order != 0 ? order < 0 : a < b;
    });
    if (dirs.empty()) {
        return;
    }
    std::vector<std::unique_ptr<TreeNode>> children;
    children.reserve(dirs.size());
    for (std::string& dir : dirs) {
        std::string key = folder + dir;
        auto child = MakeNode(std::move(key), std::move(dir), kImageFolder);
        child->Parent = &node;
        if (FolderHasSubfolders(child->Key, m_lister)) {
            AddPlaceholder(*child);
        }
        children.push_back(std::move(child));
    }
    const std::size_t first = node.Children.size();
    if (m_observer) {
        m_observer->ChildrenAboutToBeInserted(&node, first, first + children.size() - 1);
    }
    for (auto& child : children) {
        node.Children.push_back(std::move(child));
    }
    if (m_observer) {
        m_observer->ChildrenInserted();
    }
}

std::string FolderTree::OpenFolder(TreeNode& node) {
    if (node.IsReal() && node.Children.empty()) {
        GetOneLevel(node.Key, node);
    }
    return node.Key;
}

TreeNode* FolderTree::ExpandToPath(std::string path) {
    if (IsRealPath(path)) {
        return ExpandToPathReal(std::move(path));
    }
    return ExpandToPathVirtual(path);
}

TreeNode* FolderTree::RootHolding(std::string_view path) const {
    // The drive that holds the path: the root with the longest mount point above it. The home
    // shortcut is not a drive.
    TreeNode* best = nullptr;
    for (const auto& root : m_roots) {
        if (root->Image == kImageHome || !root->IsReal() || !KeyHolds(root->Key, path)) {
            continue;
        }
        if (best == nullptr || root->Key.size() > best->Key.size()) {
            best = root.get();
        }
    }
    return best;
}

TreeNode* FolderTree::ExpandToPathReal(std::string path) {
    while (path.size() > 1 && path.back() == '/') {
        path.pop_back();
    }
    while (path != "/" && !m_lister.IsFolder(path)) {
        std::string parent(ParentPath(path));
        path = parent.empty() ? std::string(1, '/') : std::move(parent);
    }
    TreeNode* node = RootHolding(path);
    if (node == nullptr) {
        return nullptr;
    }
    std::string_view rest = std::string_view(path).substr(node->Key == "/" ? 1 : node->Key.size());
    while (!rest.empty()) {
        const std::size_t slash = rest.find('/');
        const std::string_view component = rest.substr(0, slash);
        rest = slash == std::string_view::npos ? std::string_view() : rest.substr(slash + 1);
        if (component.empty()) {
            continue;
        }
        ExpandForChildren(*node);
        TreeNode* next = nullptr;
        for (const auto& child : node->Children) {
            if (!child->IsPlaceholder() && child->Text == component) {
                next = child.get();
                break;
            }
        }
        if (next == nullptr) {
            break;
        }
        node = next;
    }
    m_selected = node;
    return node;
}

TreeNode* FolderTree::ExpandToPathVirtual(const std::string& path) {
    TreeNode* node = m_virtualRoad ? m_virtualRoad(*this, path) : nullptr;
    if (node != nullptr) {
        m_selected = node;
    }
    return node;
}

TreeNode* FolderTree::UpLevel() {
    if (m_selected == nullptr || m_selected->Parent == nullptr) {
        return nullptr;
    }
    m_selected = m_selected->Parent;
    return m_selected;
}

}  // namespace jk
