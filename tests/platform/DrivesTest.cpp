#include "platform/Drives.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace jk {
namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

// A desktop's mount table: the system's own mounts, a second disk, a USB stick with a blank in
// its label, a DVD, a network share, a snap, a bind mount, and a stick pulled out from under us.
constexpr const char* kDesktop =
    "22 1 0:21 / /proc rw,nosuid - proc proc rw\n"
    "23 1 0:22 / /sys rw,nosuid - sysfs sysfs rw\n"
    "24 1 0:5 / /dev rw - devtmpfs udev rw,size=8G\n"
    "25 1 0:23 / /run rw - tmpfs tmpfs rw\n"
    "1 0 259:2 / / rw,relatime shared:1 - ext4 /dev/nvme0n1p2 rw\n"
    "30 1 259:1 / /boot/efi rw shared:2 - vfat /dev/nvme0n1p1 rw\n"
    "31 23 0:26 / /sys/fs/cgroup rw shared:3 - cgroup2 cgroup2 rw\n"
    "32 1 7:1 / /snap/core/100 ro shared:4 - squashfs /dev/loop1 ro\n"
    "33 1 8:17 / /data rw shared:5 - ext4 /dev/sdb1 rw\n"
    "34 25 8:33 / /run/media/ann/MY\\040STICK rw shared:6 master:1 - vfat /dev/sdc1 rw\n"
    "35 1 11:0 / /media/ann/DVD ro - iso9660 /dev/sr0 ro\n"
    "36 1 0:50 / /mnt/nas rw - nfs4 server:/export rw\n"
    "37 1 8:17 /music /home/ann/Music rw - ext4 /dev/sdb1 rw\n"
    "38 1 8:49 / /media/ann/OLD//deleted rw - vfat /dev/sdd1 rw\n"
    "39 25 0:60 / /run/user/1000/gvfs rw - fuse.gvfsd-fuse gvfsd-fuse rw\n"
    "40 1 0:61 / /home/ann/.cache/doc rw - fuse.portal portal rw\n"
    "41 1 0:62 / /tmp rw - tmpfs tmpfs rw\n"
    "garbage line\n"
    "42 1 8:1 / /broken rw\n";

TEST(ParseMountInfo, ReadsFieldsAroundTheOptionalOnesAndDecodesEscapes) {
    const std::vector<MountEntry> mounts = ParseMountInfo(kDesktop);
    ASSERT_EQ(mounts.size(), 17u) << "the two broken lines are skipped";
    const MountEntry& root = mounts[4];
    EXPECT_EQ(root.MountPoint, "/");
    EXPECT_EQ(root.FsType, "ext4");
    EXPECT_EQ(root.Source, "/dev/nvme0n1p2");
    EXPECT_EQ(root.Major, 259u);
    EXPECT_EQ(root.Minor, 2u);
    const MountEntry& stick = mounts[9];
    EXPECT_EQ(stick.MountPoint, "/run/media/ann/MY STICK");
    EXPECT_EQ(stick.FsType, "vfat");
    EXPECT_EQ(mounts[12].Root, "/music");
    EXPECT_EQ(mounts[13].MountPoint, "/media/ann/OLD");
    EXPECT_TRUE(mounts[13].Deleted);
    EXPECT_FALSE(stick.Deleted);
}

TEST(ParseMountInfo, SurvivesEmptyAndHostileText) {
    EXPECT_TRUE(ParseMountInfo("").empty());
    EXPECT_TRUE(ParseMountInfo("\n\n   \n").empty());
    EXPECT_TRUE(ParseMountInfo("1 2 3:4 / / rw - - -\n").size() <= 1);
    EXPECT_TRUE(ParseMountInfo("1 2 99999999999:1 / / rw - ext4 x rw\n").empty());
    EXPECT_TRUE(ParseMountInfo("1 2 8:1 / relative rw - ext4 x rw\n").empty());
    const auto trailing = ParseMountInfo("1 2 8:1 / /a\\04 rw - ext4 x rw");
    ASSERT_EQ(trailing.size(), 1u);
    EXPECT_EQ(trailing[0].MountPoint, "/a\\04") << "a cut escape stays as it stands";
}

TEST(IsBrowsableMount, LeavesOutPseudoAndSystemFilesystems) {
    const std::vector<MountEntry> mounts = ParseMountInfo(kDesktop);
    Names browsable;
    for (const MountEntry& mount : mounts) {
        if (IsBrowsableMount(mount)) {
            browsable.push_back(mount.MountPoint);
        }
    }
    EXPECT_EQ(browsable, (Names{"/", "/data", "/run/media/ann/MY STICK", "/media/ann/DVD",
                                "/mnt/nas", "/home/ann/Music", "/media/ann/OLD"}));
    MountEntry overlayRoot;
    overlayRoot.MountPoint = "/";
    overlayRoot.FsType = "overlay";
    EXPECT_TRUE(IsBrowsableMount(overlayRoot)) << "a container's root is still the root";
}

