#include "finders/SegmentScan.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace jk {
namespace {

// The wide loops against the plain one: buffers of short and long segments (empty ones, runs of
// one letter, segments that cross the 16- and 32-byte blocks), needles of one to five bytes,
// and bitmaps that arrive with some segments found already or shorter than the buffer.
TEST(SegmentScan, WideLoopsFindWhatThePlainLoopFinds) {
    std::mt19937 random(1307);
    const auto below = [&random](std::size_t n) {
        return std::uniform_int_distribution<std::size_t>(0, n - 1)(random);
    };
    const std::string letters = "aab e\xC3\xA9";
    int compared = 0;
    for (int round = 0; round < 3000; ++round) {
        std::string buffer;
        std::size_t segments = 0;
        for (std::size_t n = below(60); n > 0; --n, ++segments) {
            const std::size_t length = below(4) == 0 ? below(70) : below(6);
            for (std::size_t k = 0; k < length; ++k) {
                buffer.push_back(letters[below(letters.size())]);
            }
            buffer.push_back(static_cast<char>(kSegmentEnd));
        }
        if (below(3) == 0) {
            buffer += "ab";  // a last segment without its end
            ++segments;
        }
        std::string needle;
        for (std::size_t n = below(5) + 1; n > 0; --n) {
            needle.push_back(letters[below(letters.size())]);
        }
        const std::size_t size = below(4) == 0 ? below(segments + 1) : segments;
        SegmentBits wide(size);
        for (std::size_t k = 0; k < size; ++k) {
            if (below(5) == 0) {
                wide.Set(k);
            }
        }
        SegmentBits plain = wide;
        ScanSegments(buffer, needle, wide);
        ScanSegmentsPlain(buffer, needle, plain);
        ASSERT_EQ(wide.WordList(), plain.WordList())
            << "needle \"" << needle << "\" in " << segments << " segments";
        ++compared;
    }
    EXPECT_EQ(compared, 3000);
}

}  // namespace
}  // namespace jk
