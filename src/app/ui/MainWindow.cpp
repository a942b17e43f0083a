#include "app/ui/MainWindow.h"

#include <algorithm>

#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QHeaderView>
#include <QLabel>
#include <QMimeData>
#include <QProgressBar>
#include <QSplitter>
#include <QStatusBar>
#include <QSystemTrayIcon>
#include <QTreeView>
#include <QUrl>

#include "app/Session.h"
#include "app/WindowPlacement.h"
#include "app/ui/ClipboardViewer.h"
#include "app/ui/Icons.h"
#include "app/ui/ListPane.h"
#include "app/ui/ScanStatus.h"
#include "browse/FolderTree.h"
#include "browse/VirtualTree.h"
#include "browse/ui/FolderTreeModel.h"
#include "platform/DirectoryListing.h"
#include "playback/ui/PlaylistModel.h"

// The bundled icons live in the library's resources, which a static library must ask for.
static void InitIconResources() {
    Q_INIT_RESOURCE(icons);
}

namespace jk {

namespace {

// The splitters' first sizes when the settings keep none, in pixels.
constexpr int kTreeWidth = 240;
constexpr int kNarrowestPane = 60;
// SplitTop at this or below leaves the window's own layout (the files a little smaller
// than the playlist).
constexpr int kSplitTopGuard = 100;

QLabel* Panel(QWidget* parent, const char* name) {
    auto* label = new QLabel(parent);
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    label->setContentsMargins(6, 0, 6, 0);
    return label;
}

}  // namespace

Main::Main(Session& session, QWidget* parent)
    : QMainWindow(parent),
      m_session(session),
      m_lister(std::make_unique<PosixFolderLister>()),
      m_tree(std::make_unique<FolderTree>(*m_lister)) {
    setObjectName(QStringLiteral("Main"));
    InitIconResources();
    ChooseFallbackIconTheme();
    setWindowIcon(ProgramIcon());
    setAcceptDrops(true);
    m_tree->SetVirtualRoad(&FindVirtualNode);
    setDockOptions(QMainWindow::AnimatedDocks);
    BuildPanes();
    BuildStatusBar();
    BuildMenus();
    BuildToolbar();
    BuildTray();
    WireBuiltCommands();
    ConnectPanes();
    m_scanStatus = new ScanStatus(this);
    m_clipboardViewer = new ClipboardViewer(m_clipboard, this);
    UpdateCommandStates();
    ListStats();
}

Main::~Main() {
    // The tree model is a Qt child, so it would outlive the tree it watches: let it go first.
    delete m_treeModel;
    m_treeModel = nullptr;
}

void Main::BuildPanes() {
    m_treeModel = new FolderTreeModel(*m_tree, this);
    m_treeView = new QTreeView(this);
    m_treeView->setObjectName(QStringLiteral("Tree1"));
    m_treeView->setModel(m_treeModel);
    m_treeView->setHeaderHidden(true);
    m_treeView->setUniformRowHeights(true);
    m_treeView->setAnimated(false);
    m_treeView->setExpandsOnDoubleClick(true);
    m_treeView->setFrameShape(QFrame::NoFrame);
    m_treeView->setContextMenuPolicy(Qt::CustomContextMenu);
    m_treeView->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_treeView->header()->setStretchLastSection(false);

    m_filesModel = new PlaylistModel(m_fileRows, this);
    m_filesPane = new ListPane(*m_filesModel, this);
    m_filesPane->setObjectName(QStringLiteral("ListView1"));
    m_filesPane->setAccessibleName(QStringLiteral("Files"));
    m_filesPane->setDragEnabled(true);
    m_filesPane->setDragDropMode(QAbstractItemView::DragOnly);

    m_playlistModel = new PlaylistModel(m_session.Playlist.Rows, this);
    m_playlistPane = new ListPane(*m_playlistModel, this);
    m_playlistPane->setObjectName(QStringLiteral("ListView2"));
    m_playlistPane->setAccessibleName(QStringLiteral("Playlist"));
    m_playlistPane->setDragEnabled(true);
    m_playlistPane->setAcceptDrops(true);
    m_playlistPane->setDropIndicatorShown(true);
    m_playlistPane->setDragDropMode(QAbstractItemView::DragDrop);
    m_playlistPane->setDefaultDropAction(Qt::MoveAction);
    m_playlistModel->SetDropHandler(
        [this](const QMimeData& mime, int row, Qt::DropAction) { return HandleDrop(mime, row); });
    m_activePane = m_filesPane;

    m_outer = new QSplitter(this);
    m_outer->setObjectName(QStringLiteral("Splitter"));
    m_inner = new QSplitter(this);
    m_inner->setObjectName(QStringLiteral("Splitter2"));
    for (QSplitter* splitter : {m_outer, m_inner}) {
        splitter->setChildrenCollapsible(false);
        splitter->setHandleWidth(5);
    }
    for (QWidget* pane : std::initializer_list<QWidget*>{m_treeView, m_filesPane, m_playlistPane}) {
        pane->setMinimumSize(kNarrowestPane, kNarrowestPane);
    }
    setCentralWidget(m_outer);
    PlaceSplitters();
}

void Main::PlaceSplitters() {
    const Settings& settings = m_session.Settings;
    // "Taller tree" (0): the tree the whole height, the files above the playlist beside it.
    // "Wider playlist" (1): the tree beside the files, the playlist the whole width below.
    const bool widerPlaylist = settings.LayoutMode == 1;
    m_outer->setOrientation(widerPlaylist ? Qt::Vertical : Qt::Horizontal);
    m_inner->setOrientation(widerPlaylist ? Qt::Horizontal : Qt::Vertical);
    if (widerPlaylist) {
        m_inner->addWidget(m_treeView);
        m_inner->addWidget(m_filesPane);
        m_outer->addWidget(m_inner);
        m_outer->addWidget(m_playlistPane);
    } else {
        m_outer->addWidget(m_treeView);
        m_outer->addWidget(m_inner);
        m_inner->addWidget(m_filesPane);
        m_inner->addWidget(m_playlistPane);
    }
    QSplitter* treeSplit = widerPlaylist ? m_inner : m_outer;
    QSplitter* paneSplit = widerPlaylist ? m_outer : m_inner;
    treeSplit->setStretchFactor(0, 0);
    treeSplit->setStretchFactor(1, 1);
    paneSplit->setStretchFactor(0, 1);
    paneSplit->setStretchFactor(1, 1);
    const int tree = settings.SplitLeft > 0 ? TwipsToPixels(settings.SplitLeft) : kTreeWidth;
    treeSplit->setSizes({std::max(tree, kNarrowestPane), std::max(width() - tree, 400)});
    const int total = std::max(paneSplit->orientation() == Qt::Vertical ? height() : width(), 400);
    const int first =
        settings.SplitTop > kSplitTopGuard ? TwipsToPixels(settings.SplitTop) : total * 9 / 20;
    paneSplit->setSizes({std::max(first, kNarrowestPane), std::max(total - first, kNarrowestPane)});
}

void Main::BuildStatusBar() {
    m_panels.assign(8, nullptr);
    m_panels[1] = Panel(this, "Panel1");  // the files pane: its folder and songs
    m_panels[2] = Panel(this, "Panel2");  // the playlist: songs, time and size
    m_panels[3] = Panel(this, "Panel3");  // the selection
    m_panels[4] = Panel(this, "Panel4");  // the song playing, when a player reports one
    m_panels[5] = Panel(this, "Panel5");  // the walk's status and the shutdown's steps
    m_panels[6] = Panel(this, "Panel6");  // the player's volume
    m_panels[7] = Panel(this, "Panel7");  // the player's time, or "Pause"
    statusBar()->addWidget(m_panels[5], 1);
    m_progress = new QProgressBar(this);
    m_progress->setObjectName(QStringLiteral("LoadProgress"));
    m_progress->setMaximumWidth(220);
    m_progress->setTextVisible(false);
    statusBar()->addWidget(m_progress);
    m_progress->hide();
    statusBar()->addWidget(m_panels[7]);
    statusBar()->addWidget(m_panels[4]);
    for (const int panel : {1, 2, 3, 6}) {
        statusBar()->addPermanentWidget(m_panels[static_cast<std::size_t>(panel)]);
    }
    m_panels[4]->hide();
    m_panels[6]->hide();
    m_panels[7]->hide();
    statusBar()->setSizeGripEnabled(true);
}

void Main::SetCloseHandler(std::function<bool()> handler) {
    m_closeHandler = std::move(handler);
}

void Main::SetPanelText(const QString& text) {
    m_panels[5]->setText(text);
    if (isVisible()) {
        m_panels[5]->repaint();
    }
}

QString Main::PanelText() const {
    return m_panels[5]->text();
}

void Main::ShowProgress(std::int64_t done, std::int64_t total) {
    if (total <= 0) {
        m_progress->hide();
        return;
    }
    // The bar counts in thousandths, so a list of any length fits its int range.
    constexpr int kSteps = 1000;
    m_progress->setRange(0, kSteps);
    m_progress->setValue(static_cast<int>(std::min(done, total) * kSteps / total));
    m_progress->show();
}

void Main::SetVolumeText(const QString& text) {
    m_panels[6]->setText(text);
}

void Main::SetTimeText(const QString& text) {
    m_panels[7]->setText(text);
    m_panels[7]->setVisible(!text.isEmpty());
}

void Main::SetSongText(const QString& text) {
    m_panels[4]->setText(text);
    m_panels[4]->setVisible(!text.isEmpty());
}

void Main::RaiseFromOtherStart() {
    if (isMinimized()) {
        showNormal();
    }
    show();
    raise();
    activateWindow();
}

void Main::closeEvent(QCloseEvent* event) {
    if (m_busy) {
        // A walk runs: it is aborted, and the close waits for the user to ask again.
        m_scanStatus->close();
        m_abortListing = true;
        event->ignore();
        return;
    }
    if (m_closeHandler && !m_closeHandler()) {
        event->ignore();
        return;
    }
    event->accept();
}

void Main::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    // In "System Tray only" mode a minimized window leaves the taskbar for the tray.
    if (event->type() == QEvent::WindowStateChange && isMinimized() && m_tray != nullptr &&
        m_tray->isVisible() && m_session.Settings.WindowsMode == 2) {
        hide();
    }
}

void Main::dragEnterEvent(QDragEnterEvent* event) {
    if (!m_busy && event->mimeData()->hasUrls()) {
        event->acceptProposedAction();
    }
}

void Main::dropEvent(QDropEvent* event) {
    // Dropped anywhere but on the playlist: a list file opens, songs and folders join the
    // playlist at its end.
    if (m_busy || !event->mimeData()->hasUrls()) {
        return;
    }
    event->acceptProposedAction();
    AddDroppedFiles(event->mimeData()->urls(), -1);
}

}  // namespace jk
