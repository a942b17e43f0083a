#pragma once

// A root of the folder tree on the real file system: a mounted filesystem a user browses, or the
// home folder as a shortcut. The platform layer finds them; the tree and the whole-computer walk
// take them as they are given.

#include <cstdint>
#include <string>
#include <vector>

namespace jk {

// The drive type numbers of the tree's images and of the whole-computer walk.
inline constexpr int kDriveNotReady = 0;
inline constexpr int kDriveFixed = 1;
inline constexpr int kDriveOptical = 3;
inline constexpr int kDriveNetwork = 4;
inline constexpr int kDriveRemovable = 5;

struct DriveRoot {
    std::string Root;   // the mount point ("/", "/media/ann/USB"), or the home folder
    std::string Text;   // what the tree shows: the label, else the folder's name
    std::string Label;  // the volume label: the filesystem's label, else the folder's name
    int Type = kDriveFixed;
    std::uint64_t Device = 0;   // the filesystem's device number, 0 when unknown
    bool HomeShortcut = false;  // the home folder: shown, but left out of whole-computer walks
};

using DriveList = std::vector<DriveRoot>;

}  // namespace jk
