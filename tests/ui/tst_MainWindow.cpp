// The main window under the offscreen platform: the command surface item by item, a folder of
// test songs listed in the files pane, songs added, saved and reopened with the caption
// following, the editing commands, a long walk with its progress window and Abort, column
// layouts and geometry kept through the settings, and Cancel at closing writing nothing.

#include <filesystem>
#include <string>
#include <vector>

#include <QAction>
#include <QHeaderView>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <QTreeView>

#include "DesktopTestSupport.h"
#include "WindowShots.h"
#include "app/CommandSurface.h"
#include "app/Session.h"
#include "app/ui/DesktopProgram.h"
#include "app/ui/ListPane.h"
#include "app/ui/MainSetupEffects.h"
#include "app/ui/ScanFeeder.h"
#include "app/ui/ScanStatus.h"
#include "app/ui/TipsDialog.h"
#include "browse/FolderTree.h"
#include "playback/ui/PlaylistModel.h"
#include "setup/SetupForm.h"
#include "setup/SetupOkay.h"

using jk::test::BoxAnswerer;
using jk::test::FileText;
using jk::test::FolderOf;
using jk::test::IniText;
using jk::test::IniValue;
using jk::test::WritePreviousRun;

namespace {

// Every item of the command surface with its caption, as the program's design names them, in
// order; the run-time lists have none.
struct Expected {
    const char* name;
    const char* caption;
};
const Expected kCaptions[] = {
    {"FileMenu", "&File"},
    {"NewList", "&New"},
    {"OpenList", "&Open..."},
    {"OpenAndPlayList", "Open && P&lay..."},
    {"AppendToList", "A&ppend..."},
    {"SaveList", "&Save list"},
    {"SaveAsList", "S&ave list as..."},
    {"CopyTo", "Copy to..."},
    {"MoveTo", "Move to..."},
    {"LastList", nullptr},
    {"Quit", "E&xit"},
    {"SongMenu", "&Edit"},
    {"Cut", "Cu&t"},
    {"Copy", "C&opy"},
    {"Paste", "&Paste"},
    {"PasteTo", "P&aste to..."},
    {"AddSong", "&Add"},
    {"removesong", "&Remove"},
    {"Slide_Menu", "&Slide"},
    {"Slide_up", "&Up"},
    {"Slide_down", "&Down"},
    {"Slide_top", "To &Top"},
    {"Slide_bottom", "To &Bottom"},
    {"DeleteSong", "&Delete"},
    {"SelectAll", "Select &all"},
    {"InvertSelection", "&Invert selection"},
    {"Properties", "&Properties"},
    {"ViewMenu", "&View"},
    {"View_Folders", "Show &folders"},
    {"View_Files", "Show f&iles"},
    {"View_Playlist", "Show &playlist"},
    {"ShowGridlines", "Gridlines"},
    {"ReverseView", "&Reverse view"},
    {"ResetView", "Reset &view"},
    {"ResetCols", "Reset column &order"},
    {"CollapseAll", "&Collapse drives"},
    {"OptimizeView", "&Optimize"},
    {"ViewClipboard", "&Clipboard"},
    {"RefreshDir", "R&efresh"},
    {"OnTop", "Always on &top"},
    {"GoMenu", "&Go"},
    {"JumpTo", "&Jump to..."},
    {"UpLevel", "&Up one level"},
    {"LastPath", nullptr},
    {"mBookmarks", "&Bookmarks"},
    {"Bookmark_Add", "&Add bookmark"},
    {"Bookmark_Edit", "&Edit bookmarks"},
    {"Mark", nullptr},
    {"MoreBMarks", "&More bookmarks"},
    {"Wizards", "&Tools"},
    {"Wizard_Search", "&Search..."},
    {"mManagement", "&Management"},
    {"Wizard_Rename", "&Tag && Rename Wizard"},
    {"DupeWiz", "&Duplicate Finder"},
    {"Wizard_Selection", "&Selection Wizard"},
    {"mPublish", "&Publishing"},
    {"Wizard_Inventory", "&Text"},
    {"Wizard_HTML", "&HTML"},
    {"MediaWiz", "&Media Wizard"},
    {"mSystem", "&Performance"},
    {"CacheWizard", "&Cache"},
    {"VirtualStats", "&Virtual drives"},
    {"wizVDrive", "&Virtual drives"},
    {"VirtualCreate", "&Add new image"},
    {"VirtualUpdate", "&Update image"},
    {"VirtualRemove", "&Remove image"},
    {"VirtualRename", "Re&name image"},
    {"VirtualImport", "&Import image"},
    {"VirtualExport", "&Export image"},
    {"mOptions", "&Setup..."},
    {"GetAll", "F&older"},
    {"GetDir", "&Add this folder"},
    {"RecurseDir", "&Recurse folder"},
    {"RecurseTotal", "Recurse &My Computer"},
    {"RecurseAllVirtual", "Recurse &virtual drives"},
    {"PlayFolderNow", "&Play folder"},
    {"JPlayFolderNow", "&Jukarra folder"},
    {"PlayListMenu", "&Playlist"},
    {"playselected", "&Play selected"},
    {"PlayList", "P&lay playlist"},
    {"JukarraList2", "&Jukarra playlist"},
    {"QueueSelect", "&Queue selected"},
    {"QueueAll", "Queue &all"},
    {"playmenu", "&Remote"},
    {"PlayPlayer", "&Play"},
    {"StopPlayer", "&Stop"},
    {"PausePlayer", "P&ause"},
    {"PreviousPlayer", "Pre&vious track"},
    {"NextPlayer", "&Next track"},
    {"PlayerBack", "Skip &back"},
    {"AheadPlayer", "S&kip ahead"},
    {"VolumeDown", "&Decrease volume"},
    {"VolumeUp", "&Increase volume"},
    {"VolumeFade", "&Fade out"},
    {"WinAMP_GEQ", "&Graphic equalizer"},
    {"WinAMP_Selector", "Plug-in &selector"},
    {"WinAMP_PlugIn", "&Plug-in properties"},
    {"WinAMP_Execute", "Execute p&lug-in"},
    {"MinimizePlayer", "&Minimize"},
    {"RestorePlayer", "&Restore"},
    {"ClosePlayer", "&Close"},
    {"Help", "&Help"},
    {"Tips", "&Tip of the day"},
    {"mOnline", "&Online"},
    {"HelpWeb", "On the &Web"},
    {"HelpEMail", "&eMail the author"},
    {"CheckForUpdate", "&Check for update"},
    {"OpenTour", "Online &Tour"},
    {"OpenResources", "Music &resources "},
    {"AboutJK2", "&About"},
    {"ExtraMenu", "E&xtras"},
    {"JustForFun", "&Just for fun"},
    {"SilentMP3Wiz", "&Silent MP3 Wizard"},
    {"FilesMenu", "FilesMenu"},
    {"SinglePlay", "&Play selected"},
    {"PlayFolder", "Play &folder"},
    {"PlayFolderFromHere", "Play from &here"},
    {"ShuffleSelected1", "Shuffle s&elected"},
    {"ShuffleFilesOnly", "Shuffle &all"},
    {"JukarraFolder", "J&ukarra folder"},
    {"QueueSelected", "En&queue selected"},
    {"QueueFolder", "Enqueue f&older"},
    {"MakeFileOffline", "Make available o&ffline"},
    {"CutFile", "Cu&t"},
    {"CopyFile", "&Copy"},
    {"Pastefile", "&Paste"},
    {"CopyTo1", "Copy to..."},
    {"MoveTo1", "Move to..."},
    {"Optimize1", "&Optimize view"},
    {"Delete", "&Delete selected"},
    {"ReverseFiles", "&Reverse selection"},
    {"SelectAllFiles", "&Select all files"},
    {"AddSelected", "&Add selected"},
    {"Props", "P&roperties"},
    {"SongsMenu", "SongsMenu"},
    {"SelPlay", "&Play selected"},
    {"PlayPlaylist", "P&lay list"},
    {"PlayListFromHere", "Play from &here"},
    {"ShuffleSelected2", "Shuffle s&elected"},
    {"ShuffleOnly", "S&huffle all"},
    {"JukarraList", "&Jukarra list"},
    {"QueSelected", "En&queue selected"},
    {"QueAll", "Enqueue &all"},
    {"MakeSongOffline", "Make available o&ffline"},
    {"CutSong", "Cu&t"},
    {"CopySong", "&Copy"},
    {"PasteSong", "&Paste"},
    {"CopyTo2", "Copy to..."},
    {"MoveTo2", "Move to..."},
    {"Optimize2", "&Optimize view"},
    {"SlideMenu", "&Slide selection"},
    {"SlideTop", "To &top"},
    {"SlideBottom", "To &bottom"},
    {"SlideUp1", "&Up"},
    {"SlideDown1", "&Down"},
    {"ReverseSongs", "Re&verse selection"},
    {"SelectAllSongs", "S&elect all songs"},
    {"DeleteSelectedSongs", "&Delete selected"},
    {"RemoveSelected", "&Remove selected"},
    {"CropList", "&Crop selected"},
    {"Properties2", "Pr&operties"},
    {"traymenu", "&TrayMenu"},
    {"RemoteWindow", "&Player"},
    {"RemoteMinimize", "&Minimize"},
    {"RemoteRestore", "&Restore"},
    {"RemoteClose", "&Close"},
    {"RemoteMenu", "&Remote"},
    {"RemotePlay", "&Play"},
    {"RemotePause", "P&ause"},
    {"RemoteStop", "&Stop"},
    {"RemotePrev", "P&revious"},
    {"RemoteNext", "&Next"},
    {"Play", "&Play list"},
    {"Jukarra", "&Jukarra"},
    {"restore", "&Restore"},
    {"Minimize", "Mi&nimize"},
    {"MaximizePlayer", "&Maximize"},
    {"close", "&Close"},
};

QString SongsFolder() {
    return QStringLiteral(JUKARRA_TEST_DATA "/songs");
}

int SongCount() {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(JUKARRA_TEST_DATA "/songs")) {
        count += entry.path().extension() == ".mp3" ? 1 : 0;
    }
    return count;
}

