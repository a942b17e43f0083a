#include "browse/ui/FolderTreeModel.h"

#include <algorithm>
#include <utility>

#include <QApplication>
#include <QPainter>
#include <QPixmap>
#include <QStyle>

#include "browse/DriveRoot.h"

namespace jk {
namespace {

QString ToQString(const std::string& text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

struct IconSource {
    int image;
    const char* themeName;
    QStyle::StandardPixmap fallback;
};

// The desktop theme's icon for each image number, else the style's own.
constexpr IconSource kIconSources[] = {
    {kDriveFixed, "drive-harddisk", QStyle::SP_DriveHDIcon},
    {2, "media-floppy", QStyle::SP_DriveFDIcon},
    {kDriveOptical, "drive-optical", QStyle::SP_DriveCDIcon},
    {kDriveNetwork, "folder-remote", QStyle::SP_DriveNetIcon},
    {kDriveRemovable, "drive-removable-media", QStyle::SP_DriveFDIcon},
    {kImageFolder, "folder", QStyle::SP_DirIcon},
    {kImagePlaceholder, "folder", QStyle::SP_DirIcon},
    {kImageVirtual, "media-optical", QStyle::SP_DriveDVDIcon},
    {kImageHome, "user-home", QStyle::SP_DirHomeIcon},
};

// A present volume's icon: the disc with the theme's "mounted" emblem in its corner.
QIcon PresentIcon(const QIcon& disc) {
    const QIcon emblem = QIcon::fromTheme(QStringLiteral("emblem-mounted"),
                                          QIcon::fromTheme(QStringLiteral("emblem-default")));
    QIcon icon;
    for (const int size : {16, 22, 24, 32, 48}) {
        QPixmap pixmap = disc.pixmap(size, size);
        if (!emblem.isNull()) {
            QPainter painter(&pixmap);
            const int corner = size / 2;
            painter.drawPixmap(size - corner, size - corner, emblem.pixmap(corner, corner));
        } else {
            // No emblem in the theme: a green dot says the same.
            QPainter painter(&pixmap);
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setPen(Qt::white);
            painter.setBrush(QColor(0x2e, 0xa0, 0x43));
            const int dot = std::max(6, size / 3);
            painter.drawEllipse(size - dot - 1, size - dot - 1, dot, dot);
        }
        icon.addPixmap(pixmap);
    }
    return icon;
}

}  // namespace

FolderTreeModel::FolderTreeModel(FolderTree& tree, QObject* parent)
    : QAbstractItemModel(parent), m_tree(tree) {
    const QStyle* style = QApplication::style();
    for (const IconSource& source : kIconSources) {
        const QIcon fallback = style ? style->standardIcon(source.fallback) : QIcon();
        m_icons[static_cast<std::size_t>(source.image)] =
            QIcon::fromTheme(QLatin1String(source.themeName), fallback);
    }
    m_presentIcon = PresentIcon(m_icons[kImageVirtual]);
    m_tree.SetObserver(this);
}

void FolderTreeModel::SetPresentVolumes(const std::vector<PresentVolume>& present) {
    std::map<std::string, std::string> now;
    for (const PresentVolume& volume : present) {
        now.emplace(volume.Name, volume.MountRoot);
    }
    if (now == m_present) {
        return;
    }
    m_present = std::move(now);
    const auto& roots = m_tree.Roots();
    for (std::size_t row = 0; row < roots.size(); ++row) {
        if (roots[row]->Image == kImageVirtual) {
            const QModelIndex at = index(static_cast<int>(row), 0);
            Q_EMIT dataChanged(at, at, {Qt::DecorationRole, Qt::ToolTipRole});
        }
    }
}

FolderTreeModel::~FolderTreeModel() {
    m_tree.SetObserver(nullptr);
}

std::size_t FolderTreeModel::HiddenBefore(const TreeNode* parent) const {
    return parent != nullptr && parent->HasPlaceholder() ? 1 : 0;
}

TreeNode* FolderTreeModel::NodeOf(const QModelIndex& index) const {
    if (!index.isValid() || index.model() != this) {
        return nullptr;
    }
    return static_cast<TreeNode*>(index.internalPointer());
}

QModelIndex FolderTreeModel::IndexOf(const TreeNode* node) const {
    if (node == nullptr || node->IsPlaceholder()) {
        return {};
    }
    const std::size_t position = m_tree.IndexOf(*node) - HiddenBefore(node->Parent);
    return createIndex(static_cast<int>(position), 0, const_cast<TreeNode*>(node));
}

QModelIndex FolderTreeModel::index(int row, int column, const QModelIndex& parent) const {
    if (!hasIndex(row, column, parent)) {
        return {};
    }
    const TreeNode* parentNode = NodeOf(parent);
    const auto& children = m_tree.ChildrenOf(parentNode);
    const std::size_t position = static_cast<std::size_t>(row) + HiddenBefore(parentNode);
    return createIndex(row, column, children[position].get());
}

QModelIndex FolderTreeModel::parent(const QModelIndex& child) const {
    const TreeNode* node = NodeOf(child);
    return node != nullptr ? IndexOf(node->Parent) : QModelIndex();
}

int FolderTreeModel::rowCount(const QModelIndex& parent) const {
    if (parent.column() > 0) {
        return 0;
    }
    const TreeNode* node = NodeOf(parent);
    return static_cast<int>(m_tree.ChildrenOf(node).size() - HiddenBefore(node));
}

int FolderTreeModel::columnCount(const QModelIndex& parent) const {
    return parent.column() > 0 ? 0 : 1;
}

bool FolderTreeModel::hasChildren(const QModelIndex& parent) const {
    // A placeholder counts: the node shows that it can be opened before anything is read.
    return parent.column() <= 0 && !m_tree.ChildrenOf(NodeOf(parent)).empty();
}

QVariant FolderTreeModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || !checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const TreeNode* node = NodeOf(index);
    switch (role) {
        case Qt::DisplayRole:
            return ToQString(node->Text);
        case Qt::DecorationRole:
            if (node->Parent == nullptr && node->Image == kImageVirtual &&
                m_present.count(node->Key) != 0) {
                return m_presentIcon;
            }
            return IconOf(node->Image);
        case Qt::ToolTipRole:
            if (node->Parent == nullptr && node->Image == kImageVirtual) {
                const auto present = m_present.find(node->Key);
                if (present != m_present.end()) {
                    return ToQString(InsertedTooltip(present->second));
                }
            }
            return {};
        case KeyRole:
            return ToQString(node->Key);
        default:
            return {};
    }
}

Qt::ItemFlags FolderTreeModel::flags(const QModelIndex& index) const {
    if (!index.isValid() || !checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return Qt::NoItemFlags;
    }
    return Qt::ItemIsSelectable | Qt::ItemIsEnabled;
}

bool FolderTreeModel::canFetchMore(const QModelIndex& parent) const {
    const TreeNode* node = NodeOf(parent);
    return node != nullptr && node->IsReal() && node->HasPlaceholder();
}

void FolderTreeModel::fetchMore(const QModelIndex& parent) {
    TreeNode* node = NodeOf(parent);
    if (node == nullptr) {
        return;
    }
    if (m_announcing > 0) {
        m_waitingFetches.emplace_back(parent);
        return;
    }
    m_tree.ExpandForChildren(*node);
}

void FolderTreeModel::EndAnnouncing() {
    if (--m_announcing == 0 && !m_waitingFetches.empty()) {
        RunWaitingFetches();
    }
}

void FolderTreeModel::RunWaitingFetches() {
    // This runs at the tail of the tree's announcement, before the tree routine that made it
    // returns; that holds because each routine announces as its last step and a fetch touches
    // only the fetched node's children. The fetches announce changes of their own and may
    // queue more; the outer call takes those too.
    if (m_fetching) {
        return;
    }
    m_fetching = true;
    while (!m_waitingFetches.empty()) {
        const QPersistentModelIndex waiting = m_waitingFetches.front();
        m_waitingFetches.erase(m_waitingFetches.begin());
        if (canFetchMore(waiting)) {
            m_tree.ExpandForChildren(*NodeOf(waiting));
        }
    }
    m_fetching = false;
}

QIcon FolderTreeModel::IconOf(int image) const {
    if (image < 0 || static_cast<std::size_t>(image) >= m_icons.size()) {
        return m_icons[kImageFolder];
    }
    return m_icons[static_cast<std::size_t>(image)];
}

void FolderTreeModel::ChildrenAboutToBeRemoved(const TreeNode* parent, std::size_t first,
                                               std::size_t last) {
    const std::size_t hidden = HiddenBefore(parent);
    ++m_announcing;
    if (last < hidden) {
        // The placeholder was never a row, but the node may be left with no children: a view
        // must lay it out again to drop its expand mark.
        m_hiddenRemoval = true;
        m_hiddenRemovalParent = IndexOf(parent);
        Q_EMIT layoutAboutToBeChanged({m_hiddenRemovalParent});
        return;
    }
    first = first < hidden ? 0 : first - hidden;
    beginRemoveRows(IndexOf(parent), static_cast<int>(first), static_cast<int>(last - hidden));
}

void FolderTreeModel::ChildrenRemoved() {
    if (std::exchange(m_hiddenRemoval, false)) {
        const QPersistentModelIndex parent = std::exchange(m_hiddenRemovalParent, {});
        Q_EMIT layoutChanged({parent});
    } else {
        endRemoveRows();
    }
    EndAnnouncing();
}

void FolderTreeModel::ChildrenAboutToBeInserted(const TreeNode* parent, std::size_t first,
                                                std::size_t last) {
    const std::size_t hidden = HiddenBefore(parent);
    first = first < hidden ? 0 : first - hidden;
    last = last < hidden ? 0 : last - hidden;
    ++m_announcing;
    beginInsertRows(IndexOf(parent), static_cast<int>(first), static_cast<int>(last));
}

void FolderTreeModel::ChildrenInserted() {
    endInsertRows();
    EndAnnouncing();
}

}  // namespace jk
