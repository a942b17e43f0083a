#pragma once

// The table of catalogued discs (VirtualVolumes) and the operations on it by volume name.
// Entries are 0-based here; the order is the table's order, which is also the order of the
// volumes in master.dat.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/VirtualVolume.h"

namespace jk {

using VolumeTable = std::vector<VirtualVolume>;

inline constexpr std::size_t kNoVolume = static_cast<std::size_t>(-1);

// The first volume of exactly that name, or kNoVolume.
std::size_t FindVolume(const VolumeTable& table, std::string_view name);
VirtualVolume* FindVolumePtr(VolumeTable& table, std::string_view name);

// The distinct volume names, sorted byte by byte.
std::vector<std::string> GetVirtualVolumes(const VolumeTable& table);

// VolumeAppend: adds a song to a volume.
void VolumeAppend(VirtualVolume& volume, const SongInfo& song);

// Removes the first volume of that name, moving later ones down. False when there is none.
bool WipeVolume(VolumeTable& table, std::string_view name);
// Gives the first volume of `oldName` the new name (its songs' Volume follows, being the
// name). No test of uniqueness: two volumes may end with one name. False when none is found.
bool RenameVolume(VolumeTable& table, std::string_view oldName, std::string_view newName);
// The same on the temporary table of an import.
bool RenameTempVolume(VolumeTable& table, std::string_view oldName, std::string_view newName);

// True when no volume has that name, ignoring case.
bool UniqueVolume(const VolumeTable& table, std::string_view name);
// The same, as imports ask it.
bool IsUnique(const VolumeTable& table, std::string_view name);
// False when the name holds "\", "/" or ":", or is all digits (so empty too).
bool ValidVolume(std::string_view name);

// Songs of all volumes.
std::int64_t TotalSongs(const VolumeTable& table);

}  // namespace jk
