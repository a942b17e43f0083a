#include "platform/FileOperations.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

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

}  // namespace

FileResult MoveToTrash(const std::string& path) {
    QFile file(FromUtf8(path));
    if (!file.exists()) {
        return {false, "the file is not there"};
    }
    if (!file.moveToTrash()) {
        return {false, file.errorString().isEmpty() ? std::string("the trash could not take it")
                                                    : file.errorString().toStdString()};
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
