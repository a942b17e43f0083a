#pragma once

// The folder tree without its window: one root per drive (and the home folder as a shortcut,
// and later one per catalogued disc), real folders filled lazily one level at a time behind a
// placeholder child. Keys of real nodes are their paths; a virtual node's key never begins
// with "/". A window shows it through an item model that listens to the observer below.

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "browse/DriveRoot.h"
#include "browse/FolderLister.h"

namespace jk {

// Image numbers beyond the drive types (which are the images of drive roots).
inline constexpr int kImageFolder = 6;
inline constexpr int kImagePlaceholder = 7;
inline constexpr int kImageVirtual = 8;
inline constexpr int kImageHome = 9;

// The key and text of the placeholder child; its key is this plus the parent's key.
inline constexpr std::string_view kSpacer = "spacer";

struct TreeNode {
    std::string Key;
    std::string Text;
    int Image = kImageFolder;
    TreeNode* Parent = nullptr;
    std::vector<std::unique_ptr<TreeNode>> Children;

    bool IsPlaceholder() const;
    // A node of the real file system (its key is a path).
    bool IsReal() const;
    // True while the node holds only its placeholder: its folders are not read yet.
    bool HasPlaceholder() const;
};

// Told of every change in the tree's shape, so an item model can pass it on. `parent` is null
// for the roots; ranges are 0-based and inclusive.
class TreeObserver {
public:
    virtual ~TreeObserver() = default;
    virtual void ChildrenAboutToBeRemoved(const TreeNode* parent, std::size_t first,
                                          std::size_t last) = 0;
    virtual void ChildrenRemoved() = 0;
    virtual void ChildrenAboutToBeInserted(const TreeNode* parent, std::size_t first,
                                           std::size_t last) = 0;
    virtual void ChildrenInserted() = 0;
};

class FolderTree {
public:
    // Finds a virtual path's node (a catalogued disc's folders), or null.
    using VirtualRoad = std::function<TreeNode*(FolderTree&, const std::string& path)>;

    explicit FolderTree(FolderLister& lister);

    void SetObserver(TreeObserver* observer) { m_observer = observer; }
    void SetVirtualRoad(VirtualRoad road) { m_virtualRoad = std::move(road); }

    const std::vector<std::unique_ptr<TreeNode>>& Roots() const { return m_roots; }
    // The children of `parent`, or the roots when it is null.
    const std::vector<std::unique_ptr<TreeNode>>& ChildrenOf(const TreeNode* parent) const;
    // The position of `node` among its siblings.
    std::size_t IndexOf(const TreeNode& node) const;

    // Removes every node, then adds a root for each drive whose type is not 0, each with a
    // placeholder child.
    void InitializeDrives(const DriveList& drives);
    // Adds a root at the end; with `placeholder`, it gets a placeholder child.
    TreeNode& AddRoot(std::string key, std::string text, int image, bool placeholder);
    // Inserts a node without a placeholder among the children of `parent` (the roots when it
    // is null) at `at`, clamped to their count.
    TreeNode& InsertNode(TreeNode* parent, std::size_t at, std::string key, std::string text,
                         int image);
    // Removes the root with this key and everything below it; false when there is none.
    bool RemoveRootNode(std::string_view key);
    TreeNode* FindRoot(std::string_view key) const;

    // Fills a real node's sub-folders one level down when it still holds its placeholder; a
    // folder without sub-folders loses its placeholder.
    void ExpandForChildren(TreeNode& node);
    // Adds the sub-folders of `path` below `node`, each with a placeholder when it has
    // sub-folders of its own.
    void GetOneLevel(const std::string& path, TreeNode& node);
    // The folder behind a click: a real node without children is filled first. Returns the
    // node's path.
    std::string OpenFolder(TreeNode& node);

    // Opens the tree down to `path` and selects the node reached. A real folder that has gone
    // is shortened to its nearest existing parent; a virtual path takes the virtual road.
    // Returns the node reached, or null.
    TreeNode* ExpandToPath(std::string path);
    TreeNode* ExpandToPathReal(std::string path);
    TreeNode* ExpandToPathVirtual(const std::string& path);

    TreeNode* Selected() const { return m_selected; }
    void Select(TreeNode* node) { m_selected = node; }
    // Selects the selected node's parent and returns it; a root has none, and nothing happens.
    TreeNode* UpLevel();

private:
    void RemoveChildren(TreeNode* parent, std::size_t first, std::size_t count);
    TreeNode& AppendChild(TreeNode* parent, std::unique_ptr<TreeNode> child);
    TreeNode& InsertChild(TreeNode* parent, std::size_t at, std::unique_ptr<TreeNode> child);
    void AddPlaceholder(TreeNode& node);
    TreeNode* RootHolding(std::string_view path) const;
    bool Holds(const TreeNode* ancestor, const TreeNode* node) const;

    FolderLister& m_lister;
    TreeObserver* m_observer = nullptr;
    VirtualRoad m_virtualRoad;
    std::vector<std::unique_ptr<TreeNode>> m_roots;
    TreeNode* m_selected = nullptr;
};

}  // namespace jk
