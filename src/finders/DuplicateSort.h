#pragma once

// The Duplicate Finder's partition sort, made cheap without changing one of its steps. Every
// text key is folded once and ranked among the distinct keys: two ranks compare exactly as the
// two keys compare ignoring case, so the partition sort makes the very same swaps on plain
// integers. The keys are folded on several threads, and the two parts left by a partition,
// being independent, are sorted on two threads once they are large: the permutation stays that
// of the one-thread recursion, which decides which neighbours pair up.

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "finders/DuplicateFinder.h"

namespace jk {

// The processors there are, at most four: beyond that the sort waits on memory.
unsigned DefaultDupeThreads();

// How much of the work may run at once. Tests lower `parallelFrom` to take the threaded roads
// on small arrays.
struct DupeSortThreads {
    unsigned threads = DefaultDupeThreads();
    // A part of at least this many records may be handed to another thread.
    std::size_t parallelFrom = std::size_t{1} << 15;
};

// A group id no key has: an empty key never groups.
inline constexpr std::uint32_t kNoGroup = 0xFFFFFFFFu;

// The keys of every record under a criterion, computed once.
struct DupeSortKeys {
    bool numeric = false;
    // Text criteria: the rank of the folded sort key among the distinct ones.
    std::vector<std::uint32_t> ranks;
    // "File length": Val of the key.
    std::vector<double> numbers;
    // Equal exactly when the group keys are equal ignoring case; kNoGroup for an empty key.
    std::vector<std::uint32_t> groups;
};

DupeSortKeys DupeKeysOf(const std::vector<DupeRecord>& records, int criterion,
                        const DupeSortThreads& threads = {});
// The same from each record's key column alone (DupeKeyColumn of the criterion).
DupeSortKeys DupeKeysOf(const std::vector<std::string_view>& column, int criterion,
                        const DupeSortThreads& threads = {});

// The partition sort of order[L..R] (indices into the keys' records).
void SortDupeOrder(std::vector<std::uint32_t>& order, std::size_t L, std::size_t R,
                   const DupeSortKeys& keys, const DupeSortThreads& threads = {});

}  // namespace jk
