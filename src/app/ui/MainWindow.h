#pragma once

// The main window, `Main`: the folder tree (Tree1) at the left, the files pane (ListView1) and
// the playlist (ListView2) beside it, divided by two splitters; the menus, pop-ups and toolbar
// built from the command surface's tables; the status bar. Each command is a handler named
// after its menu item ("NewList_Click") that forwards to a core routine in a few lines. A
// command another part of the program brings is shown disabled until that part wires it with
// Wire(). Closing the window runs the shutdown sequence, which may keep it open.

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <QMainWindow>

#include "listing/RowClipboard.h"
#include "playback/PlayerCommands.h"

class QAction;
class QLabel;
class QMenu;
class QMimeData;
class QProgressBar;
class QSplitter;
class QSystemTrayIcon;
class QToolBar;
class QTreeView;

namespace jk {

class ClipboardViewer;
class FolderTree;
class FolderTreeModel;
class ListPane;
class PlaylistModel;
class PosixFolderLister;
class ScanFeeder;
class TipsDialog;
class ScanStatus;
struct PresentVolume;
struct ScanResult;
class SongLookup;
struct ScanSetup;
struct Session;
struct Settings;

// The questions the window asks through a file dialog; tests answer them without one.
enum class PathQuestion { OpenList, AppendList, SaveList, Folder };
using PathChooser = std::function<std::string(PathQuestion)>;

class Main final : public QMainWindow {
    Q_OBJECT

public:
    explicit Main(Session& session, QWidget* parent = nullptr);
    ~Main() override;

    // ---- The frame ----
    // Asked on every close; false keeps the window open.
    void SetCloseHandler(std::function<bool()> handler);
    // Panel 5 of the status bar: the walk's status and the shutdown's steps.
    void SetPanelText(const QString& text);
    QString PanelText() const;
    // The bar beside panel 5 for the window's own long work (a list going to the player): done
    // of total; a total of 0 hides it.
    void ShowProgress(std::int64_t done, std::int64_t total);
    // Panel 6: the player's volume, shown with the Winamp-only commands.
    void SetVolumeText(const QString& text);
    // Panel 7 and panel 4: the player's time (or "Pause") and the song it plays; each shows
    // only while it has a text.
    void SetTimeText(const QString& text);
    void SetSongText(const QString& text);
    // Brings the window to the front when a second start of the program asks for it.
    void RaiseFromOtherStart();
    // Replaces the file dialogs (tests).
    void SetPathChooser(PathChooser chooser) { m_chooser = std::move(chooser); }

    // ---- The command surface ----
    // A menu item, sub-menu or pop-up by its name (a menu by its menu action); null if none.
    QAction* Action(std::string_view name) const;
    QMenu* Menu(std::string_view name) const;
    // A toolbar button by its key.
    QAction* ToolbarButton(std::string_view key) const;
    // Binds a handler to a command by its name: the item, and any toolbar button that runs it,
    // is enabled from now on. This is how other parts of the program bring their commands.
    void Wire(std::string_view name, std::function<void()> handler);
    bool Wired(std::string_view name) const;
    QToolBar* Toolbar() const { return m_toolbar; }

    // ---- What start-up, shutdown and the Setup Browser apply (through MainSetupEffects) ----
    void InitializeTree();
    void ShowGridLines(bool on);
    void ApplyColumnOrders(const std::string& files, const std::string& playlist);
    void SetViewChecks(bool files, bool folders, bool playlist);
    void PlaceSplitters();
    void SetTop();
    void UpdateWindowsMode(bool trayIcon);
    // The remote commands the player can carry out shown, the others hidden; the volume panel.
    void UpdatePlayerMode(const PlayerMode& mode);
    // DelMode 2 switches the delete commands off; the others on.
    void ApplyDelMode();
    // The current folder listed afresh (a new file filter).
    void RelistCurrentFolder();
    // "Copy to..." and "Move to..." of the files at `paths` (the panes' and the finders'
    // result lists'): into `folder`, or the one the user picks when it is empty; no file is
    // overwritten, the panes' rows follow moved files and the failures are named in one message.
    void TransferPaths(const std::vector<std::string>& paths, bool move, const std::string& folder);
    // Opens the tree down to a folder and lists it (start-up's last folder, the Go list).
    void OpenFolder(const std::string& path);
    void UpdateLastLists();
    void UpdateGoList();
    // The status bar's panels of the two panes.
    void ListStats();
    void ShowPlaylistCaption();
    // Column orders and widths, splitters, panes shown and sort keys into the settings.
    void StoreLayout(Settings& settings) const;
    // After start-up filled the playlist: the pane shows it.
    void PlaylistFilledOutside();
    // True while a walk runs: commands that could re-enter it are off.
    bool Busy() const { return m_busy; }
    const std::string& CurrentFolder() const { return m_currentFolder; }

