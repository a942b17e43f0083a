#pragma once

// The one folder listing primitive of browsing: the sub-folders and the filtered files of a
// folder, in the order the file system keeps them.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "browse/FolderLister.h"

namespace jk {

// Arrays grow by this step, so a big folder costs few reallocations.
inline constexpr std::size_t kEntryGrowthStep = 400;

// Lists the folder `path`. A path that does not end in "/" gets one, and the caller sees it.
// `dirs` receives the bare names of the sub-folders whatever the filter says, `files` those of
// the files that pass `filterMode`; "." and ".." are skipped and nothing is sorted. A folder that
// cannot be read gives two empty arrays. Both arrays end exactly as long as their counts.
void GetFolderEntries(std::string& path, std::vector<std::string>& dirs,
                      std::vector<std::string>& files, int filterMode, FolderLister& lister);

// The walker's form: with `onlyDevice` set, a folder on another filesystem is not listed, and
// `id` receives the identity of the folder that was listed.
ListResult GetFolderEntries(std::string& path, std::vector<std::string>& dirs,
                            std::vector<std::string>& files, int filterMode, FolderLister& lister,
                            std::optional<std::uint64_t> onlyDevice, FolderId& id);

// True when the folder holds at least one sub-folder other than "." and "..". Stops reading at
// the first one it meets.
bool FolderHasSubfolders(const std::string& path, FolderLister& lister);

}  // namespace jk
