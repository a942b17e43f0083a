#include "finders/SegmentScan.h"

#include <bit>
#include <cstring>

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#define JK_SEGMENT_SIMD 1
#endif

namespace jk {

void SegmentBits::SetRange(std::size_t from, std::size_t to) {
    for (std::size_t i = from; i < to && i < m_size;) {
        if ((i & 63) == 0 && i + 64 <= to) {
            m_words[i >> 6] = ~std::uint64_t{0};
            i += 64;
        } else {
            Set(i);
            ++i;
        }
    }
}

bool SegmentBits::Any() const {
    for (const std::uint64_t word : m_words) {
        if (word != 0) {
            return true;
        }
    }
    return false;
}

std::size_t SegmentBits::Count() const {
    std::size_t count = 0;
    for (const std::uint64_t word : m_words) {
        count += static_cast<std::size_t>(std::popcount(word));
    }
    return count;
}

std::size_t SegmentBits::Next(std::size_t from) const {
    if (from >= m_size) {
        return m_size;
    }
    std::size_t w = from >> 6;
    std::uint64_t word = m_words[w] & (~std::uint64_t{0} << (from & 63));
    while (word == 0) {
        if (++w >= m_words.size()) {
            return m_size;
        }
        word = m_words[w];
    }
    const std::size_t found = (w << 6) + static_cast<std::size_t>(std::countr_zero(word));
    return found < m_size ? found : m_size;
}

namespace {

void MarkNonEmpty(std::string_view buffer, SegmentBits& bits) {
    std::size_t segment = 0;
    std::size_t start = 0;
    const char* data = buffer.data();
    while (start < buffer.size()) {
        const void* end = std::memchr(data + start, kSegmentEnd, buffer.size() - start);
        const std::size_t stop =
            end == nullptr ? buffer.size()
                           : static_cast<std::size_t>(static_cast<const char*>(end) - data);
        if (stop > start && segment < bits.Size()) {
            bits.Set(segment);
        }
        ++segment;
        start = stop + 1;
    }
}

// The scalar loop from `i` on, with `segment` the segment that `i` lies in.
void ScanTail(const unsigned char* p, std::size_t n, std::size_t i, std::size_t segment,
              const unsigned char* needle, std::size_t m, SegmentBits& bits) {
    for (; i < n; ++i) {
        const unsigned char c = p[i];
        if (c == kSegmentEnd) {
            ++segment;
        } else if (c == needle[0] && i + m <= n && segment < bits.Size() && !bits.Test(segment) &&
                   std::memcmp(p + i, needle, m) == 0) {
            bits.Set(segment);
        }
    }
}

#ifdef JK_SEGMENT_SIMD

// Once a segment is found (or was found before), the candidates left in it need no look: the
// mask of the positions after the first segment end behind `bit` (none when the block holds
// no further end). Common letters then cost one test a segment, not one a letter.
inline std::uint32_t RestAfterSegment(std::uint32_t ends, unsigned bit) {
    const std::uint32_t later = ends & ~((2U << bit) - 1U);
    return later == 0 ? 0U : ~((later & (~later + 1U)) * 2U - 1U);
}

// The bytes between a candidate's first two and its last; most needles are short, and a call
// of memcmp would cost more than the look.
inline bool Same(const unsigned char* a, const unsigned char* b, std::size_t count) {
    for (std::size_t k = 0; k < count; ++k) {
        if (a[k] != b[k]) {
            return false;
        }
    }
    return true;
}

// Thirty-two positions at a time: the first and the last byte of the needle are compared at
// once, and the segment ends of the same positions are counted, so a hit knows its segment.
__attribute__((target("avx2,popcnt,bmi"))) void ScanAvx2(const unsigned char* p, std::size_t n,
                                                         const unsigned char* needle, std::size_t m,
                                                         SegmentBits& bits) {
    const __m256i first = _mm256_set1_epi8(static_cast<char>(needle[0]));
    const __m256i last = _mm256_set1_epi8(static_cast<char>(needle[m - 1]));
    // The second byte too, for needles of three and more: fewer candidates to compare, and
    // none at all for three bytes.
    const std::size_t secondAt = m >= 3 ? 1 : 0;
    const __m256i second = _mm256_set1_epi8(static_cast<char>(needle[secondAt]));
    const std::size_t middle = m >= 3 ? m - 3 : 0;
    const __m256i end = _mm256_set1_epi8(static_cast<char>(kSegmentEnd));
    std::size_t segment = 0;
    std::size_t i = 0;
    for (; i + m + 31 <= n; i += 32) {
        const __m256i head = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p + i));
        const __m256i tail = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p + i + m - 1));
        const __m256i next = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p + i + secondAt));
        const auto ends =
            static_cast<std::uint32_t>(_mm256_movemask_epi8(_mm256_cmpeq_epi8(head, end)));
        auto found = static_cast<std::uint32_t>(_mm256_movemask_epi8(_mm256_and_si256(
            _mm256_and_si256(_mm256_cmpeq_epi8(head, first), _mm256_cmpeq_epi8(next, second)),
            _mm256_cmpeq_epi8(tail, last))));
        while (found != 0) {
            const unsigned bit = static_cast<unsigned>(__builtin_ctz(found));
            const std::uint32_t before = ends & ((1U << bit) - 1U);
            const std::size_t at = segment + static_cast<std::size_t>(__builtin_popcount(before));
            if (at >= bits.Size()) {
                break;
            }
            if (bits.Test(at) || Same(p + i + bit + 2, needle + 2, middle)) {
                bits.Set(at);
                found &= RestAfterSegment(ends, bit);
            } else {
                found &= found - 1;
            }
        }
        segment += static_cast<std::size_t>(__builtin_popcount(ends));
    }
    ScanTail(p, n, i, segment, needle, m, bits);
}

