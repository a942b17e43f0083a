// Feeds bytes to the readers of the catalogue of discs, the first byte choosing which:
//   0 master.dat in its per-volume form, read from a file (the records adopted from the mapped
//     bytes) or from memory by turns; 1 master.dat in the older text form; 2 a drive image
//     (.jvd) imported beside a catalogue that already holds some of its names; 3 bookmark.dat;
//   4 discs.dat.
// Each load goes on as the program goes on: the folder trees, the listings of each folder, and
// a save whose reload must give the same records (or bookmarks, or disc records) back.

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/Bookmarks.h"
#include "catalogue/DiscRecords.h"
#include "catalogue/OlderVBaseForms.h"
#include "catalogue/SongFields.h"
#include "catalogue/VBaseFile.h"
#include "catalogue/VBaseFormat.h"
#include "catalogue/VirtualFolders.h"
#include "catalogue/VolumeFile.h"
#include "util/Text.h"

namespace {

void Check(bool condition) {
    if (!condition) {
        __builtin_trap();
    }
}

// Loads from a file in memory, so that the mapped road is taken as at start-up.
jk::VolumesLoad LoadThroughFile(std::string_view bytes, jk::VolumeTable& table) {
    const int fd = ::memfd_create("master.dat", MFD_CLOEXEC);
    if (fd < 0 || ::write(fd, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) {
        if (fd >= 0) {
            ::close(fd);
        }
        return jk::LoadVolumesFromBytes(bytes, table);
    }
    const jk::VolumesLoad load = jk::LoadVolumes("/proc/self/fd/" + std::to_string(fd), table);
    ::close(fd);
    return load;
}

bool FitsAField(const jk::VolumeTable& table) {
    for (const jk::VirtualVolume& volume : table) {
        if (volume.Name.size() >= jk::kVBaseMaxField) {
            return false;
        }
        for (std::size_t i = 0; i < volume.Count(); ++i) {
            for (const std::string_view field : volume.FieldsOf(i)) {
                if (field.size() >= jk::kVBaseMaxField) {
                    return false;
                }
            }
        }
    }
    return true;
}

// A load trims every field and pads Bitrate to width 4, so an older form's "  Summer  " comes
// back "Summer" and its "128" comes back " 128": the song read back is the held one as a load
// gives it.
bool SameAsLoaded(const jk::SongInfo& read, const jk::SongInfo& held) {
    for (int key = 1; key <= jk::kSongFieldCount; ++key) {
        if (key != jk::kKeyBitrate &&
            jk::SongField(read, key) != jk::Trim(jk::SongField(held, key))) {
            return false;
        }
    }
    return true;
}

// What follows a load: the trees, a listing of every folder, and a save read back.
void AfterLoad(jk::VolumeTable& table) {
    const auto trees = jk::LoadVirtualFolders(table);
    Check(trees.size() == table.size());
    for (std::size_t v = 0; v < table.size(); ++v) {
        std::size_t listed = 0;
        for (const jk::VirtualFolderNode& node : trees[v]) {
            listed +=
                jk::SongsOfVirtualFolder(table[v], node.Key.substr(table[v].Name.size()), false)
                    .size();
        }
        // Every song is in exactly one folder of its tree.
        Check(listed == table[v].Count());
        for (std::size_t i = 1; i < table[v].Count(); ++i) {
            Check(table[v].PathOf(i - 1) <= table[v].PathOf(i));
        }
    }
    if (!FitsAField(table)) {
        return;
    }
    jk::VolumeTable again;
    Check(jk::LoadVolumesFromBytes(jk::VolumesBytes(table), again).ok);
    std::size_t expected = 0;
    // The volume's name is trimmed too: an image's unnamed volume imported as " (2)" comes back
    // "(2)", and may then meet another volume of that name.
    bool namesAsLoaded = true;
    for (const jk::VirtualVolume& volume : table) {
        expected += volume.Count();
        namesAsLoaded = namesAsLoaded && jk::Trim(volume.Name) == volume.Name;
    }
    std::size_t found = 0;
    for (const jk::VirtualVolume& volume : again) {
        found += volume.Count();
        if (!namesAsLoaded) {
            continue;
        }
        const std::size_t same = jk::FindVolume(table, volume.Name);
        Check(same != jk::kNoVolume && table[same].Count() == volume.Count());
        for (std::size_t i = 0; i < volume.Count(); ++i) {
            Check(SameAsLoaded(volume.Song(i), table[same].Song(i)));
        }
    }
    Check(found == expected);
    // From there on a save and a load change nothing.
    const std::string bytes = jk::VolumesBytes(again);
    jk::VolumeTable third;
    Check(jk::LoadVolumesFromBytes(bytes, third).ok);
    Check(jk::VolumesBytes(third) == bytes);
}

}  // namespace

// Called by libFuzzer, or by the replay of tests/tools/fuzz_replay.cpp.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const std::string_view bytes(reinterpret_cast<const char*>(data + 1), size - 1);
    switch (data[0] % 5) {
        case 0: {
            jk::VolumeTable table;
            const jk::VolumesLoad load = (data[0] & 0x80) != 0
                                             ? LoadThroughFile(bytes, table)
                                             : jk::LoadVolumesFromBytes(bytes, table);
            Check(load.records >= 0);
            AfterLoad(table);
            break;
        }
        case 1: {
            std::vector<jk::SongInfo> flat;
            jk::ReadOlderVBaseForm(bytes, true, [&flat](const jk::SongFieldViews& fields) {
                jk::SongInfo& song = flat.emplace_back();
                for (int key = 1; key <= jk::kSongFieldCount; ++key) {
                    jk::SongField(song, key) = fields[static_cast<std::size_t>(key - 1)];
                }
            });
            jk::VolumeTable table;
            jk::BuildVirtualVolumes(flat, table);
            Check(flat.empty());
            AfterLoad(table);
            break;
        }
        case 2: {
            std::vector<jk::SongInfo> flat;
            jk::LoadVBaseFromBytes(bytes, "image.jvd", flat);
            // A catalogue holding the first name already, so that the new names are made.
            jk::VolumeTable existing;
            if (!flat.empty()) {
                existing.emplace_back(flat.front().Volume);
                existing.back().Append(flat.front());
            }
            jk::VolumeTable imported = jk::ImportVirtualVolumes(flat, existing);
            for (const jk::VirtualVolume& volume : imported) {
                Check(jk::IsUnique(existing, volume.Name));
            }
            AfterLoad(imported);
            break;
        }
        case 3: {
            const jk::BookmarkList bookmarks = jk::ParseBookmarks(bytes);
            const jk::BookmarkList again = jk::ParseBookmarks(jk::BookmarksBytes(bookmarks));
            bool plain = true;
            for (const jk::Bookmark& b : bookmarks) {
                plain = plain && b.Name.find_first_of("\r\n") == std::string::npos &&
                        b.Location.find_first_of("\r\n") == std::string::npos;
            }
            if (plain) {
                Check(again.size() == bookmarks.size());
                for (std::size_t i = 0; i < again.size(); ++i) {
                    Check(again[i].Name == bookmarks[i].Name &&
                          again[i].Location == bookmarks[i].Location);
                }
            }
            bool more = false;
            (void)jk::BookmarkMenuCaptions(bookmarks, more);
            break;
        }
        default: {
            const std::optional<jk::DiscRecords> discs = jk::ParseDiscs(bytes);
            if (discs) {
                const std::optional<jk::DiscRecords> again = jk::ParseDiscs(jk::DiscsBytes(*discs));
                Check(again.has_value() && again->size() == discs->size());
            }
            break;
        }
    }
    return 0;
}
