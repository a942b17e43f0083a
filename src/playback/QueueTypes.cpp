#include "playback/QueueTypes.h"

#include "util/Utf8.h"

namespace jk {

QuadList RotateQuad(std::string_view newest, const QuadList& current) {
    std::size_t drop = current.size() - 1;
    const std::string lowered = ToLower(newest);
    for (std::size_t i = 0; i < current.size(); ++i) {
        if (ToLower(current[i]) == lowered) {
            drop = i;
            break;
        }
    }
    QuadList rotated;
    rotated[0] = std::string(newest);
    std::size_t to = 1;
    for (std::size_t i = 0; i < current.size() && to < rotated.size(); ++i) {
        if (i != drop) {
            rotated[to++] = current[i];
        }
    }
    return rotated;
}

}  // namespace jk