TEST(DriveTypeOf, TellsOpticalNetworkRemovableFixedAndNotReady) {
    struct Case {
        std::string mountPoint;
        std::string fsType;
        BlockFacts facts;
        bool deleted;
        int type;
    };
    const Case cases[] = {
        {"/data", "ext4", {}, false, kDriveFixed},
        {"/data", "ext4", {true, false, false}, false, kDriveRemovable},
        {"/data", "exfat", {false, true, false}, false, kDriveRemovable},
        {"/run/media/ann/X", "vfat", {}, false, kDriveRemovable},
        {"/media/ann/X", "ntfs3", {}, false, kDriveRemovable},
        {"/mediastore", "ext4", {}, false, kDriveFixed},
        {"/media/ann/DVD", "iso9660", {true, false, false}, false, kDriveOptical},
        {"/mnt/bd", "udf", {}, false, kDriveOptical},
        {"/mnt/cd", "ext2", {true, false, true}, false, kDriveOptical},
        {"/mnt/nas", "nfs4", {}, false, kDriveNetwork},
        {"/mnt/win", "cifs", {}, false, kDriveNetwork},
        {"/home/ann/remote", "fuse.sshfs", {}, false, kDriveNetwork},
        {"/media/ann/OLD", "vfat", {}, true, kDriveNotReady},
    };
    for (const Case& c : cases) {
        MountEntry mount;
        mount.MountPoint = c.mountPoint;
        mount.FsType = c.fsType;
        mount.Deleted = c.deleted;
        EXPECT_EQ(DriveTypeOf(mount, c.facts), c.type) << c.mountPoint << " " << c.fsType;
    }
}

TEST(DrivesFrom, ListsRootFirstThenEachVisibleFilesystemOnceThenHome) {
    DriveSources sources;
    sources.Mounts = ParseMountInfo(kDesktop);
    sources.Probe = [](const MountEntry& m) {
        return m.Source == "/dev/sdc1" ? BlockFacts{true, true, false} : BlockFacts{};
    };
    sources.LabelOf = [](const MountEntry& m) {
        return m.Source == "/dev/sdb1" ? std::string("Archive") : std::string();
    };
    sources.Home = "/home/ann";
    const DriveList drives = DrivesFrom(sources);
    Names roots;
    for (const DriveRoot& d : drives) {
        roots.push_back(d.Root + "|" + d.Text + "|" + d.Label + "|" + std::to_string(d.Type));
    }
    // The bind mount of /data's "music" folder is left out: its songs are on /data already.
    EXPECT_EQ(roots, (Names{"/|/||1", "/data|Archive|Archive|1", "/media/ann/DVD|DVD|DVD|3",
                            "/media/ann/OLD|OLD|OLD|0", "/mnt/nas|nas|nas|4",
                            "/run/media/ann/MY STICK|MY STICK|MY STICK|5", "/home/ann|ann|ann|1"}));
    EXPECT_TRUE(drives.back().HomeShortcut);
    EXPECT_EQ(drives[1].Device, DeviceNumberOf(8, 17));
}

TEST(DrivesFrom, KeepsOnlyTheTopMountOfAMountPoint) {
    DriveSources sources;
    sources.Mounts = ParseMountInfo(
        "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n"
        "2 1 8:17 / /data rw - ext4 /dev/sdb1 rw\n"
        "3 1 0:40 / /data rw - nfs srv:/x rw\n");
    const DriveList drives = DrivesFrom(sources);
    ASSERT_EQ(drives.size(), 2u);
    EXPECT_EQ(drives[1].Type, kDriveNetwork);
}

