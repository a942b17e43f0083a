// The platform pieces of the start: the data folder's choice and creation, the single-instance
// lock with its raise channel, and the search for a player on the PATH. They run here, with
// an event loop, because the raise channel needs one.

#include <atomic>
#include <thread>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSysInfo>
#include <QTemporaryDir>
#include <QTest>

#include "DesktopTestSupport.h"
#include "platform/DataFolder.h"
#include "platform/ExecutableSearch.h"
#include "platform/InstanceLock.h"

namespace {

using jk::test::FolderOf;

void WriteFile(const QString& path, const QByteArray& bytes, QFile::Permissions permissions) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    file.close();
    QVERIFY(file.setPermissions(permissions));
}

}  // namespace

class PlatformSeams : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void dataFolderFollowsTheOrderOfChoices();
    void dataFolderIsCreatedAbsoluteAndEndsInASlash();
    void dataFolderThatCannotBeCreatedSaysWhy();
    void aSecondLockIsRefusedAndRaisesTheFirst();
    void aReleasedLockCanBeTakenAgain();
    void aLockLeftByADeadProcessIsTaken();
    void askingWithNobodyRunningFails();
    void executablesAreFoundOnThePath();
};

void PlatformSeams::dataFolderFollowsTheOrderOfChoices() {
    jk::DataFolderInputs inputs;
    inputs.home = "/home/ann";
    QCOMPARE(jk::ChooseDataFolder(inputs), std::string("/home/ann/.local/share/jukarra"));
    inputs.xdgDataHome = "relative/ignored";
    QCOMPARE(jk::ChooseDataFolder(inputs), std::string("/home/ann/.local/share/jukarra"));
    inputs.xdgDataHome = "/data/Ann";
    QCOMPARE(jk::ChooseDataFolder(inputs), std::string("/data/Ann/jukarra"));
    inputs.executableFolder = "/opt/Jukarra";
    QCOMPARE(jk::ChooseDataFolder(inputs), std::string("/data/Ann/jukarra"));
    inputs.executableFolderHoldsIni = true;
    QCOMPARE(jk::ChooseDataFolder(inputs), std::string("/opt/Jukarra"));
    inputs.jukarraHome = "/srv/Jukarra Home";
    QCOMPARE(jk::ChooseDataFolder(inputs), std::string("/srv/Jukarra Home"));
    inputs.explicitFolder = "/tmp/Given";
    QCOMPARE(jk::ChooseDataFolder(inputs), std::string("/tmp/Given"));
}

void PlatformSeams::dataFolderIsCreatedAbsoluteAndEndsInASlash() {
    QTemporaryDir dir;
    const std::string wanted = dir.path().toStdString() + "/Mixed Case/./deeper/";
    const jk::DataFolderResult result = jk::PrepareDataFolder(wanted);
    QVERIFY2(result.ok, result.error.c_str());
    QCOMPARE(result.path, dir.path().toStdString() + "/Mixed Case/deeper/");
    QVERIFY(QDir(QString::fromStdString(result.path)).exists());

    const QString previous = QDir::currentPath();
    QDir::setCurrent(dir.path());
    const jk::DataFolderResult relative = jk::PrepareDataFolder("rel");
    QDir::setCurrent(previous);
    QVERIFY(relative.ok);
    QCOMPARE(relative.path, dir.path().toStdString() + "/rel/");
}

void PlatformSeams::dataFolderThatCannotBeCreatedSaysWhy() {
    QTemporaryDir dir;
    WriteFile(dir.filePath(QStringLiteral("plain")), "x", QFile::ReadOwner | QFile::WriteOwner);
    const jk::DataFolderResult under =
        jk::PrepareDataFolder(dir.filePath("plain/data").toStdString());
    QVERIFY(!under.ok);
    QVERIFY(under.error.find("cannot create the data folder") != std::string::npos);
    QVERIFY(under.error.find('\n') == std::string::npos);

    const jk::DataFolderResult file = jk::PrepareDataFolder(dir.filePath("plain").toStdString());
    QVERIFY(!file.ok);
    QVERIFY(file.error.find("is not a folder") != std::string::npos);
}

