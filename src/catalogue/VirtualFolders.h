#pragma once

// The folders of catalogued volumes as the folder tree shows them. A folder's node key is the
// volume's name followed by the folder's path less its drive part (so "/media/ann/DISC/rock"
// and "d:\rock" both give "NAME/rock" and "NAME\rock"); the volume's root has the bare name as
// its key. Virtual keys never begin with "/", so they never pass for real paths.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/VirtualVolumes.h"

namespace jk {

// A folder path less its drive part and any final separator: "" for the drive's root. A path
// on "/" keeps its leading "/" ("/home/ann/x" gives "/home/ann/x").
std::string CutDrivePart(std::string_view folder);
// The same as a part of `folder`, without a copy.
std::string_view CutDrivePartView(std::string_view folder);

struct VirtualFolderNode {
    std::string Key;
    std::string ParentKey;  // "" for the volume's root
    std::string Text;       // the last component, or the volume's name for the root
};

// AddVolumeTree: sorts the volume's songs by Path, then gives the nodes of every folder that
// holds songs and of each of its ancestors down to the drive, parents before children, the
// root first, each folder once, in sorted order.
std::vector<VirtualFolderNode> AddVolumeTree(VirtualVolume& volume);
// LoadVirtualFolders: AddVolumeTree for every volume, in the table's order.
std::vector<std::vector<VirtualFolderNode>> LoadVirtualFolders(VolumeTable& table);
// What AddVolumeTree does to the songs alone (each volume sorted by Path, its spare room given
// back), for a front end that shows no folder tree: the songs stand in the same order.
void SortVolumesByPath(VolumeTable& table);

// Where a new volume's root goes among the roots of the tree: before the first virtual root
// (`isVirtual`) whose text sorts after `name` ignoring case, else at the end.
struct TreeRootInfo {
    std::string Text;
    bool IsVirtual = false;
};
std::size_t VirtualRootPosition(const std::vector<TreeRootInfo>& roots, std::string_view name);

// The two parts of a virtual key: the volume's name (up to the first separator) and the
// folder (from there on, "" for the root).
struct VirtualKeyParts {
    std::string_view Volume;
    std::string_view Folder;
};
VirtualKeyParts SplitVirtualKey(std::string_view key);

// The songs (indices into the volume, in its order) whose folder less its drive part is
// `folder`; with `below`, those of `folder` and every folder under it.
std::vector<std::size_t> SongsOfVirtualFolder(const VirtualVolume& volume, std::string_view folder,
                                              bool below);

// The key of the folder that holds a song's path in a volume.
std::string VirtualKeyOf(std::string_view volume, std::string_view path);

}  // namespace jk
