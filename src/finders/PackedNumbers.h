#pragma once

// A column of numbers of a fixed number of bytes each (1 to 4), as few as the largest asks: the
// search index keeps a number or two for each of a million songs this way.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

namespace jk {

class PackedNumbers {
public:
    void Pack(const std::vector<std::uint32_t>& values) {
        std::uint32_t largest = 0;
        for (const std::uint32_t v : values) {
            largest = std::max(largest, v);
        }
        m_width = largest < (1U << 8) ? 1 : largest < (1U << 16) ? 2 : largest < (1U << 24) ? 3 : 4;
        m_bytes.assign(values.size() * m_width, 0);
        unsigned char* out = m_bytes.data();
        for (const std::uint32_t v : values) {
            for (unsigned b = 0; b < m_width; ++b) {
                *out++ = static_cast<unsigned char>(v >> (8 * b));
            }
        }
    }
    std::uint32_t Get(std::size_t i) const {
        const unsigned char* p = m_bytes.data() + i * m_width;
        std::uint32_t value = 0;
        for (unsigned b = 0; b < m_width; ++b) {
            value |= static_cast<std::uint32_t>(p[b]) << (8 * b);
        }
        return value;
    }
    // Get for a column known to be `Width` bytes wide.
    template <unsigned Width>
    std::uint32_t GetAs(std::size_t i) const {
        const unsigned char* p = m_bytes.data() + i * Width;
        std::uint32_t value = p[0];
        if constexpr (Width > 1) {
            value |= static_cast<std::uint32_t>(p[1]) << 8;
        }
        if constexpr (Width > 2) {
            value |= static_cast<std::uint32_t>(p[2]) << 16;
        }
        if constexpr (Width > 3) {
            value |= static_cast<std::uint32_t>(p[3]) << 24;
        }
        return value;
    }
    // Calls visit(std::integral_constant<unsigned, Width()>{}), so a loop over the column
    // can read it with GetAs.
    template <typename Visit>
    decltype(auto) WithWidth(const Visit& visit) const {
        switch (m_width) {
            case 1:
                return visit(std::integral_constant<unsigned, 1>{});
            case 2:
                return visit(std::integral_constant<unsigned, 2>{});
            case 3:
                return visit(std::integral_constant<unsigned, 3>{});
            default:
                return visit(std::integral_constant<unsigned, 4>{});
        }
    }
    std::size_t Size() const { return m_width == 0 ? 0 : m_bytes.size() / m_width; }
    unsigned Width() const { return m_width; }
    std::size_t MemoryBytes() const { return m_bytes.capacity(); }

private:
    std::vector<unsigned char> m_bytes;
    unsigned m_width = 1;
};

}  // namespace jk
