#include "util/PageBlock.h"

#include <sys/mman.h>
#include <unistd.h>

#include <new>
#include <utility>

namespace jk {
namespace {

std::size_t PageSize() {
    static const std::size_t size = [] {
        const long page = ::sysconf(_SC_PAGESIZE);
        return page > 0 ? static_cast<std::size_t>(page) : std::size_t{4096};
    }();
    return size;
}

std::size_t RoundUpToPage(std::size_t bytes) {
    const std::size_t page = PageSize();
    return (bytes + page - 1) / page * page;
}

}  // namespace

PageBlock::PageBlock(std::size_t bytes) : m_size(RoundUpToPage(bytes == 0 ? 1 : bytes)) {
    void* at = ::mmap(nullptr, m_size, PROT_READ | PROT_WRITE,
                      MAP_PRIVATE | MAP_ANONYMOUS | MAP_POPULATE, -1, 0);
    if (at == MAP_FAILED) {
        m_size = 0;
        throw std::bad_alloc();
    }
    m_data = static_cast<char*>(at);
}

PageBlock::PageBlock(PageBlock&& other) noexcept
    : m_data(std::exchange(other.m_data, nullptr)), m_size(std::exchange(other.m_size, 0)) {}

PageBlock& PageBlock::operator=(PageBlock&& other) noexcept {
    if (this != &other) {
        if (m_data != nullptr) {
            ::munmap(m_data, m_size);
        }
        m_data = std::exchange(other.m_data, nullptr);
        m_size = std::exchange(other.m_size, 0);
    }
    return *this;
}

PageBlock::~PageBlock() {
    if (m_data != nullptr) {
        ::munmap(m_data, m_size);
    }
}

void PageBlock::ReleaseAfter(std::size_t used) {
    const std::size_t keep = RoundUpToPage(used);
    if (m_data != nullptr && keep < m_size) {
        ::madvise(m_data + keep, m_size - keep, MADV_DONTNEED);
    }
}

}  // namespace jk
