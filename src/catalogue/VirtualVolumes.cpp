#include "catalogue/VirtualVolumes.h"

#include <algorithm>

#include "util/StringHelpers.h"
#include "util/Utf8.h"

namespace jk {

std::size_t FindVolume(const VolumeTable& table, std::string_view name) {
    for (std::size_t i = 0; i < table.size(); ++i) {
        if (table[i].Name == name) {
            return i;
        }
    }
    return kNoVolume;
}

VirtualVolume* FindVolumePtr(VolumeTable& table, std::string_view name) {
    const std::size_t i = FindVolume(table, name);
    return i == kNoVolume ? nullptr : &table[i];
}

std::vector<std::string> GetVirtualVolumes(const VolumeTable& table) {
    std::vector<std::string> names;
    names.reserve(table.size());
    for (const VirtualVolume& volume : table) {
        names.push_back(volume.Name);
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

void VolumeAppend(VirtualVolume& volume, const SongInfo& song) {
    volume.Append(song);
}

bool WipeVolume(VolumeTable& table, std::string_view name) {
    const std::size_t i = FindVolume(table, name);
    if (i == kNoVolume) {
        return false;
    }
    table.erase(table.begin() + static_cast<std::ptrdiff_t>(i));
    return true;
}

bool RenameVolume(VolumeTable& table, std::string_view oldName, std::string_view newName) {
    VirtualVolume* volume = FindVolumePtr(table, oldName);
    if (volume == nullptr) {
        return false;
    }
    volume->Name = std::string(newName);
    return true;
}

bool RenameTempVolume(VolumeTable& table, std::string_view oldName, std::string_view newName) {
    return RenameVolume(table, oldName, newName);
}

bool UniqueVolume(const VolumeTable& table, std::string_view name) {
    return std::none_of(table.begin(), table.end(), [name](const VirtualVolume& volume) {
        return EqualsNoCase(volume.Name, name);
    });
}

bool IsUnique(const VolumeTable& table, std::string_view name) {
    return UniqueVolume(table, name);
}

bool ValidVolume(std::string_view name) {
    return name.find_first_of("\\/:") == std::string_view::npos && !IsAllDigits(name);
}

std::int64_t TotalSongs(const VolumeTable& table) {
    std::int64_t total = 0;
    for (const VirtualVolume& volume : table) {
        total += static_cast<std::int64_t>(volume.Count());
    }
    return total;
}

}  // namespace jk
