// The catalogued discs in the main window: their roots in the folder tree, a click on one of
// their folders listing its songs from the catalogue (no disc needed), and the recursions of
// catalogued folders into the playlist.

#include <QTreeView>

#include "app/Session.h"
#include "app/ui/ListPane.h"
#include "app/ui/MainWindow.h"
#include "browse/FolderTree.h"
#include "browse/VirtualListing.h"
#include "browse/VirtualTree.h"
#include "browse/ui/FolderTreeModel.h"
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

void Main::AppendVirtualRows(const std::function<std::size_t(RowList& rows)>& fill) {
    if (m_busy) {
        return;
    }
    SetBusy(true);
    RowList rows;
    const std::size_t added = fill(rows);
    m_playlistModel->AppendRows(std::move(rows));
    SetPanelText({});
    SetBusy(false);
    if (added > 0) {
        SortIfSorted(*m_playlistPane);
        MarkPlaylistChanged();
        m_playlistPane->scrollToTop();
    }
    ListStats();
}

void Main::RecurseDirVirtual_Click(const std::string& key) {
    const bool exact = m_session.Settings.ExactTimes != 0;
    AppendVirtualRows([this, &key, exact](RowList& rows) {
        return RecurseDirVirtual(m_session.Virtual.Volumes, key, rows, exact);
    });
}

void Main::RecurseAllVirtual_Click() {
    SetPanelText(QString::fromUtf8(kRecursingAllVirtualStatus.data(),
                                   static_cast<qsizetype>(kRecursingAllVirtualStatus.size())));
    const bool exact = m_session.Settings.ExactTimes != 0;
    AppendVirtualRows([this, exact](RowList& rows) {
        return RecurseAllVirtual(m_session.Virtual.Volumes, rows, exact);
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
