#include "catalogue/DiscPresence.h"

#include "util/PathHelpers.h"
#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {
namespace {

bool LiesIn(std::string_view path, std::string_view root) {
    if (root == "/") {
        return StartsWith(path, "/");
    }
    return StartsWith(path, root) && (path.size() == root.size() || path[root.size()] == '/');
}

}  // namespace

const MountedDisc* DiscOfPath(const MountedDiscs& discs, std::string_view path) {
    const MountedDisc* best = nullptr;
    for (const MountedDisc& disc : discs) {
        if (LiesIn(path, disc.MountRoot) &&
            (best == nullptr || disc.MountRoot.size() > best->MountRoot.size())) {
            best = &disc;
        }
    }
    return best;
}

DiscRecord RecordOfDisc(std::string_view volume, const MountedDisc& disc, std::string scanDate) {
    return {std::string(volume), disc.Label,     disc.Uuid,
            disc.Type,           disc.MountRoot, std::move(scanDate)};
}

const MountedDisc* FindVolumeDisc(std::string_view volume, const DiscRecords& records,
                                  const MountedDiscs& discs) {
    const DiscRecord* record = FindDiscRecord(records, volume);
    if (record != nullptr && !record->Uuid.empty()) {
        for (const MountedDisc& disc : discs) {
            if (disc.Uuid == record->Uuid) {
                return &disc;
            }
        }
    }
    const std::string_view label = record != nullptr ? std::string_view(record->Label) : volume;
    if (Trim(label).empty()) {
        return nullptr;
    }
    for (const MountedDisc& disc : discs) {
        if (!disc.Label.empty() && EqualsNoCase(disc.Label, label)) {
            return &disc;
        }
    }
    return nullptr;
}

std::string ResolveSongPath(std::string_view path, const DiscRecord* record,
                            const MountedDisc& disc) {
    std::string_view rest;
    if (record != nullptr && !record->MountRoot.empty() && LiesIn(path, record->MountRoot)) {
        rest = record->MountRoot == "/" ? path.substr(1) : path.substr(record->MountRoot.size());
    } else {
        const std::string_view drive = DrivePart(path);
        rest = drive == "/" ? path.substr(1) : path.substr(drive.size());
    }
    std::string resolved = disc.MountRoot;
    while (resolved.size() > 1 && resolved.back() == '/') {
        resolved.pop_back();
    }
    if (!rest.empty() && rest.front() != '/' && rest.front() != '\\' && resolved != "/") {
        resolved.push_back('/');
    }
    for (const char c : rest) {
        resolved.push_back(c == '\\' ? '/' : c);
    }
    if (resolved.size() > 1 && StartsWith(resolved, "//")) {
        resolved.erase(0, 1);
    }
    return resolved;
}

std::string LabelToAskFor(std::string_view volume, const DiscRecords& records) {
    const DiscRecord* record = FindDiscRecord(records, volume);
    return record != nullptr && !record->Label.empty() ? record->Label : std::string(volume);
}

std::vector<PresentVolume> PresentVolumes(const VolumeTable& table, const DiscRecords& records,
                                          const MountedDiscs& discs) {
    std::vector<PresentVolume> present;
    for (const VirtualVolume& volume : table) {
        if (const MountedDisc* disc = FindVolumeDisc(volume.Name, records, discs)) {
            present.push_back({volume.Name, disc->MountRoot});
        }
    }
    return present;
}

std::string InsertedTooltip(std::string_view mountRoot) {
    return "Inserted at " + std::string(mountRoot);
}

}  // namespace jk
