#include "platform/UserFolders.h"

#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <vector>

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

std::string AccountHomeFolder() {
    // getpwuid_r, not getpwuid: the entry lands in a buffer of our own rather than in one the
    // whole process shares, which another thread's look-up could overwrite while it is read.
    constexpr std::size_t kMostBufferBytes = std::size_t{1} << 20;
    const long suggested = ::sysconf(_SC_GETPW_R_SIZE_MAX);
    std::vector<char> buffer(suggested > 0 ? static_cast<std::size_t>(suggested) : 16384);
    passwd entry{};
    passwd* found = nullptr;
    while (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) == ERANGE &&
           buffer.size() < kMostBufferBytes) {
        buffer.resize(buffer.size() * 2);
    }
    return found != nullptr && found->pw_dir != nullptr ? std::string(found->pw_dir) : "";
}

}  // namespace jk
