// The folder tree and the walks: a click lists a folder in the files pane through the cache,
// the Go list and "Up one level", "Jump to...", the recursions into the playlist with their
// progress window, and what a drop brings into the playlist.

#include <QApplication>
#include <QInputDialog>
#include <QMenuBar>
#include <QMimeData>
#include <QToolBar>
#include <QTreeView>
#include <QUrl>

#include "app/Session.h"
#include "app/SongLookup.h"
#include "app/ui/ListPane.h"
#include "app/ui/LoopTurns.h"
#include "app/ui/MainWindow.h"
#include "app/ui/ScanFeeder.h"
#include "app/ui/ScanStatus.h"
#include "browse/FolderScan.h"
#include "browse/FolderTree.h"
#include "browse/ScanAddSong.h"
#include "browse/VirtualTree.h"
#include "browse/ui/FolderTreeModel.h"
#include "catalogue/VBaseFile.h"
#include "listing/RowCopy.h"
#include "listing/RowEditing.h"
#include "listing/RowFind.h"
#include "platform/DirectoryListing.h"
#include "platform/FileOperations.h"
#include "playback/RecentLists.h"
#include "playback/ui/PlaylistModel.h"
#include "util/FileIo.h"
#include "util/PathHelpers.h"
#include "util/Text.h"

