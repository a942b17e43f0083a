#pragma once

// The catalogue of discs as the finders read it: the volumes in the table's order, the songs of
// each in the volume's order, each song as views of its fields. A generation number tells the
// finders when what they read before no longer holds.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "catalogue/PackedSong.h"

namespace jk {

class CatalogueView {
public:
    virtual ~CatalogueView() = default;

    virtual std::size_t VolumeCount() const = 0;
    virtual std::string_view VolumeName(std::size_t volume) const = 0;
    virtual std::size_t SongCount(std::size_t volume) const = 0;
    // The fields of a song in key order, its Volume the volume's name. The views hold until the
    // catalogue changes.
    virtual SongFieldViews Fields(std::size_t volume, std::size_t song) const = 0;
    // Changes whenever a volume or a song is added, removed, renamed or reordered.
    virtual std::uint64_t Generation() const = 0;

    // Songs of all volumes.
    std::size_t TotalSongs() const;
};

}  // namespace jk
