#pragma once

// The folder tree as a view shows it: the core's FolderTree itself, listened to through its
// observer. A node still holding its placeholder shows as a closed folder with no rows; opening
// it in the view reads its sub-folders (fetchMore), so nothing is read before the user asks.

#include <array>
#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include <QAbstractItemModel>
#include <QIcon>
#include <QPersistentModelIndex>

#include "browse/FolderTree.h"
#include "catalogue/DiscPresence.h"

namespace jk {

class FolderTreeModel final : public QAbstractItemModel, private TreeObserver {
    Q_OBJECT

public:
    enum Role {
        // The node's key: a real node's path, or a virtual node's name (QString).
        KeyRole = Qt::UserRole + 1,
    };

    // Installs itself as the tree's observer for its lifetime; `tree` must outlive the model.
    explicit FolderTreeModel(FolderTree& tree, QObject* parent = nullptr);
    ~FolderTreeModel() override;

    QModelIndex index(int row, int column,
                      const QModelIndex& parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    bool hasChildren(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool canFetchMore(const QModelIndex& parent) const override;
    void fetchMore(const QModelIndex& parent) override;

    // The catalogued volumes whose disc is inserted now: their roots show an emblem and the
    // tooltip "Inserted at MOUNT". Replaces the previous set.
    void SetPresentVolumes(const std::vector<PresentVolume>& present);

    // The node behind an index; null for the invisible top (and for an index of another model).
    TreeNode* NodeOf(const QModelIndex& index) const;
    // The index of a node of the tree (the one ExpandToPath reached, say); invalid for null
    // and for a placeholder, which has no row.
    QModelIndex IndexOf(const TreeNode* node) const;

private:
    void ChildrenAboutToBeRemoved(const TreeNode* parent, std::size_t first,
                                  std::size_t last) override;
    void ChildrenRemoved() override;
    void ChildrenAboutToBeInserted(const TreeNode* parent, std::size_t first,
                                   std::size_t last) override;
    void ChildrenInserted() override;

    // Children of `parent` before its first row: 1 while it holds its placeholder.
    std::size_t HiddenBefore(const TreeNode* parent) const;
    QIcon IconOf(int image) const;
    void EndAnnouncing();
    void RunWaitingFetches();

    FolderTree& m_tree;
    // Set while the tree drops a placeholder, a change the view never saw as a row.
    bool m_hiddenRemoval = false;
    QPersistentModelIndex m_hiddenRemovalParent;
    // A fetch asked for while a change is announced (from a slot of a view or checker) waits
    // until the announcement is over, so that changes never nest.
    int m_announcing = 0;
    bool m_fetching = false;
    std::vector<QPersistentModelIndex> m_waitingFetches;
    std::array<QIcon, 10> m_icons;
    QIcon m_presentIcon;
    std::map<std::string, std::string> m_present;  // volume name -> its mount root
};

}  // namespace jk
