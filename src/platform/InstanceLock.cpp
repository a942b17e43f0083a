#include "platform/InstanceLock.h"

#include <cstdlib>

#include <unistd.h>

#include <QCryptographicHash>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QLockFile>

namespace jk {

namespace {

constexpr char kRaiseAnswer[] = "raised\n";

// The channel's name: unique per data folder and user, in the user's runtime folder when there
// is one (else Qt's temporary folder).
QString ChannelName(const std::string& dataFolder) {
    const QByteArray canonical =
        QFileInfo(QString::fromStdString(dataFolder)).canonicalFilePath().toUtf8();
    const QByteArray key = canonical.isEmpty() ? QByteArray::fromStdString(dataFolder) : canonical;
    QString name =
        QStringLiteral("jukarra-%1-%2")
            .arg(QString::fromLatin1(
                QCryptographicHash::hash(key, QCryptographicHash::Sha1).toHex().left(16)))
            .arg(getuid());
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    if (runtime != nullptr && runtime[0] == '/' && QFileInfo(QString::fromUtf8(runtime)).isDir()) {
        return QString::fromUtf8(runtime) + QStringLiteral("/") + name;
    }
    return name;
}

}  // namespace

struct InstanceLock::Impl {
    std::string dataFolder;
    QLockFile lockFile;
    std::unique_ptr<QLocalServer> server;
    std::string error;

    explicit Impl(std::string folder)
        : dataFolder(std::move(folder)),
          lockFile(QString::fromStdString(dataFolder) + QString::fromLatin1(kLockFileName)) {
        // The lock is held for a whole run: never let age make it look stale. A holder that died
        // is still recognised by its process id.
        lockFile.setStaleLockTime(0);
    }
};

InstanceLock::InstanceLock(std::string dataFolder)
    : m_impl(std::make_unique<Impl>(std::move(dataFolder))) {}

InstanceLock::~InstanceLock() {
    Release();
}

InstanceLock::Result InstanceLock::TryAcquire(int waitMs) {
    if (m_impl->lockFile.isLocked()) {
        return Result::Acquired;
    }
    if (m_impl->lockFile.tryLock(waitMs)) {
        return Result::Acquired;
    }
    switch (m_impl->lockFile.error()) {
        case QLockFile::LockFailedError:
            return Result::HeldElsewhere;
        case QLockFile::PermissionError:
            m_impl->error =
                "cannot create the lock file in " + m_impl->dataFolder + ": permission denied";
            return Result::Failed;
        default:
            m_impl->error = "cannot create the lock file in " + m_impl->dataFolder;
            return Result::Failed;
    }
}

bool InstanceLock::Held() const {
    return m_impl->lockFile.isLocked();
}

const std::string& InstanceLock::Error() const {
    return m_impl->error;
}

bool InstanceLock::ListenForRaise(std::function<void()> onRaise) {
    if (!Held()) {
        return false;
    }
    const QString name = ChannelName(m_impl->dataFolder);
    // We hold the lock, so a socket left by a holder that died is nobody's.
    QLocalServer::removeServer(name);
    auto server = std::make_unique<QLocalServer>();
    server->setSocketOptions(QLocalServer::UserAccessOption);
    if (!server->listen(name)) {
        m_impl->error = server->errorString().toStdString();
        return false;
    }
    QLocalServer* raw = server.get();
    QObject::connect(raw, &QLocalServer::newConnection, raw, [raw, onRaise = std::move(onRaise)] {
        while (QLocalSocket* socket = raw->nextPendingConnection()) {
            QObject::connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
            socket->write(kRaiseAnswer);
            socket->flush();
            socket->disconnectFromServer();
            if (onRaise) {
                onRaise();
            }
        }
    });
    m_impl->server = std::move(server);
    return true;
}

void InstanceLock::Release() {
    if (!m_impl) {
        return;
    }
    m_impl->server.reset();
    if (m_impl->lockFile.isLocked()) {
        m_impl->lockFile.unlock();
    }
}

bool AskRunningInstanceToRaise(const std::string& dataFolder, int timeoutMs) {
    QLocalSocket socket;
    socket.connectToServer(ChannelName(dataFolder));
    if (!socket.waitForConnected(timeoutMs)) {
        return false;
    }
    QByteArray answer;
    while (!answer.contains('\n') && socket.waitForReadyRead(timeoutMs)) {
        answer += socket.readAll();
    }
    answer += socket.readAll();
    return answer.startsWith(kRaiseAnswer);
}

}  // namespace jk
