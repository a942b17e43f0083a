#pragma once

// Folder listing on a POSIX file system for the walk and the tree: readdir in the file
// system's own order, the folder bit from d_type (lstat when the file system leaves it unknown),
// links to folders left out, links to files given as files.

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>

#include "browse/FolderLister.h"

namespace jk {

class PosixFolderLister final : public FolderLister {
public:
    // Reads the mount table once, so that a walk held to one filesystem can refuse a mount point
    // of another without opening it (opening a dead network share can hang).
    PosixFolderLister();
    // With the mount points given (mount point without trailing "/", device number).
    explicit PosixFolderLister(std::unordered_map<std::string, std::uint64_t> mountDevices);

    ListResult List(const std::string& folder, std::optional<std::uint64_t> onlyDevice,
                    FolderId& id, const EntryCallback& onEntry) override;
    bool IsFolder(const std::string& path) override;

private:
    std::unordered_map<std::string, std::uint64_t> m_mountDevices;
};

}  // namespace jk