QStringList Column(jk::ListPane& pane, jk::Column column) {
    QStringList texts;
    for (int row = 0; row < pane.model()->rowCount(); ++row) {
        texts.append(pane.model()->index(row, static_cast<int>(column)).data().toString());
    }
    return texts;
}

// A folder holding `count` copies of a test song in sub-folders of ten.
void MakeCollection(const QString& folder, int count) {
    const std::filesystem::path song(JUKARRA_TEST_DATA "/songs/cbr64-id3v1.mp3");
    for (int i = 0; i < count; ++i) {
        const std::filesystem::path sub =
            std::filesystem::path(folder.toStdString()) / ("album" + std::to_string(i / 10));
        std::filesystem::create_directories(sub);
        std::filesystem::copy_file(song, sub / ("song" + std::to_string(i) + ".mp3"));
    }
}

}  // namespace

class MainWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyItemOfTheCommandSurfaceStandsWithItsCaptionInOrder();
    void firstRunWelcomesThenOpensTheSetupBrowserHook();
    void aFolderOfSongsListsInTheFilesPane();
    void addSaveAndReopenFollowTheCaption();
    void editingCommandsMoveRowsAndMarkTheListChanged();
    void aLongWalkShowsItsProgressAndAbortKeepsTheRows();
    void aLongListGrowsIntoItsRoomWithEveryRowInOrder();
    void columnsAndSortAreKeptThroughTheSettings();
    void aSavedGeometryOffEveryScreenComesBackCentred();
    void cancelAtClosingWritesNothing();
    void theSetupWindowsOpenAndOkayReachesTheMainWindow();
    void screenshotOfTheWindowWithAFolderAndAPlaylist();
};

