#pragma once

// The inner loop of the search index: a buffer of texts ("segments") one after another, each
// ended by the byte 0xFE, searched for a needle at memory speed. Each segment that holds the
// needle gets its bit set in a bitmap; segments whose bit is already set are not looked at again.

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace jk {

inline constexpr unsigned char kSegmentEnd = 0xFE;

// A bitmap over segments (songs, or the entries of a dictionary).
class SegmentBits {
public:
    SegmentBits() = default;
    explicit SegmentBits(std::size_t size) : m_words((size + 63) / 64, 0), m_size(size) {}

    std::size_t Size() const { return m_size; }
    bool Test(std::size_t i) const { return (m_words[i >> 6] >> (i & 63)) & 1U; }
    void Set(std::size_t i) { m_words[i >> 6] |= std::uint64_t{1} << (i & 63); }
    void SetRange(std::size_t from, std::size_t to);
    bool Any() const;
    std::size_t Count() const;
    // The first set bit at or after `from`; Size() when none.
    std::size_t Next(std::size_t from) const;

    std::uint64_t* Words() { return m_words.data(); }
    const std::vector<std::uint64_t>& WordList() const { return m_words; }

private:
    std::vector<std::uint64_t> m_words;
    std::size_t m_size = 0;
};

// Sets the bit of every segment of `buffer` that holds `needle` (which holds no 0xFE). An empty
// needle sets the bits of the segments that are not empty. `bits` counts from the buffer's first
// segment.
void ScanSegments(std::string_view buffer, std::string_view needle, SegmentBits& bits);

// The same with the plain loop every machine has, for the tests to hold the fast loops to.
void ScanSegmentsPlain(std::string_view buffer, std::string_view needle, SegmentBits& bits);

}  // namespace jk
