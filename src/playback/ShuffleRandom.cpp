#include "playback/ShuffleRandom.h"

#include <cmath>

#include "util/TimeHelpers.h"

namespace jk {

std::uint64_t TimeOfDaySeed() {
    return static_cast<std::uint64_t>(std::llround(SecondsSinceMidnight() * 1e6));
}

ShuffleRandom::ShuffleRandom() : ShuffleRandom(TimeOfDaySeed()) {}

ShuffleRandom::ShuffleRandom(std::uint64_t seed) : m_engine(seed), m_seed(seed) {}

ShuffleRandom::ShuffleRandom(std::function<double()> stream) : m_stream(std::move(stream)) {}

double ShuffleRandom::Next() {
    if (m_stream) {
        return m_stream();
    }
    // The top 53 bits as a fraction: every value below 1, evenly spread.
    return static_cast<double>(m_engine() >> 11) * 0x1.0p-53;
}

std::size_t ShuffleRandom::Pick(std::size_t first, std::size_t last) {
    const double span = static_cast<double>(last - first + 1);
    const double offset = std::floor(span * Next());
    // A product that rounds up to the span itself, or a stray value from a given stream, stays
    // within the range.
    if (!(offset >= 0)) {
        return first;
    }
    if (offset >= span) {
        return last;
    }
    return first + static_cast<std::size_t>(offset);
}

}  // namespace jk