void MainWindowTest::everyItemOfTheCommandSurfaceStandsWithItsCaptionInOrder() {
    jk::test::StartedProgram started;
    jk::DesktopProgram& program = started.program;
    jk::Main& main = program.MainWindow();

    std::size_t next = 0;
    std::map<QMenu*, int> placeInMenu;
    for (const jk::MenuEntry& entry : jk::MenuTable()) {
        if (entry.Kind == jk::MenuEntryKind::Separator) {
            const int place = placeInMenu[main.Menu(entry.Parent)]++;
            if (!entry.Name.empty()) {
                // A named separator stands in its place; a reserved one is hidden.
                QAction* separator = main.Menu(entry.Parent)->actions().value(place);
                QVERIFY(separator != nullptr && separator->isSeparator());
                QCOMPARE(main.Action(entry.Name), separator);
                QCOMPARE(separator->isVisible(), entry.Owner != jk::kOwnerReserved);
            }
            continue;
        }
        QVERIFY2(next < std::size(kCaptions), entry.Name.data());
        const Expected& expected = kCaptions[next++];
        QCOMPARE(QString::fromUtf8(entry.Name.data(), static_cast<qsizetype>(entry.Name.size())),
                 QString::fromLatin1(expected.name));
        QMenu* parent = entry.Parent.empty() ? nullptr : main.Menu(entry.Parent);
        if (entry.Kind == jk::MenuEntryKind::List) {
            placeInMenu[parent] += entry.Count;
            continue;
        }
        QAction* action = main.Action(entry.Name);
        QVERIFY2(action != nullptr, expected.name);
        QCOMPARE(action->text(), QString::fromLatin1(expected.caption));
        if (parent != nullptr) {
            // In its menu, in the order of the design.
            const int place = placeInMenu[parent]++;
            QCOMPARE(parent->actions().value(place), action);
        }
        if (entry.Kind == jk::MenuEntryKind::Item) {
            // Built commands are on, the setup windows, the finders and the virtual drives too
            // (but for the inert offline items, and MoreBMarks, hidden with ten bookmarks or
            // fewer); those of other parts wait for them.
            const bool virtualDrive =
                entry.Owner == jk::kOwnerVirtualDrives && entry.Name != "MoreBMarks";
            QVERIFY2(
                action->isEnabled() == ((entry.Owner.empty() || entry.Owner == jk::kOwnerSetup ||
                                         entry.Owner == jk::kOwnerFinders || virtualDrive) &&
                                        entry.Name != "JustForFun"),
                entry.Name.data());
            // Reserved items stand hidden, and no part of the program runs them.
            if (entry.Owner == jk::kOwnerReserved) {
                QVERIFY2(!action->isVisible() && !main.Wired(entry.Name), entry.Name.data());
            }
        }
    }
    QCOMPARE(next, std::size(kCaptions));

    // The menu bar in order, the pop-ups and the tray menu apart from it.
    QStringList bar;
    for (QAction* menu : main.menuBar()->actions()) {
        bar.append(menu->text());
    }
    QCOMPARE(bar, (QStringList{"&File", "&Edit", "&View", "&Go", "&Bookmarks", "&Tools", "F&older",
                               "&Playlist", "&Remote", "&Help", "E&xtras"}));
    QCOMPARE(main.Action("NewList")->shortcut(), QKeySequence(QKeySequence::New));
    QCOMPARE(main.Action("RefreshDir")->shortcut(), QKeySequence(Qt::Key_F5));

    // Every toolbar key has its button and an icon; wiring a command turns it on.
    for (const jk::ToolbarButton& button : jk::ToolbarTable()) {
        QAction* action = main.ToolbarButton(button.Key);
        QVERIFY2(action != nullptr, button.Key.data());
        QVERIFY2(!action->icon().isNull(), button.Key.data());
    }
    int searched = 0;
    main.Wire("Wizard_Search", [&searched] { ++searched; });
    QVERIFY(main.Action("Wizard_Search")->isEnabled());
    QVERIFY(main.ToolbarButton("search")->isEnabled());
    main.ToolbarButton("search")->trigger();
    QCOMPARE(searched, 1);

    // DelMode 2 switches the delete commands off.
    program.State().Settings.DelMode = 2;
    main.ApplyDelMode();
    QVERIFY(!main.Action("Delete")->isEnabled());
    QVERIFY(!main.ToolbarButton("recycle")->isEnabled());
    program.State().Settings.DelMode = 0;
    main.ApplyDelMode();
    QVERIFY(main.Action("DeleteSong")->isEnabled());
    QVERIFY(main.close());
}

