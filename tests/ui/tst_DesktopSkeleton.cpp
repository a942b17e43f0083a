// The desktop program's skeleton under the offscreen platform: first run, caption, splash,
// geometry kept through the settings, the unsaved-playlist question at closing and the save
// it leads to.

#include <QFile>
#include <QMessageBox>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>

#include "DesktopTestSupport.h"
#include "WindowShots.h"
#include "app/Messages.h"
#include "app/Session.h"
#include "app/ui/DesktopProgram.h"
#include "playback/ListWriting.h"

using jk::test::BoxAnswerer;
using jk::test::FileText;
using jk::test::FolderOf;
using jk::test::GiveUnsavedRows;
using jk::test::IniText;
using jk::test::IniValue;
using jk::test::WritePreviousRun;

class DesktopSkeleton : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void firstRunWelcomesAndShowsAnUntitledWindow();
    void closingSavesTheGeometryThatTheNextRunRestores();
    void aMaximizedWindowIsRememberedWithItsNormalSize();
    void anUnsavedPlaylistIsAskedForAndCancelKeepsTheWindowOpen();
    void yesAtClosingSavesTheListWhereItCameFrom();
    void aSaveThatFailsAtClosingSaysUhOh();
    void savingAnUntitledListNamesItInTheCaption();
};

void DesktopSkeleton::firstRunWelcomesAndShowsAnUntitledWindow() {
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    jk::SessionData data;
    jk::DesktopProgram program(FolderOf(dir), data);
    BoxAnswerer answerer({QMessageBox::Ok});
    const jk::StartupResult result = program.Start();

    QVERIFY(result.firstRun);
    QCOMPARE(answerer.seen.size(), 1);
    QCOMPARE(answerer.seen[0].title, QStringLiteral("Welcome!"));
    QCOMPARE(answerer.seen[0].text, QString::fromStdString(jk::WelcomeMessage().text));
    QCOMPARE(answerer.seen[0].icon, QMessageBox::Information);
    // Then the Setup Browser, modally (closed with Cancel here).
    QCOMPARE(answerer.dialogs, QStringList{QStringLiteral("Setup")});

    jk::Main& main = program.MainWindow();
    QVERIFY(main.isVisible());
    QVERIFY(main.isEnabled());
    QCOMPARE(main.windowTitle(), QStringLiteral("Untitled - Ostrel Jukarra 2.62"));
    // The first run's window has room for its three panes, centred on the screen.
    const QRect screen = main.screen()->availableGeometry();
    QVERIFY(main.width() >= 570 && main.height() >= 462);
    QVERIFY(main.width() <= screen.width() && main.height() <= screen.height());
    QCOMPARE(main.x(), screen.x() + (screen.width() - main.width()) / 2);
    QVERIFY(!program.SplashWindow().isVisible());
    QCOMPARE(program.SplashWindow().VersionText(),
             QStringLiteral("version 2.62 - February 26, 2000"));
    QCOMPARE(program.SplashWindow().StatusText(), QStringLiteral("Loading settings..."));
    QCOMPARE(program.State().Starting, 0);

    QVERIFY(QTest::qWaitForWindowExposed(&main));
    jk::test::SaveShot(main, QStringLiteral("first-run"));
    if (qEnvironmentVariableIsSet("JUKARRA_SCREENSHOT_DIR")) {
        jk::test::SaveShot(program.SplashWindow(), QStringLiteral("splash"));
        program.SplashWindow().hide();
    }

    QVERIFY(IniText(dir).isEmpty());  // nothing is written before closing
    QVERIFY(main.close());
    QVERIFY(program.ShutDown());
    QCOMPARE(IniValue(dir, "INIexists", "Check"), std::string("1"));
    QCOMPARE(IniValue(dir, "WindowPosition", "Width"), std::to_string(main.width() * 15));
}

void DesktopSkeleton::closingSavesTheGeometryThatTheNextRunRestores() {
    QTemporaryDir dir;
    {
        jk::SessionData data;
        jk::DesktopProgram program(FolderOf(dir), data);
        BoxAnswerer answerer({QMessageBox::Ok});
        program.Start();
        program.MainWindow().resize(700, 500);
        program.MainWindow().move(40, 30);
        QVERIFY(program.MainWindow().close());
    }
    QCOMPARE(IniValue(dir, "WindowPosition", "Width"), std::string("10500"));
    QCOMPARE(IniValue(dir, "WindowPosition", "Height"), std::string("7500"));
    QCOMPARE(IniValue(dir, "WindowPosition", "Left"), std::string("600"));
    QCOMPARE(IniValue(dir, "WindowPosition", "Top"), std::string("450"));
    QCOMPARE(IniValue(dir, "WindowPosition", "State"), std::string("0"));

    jk::SessionData data;
    jk::DesktopProgram program(FolderOf(dir), data);
    BoxAnswerer answerer({});
    const jk::StartupResult result = program.Start();
    QVERIFY(!result.firstRun);
    QVERIFY(answerer.seen.isEmpty());
    QVERIFY(program.MainWindow().isVisible());
    QCOMPARE(program.MainWindow().size(), QSize(700, 500));
    QCOMPARE(program.MainWindow().pos(), QPoint(40, 30));
    QVERIFY(program.MainWindow().close());
}

void DesktopSkeleton::aMaximizedWindowIsRememberedWithItsNormalSize() {
    QTemporaryDir dir;
    {
        jk::SessionData data;
        jk::DesktopProgram program(FolderOf(dir), data);
        BoxAnswerer answerer({QMessageBox::Ok});
        program.Start();
        program.MainWindow().resize(640, 480);
        program.MainWindow().showMaximized();
        QTRY_VERIFY(program.MainWindow().isMaximized());
        QVERIFY(program.MainWindow().close());
    }
    QCOMPARE(IniValue(dir, "WindowPosition", "State"), std::string("2"));
    QCOMPARE(IniValue(dir, "WindowPosition", "Width"), std::string("9600"));

    jk::SessionData data;
    jk::DesktopProgram program(FolderOf(dir), data);
    program.Start();
    QTRY_VERIFY(program.MainWindow().isMaximized());
    QVERIFY(program.MainWindow().close());
}