namespace jk {

namespace {

bool IsListFile(const QString& path) {
    return path.endsWith(QStringLiteral(".m3u"), Qt::CaseInsensitive);
}

}  // namespace

void Main::InitializeTree() {
    m_tree->InitializeDrives(m_session.Drives);
    AddVirtualRoots(*m_tree, m_session.VirtualTrees);
}

void Main::SetBusy(bool busy) {
    m_busy = busy;
    // Nothing that could start a second walk or change the panes under it: the menus, the
    // toolbar and the tree wait; the panes still scroll.
    menuBar()->setEnabled(!busy);
    m_toolbar->setEnabled(!busy);
    m_treeView->setEnabled(!busy);
    m_playlistPane->setAcceptDrops(!busy);
}

ScanSetup Main::MakeScanSetup(SongLookup& ctx, ScanFeeder& feeder) {
    ScanSetup setup;
    setup.Lister = m_lister.get();
    setup.FilterMode = m_session.Settings.FilterMode;
    setup.Lookup = &ctx;
    setup.Progress = feeder.Progress();
    return setup;
}

void Main::TreeClicked(const QModelIndex& index) {
    TreeNode* node = m_treeModel->NodeOf(index);
    if (node == nullptr) {
        return;
    }
    m_tree->Select(node);
    const std::string path = m_tree->OpenFolder(*node);
    if (!node->IsReal()) {
        ListVirtualFolder(path);  // catalogued discs list through their own road
        return;
    }
    if (m_busy) {
        // A listing runs: it stops, and this folder is listed after it.
        m_pendingFolder = path;
        m_abortListing = true;
        return;
    }
    ListFolder(path);
}

void Main::ListFolder(std::string path) {
    if (path.empty() || m_busy) {
        return;
    }
    SetPanelText(QStringLiteral("Reading ") + QString::fromStdString(path) + QStringLiteral("..."));
    m_filesModel->ChangeAll([](RowList& rows) { rows.clear(); });
    m_abortListing = false;
    m_busy = true;
    m_treeView->setEnabled(true);  // a click on another folder takes over
    SongLookup lookup = MakeSongLookup(m_session);
    ScanFeeder feeder(
        *m_filesModel,
        [this](const ScanProgress& progress) {
            SetPanelText(QString::fromUtf8(progress.Status.data(),
                                           static_cast<qsizetype>(progress.Status.size())));
        },
        [this] { return m_abortListing; });
    GetFolderNow(path, feeder.Batch(), MakeScanSetup(lookup, feeder));
    feeder.Flush();
    m_busy = false;
    m_lastScanGapMs = feeder.LongestGapMs();
    m_currentFolder = path;
    m_session.Settings.LastPath = path;
    PathQueue(std::span(m_session.Settings.GoPaths).subspan(1), path);
    UpdateGoList();
    SortIfSorted(*m_filesPane);
    m_filesPane->scrollToTop();
    SetPanelText({});
    ListStats();
    if (!m_pendingFolder.empty()) {
        const std::string next = std::exchange(m_pendingFolder, {});
        ListFolder(next);
    }
}

void Main::SelectTreeNode(const std::string& path) {
    TreeNode* node = m_tree->ExpandToPath(path);
    const QModelIndex index = m_treeModel->IndexOf(node);
    if (!index.isValid()) {
        return;
    }
    for (QModelIndex up = index.parent(); up.isValid(); up = up.parent()) {
        m_treeView->expand(up);
    }
    m_treeView->setCurrentIndex(index);
    m_treeView->scrollTo(index);
}

void Main::OpenFolder(const std::string& path) {
    if (path.empty()) {
        return;
    }
    SelectTreeNode(path);
    // The folder itself, or the nearest folder above it that is still there.
    TreeNode* node = m_tree->Selected();
    if (node != nullptr && node->IsReal()) {
        ListFolder(node->Key);
    } else if (node != nullptr && !IsRealPath(path)) {
        ListVirtualFolder(node->Key);
    } else if (IsRealPath(path) && FolderExists(path)) {
        ListFolder(path);
    }
}

void Main::RelistCurrentFolder() {
    if (m_currentFolder.empty()) {
        return;
    }
    if (IsRealPath(m_currentFolder)) {
        ListFolder(m_currentFolder);
    } else {
        ListVirtualFolder(m_currentFolder);
    }
}

void Main::UpLevel_Click() {
    TreeNode* node = m_tree->UpLevel();
    if (node == nullptr) {
        return;
    }
    const QModelIndex index = m_treeModel->IndexOf(node);
    m_treeView->setCurrentIndex(index);
    m_treeView->scrollTo(index);
    if (node->IsReal()) {
        ListFolder(node->Key);
    }
}

void Main::LastPath_Click(int index) {
    if (index < 0 || index >= static_cast<int>(kPathQueueLength)) {
        return;
    }
    const std::string path = m_session.Settings.GoPaths[static_cast<std::size_t>(index) + 1];
    OpenFolder(path);
}

void Main::JumpTo_Click() {
    // A folder's path opens it; any other text finds the next song that holds it.
    Settings& settings = m_session.Settings;
    QStringList history;
    for (std::size_t i = 1; i < settings.Jumps.size(); ++i) {
        if (!settings.Jumps[i].empty()) {
            history.append(QString::fromStdString(settings.Jumps[i]));
        }
    }
    bool ok = false;
    const QString text = QInputDialog::getItem(
        this, QStringLiteral("Jump to"),
        QStringLiteral("Folder, or part of a song's title, artist, album or file name:"), history,
        0, true, &ok);
    const std::string wanted(Trim(text.toStdString()));
    if (!ok || wanted.empty()) {
        return;
    }
    QueuePath(std::span(settings.Jumps).subspan(1), wanted);
    if (IsRealPath(wanted) && FolderExists(wanted)) {
        OpenFolder(wanted);
        return;
    }
    ListPane& pane = ActivePane();
    const int from = pane.currentIndex().isValid() ? pane.currentIndex().row() + 1 : 0;
    const auto found = FindRow(pane.Model().Rows(), wanted, static_cast<std::size_t>(from));
    if (!found) {
        SetPanelText(
            QStringLiteral("Nothing found for \"%1\"").arg(QString::fromStdString(wanted)));
        return;
    }
    const QModelIndex index = pane.Model().index(static_cast<int>(*found), 0);
    pane.setCurrentIndex(index);
    pane.selectionModel()->select(index,
                                  QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    pane.scrollTo(index, QAbstractItemView::PositionAtCenter);
    pane.setFocus();
}

void Main::RunWalk(const QString& title, const WalkFn& walk) {
    if (m_busy) {
        return;
    }
    m_playlistPane->SelectionToRows();
    m_scanStatus->Begin(title);
    m_scanStatus->show();
    SetBusy(true);
    SetPanelText(QString::fromUtf8(kRecursingStatus.data(),
                                   static_cast<qsizetype>(kRecursingStatus.size())));
    SongLookup lookup = MakeSongLookup(m_session);
    ScanFeeder feeder(
        *m_playlistModel, [this](const ScanProgress& progress) { m_scanStatus->Show(progress); },
        [this] { return m_scanStatus->AbortAsked() || m_abortListing; });
    const ScanResult result = walk(feeder.Batch(), MakeScanSetup(lookup, feeder));
    feeder.Flush();
    m_scanStatus->hide();
    // The rows found so far stay, also after Abort.
    if (result.Added > 0) {
        SortIfSorted(*m_playlistPane);
        MarkPlaylistChanged();
        m_playlistPane->scrollToTop();
        // The cache of a large walk takes longer to save than a slice: it is saved in slices,
        // the window still busy so that nothing changes the cache in between.
        SetPanelText(QString::fromUtf8(kSavingCacheStatus.data(),
                                       static_cast<qsizetype>(kSavingCacheStatus.size())));
        SaveSessionCacheInTurns(m_session, feeder.Turns());
    }
    m_lastScanGapMs = feeder.LongestGapMs();
    SetPanelText({});
    SetBusy(false);
    m_abortListing = false;
    ListStats();
}

void Main::RecurseDir_Click() {
    const std::string path = m_currentFolder;
    if (path.empty()) {
        return;
    }
    if (!IsRealPath(path)) {
        RecurseDirVirtual_Click(path);
        return;
    }
    RunWalk(QStringLiteral("Recurse folder"), [&path](RowList& rows, const ScanSetup& setup) {
        return RecurseDirReal(path, rows, setup);
    });
}

void Main::RecurseTotal_Click() {
    RunWalk(QStringLiteral("Recurse My Computer"), [this](RowList& rows, const ScanSetup& setup) {
        return RecurseTotal(m_session.Drives, rows, setup);
    });
}

bool Main::HandleDrop(const QMimeData& mime, int row) {
    if (m_busy) {
        return false;
    }
    const std::size_t at = row < 0 ? m_session.Playlist.Rows.size() : static_cast<std::size_t>(row);
    if (mime.hasFormat(PlaylistModel::kRowsMimeType)) {
        const QByteArray rows = mime.data(PlaylistModel::kRowsMimeType);
        const QByteArray source = rows.left(rows.indexOf(':'));
        if (source == QByteArray::number(reinterpret_cast<quintptr>(m_playlistModel))) {
            // Within the playlist: the dragged rows move to the drop row.
            m_playlistPane->SelectionToRows();
            std::size_t first = 0;
            m_playlistModel->Reorder([at, &first](RowList& list) {
                first = MoveSelectedTo(list, at);
                return true;
            });
            m_playlistPane->RowsToSelection();
            m_session.Settings.Listview2Sorted = 0;
            m_playlistPane->ShowSortIndicator(false, 0, false);
            MarkPlaylistChanged();
            return true;
        }
        if (source == QByteArray::number(reinterpret_cast<quintptr>(m_filesModel))) {
            RowList added;
            for (const QByteArray& number : rows.mid(rows.indexOf(':') + 1).split(' ')) {
                bool ok = false;
                const int index = number.toInt(&ok);
                if (ok && index >= 0 && static_cast<std::size_t>(index) < m_fileRows.size()) {
                    added.push_back(PlaylistRowOf(m_fileRows[static_cast<std::size_t>(index)]));
                }
            }
            m_playlistModel->InsertRows(at, std::move(added));
            MarkPlaylistChanged();
            return true;
        }
    }
    if (mime.hasUrls()) {
        AddDroppedFiles(mime.urls(), row);
        return true;
    }
    return false;
}

void Main::AddDroppedFiles(const QList<QUrl>& urls, int row) {
    std::vector<std::string> songs;
    std::vector<std::string> folders;
    for (const QUrl& url : urls) {
        if (!url.isLocalFile()) {
            continue;
        }
        const QString path = url.toLocalFile();
        if (IsListFile(path) && urls.size() == 1) {
            // A list dropped on the window opens, as File > Open would.
            if (ReadyToDropList()) {
                OpenListFile(path.toStdString());
            }
            return;
        }
        (FolderExists(path.toStdString()) ? folders : songs).push_back(path.toStdString());
    }
    if (!songs.empty()) {
        SongLookup lookup = MakeSongLookup(m_session);
        RowList added;
        for (const std::string& song : songs) {
            RowList one;
            if (ScanAddSong(song, one, m_session.Settings.FilterMode, lookup)) {
                added.push_back(PlaylistRowOf(one.front()));
            }
        }
        const std::size_t at =
            row < 0 ? m_session.Playlist.Rows.size() : static_cast<std::size_t>(row);
        if (!added.empty()) {
            m_playlistModel->InsertRows(at, std::move(added));
            MarkPlaylistChanged();
        }
    }
    for (const std::string& folder : folders) {
        RunWalk(QStringLiteral("Adding folder"), [&folder](RowList& rows, const ScanSetup& setup) {
            return RecurseDirReal(folder, rows, setup);
        });
    }
}

}  // namespace jk
