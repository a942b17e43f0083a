#pragma once

// The label and UUID of the filesystem on a block device, read from its superblock (through
// libblkid) where the system keeps no /dev/disk/by-label and by-uuid links (no udev), or they
// lack the device.

#include <string>

namespace jk {

struct FilesystemIdentity {
    std::string Label;
    std::string Uuid;
};

// Empty fields when the device cannot be read (a user without access to the raw device, whose
// links then tell) or holds no such filesystem.
FilesystemIdentity ProbeFilesystemIdentity(const std::string& device);

}  // namespace jk
