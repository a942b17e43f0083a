#pragma once

// Shortening a file from its end.

#include <cstdint>
#include <string>

namespace jk {

// Cuts `bytes` from the end of the file: 1 on success, 0 on failure. A count that is negative
// or larger than the file fails and leaves the file as it was.
std::int32_t TruncateFile(const std::string& path, std::int32_t bytes);

}  // namespace jk
