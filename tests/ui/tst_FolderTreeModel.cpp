// The folder tree's item model over a real temporary folder structure: nothing is read before a
// node is opened in the view, a folder without sub-folders loses its expand mark when opened,
// and the tree's changes (opening, a vanished folder, ExpandToPath deep and to a folder that has
// gone, roots removed and replaced) pass Qt's model checker.

#include <optional>
#include <string>
#include <vector>

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>

#include "browse/DriveRoot.h"
#include "browse/FolderTree.h"
#include "browse/VirtualTree.h"
#include "browse/ui/FolderTreeModel.h"
#include "platform/DirectoryListing.h"
#include "ui/WindowShots.h"

namespace {

using jk::FolderTreeModel;
using jk::TreeNode;

// The real lister, with a note of every folder it was asked to list.
class CountingLister final : public jk::FolderLister {
public:
    jk::ListResult List(const std::string& folder, std::optional<std::uint64_t> onlyDevice,
                        jk::FolderId& id, const jk::EntryCallback& onEntry) override {
        listed.push_back(folder);
        return m_real.List(folder, onlyDevice, id, onEntry);
    }
    bool IsFolder(const std::string& path) override { return m_real.IsFolder(path); }

    bool Listed(const std::string& folder) const {
        for (const std::string& each : listed) {
            if (each == folder || each == folder + "/") {
                return true;
            }
        }
        return false;
    }

    std::vector<std::string> listed;

private:
    jk::PosixFolderLister m_real{{}};
};

// A small music folder: artists with albums, one album with discs, an empty folder.
void MakeFolders(const QTemporaryDir& dir) {
    for (const char* path :
         {"Music/Björk/Post", "Music/Björk/Homogenic", "Music/Massive Attack/Mezzanine/Disc 1",
          "Music/Massive Attack/Mezzanine/Disc 2", "Music/empty", "Other"}) {
        QVERIFY(QDir(dir.path()).mkpath(QString::fromUtf8(path)));
    }
}

std::string PathIn(const QTemporaryDir& dir, const char* relative) {
    return (dir.path() + QLatin1Char('/') + QString::fromUtf8(relative)).toStdString();
}

QStringList ChildTexts(const FolderTreeModel& model, const QModelIndex& parent) {
    QStringList texts;
    for (int row = 0; row < model.rowCount(parent); ++row) {
        texts.append(model.index(row, 0, parent).data().toString());
    }
    return texts;
}

QModelIndex ChildNamed(const FolderTreeModel& model, const QModelIndex& parent,
                       const QString& text) {
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex child = model.index(row, 0, parent);
        if (child.data().toString() == text) {
            return child;
        }
    }
    return {};
}

// The small music folder with a tree over it, read through the counting lister.
struct MusicTree {
    QTemporaryDir dir;
    CountingLister lister;
    jk::FolderTree tree{lister};

    MusicTree() { MakeFolders(dir); }
    std::string Path(const char* relative) const { return PathIn(dir, relative); }
};

bool ShowIn(QTreeView& view, QAbstractItemModel& model) {
    view.setModel(&model);
    view.show();
    return QTest::qWaitForWindowExposed(&view);
}

}  // namespace

class FolderTreeModelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nodesShowTextIconAndKeyAndOpenOnlyWhenAsked();
    void aFolderWithoutSubfoldersLosesItsExpandMarkWhenOpened();
    void treeChangesPassTheModelChecker();
    void expandToPathGivesTheIndexTheViewOpensTo();
    void grabShowsTheTreeAsAUserSeesIt();
    void catalogedVolumesShowWhetherTheirDiscIsInserted();
};