    // ---- Panes ----
    ListPane& FilesPane() { return *m_filesPane; }
    ListPane& PlaylistPane() { return *m_playlistPane; }
    QTreeView& TreeView() { return *m_treeView; }
    FolderTree& Tree() { return *m_tree; }
    const RowClipboard& Clipboard() const { return m_clipboard; }
    // The longest time without a turn of the event loop during the last walk or listing (ms).
    qint64 LastScanLongestGapMs() const { return m_lastScanGapMs; }
    ScanStatus& ScanStatusWindow() { return *m_scanStatus; }
    // The tip window, once it was opened; null before.
    TipsDialog* TipsWindow() const { return m_tips; }

    // ---- Handlers, named after their items ----
    // File
    void NewList_Click();
    void OpenList_Click();
    void AppendToList_Click();
    void SaveList_Click();
    void SaveAsList_Click();
    void CopyTo_Click();
    void MoveTo_Click();
    void LastList_Click(int index);
    void Quit_Click();
    // Edit
    void Cut_Click();
    void Copy_Click();
    void Paste_Click();
    void PasteTo_Click();
    void AddSong_Click();
    void removesong_Click();
    void Slide_up_Click();
    void Slide_down_Click();
    void Slide_top_Click();
    void Slide_bottom_Click();
    void DeleteSong_Click();
    void SelectAll_Click();
    void InvertSelection_Click();
    void Properties_Click();
    // View
    void View_Folders_Click();
    void View_Files_Click();
    void View_Playlist_Click();
    void ShowGridlines_Click();
    void ReverseView_Click();
    void ResetView_Click();
    void ResetCols_Click();
    void CollapseAll_Click();
    void OptimizeView_Click();
    void ViewClipboard_Click();
    void RefreshDir_Click();
    void OnTop_Click();
    // Go
    void JumpTo_Click();
    void UpLevel_Click();
    void LastPath_Click(int index);
    // Folder
    void GetDir_Click();
    void RecurseDir_Click();
    void RecurseTotal_Click();
    // Catalogued discs (MainVirtualCommands.cpp)
    void RecurseAllVirtual_Click();
    // A catalogued folder's songs into the files pane, by its node key.
    void ListVirtualFolder(const std::string& key);
    // The catalogued volumes' roots made anew from Session::VirtualTrees (after a command that
    // changed the catalogue); the inserted ones marked.
    void RebuildVirtualRoots();
    void SetPresentVolumes(const std::vector<PresentVolume>& present);
    // Help and extras
    void Tips_Click();
    void HelpPage_Click(std::string_view item);
    void AboutJK2_Click();
    // The files pane's pop-up
    void ShuffleSelected1_Click();
    void ShuffleFilesOnly_Click();
    void CutFile_Click();
    void CopyFile_Click();
    void Pastefile_Click();
    void CopyTo1_Click();
    void MoveTo1_Click();
    void Optimize1_Click();
    void Delete_Click();
    void ReverseFiles_Click();
    void SelectAllFiles_Click();
    void AddSelected_Click();
    void Props_Click();
    // The playlist's pop-up
    void ShuffleSelected2_Click();
    void ShuffleOnly_Click();
    void CutSong_Click();
    void CopySong_Click();
    void PasteSong_Click();
    void CopyTo2_Click();
    void MoveTo2_Click();
    void Optimize2_Click();
    void SlideTop_Click();
    void SlideBottom_Click();
    void SlideUp1_Click();
    void SlideDown1_Click();
    void ReverseSongs_Click();
    void SelectAllSongs_Click();
    void DeleteSelectedSongs_Click();
    void RemoveSelected_Click();
    void CropList_Click();
    void Properties2_Click();
    // The toolbar's own command, and the tray's.
    void RemoveAll_Click();
    void restore_Click();
    void Minimize_Click();
    void close_Click();

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    // Construction (MainWindow.cpp, MainMenus.cpp)
    void BuildPanes();
    void BuildStatusBar();
    void BuildMenus();
    void BuildToolbar();
    void BuildTray();
    void WireBuiltCommands();
    void ConnectPanes();
    void UpdateCommandStates();
    void RunCommand(const std::string& name);
    QString ChooseDialogPath(PathQuestion question);

