#pragma once

// A block of memory taken from the system in whole pages and filled in at once, rather than a
// page at a time as each is first written (a large store built in one go pays for every such
// fault). Its unused end can be handed back once the block will not grow further. Move-only.

#include <cstddef>

namespace jk {

class PageBlock {
public:
    PageBlock() = default;
    // At least `bytes` bytes (whole pages). Throws std::bad_alloc when the system has none.
    explicit PageBlock(std::size_t bytes);
    PageBlock(PageBlock&& other) noexcept;
    PageBlock& operator=(PageBlock&& other) noexcept;
    PageBlock(const PageBlock&) = delete;
    PageBlock& operator=(const PageBlock&) = delete;
    ~PageBlock();

    char* Data() const { return m_data; }
    std::size_t Size() const { return m_size; }
    // The pages wholly past the first `used` bytes go back to the system; they read as zeros
    // and cost memory again only when written.
    void ReleaseAfter(std::size_t used);

private:
    char* m_data = nullptr;
    std::size_t m_size = 0;
};

}  // namespace jk
