#pragma once

// A catalogued disc: its friendly name and the song records of its scan, held compactly. Each
// record is kept as master.dat holds it (13 fields, each a 2-byte length and its text), so the
// records of a loaded file stay where the file was mapped, and a song added later is written
// the same way into blocks of the volume's own. A record's Volume is not read (it is the
// volume's name); each distinct folder part of the paths is indexed once. Records go out by
// value (SongInfo) or as views.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "catalogue/PackedSong.h"
#include "metadata/SongInfo.h"
#include "util/MappedFile.h"
#include "util/PageBlock.h"

namespace jk {

class VirtualVolume {
public:
    VirtualVolume() = default;
    explicit VirtualVolume(std::string name) : Name(std::move(name)) {}
    VirtualVolume(VirtualVolume&&) noexcept = default;
    VirtualVolume& operator=(VirtualVolume&&) noexcept = default;
    VirtualVolume(const VirtualVolume&) = delete;
    VirtualVolume& operator=(const VirtualVolume&) = delete;
    ~VirtualVolume();

    std::string Name;

    std::size_t Count() const { return m_entries.size(); }
    bool Empty() const { return m_entries.empty(); }

    // VolumeAppend: the song's Volume is not kept (it is the volume's name). Fields longer than
    // the 65535 bytes a file can hold are cut as a save would cut them.
    void Append(const SongInfo& song);
    void Append(const SongFieldViews& fields, std::int16_t track, std::int16_t reserved);
    // A record that stands in `file` at `offset` exactly as this volume keeps it (13 fields,
    // none longer than a file holds, its texts as a load keeps them), adopted without a copy;
    // `path` is its Path, a view into the record.
    void AppendStored(const std::shared_ptr<const MappedFile>& file, std::size_t offset,
                      std::size_t recordBytes, std::string_view path);

    // Song `i` (0-based) by value, its Volume the volume's name.
    SongInfo Song(std::size_t i) const;
    // Every field but Path and Volume, without a copy; holds until the volume changes.
    std::string_view Field(std::size_t i, int key) const;
    std::string PathOf(std::size_t i) const;
    // The folder part of the path, up to and with its last separator ("/" or "\"), and the rest.
    std::string_view FolderOf(std::size_t i) const;
    std::string_view FileNameOf(std::size_t i) const;
    std::uint32_t FolderIndexOf(std::size_t i) const { return m_entries[i].folder; }
    std::int16_t TrackOf(std::size_t i) const;
    std::int16_t ReservedOf(std::size_t i) const;
    // The fields of song `i` in key order, without a copy.
    SongFieldViews FieldsOf(std::size_t i) const;

    // The distinct folder parts of the paths, in the order first met.
    const std::vector<std::string_view>& Folders() const { return m_folderNames; }

    // Orders the songs by Path, byte by byte (sort key 8); songs of one path keep their order.
    void SortByPath();
    bool IsSortedByPath() const;

    // Drops every song.
    void Clear();
    // Hands back the memory reserved for songs not yet added (after a load or a scan; adding
    // more afterwards still works).
    void ReleaseSpare();
    // Songs taken over from another volume, appended (the other is left empty).
    void TakeSongs(VirtualVolume& other);

    // Bytes of memory held (for the benchmarks).
    std::size_t MemoryBytes() const;

private:
    struct Entry {
        std::uint32_t chunk = 0;
        std::uint32_t offset = 0;
        std::uint32_t folder = 0;
    };
    // A record written here has Track and Reserved in the 4 bytes ahead of it; a record adopted
    // from a file has neither (a file does not hold them).
    std::int16_t SmallAt(const Entry& entry, int which) const;

    struct Chunk {
        std::unique_ptr<char[]> heap;
        PageBlock pages;
        std::shared_ptr<const MappedFile> file;  // records adopted from a loaded file
        const char* data = nullptr;
    };

    std::uint32_t FolderIndex(std::string_view folder);
    const unsigned char* RecordAt(const Entry& entry) const;
    char* Reserve(std::size_t bytes, Entry& entry);
    std::string_view PathAt(const Entry& entry) const;
    std::string_view NameOf(const Entry& entry) const;

    std::vector<Entry> m_entries;
    std::vector<Chunk> m_chunks;
    std::size_t m_ownChunk = SIZE_MAX;  // the block that songs added now go to
    std::size_t m_chunkUsed = 0;
    std::size_t m_chunkSize = 0;
    const MappedFile* m_lastFile = nullptr;
    std::size_t m_lastFileChunk = 0;
    // Each folder text is a view into the path of the first record met in that folder.
    std::vector<std::string_view> m_folderNames;
    std::unordered_map<std::string_view, std::uint32_t> m_folderIndex;
    std::uint32_t m_lastFolder = UINT32_MAX;
    std::size_t m_allocated = 0;
    std::size_t m_adoptedBytes = 0;
};

// Splits a path after its last separator ("/" or "\"): the folder part (with the separator)
// and the file name. No separator: no folder part.
std::size_t FileNameStart(std::string_view path);

}  // namespace jk
