#include "platform/Drives.h"

#include <sys/stat.h>

#include <algorithm>
#include <memory>
#include <mutex>

#include "platform/DrivesProbe.h"
#include "util/PathHelpers.h"
#include "util/Text.h"

namespace jk {
namespace {

struct LabelledMount {
    std::string mountPoint;
    std::uint64_t device = 0;
    std::string label;
};

// The label lookup's state: the mounts, longest mount point first, and the last answer.
class LabelTable {
public:
    explicit LabelTable(std::vector<LabelledMount> mounts) : m_mounts(std::move(mounts)) {
        std::stable_sort(m_mounts.begin(), m_mounts.end(),
                         [](const LabelledMount& a, const LabelledMount& b) {
                             return a.mountPoint.size() > b.mountPoint.size();
                         });
    }

    std::string LabelOf(const std::string& path) {
        if (!IsRealPath(path)) {
            return {};
        }
        const std::string_view folder = ParentFolder(path);
        std::lock_guard lock(m_mutex);
        if (m_hasLast && folder == m_lastFolder) {
            return m_lastLabel;
        }
        m_lastFolder.assign(folder);
        m_lastLabel = Find(path, m_lastFolder);
        m_hasLast = true;
        return m_lastLabel;
    }

private:
    static std::string_view ParentFolder(std::string_view path) {
        const std::size_t slash = path.find_last_of('/');
        return slash == 0 ? std::string_view("/") : path.substr(0, slash);
    }

    static bool Holds(const std::string& mountPoint, std::string_view path) {
        return mountPoint == "/" ||
               (StartsWith(path, mountPoint) &&
                (path.size() == mountPoint.size() || path[mountPoint.size()] == '/'));
    }

    // The filesystem is known by the folder's device number where it can be taken (a path
    // through a link to another disk still finds its own), else by the mount point above it.
    std::string Find(const std::string& path, const std::string& folder) const {
        struct stat st {};
        if (::stat(folder.c_str(), &st) == 0) {
            const auto device = static_cast<std::uint64_t>(st.st_dev);
            const LabelledMount* sameDevice = nullptr;
            for (const LabelledMount& mount : m_mounts) {
                if (mount.device != device) {
                    continue;
                }
                if (Holds(mount.mountPoint, path)) {
                    return mount.label;
                }
                if (sameDevice == nullptr) {
                    sameDevice = &mount;
                }
            }
            if (sameDevice != nullptr) {
                return sameDevice->label;
            }
        }
        for (const LabelledMount& mount : m_mounts) {
            if (Holds(mount.mountPoint, path)) {
                return mount.label;
            }
        }
        return {};
    }

    std::vector<LabelledMount> m_mounts;
    std::mutex m_mutex;
    bool m_hasLast = false;
    std::string m_lastFolder;
    std::string m_lastLabel;
};

}  // namespace

std::function<std::string(const std::string& path)> MakeVolumeLabelLookup(
    const std::vector<MountEntry>& mounts,
    const std::function<std::string(const MountEntry&)>& labelOf) {
    std::vector<LabelledMount> labelled;
    for (const MountEntry& mount : mounts) {
        // A later mount at the same point hides the earlier one.
        std::erase_if(labelled, [&mount](const LabelledMount& m) {
            return m.mountPoint == mount.MountPoint;
        });
        std::string label = labelOf ? labelOf(mount) : std::string();
        if (label.empty() && mount.MountPoint != "/") {
            label = std::string(LastFolder(mount.MountPoint));
        }
        labelled.push_back(
            {mount.MountPoint, DeviceNumberOf(mount.Major, mount.Minor), std::move(label)});
    }
    auto table = std::make_shared<LabelTable>(std::move(labelled));
    return [table](const std::string& path) { return table->LabelOf(path); };
}

std::function<std::string(const std::string& path)> MakeVolumeLabelLookup() {
    auto labels =
        std::make_shared<std::unordered_map<std::string, std::string>>(ReadVolumeLabels());
    return MakeVolumeLabelLookup(ReadMountTable(), [labels](const MountEntry& mount) {
        return LabelOfMount(mount, *labels);
    });
}

}  // namespace jk