void DesktopSkeleton::anUnsavedPlaylistIsAskedForAndCancelKeepsTheWindowOpen() {
    QTemporaryDir dir;
    WritePreviousRun(dir);
    const QString before = IniText(dir);

    jk::SessionData data;
    jk::DesktopProgram program(FolderOf(dir), data);
    program.Start();
    GiveUnsavedRows(program.State(), 3);

    {
        BoxAnswerer answerer({QMessageBox::Cancel});
        QVERIFY(!program.MainWindow().close());
        QCOMPARE(answerer.seen.size(), 1);
        QCOMPARE(answerer.seen[0].title, QStringLiteral("Save list?"));
        QCOMPARE(answerer.seen[0].text,
                 QStringLiteral("Playlist not saved.  Would you like to save it?"));
        QCOMPARE(answerer.seen[0].icon, QMessageBox::Question);
    }
    QVERIFY(program.MainWindow().isVisible());
    QVERIFY(!program.ShutDown());
    QCOMPARE(program.MainWindow().PanelText(), QString());
    QCOMPARE(IniText(dir), before);

    BoxAnswerer answerer({QMessageBox::No});
    QVERIFY(program.MainWindow().close());
    QCOMPARE(answerer.seen.size(), 1);
    QVERIFY(program.ShutDown());
    QVERIFY(!program.State().Playlist.PlaylistSaved);  // "No" drops the list unsaved
    QCOMPARE(IniValue(dir, "WindowPosition", "Width"), std::string("9000"));
    QVERIFY(IniText(dir) != before);
}

void DesktopSkeleton::yesAtClosingSavesTheListWhereItCameFrom() {
    jk::test::StartedProgram started;
    QTemporaryDir& dir = started.dir;
    jk::DesktopProgram& program = started.program;
    jk::PlaylistState& list = program.State().Playlist;
    GiveUnsavedRows(program.State(), 2);
    list.CurrentList = "mine.m3u";
    list.RecentLists[0] = dir.filePath(QStringLiteral("mine.m3u")).toStdString();
    program.SetSavePathChooser([] {
        QTest::qFail("a named list asked for a name", __FILE__, __LINE__);
        return std::string();
    });

    BoxAnswerer answerer({QMessageBox::Yes});
    QVERIFY(program.MainWindow().close());
    QCOMPARE(answerer.seen.size(), 1);
    QVERIFY(program.ShutDown());
    QCOMPARE(FileText(dir.filePath(QStringLiteral("mine.m3u"))),
             QStringLiteral("/music/song0.mp3\r\n/music/song1.mp3\r\n"));
}

void DesktopSkeleton::aSaveThatFailsAtClosingSaysUhOh() {
    jk::test::StartedProgram started;
    QTemporaryDir& dir = started.dir;
    jk::DesktopProgram& program = started.program;
    GiveUnsavedRows(program.State(), 1);
    program.State().Playlist.CurrentList = "mine.m3u";
    // The list's folder is a file, so the list cannot be written.
    program.State().Playlist.RecentLists[0] =
        dir.filePath(QStringLiteral("jukarra2.ini/mine.m3u")).toStdString();

    BoxAnswerer answerer({QMessageBox::Yes, QMessageBox::Ok});
    QVERIFY(program.MainWindow().close());
    QCOMPARE(answerer.seen.size(), 2);
    QCOMPARE(answerer.seen[1].title, QStringLiteral("Uh-oh..."));
    QVERIFY(answerer.seen[1].text.startsWith(QString::fromStdString(jk::SaveFailedMessage().text)));
    QCOMPARE(answerer.seen[1].icon, QMessageBox::Information);
    QVERIFY(program.ShutDown());
}

void DesktopSkeleton::savingAnUntitledListNamesItInTheCaption() {
    jk::test::StartedProgram started;
    QTemporaryDir& dir = started.dir;
    jk::DesktopProgram& program = started.program;
    jk::Main& main = program.MainWindow();
    QCOMPARE(main.windowTitle(), QStringLiteral("Untitled - Ostrel Jukarra 2.62"));

    GiveUnsavedRows(program.State(), 1);
    const QString path = dir.filePath(QStringLiteral("new.m3u"));
    int asked = 0;
    program.SetSavePathChooser([&] {
        ++asked;
        return asked == 1 ? std::string() : path.toStdString();
    });
    program.SaveListClick();  // the dialog is cancelled: nothing changes
    QCOMPARE(main.windowTitle(), QStringLiteral("Untitled* - Ostrel Jukarra 2.62"));
    QVERIFY(!QFile::exists(path));

    program.SaveListClick();
    QCOMPARE(asked, 2);
    QCOMPARE(main.windowTitle(), QStringLiteral("new.m3u - Ostrel Jukarra 2.62"));
    QCOMPARE(FileText(path), QStringLiteral("/music/song0.mp3\r\n"));

    program.State().Playlist.PlaylistSaved = false;
    program.Front().ShowPlaylistCaption();
    QCOMPARE(main.windowTitle(), QStringLiteral("new.m3u* - Ostrel Jukarra 2.62"));

    BoxAnswerer answerer({QMessageBox::No});
    QVERIFY(main.close());
}

QTEST_MAIN(DesktopSkeleton)
#include "tst_DesktopSkeleton.moc"