void MainWindowTest::firstRunWelcomesThenOpensTheSetupBrowserHook() {
    QTemporaryDir dir;
    jk::SessionData data;
    jk::DesktopProgram program(FolderOf(dir), data);
    bool mainDisabledDuringSetup = false;
    int setupRuns = 0;
    program.Front().setupBrowser = [&] {
        ++setupRuns;
        mainDisabledDuringSetup = !program.MainWindow().isEnabled();
    };
    BoxAnswerer answerer({QMessageBox::Ok});
    QVERIFY(program.Start().firstRun);
    QCOMPARE(answerer.seen.size(), 1);
    QCOMPARE(answerer.seen[0].title, QStringLiteral("Welcome!"));
    QCOMPARE(setupRuns, 1);
    QVERIFY(mainDisabledDuringSetup);  // start-up is not over yet
    QVERIFY(program.MainWindow().isEnabled());
    QVERIFY(program.MainWindow().Tree().Roots().size() >= 1);
    // A first run shows a tip beside the window, and start-up went on.
    QVERIFY(program.MainWindow().TipsWindow() != nullptr);
    QVERIFY(program.MainWindow().TipsWindow()->isVisible());
    QVERIFY(!program.MainWindow().TipsWindow()->TipText().isEmpty());
    QVERIFY(program.MainWindow().close());
}

