#include "finders/CatalogueView.h"

namespace jk {

std::size_t CatalogueView::TotalSongs() const {
    std::size_t total = 0;
    for (std::size_t v = 0; v < VolumeCount(); ++v) {
        total += SongCount(v);
    }
    return total;
}

}  // namespace jk
