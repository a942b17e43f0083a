#include "browse/FolderEntries.h"

#include "listing/WalkRules.h"

namespace jk {
namespace {

void AppendGrowing(std::vector<std::string>& names, std::string_view name) {
    if (!names.empty() && names.size() % kEntryGrowthStep == 0) {
        names.reserve(names.size() + kEntryGrowthStep);
    }
    names.emplace_back(name);
}

bool IsDotEntry(std::string_view name) {
    return name == "." || name == "..";
}

std::string WithTrailingSeparator(std::string path) {
    if (path.empty() || path.back() != '/') {
        path.push_back('/');
    }
    return path;
}

}  // namespace

ListResult GetFolderEntries(std::string& path, std::vector<std::string>& dirs,
                            std::vector<std::string>& files, int filterMode, FolderLister& lister,
                            std::optional<std::uint64_t> onlyDevice, FolderId& id) {
    if (path.empty() || path.back() != '/') {
        path.push_back('/');
    }
    dirs.clear();
    files.clear();
    dirs.reserve(kEntryGrowthStep);
    files.reserve(kEntryGrowthStep);
    const ListResult result =
        lister.List(path, onlyDevice, id, [&](std::string_view name, EntryKind kind) {
            if (IsDotEntry(name)) {
                return true;
            }
            if (kind == EntryKind::Folder) {
                AppendGrowing(dirs, name);
            } else if (PassesFilter(name, filterMode)) {
                AppendGrowing(files, name);
            }
            return true;
        });
    if (result != ListResult::Listed) {
        dirs.clear();
        files.clear();
    }
    dirs.shrink_to_fit();
    files.shrink_to_fit();
    return result;
}

void GetFolderEntries(std::string& path, std::vector<std::string>& dirs,
                      std::vector<std::string>& files, int filterMode, FolderLister& lister) {
    FolderId id;
    GetFolderEntries(path, dirs, files, filterMode, lister, std::nullopt, id);
}

bool FolderHasSubfolders(const std::string& path, FolderLister& lister) {
    bool found = false;
    FolderId id;
    lister.List(WithTrailingSeparator(path), std::nullopt, id,
                [&found](std::string_view name, EntryKind kind) {
                    if (kind == EntryKind::Folder && !IsDotEntry(name)) {
                        found = true;
                    }
                    return !found;
                });
    return found;
}

}  // namespace jk