void MainWindowTest::aFolderOfSongsListsInTheFilesPane() {
    jk::test::StartedProgram started;
    jk::DesktopProgram& program = started.program;
    jk::Main& main = program.MainWindow();
    main.OpenFolder(SongsFolder().toStdString());

    jk::ListPane& files = main.FilesPane();
    QCOMPARE(files.model()->rowCount(), SongCount());
    const QStringList captions = {"Title",   "Artist",   "Album",   "Year", "Genre", "Time",
                                  "Bitrate", "Filename", "Comment", "Size", "Date",  "Volume"};
    for (int column = 0; column < 12; ++column) {
        QCOMPARE(files.model()->headerData(column, Qt::Horizontal).toString(), captions[column]);
    }
    for (const QString& path : Column(files, jk::Column::Filename)) {
        QVERIFY(path.startsWith(SongsFolder() + QStringLiteral("/")));
        QVERIFY(path.endsWith(QStringLiteral(".mp3")));
    }
    for (const QString& time : Column(files, jk::Column::Time)) {
        QVERIFY2(time.contains(QLatin1Char(':')), qPrintable(time));
    }
    QVERIFY(!Column(files, jk::Column::Title).contains(QString()));
    // The folder went into the Go list, and the tree stands on it.
    QCOMPARE(program.State().Settings.GoPaths[1], SongsFolder().toStdString() + "/");
    QAction* go = main.findChild<QAction*>(QStringLiteral("LastPath1"));
    QVERIFY(go != nullptr && go->isVisible());
    QCOMPARE(go->text(), QStringLiteral("&1 ") + SongsFolder() + QStringLiteral("/"));
    QVERIFY(main.TreeView().currentIndex().isValid());

    // Up one level lists the parent.
    main.UpLevel_Click();
    QVERIFY(main.CurrentFolder().find("/songs") == std::string::npos);
    QVERIFY(main.close());
}

void MainWindowTest::addSaveAndReopenFollowTheCaption() {
    jk::test::StartedProgram started;
    QTemporaryDir& dir = started.dir;
    jk::DesktopProgram& program = started.program;
    jk::Main& main = program.MainWindow();
    main.OpenFolder(SongsFolder().toStdString());

    main.FilesPane().selectAll();
    main.AddSelected_Click();  // "Add" copies the rows
    jk::ListPane& playlist = main.PlaylistPane();
    QCOMPARE(playlist.model()->rowCount(), SongCount());
    QCOMPARE(Column(playlist, jk::Column::Filename),
             Column(main.FilesPane(), jk::Column::Filename));
    QCOMPARE(main.windowTitle(), QStringLiteral("Untitled* - Ostrel Jukarra 2.62"));
    main.GetDir_Click();  // the whole folder again: duplicates are allowed
    QCOMPARE(playlist.model()->rowCount(), 2 * SongCount());

    const QString list = dir.filePath(QStringLiteral("mix.m3u"));
    main.SetPathChooser([&list](jk::PathQuestion) { return list.toStdString(); });
    main.SaveAsList_Click();
    QCOMPARE(main.windowTitle(), QStringLiteral("mix.m3u - Ostrel Jukarra 2.62"));
    QCOMPARE(FileText(list).count(QStringLiteral("\r\n")), 2 * SongCount());
    QAction* recent = main.findChild<QAction*>(QStringLiteral("LastList1"));
    QVERIFY(recent != nullptr && recent->isVisible());
    QCOMPARE(recent->text(), QStringLiteral("&1 mix.m3u"));

    main.NewList_Click();
    QCOMPARE(playlist.model()->rowCount(), 0);
    QCOMPARE(main.windowTitle(), QStringLiteral("Untitled - Ostrel Jukarra 2.62"));
    main.OpenList_Click();
    QCOMPARE(playlist.model()->rowCount(), 2 * SongCount());
    QCOMPARE(main.windowTitle(), QStringLiteral("mix.m3u - Ostrel Jukarra 2.62"));

    playlist.selectRow(0);
    main.RemoveSelected_Click();
    QCOMPARE(main.windowTitle(), QStringLiteral("mix.m3u* - Ostrel Jukarra 2.62"));
    main.SaveList_Click();
    QCOMPARE(main.windowTitle(), QStringLiteral("mix.m3u - Ostrel Jukarra 2.62"));
    QCOMPARE(FileText(list).count(QStringLiteral("\r\n")), 2 * SongCount() - 1);
    QVERIFY(main.close());
}

