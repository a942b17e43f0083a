#include "platform/FileOperations.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace jk {

namespace {

QString FromUtf8(const std::string& text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

FileResult Failed(const QFile& file) {
    return {false, file.errorString().toStdString()};
}

FileResult TargetTaken(const std::string& target) {
    return {false, "a file " + target + " is there already"};
}

// The home trash lives in the user's data folder. Qt cannot set up its trash when that folder
// does not exist yet (a fresh account, a test's XDG_DATA_HOME) and then writes its "files" and
// "info" folders into the working folder; the data folder is made first, and without one no
// trash is used.
bool HomeTrashReady() {
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (data.isEmpty() || !QDir::isAbsolutePath(data)) {
        return false;
    }
    return QDir().mkpath(data);
}

}  // namespace

FileResult MoveToTrash(const std::string& path) {
    const QString name = FromUtf8(path);
    const QFileInfo info(name);
    if (!info.exists() && !info.isSymLink()) {
        return {false, "the file is gone"};
    }
    if (info.isDir()) {
        return {false, "a folder, not a file"};
    }
    if (!HomeTrashReady()) {
        return {false, "no trash can be used for it"};
    }
    QFile file(name);
    if (!file.moveToTrash()) {
        std::string why = file.errorString().toStdString();
        if (why.empty() || why == "Unknown error") {
            why = "no trash can be used for it";
        }
        return {false, why};
    }
    return {true, {}};
}

FileResult CopyFileTo(const std::string& path, const std::string& target) {
    if (PathExists(target)) {
        return TargetTaken(target);
    }
    QFile file(FromUtf8(path));
    if (!file.copy(FromUtf8(target))) {
        return Failed(file);
    }
    QFile copy(FromUtf8(target));
    if (copy.open(QIODevice::ReadWrite)) {
        copy.setFileTime(QFileInfo(file).lastModified(), QFileDevice::FileModificationTime);
    }
    return {true, {}};
}

FileResult MoveFileTo(const std::string& path, const std::string& target) {
    if (PathExists(target)) {
        return TargetTaken(target);
    }
    QFile file(FromUtf8(path));
    // QFile::rename copies and removes across filesystems, and refuses a target that exists.
    if (!file.rename(FromUtf8(target))) {
        return Failed(file);
    }
    return {true, {}};
}

bool PathExists(const std::string& path) {
    const QFileInfo info(FromUtf8(path));
    return info.exists() || info.isSymLink();
}

}  // namespace jk
