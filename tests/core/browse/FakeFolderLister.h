#pragma once

// An in-memory file system for walk and tree tests: folders with entries in a chosen order,
// folders that cannot be read, folders on other devices, and folders that share an identity
// (as a bind mount of a parent does).

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "browse/FolderLister.h"

namespace jk::test {

class FakeFolderLister final : public FolderLister {
public:
    // Adds the folder `path` (no trailing "/", "/" for the root) with its entries in order;
    // a name ending in "/" is a folder. Sub-folders named here get no entries of their own
    // unless they are added too.
    void AddFolder(const std::string& path, std::vector<std::string> entries,
                   std::uint64_t device = 1) {
        Folder& folder = m_folders[path];
        folder.entries = std::move(entries);
        folder.id = FolderId{device, m_nextInode++};
    }
    // The folder `path` is the folder `original` seen again.
    void AliasFolder(const std::string& path, const std::string& original) {
        m_folders[path] = m_folders.at(original);
    }
    void MakeUnreadable(const std::string& path) { m_unreadable.insert(path); }
    void Remove(const std::string& path) { m_folders.erase(path); }

    ListResult List(const std::string& folder, std::optional<std::uint64_t> onlyDevice,
                    FolderId& id, const EntryCallback& onEntry) override {
        ++listCalls;
        listed.push_back(folder);
        const std::string key = Key(folder);
        const auto found = m_folders.find(key);
        if (found == m_folders.end() || m_unreadable.count(key) != 0) {
            return ListResult::Unreadable;
        }
        id = found->second.id;
        if (onlyDevice && *onlyDevice != id.device) {
            return ListResult::OtherFilesystem;
        }
        for (const std::string& entry : {std::string("."), std::string("..")}) {
            if (!onEntry(entry, EntryKind::Folder)) {
                return ListResult::Listed;
            }
        }
        for (const std::string& entry : found->second.entries) {
            const bool isFolder = !entry.empty() && entry.back() == '/';
            const std::string name = isFolder ? entry.substr(0, entry.size() - 1) : entry;
            if (!onEntry(name, isFolder ? EntryKind::Folder : EntryKind::File)) {
                break;
            }
        }
        return ListResult::Listed;
    }

    bool IsFolder(const std::string& path) override { return m_folders.count(Key(path)) != 0; }

    int listCalls = 0;
    std::vector<std::string> listed;

private:
    struct Folder {
        std::vector<std::string> entries;
        FolderId id;
    };

    static std::string Key(std::string path) {
        while (path.size() > 1 && path.back() == '/') {
            path.pop_back();
        }
        return path;
    }

    std::map<std::string, Folder> m_folders;
    std::set<std::string> m_unreadable;
    std::uint64_t m_nextInode = 100;
};

}  // namespace jk::test
