// A close that the system asks for (SIGTERM at a logout or a `kill`, SIGINT, SIGHUP): the
// desktop program runs its whole shutdown, asks nothing, and keeps the open list in
// lastlist.m3u.

#include <csignal>

#include <QFile>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "DesktopTestSupport.h"
#include "app/Session.h"
#include "app/ui/DesktopProgram.h"
#include "platform/TerminationWatch.h"

using jk::test::BoxAnswerer;
using jk::test::FileText;
using jk::test::FolderOf;
using jk::test::GiveUnsavedRows;
using jk::test::IniValue;
using jk::test::WritePreviousRun;

namespace {

constexpr int kCloseTimeoutMs = 5000;

// A previous run with RememberList on, and an unsaved list of two songs named "mine.m3u".
void PrepareUnsavedNamedList(jk::DesktopProgram& program, const QTemporaryDir& dir) {
    program.Start();
    GiveUnsavedRows(program.State(), 2);
    jk::PlaylistState& list = program.State().Playlist;
    list.CurrentList = "mine.m3u";
    list.RecentLists[0] = dir.filePath(QStringLiteral("mine.m3u")).toStdString();
    program.SetSavePathChooser([] {
        QTest::qFail("a close by signal opened the save dialog", __FILE__, __LINE__);
        return std::string();
    });
}

const QString kTwoSongs = QStringLiteral("/music/song0.mp3\r\n/music/song1.mp3\r\n");

}  // namespace

class SignalClose : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void eachTerminationSignalRunsTheShutdownWithoutAQuestion();
    void aStandingOrderToSaveStillSavesTheNamedList();
    void aSignalDuringTheSaveQuestionClosesItAndShutsDown();
    void aSignalIgnoredAtTheStartStaysIgnored();
};

void SignalClose::eachTerminationSignalRunsTheShutdownWithoutAQuestion() {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        QTemporaryDir dir;
        WritePreviousRun(dir, "[Options]\r\nRememberList=1\r\n");
        jk::SessionData data;
        jk::DesktopProgram program(FolderOf(dir), data);
        PrepareUnsavedNamedList(program, dir);
        program.MainWindow().resize(700, 500);
        program.WatchTerminationSignals();
        BoxAnswerer answerer({});

        QVERIFY(std::raise(signal) == 0);
        QTRY_VERIFY_WITH_TIMEOUT(program.ShutDown(), kCloseTimeoutMs);
        QVERIFY2(answerer.seen.isEmpty(), qPrintable(answerer.seen.value(0).text));
        QVERIFY(!program.MainWindow().isVisible());
        QCOMPARE(FileText(dir.filePath(QStringLiteral("lastlist.m3u"))), kTwoSongs);
        QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("mine.m3u"))));
        QVERIFY(QFile::exists(dir.filePath(QStringLiteral("cache.dat"))));
        QCOMPARE(IniValue(dir, "WindowPosition", "Width"), std::string("10500"));
        QCOMPARE(IniValue(dir, "Options", "RememberList"), std::string("1"));
    }
}

void SignalClose::aStandingOrderToSaveStillSavesTheNamedList() {
    QTemporaryDir dir;
    WritePreviousRun(dir, "[Options]\r\nRememberList=0\r\nNeverAsk=1\r\nNeverAskSave=1\r\n");
    jk::SessionData data;
    jk::DesktopProgram program(FolderOf(dir), data);
    PrepareUnsavedNamedList(program, dir);
    program.WatchTerminationSignals();
    BoxAnswerer answerer({});

    QVERIFY(std::raise(SIGTERM) == 0);
    QTRY_VERIFY_WITH_TIMEOUT(program.ShutDown(), kCloseTimeoutMs);
    QVERIFY(answerer.seen.isEmpty());
    QCOMPARE(FileText(dir.filePath(QStringLiteral("mine.m3u"))), kTwoSongs);
    QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("lastlist.m3u"))));
}

void SignalClose::aSignalDuringTheSaveQuestionClosesItAndShutsDown() {
    QTemporaryDir dir;
    WritePreviousRun(dir, "[Options]\r\nRememberList=1\r\n");
    jk::SessionData data;
    jk::DesktopProgram program(FolderOf(dir), data);
    PrepareUnsavedNamedList(program, dir);
    program.WatchTerminationSignals();

    // The user's close waits on the question when the signal comes.
    QString asked;
    QTimer::singleShot(50, [&asked] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            asked = box->windowTitle();
        }
        std::raise(SIGTERM);
    });
    QVERIFY(!program.MainWindow().close());  // the question went away as Cancel
    QCOMPARE(asked, QStringLiteral("Save list?"));
    QTRY_VERIFY_WITH_TIMEOUT(program.ShutDown(), kCloseTimeoutMs);
    QCOMPARE(FileText(dir.filePath(QStringLiteral("lastlist.m3u"))), kTwoSongs);
    QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("mine.m3u"))));
}

void SignalClose::aSignalIgnoredAtTheStartStaysIgnored() {
    struct sigaction interruptBefore {};
    QVERIFY(sigaction(SIGINT, nullptr, &interruptBefore) == 0);
    const auto hangUpBefore = std::signal(SIGHUP, SIG_IGN);
    int calls = 0;
    {
        jk::TerminationWatch watch([&calls](int) { ++calls; });
        QVERIFY(watch.Active());
        QVERIFY(std::raise(SIGHUP) == 0);
        QVERIFY(std::raise(SIGINT) == 0);
        QTRY_COMPARE_WITH_TIMEOUT(calls, 1, kCloseTimeoutMs);
        QTest::qWait(50);
        QCOMPARE(calls, 1);
    }
    // The watch gives the signals back as it found them.
    QVERIFY(std::signal(SIGHUP, hangUpBefore) == SIG_IGN);
    struct sigaction interruptAfter {};
    QVERIFY(sigaction(SIGINT, nullptr, &interruptAfter) == 0);
    QVERIFY(interruptAfter.sa_handler == interruptBefore.sa_handler);
}

QTEST_MAIN(SignalClose)
#include "tst_SignalClose.moc"
