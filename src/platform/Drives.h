#pragma once

// The drives of a Linux desktop: "/" and each mounted filesystem a user browses (other disks,
// removable and optical media, network shares), with their labels and type numbers, and the
// home folder as one more root. Pseudo and system filesystems (proc, sysfs, tmpfs, cgroups,
// snaps, containers' internals) are left out. Read from /proc/self/mountinfo, sysfs and
// /dev/disk/by-label; the parsing and the rules are free functions over text and facts, so they
// can be tried on any mount table.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "browse/DriveRoot.h"

namespace jk {

// One line of a mountinfo file.
struct MountEntry {
    std::uint32_t Major = 0;
    std::uint32_t Minor = 0;
    std::string Root;  // the folder of the filesystem that is mounted here
    std::string MountPoint;
    std::string FsType;
    std::string Source;    // "/dev/sdb1", "server:/export", "//host/share"
    bool Deleted = false;  // the mount point has been removed
};

// Parses the text of a mountinfo file; lines that do not parse are skipped. Octal escapes
// ("\040" for a blank) are decoded.
std::vector<MountEntry> ParseMountInfo(std::string_view text);

std::uint64_t DeviceNumberOf(std::uint32_t major, std::uint32_t minor);

// True for a filesystem a user browses; false for pseudo and system filesystems and for mounts
// inside the system's own folders. "/" is always browsable.
bool IsBrowsableMount(const MountEntry& mount);

// What sysfs tells of the block device behind a mount.
struct BlockFacts {
    bool Removable = false;  // the disk's "removable" attribute is 1
    bool Usb = false;        // the disk hangs off a USB bus
    bool Optical = false;    // a CD, DVD or BD drive
};

// Looks up the block device `major`:`minor` under `sysRoot` ("/sys"); all false when unknown.
BlockFacts ProbeBlockDevice(std::uint32_t major, std::uint32_t minor,
                            const std::string& sysRoot = "/sys");

// The type number of a mount: optical 3, network 4, removable 5, fixed 1, not ready 0.
int DriveTypeOf(const MountEntry& mount, const BlockFacts& facts);

// Labels of filesystems by their device's canonical path ("/dev/sdb1" -> "MY STICK"), read from
// the links of a by-label folder, whose names escape characters as "\xHH".
std::unordered_map<std::string, std::string> ReadVolumeLabels(
    const std::string& byLabelFolder = "/dev/disk/by-label");
std::string DecodeLabelEscapes(std::string_view name);

// The facts the drive list is made from, so that tests can give their own.
struct DriveSources {
    std::vector<MountEntry> Mounts;
    std::function<BlockFacts(const MountEntry&)> Probe;     // sysfs facts of a mount
    std::function<std::string(const MountEntry&)> LabelOf;  // the filesystem's label, or ""
    std::string Home;                                       // "" for no home root
    std::uint64_t RootDevice = 0;  // the device of "/", for a table that does not show it
};

// The drive roots: "/" first, then the other browsable mounts by mount point, each shown once
// (a second mount of a filesystem that is already visible is left out), then the home folder
// as a shortcut. "/" is there whatever the table shows: in a chroot, a container or under a
// restricted /proc the table may have no mount at "/", or be empty.
DriveList DrivesFrom(const DriveSources& sources);

inline constexpr std::string_view kMountInfoPath = "/proc/self/mountinfo";

// This machine's mount table, from /proc/self/mountinfo (or another file of its form); empty
// when it can't be read.
std::vector<MountEntry> ReadMountTable(const std::string& mountInfo = std::string(kMountInfoPath));

// The drives from this machine's mount table (or the given one) and its sysfs and labels.
DriveList ListDrives(const std::string& mountInfo = std::string(kMountInfoPath));
// The roots alone.
std::vector<std::string> VBGetLogicalDriveStrings();
// The type number of a root: 0 when no drive has that root.
int rgbDrvType(const std::string& root);

std::string HomeFolder();

// Mount points (without trailing "/") and their device numbers, for listers that keep a walk
// on one filesystem.
std::unordered_map<std::string, std::uint64_t> ReadMountDevices();

// The volume label of the filesystem that holds a path: its label, else the last component of
// its mount root, "" for "/". Built once from the mount table; cheap to call for every song of
// a folder (the answer for the last folder is kept).
std::function<std::string(const std::string& path)> MakeVolumeLabelLookup();
// The same over a given mount table and labels (tests).
std::function<std::string(const std::string& path)> MakeVolumeLabelLookup(
    const std::vector<MountEntry>& mounts,
    const std::function<std::string(const MountEntry&)>& labelOf);

}  // namespace jk
