#include "platform/Trash.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace jk {

namespace {

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

bool MoveToTrash(const std::string& path, std::string& why) {
    const QString name = QString::fromStdString(path);
    const QFileInfo info(name);
    if (!info.exists() && !info.isSymLink()) {
        why = "the file is gone";
        return false;
    }
    if (info.isDir()) {
        why = "a folder, not a file";
        return false;
    }
    if (!HomeTrashReady()) {
        why = "no trash can be used for it";
        return false;
    }
    QFile file(name);
    if (!file.moveToTrash()) {
        why = file.errorString().toStdString();
        if (why.empty() || why == "Unknown error") {
            why = "no trash can be used for it";
        }
        return false;
    }
    return true;
}

}  // namespace jk