void MainWindowTest::editingCommandsMoveRowsAndMarkTheListChanged() {
    jk::test::StartedProgram started;
    jk::DesktopProgram& program = started.program;
    jk::Main& main = program.MainWindow();
    main.OpenFolder(SongsFolder().toStdString());
    main.GetDir_Click();
    jk::ListPane& playlist = main.PlaylistPane();
    const QStringList before = Column(playlist, jk::Column::Filename);
    const int count = static_cast<int>(before.size());
    program.State().Playlist.PlaylistSaved = true;

    playlist.setFocus();
    playlist.selectRow(count - 1);
    main.Slide_top_Click();
    QCOMPARE(Column(playlist, jk::Column::Filename).front(), before.back());
    QVERIFY(playlist.selectionModel()->isRowSelected(0, {}));  // the selection went along
    QVERIFY(!program.State().Playlist.PlaylistSaved);
    main.Slide_down_Click();
    QCOMPARE(Column(playlist, jk::Column::Filename)[1], before.back());

    // Copy and paste ahead of the selected row; then crop to what was pasted.
    playlist.selectRow(0);
    main.CopySong_Click();
    QCOMPARE(main.Clipboard().Rows.size(), std::size_t{1});
    playlist.selectRow(2);
    main.PasteSong_Click();
    QCOMPARE(playlist.model()->rowCount(), count + 1);
    QCOMPARE(Column(playlist, jk::Column::Filename)[2], before[0]);
    main.CropList_Click();
    QCOMPARE(Column(playlist, jk::Column::Filename), QStringList{before[0]});

    // Invert, reverse and cut in the files pane leave the files where they are.
    jk::ListPane& files = main.FilesPane();
    files.selectRow(0);
    main.ReverseFiles_Click();
    QCOMPARE(files.selectionModel()->selectedRows().size(), count - 1);
    main.CutFile_Click();
    QVERIFY(main.Clipboard().Cut);
    QCOMPARE(files.model()->rowCount(), count);

    // A click on a header sorts; a second click turns the order round.
    main.RemoveAll_Click();
    main.GetDir_Click();
    const int title = static_cast<int>(jk::Column::Filename);
    Q_EMIT playlist.HeaderClicked(title);
    QStringList sorted = Column(playlist, jk::Column::Filename);
    QStringList expected = before;
    std::sort(expected.begin(), expected.end(), [](const QString& a, const QString& b) {
        return QString::compare(a, b, Qt::CaseInsensitive) < 0;
    });
    QCOMPARE(sorted, expected);
    Q_EMIT playlist.HeaderClicked(title);
    std::reverse(expected.begin(), expected.end());
    QCOMPARE(Column(playlist, jk::Column::Filename), expected);
    QCOMPARE(playlist.horizontalHeader()->sortIndicatorOrder(), Qt::DescendingOrder);

    BoxAnswerer answerer({QMessageBox::No});
    QVERIFY(main.close());
}

void MainWindowTest::aLongWalkShowsItsProgressAndAbortKeepsTheRows() {
    QTemporaryDir dir;
    WritePreviousRun(dir);
    const QString music = dir.filePath(QStringLiteral("music"));
    constexpr int kSongs = 400;
    MakeCollection(music, kSongs);
    jk::SessionData data;
    jk::DesktopProgram program(FolderOf(dir), data);
    program.Start();
    jk::Main& main = program.MainWindow();
    main.OpenFolder(music.toStdString());

    // The whole walk first: every song, the list marked changed.
    main.RecurseDir_Click();
    QCOMPARE(main.PlaylistPane().model()->rowCount(), kSongs);
    QVERIFY(!program.State().Playlist.PlaylistSaved);
    QVERIFY(!main.ScanStatusWindow().isVisible());
    QVERIFY(!main.Busy());

    // Then a walk aborted at its first breath: what was added stays, the window is free again.
    main.RemoveAll_Click();
    program.State().Settings.FilterMode = 0;
    bool sawProgress = false;
    bool menusOffDuringWalk = false;
    QTimer::singleShot(0, &main, [&] {
        sawProgress = main.ScanStatusWindow().isVisible() &&
                      main.ScanStatusWindow().StatusText().startsWith(QStringLiteral("Scanning"));
        menusOffDuringWalk = !main.menuBar()->isEnabled() && main.Busy();
        main.ScanStatusWindow().AbortButton()->click();
    });
    main.RecurseDir_Click();
    const int kept = main.PlaylistPane().model()->rowCount();
    QVERIFY(sawProgress);
    QVERIFY(menusOffDuringWalk);
    QVERIFY2(kept < kSongs, qPrintable(QString::number(kept)));
    QCOMPARE(static_cast<std::size_t>(kept), program.State().Playlist.Rows.size());
    QVERIFY(main.menuBar()->isEnabled());
    QVERIFY(main.LastScanLongestGapMs() < 1000);

    BoxAnswerer answerer({QMessageBox::No});
    QVERIFY(main.close());
}