    // Playlist helpers (MainFileCommands.cpp)
    bool ReadyToDropList();
    void MarkPlaylistChanged();
    void OpenListFile(const std::string& path);
    void TellSaveFailed(const std::string& reason);
    void TransferFiles(ListPane& pane, bool move, const std::string& folder);

    // Editing helpers (MainEditCommands.cpp)
    ListPane& ActivePane();
    bool IsPlaylist(const ListPane& pane) const;
    void Slide(bool (*slide)(RowList&));
    void CopyRowsOf(ListPane& pane, bool cut);
    void PasteRowsInto(ListPane& pane);
    void PasteFilesInto(const std::string& folder);
    void TrashSelected(ListPane& pane);
    void RemoveRowsOf(ListPane& pane);
    void ShowProperties(ListPane& pane);
    void Shuffle(ListPane& pane, bool selectedOnly);
    void SelectAllIn(ListPane& pane);
    void InvertIn(ListPane& pane);
    void PaneDeletePressed(ListPane& pane);
    void PaneActivated(ListPane& pane, int row);
    void HeaderClicked(ListPane& pane, int column);
    void SortIfSorted(ListPane& pane);
    void UpdateRowsOfPath(const std::string& path);

    // Folders and walks (MainFolderCommands.cpp)
    void TreeClicked(const QModelIndex& index);
    void ListFolder(std::string path);
    void SelectTreeNode(const std::string& path);
    ScanSetup MakeScanSetup(SongLookup& ctx, ScanFeeder& feeder);
    using WalkFn = std::function<ScanResult(RowList& rows, const ScanSetup& setup)>;
    void RunWalk(const QString& title, const WalkFn& walk);
    void SetBusy(bool busy);
    bool HandleDrop(const QMimeData& mime, int row);
    void RecurseDirVirtual_Click(const std::string& key);
    // Where a listing of catalogued songs stands: the folder or volume, its songs, how many
    // of them are listed.
    struct VirtualPlace {
        std::string_view Name;
        std::size_t Songs = 0;
        std::size_t Done = 0;
    };
    using VirtualStatusFn = std::function<VirtualPlace(std::size_t done, std::size_t total)>;
    using VirtualFillFn = std::function<std::size_t(
        RowList& rows, const std::function<bool(std::size_t done, std::size_t total)>& progress)>;
    // `expected`: the rows it will bring when known, else 0.
    void AppendVirtualRows(const QString& title, std::size_t expected,
                           const VirtualStatusFn& statusOf, const VirtualFillFn& fill);
    void AddDroppedFiles(const QList<QUrl>& urls, int row);

    Session& m_session;
    std::unique_ptr<PosixFolderLister> m_lister;
    std::unique_ptr<FolderTree> m_tree;
    RowList m_fileRows;  // the files pane's rows
    FolderTreeModel* m_treeModel = nullptr;
    PlaylistModel* m_filesModel = nullptr;
    PlaylistModel* m_playlistModel = nullptr;
    QTreeView* m_treeView = nullptr;
    ListPane* m_filesPane = nullptr;
    ListPane* m_playlistPane = nullptr;
    ListPane* m_activePane = nullptr;
    QSplitter* m_outer = nullptr;  // Splitter: the tree beside the rest
    QSplitter* m_inner = nullptr;  // Splitter2: the files above the playlist
    QToolBar* m_toolbar = nullptr;
    std::vector<QLabel*> m_panels;  // index 1..7
    QProgressBar* m_progress = nullptr;
    QSystemTrayIcon* m_tray = nullptr;
    QMenu* m_trayMenu = nullptr;
    ScanStatus* m_scanStatus = nullptr;
    ClipboardViewer* m_clipboardViewer = nullptr;
    TipsDialog* m_tips = nullptr;

    std::map<std::string, QAction*, std::less<>> m_actions;
    std::map<std::string, QMenu*, std::less<>> m_menus;
    std::map<std::string, QAction*, std::less<>> m_toolbarActions;
    std::map<std::string, std::function<void()>, std::less<>> m_handlers;
    std::map<std::string, QAction*, std::less<>> m_listSeparators;
    std::vector<QAction*> m_lastListItems;
    std::vector<QAction*> m_goItems;

    RowClipboard m_clipboard;
    std::string m_currentFolder;
    std::string m_pendingFolder;  // asked for while a listing ran
    std::function<bool()> m_closeHandler;
    PathChooser m_chooser;
    bool m_busy = false;
    bool m_abortListing = false;
    qint64 m_lastScanGapMs = 0;
};

}  // namespace jk