void FolderTreeModelTest::nodesShowTextIconAndKeyAndOpenOnlyWhenAsked() {
    MusicTree scene;
    QVERIFY(scene.dir.isValid());
    const std::string music = scene.Path("Music");
    scene.tree.AddRoot(music, "MY STICK", jk::kDriveRemovable, true);
    scene.tree.AddRoot("Summer 1999", "Summer 1999", jk::kImageVirtual, false);
    FolderTreeModel model(scene.tree);
    QTreeView view;
    QVERIFY(ShowIn(view, model));

    QCOMPARE(model.rowCount(), 2);
    const QModelIndex stick = model.index(0, 0);
    QCOMPARE(stick.data().toString(), QStringLiteral("MY STICK"));
    QCOMPARE(stick.data(FolderTreeModel::KeyRole).toString(), QString::fromStdString(music));
    QVERIFY(!stick.data(Qt::DecorationRole).value<QIcon>().isNull());
    QCOMPARE(model.index(1, 0).data(FolderTreeModel::KeyRole).toString(),
             QStringLiteral("Summer 1999"));
    // Closed, the drive shows that it opens, yet nothing has been read.
    QVERIFY(model.hasChildren(stick));
    QCOMPARE(model.rowCount(stick), 0);
    QVERIFY(model.canFetchMore(stick));
    QVERIFY(!model.canFetchMore(model.index(1, 0)));  // a virtual node fills itself
    QVERIFY(scene.lister.listed.empty());

    view.expand(stick);
    QCOMPARE(ChildTexts(model, stick), (QStringList{"Björk", "empty", "Massive Attack"}));
    QVERIFY(!model.canFetchMore(stick));
    // One level down: the children were asked whether they hold folders, their own children
    // were not filled.
    QVERIFY(scene.lister.Listed(music));
    QVERIFY(!scene.lister.Listed(scene.Path("Music/Massive Attack/Mezzanine")));
    const QModelIndex massive = ChildNamed(model, stick, QStringLiteral("Massive Attack"));
    QCOMPARE(massive.parent(), stick);
    QCOMPARE(model.rowCount(massive), 0);
    QVERIFY(model.hasChildren(massive));

    view.expand(massive);
    const QModelIndex mezzanine = ChildNamed(model, massive, QStringLiteral("Mezzanine"));
    QVERIFY(mezzanine.isValid());
    QVERIFY(scene.lister.Listed(scene.Path("Music/Massive Attack/Mezzanine")));
    QVERIFY(!scene.lister.Listed(scene.Path("Music/Massive Attack/Mezzanine/Disc 1")));
    QCOMPARE(model.NodeOf(mezzanine)->Key, scene.Path("Music/Massive Attack/Mezzanine"));
    QCOMPARE(model.IndexOf(model.NodeOf(mezzanine)), mezzanine);
}

void FolderTreeModelTest::aFolderWithoutSubfoldersLosesItsExpandMarkWhenOpened() {
    MusicTree scene;
    QVERIFY(scene.dir.isValid());
    // A drive is given its placeholder whatever it holds.
    scene.tree.AddRoot(scene.Path("Music/empty"), "empty drive", jk::kDriveFixed, true);
    scene.tree.AddRoot(scene.Path("Music"), "Music", jk::kDriveFixed, true);
    FolderTreeModel model(scene.tree);
    QTreeView view;
    QVERIFY(ShowIn(view, model));

    const QModelIndex drive = model.index(0, 0);
    QVERIFY(model.hasChildren(drive));
    QSignalSpy relaid(&model, &FolderTreeModel::layoutChanged);
    view.expand(drive);
    QVERIFY(!model.hasChildren(drive));
    // The placeholder was no row, so only a new layout takes the view's expand mark away.
    QCOMPARE(relaid.count(), 1);
    QCOMPARE(relaid[0][0].value<QList<QPersistentModelIndex>>().value(0),
             QPersistentModelIndex(drive));
    QCOMPARE(model.rowCount(drive), 0);
    QVERIFY(scene.tree.Roots()[0]->Children.empty());

    // A folder that went after its parent was read opens to nothing, and shows so.
    const QModelIndex music = model.index(1, 0);
    view.expand(music);
    const QModelIndex massive = ChildNamed(model, music, QStringLiteral("Massive Attack"));
    QVERIFY(model.hasChildren(massive));
    QVERIFY(QDir(QString::fromStdString(scene.Path("Music/Massive Attack"))).removeRecursively());
    view.expand(massive);
    QVERIFY(!model.hasChildren(massive));
    QCOMPARE(ChildTexts(model, music), (QStringList{"Björk", "empty", "Massive Attack"}));

    // What the view was shown holds together as the checker sees it.
    QAbstractItemModelTester tester(&model);
}

