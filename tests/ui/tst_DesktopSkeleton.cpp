// The desktop program's skeleton under the offscreen platform: first run, caption, splash,
// geometry kept through the settings, and the unsaved-playlist question at closing.

#include <QAbstractButton>
#include <QApplication>
#include <QFile>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "app/Messages.h"
#include "app/ProfileFile.h"
#include "app/Session.h"
#include "app/ui/DesktopProgram.h"

namespace {

struct SeenBox {
    QString title;
    QString text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
};

// Answers every message box that opens with the next of the given buttons, and writes down what
// each box said. A box beyond the answers is rejected (and still written down).
class BoxAnswerer {
public:
    explicit BoxAnswerer(QList<QMessageBox::StandardButton> answers) : m_answers(answers) {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { Poll(); });
        m_timer.start(10);
    }
    QList<SeenBox> seen;

private:
    void Poll() {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (box == nullptr || box == m_last) {
            return;
        }
        m_last = box;
        seen.append({box->windowTitle(), box->text(), box->icon()});
        if (m_answers.isEmpty()) {
            box->reject();
            return;
        }
        box->button(m_answers.takeFirst())->click();
    }

    QList<QMessageBox::StandardButton> m_answers;
    QTimer m_timer;
    QMessageBox* m_last = nullptr;
};

// Data steps with a playlist of a few songs, for the closing question.
class PlaylistData final : public jk::SessionData {
public:
    std::size_t songs = 0;
    std::size_t PlaylistSongCount(const jk::Session&) override { return songs; }
};

QString IniText(const QTemporaryDir& dir) {
    QFile file(dir.filePath(QStringLiteral("jukarra2.ini")));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

std::string IniValue(const QTemporaryDir& dir, const char* section, const char* key) {
    return jk::ProfileFile::Load(dir.filePath(QStringLiteral("jukarra2.ini")).toStdString())
        .GetINI(section, key);
}

std::string FolderOf(const QTemporaryDir& dir) {
    return dir.path().toStdString() + "/";
}

}  // namespace

class DesktopSkeleton : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void firstRunWelcomesAndShowsAnUntitledWindow();
    void closingSavesTheGeometryThatTheNextRunRestores();
    void aMaximizedWindowIsRememberedWithItsNormalSize();
    void anUnsavedPlaylistIsAskedForAndCancelKeepsTheWindowOpen();
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

    jk::Main& main = program.MainWindow();
    QVERIFY(main.isVisible());
    QVERIFY(main.isEnabled());
    QCOMPARE(main.windowTitle(), QStringLiteral("Untitled - Ostrel Jukarra 2.62"));
    QCOMPARE(main.size(), QSize(570, 462));  // 8550 x 6930 twips
    QVERIFY(!program.SplashWindow().isVisible());
    QCOMPARE(program.SplashWindow().VersionText(),
             QStringLiteral("version 2.62 - February 26, 2000"));
    QCOMPARE(program.SplashWindow().StatusText(), QStringLiteral("Loading settings..."));
    QCOMPARE(program.State().Starting, 0);

    QVERIFY(QTest::qWaitForWindowExposed(&main));
    main.grab().save(QStringLiteral("/tmp/jukarra-main.png"));
    program.SplashWindow().grab().save(QStringLiteral("/tmp/jukarra-splash.png"));

    QVERIFY(IniText(dir).isEmpty());  // nothing is written before closing
    QVERIFY(main.close());
    QVERIFY(program.ShutDown());
    QCOMPARE(IniValue(dir, "INIexists", "Check"), std::string("1"));
    QCOMPARE(IniValue(dir, "WindowPosition", "Width"), std::string("8550"));
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
    QFile ini(dir.filePath(QStringLiteral("jukarra2.ini")));
    QVERIFY(ini.open(QIODevice::WriteOnly));
    ini.write("[INIexists]\r\nCheck=1\r\n[WindowPosition]\r\nWidth=9000\r\nHeight=6000\r\n");
    ini.close();
    const QString before = IniText(dir);

    PlaylistData data;
    data.songs = 3;
    jk::DesktopProgram program(FolderOf(dir), data);
    program.Start();
    program.State().PlaylistSaved = 0;

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
    QCOMPARE(program.State().PlaylistSaved, 0);  // "No" drops the list unsaved
    QCOMPARE(IniValue(dir, "WindowPosition", "Width"), std::string("9000"));
    QVERIFY(IniText(dir) != before);
}

QTEST_MAIN(DesktopSkeleton)
#include "tst_DesktopSkeleton.moc"
