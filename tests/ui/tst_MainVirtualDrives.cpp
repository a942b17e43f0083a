// The catalogued discs in the main window: a disc catalogued in an earlier run has its root in
// the folder tree after start-up, a click on one of its folders lists its songs, the recursion
// of all virtual drives fills the playlist, the wizards open from their menu items, and the
// Bookmarks menu opens its folders.

#include <QAction>
#include <QMenu>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>

#include "DesktopTestSupport.h"
#include "WindowShots.h"
#include "app/Session.h"
#include "app/VirtualDrives.h"
#include "app/ui/DesktopProgram.h"
#include "app/ui/ListPane.h"
#include "app/ui/VirtualDriveWiring.h"
#include "browse/FolderTree.h"
#include "browse/ui/FolderTreeModel.h"
#include "catalogue/Bookmarks.h"
#include "catalogue/VirtualVolumes.h"

using jk::test::BoxAnswerer;
using jk::test::FolderOf;
using jk::test::WritePreviousRun;

namespace {

jk::SongInfo Song(const std::string& path, const std::string& title) {
    jk::SongInfo song;
    song.Path = path;
    song.Title = title;
    song.Artist = "The Tides";
    song.Album = "Low Water";
    song.Time = "185";
    song.Size = "2960000";
    song.Bitrate = "128";
    return song;
}

// A catalogue of one disc, "SUMMER_99", saved as an earlier run left it.
void WriteCatalogue(const QTemporaryDir& dir) {
    jk::Session session;
    session.AppPath = FolderOf(dir);
    jk::VirtualVolume volume("SUMMER_99");
    jk::VolumeAppend(volume, Song("/media/ann/SUMMER_99/rock/one.mp3", "One"));
    jk::VolumeAppend(volume, Song("/media/ann/SUMMER_99/rock/two.mp3", ""));
    jk::VolumeAppend(volume, Song("/media/ann/SUMMER_99/jazz/three.mp3", "Three"));
    session.Virtual.Volumes.push_back(std::move(volume));
    QVERIFY(jk::SaveVirtualDatabase(session).ok);
}

QModelIndex RootNamed(const jk::FolderTreeModel& model, const QString& name) {
    for (int row = 0; row < model.rowCount(); ++row) {
        const QModelIndex index = model.index(row, 0);
        if (index.data(Qt::DisplayRole).toString() == name) {
            return index;
        }
    }
    return {};
}

QModelIndex ChildNamed(const QAbstractItemModel& model, const QModelIndex& parent,
                       const QString& name) {
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        if (index.data(Qt::DisplayRole).toString() == name) {
            return index;
        }
    }
    return {};
}

}  // namespace

class MainVirtualDrives : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aCataloguedDiscIsInTheTreeAndItsFolderListsItsSongs();
    void theVirtualDriveCommandsAreWiredAndOpenTheirWindows();
    void aBookmarkOpensItsCataloguedFolder();
};

void MainVirtualDrives::aCataloguedDiscIsInTheTreeAndItsFolderListsItsSongs() {
    QTemporaryDir dir;
    WritePreviousRun(dir);
    WriteCatalogue(dir);
    jk::SessionData data;
    jk::DesktopProgram program(FolderOf(dir), data);
    program.State().DiscLister = [] { return jk::MountedDiscs{}; };
    BoxAnswerer answerer({});
    program.Start();
    QVERIFY(answerer.seen.isEmpty());

    jk::Main& main = program.MainWindow();
    auto* model = qobject_cast<jk::FolderTreeModel*>(main.TreeView().model());
    QVERIFY(model != nullptr);
    const QModelIndex root = RootNamed(*model, QStringLiteral("SUMMER_99"));
    QVERIFY(root.isValid());
    main.TreeView().expand(root);
    // The volume's folders down from the drive part that was cut.
    QModelIndex folder = root;
    while (!ChildNamed(*model, folder, QStringLiteral("rock")).isValid()) {
        QVERIFY(model->rowCount(folder) == 1);
        folder = model->index(0, 0, folder);
    }
    const QModelIndex rock = ChildNamed(*model, folder, QStringLiteral("rock"));
    main.TreeView().scrollTo(rock);
    main.TreeView().setCurrentIndex(rock);
    QTest::mouseClick(main.TreeView().viewport(), Qt::LeftButton, {},
                      main.TreeView().visualRect(rock).center());

    QAbstractItemModel* files = main.FilesPane().model();
    QCOMPARE(files->rowCount(), 2);
    QStringList titles;
    for (int row = 0; row < 2; ++row) {
        titles << files->index(row, 0).data().toString();
    }
    titles.sort();
    // A blank title is taken from the file name.
    QVERIFY2(titles.contains(QStringLiteral("One")), qPrintable(titles.join(',')));
    QCOMPARE(main.CurrentFolder(),
             model->data(rock, jk::FolderTreeModel::KeyRole).toString().toStdString());

    // "Recurse &virtual drives": every catalogued song into the playlist.
    QAction* recurse = main.Action("RecurseAllVirtual");
    QVERIFY(recurse->isEnabled());
    recurse->trigger();
    QCOMPARE(main.PlaylistPane().model()->rowCount(), 3);
    QVERIFY(!program.State().Playlist.PlaylistSaved);

    QTest::qWait(50);
    jk::test::SaveShot(main, QStringLiteral("main-virtual-drive"));

    // After a command that removed the volume, its root leaves the tree.
    jk::RemoveVirtualTree(program.State(), "SUMMER_99");
    main.RebuildVirtualRoots();
    QVERIFY(!RootNamed(*model, QStringLiteral("SUMMER_99")).isValid());
    program.State().Playlist.PlaylistSaved = true;
    QVERIFY(main.close());
}

