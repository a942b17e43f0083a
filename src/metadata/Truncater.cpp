#include "metadata/Truncater.h"

#include "util/FileIo.h"

namespace jk {

std::int32_t TruncateFile(const std::string& path, std::int32_t bytes) {
    return TruncateFileBy(path, bytes).ok ? 1 : 0;
}

}  // namespace jk
