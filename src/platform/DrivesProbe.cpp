#include "platform/DrivesProbe.h"

#include <dirent.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <climits>
#include <cstdlib>
#include <cstring>

#include "util/FileIo.h"
#include "util/PathHelpers.h"
#include "util/Text.h"

namespace jk {
namespace {

constexpr std::int64_t kAttributeLimit = 256;

// The canonical path of `path` (links resolved), or "" when it cannot be resolved.
std::string Canonical(const std::string& path) {
    char buffer[PATH_MAX];
    if (::realpath(path.c_str(), buffer) == nullptr) {
        return {};
    }
    return buffer;
}

// The first line of a small sysfs attribute, or nothing.
bool ReadAttribute(const std::string& path, std::string& value) {
    std::string text;
    if (!ReadWholeFile(path, text, kAttributeLimit).ok) {
        return false;
    }
    value = std::string(Trim(text.substr(0, text.find('\n'))));
    return true;
}

}  // namespace

BlockFacts ProbeBlockDevice(std::uint32_t major, std::uint32_t minor, const std::string& sysRoot) {
    BlockFacts facts;
    const std::string device =
        Canonical(sysRoot + "/dev/block/" + std::to_string(major) + ":" + std::to_string(minor));
    if (device.empty()) {
        return facts;
    }
    facts.Usb = device.find("/usb") != std::string::npos;
    // "removable" belongs to the whole disk; a partition finds it one folder up.
    std::string disk = device;
    std::string removable;
    if (!ReadAttribute(disk + "/removable", removable)) {
        disk = std::string(ParentPath(device));
        if (!ReadAttribute(disk + "/removable", removable)) {
            removable.clear();
        }
    }
    facts.Removable = removable == "1";
    std::string scsiType;
    facts.Optical = StartsWith(BareName(disk), "sr") ||
                    (ReadAttribute(disk + "/device/type", scsiType) && scsiType == "5");
    return facts;
}

std::string DecodeLabelEscapes(std::string_view name) {
    std::string out;
    out.reserve(name.size());
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (name[i] == '\\' && i + 3 < name.size() && name[i + 1] == 'x') {
            const int high = HexDigitValue(name[i + 2]);
            const int low = HexDigitValue(name[i + 3]);
            if (high >= 0 && low >= 0) {
                out.push_back(static_cast<char>(high * 16 + low));
                i += 3;
                continue;
            }
        }
        out.push_back(name[i]);
    }
    return out;
}

std::unordered_map<std::string, std::string> ReadVolumeLabels(const std::string& byLabelFolder) {
    std::unordered_map<std::string, std::string> labels;
    DIR* dir = ::opendir(byLabelFolder.c_str());
    if (dir == nullptr) {
        return labels;
    }
    while (const dirent* entry = ::readdir(dir)) {
        const std::string_view name(entry->d_name, std::strlen(entry->d_name));
        if (name == "." || name == "..") {
            continue;
        }
        const std::string device = Canonical(JoinPath(byLabelFolder, name));
        if (!device.empty()) {
            labels[device] = DecodeLabelEscapes(name);
        }
    }
    ::closedir(dir);
    return labels;
}

BlockFacts ProbeMount(const MountEntry& mount) {
    std::uint32_t major = mount.Major;
    std::uint32_t minor = mount.Minor;
    if (major == 0) {
        struct stat st {};
        if (!StartsWith(mount.Source, "/dev/") || ::stat(mount.Source.c_str(), &st) != 0 ||
            !S_ISBLK(st.st_mode)) {
            return {};
        }
        major = ::major(st.st_rdev);
        minor = ::minor(st.st_rdev);
    }
    return ProbeBlockDevice(major, minor);
}

std::string LabelOfMount(const MountEntry& mount,
                         const std::unordered_map<std::string, std::string>& labels) {
    if (!StartsWith(mount.Source, "/dev/")) {
        return {};
    }
    const std::string device = Canonical(mount.Source);
    const auto found = labels.find(device.empty() ? mount.Source : device);
    return found == labels.end() ? std::string() : found->second;
}

}  // namespace jk
