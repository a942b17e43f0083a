#include "util/FileIo.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <random>
#include <utility>

namespace jk {
namespace {

constexpr int kReadFlags = O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;

void CloseIfOpen(int fd) {
    if (fd >= 0) {
        ::close(fd);
    }
}

FileStatus FromStat(const struct stat& st) {
    FileStatus status;
    status.exists = true;
    status.isDirectory = S_ISDIR(st.st_mode);
    status.isRegular = S_ISREG(st.st_mode);
    status.size = static_cast<std::int64_t>(st.st_size);
    status.modifiedSeconds = static_cast<std::int64_t>(st.st_mtime);
    status.device = static_cast<std::uint64_t>(st.st_dev);
    status.inode = static_cast<std::uint64_t>(st.st_ino);
    return status;
}

std::string ParentFolderOf(const std::string& path) {
    const std::size_t slash = path.find_last_of('/');
    if (slash == std::string::npos) {
        return ".";
    }
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::int64_t PreadAll(int fd, std::int64_t offset, std::span<std::uint8_t> out) {
    if (fd < 0 || offset < 0) {
        return -1;
    }
    std::size_t done = 0;
    while (done < out.size()) {
        const ssize_t n = ::pread(fd, out.data() + done, out.size() - done,
                                  static_cast<off_t>(offset + static_cast<std::int64_t>(done)));
        if (n < 0) {
            if (errno == EINTR) {
                continue;
            }
            return done > 0 ? static_cast<std::int64_t>(done) : -1;
        }
        if (n == 0) {
            break;
        }
        done += static_cast<std::size_t>(n);
    }
    return static_cast<std::int64_t>(done);
}

// The number in a temporary file's name: drawn once per process and stepped for each file, so
// that two writers of one process never try the same name and other processes start elsewhere.
std::uint64_t NextTempNumber() {
    static std::atomic<std::uint64_t> next{std::random_device{}()};
    return next.fetch_add(0x9E3779B97F4A7C15ull, std::memory_order_relaxed);
}

}  // namespace

std::string LastErrorText() {
    // The GNU strerror_r, not strerror, whose text may sit in a buffer that threads share.
    char buffer[256];
    return ::strerror_r(errno, buffer, sizeof buffer);
}

FileStatus StatPath(const std::string& path) {
    struct stat st {};
    if (path.empty() || ::stat(path.c_str(), &st) != 0) {
        return {};
    }
    return FromStat(st);
}

FileStatus StatPathNoFollow(const std::string& path) {
    struct stat st {};
    if (path.empty() || ::lstat(path.c_str(), &st) != 0) {
        return {};
    }
    return FromStat(st);
}

bool FileExists(const std::string& path) {
    const FileStatus status = StatPath(path);
    return status.exists && !status.isDirectory;
}

bool FolderExists(const std::string& path) {
    const FileStatus status = StatPath(path);
    return status.exists && status.isDirectory;
}

FolderHandle::FolderHandle(const std::string& path) {
    if (!path.empty()) {
        m_fd = ::open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    }
}

FolderHandle::FolderHandle(FolderHandle&& other) noexcept : m_fd(std::exchange(other.m_fd, -1)) {}

FolderHandle& FolderHandle::operator=(FolderHandle&& other) noexcept {
    if (this != &other) {
        CloseIfOpen(m_fd);
        m_fd = std::exchange(other.m_fd, -1);
    }
    return *this;
}

FolderHandle::~FolderHandle() {
    CloseIfOpen(m_fd);
}

FileStatus FolderHandle::StatAt(const std::string& name) const {
    struct stat st {};
    if (m_fd < 0 || name.empty() || ::fstatat(m_fd, name.c_str(), &st, 0) != 0) {
        return {};
    }
    return FromStat(st);
}

ReadFile::ReadFile(const std::string& path) {
    if (!path.empty()) {
        m_fd = ::open(path.c_str(), kReadFlags);
    }
}

ReadFile::ReadFile(const FolderHandle& folder, const std::string& name) {
    if (folder.IsOpen() && !name.empty()) {
        m_fd = ::openat(folder.m_fd, name.c_str(), kReadFlags);
    }
}

ReadFile::ReadFile(ReadFile&& other) noexcept : m_fd(std::exchange(other.m_fd, -1)) {}

ReadFile& ReadFile::operator=(ReadFile&& other) noexcept {
    if (this != &other) {
        CloseIfOpen(m_fd);
        m_fd = std::exchange(other.m_fd, -1);
    }
    return *this;
}

ReadFile::~ReadFile() {
    CloseIfOpen(m_fd);
}

std::int64_t ReadFile::Size() const {
    struct stat st {};
    if (m_fd < 0 || ::fstat(m_fd, &st) != 0) {
        return -1;
    }
    return static_cast<std::int64_t>(st.st_size);
}

FileStatus ReadFile::Status() const {
    struct stat st {};
    if (m_fd < 0 || ::fstat(m_fd, &st) != 0) {
        return {};
    }
    return FromStat(st);
}

std::int64_t ReadFile::ReadAt(std::int64_t offset, std::span<std::uint8_t> out) const {
    return PreadAll(m_fd, offset, out);
}

void ReadFile::ReadsAtRandom() const {
    if (m_fd >= 0) {
        ::posix_fadvise(m_fd, 0, 0, POSIX_FADV_RANDOM);
    }
}

void ReadFile::WillNeed(std::int64_t offset, std::int64_t length) const {
    if (m_fd >= 0 && offset >= 0 && length > 0) {
        ::posix_fadvise(m_fd, static_cast<off_t>(offset), static_cast<off_t>(length),
                        POSIX_FADV_WILLNEED);
    }
}

std::int64_t ReadFile::ReadCachedAt(std::int64_t offset, std::span<std::uint8_t> out) const {
    if (m_fd < 0 || offset < 0) {
        return -1;
    }
    std::size_t done = 0;
    while (done < out.size()) {
        iovec part{out.data() + done, out.size() - done};
        const ssize_t n =
            ::preadv2(m_fd, &part, 1, static_cast<off_t>(offset + static_cast<std::int64_t>(done)),
                      RWF_NOWAIT);
        if (n < 0) {
            if (errno == EINTR) {
                continue;
            }
            if (errno == EAGAIN) {
                break;  // the rest is on its way from the disk
            }
            return done > 0 ? static_cast<std::int64_t>(done) : -1;
        }
        if (n == 0) {
            break;
        }
        done += static_cast<std::size_t>(n);
    }
    return static_cast<std::int64_t>(done);
}

ReadWriteFile::ReadWriteFile(const std::string& path, Mode mode) {
    if (path.empty()) {
        return;
    }
    const int flags = mode == Mode::Existing ? O_RDWR | O_CLOEXEC | O_NOCTTY
                                             : O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOCTTY;
    m_fd = ::open(path.c_str(), flags, 0644);
}

ReadWriteFile::ReadWriteFile(ReadWriteFile&& other) noexcept : m_fd(other.m_fd) {
    other.m_fd = -1;
}

ReadWriteFile& ReadWriteFile::operator=(ReadWriteFile&& other) noexcept {
    if (this != &other) {
        Close();
        m_fd = other.m_fd;
        other.m_fd = -1;
    }
    return *this;
}

ReadWriteFile::~ReadWriteFile() {
    Close();
}

std::int64_t ReadWriteFile::Size() const {
    struct stat st {};
    if (m_fd < 0 || ::fstat(m_fd, &st) != 0) {
        return -1;
    }
    return static_cast<std::int64_t>(st.st_size);
}

std::int64_t ReadWriteFile::ReadAt(std::int64_t offset, std::span<std::uint8_t> out) const {
    return PreadAll(m_fd, offset, out);
}

bool ReadWriteFile::WriteAt(std::int64_t offset, std::span<const std::uint8_t> data) {
    if (m_fd < 0 || offset < 0) {
        return false;
    }
    std::size_t done = 0;
    while (done < data.size()) {
        const ssize_t n = ::pwrite(m_fd, data.data() + done, data.size() - done,
                                   static_cast<off_t>(offset + static_cast<std::int64_t>(done)));
        if (n < 0) {
            if (errno == EINTR) {
                continue;
            }
            return false;
        }
        if (n == 0) {
            return false;
        }
        done += static_cast<std::size_t>(n);
    }
    return true;
}

bool ReadWriteFile::TruncateTo(std::int64_t length) {
    if (m_fd < 0 || length < 0) {
        return false;
    }
    while (::ftruncate(m_fd, static_cast<off_t>(length)) != 0) {
        if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

bool ReadWriteFile::Close() {
    if (m_fd < 0) {
        return true;
    }
    const int rc = ::close(m_fd);
    m_fd = -1;
    return rc == 0;
}

IoResult TruncateFileBy(const std::string& path, std::int64_t bytes) {
    ReadWriteFile file(path);
    if (!file.IsOpen()) {
        return {false, "cannot open " + path + ": " + LastErrorText()};
    }
    const std::int64_t size = file.Size();
    if (size < 0) {
        return {false, "cannot read the length of " + path + ": " + LastErrorText()};
    }
    if (bytes < 0 || bytes > size) {
        return {false, "cannot cut " + std::to_string(bytes) + " bytes from " + path +
                           ", which holds " + std::to_string(size)};
    }
    if (!file.TruncateTo(size - bytes)) {
        return {false, "cannot shorten " + path + ": " + LastErrorText()};
    }
    if (!file.Close()) {
        return {false, "cannot close " + path + ": " + LastErrorText()};
    }
    return {};
}

bool AddOwnerWritePermission(const std::string& path) {
    struct stat st {};
    if (path.empty() || ::stat(path.c_str(), &st) != 0) {
        return false;
    }
    if ((st.st_mode & S_IWUSR) != 0) {
        return true;
    }
    return ::chmod(path.c_str(), (st.st_mode & 07777) | S_IWUSR) == 0;
}

IoResult ReadWholeFile(const std::string& path, std::string& out, std::int64_t maxBytes) {
    out.clear();
    ReadFile file(path);
    if (!file.IsOpen()) {
        return {false, "cannot open " + path + ": " + LastErrorText()};
    }
    const FileStatus status = file.Status();
    if (status.isDirectory) {
        return {false, path + " is a folder"};
    }
    if (status.size > maxBytes) {
        return {false, path + " is larger than " + std::to_string(maxBytes) + " bytes"};
    }
    // Read in chunks to the end, since the size may change while we read.
    constexpr std::size_t kChunk = 1 << 20;
    out.reserve(static_cast<std::size_t>(status.size));
    std::int64_t offset = 0;
    for (;;) {
        const std::size_t old = out.size();
        out.resize(old + kChunk);
        const std::int64_t n =
            file.ReadAt(offset, {reinterpret_cast<std::uint8_t*>(out.data() + old), kChunk});
        if (n < 0) {
            out.clear();
            return {false, "cannot read " + path + ": " + LastErrorText()};
        }
        out.resize(old + static_cast<std::size_t>(n));
        offset += n;
        // The size stated may be out of date, or 0 as /proc states it: the limit holds for
        // what is read, the last short read included.
        if (offset > maxBytes) {
            out.clear();
            return {false, path + " is larger than " + std::to_string(maxBytes) + " bytes"};
        }
        if (static_cast<std::size_t>(n) < kChunk) {
            break;
        }
    }
    return {};
}

AtomicFileWriter::AtomicFileWriter(const std::string& path) : m_path(path) {
    const std::string folder = ParentFolderOf(path);
    const std::size_t slash = path.find_last_of('/');
    const std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
    for (int attempt = 0; attempt < 8 && m_fd < 0; ++attempt) {
        m_temp = (folder == "/" ? "" : folder) + "/." + name + ".tmp-" +
                 std::to_string(NextTempNumber() % 1000000000ull);
        m_fd = ::open(m_temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
        if (m_fd < 0 && errno != EEXIST) {
            break;
        }
    }
    if (m_fd < 0) {
        m_temp.clear();  // nothing of ours to remove
        m_error = LastErrorText();
        return;
    }
    // Keep the permissions of the file being replaced.
    struct stat old {};
    if (::stat(path.c_str(), &old) == 0) {
        ::fchmod(m_fd, old.st_mode & 07777);
    }
}

AtomicFileWriter::~AtomicFileWriter() {
    if (!m_finished) {
        Fail("not finished");
    }
}

void AtomicFileWriter::Fail(std::string reason) {
    if (m_error.empty()) {
        m_error = std::move(reason);
    }
    if (m_fd >= 0) {
        ::close(m_fd);
        m_fd = -1;
    }
    if (!m_temp.empty()) {
        ::unlink(m_temp.c_str());
        m_temp.clear();
    }
}

bool AtomicFileWriter::Write(std::string_view data) {
    if (m_fd < 0) {
        return false;
    }
    std::size_t done = 0;
    while (done < data.size()) {
        const ssize_t n = ::write(m_fd, data.data() + done, data.size() - done);
        if (n < 0) {
            if (errno == EINTR) {
                continue;
            }
            Fail(LastErrorText());
            return false;
        }
        done += static_cast<std::size_t>(n);
    }
    return true;
}

IoResult AtomicFileWriter::Commit() {
    m_finished = true;
    if (m_fd < 0) {
        Fail({});
        return {false, "cannot write " + m_path + ": " + m_error};
    }
    const int fd = m_fd;
    m_fd = -1;
    std::string reason;
    if (::fsync(fd) != 0) {
        reason = LastErrorText();
    }
    if (::close(fd) != 0 && reason.empty()) {
        reason = LastErrorText();
    }
    if (!reason.empty()) {
        Fail(std::move(reason));
        return {false, "cannot write " + m_path + ": " + m_error};
    }
    if (::rename(m_temp.c_str(), m_path.c_str()) != 0) {
        Fail(LastErrorText());
        return {false, "cannot write " + m_path + ": " + m_error};
    }
    m_temp.clear();
    return {};
}

IoResult WriteFileAtomically(const std::string& path, std::string_view data) {
    AtomicFileWriter writer(path);
    writer.Write(data);
    return writer.Commit();
}

}  // namespace jk
