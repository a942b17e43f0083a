#pragma once

// The virtual drive database file, form "VBASE 1.01": the song records of every volume, volume
// by volume in the table's order, each record naming its volume in Volume; Album written as it
// stands. Also the flat form of older files and of images (VirtualDrive), shared out to volumes.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/VBaseFile.h"
#include "catalogue/VirtualVolumes.h"

namespace jk {

inline constexpr std::string_view kMasterFileName = "master.dat";
inline constexpr std::string_view kMasterBackup2 = "master.da2";
inline constexpr std::string_view kMasterBackup3 = "master.da3";

struct VolumesLoad {
    bool ok = false;           // every record announced was read
    std::int64_t records = 0;  // records read whole and shared out
};

// LoadVolumes: reads the records into `table`, adding to a volume of the record's exact name
// (searched from the last entry down) or to a new entry at the end; what the table held stays.
// A field that runs past the end stops the load: the records read before it stay.
VolumesLoad LoadVolumes(const std::string& path, VolumeTable& table,
                        const LoadProgress& progress = {});
VolumesLoad LoadVolumesFromBytes(std::string_view bytes, VolumeTable& table,
                                 const LoadProgress& progress = {});

// The bytes of SaveVolumes, handed out in pieces of about a megabyte; the sink's false stops.
bool WriteVolumes(const VolumeTable& table, const std::function<bool(std::string_view)>& sink);
std::string VolumesBytes(const VolumeTable& table);

// BuildVirtualVolumes: shares the flat list out into `table` (one new volume for each distinct
// name, sorted, matched exactly), then empties the flat list.
void BuildVirtualVolumes(std::vector<SongInfo>& virtualDrive, VolumeTable& table);

// ImportVirtualVolumes: the flat list of an image as a temporary table, one volume for each
// distinct name; a name that `existing` already has (ignoring case) becomes "NAME (2)", then
// "(3)" and on. The flat list is emptied.
VolumeTable ImportVirtualVolumes(std::vector<SongInfo>& virtualDrive, const VolumeTable& existing);

}  // namespace jk
