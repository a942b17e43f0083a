// The View menu and the window's layout: panes shown, grid lines, the order of the rows,
// columns, the splitters, always on top; the status bar's panels and the caption; and what the
// window keeps in the settings at shutdown.

#include <QAction>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QSplitter>
#include <QTreeView>

#include "app/PaneActions.h"
#include "app/Session.h"
#include "app/WindowPlacement.h"
#include "app/ui/ClipboardViewer.h"
#include "app/ui/ListPane.h"
#include "app/ui/MainWindow.h"
#include "listing/RowEditing.h"
#include "listing/RowStats.h"
#include "playback/ui/PlaylistModel.h"
#include "ui/common/QtText.h"
#include "util/PathHelpers.h"
#include "util/Text.h"

namespace jk {

void Main::ConnectPanes() {
    for (ListPane* pane : {m_filesPane, m_playlistPane}) {
        connect(pane, &ListPane::Focused, this, [this, pane] { m_activePane = pane; });
        connect(pane, &ListPane::DeletePressed, this, [this, pane] {
            if (!m_busy) {
                PaneDeletePressed(*pane);
            }
        });
        connect(pane, &ListPane::RowActivated, this, [this, pane](int row) {
            if (!m_busy) {
                PaneActivated(*pane, row);
            }
        });
        connect(pane, &ListPane::HeaderClicked, this, [this, pane](int column) {
            if (!m_busy) {
                HeaderClicked(*pane, column);
            }
        });
        connect(pane->selectionModel(), &QItemSelectionModel::selectionChanged, this,
                [this] { ListStats(); });
    }
    connect(m_filesPane, &ListPane::ContextMenuAsked, this,
            [this](const QPoint& at) { Menu("FilesMenu")->popup(at); });
    connect(m_playlistPane, &ListPane::ContextMenuAsked, this,
            [this](const QPoint& at) { Menu("SongsMenu")->popup(at); });
    connect(m_treeView, &QTreeView::clicked, this, &Main::TreeClicked);
    connect(m_treeView, &QTreeView::activated, this, &Main::TreeClicked);
    connect(m_treeView, &QTreeView::customContextMenuRequested, this, [this](const QPoint& at) {
        const QModelIndex index = m_treeView->indexAt(at);
        if (index.isValid()) {
            TreeClicked(index);
        }
        Menu("GetAll")->popup(m_treeView->viewport()->mapToGlobal(at));
    });
}

void Main::ShowGridLines(bool on) {
    m_filesPane->setShowGrid(on);
    m_playlistPane->setShowGrid(on);
    Action("ShowGridlines")->setChecked(on);
}

void Main::ApplyColumnOrders(const std::string& files, const std::string& playlist) {
    const Settings& settings = m_session.Settings;
    m_filesPane->ApplyColumnLayout(files, settings.ColumnWidthsA);
    m_playlistPane->ApplyColumnLayout(playlist, settings.ColumnWidthsB);
    m_filesPane->ShowSortIndicator(settings.Listview1Sorted != 0, settings.Listview1Sortkey,
                                   settings.Listview1Sortorder == 1);
    m_playlistPane->ShowSortIndicator(settings.Listview2Sorted != 0, settings.Listview2Sortkey,
                                      settings.Listview2Sortorder == 1);
}

void Main::SetViewChecks(bool files, bool folders, bool playlist) {
    const PaneVisibility shown = VisiblePanes(files ? 1 : 0, folders ? 1 : 0, playlist ? 1 : 0);
    Action("View_Files")->setChecked(shown.files);
    Action("View_Folders")->setChecked(shown.folders);
    Action("View_Playlist")->setChecked(shown.playlist);
    m_filesPane->setVisible(shown.files);
    m_treeView->setVisible(shown.folders);
    m_playlistPane->setVisible(shown.playlist);
}

void Main::StoreLayout(Settings& settings) const {
    m_filesPane->StoreColumnLayout(settings.ColumnOrderFiles, settings.ColumnWidthsA);
    m_playlistPane->StoreColumnLayout(settings.ColumnOrderPlaylist, settings.ColumnWidthsB);
    settings.ViewFiles = m_filesPane->isVisibleTo(this) ? 1 : 0;
    settings.ViewFolders = m_treeView->isVisibleTo(this) ? 1 : 0;
    settings.ViewPlaylist = m_playlistPane->isVisibleTo(this) ? 1 : 0;
    const bool widerPlaylist = settings.LayoutMode == 1;
    const QList<int> tree = (widerPlaylist ? m_inner : m_outer)->sizes();
    const QList<int> panes = (widerPlaylist ? m_outer : m_inner)->sizes();
    if (m_treeView->isVisibleTo(this) && !tree.isEmpty() && tree[0] > 0) {
        settings.SplitLeft = ToInt16Clamped(PixelsToTwips(tree[0]));
    }
    if (m_filesPane->isVisibleTo(this) && m_playlistPane->isVisibleTo(this) && !panes.isEmpty() &&
        panes[0] > 0) {
        settings.SplitTop = ToInt16Clamped(PixelsToTwips(panes[0]));
    }
}

void Main::ListStats() {
    const std::string folder =
        m_currentFolder.empty() ? std::string() : std::string(LastFolder(m_currentFolder));
    const std::string files = TotalsText(TotalsOf(m_fileRows));
    m_panels[1]->setText(folder.empty()
                             ? ToQString(files)
                             : ToQString(folder) + QStringLiteral(": ") + ToQString(files));
    m_panels[1]->setToolTip(ToQString(m_currentFolder));
    for (const std::size_t panel : {1, 2, 3}) {
        m_panels[panel]->setMinimumWidth(m_panels[panel]->sizeHint().width());
    }
    m_panels[2]->setText(QStringLiteral("Playlist: ") +
                         ToQString(TotalsText(TotalsOf(m_session.Playlist.Rows))));
    const int selected = static_cast<int>(ActivePane().selectionModel()->selectedRows().size());
    m_panels[3]->setText(selected > 1 ? QStringLiteral("%1 selected").arg(selected) : QString());
    m_panels[3]->setVisible(selected > 1);
}

void Main::ShowPlaylistCaption() {
    setWindowTitle(ToQString(PlaylistCaption(m_session)));
}

void Main::PlaylistFilledOutside() {
    m_playlistModel->Resync();
}

void Main::View_Folders_Click() {
    m_treeView->setVisible(Action("View_Folders")->isChecked());
}

void Main::View_Files_Click() {
    m_filesPane->setVisible(Action("View_Files")->isChecked());
}

void Main::View_Playlist_Click() {
    m_playlistPane->setVisible(Action("View_Playlist")->isChecked());
}

void Main::ShowGridlines_Click() {
    const bool on = Action("ShowGridlines")->isChecked();
    m_session.Settings.ShowGrid = on ? 1 : 0;
    ShowGridLines(on);
}

void Main::ReverseView_Click() {
    ListPane& pane = ActivePane();
    pane.SelectionToRows();
    const bool playlist = IsPlaylist(pane);
    if (!pane.Model().Reorder(ReverseAll)) {
        return;
    }
    pane.RowsToSelection();
    // A sorted pane now stands in the other order.
    Settings& settings = m_session.Settings;
    if ((playlist ? settings.Listview2Sorted : settings.Listview1Sorted) != 0) {
        std::int32_t& order = playlist ? settings.Listview2Sortorder : settings.Listview1Sortorder;
        order = order == 1 ? 0 : 1;
        pane.ShowSortIndicator(
            true, playlist ? settings.Listview2Sortkey : settings.Listview1Sortkey, order == 1);
    }
    if (playlist) {
        MarkPlaylistChanged();
    }
}

void Main::ResetView_Click() {
    Settings& settings = m_session.Settings;
    settings.SplitLeft = 0;
    settings.SplitTop = 0;
    PlaceSplitters();
    SetViewChecks(true, true, true);
}

void Main::ResetCols_Click() {
    m_filesPane->ResetColumns();
    m_playlistPane->ResetColumns();
}

void Main::CollapseAll_Click() {
    m_treeView->collapseAll();
}

void Main::OptimizeView_Click() {
    ActivePane().OptimizeColumns();
}

void Main::Optimize1_Click() {
    m_filesPane->OptimizeColumns();
}

void Main::Optimize2_Click() {
    m_playlistPane->OptimizeColumns();
}

void Main::ViewClipboard_Click() {
    m_clipboardViewer->Refresh();
    m_clipboardViewer->show();
    m_clipboardViewer->raise();
    m_clipboardViewer->activateWindow();
}

void Main::RefreshDir_Click() {
    RelistCurrentFolder();
}

void Main::OnTop_Click() {
    m_session.Settings.AlwaysOnTop = Action("OnTop")->isChecked() ? 1 : 0;
    SetTop();
}

}  // namespace jk
