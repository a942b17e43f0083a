#include "platform/DirectoryListing.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "platform/Drives.h"

namespace jk {
namespace {

// What an entry is, looked at without following it first; a link is then followed once to see
// whether it leads to a folder.
enum class Seen { File, Folder, FolderLink };

Seen ClassifyLink(int dirFd, const char* name) {
    struct stat target {};
    if (::fstatat(dirFd, name, &target, 0) == 0 && S_ISDIR(target.st_mode)) {
        return Seen::FolderLink;
    }
    return Seen::File;  // a link to a file, or one that leads nowhere
}

Seen Classify(int dirFd, const dirent& entry) {
    switch (entry.d_type) {
        case DT_DIR:
            return Seen::Folder;
        case DT_LNK:
            return ClassifyLink(dirFd, entry.d_name);
        case DT_UNKNOWN: {
            struct stat st {};
            if (::fstatat(dirFd, entry.d_name, &st, AT_SYMLINK_NOFOLLOW) != 0) {
                return Seen::File;  // gone since the listing: the song reader will find that out
            }
            if (S_ISLNK(st.st_mode)) {
                return ClassifyLink(dirFd, entry.d_name);
            }
            return S_ISDIR(st.st_mode) ? Seen::Folder : Seen::File;
        }
        default:
            return Seen::File;
    }
}

std::string WithoutTrailingSeparator(const std::string& folder) {
    std::string path = folder;
    while (path.size() > 1 && path.back() == '/') {
        path.pop_back();
    }
    return path;
}

}  // namespace

PosixFolderLister::PosixFolderLister() : m_mountDevices(ReadMountDevices()) {}

PosixFolderLister::PosixFolderLister(std::unordered_map<std::string, std::uint64_t> mountDevices)
    : m_mountDevices(std::move(mountDevices)) {}

ListResult PosixFolderLister::List(const std::string& folder,
                                   std::optional<std::uint64_t> onlyDevice, FolderId& id,
                                   const EntryCallback& onEntry) {
    id = FolderId{};
    if (onlyDevice) {
        const auto mount = m_mountDevices.find(WithoutTrailingSeparator(folder));
        if (mount != m_mountDevices.end() && mount->second != *onlyDevice) {
            return ListResult::OtherFilesystem;
        }
    }
    const int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) {
        return ListResult::Unreadable;
    }
    struct stat st {};
    if (::fstat(fd, &st) != 0) {
        ::close(fd);
        return ListResult::Unreadable;
    }
    id.device = static_cast<std::uint64_t>(st.st_dev);
    id.inode = static_cast<std::uint64_t>(st.st_ino);
    if (onlyDevice && id.device != *onlyDevice) {
        ::close(fd);
        return ListResult::OtherFilesystem;
    }
    DIR* dir = ::fdopendir(fd);
    if (dir == nullptr) {
        ::close(fd);
        return ListResult::Unreadable;
    }
    const int dirFd = ::dirfd(dir);
    for (;;) {
        errno = 0;
        const dirent* entry = ::readdir(dir);
        if (entry == nullptr) {
            break;  // the end, or a read error: what was read so far stands
        }
        const Seen seen = Classify(dirFd, *entry);
        if (seen == Seen::FolderLink) {
            continue;  // never followed, never listed
        }
        const std::string_view name(entry->d_name, std::strlen(entry->d_name));
        if (!onEntry(name, seen == Seen::Folder ? EntryKind::Folder : EntryKind::File)) {
            break;
        }
    }
    ::closedir(dir);
    return ListResult::Listed;
}

bool PosixFolderLister::IsFolder(const std::string& path) {
    struct stat st {};
    return !path.empty() && ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

}  // namespace jk