TEST(DrivesFrom, RootIsFirstEvenWhenTheTableDoesNotShowIt) {
    // A chroot's table: the host's mounts lie outside it, and nothing is mounted at "/".
    constexpr const char* kChroot =
        "60 59 0:5 / /proc rw - proc proc rw\n"
        "61 59 8:17 / /data rw - ext4 /dev/sdb1 rw\n";
    for (const char* table : {kChroot, "", "garbage\n"}) {
        DriveSources sources;
        sources.Mounts = ParseMountInfo(table);
        sources.Home = "/root";
        sources.RootDevice = DeviceNumberOf(8, 1);
        const DriveList drives = DrivesFrom(sources);
        ASSERT_GE(drives.size(), 2u) << table;
        EXPECT_EQ(drives.front().Root, "/") << table;
        EXPECT_EQ(drives.front().Text, "/");
        EXPECT_EQ(drives.front().Label, "");
        EXPECT_EQ(drives.front().Type, kDriveFixed);
        EXPECT_EQ(drives.front().Device, DeviceNumberOf(8, 1));
        EXPECT_FALSE(drives.front().HomeShortcut);
        EXPECT_TRUE(drives.back().HomeShortcut);
        EXPECT_EQ(drives.back().Type, kDriveFixed);
        EXPECT_EQ(drives.back().Device, DeviceNumberOf(8, 1));  // the home lies on "/"
    }
    DriveSources chroot;
    chroot.Mounts = ParseMountInfo(kChroot);
    Names roots;
    for (const DriveRoot& d : DrivesFrom(chroot)) {
        roots.push_back(d.Root);
    }
    EXPECT_EQ(roots, (Names{"/", "/data"}));
}

class DrivesTempTree {
public:
    DrivesTempTree() {
        root_ = fs::temp_directory_path() / ("jk-drives-" + std::to_string(::getpid()));
        fs::remove_all(root_);
        fs::create_directories(root_);
    }
    ~DrivesTempTree() { fs::remove_all(root_); }
    fs::path Make(const std::string& rel) {
        fs::create_directories(root_ / rel);
        return root_ / rel;
    }
    void Write(const std::string& rel, const std::string& text) {
        std::ofstream(root_ / rel) << text;
    }
    fs::path Root() const { return root_; }

private:
    fs::path root_;
};

TEST(ProbeBlockDevice, FindsRemovableUsbAndOpticalDisksInSysfs) {
    DrivesTempTree sys;
    // A USB stick's partition: "removable" sits on the disk, one folder up.
    sys.Make("devices/pci0/usb1/1-1/block/sdc/sdc1");
    sys.Write("devices/pci0/usb1/1-1/block/sdc/removable", "1\n");
    // An internal disk.
    sys.Make("devices/pci0/ata1/block/sda/sda1");
    sys.Write("devices/pci0/ata1/block/sda/removable", "0\n");
    // An optical drive.
    sys.Make("devices/pci0/ata2/block/sr0/device");
    sys.Write("devices/pci0/ata2/block/sr0/removable", "1\n");
    sys.Write("devices/pci0/ata2/block/sr0/device/type", "5\n");
    sys.Make("dev/block");
    fs::create_directory_symlink("../../devices/pci0/usb1/1-1/block/sdc/sdc1",
                                 sys.Root() / "dev/block/8:33");
    fs::create_directory_symlink("../../devices/pci0/ata1/block/sda/sda1",
                                 sys.Root() / "dev/block/8:1");
    fs::create_directory_symlink("../../devices/pci0/ata2/block/sr0",
                                 sys.Root() / "dev/block/11:0");
    const std::string root = sys.Root().string();

    const BlockFacts stick = ProbeBlockDevice(8, 33, root);
    EXPECT_TRUE(stick.Removable);
    EXPECT_TRUE(stick.Usb);
    EXPECT_FALSE(stick.Optical);
    const BlockFacts disk = ProbeBlockDevice(8, 1, root);
    EXPECT_FALSE(disk.Removable);
    EXPECT_FALSE(disk.Usb);
    const BlockFacts dvd = ProbeBlockDevice(11, 0, root);
    EXPECT_TRUE(dvd.Optical);
    const BlockFacts unknown = ProbeBlockDevice(0, 44, root);
    EXPECT_FALSE(unknown.Removable || unknown.Usb || unknown.Optical);
}

TEST(ReadVolumeLabels, MapsDevicesToDecodedLabels) {
    DrivesTempTree dev;
    dev.Write("sdc1", "");
    dev.Write("sdb1", "");
    dev.Make("by-label");
    fs::create_symlink("../sdc1", dev.Root() / "by-label/MY\\x20STICK");
    fs::create_symlink("../sdb1", dev.Root() / "by-label/Caf\\xc3\\xa9\\x2fMusic");
    fs::create_symlink("../nothing", dev.Root() / "by-label/Dangling");
    const auto labels = ReadVolumeLabels((dev.Root() / "by-label").string());
    ASSERT_EQ(labels.size(), 2u);
    EXPECT_EQ(labels.at((dev.Root() / "sdc1").string()), "MY STICK");
    EXPECT_EQ(labels.at((dev.Root() / "sdb1").string()), "Caf\xc3\xa9/Music");
    EXPECT_EQ(DecodeLabelEscapes("a\\x4"), "a\\x4");
    EXPECT_EQ(DecodeLabelEscapes("a\\xZZ"), "a\\xZZ");
    EXPECT_TRUE(ReadVolumeLabels("/nonexistent/by-label").empty());
}

