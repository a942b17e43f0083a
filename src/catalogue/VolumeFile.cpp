#include "catalogue/VolumeFile.h"

#include <algorithm>
#include <unordered_map>

#include "catalogue/SongFields.h"
#include "catalogue/VBaseFormat.h"
#include "util/FileIo.h"
#include "util/MappedFile.h"

namespace jk {
namespace {

constexpr std::int64_t kProgressEveryRecords = 1024;
constexpr std::size_t kVolumePieceBytes = std::size_t{1} << 20;

// True when the load keeps every field of the record as the file holds it (the Volume aside,
// which the store does not read), so the record can be adopted as it stands.
bool KeptAsStored(const SongFieldViews& raw, const SongFieldViews& kept) {
    for (std::size_t k = 0; k < raw.size(); ++k) {
        if (k == kKeyBitrate - 1) {
            if (kept[k] != raw[k]) {
                return false;
            }
        } else if (k != kKeyVolume - 1 &&
                   (kept[k].data() != raw[k].data() || kept[k].size() != raw[k].size())) {
            return false;
        }
    }
    return true;
}

// `file`, when given, holds the bytes of `input`: records that need no change are adopted from
// it without a copy.
VolumesLoad ReadVolumes(VBaseInput& input, VolumeTable& table, const LoadProgress& progress,
                        const std::shared_ptr<const MappedFile>& file = nullptr) {
    VolumesLoad result;
    const VBaseHeader header = ReadVBaseHeader(input);
    if (header.recordCount <= 0) {
        result.ok = header.recordCount == 0;
        return result;
    }
    if (header.fieldCount < 1) {
        return result;
    }
    // The last entry of each name, as the search from the last entry down would find it.
    std::unordered_map<std::string, std::size_t> byName;
    for (std::size_t i = 0; i < table.size(); ++i) {
        byName[table[i].Name] = i;
    }
    std::string lastVolume;
    std::size_t lastVolumeIndex = kNoVolume;
    VBaseFieldDecoder decoder;
    SongFieldViews raw{};
    const bool adopt = file != nullptr && header.fieldCount == kSongFieldCount;
    for (std::int64_t i = 0; i < header.recordCount; ++i) {
        const char* const recordStart = input.Loaded().data();
        if (!ReadVBaseRecord(input, header.fieldCount, raw)) {
            return result;
        }
        const SongFieldViews& fields = decoder.Decode(raw);
        const std::string_view volume = fields[kKeyVolume - 1];
        if (lastVolumeIndex == kNoVolume || volume != lastVolume) {
            if (const auto found = byName.find(std::string(volume)); found != byName.end()) {
                lastVolumeIndex = found->second;
            } else {
                table.emplace_back(std::string(volume));
                lastVolumeIndex = table.size() - 1;
                byName.emplace(std::string(volume), lastVolumeIndex);
            }
            lastVolume = volume;
        }
        if (adopt && KeptAsStored(raw, fields)) {
            table[lastVolumeIndex].AppendStored(
                file, static_cast<std::size_t>(recordStart - file->Bytes().data()),
                static_cast<std::size_t>(input.Loaded().data() - recordStart),
                fields[kKeyPath - 1]);
        } else {
            table[lastVolumeIndex].Append(fields, 0, 0);
        }
        ++result.records;
        if (progress && result.records % kProgressEveryRecords == 0) {
            progress(result.records, header.recordCount);
        }
    }
    if (progress) {
        progress(result.records, header.recordCount);
    }
    for (VirtualVolume& volume : table) {
        volume.ReleaseSpare();
    }
    result.ok = true;
    return result;
}

}  // namespace

VolumesLoad LoadVolumes(const std::string& path, VolumeTable& table, const LoadProgress& progress) {
    // The file is mapped, and most records stay where it lies; the store's offsets are 32-bit,
    // so a larger file is read through a window and copied.
    if (const std::shared_ptr<const MappedFile> mapped = MappedFile::Open(path, UINT32_MAX)) {
        VBaseInput input(mapped->Bytes());
        return ReadVolumes(input, table, progress, mapped);
    }
    ReadFile file(path);
    if (!file.IsOpen()) {
        return {};
    }
    VBaseInput input(file);
    return ReadVolumes(input, table, progress);
}

VolumesLoad LoadVolumesFromBytes(std::string_view bytes, VolumeTable& table,
                                 const LoadProgress& progress) {
    VBaseInput input(bytes);
    return ReadVolumes(input, table, progress);
}

bool WriteVolumes(const VolumeTable& table, const std::function<bool(std::string_view)>& sink) {
    std::string piece;
    piece.reserve(kVolumePieceBytes + kVBaseHeaderBytes);
    AppendVBaseHeader(piece, kVBaseVersion101, TotalSongs(table));
    for (const VirtualVolume& volume : table) {
        for (std::size_t i = 0; i < volume.Count(); ++i) {
            AppendVBaseRecord(piece, volume.FieldsOf(i));
            if (piece.size() >= kVolumePieceBytes) {
                if (!sink(piece)) {
                    return false;
                }
                piece.clear();
            }
        }
    }
    return sink(piece);
}

std::string VolumesBytes(const VolumeTable& table) {
    std::string bytes;
    WriteVolumes(table, [&bytes](std::string_view piece) {
        bytes.append(piece);
        return true;
    });
    return bytes;
}

namespace {

// The distinct names of the runs of like Volume, sorted byte by byte.
std::vector<std::string> RunNames(const std::vector<SongInfo>& songs) {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < songs.size(); ++i) {
        if (i == 0 || songs[i].Volume != songs[i - 1].Volume) {
            names.push_back(songs[i].Volume);
        }
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

VolumeTable ShareOut(std::vector<SongInfo>& songs) {
    const std::vector<std::string> names = RunNames(songs);
    VolumeTable table;
    table.reserve(names.size());
    std::unordered_map<std::string, std::size_t> byName;
    for (const std::string& name : names) {
        byName.emplace(name, table.size());
        table.emplace_back(name);
    }
    for (const SongInfo& song : songs) {
        if (const auto found = byName.find(song.Volume); found != byName.end()) {
            VolumeAppend(table[found->second], song);
        }
    }
    songs.clear();
    songs.shrink_to_fit();
    return table;
}

}  // namespace

void BuildVirtualVolumes(std::vector<SongInfo>& virtualDrive, VolumeTable& table) {
    VolumeTable built = ShareOut(virtualDrive);
    for (VirtualVolume& volume : built) {
        table.push_back(std::move(volume));
    }
}

VolumeTable ImportVirtualVolumes(std::vector<SongInfo>& virtualDrive, const VolumeTable& existing) {
    VolumeTable temp = ShareOut(virtualDrive);
    for (VirtualVolume& volume : temp) {
        const std::string original = volume.Name;
        std::string name = original;
        // The counter is raised before the first retry is formed: the first new name is "(2)".
        int counter = 1;
        while (!IsUnique(existing, name)) {
            ++counter;
            name = original + " (" + std::to_string(counter) + ")";
        }
        if (name != original) {
            RenameTempVolume(temp, original, name);
        }
    }
    return temp;
}

}  // namespace jk