void MainVirtualDrives::theVirtualDriveCommandsAreWiredAndOpenTheirWindows() {
    QTemporaryDir dir;
    WritePreviousRun(dir);
    jk::SessionData data;
    jk::DesktopProgram program(FolderOf(dir), data);
    program.State().DiscLister = [] { return jk::MountedDiscs{}; };
    BoxAnswerer answerer({});
    program.Start();
    jk::Main& main = program.MainWindow();
    for (const char* name :
         {"VirtualCreate", "VirtualUpdate", "VirtualRemove", "VirtualRename", "VirtualImport",
          "VirtualExport", "VirtualStats", "RecurseAllVirtual", "Bookmark_Add", "Bookmark_Edit"}) {
        QVERIFY2(main.Action(name)->isEnabled(), name);
    }
    QVERIFY(main.ToolbarButton("addvdrive")->isEnabled());
    QVERIFY(main.ToolbarButton("bookmarks")->isEnabled());

    // The menu item and the toolbar key open the wizard (closed with Cancel by the answerer).
    main.Action("VirtualCreate")->trigger();
    main.ToolbarButton("addvdrive")->trigger();
    main.Action("VirtualStats")->trigger();
    QCOMPARE(answerer.dialogs.size(), 3);
    QCOMPARE(answerer.dialogs[0], QStringLiteral("Virtual Drive Wizard"));
    QCOMPARE(answerer.dialogs[1], QStringLiteral("Virtual Drive Wizard"));
    QVERIFY(main.close());
}

void MainVirtualDrives::aBookmarkOpensItsCataloguedFolder() {
    QTemporaryDir dir;
    WritePreviousRun(dir);
    WriteCatalogue(dir);
    QFile marks(dir.filePath(QStringLiteral("bookmark.dat")));
    QVERIFY(marks.open(QIODevice::WriteOnly));
    marks.write("Jazz\r\nSUMMER_99/jazz\r\nTmp\r\n/tmp\r\n");
    marks.close();
    jk::SessionData data;
    jk::DesktopProgram program(FolderOf(dir), data);
    program.State().DiscLister = [] { return jk::MountedDiscs{}; };
    BoxAnswerer answerer({});
    program.Start();
    jk::Main& main = program.MainWindow();

    auto* first = main.findChild<QAction*>(QStringLiteral("Mark1"));
    QVERIFY(first->isVisible());
    QCOMPARE(first->text(), QStringLiteral("&1 Jazz"));
    QVERIFY(main.findChild<QAction*>(QStringLiteral("Mark2"))->isVisible());
    QVERIFY(!main.findChild<QAction*>(QStringLiteral("Mark3"))->isVisible());
    QVERIFY(!main.Action("MoreBMarks")->isVisible());

    first->trigger();
    QCOMPARE(main.FilesPane().model()->rowCount(), 1);
    QCOMPARE(main.FilesPane().model()->index(0, 0).data().toString(), QStringLiteral("Three"));
    QVERIFY(main.close());
}

QTEST_MAIN(MainVirtualDrives)
#include "tst_MainVirtualDrives.moc"
