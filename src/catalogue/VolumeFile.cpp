#include "catalogue/VolumeFile.h"

#include <algorithm>
#include <unordered_map>

#include "catalogue/SongFields.h"
#include "catalogue/VBaseFormat.h"
#include "util/FileIo.h"

namespace jk {
namespace {

constexpr std::int64_t kProgressEvery = 1024;
constexpr std::size_t kPieceBytes = std::size_t{1} << 20;

VolumesLoad ReadVolumes(VBaseInput& input, VolumeTable& table, const LoadProgress& progress) {
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
    for (std::int64_t i = 0; i < header.recordCount; ++i) {
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
        table[lastVolumeIndex].Append(fields, 0, 0);
        ++result.records;
        if (progress && result.records % kProgressEvery == 0) {
            progress(result.records, header.recordCount);
        }
    }
    if (progress) {
        progress(result.records, header.recordCount);
    }
    result.ok = true;
    return result;
}

}  // namespace

VolumesLoad LoadVolumes(const std::string& path, VolumeTable& table, const LoadProgress& progress) {
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
    piece.reserve(kPieceBytes + kVBaseHeaderBytes);
    AppendVBaseHeader(piece, kVBaseVersion101, TotalSongs(table));
    std::string path;
    for (const VirtualVolume& volume : table) {
        for (std::size_t i = 0; i < volume.Count(); ++i) {
            AppendVBaseRecord(piece, volume.FieldsOf(i, path));
            if (piece.size() >= kPieceBytes) {
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