void MainWindowTest::aLongListGrowsIntoItsRoomWithEveryRowInOrder() {
    // Rows join in batches of bounded size, and a long list moves into room made ready on
    // another thread: the views follow every insertion, and no row is lost or moved.
    jk::RowList rows;
    jk::PlaylistModel model(rows);
    int inserted = 0;
    QObject::connect(&model, &QAbstractItemModel::rowsInserted, &model,
                     [&](const QModelIndex&, int first, int last) {
                         QCOMPARE(first, inserted);
                         inserted = last + 1;
                     });
    int next = 0;
    const auto add = [&](jk::RowList& batch, int count) {
        for (int i = 0; i < count; ++i, ++next) {
            jk::ListRow row;
            row.Set(jk::Column::Title, std::to_string(next));
            batch.push_back(std::move(row));
        }
    };
    {
        int turns = 0;
        jk::ScanFeeder feeder(model, [&](const jk::ScanProgress&) { ++turns; }, {});
        feeder.ExpectRows(160000);
        const jk::ScanProgressFn progress = feeder.Progress();
        // Two long batches: the second must wait for the room, which the first left unused.
        add(feeder.Batch(), 70000);
        feeder.Flush();
        add(feeder.Batch(), 70000);
        feeder.Flush();
        QVERIFY(rows.capacity() >= 160000);
        // Then a scan that reports as it goes, with the joins at its turns.
        for (int file = 0; file < 40; ++file) {
            add(feeder.Batch(), 500);
            QVERIFY(progress(jk::ScanProgress{"Scanning: x", 0, jk::kScanProgressMaximum}));
        }
        feeder.Flush();
        QVERIFY(turns >= 1);
    }
    QCOMPARE(inserted, next);
    QCOMPARE(static_cast<int>(rows.size()), next);
    QCOMPARE(model.rowCount(), next);
    for (int i = 0; i < next; ++i) {
        if (rows[static_cast<std::size_t>(i)].Get(jk::Column::Title) != std::to_string(i)) {
            QFAIL(qPrintable(QStringLiteral("row %1 out of place").arg(i)));
        }
    }
}

void MainWindowTest::columnsAndSortAreKeptThroughTheSettings() {
    QTemporaryDir dir;
    WritePreviousRun(dir);
    {
        jk::SessionData data;
        jk::DesktopProgram program(FolderOf(dir), data);
        program.Start();
        jk::Main& main = program.MainWindow();
        QHeaderView* header = main.FilesPane().horizontalHeader();
        header->moveSection(header->visualIndex(7), 0);  // Filename first
        header->resizeSection(0, 321);
        header->setSectionHidden(8, true);  // no Comment
        Q_EMIT main.PlaylistPane().HeaderClicked(1);
        QVERIFY(main.close());
    }
    QCOMPARE(QString::fromStdString(IniValue(dir, "ColumnOrder", "Files")),
             QStringLiteral("7x 0x 1x 2x 3x 4x 5x 6x 8x 9x 10x 11x 12x"));  // read back trimmed
    QCOMPARE(IniValue(dir, "WindowPosition", "ColumnA1"), std::string("4815"));
    QCOMPARE(IniValue(dir, "WindowPosition", "ColumnA9"), std::string("1"));
    QCOMPARE(IniValue(dir, "Listview2", "Sortkey"), std::string("1"));

    jk::SessionData data;
    jk::DesktopProgram program(FolderOf(dir), data);
    program.Start();
    QHeaderView* header = program.MainWindow().FilesPane().horizontalHeader();
    QCOMPARE(header->logicalIndex(0), 7);
    QCOMPARE(header->sectionSize(0), 321);
    QVERIFY(header->isSectionHidden(8));
    QVERIFY(program.MainWindow().PlaylistPane().horizontalHeader()->isSortIndicatorShown());
    program.MainWindow().ResetCols_Click();
    QCOMPARE(header->logicalIndex(0), 0);
    QVERIFY(!header->isSectionHidden(8));
    QVERIFY(program.MainWindow().close());
}

void MainWindowTest::aSavedGeometryOffEveryScreenComesBackCentred() {
    for (const QByteArray& geometry :
         {QByteArray("Width=0\r\nHeight=0\r\n"), QByteArray("Width=-300\r\nHeight=9000\r\n"),
          QByteArray("Width=9000\r\nHeight=7500\r\nLeft=900000\r\nTop=900000\r\n")}) {
        QTemporaryDir dir;
        QFile ini(dir.filePath(QStringLiteral("jukarra2.ini")));
        QVERIFY(ini.open(QIODevice::WriteOnly));
        ini.write("[INIexists]\r\nCheck=1\r\n[WindowPosition]\r\n" + geometry);
        ini.close();
        jk::SessionData data;
        jk::DesktopProgram program(FolderOf(dir), data);
        program.Start();
        jk::Main& main = program.MainWindow();
        const QRect screen = main.screen()->availableGeometry();
        QVERIFY2(screen.contains(main.geometry()), geometry.constData());
        QVERIFY2(main.width() >= 560 && main.height() >= 400, geometry.constData());
        QCOMPARE(main.x(), screen.x() + (screen.width() - main.width()) / 2);
        QVERIFY(main.close());
    }
}

