#include "catalogue/VirtualImages.h"

#include <unordered_set>

#include "catalogue/VolumeFile.h"
#include "util/PathHelpers.h"
#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {

ExportResult ExportVolumes(const VolumeTable& table, const std::vector<std::string>& names,
                           const std::string& path) {
    ExportResult result;
    if (names.empty()) {
        return result;
    }
    std::vector<SongInfo> scratch;
    for (const std::string& name : names) {
        const std::size_t v = FindVolume(table, name);
        if (v == kNoVolume) {
            continue;
        }
        for (std::size_t i = 0; i < table[v].Count(); ++i) {
            scratch.push_back(table[v].Song(i));
        }
    }
    result.io = SaveVBase(path, scratch);
    result.written = result.io.ok;
    result.songs = scratch.size();
    return result;
}

ImportResult ImportImage(VirtualCatalogue& catalogue, const std::string& path) {
    ImportResult result;
    if (StartsWith(ToLower(BareName(path)), "master.da")) {
        std::unordered_set<std::string> before;
        for (const VirtualVolume& volume : catalogue.Volumes) {
            before.insert(volume.Name);
        }
        bool ready = false;
        result.ok = LoadDatabaseFile(path, catalogue, false, ready);
        if (!ready) {
            BuildVirtualVolumes(catalogue.VirtualDrive, catalogue.Volumes);
        }
        for (const VirtualVolume& volume : catalogue.Volumes) {
            if (before.insert(volume.Name).second) {
                result.names.push_back(volume.Name);
            }
        }
        return result;
    }
    result.ok = LoadVBase(path, catalogue.VirtualDrive);
    VolumeTable temp = ImportVirtualVolumes(catalogue.VirtualDrive, catalogue.Volumes);
    for (VirtualVolume& volume : temp) {
        result.names.push_back(volume.Name);
        catalogue.Volumes.push_back(std::move(volume));
    }
    catalogue.VirtualDrive.clear();
    return result;
}

}  // namespace jk
