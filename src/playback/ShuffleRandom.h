#pragma once

// The random numbers of the shuffler: uniform in [0, 1), seeded from the time of day unless a
// seed is given (tests, and a command line that wants a repeatable order).

#include <cstddef>
#include <cstdint>
#include <functional>
#include <random>

namespace jk {

class ShuffleRandom {
public:
    // Seeded from the time of day.
    ShuffleRandom();
    explicit ShuffleRandom(std::uint64_t seed);
    // A given stream of numbers in place of the generator (tests).
    explicit ShuffleRandom(std::function<double()> stream);

    double Next();
    std::uint64_t Seed() const { return m_seed; }

    // A pick in the range first to last (first <= last): Int((last - first + 1) * rnd) + first.
    std::size_t Pick(std::size_t first, std::size_t last);

private:
    std::mt19937_64 m_engine;
    std::uint64_t m_seed = 0;
    std::function<double()> m_stream;
};

// A seed from the time of day, in microseconds since midnight.
std::uint64_t TimeOfDaySeed();

}  // namespace jk
