// The Edit menu and the panes' pop-ups: cut, copy and paste of rows and files, adding and
// removing, sliding, the selection, deleting to the trash, shuffles, properties, and the
// panes' own keys, clicks and header sort.

#include <QMessageBox>

#include "app/FileTransferPlan.h"
#include "app/PaneActions.h"
#include "app/Session.h"
#include "app/ui/ClipboardViewer.h"
#include "app/ui/ListPane.h"
#include "app/ui/MainWindow.h"
#include "app/ui/PropertiesDialog.h"
#include "listing/RowClipboard.h"
#include "listing/RowCopy.h"
#include "listing/RowEditing.h"
#include "platform/FileOperations.h"
#include "playback/PlaylistCommands.h"
#include "playback/Shuffler.h"
#include "playback/ui/PlaylistModel.h"
#include "util/PathHelpers.h"

namespace jk {

ListPane& Main::ActivePane() {
    return m_activePane != nullptr ? *m_activePane : *m_filesPane;
}

bool Main::IsPlaylist(const ListPane& pane) const {
    return &pane == m_playlistPane;
}

// ---- Adding and removing ----

void Main::AddSong_Click() {
    AddSelected_Click();
}

void Main::AddSelected_Click() {
    m_filesPane->SelectionToRows();
    RowList added;
    AddToList(m_fileRows, added);
    if (added.empty()) {
        return;
    }
    m_playlistModel->AppendRows(std::move(added));
    SortIfSorted(*m_playlistPane);
    MarkPlaylistChanged();
}

void Main::GetDir_Click() {
    RowList added;
    jk::GetDir(m_fileRows, added);
    if (added.empty()) {
        return;
    }
    m_playlistModel->AppendRows(std::move(added));
    SortIfSorted(*m_playlistPane);
    MarkPlaylistChanged();
}

void Main::RemoveRowsOf(ListPane& pane) {
    pane.SelectionToRows();
    if (pane.Model().RemoveSelected() > 0 && IsPlaylist(pane)) {
        MarkPlaylistChanged();
    }
    ListStats();
}

void Main::removesong_Click() {
    RemoveRowsOf(ActivePane());
}

void Main::RemoveSelected_Click() {
    RemoveRowsOf(*m_playlistPane);
}

void Main::RemoveAll_Click() {
    if (m_session.Playlist.Rows.empty()) {
        return;
    }
    m_playlistModel->ChangeAll([](RowList& rows) { rows.clear(); });
    MarkPlaylistChanged();
}

void Main::CropList_Click() {
    m_playlistPane->SelectionToRows();
    std::size_t removed = 0;
    m_playlistModel->ChangeAll([&removed](RowList& rows) { removed = CropList(rows); });
    m_playlistPane->RowsToSelection();
    if (removed > 0) {
        MarkPlaylistChanged();
    }
}

// ---- Sliding ----

void Main::Slide(bool (*slide)(RowList&)) {
    m_playlistPane->SelectionToRows();
    if (m_playlistModel->Reorder(slide)) {
        m_session.Settings.Listview2Sorted = 0;
        m_playlistPane->ShowSortIndicator(false, 0, false);
        MarkPlaylistChanged();
    }
    m_playlistPane->RowsToSelection();
    const int row = m_playlistPane->CommandRow();
    if (row >= 0) {
        m_playlistPane->scrollTo(m_playlistModel->index(row, 0));
    }
}

void Main::Slide_up_Click() {
    Slide(SlideUp);
}
void Main::Slide_down_Click() {
    Slide(SlideDown);
}
void Main::Slide_top_Click() {
    Slide(SlideTop);
}
void Main::Slide_bottom_Click() {
    Slide(SlideBottom);
}
void Main::SlideUp1_Click() {
    Slide(SlideUp);
}
void Main::SlideDown1_Click() {
    Slide(SlideDown);
}
void Main::SlideTop_Click() {
    Slide(SlideTop);
}
void Main::SlideBottom_Click() {
    Slide(SlideBottom);
}

// ---- The selection ----

void Main::SelectAllIn(ListPane& pane) {
    pane.setFocus();
    pane.selectAll();
}

void Main::InvertIn(ListPane& pane) {
    pane.SelectionToRows();
    InvertSelection(pane.Model().Rows());
    pane.RowsToSelection();
}

void Main::SelectAll_Click() {
    SelectAllIn(ActivePane());
}
void Main::InvertSelection_Click() {
    InvertIn(ActivePane());
}
void Main::SelectAllFiles_Click() {
    SelectAllIn(*m_filesPane);
}
void Main::SelectAllSongs_Click() {
    SelectAllIn(*m_playlistPane);
}
void Main::ReverseFiles_Click() {
    InvertIn(*m_filesPane);
}
void Main::ReverseSongs_Click() {
    InvertIn(*m_playlistPane);
}

// ---- The clipboard of rows ----

void Main::CopyRowsOf(ListPane& pane, bool cut) {
    pane.SelectionToRows();
    if (SelectedCount(pane.Model().Rows()) == 0) {
        return;
    }
    if (cut && IsPlaylist(pane)) {
        // Cut songs leave the playlist; cut files stay listed until they are pasted elsewhere.
        m_playlistModel->ChangeAll([this](RowList& rows) { CutRows(rows, m_clipboard); });
        MarkPlaylistChanged();
    } else {
        CopyRows(pane.Model().Rows(), m_clipboard);
        m_clipboard.Cut = cut;
    }
    m_clipboardViewer->Refresh();
}

void Main::PasteRowsInto(ListPane& pane) {
    if (m_clipboard.Rows.empty()) {
        return;
    }
    pane.SelectionToRows();
    const std::size_t at = FirstSelected(pane.Model().Rows());
    RowList rows;
    for (const ListRow& row : m_clipboard.Rows) {
        rows.push_back(PlaylistRowOf(row));
        rows.back().SetSelected(true);  // what came in is selected
    }
    SelectNoRows(pane.Model().Rows());
    pane.Model().InsertRows(at, std::move(rows));
    pane.clearSelection();
    pane.RowsToSelection();
    if (IsPlaylist(pane)) {
        MarkPlaylistChanged();
    }
}

void Main::PasteFilesInto(const std::string& folder) {
    if (m_clipboard.Rows.empty() || folder.empty()) {
        return;
    }
    RowClipboard files = m_clipboard;
    SelectAllRows(files.Rows);
    RowList& rows = files.Rows;
    const TransferPlan plan = PlanTransfer(
        SelectedPaths(rows), folder, [](const std::string& path) { return PathExists(path); });
    std::vector<SkippedFile> failed = plan.skipped;
    std::vector<FileTransfer> done;
    for (const FileTransfer& transfer : plan.transfers) {
        const FileResult result = files.Cut ? MoveFileTo(transfer.from, transfer.to)
                                            : CopyFileTo(transfer.from, transfer.to);
        (result.ok ? done.push_back(transfer) : failed.push_back({transfer.from, result.error}));
    }
    if (files.Cut && !done.empty()) {
        // Moved files are found at their new place; the clipboard then copies them.
        RetargetRows(m_clipboard.Rows, done);
        m_clipboard.Cut = false;
        if (RetargetRows(m_session.Playlist.Rows, done) > 0) {
            m_playlistModel->RowsChanged(0, m_session.Playlist.Rows.size());
            MarkPlaylistChanged();
        }
        m_clipboardViewer->Refresh();
    }
    // The pasted files show in the folder listed, and moved ones leave it.
    if (!done.empty() && (files.Cut || folder + "/" == m_currentFolder)) {
        RelistCurrentFolder();
    }
    if (!failed.empty()) {
        QMessageBox::warning(
            this, QStringLiteral("Sorry..."),
            QString::fromStdString(FileFailuresMessage(files.Cut ? "moved" : "copied",
                                                       failed.size(), SkippedText(failed))
                                       .text));
    }
}

void Main::Cut_Click() {
    CopyRowsOf(ActivePane(), true);
}
void Main::Copy_Click() {
    CopyRowsOf(ActivePane(), false);
}
void Main::CutFile_Click() {
    CopyRowsOf(*m_filesPane, true);
}
void Main::CopyFile_Click() {
    CopyRowsOf(*m_filesPane, false);
}
void Main::CutSong_Click() {
    CopyRowsOf(*m_playlistPane, true);
}
void Main::CopySong_Click() {
    CopyRowsOf(*m_playlistPane, false);
}

void Main::Paste_Click() {
    // Into the playlist as songs; in the files pane as files into the folder listed there.
    if (IsPlaylist(ActivePane())) {
        PasteRowsInto(*m_playlistPane);
    } else {
        Pastefile_Click();
    }
}

void Main::PasteSong_Click() {
    PasteRowsInto(*m_playlistPane);
}

void Main::Pastefile_Click() {
    if (!m_currentFolder.empty() && IsRealPath(m_currentFolder)) {
        std::string folder = m_currentFolder;
        if (folder.size() > 1 && folder.back() == '/') {
            folder.pop_back();
        }
        PasteFilesInto(folder);
    }
}

void Main::PasteTo_Click() {
    PasteFilesInto(ChooseDialogPath(PathQuestion::Folder).toStdString());
}

// ---- Deleting ----

void Main::TrashSelected(ListPane& pane) {
    if (!DeleteEnabled(m_session.Settings.DelMode)) {
        return;
    }
    pane.SelectionToRows();
    const std::vector<std::string> paths = SelectedPaths(pane.Model().Rows());
    if (paths.empty()) {
        return;
    }
    if (DeleteAsks(m_session.Settings.DelMode)) {
        const UserMessage question = DeleteQuestion(paths.size(), BareName(paths.front()));
        if (QMessageBox::question(this, QString::fromStdString(question.title),
                                  QString::fromStdString(question.text)) != QMessageBox::Yes) {
            return;
        }
    }
    std::vector<std::string> gone;
    std::vector<SkippedFile> failed;
    for (const std::string& path : paths) {
        const FileResult result = MoveToTrash(path);
        (result.ok ? gone.push_back(path) : failed.push_back({path, result.error}));
    }
    // The files are gone from the pane they were deleted in; the playlist keeps its rows as
    // ghosts only when it was the pane.
    pane.Model().ChangeAll([&gone](RowList& rows) { DropRowsOf(rows, gone); });
    if (IsPlaylist(pane) && !gone.empty()) {
        MarkPlaylistChanged();
    }
    ListStats();
    if (!failed.empty()) {
        QMessageBox::warning(
            this, QStringLiteral("Sorry..."),
            QString::fromStdString(
                FileFailuresMessage("moved to the trash", failed.size(), SkippedText(failed))
                    .text));
    }
}

void Main::DeleteSong_Click() {
    TrashSelected(ActivePane());
}
void Main::Delete_Click() {
    TrashSelected(*m_filesPane);
}
void Main::DeleteSelectedSongs_Click() {
    TrashSelected(*m_playlistPane);
}

// ---- Shuffles ----

void Main::Shuffle(ListPane& pane, bool selectedOnly) {
    pane.SelectionToRows();
    const bool enhanced = UseEnhancedShuffle(m_session.Settings.QuickShuffle);
    pane.Model().Reorder([selectedOnly, enhanced](RowList& rows) {
        ShuffleRandom random;
        ShuffleListRows(rows, selectedOnly, enhanced, random);
        return true;
    });
    pane.RowsToSelection();
    if (IsPlaylist(pane)) {
        m_session.Settings.Listview2Sorted = 0;
        pane.ShowSortIndicator(false, 0, false);
    }
    // The files pane's selected shuffle marks the playlist changed too, as it always has.
    if (IsPlaylist(pane) || selectedOnly) {
        MarkPlaylistChanged();
    }
}

void Main::ShuffleSelected1_Click() {
    Shuffle(*m_filesPane, true);
}
void Main::ShuffleFilesOnly_Click() {
    Shuffle(*m_filesPane, false);
}
void Main::ShuffleSelected2_Click() {
    Shuffle(*m_playlistPane, true);
}
void Main::ShuffleOnly_Click() {
    Shuffle(*m_playlistPane, false);
}

// ---- Properties ----

void Main::UpdateRowsOfPath(const std::string& path) {
    // The song was read afresh into the cache: its rows in both panes show the new texts.
    for (PlaylistModel* model : {m_filesModel, m_playlistModel}) {
        RowList& rows = model->Rows();
        for (std::size_t i = 0; i < rows.size(); ++i) {
            if (rows[i].Get(Column::Filename) == path) {
                model->RowsChanged(i, i);
            }
        }
    }
}

void Main::ShowProperties(ListPane& pane) {
    const int row = pane.CommandRow();
    if (row < 0 || static_cast<std::size_t>(row) >= pane.Model().Rows().size()) {
        return;
    }
    const std::string path(
        pane.Model().Rows()[static_cast<std::size_t>(row)].Get(Column::Filename));
    PropertiesDialog dialog(m_session, path, this);
    if (dialog.exec() != QDialog::Accepted || !dialog.Written()) {
        return;
    }
    // The rows of that file take the texts of the tag as it now stands.
    for (PlaylistModel* model : {m_filesModel, m_playlistModel}) {
        RowList& rows = model->Rows();
        for (std::size_t i = 0; i < rows.size(); ++i) {
            if (rows[i].Get(Column::Filename) == path) {
                dialog.UpdateRow(rows[i]);
                model->RowsChanged(i, i);
            }
        }
    }
}

void Main::Properties_Click() {
    ShowProperties(ActivePane());
}
void Main::Props_Click() {
    ShowProperties(*m_filesPane);
}
void Main::Properties2_Click() {
    ShowProperties(*m_playlistPane);
}

// ---- The panes' keys, clicks and headers ----

void Main::PaneDeletePressed(ListPane& pane) {
    const Settings& settings = m_session.Settings;
    switch (DeleteKeyAction(IsPlaylist(pane) ? settings.SongsDelKey : settings.FilesDelKey)) {
        case PaneAction::RemoveFromList:
            RemoveRowsOf(pane);
            break;
        case PaneAction::DeleteFile:
            TrashSelected(pane);
            break;
        case PaneAction::DeselectAll:
            pane.clearSelection();
            break;
        default:
            break;
    }
}

void Main::PaneActivated(ListPane& pane, int row) {
    const Settings& settings = m_session.Settings;
    const PaneAction action =
        DoubleClickAction(IsPlaylist(pane) ? settings.DoubleClickList : settings.DoubleClickFiles);
    switch (action) {
        case PaneAction::AddToList:
            if (!IsPlaylist(pane)) {
                AddSelected_Click();
            }
            break;
        case PaneAction::SelectAll:
            SelectAllIn(pane);
            break;
        case PaneAction::PlaySingle:
            RunCommand(IsPlaylist(pane) ? "SelPlay" : "SinglePlay");
            break;
        case PaneAction::PlayFromHere:
            RunCommand(IsPlaylist(pane) ? "PlayListFromHere" : "PlayFolderFromHere");
            break;
        case PaneAction::Queue:
            RunCommand(IsPlaylist(pane) ? "QueSelected" : "QueueSelected");
            break;
        default:
            break;
    }
    (void)row;
}

void Main::HeaderClicked(ListPane& pane, int column) {
    Settings& settings = m_session.Settings;
    const bool playlist = IsPlaylist(pane);
    std::int16_t& sorted = playlist ? settings.Listview2Sorted : settings.Listview1Sorted;
    std::int16_t& key = playlist ? settings.Listview2Sortkey : settings.Listview1Sortkey;
    std::int32_t& order = playlist ? settings.Listview2Sortorder : settings.Listview1Sortorder;
    // A second click on the same column turns the order round.
    order = sorted != 0 && key == column ? 1 - (order == 1 ? 1 : 0) : 0;
    key = static_cast<std::int16_t>(column);
    sorted = 1;
    pane.SelectionToRows();
    pane.Model().SortBy(column, order == 1);
    pane.RowsToSelection();
    pane.ShowSortIndicator(true, column, order == 1);
    if (playlist) {
        MarkPlaylistChanged();
    }
}

void Main::SortIfSorted(ListPane& pane) {
    const Settings& settings = m_session.Settings;
    const bool playlist = IsPlaylist(pane);
    if ((playlist ? settings.Listview2Sorted : settings.Listview1Sorted) == 0) {
        return;
    }
    pane.SelectionToRows();
    pane.Model().SortBy(
        playlist ? settings.Listview2Sortkey : settings.Listview1Sortkey,
        (playlist ? settings.Listview2Sortorder : settings.Listview1Sortorder) == 1);
    pane.RowsToSelection();
}

}  // namespace jk