void ScanSse2(const unsigned char* p, std::size_t n, const unsigned char* needle, std::size_t m,
              SegmentBits& bits) {
    const __m128i first = _mm_set1_epi8(static_cast<char>(needle[0]));
    const __m128i last = _mm_set1_epi8(static_cast<char>(needle[m - 1]));
    const __m128i end = _mm_set1_epi8(static_cast<char>(kSegmentEnd));
    std::size_t segment = 0;
    std::size_t i = 0;
    for (; i + m + 15 <= n; i += 16) {
        const __m128i head = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + i));
        const __m128i tail = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + i + m - 1));
        const auto ends = static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(head, end)));
        auto found = static_cast<std::uint32_t>(_mm_movemask_epi8(
            _mm_and_si128(_mm_cmpeq_epi8(head, first), _mm_cmpeq_epi8(tail, last))));
        while (found != 0) {
            const unsigned bit = static_cast<unsigned>(__builtin_ctz(found));
            const std::size_t at =
                segment + static_cast<std::size_t>(std::popcount(ends & ((1U << bit) - 1U)));
            if (at >= bits.Size()) {
                break;
            }
            if (bits.Test(at) || (m <= 2 || std::memcmp(p + i + bit + 1, needle + 1, m - 2) == 0)) {
                bits.Set(at);
                found &= RestAfterSegment(ends, bit);
            } else {
                found &= found - 1;
            }
        }
        segment += static_cast<std::size_t>(std::popcount(ends));
    }
    ScanTail(p, n, i, segment, needle, m, bits);
}

using ScanFn = void (*)(const unsigned char*, std::size_t, const unsigned char*, std::size_t,
                        SegmentBits&);

ScanFn ChooseScan() {
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("popcnt") ? ScanAvx2 : ScanSse2;
}

#endif

}  // namespace

void ScanSegmentsPlain(std::string_view buffer, std::string_view needle, SegmentBits& bits) {
    if (needle.empty()) {
        MarkNonEmpty(buffer, bits);
        return;
    }
    ScanTail(reinterpret_cast<const unsigned char*>(buffer.data()), buffer.size(), 0, 0,
             reinterpret_cast<const unsigned char*>(needle.data()), needle.size(), bits);
}

void ScanSegments(std::string_view buffer, std::string_view needle, SegmentBits& bits) {
    if (needle.empty()) {
        MarkNonEmpty(buffer, bits);
        return;
    }
#ifdef JK_SEGMENT_SIMD
    static const ScanFn scan = ChooseScan();
    scan(reinterpret_cast<const unsigned char*>(buffer.data()), buffer.size(),
         reinterpret_cast<const unsigned char*>(needle.data()), needle.size(), bits);
#else
    ScanSegmentsPlain(buffer, needle, bits);
#endif
}

}  // namespace jk
