#include "platform/Drives.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <unordered_set>

#include "listing/WalkRules.h"
#include "platform/DrivesProbe.h"
#include "platform/UserFolders.h"
#include "util/FileIo.h"
#include "util/PathHelpers.h"
#include "util/StringHelpers.h"
#include "util/Text.h"

namespace jk {
namespace {

constexpr std::int64_t kMountInfoLimit = std::int64_t{16} << 20;

// Filesystems that hold no files of a user's: the kernel's views, memory, images of programs.
bool IsPseudoFilesystem(std::string_view type) {
    // clang-format off
    static const std::unordered_set<std::string_view> kTypes = {
        "proc", "sysfs", "tmpfs", "devtmpfs", "devpts", "cgroup", "cgroup2", "securityfs",
        "pstore", "bpf", "debugfs", "tracefs", "configfs", "fusectl", "mqueue", "hugetlbfs",
        "autofs", "binfmt_misc", "rpc_pipefs", "nsfs", "efivarfs", "squashfs", "erofs", "ramfs",
        "selinuxfs", "nfsd", "overlay", "aufs", "rootfs", "shm", "zramfs", "fuse.gvfsd-fuse",
        "fuse.portal", "fuse.lxcfs", "fuse.snapfuse", "fuse.xdg-document-portal",
        "fuse.appimagefuse"};
    // clang-format on
    return kTypes.count(type) != 0;
}

bool IsNetworkFilesystem(std::string_view type) {
    // clang-format off
    static const std::unordered_set<std::string_view> kTypes = {
        "nfs", "nfs4", "cifs", "smb3", "smbfs", "ncpfs", "afs", "9p", "ceph", "glusterfs",
        "lustre", "gpfs", "beegfs", "orangefs", "davfs", "sshfs", "vboxsf", "virtiofs",
        "fuse.sshfs", "fuse.rclone", "fuse.s3fs", "fuse.davfs2", "fuse.gcsfuse",
        "fuse.curlftpfs", "fuse.smbnetfs", "fuse.glusterfs", "fuse.afpfs"};
    // clang-format on
    return kTypes.count(type) != 0;
}

bool IsAtOrBelow(std::string_view path, std::string_view folder) {
    return StartsWith(path, folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

// The system's own folders: a filesystem mounted there is part of the system, not a drive.
bool IsSystemMountPoint(std::string_view mountPoint) {
    static constexpr std::array<std::string_view, 7> kSystem = {"/boot", "/efi", "/snap", "/var",
                                                                "/etc",  "/usr", "/tmp"};
    if (IsSystemFolder(mountPoint)) {
        return true;
    }
    return std::any_of(kSystem.begin(), kSystem.end(), [mountPoint](std::string_view folder) {
        return IsAtOrBelow(mountPoint, folder);
    });
}

std::string DecodeOctalEscapes(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 3 < text.size()) {
            const char a = text[i + 1];
            const char b = text[i + 2];
            const char c = text[i + 3];
            if (a >= '0' && a <= '3' && b >= '0' && b <= '7' && c >= '0' && c <= '7') {
                out.push_back(static_cast<char>((a - '0') * 64 + (b - '0') * 8 + (c - '0')));
                i += 3;
                continue;
            }
        }
        out.push_back(text[i]);
    }
    return out;
}

std::vector<std::string_view> SplitFields(std::string_view line) {
    std::vector<std::string_view> fields;
    std::size_t pos = 0;
    while (pos < line.size()) {
        while (pos < line.size() && line[pos] == ' ') {
            ++pos;
        }
        const std::size_t end = std::min(line.find(' ', pos), line.size());
        if (end > pos) {
            fields.push_back(line.substr(pos, end - pos));
        }
        pos = end;
    }
    return fields;
}

bool ParseDeviceField(std::string_view field, std::uint32_t& major, std::uint32_t& minor) {
    const std::size_t colon = field.find(':');
    if (colon == std::string_view::npos || colon == 0 || colon + 1 >= field.size()) {
        return false;
    }
    const std::string_view left = field.substr(0, colon);
    const std::string_view right = field.substr(colon + 1);
    if (left.size() > 9 || right.size() > 9 || !IsAllDigits(left) || !IsAllDigits(right)) {
        return false;
    }
    major = static_cast<std::uint32_t>(std::stoul(std::string(left)));
    minor = static_cast<std::uint32_t>(std::stoul(std::string(right)));
    return true;
}

// "/media/ann/USB" -> "USB"; "" for "/".
std::string LastComponent(std::string_view mountPoint) {
    return mountPoint == "/" ? std::string() : std::string(LastFolder(mountPoint));
}

// The last mount at each mount point hides the ones below it. Kept in the table's order.
std::vector<const MountEntry*> VisibleMounts(const std::vector<MountEntry>& mounts) {
    std::vector<const MountEntry*> visible;
    std::unordered_set<std::string_view> seen;
    for (auto it = mounts.rbegin(); it != mounts.rend(); ++it) {
        if (seen.insert(it->MountPoint).second) {
            visible.push_back(&*it);
        }
    }
    std::reverse(visible.begin(), visible.end());
    return visible;
}

// A mount whose files are already visible through an earlier mount of the same filesystem (a
// bind mount of one of its folders) is not a drive of its own.
bool ShownBy(const MountEntry& earlier, const MountEntry& mount) {
    if (earlier.Major != mount.Major || earlier.Minor != mount.Minor) {
        return false;
    }
    return earlier.Root == "/" || IsAtOrBelow(mount.Root, earlier.Root);
}

}  // namespace

std::vector<MountEntry> ParseMountInfo(std::string_view text) {
    std::vector<MountEntry> mounts;
    std::size_t pos = 0;
    while (pos < text.size()) {
        const std::size_t end = std::min(text.find('\n', pos), text.size());
        const std::vector<std::string_view> fields = SplitFields(text.substr(pos, end - pos));
        pos = end + 1;
        // id, parent, major:minor, root, mount point, options, [optional...], "-", type, source
        const auto dash = std::find(fields.begin(), fields.end(), std::string_view("-"));
        if (fields.size() < 7 || dash - fields.begin() < 6 || fields.end() - dash < 3) {
            continue;
        }
        MountEntry mount;
        if (!ParseDeviceField(fields[2], mount.Major, mount.Minor)) {
            continue;
        }
        mount.Root = DecodeOctalEscapes(fields[3]);
        mount.MountPoint = DecodeOctalEscapes(fields[4]);
        mount.FsType = DecodeOctalEscapes(*(dash + 1));
        mount.Source = DecodeOctalEscapes(*(dash + 2));
        for (std::string_view mark :
             {std::string_view("//deleted"), std::string_view(" (deleted)")}) {
            if (mount.MountPoint.size() > mark.size() && EndsWith(mount.MountPoint, mark)) {
                mount.MountPoint.resize(mount.MountPoint.size() - mark.size());
                mount.Deleted = true;
            }
        }
        if (!IsRealPath(mount.MountPoint)) {
            continue;
        }
        mounts.push_back(std::move(mount));
    }
    return mounts;
}

std::uint64_t DeviceNumberOf(std::uint32_t major, std::uint32_t minor) {
    return static_cast<std::uint64_t>(makedev(major, minor));
}

bool IsBrowsableMount(const MountEntry& mount) {
    if (mount.MountPoint == "/") {
        return true;
    }
    if (IsPseudoFilesystem(mount.FsType)) {
        return false;
    }
    return !IsSystemMountPoint(mount.MountPoint);
}

int DriveTypeOf(const MountEntry& mount, const BlockFacts& facts) {
    if (mount.Deleted) {
        return kDriveNotReady;
    }
    if (IsNetworkFilesystem(mount.FsType)) {
        return kDriveNetwork;
    }
    if (mount.FsType == "iso9660" || mount.FsType == "udf" || facts.Optical) {
        return kDriveOptical;
    }
    if (facts.Removable || facts.Usb || IsAtOrBelow(mount.MountPoint, "/media") ||
        IsAtOrBelow(mount.MountPoint, "/run/media")) {
        return kDriveRemovable;
    }
    return kDriveFixed;
}

DriveList DrivesFrom(const DriveSources& sources) {
    std::vector<const MountEntry*> kept;
    for (const MountEntry* mount : VisibleMounts(sources.Mounts)) {
        if (!IsBrowsableMount(*mount)) {
            continue;
        }
        const bool shown = std::any_of(
            kept.begin(), kept.end(), [mount](const MountEntry* k) { return ShownBy(*k, *mount); });
        if (!shown) {
            kept.push_back(mount);
        }
    }
    std::stable_sort(kept.begin(), kept.end(), [](const MountEntry* a, const MountEntry* b) {
        if ((a->MountPoint == "/") != (b->MountPoint == "/")) {
            return a->MountPoint == "/";
        }
        return a->MountPoint < b->MountPoint;
    });

    DriveList drives;
    for (const MountEntry* mount : kept) {
        DriveRoot drive;
        drive.Root = mount->MountPoint;
        const BlockFacts facts = sources.Probe ? sources.Probe(*mount) : BlockFacts{};
        drive.Type = DriveTypeOf(*mount, facts);
        const std::string label = sources.LabelOf ? sources.LabelOf(*mount) : std::string();
        drive.Label = label.empty() ? LastComponent(mount->MountPoint) : label;
        drive.Text = drive.Label.empty() ? drive.Root : drive.Label;
        drive.Device = DeviceNumberOf(mount->Major, mount->Minor);
        drives.push_back(std::move(drive));
    }
    if (drives.empty() || drives.front().Root != "/") {
        DriveRoot root;
        root.Root = "/";
        root.Text = root.Root;
        root.Type = kDriveFixed;
        root.Device = sources.RootDevice;
        drives.insert(drives.begin(), std::move(root));
    }
    if (!sources.Home.empty()) {
        DriveRoot home;
        home.Root = sources.Home;
        home.Text = LastComponent(sources.Home);
        home.Label = home.Text;
        home.Type = kDriveFixed;
        home.HomeShortcut = true;
        // The home folder takes the type of the drive that holds it.
        std::size_t best = 0;
        for (const DriveRoot& drive : drives) {
            const bool holds = drive.Root == "/" || IsAtOrBelow(sources.Home, drive.Root);
            if (holds && drive.Root.size() >= best) {
                best = drive.Root.size();
                home.Type = drive.Type == kDriveNotReady ? kDriveFixed : drive.Type;
                home.Device = drive.Device;
            }
        }
        drives.push_back(std::move(home));
    }
    return drives;
}

std::string HomeFolder() {
    const char* home = std::getenv("HOME");
    if (home != nullptr && IsRealPath(home)) {
        std::string path(home);
        while (path.size() > 1 && path.back() == '/') {
            path.pop_back();
        }
        return path;
    }
    return AccountHomeFolder();
}

std::vector<MountEntry> ReadMountTable(const std::string& mountInfo) {
    // A file of the kernel's reports no size and may come in pieces: read to the end.
    ReadFile file(mountInfo);
    if (!file.IsOpen()) {
        return {};
    }
    std::string text;
    std::vector<std::uint8_t> chunk(std::size_t{64} << 10);
    std::int64_t offset = 0;
    while (offset < kMountInfoLimit) {
        const std::int64_t got = file.ReadAt(offset, chunk);
        if (got <= 0) {
            break;
        }
        text.append(reinterpret_cast<const char*>(chunk.data()), static_cast<std::size_t>(got));
        offset += got;
    }
    return ParseMountInfo(text);
}

DriveList ListDrives(const std::string& mountInfo) {
    DriveSources sources;
    sources.Mounts = ReadMountTable(mountInfo);
    struct stat root {};
    if (::stat("/", &root) == 0) {
        sources.RootDevice = static_cast<std::uint64_t>(root.st_dev);
    }
    sources.Probe = ProbeMount;
    auto labels =
        std::make_shared<std::unordered_map<std::string, std::string>>(ReadVolumeLabels());
    sources.LabelOf = [labels](const MountEntry& mount) { return LabelOfMount(mount, *labels); };
    sources.Home = HomeFolder();
    return DrivesFrom(sources);
}

std::vector<std::string> VBGetLogicalDriveStrings() {
    std::vector<std::string> roots;
    for (DriveRoot& drive : ListDrives()) {
        if (!drive.HomeShortcut) {
            roots.push_back(std::move(drive.Root));
        }
    }
    return roots;
}

int rgbDrvType(const std::string& root) {
    for (const DriveRoot& drive : ListDrives()) {
        if (!drive.HomeShortcut && drive.Root == root) {
            return drive.Type;
        }
    }
    return kDriveNotReady;
}

std::unordered_map<std::string, std::uint64_t> ReadMountDevices() {
    std::unordered_map<std::string, std::uint64_t> devices;
    for (const MountEntry& mount : ReadMountTable()) {
        devices[mount.MountPoint] = DeviceNumberOf(mount.Major, mount.Minor);
    }
    return devices;
}

}  // namespace jk