void PlatformSeams::aSecondLockIsRefusedAndRaisesTheFirst() {
    QTemporaryDir dir;
    const std::string folder = FolderOf(dir);
    jk::InstanceLock first(folder);
    QCOMPARE(first.TryAcquire(), jk::InstanceLock::Result::Acquired);
    std::atomic<int> raised = 0;
    QVERIFY(first.ListenForRaise([&raised] { ++raised; }));

    // The second start runs on its own thread, as it would in its own process, so that this
    // thread's event loop can answer it.
    std::atomic<int> secondResult = -1;
    std::atomic<bool> answered = false;
    std::atomic<bool> done = false;
    std::thread second([&] {
        jk::InstanceLock lock(folder);
        secondResult = static_cast<int>(lock.TryAcquire());
        answered = jk::AskRunningInstanceToRaise(folder, 5000);
        done = true;
    });
    QTRY_VERIFY_WITH_TIMEOUT(done.load(), 10000);
    second.join();
    QCOMPARE(secondResult.load(), static_cast<int>(jk::InstanceLock::Result::HeldElsewhere));
    QVERIFY(answered.load());
    QCOMPARE(raised.load(), 1);
}

void PlatformSeams::aReleasedLockCanBeTakenAgain() {
    QTemporaryDir dir;
    jk::InstanceLock first(FolderOf(dir));
    QCOMPARE(first.TryAcquire(), jk::InstanceLock::Result::Acquired);
    QVERIFY(QFile::exists(dir.filePath(QString::fromLatin1(jk::kLockFileName))));
    first.Release();
    QVERIFY(!first.Held());
    jk::InstanceLock second(FolderOf(dir));
    QCOMPARE(second.TryAcquire(), jk::InstanceLock::Result::Acquired);
}

void PlatformSeams::aLockLeftByADeadProcessIsTaken() {
    QTemporaryDir dir;
    // A process id far above any the system hands out.
    WriteFile(dir.filePath(QString::fromLatin1(jk::kLockFileName)),
              "2147483600\njukarra\n" + QSysInfo::machineHostName().toUtf8() + "\n",
              QFile::ReadOwner | QFile::WriteOwner);
    jk::InstanceLock lock(FolderOf(dir));
    QCOMPARE(lock.TryAcquire(), jk::InstanceLock::Result::Acquired);
}

void PlatformSeams::askingWithNobodyRunningFails() {
    QTemporaryDir dir;
    QVERIFY(!jk::AskRunningInstanceToRaise(FolderOf(dir), 200));
}

void PlatformSeams::executablesAreFoundOnThePath() {
    QTemporaryDir dir;
    QDir(dir.path()).mkpath(QStringLiteral("a"));
    QDir(dir.path()).mkpath(QStringLiteral("b"));
    QDir(dir.path()).mkpath(QStringLiteral("c/player"));  // a folder is never a program
    WriteFile(dir.filePath(QStringLiteral("a/player")), "#!/bin/sh\n",
              QFile::ReadOwner | QFile::WriteOwner);  // not executable
    WriteFile(dir.filePath(QStringLiteral("b/player")), "#!/bin/sh\n",
              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const std::string a = dir.filePath("a").toStdString();
    const std::string b = dir.filePath("b").toStdString();
    const std::string c = dir.filePath("c").toStdString();
    const std::string path = "::" + c + ":" + a + ":" + b + "/:";
    QCOMPARE(jk::FindExecutableOnPath("player", path), b + "/player");
    QCOMPARE(jk::FindExecutableOnPath("absent", path), std::string());
    QCOMPARE(jk::FindExecutableOnPath("b/player", dir.path().toStdString()), std::string());
    QCOMPARE(jk::FindExecutableOnPath("", path), std::string());
}

QTEST_GUILESS_MAIN(PlatformSeams)
#include "tst_PlatformSeams.moc"
