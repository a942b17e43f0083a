#include "finders/VolumeTableView.h"

#include <functional>

namespace jk {

namespace {

std::uint64_t Mix(std::uint64_t seed, std::uint64_t value) {
    return seed ^ (value + 0x9e3779b97f4a7c15ULL + (seed << 6) + (seed >> 2));
}

std::uint64_t Place(const SongFieldViews& fields) {
    return reinterpret_cast<std::uintptr_t>(fields[kKeyTitle - 1].data());
}

}  // namespace

std::uint64_t VolumeTableView::Generation() const {
    std::uint64_t generation = Mix(0, m_table.size());
    for (const VirtualVolume& volume : m_table) {
        generation = Mix(generation, std::hash<std::string_view>{}(volume.Name));
        generation = Mix(generation, volume.Count());
        if (!volume.Empty()) {
            generation = Mix(generation, Place(volume.FieldsOf(0)));
            generation = Mix(generation, Place(volume.FieldsOf(volume.Count() - 1)));
        }
    }
    // Never 0: a generation of 0 stands for no catalogue.
    return generation == 0 ? 1 : generation;
}

}  // namespace jk
