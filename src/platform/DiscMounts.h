#pragma once

// The discs mounted now, with the label, UUID and type of each filesystem, for the catalogue's
// disc identities; a watch that tells when a disc is mounted or unmounted; and the eject.

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "catalogue/DiscPresence.h"
#include "platform/Drives.h"

namespace jk {

// The browsable mounts of a mount table as discs (tests give their own table and facts).
MountedDiscs MountedDiscsFrom(const std::vector<MountEntry>& mounts,
                              const std::function<std::string(const MountEntry&)>& labelOf,
                              const std::function<std::string(const MountEntry&)>& uuidOf);
// This machine's.
MountedDiscs ListMountedDiscs();

// Calls `onChange` (on a thread of its own) within a second or so of any mount or unmount.
class MountWatcher {
public:
    explicit MountWatcher(std::function<void()> onChange);
    ~MountWatcher();
    MountWatcher(const MountWatcher&) = delete;
    MountWatcher& operator=(const MountWatcher&) = delete;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

// EjectCD: the filesystem that holds `path` is unmounted and its drive's door opened, through
// udisks2; the `eject` program when that is not to be had. Nothing is reported.
void EjectDisc(const std::string& path);

}  // namespace jk
