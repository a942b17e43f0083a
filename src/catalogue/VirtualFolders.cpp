#include "catalogue/VirtualFolders.h"

#include <algorithm>
#include <unordered_set>

#include "util/PathHelpers.h"
#include "util/Utf8.h"

namespace jk {
namespace {

void SortVolume(VirtualVolume& volume) {
    volume.ReleaseSpare();
    volume.SortByPath();
}

bool IsSeparator(char c) {
    return c == '/' || c == '\\';
}

std::string_view WithoutFinalSeparators(std::string_view path) {
    while (path.size() > 1 && IsSeparator(path.back())) {
        path.remove_suffix(1);
    }
    return path;
}

// The folder above a cut path ("" above a first-level folder and above the root). A doubled
// separator makes no folder of its own: "/a//b" lies in "/a", where a listing of "/a/" looks.
std::string_view CutParent(std::string_view cut) {
    const std::size_t sep = cut.find_last_of("/\\");
    std::string_view parent =
        sep == std::string_view::npos ? std::string_view() : cut.substr(0, sep);
    while (!parent.empty() && IsSeparator(parent.back())) {
        parent.remove_suffix(1);
    }
    return parent;
}

std::string_view LastComponent(std::string_view cut) {
    const std::size_t sep = cut.find_last_of("/\\");
    return sep == std::string_view::npos ? cut : cut.substr(sep + 1);
}

// The drive part of a folder: that of the paths lying in it. DrivePart takes a mount root
// itself ("/media/ann/DISC") for a folder on "/", but the songs at the top of a disc lie there.
std::string_view DriveOfFolder(std::string_view folder) {
    const std::string_view drive = DrivePart(folder);
    if (drive != "/" || folder.size() <= 1) {
        return drive;
    }
    std::string inside(folder);
    inside.append("/.");
    return DrivePart(inside).size() == folder.size() ? folder : drive;
}

}  // namespace

std::string_view CutDrivePartView(std::string_view folder) {
    folder = WithoutFinalSeparators(folder);
    const std::string_view drive = DriveOfFolder(folder);
    std::string_view rest = drive == "/" ? folder : folder.substr(drive.size());
    while (!rest.empty() && IsSeparator(rest.back())) {
        rest.remove_suffix(1);
    }
    return rest;
}

std::string CutDrivePart(std::string_view folder) {
    return std::string(CutDrivePartView(folder));
}

void SortVolumesByPath(VolumeTable& table) {
    for (VirtualVolume& volume : table) {
        SortVolume(volume);
    }
}

std::vector<VirtualFolderNode> AddVolumeTree(VirtualVolume& volume) {
    SortVolume(volume);
    // Every cut folder with songs and its ancestors, each once. The cuts are views into the
    // volume's folder texts, so nothing is copied until the nodes are made.
    const std::vector<std::string_view>& folders = volume.Folders();
    std::unordered_set<std::string_view> seen;
    seen.reserve(folders.size() * 2);
    std::vector<std::string_view> cuts;
    cuts.reserve(folders.size() * 2);
    std::vector<bool> folderDone(folders.size(), false);
    for (std::size_t i = 0; i < volume.Count(); ++i) {
        const std::uint32_t f = volume.FolderIndexOf(i);
        if (folderDone[f]) {
            continue;
        }
        folderDone[f] = true;
        std::string_view cut = CutDrivePartView(folders[f]);
        while (seen.insert(cut).second) {
            cuts.push_back(cut);
            if (cut.empty()) {
                break;
            }
            cut = CutParent(cut);
        }
    }
    if (volume.Count() > 0 && seen.insert(std::string_view()).second) {
        cuts.emplace_back();
    }
    std::sort(cuts.begin(), cuts.end());
    std::vector<VirtualFolderNode> nodes;
    nodes.reserve(cuts.size());
    for (const std::string_view cut : cuts) {
        VirtualFolderNode& node = nodes.emplace_back();
        node.Key.reserve(volume.Name.size() + cut.size());
        node.Key.append(volume.Name).append(cut);
        if (cut.empty()) {
            node.Text = volume.Name;
        } else {
            const std::string_view parent = CutParent(cut);
            node.ParentKey.reserve(volume.Name.size() + parent.size());
            node.ParentKey.append(volume.Name).append(parent);
            node.Text = LastComponent(cut);
        }
    }
    return nodes;
}

std::vector<std::vector<VirtualFolderNode>> LoadVirtualFolders(VolumeTable& table) {
    std::vector<std::vector<VirtualFolderNode>> trees;
    trees.reserve(table.size());
    for (VirtualVolume& volume : table) {
        trees.push_back(AddVolumeTree(volume));
    }
    return trees;
}

std::size_t VirtualRootPosition(const std::vector<TreeRootInfo>& roots, std::string_view name) {
    for (std::size_t i = 0; i < roots.size(); ++i) {
        if (roots[i].IsVirtual && CompareNoCase(roots[i].Text, name) > 0) {
            return i;
        }
    }
    return roots.size();
}

VirtualKeyParts SplitVirtualKey(std::string_view key) {
    const std::size_t sep = key.find_first_of("/\\");
    if (sep == std::string_view::npos) {
        return {key, {}};
    }
    return {key.substr(0, sep), key.substr(sep)};
}

std::vector<std::size_t> SongsOfVirtualFolder(const VirtualVolume& volume, std::string_view folder,
                                              bool below) {
    folder = folder.empty() ? folder : WithoutFinalSeparators(folder);
    // The test is made once per folder of the volume, not once per song.
    const std::vector<std::string_view>& folders = volume.Folders();
    std::vector<char> matches(folders.size(), 0);
    for (std::size_t f = 0; f < folders.size(); ++f) {
        const std::string_view cut = CutDrivePartView(folders[f]);
        bool match = cut == folder;
        if (!match && below) {
            match = folder.empty() ||
                    (cut.size() > folder.size() && cut.compare(0, folder.size(), folder) == 0 &&
                     IsSeparator(cut[folder.size()]));
        }
        matches[f] = match ? 1 : 0;
    }
    std::vector<std::size_t> songs;
    for (std::size_t i = 0; i < volume.Count(); ++i) {
        if (matches[volume.FolderIndexOf(i)] != 0) {
            songs.push_back(i);
        }
    }
    return songs;
}

std::string VirtualKeyOf(std::string_view volume, std::string_view path) {
    const std::size_t nameAt = FileNameStart(path);
    std::string key(volume);
    key.append(CutDrivePartView(path.substr(0, nameAt)));
    return key;
}

}  // namespace jk
