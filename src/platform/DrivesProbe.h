#pragma once

// What the drive list asks of this machine beyond the mount table: sysfs facts of a mount's
// block device and the label of its filesystem.

#include <string>
#include <unordered_map>

#include "platform/Drives.h"

namespace jk {

// The sysfs facts of the block device behind a mount: its own device number, or, for a
// filesystem that reports an anonymous one (btrfs), the device of its source. Network shares
// have none.
BlockFacts ProbeMount(const MountEntry& mount);

// The label of the filesystem mounted from `mount`'s source device, from `labels` (as
// ReadVolumeLabels gives them); "" when it has none.
std::string LabelOfMount(const MountEntry& mount,
                         const std::unordered_map<std::string, std::string>& labels);

}  // namespace jk
