#pragma once

// A whole file's bytes in memory, shared by whatever keeps views into them. The file is mapped
// read-only from the page cache rather than copied, so that a large data file read once at
// start-up costs no fresh memory; where it cannot be mapped, it is read. Our data files are
// replaced by renaming, never rewritten in place, so the mapped bytes stay as they were read.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "util/PageBlock.h"

namespace jk {

class MappedFile {
public:
    // Null when the file cannot be opened or read, or is larger than `maxBytes`.
    static std::shared_ptr<const MappedFile> Open(const std::string& path, std::int64_t maxBytes);

    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;
    ~MappedFile();

    std::string_view Bytes() const { return {m_data, m_size}; }

private:
    MappedFile() = default;

    const char* m_data = nullptr;
    std::size_t m_size = 0;
    bool m_mapped = false;
    PageBlock m_copy;  // when the file could not be mapped
};

}  // namespace jk
