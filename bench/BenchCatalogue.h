#pragma once

// The catalogue the timing programs load, list and save: volumes of made-up songs with the
// lengths of real tags and paths, written as master.dat the way a save writes it.

#include <string>

#include "catalogue/VirtualVolumes.h"
#include "metadata/SongInfo.h"

namespace jkbench {

// Song number `i` of `volume` at `path`: its texts vary with `i` as a collection's do.
jk::SongInfo CatalogueSong(const std::string& volume, std::string path, int i);

// `volumes` volumes "Disc0", "Disc1"... of `perVolume` songs each, in `folders` artist
// folders of seven albums; each sorted by path (as a save writes it) when `sorted`.
jk::VolumeTable CatalogueVolumes(int volumes, int perVolume, int folders, bool sorted);

// Writes `table` as master.dat at `path`. False when the file could not be written whole.
bool WriteMasterFile(const std::string& path, const jk::VolumeTable& table);

}  // namespace jkbench
