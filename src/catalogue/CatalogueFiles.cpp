#include "catalogue/CatalogueFiles.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace jk {
namespace {

// Largest catalogue file copied whole for a backup.
constexpr std::int64_t kMaxCopyBytes = std::int64_t{4} << 30;

class PosixSink final : public FileSink {
public:
    PosixSink(int fd, std::string path) : m_fd(fd), m_path(std::move(path)) {}
    ~PosixSink() override {
        if (m_fd >= 0) {
            ::close(m_fd);
        }
    }
    PosixSink(const PosixSink&) = delete;
    PosixSink& operator=(const PosixSink&) = delete;

    bool Write(std::string_view data) override {
        while (!data.empty() && m_error.empty()) {
            const ssize_t n = ::write(m_fd, data.data(), data.size());
            if (n < 0) {
                if (errno == EINTR) {
                    continue;
                }
                m_error = LastErrorText();
                break;
            }
            data.remove_prefix(static_cast<std::size_t>(n));
        }
        return m_error.empty();
    }

    IoResult Finish() override {
        if (m_error.empty() && ::fsync(m_fd) != 0) {
            m_error = LastErrorText();
        }
        if (::close(m_fd) != 0 && m_error.empty()) {
            m_error = LastErrorText();
        }
        m_fd = -1;
        if (!m_error.empty()) {
            return {false, "cannot write " + m_path + ": " + m_error};
        }
        return {};
    }

private:
    int m_fd;
    std::string m_path;
    std::string m_error;
};

}  // namespace

bool PosixCatalogueFiles::Exists(const std::string& path) {
    return FileExists(path);
}

std::unique_ptr<FileSink> PosixCatalogueFiles::Create(const std::string& path, std::string& error) {
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0) {
        error = "cannot write " + path + ": " + LastErrorText();
        return nullptr;
    }
    return std::make_unique<PosixSink>(fd, path);
}

IoResult PosixCatalogueFiles::Read(const std::string& path, std::string& out) {
    return ReadWholeFile(path, out, kMaxCopyBytes);
}

IoResult PosixCatalogueFiles::Rename(const std::string& from, const std::string& to) {
    if (::rename(from.c_str(), to.c_str()) != 0) {
        return {false, "cannot rename " + from + ": " + LastErrorText()};
    }
    return {};
}

bool PosixCatalogueFiles::Link(const std::string& from, const std::string& to) {
    ::unlink(to.c_str());
    return ::link(from.c_str(), to.c_str()) == 0;
}

bool PosixCatalogueFiles::Remove(const std::string& path) {
    return ::unlink(path.c_str()) == 0;
}

void PosixCatalogueFiles::SyncFolder(const std::string& folder) {
    const int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd >= 0) {
        ::fsync(fd);
        ::close(fd);
    }
}

std::vector<std::string> PosixCatalogueFiles::List(const std::string& folder) {
    std::vector<std::string> names;
    DIR* dir = ::opendir(folder.c_str());
    if (dir == nullptr) {
        return names;
    }
    while (const dirent* entry = ::readdir(dir)) {
        names.emplace_back(entry->d_name);
    }
    ::closedir(dir);
    return names;
}

CatalogueFiles& RealCatalogueFiles() {
    static PosixCatalogueFiles files;
    return files;
}

}  // namespace jk
