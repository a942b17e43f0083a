#include "app/ui/MainFinders.h"

#include <QFileDialog>
#include <QMessageBox>

#include "app/PaneActions.h"
#include "app/PlayerSession.h"
#include "app/Session.h"
#include "app/ui/ListPane.h"
#include "app/ui/MainWindow.h"
#include "app/ui/PlayQuestions.h"
#include "finders/ui/FinderWindows.h"
#include "finders/ui/wizSelect.h"
#include "platform/DirectoryListing.h"
#include "platform/FileOperations.h"
#include "playback/ShuffleRandom.h"
#include "playback/ui/PlaylistModel.h"

namespace jk {

namespace {

void ShowMessage(QWidget* parent, const UserMessage& message) {
    QMessageBox::warning(parent, QString::fromStdString(message.title),
                         QString::fromStdString(message.text));
}

}  // namespace

MainFinders::MainFinders(Session& session, Main& main, PlayerBridge* player)
    : m_session(session),
      m_main(main),
      m_player(player),
      m_lister(std::make_unique<PosixFolderLister>()),
      m_catalogue(session.Virtual.Volumes) {
    m_realFiles.Lister = m_lister.get();
    m_host.Options = &m_session.Settings;
    m_host.Playlist = &m_session.Playlist.Rows;
    m_host.Catalogue = &m_catalogue;
    m_host.Drives = &m_session.Drives;
    m_host.RealFiles = &m_realFiles;
    m_host.PanelStatus = [this](const std::string& text) {
        m_main.SetPanelText(QString::fromStdString(text));
    };
    m_host.AddToPlaylist = [this](RowList rows) { AddToPlaylist(std::move(rows)); };
    m_host.WipePlaylist = [this] { WipePlaylist(); };
    m_host.SelectionChanged = [this] { SelectionChanged(); };
    m_host.CopyOrMove = [this](const std::vector<std::string>& paths, bool move) {
        CopyOrMove(paths, move);
    };
    m_host.Play = [this](const RowList& rows, PlayRequest how) { Play(rows, how); };
    m_host.Trash = [](const std::string& path, std::string& why) {
        const FileResult result = MoveToTrash(path);
        why = result.error;
        return result.ok;
    };
    m_host.ChooseFolder = [this](const std::string& question) {
        return QFileDialog::getExistingDirectory(&m_main, QString::fromStdString(question))
            .toStdString();
    };

    m_main.Wire("Wizard_Search", [this] { OpenSearchWizard(Host(), &m_main); });
    m_main.Wire("DupeWiz", [this] { OpenDuplicateFinder(Host(), &m_main); });
    m_main.Wire("Wizard_Selection", [this] {
        m_main.FilesPane().SelectionToRows();
        m_main.PlaylistPane().SelectionToRows();
        RunSelectionWizard(Host(), &m_main);
    });
}

MainFinders::~MainFinders() = default;

FinderHost& MainFinders::Host() {
    // Made at the first opening, once start-up has loaded the settings and the song cache; the
    // reading options follow Setup's changes.
    if (!m_lookup) {
        m_lookup = std::make_unique<SongLookup>(MakeSongLookup(m_session));
        m_realFiles.Lookup = m_lookup.get();
    }
    m_lookup->Options() = SongReadOptionsOf(m_session);
    m_host.Files = &m_main.FilesPane().Model().Rows();
    m_host.CurrentFolder = m_main.CurrentFolder();
    m_realFiles.FilterMode = m_session.Settings.FilterMode;
    return m_host;
}

void MainFinders::AddToPlaylist(RowList rows) {
    if (rows.empty()) {
        return;
    }
    m_main.PlaylistPane().Model().AppendRows(std::move(rows));
    m_session.Playlist.PlaylistSaved = false;
    m_main.ShowPlaylistCaption();
    m_main.ListStats();
}

void MainFinders::WipePlaylist() {
    m_main.PlaylistPane().Model().ChangeAll([](RowList& rows) { rows.clear(); });
    m_session.Playlist.PlaylistSaved = false;
    m_main.ShowPlaylistCaption();
    m_main.ListStats();
}

void MainFinders::SelectionChanged() {
    m_main.FilesPane().RowsToSelection();
    m_main.PlaylistPane().RowsToSelection();
    m_main.ListStats();
}

void MainFinders::CopyOrMove(const std::vector<std::string>& paths, bool move) {
    m_main.TransferPaths(paths, move, {});
}

void MainFinders::Play(const RowList& rows, PlayRequest how) {
    if (m_player == nullptr) {
        return;
    }
    PlayFront front;
    front.minimizeMain = [this] { m_main.showMinimized(); };
    front.showMessage = [this](const UserMessage& message) { ShowMessage(&m_main, message); };
    AskInBoxes(front, &m_main);
    switch (how) {
        case PlayRequest::EnqueueAll:
            QueueRows(rows, false, m_session, *m_player, front);
            break;
        case PlayRequest::EnqueueSelected:
            QueueRows(rows, true, m_session, *m_player, front);
            break;
        case PlayRequest::PlaySelected:
            PlaySelectedRows(rows, m_session, *m_player, front);
            break;
        case PlayRequest::PlayAll:
            PlayAllRows(rows, m_session, *m_player, front);
            break;
        case PlayRequest::Shuffle: {
            ShuffleRandom random;
            JukarraPlay(rows, m_session, *m_player, front, random);
            break;
        }
    }
}

}  // namespace jk
