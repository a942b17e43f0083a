// The File menu: new, open, append, save and save as, the recent lists, copying and moving the
// selected songs' files, and the exit.

#include <QFileDialog>
#include <QFileInfo>

#include "app/FileTransferPlan.h"
#include "app/PaneActions.h"
#include "app/Session.h"
#include "app/SongLookup.h"
#include "app/ui/ListPane.h"
#include "app/ui/MainWindow.h"
#include "platform/FileOperations.h"
#include "playback/CachedSongSource.h"
#include "playback/ListWriting.h"
#include "playback/PlaylistCommands.h"
#include "playback/ui/PlaylistModel.h"
#include "ui/common/MessageBoxes.h"

namespace jk {

namespace {

void Tell(QWidget* parent, const UserMessage& message) {
    ShowMessageBox(
        parent, message,
        message.icon == MessageIcon::Warning ? QMessageBox::Warning : QMessageBox::Information);
}

}  // namespace

QString Main::ChooseDialogPath(PathQuestion question) {
    if (m_chooser) {
        return QString::fromStdString(m_chooser(question));
    }
    const std::string& recent = m_session.Playlist.RecentLists[0];
    const QString folder =
        recent.empty() ? QString() : QFileInfo(QString::fromStdString(recent)).path();
    const QString filter = QStringLiteral("Playlist (*.m3u);;All files (*)");
    switch (question) {
        case PathQuestion::OpenList:
        case PathQuestion::AppendList:
            return QFileDialog::getOpenFileName(this, QStringLiteral("Open"), folder, filter);
        case PathQuestion::SaveList: {
            QFileDialog dialog(this, QStringLiteral("Save"), folder, filter);
            dialog.setAcceptMode(QFileDialog::AcceptSave);
            dialog.setDefaultSuffix(QStringLiteral("m3u"));
            if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
                return {};
            }
            return dialog.selectedFiles().constFirst();
        }
        case PathQuestion::Folder:
            return QFileDialog::getExistingDirectory(
                this, QStringLiteral("Choose a folder"),
                QString::fromStdString(m_session.Settings.LastDestination));
    }
    return {};
}

void Main::TellSaveFailed(const std::string& reason) {
    UserMessage message = SaveFailedMessage();
    if (!reason.empty()) {
        message.text += "\n\n" + reason;
    }
    Tell(this, message);
}

bool Main::ReadyToDropList() {
    DropListFrontEnd frontEnd;
    frontEnd.ask = [this](const UserMessage& question) {
        return AskYesNoCancel(this, question, QMessageBox::Question);
    };
    frontEnd.chooseSavePath = [this] {
        return ChooseDialogPath(PathQuestion::SaveList).toStdString();
    };
    frontEnd.tell = [this](const UserMessage&, const std::string& reason) {
        TellSaveFailed(reason);
    };
    const bool ready =
        jk::ReadyToDropList(m_session.Playlist, ListSettingsOf(m_session.Settings), frontEnd);
    ShowPlaylistCaption();
    UpdateLastLists();
    return ready;
}

void Main::MarkPlaylistChanged() {
    m_session.Playlist.PlaylistSaved = false;
    ShowPlaylistCaption();
    ListStats();
}

void Main::NewList_Click() {
    if (!ReadyToDropList()) {
        return;
    }
    m_playlistModel->ChangeAll([this](RowList&) { NewList(m_session.Playlist); });
    ShowPlaylistCaption();
    ListStats();
}

void Main::OpenListFile(const std::string& path) {
    if (path.empty()) {
        return;
    }
    SongLookup lookup = MakeSongLookup(m_session);
    ListReadResult result;
    m_playlistModel->ChangeAll([&](RowList&) {
        result = OpenList(m_session.Playlist, path, CachedSongSource(lookup),
                          ListSettingsOf(m_session.Settings));
    });
    // A list opened keeps its own order: the pane is no longer sorted.
    m_session.Settings.Listview2Sorted = 0;
    m_playlistPane->ShowSortIndicator(false, 0, false);
    if (!result.Ok()) {
        Tell(this, {result.error, "Uh-oh...", MessageIcon::Information});
    }
    ShowPlaylistCaption();
    UpdateLastLists();
    ListStats();
}

void Main::OpenList_Click() {
    if (!ReadyToDropList()) {
        return;
    }
    OpenListFile(ChooseDialogPath(PathQuestion::OpenList).toStdString());
}