void FolderTreeModelTest::treeChangesPassTheModelChecker() {
    MusicTree scene;
    QVERIFY(scene.dir.isValid());
    FolderTreeModel model(scene.tree);
    QAbstractItemModelTester tester(&model);
    QTreeView view;
    view.setModel(&model);
    view.show();

    const std::string music = scene.Path("Music");
    const std::string other = scene.Path("Other");
    scene.tree.InitializeDrives({
        jk::DriveRoot{music, "Music", "Music", jk::kDriveFixed, 0, false},
        jk::DriveRoot{"/mnt/absent", "absent", "absent", jk::kDriveNotReady, 0, false},
        jk::DriveRoot{other, "Other", "Other", jk::kDriveNetwork, 0, true},
    });
    QCOMPARE(model.rowCount(), 2);
    QCOMPARE(ChildTexts(model, model.index(0, 0)),
             (QStringList{"Björk", "empty", "Massive Attack"}));

    const QModelIndex root = model.index(0, 0);
    TreeNode* deep = scene.tree.ExpandToPath(scene.Path("Music/Massive Attack/Mezzanine/Disc 2"));
    QVERIFY(deep != nullptr);
    QCOMPARE(model.IndexOf(deep).data().toString(), QStringLiteral("Disc 2"));

    // A folder that has gone since: the way ends at its nearest parent that is left.
    QVERIFY(QDir(QString::fromStdString(scene.Path("Music/Björk"))).removeRecursively());
    TreeNode* nearest = scene.tree.ExpandToPath(scene.Path("Music/Björk/Post"));
    QCOMPARE(model.IndexOf(nearest), root);
    scene.tree.InitializeDrives(
        {jk::DriveRoot{music, "Music", "Music", jk::kDriveFixed, 0, false}});
    QCOMPARE(ChildTexts(model, model.index(0, 0)), (QStringList{"empty", "Massive Attack"}));

    scene.tree.AddRoot(other, "Other", jk::kImageHome, true);
    QCOMPARE(model.rowCount(), 2);
    QVERIFY(scene.tree.RemoveRootNode(music));
    QCOMPARE(model.rowCount(), 1);
    QCOMPARE(model.index(0, 0).data(FolderTreeModel::KeyRole).toString(),
             QString::fromStdString(other));
    scene.tree.InitializeDrives({});
    QCOMPARE(model.rowCount(), 0);
}

void FolderTreeModelTest::expandToPathGivesTheIndexTheViewOpensTo() {
    MusicTree scene;
    QVERIFY(scene.dir.isValid());
    scene.tree.AddRoot(scene.Path("Music"), "Music", jk::kDriveFixed, true);
    FolderTreeModel model(scene.tree);
    QTreeView view;
    QVERIFY(ShowIn(view, model));

    TreeNode* disc = scene.tree.ExpandToPath(scene.Path("Music/Massive Attack/Mezzanine/Disc 1"));
    QVERIFY(disc != nullptr);
    const QModelIndex index = model.IndexOf(disc);
    QCOMPARE(index.data(FolderTreeModel::KeyRole).toString(),
             QString::fromStdString(scene.Path("Music/Massive Attack/Mezzanine/Disc 1")));
    view.setCurrentIndex(index);
    view.scrollTo(index);
    QVERIFY(view.isExpanded(index.parent()));
    QVERIFY(view.isExpanded(model.index(0, 0)));
    QVERIFY(view.visualRect(index).isValid());
    // A sibling that was never opened is still unread.
    QVERIFY(!scene.lister.Listed(scene.Path("Music/Björk/Post")));

    QCOMPARE(scene.tree.UpLevel(), disc->Parent);
    QCOMPARE(model.IndexOf(scene.tree.Selected()), index.parent());
    QVERIFY(!model.IndexOf(nullptr).isValid());
}

