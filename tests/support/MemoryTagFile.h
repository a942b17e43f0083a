#pragma once

// A song file in memory for the tag writer: it can be told to fail a write part-way or its
// truncation, and it remembers the lowest byte a write or a truncation touched.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string>

#include "metadata/TagFile.h"

namespace jk::test {

class MemoryTagFile final : public TagFile {
public:
    explicit MemoryTagFile(std::string bytes) : m_bytes(std::move(bytes)) {}

    std::int64_t Size() const override { return static_cast<std::int64_t>(m_bytes.size()); }
    bool ReadAt(std::int64_t offset, std::span<std::uint8_t> out) override {
        if (offset < 0 || offset + static_cast<std::int64_t>(out.size()) > Size()) {
            return false;
        }
        std::copy_n(m_bytes.begin() + offset, out.size(), out.begin());
        return true;
    }
    bool WriteAt(std::int64_t offset, std::span<const std::uint8_t> data) override {
        std::size_t count = data.size();
        const bool fail = m_writeBudget >= 0 && static_cast<std::int64_t>(count) > m_writeBudget;
        if (fail) {
            count = static_cast<std::size_t>(m_writeBudget);
        }
        const auto at = static_cast<std::size_t>(offset);
        if (m_bytes.size() < at + count) {
            m_bytes.resize(at + count);
        }
        std::copy_n(data.begin(), count, m_bytes.begin() + static_cast<std::ptrdiff_t>(at));
        m_lowestWrite = std::min(m_lowestWrite, offset);
        return !fail;
    }
    bool TruncateTo(std::int64_t length) override {
        if (m_failTruncate) {
            return false;
        }
        m_bytes.resize(static_cast<std::size_t>(length));
        m_lowestWrite = std::min(m_lowestWrite, length);
        return true;
    }

    std::string m_bytes;
    std::int64_t m_writeBudget = -1;  // bytes a write may still put down; -1: no limit
    bool m_failTruncate = false;
    std::int64_t m_lowestWrite = std::numeric_limits<std::int64_t>::max();
};

}  // namespace jk::test
