#pragma once

// The file system as the folder walk and the folder tree see it: one folder's entries in the
// order the file system keeps them, each with a folder bit. The platform layer gives the real
// one; tests give their own, so that a folder can vanish or refuse to be read on cue.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace jk {

// The identity of a listed folder, so that a walk can tell a folder it has already entered
// (a bind mount of a parent) and a folder on another filesystem.
struct FolderId {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;

    friend bool operator==(const FolderId&, const FolderId&) = default;
};

enum class EntryKind : std::uint8_t { File, Folder };

enum class ListResult : std::uint8_t {
    Listed,           // the entries were given
    Unreadable,       // the folder is gone, is no folder, or may not be read
    OtherFilesystem,  // the folder lies on another filesystem than the one asked for
};

// Called for each entry; returning false stops the listing.
using EntryCallback = std::function<bool(std::string_view name, EntryKind kind)>;

// A walk that reads ahead lists folders on a planner thread of its own, one call at a time; a
// lister keeps no state that a call on another thread could disturb.
class FolderLister {
public:
    virtual ~FolderLister() = default;

    // Lists `folder` (which ends in "/"): every entry the file system gives, "." and ".."
    // included, in its own order. A link to a folder is left out (a walk never follows one);
    // any other link is a file. With `onlyDevice` set, a folder on another filesystem is not
    // opened at all and gives OtherFilesystem. `id` receives the folder's identity.
    virtual ListResult List(const std::string& folder, std::optional<std::uint64_t> onlyDevice,
                            FolderId& id, const EntryCallback& onEntry) = 0;

    // True when a folder stands at `path`; links are followed, as a folder test of a path is.
    virtual bool IsFolder(const std::string& path) = 0;
};

}  // namespace jk
