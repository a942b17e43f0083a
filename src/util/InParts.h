#pragma once

// Work over an array split into slices, each slice on a thread of its own, the first on the
// calling thread. Where no thread can be started the calling thread does the rest itself, so
// the work is always done.

#include <cstddef>
#include <functional>

namespace jk {

// The slices [n * k / parts, n * (k + 1) / parts) for k below `parts`; body(begin, end, k) is
// called once for each, and all have returned when this does.
void InParts(std::size_t n, unsigned parts,
             const std::function<void(std::size_t begin, std::size_t end, unsigned part)>& body);

}  // namespace jk