TEST(VolumeLabelLookup, GivesTheLabelOfTheMountThatHoldsThePath) {
    const auto lookup = MakeVolumeLabelLookup(
        ParseMountInfo("1 0 8:1 / / rw - ext4 /dev/sda1 rw\n"
                       "2 1 8:17 / /media/ann/USB rw - vfat /dev/sdb1 rw\n"
                       "3 1 8:33 / /mnt/plain rw - ext4 /dev/sdc1 rw\n"
                       "4 1 8:49 / /mnt/plainer rw - ext4 /dev/sdd1 rw\n"),
        [](const MountEntry& m) { return m.Source == "/dev/sdb1" ? "STICK" : ""; });
    // None of these folders exists here, so the mount point above each path decides.
    EXPECT_EQ(lookup("/media/ann/USB/a/b.mp3"), "STICK");
    EXPECT_EQ(lookup("/media/ann/USB/a/c.mp3"), "STICK");
    EXPECT_EQ(lookup("/mnt/plain/x.mp3"), "plain");
    EXPECT_EQ(lookup("/mnt/plainer/x.mp3"), "plainer");
    EXPECT_EQ(lookup("/mnt/plainest/x.mp3"), "") << "on the root, which has no label";
    EXPECT_EQ(lookup("relative.mp3"), "");
}

TEST(VolumeLabelLookup, FindsTheFilesystemByDeviceThroughALinkedFolder) {
    DrivesTempTree tree;
    const fs::path real = tree.Make("disk/album");
    fs::create_directory_symlink(real, tree.Root() / "link");
    struct stat st {};
    ASSERT_EQ(::stat(real.c_str(), &st), 0);
    MountEntry root;
    root.MountPoint = "/";
    MountEntry disk;
    disk.MountPoint = (tree.Root() / "disk").string();
    disk.Major = major(st.st_dev);
    disk.Minor = minor(st.st_dev);
    MountEntry other;
    other.MountPoint = tree.Root().string();
    other.Major = 4000;
    const auto lookup = MakeVolumeLabelLookup(
        {root, disk, other}, [](const MountEntry& m) { return m.Major == 4000 ? "OTHER" : ""; });
    EXPECT_EQ(lookup((tree.Root() / "link/song.mp3").string()), "disk");
}

TEST(ListDrives, RootIsFirstWhateverTheMountTableFileHolds) {
    DrivesTempTree tree;
    tree.Write("chroot", "61 59 8:17 / /data rw - ext4 /dev/sdb1 rw\n");
    tree.Write("empty", "");
    tree.Make("a-folder");
    struct stat root {};
    ASSERT_EQ(::stat("/", &root), 0);
    for (const char* table : {"chroot", "empty", "a-folder", "missing"}) {
        const DriveList drives = ListDrives((tree.Root() / table).string());
        ASSERT_FALSE(drives.empty()) << table;
        EXPECT_EQ(drives.front().Root, "/") << table;
        EXPECT_EQ(drives.front().Type, kDriveFixed) << table;
        EXPECT_EQ(drives.front().Device, static_cast<std::uint64_t>(root.st_dev)) << table;
        if (!HomeFolder().empty()) {
            EXPECT_TRUE(drives.back().HomeShortcut) << table;
            EXPECT_EQ(drives.size(), std::string(table) == "chroot" ? 3u : 2u) << table;
        }
    }
}

TEST(ListDrives, AlwaysHasTheRootAndTheHomeShortcut) {
    const DriveList drives = ListDrives();
    ASSERT_GE(drives.size(), 1u);
    EXPECT_EQ(drives.front().Root, "/");
    EXPECT_NE(drives.front().Type, kDriveNotReady);
    EXPECT_EQ(rgbDrvType("/"), drives.front().Type);
    EXPECT_EQ(rgbDrvType("/no/such/drive"), kDriveNotReady);
    for (const std::string& root : VBGetLogicalDriveStrings()) {
        EXPECT_NE(root.rfind("/proc", 0), 0u) << root;
        EXPECT_NE(root.rfind("/sys", 0), 0u) << root;
    }
    if (!HomeFolder().empty()) {
        EXPECT_TRUE(drives.back().HomeShortcut);
        EXPECT_EQ(drives.back().Root, HomeFolder());
    }
}

}  // namespace
}  // namespace jk
