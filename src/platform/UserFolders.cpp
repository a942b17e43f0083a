#include "platform/UserFolders.h"

#include <cstdlib>

#include <QDir>
#include <QStandardPaths>

namespace jk {

namespace {

std::string FolderOf(const char* variable, QStandardPaths::StandardLocation location,
                     const char* fallbackName) {
    if (const char* value = std::getenv(variable); value != nullptr && value[0] == '/') {
        return value;
    }
    QString folder = QStandardPaths::writableLocation(location);
    if (folder.isEmpty() || folder == QDir::homePath()) {
        folder = QDir::homePath() + "/" + fallbackName;
    }
    return folder.toStdString();
}

}  // namespace

std::string MusicFolder() {
    return FolderOf("XDG_MUSIC_DIR", QStandardPaths::MusicLocation, "Music");
}

std::string DownloadFolder() {
    return FolderOf("XDG_DOWNLOAD_DIR", QStandardPaths::DownloadLocation, "Downloads");
}

}  // namespace jk