void FolderTreeModelTest::grabShowsTheTreeAsAUserSeesIt() {
    MusicTree scene;
    QVERIFY(scene.dir.isValid());
    scene.tree.AddRoot("/", "/", jk::kDriveFixed, true);
    scene.tree.AddRoot(scene.Path("Music"), "MY STICK", jk::kDriveRemovable, true);
    scene.tree.AddRoot(scene.Path("Other"), "NAS", jk::kDriveNetwork, true);
    scene.tree.AddRoot(scene.Path("Other"), "Disc", jk::kDriveOptical, true);
    scene.tree.AddRoot(scene.Path("Other"), "ann", jk::kImageHome, true);
    scene.tree.AddRoot("Summer 1999", "Summer 1999", jk::kImageVirtual, false);
    FolderTreeModel model(scene.tree);
    QTreeView view;
    view.setModel(&model);
    view.setHeaderHidden(true);
    view.resize(320, 360);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    TreeNode* disc = scene.tree.ExpandToPath(scene.Path("Music/Massive Attack/Mezzanine"));
    view.setCurrentIndex(model.IndexOf(disc));
    view.scrollTo(model.IndexOf(disc));
    QCoreApplication::processEvents();
    QVERIFY(view.grab().save(QStringLiteral("/tmp/jukarra-tree-model.png")));
}

void FolderTreeModelTest::catalogedVolumesShowWhetherTheirDiscIsInserted() {
    MusicTree scene;
    scene.tree.AddRoot("/", "/", jk::kDriveFixed, true);
    for (const char* name : {"Summer 1999", "jazz live", "Autumn"}) {
        jk::VirtualVolume volume(name);
        for (const char* path : {"/media/ann/D/rock/a.mp3", "/media/ann/D/rock/old/b.mp3",
                                 "/media/ann/D/Jazz/c.mp3"}) {
            jk::SongInfo song;
            song.Path = path;
            song.Volume = name;
            volume.Append(song);
        }
        jk::AddVirtualVolume(scene.tree, jk::AddVolumeTree(volume));
    }
    FolderTreeModel model(scene.tree);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    const auto rootNamed = [&model](const char* text) {
        for (int row = 0; row < model.rowCount(); ++row) {
            if (model.index(row, 0).data().toString() == QString::fromUtf8(text)) {
                return model.index(row, 0);
            }
        }
        return QModelIndex();
    };
    const QModelIndex jazz = rootNamed("jazz live");
    const QModelIndex summer = rootNamed("Summer 1999");
    QCOMPARE(jazz.row(), 2);  // "/", then the volumes by name ignoring case
    const qint64 absentIcon = jazz.data(Qt::DecorationRole).value<QIcon>().cacheKey();
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);

    model.SetPresentVolumes({{"jazz live", "/media/ann/JAZZ_LIVE"}});
    QCOMPARE(jazz.data(Qt::ToolTipRole).toString(),
             QStringLiteral("Inserted at /media/ann/JAZZ_LIVE"));
    QVERIFY(jazz.data(Qt::DecorationRole).value<QIcon>().cacheKey() != absentIcon);
    QVERIFY(!summer.data(Qt::ToolTipRole).isValid());
    QVERIFY(!model.index(0, 0, jazz).data(Qt::ToolTipRole).isValid());  // folders: no mark
    const qsizetype told = changed.count();
    QVERIFY(told > 0);
    model.SetPresentVolumes({{"jazz live", "/media/ann/JAZZ_LIVE"}});
    QCOMPARE(changed.count(), told);  // nothing changed, nothing told

    QTreeView view;
    view.setModel(&model);
    view.setHeaderHidden(true);
    view.expand(summer);
    view.expand(model.index(1, 0, summer));
    view.resize(320, 260);
    jk::test::SaveShot(view, QStringLiteral("tree-volumes"));
    model.SetPresentVolumes({});
    QVERIFY(!jazz.data(Qt::ToolTipRole).isValid());
}

QTEST_MAIN(FolderTreeModelTest)
#include "tst_FolderTreeModel.moc"
