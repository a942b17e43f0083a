#include "util/MappedFile.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace jk {
namespace {

class Descriptor {
public:
    explicit Descriptor(const std::string& path)
        : m_fd(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY)) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (m_fd >= 0) {
            ::close(m_fd);
        }
    }
    int Get() const { return m_fd; }

private:
    int m_fd;
};

bool ReadAll(int fd, char* out, std::size_t size) {
    std::size_t done = 0;
    while (done < size) {
        const ssize_t n = ::pread(fd, out + done, size - done, static_cast<off_t>(done));
        if (n < 0 && errno == EINTR) {
            continue;
        }
        if (n <= 0) {
            return false;
        }
        done += static_cast<std::size_t>(n);
    }
    return true;
}

}  // namespace

std::shared_ptr<const MappedFile> MappedFile::Open(const std::string& path, std::int64_t maxBytes) {
    const Descriptor fd(path);
    struct stat st {};
    if (fd.Get() < 0 || ::fstat(fd.Get(), &st) != 0 || !S_ISREG(st.st_mode) || st.st_size < 0 ||
        st.st_size > maxBytes) {
        return nullptr;
    }
    std::shared_ptr<MappedFile> file(new MappedFile());
    file->m_size = static_cast<std::size_t>(st.st_size);
    if (file->m_size == 0) {
        return file;
    }
    // Filled in at once from the page cache: one call rather than a fault per page.
    void* at = ::mmap(nullptr, file->m_size, PROT_READ, MAP_PRIVATE | MAP_POPULATE, fd.Get(), 0);
    if (at != MAP_FAILED) {
        file->m_data = static_cast<const char*>(at);
        file->m_mapped = true;
        return file;
    }
    try {
        file->m_copy = PageBlock(file->m_size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
    if (!ReadAll(fd.Get(), file->m_copy.Data(), file->m_size)) {
        return nullptr;
    }
    file->m_data = file->m_copy.Data();
    return file;
}

MappedFile::~MappedFile() {
    if (m_mapped) {
        ::munmap(const_cast<char*>(m_data), m_size);
    }
}

}  // namespace jk
