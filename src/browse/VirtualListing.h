#pragma once

// Catalogued folders into the list panes: a virtual folder into the files pane, a virtual
// folder with everything below it, or every volume, into the playlist. Rows carry the columns
// of a file on disk, the Time shown as "MM:SS", a blank Title taken from the file name, and the
// path as scanned.

#include <cstddef>
#include <functional>
#include <string_view>

#include "catalogue/VirtualVolumes.h"
#include "listing/ListRow.h"

namespace jk {

inline constexpr std::string_view kRecursingAllVirtualStatus = "Recursing all virtual volumes...";

// The files pane row of song `i` of a volume.
ListRow VirtualSongRow(const VirtualVolume& volume, std::size_t i, bool exactTimes);

// GetVirtualFolder: replaces `rows` with the songs of the folder a node key names. Returns the
// number of rows (0 for a volume not in the table).
std::size_t GetVirtualFolder(const VolumeTable& table, std::string_view key, RowList& rows,
                             bool exactTimes);

// Told (done, total) every few thousand rows; false stops.
using RowProgress = std::function<bool(std::size_t done, std::size_t total)>;

// RecurseDirVirtual: appends to the playlist the songs of the folder a key names and of every
// folder below it, with the playlist's row rules. Returns the rows added.
std::size_t RecurseDirVirtual(const VolumeTable& table, std::string_view key, RowList& playlist,
                              bool exactTimes, const RowProgress& progress = {});
// RecurseAllVirtual_Click: the same for every volume, in the table's order.
std::size_t RecurseAllVirtual(const VolumeTable& table, RowList& playlist, bool exactTimes,
                              const RowProgress& progress = {});

}  // namespace jk