void MainWindowTest::theSetupWindowsOpenAndOkayReachesTheMainWindow() {
    jk::test::StartedProgram started;
    jk::DesktopProgram& program = started.program;
    jk::Main& main = program.MainWindow();

    // Each command opens its window modally over the main window.
    {
        BoxAnswerer answerer({});
        for (const char* name : {"mOptions", "CacheWizard", "SilentMP3Wiz"}) {
            QAction* action = main.Action(name);
            QVERIFY2(action != nullptr && action->isEnabled(), name);
            action->trigger();
        }
        QCOMPARE(answerer.dialogs,
                 (QStringList{QStringLiteral("Setup"), QStringLiteral("Cache Performance"),
                              QStringLiteral("Silent MP3 Wizard")}));
    }

    // "Okay" with grid lines on and deleting disabled: both panes and the commands follow.
    jk::SetupForm form = jk::InitializeSetupForm(program.State().Settings);
    form["Check11"].checked = true;       // ShowGrid
    form["Combo11"].choice = 2;           // DelMode "Disabled"
    form["txtMprisPlayer"].text = "vlc";  // a player steered over the media bus
    jk::SetupOkay(program.State(), form, program.SetupEffectsOfMain());
    QVERIFY(main.FilesPane().showGrid());
    QVERIFY(main.PlaylistPane().showGrid());
    QVERIFY(main.Action("ShowGridlines")->isChecked());
    QVERIFY(!main.Action("Delete")->isEnabled());
    QVERIFY(!main.Action("DeleteSelectedSongs")->isEnabled());
    // The player's commands follow the player just chosen.
    QCOMPARE(program.State().PlayerKind, 7);
    const jk::PlayerCommandSet shown = jk::ShownPlayerCommands(7, {});
    QCOMPARE(main.Action("VolumeUp")->isVisible(), shown.Has(jk::PlayerCommand::VolumeUp));
    QCOMPARE(main.Action("WinAMP_GEQ")->isVisible(), shown.Has(jk::PlayerCommand::Equalizer));

    form["Check11"].checked = false;
    form["Combo11"].choice = 0;
    jk::SetupOkay(program.State(), form, program.SetupEffectsOfMain());
    QVERIFY(!main.FilesPane().showGrid());
    QVERIFY(!main.Action("ShowGridlines")->isChecked());
    QCOMPARE(main.Action("DeleteSelectedSongs")->isEnabled(), main.Wired("DeleteSelectedSongs"));
}

void MainWindowTest::cancelAtClosingWritesNothing() {
    QTemporaryDir dir;
    WritePreviousRun(dir, "[Options]\r\nRememberList=1\r\n");
    const QString before = IniText(dir);
    jk::SessionData data;
    jk::DesktopProgram program(FolderOf(dir), data);
    program.Start();
    jk::Main& main = program.MainWindow();
    main.OpenFolder(SongsFolder().toStdString());
    main.GetDir_Click();
    {
        BoxAnswerer answerer({QMessageBox::Cancel});
        QVERIFY(!main.close());
        QCOMPARE(answerer.seen.size(), 1);
        QCOMPARE(answerer.seen[0].title, QStringLiteral("Save list?"));
    }
    QVERIFY(main.isVisible());
    QCOMPARE(IniText(dir), before);
    QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("lastlist.m3u"))));
    QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("cache.dat"))));

    BoxAnswerer answerer({QMessageBox::No});
    QVERIFY(main.close());
    // The list is kept for the next run, which shows it again.
    QCOMPARE(FileText(dir.filePath(QStringLiteral("lastlist.m3u"))).count(QStringLiteral("\r\n")),
             SongCount());
    jk::SessionData again;
    jk::DesktopProgram next(FolderOf(dir), again);
    next.Start();
    QCOMPARE(next.MainWindow().PlaylistPane().model()->rowCount(), SongCount());
    QCOMPARE(next.MainWindow().CurrentFolder(), SongsFolder().toStdString() + "/");
    QVERIFY(next.MainWindow().close());
}

void MainWindowTest::screenshotOfTheWindowWithAFolderAndAPlaylist() {
    // Under Xvfb (JUKARRA_SCREENSHOT_DIR names a folder) the window is grabbed for a person to
    // look at; the offscreen run checks that it paints.
    jk::test::StartedProgram started;
    jk::DesktopProgram& program = started.program;
    jk::Main& main = program.MainWindow();
    main.resize(1280, 800);
    main.OpenFolder(SongsFolder().toStdString());
    main.GetDir_Click();
    main.PlaylistPane().selectRow(1);
    QVERIFY(QTest::qWaitForWindowExposed(&main));
    QTest::qWait(100);  // the status bar lays out its panels
    QVERIFY(!main.grab().toImage().isNull());
    jk::test::SaveShot(main, QStringLiteral("main"));
    BoxAnswerer answerer({QMessageBox::No});
    QVERIFY(main.close());
}

QTEST_MAIN(MainWindowTest)
#include "tst_MainWindow.moc"
