// The catalogued discs in the main window: their roots in the folder tree, a click on one of
// their folders listing its songs from the catalogue (no disc needed), and the recursions of
// catalogued folders into the playlist, with the progress window and Abort of a real walk.

#include <QTreeView>

#include "app/Session.h"
#include "app/ui/ListPane.h"
#include "app/ui/MainWindow.h"
#include "app/ui/ScanFeeder.h"
#include "app/ui/ScanStatus.h"
#include "browse/FolderScan.h"
#include "browse/FolderTree.h"
#include "browse/VirtualListing.h"
#include "browse/VirtualTree.h"
#include "browse/ui/FolderTreeModel.h"
#include "catalogue/VirtualFolders.h"
#include "catalogue/VirtualVolumes.h"
#include "playback/RecentLists.h"
#include "playback/ui/PlaylistModel.h"

namespace jk {

void Main::ListVirtualFolder(const std::string& key) {
    if (key.empty() || m_busy) {
        return;
    }
    const bool exact = m_session.Settings.ExactTimes != 0;
    m_filesModel->ChangeAll([this, &key, exact](RowList& rows) {
        GetVirtualFolder(m_session.Virtual.Volumes, key, rows, exact);
    });
    m_currentFolder = key;
    m_session.Settings.LastPath = key;
    SortIfSorted(*m_filesPane);
    m_filesPane->scrollToTop();
    ListStats();
}

void Main::AppendVirtualRows(const QString& title, std::size_t expected,
                             const VirtualStatusFn& statusOf, const VirtualFillFn& fill) {
    if (m_busy) {
        return;
    }
    // As a walk of real folders: the progress window with Abort, the window alive, the rows
    // found so far kept when aborted.
    m_playlistPane->SelectionToRows();
    m_scanStatus->Begin(title);
    m_scanStatus->show();
    SetBusy(true);
    ScanFeeder feeder(
        *m_playlistModel, [this](const ScanProgress& progress) { m_scanStatus->Show(progress); },
        [this] { return m_scanStatus->AbortAsked() || m_abortListing; });
    feeder.ExpectRows(expected);
    const ScanProgressFn report = feeder.Progress();
    std::string status;
    const std::size_t added = fill(feeder.Batch(), [&](std::size_t done, std::size_t total) {
        const VirtualPlace place = statusOf(done, total);
        status = ScanStatusText(place.Name, place.Songs);
        return report(
            ScanProgress{status, ScanProgressValue(place.Done, place.Songs), kScanProgressMaximum});
    });
    feeder.Flush();
    m_lastScanGapMs = feeder.LongestGapMs();
    m_scanStatus->hide();
    SetPanelText({});
    SetBusy(false);
    m_abortListing = false;
    if (added > 0) {
        SortIfSorted(*m_playlistPane);
        MarkPlaylistChanged();
        m_playlistPane->scrollToTop();
    }
    ListStats();
}

void Main::RecurseDirVirtual_Click(const std::string& key) {
    const bool exact = m_session.Settings.ExactTimes != 0;
    SetPanelText(QString::fromUtf8(kRecursingStatus.data(),
                                   static_cast<qsizetype>(kRecursingStatus.size())));
    // The folder the key names (the volume for its root), over all the songs below it.
    const VirtualKeyParts parts = SplitVirtualKey(key);
    std::string_view folder = parts.Folder;
    while (!folder.empty() && (folder.back() == '\\' || folder.back() == '/')) {
        folder.remove_suffix(1);
    }
    folder = folder.substr(folder.find_last_of("/\\") + 1);
    const std::string name(folder.empty() ? parts.Volume : folder);
    AppendVirtualRows(
        QStringLiteral("Recurse folder"), 0,
        [&name](std::size_t done, std::size_t total) {
            return VirtualPlace{name, total, done};
        },
        [this, &key, exact](RowList& rows, const RowProgress& progress) {
            return RecurseDirVirtual(m_session.Virtual.Volumes, key, rows, exact, progress);
        });
}

void Main::RecurseAllVirtual_Click() {
    SetPanelText(QString::fromUtf8(kRecursingAllVirtualStatus.data(),
                                   static_cast<qsizetype>(kRecursingAllVirtualStatus.size())));
    const bool exact = m_session.Settings.ExactTimes != 0;
    const VolumeTable& table = m_session.Virtual.Volumes;
    // The volume being listed, and how far into it, from the count of songs listed so far.
    const auto statusOf = [&table](std::size_t done, std::size_t) {
        for (const VirtualVolume& volume : table) {
            if (done <= volume.Count()) {
                return VirtualPlace{volume.Name, volume.Count(), done};
            }
            done -= volume.Count();
        }
        return VirtualPlace{};
    };
    AppendVirtualRows(QStringLiteral("Recurse virtual drives"),
                      static_cast<std::size_t>(TotalSongs(table)), statusOf,
                      [&table, exact](RowList& rows, const RowProgress& progress) {
                          return RecurseAllVirtual(table, rows, exact, progress);
                      });
}

void Main::RebuildVirtualRoots() {
    // A rename or removal leaves a root whose volume has gone: every virtual root goes.
    std::vector<std::string> old;
    for (const auto& root : m_tree->Roots()) {
        if (!root->IsReal()) {
            old.push_back(root->Key);
        }
    }
    for (const std::string& key : old) {
        m_tree->RemoveRootNode(key);
    }
    AddVirtualRoots(*m_tree, m_session.VirtualTrees);
}

void Main::SetPresentVolumes(const std::vector<PresentVolume>& present) {
    m_treeModel->SetPresentVolumes(present);
}

}  // namespace jk