void Main::AppendToList_Click() {
    const std::string path = ChooseDialogPath(PathQuestion::AppendList).toStdString();
    if (path.empty()) {
        return;
    }
    SongLookup lookup = MakeSongLookup(m_session);
    RowList added;
    const ListReadResult result =
        AppendListNow(path, added, CachedSongSource(lookup), m_session.Settings.HideGhosts);
    m_playlistModel->AppendRows(std::move(added));
    if (!result.Ok()) {
        Tell(this, {result.error, "Uh-oh...", MessageIcon::Information});
    }
    MarkPlaylistChanged();
}

void Main::SaveList_Click() {
    const SaveResult saved =
        SaveList(m_session.Playlist, ListSettingsOf(m_session.Settings),
                 [this] { return ChooseDialogPath(PathQuestion::SaveList).toStdString(); });
    if (saved.outcome == SaveOutcome::Failed) {
        TellSaveFailed(saved.reason);
    }
    ShowPlaylistCaption();
    UpdateLastLists();
}

void Main::SaveAsList_Click() {
    const SaveResult saved =
        SaveAsList(m_session.Playlist, ChooseDialogPath(PathQuestion::SaveList).toStdString(),
                   ListSettingsOf(m_session.Settings));
    if (saved.outcome == SaveOutcome::Failed) {
        TellSaveFailed(saved.reason);
    }
    ShowPlaylistCaption();
    UpdateLastLists();
}

void Main::LastList_Click(int index) {
    if (index < 0 || static_cast<std::size_t>(index) >= m_session.Playlist.RecentLists.size()) {
        return;
    }
    if (ReadyToDropList()) {
        // A copy: opening the list moves it to the front of the recent lists.
        const std::string path = m_session.Playlist.RecentLists[static_cast<std::size_t>(index)];
        OpenListFile(path);
    }
}

void Main::Quit_Click() {
    close();
}

void Main::TransferFiles(ListPane& pane, bool move, const std::string& folder) {
    pane.SelectionToRows();
    TransferPaths(SelectedPaths(pane.Model().Rows()), move, folder);
}

void Main::TransferPaths(const std::vector<std::string>& paths, bool move,
                         const std::string& folder) {
    const std::string destination =
        folder.empty() ? ChooseDialogPath(PathQuestion::Folder).toStdString() : folder;
    if (destination.empty()) {
        return;
    }
    m_session.Settings.LastDestination = destination;
    const TransferPlan plan =
        PlanTransfer(paths, destination, [](const std::string& path) { return PathExists(path); });
    std::vector<SkippedFile> failed = plan.skipped;
    std::vector<FileTransfer> done;
    for (const FileTransfer& transfer : plan.transfers) {
        const FileResult result =
            move ? MoveFileTo(transfer.from, transfer.to) : CopyFileTo(transfer.from, transfer.to);
        if (result.ok) {
            done.push_back(transfer);
        } else {
            failed.push_back({transfer.from, result.error});
        }
    }
    // Files that arrived in the folder shown are listed with it.
    const bool intoShownFolder = !done.empty() && !m_currentFolder.empty() &&
                                 QFileInfo(QString::fromStdString(destination)) ==
                                     QFileInfo(QString::fromStdString(m_currentFolder));
    if (move && !done.empty()) {
        // Rows that named a moved file follow it; in the files pane it has left the folder.
        m_filesModel->ChangeAll([&done, this](RowList& rows) {
            if (m_currentFolder.empty()) {
                RetargetRows(rows, done);
                return;
            }
            std::vector<std::string> gone;
            gone.reserve(done.size());
            for (const FileTransfer& transfer : done) {
                gone.push_back(transfer.from);
            }
            DropRowsOf(rows, gone);
        });
        if (RetargetRows(m_session.Playlist.Rows, done) > 0) {
            m_playlistModel->RowsChanged(0, m_session.Playlist.Rows.size());
            MarkPlaylistChanged();
        }
        ListStats();
    }
    if (intoShownFolder) {
        RelistCurrentFolder();
    }
    if (!failed.empty()) {
        Tell(this,
             FileFailuresMessage(move ? "moved" : "copied", failed.size(), SkippedText(failed)));
    }
}

void Main::CopyTo_Click() {
    TransferFiles(ActivePane(), false, {});
}

void Main::MoveTo_Click() {
    TransferFiles(ActivePane(), true, {});
}

void Main::CopyTo1_Click() {
    TransferFiles(*m_filesPane, false, {});
}

void Main::MoveTo1_Click() {
    TransferFiles(*m_filesPane, true, {});
}

void Main::CopyTo2_Click() {
    TransferFiles(*m_playlistPane, false, {});
}

void Main::MoveTo2_Click() {
    TransferFiles(*m_playlistPane, true, {});
}

}  // namespace jk
