#include "catalogue/VirtualVolume.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

#include "catalogue/SongFields.h"
#include "catalogue/VBaseFormat.h"

namespace jk {
namespace {

constexpr std::size_t kLargestChunkBytes = std::size_t{1} << 20;
constexpr std::size_t kFirstChunkBytes = std::size_t{4} << 10;
// Blocks from this size on come straight from the system, filled in at once (few enough that
// the system's limit on mappings is never near).
constexpr std::size_t kPagedChunkBytes = std::size_t{256} << 10;

// Track and Reserved ahead of a record written here.
constexpr std::size_t kSmallBytes = 4;

std::size_t LengthAt(const unsigned char* at) {
    return (static_cast<std::size_t>(at[0]) << 8) | at[1];
}

// The field of `key` in a record: skips the fields before it.
std::string_view FieldAt(const unsigned char* record, int key) {
    for (int k = 1; k < key; ++k) {
        record += 2 + LengthAt(record);
    }
    return {reinterpret_cast<const char*>(record + 2), LengthAt(record)};
}

// Fields are mostly a few dozen bytes: copied in words inline, not through a call each.
char* CopyShort(char* out, std::string_view text) {
    const char* in = text.data();
    std::size_t n = text.size();
    if (n > 64) {
        std::memcpy(out, in, n);
        return out + n;
    }
    for (; n >= 8; n -= 8, in += 8, out += 8) {
        std::uint64_t word;
        std::memcpy(&word, in, 8);
        std::memcpy(out, &word, 8);
    }
    for (; n > 0; --n) {
        *out++ = *in++;
    }
    return out;
}

// A field as long as a file can hold it, cut so as not to split a character.
std::string_view Storable(std::string_view text) {
    if (text.size() <= kVBaseMaxField) {
        return text;
    }
    std::size_t cut = kVBaseMaxField;
    while (cut > 0 && (static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80) {
        --cut;
    }
    return text.substr(0, cut);
}

int CompareTwoPart(std::string_view a1, std::string_view a2, std::string_view b1,
                   std::string_view b2) {
    // Compares a1+a2 with b1+b2 byte by byte, unsigned, without joining them.
    std::size_t ia = 0;
    std::size_t ib = 0;
    const std::size_t na = a1.size() + a2.size();
    const std::size_t nb = b1.size() + b2.size();
    while (ia < na && ib < nb) {
        const std::string_view sa = ia < a1.size() ? a1.substr(ia) : a2.substr(ia - a1.size());
        const std::string_view sb = ib < b1.size() ? b1.substr(ib) : b2.substr(ib - b1.size());
        const std::size_t n = std::min(sa.size(), sb.size());
        const int c = std::memcmp(sa.data(), sb.data(), n);
        if (c != 0) {
            return c;
        }
        ia += n;
        ib += n;
    }
    if (ia < na) {
        return 1;
    }
    return ib < nb ? -1 : 0;
}

}  // namespace

std::size_t FileNameStart(std::string_view path) {
    for (std::size_t i = path.size(); i > 0; --i) {
        if (path[i - 1] == '/' || path[i - 1] == '\\') {
            return i;
        }
    }
    return 0;
}

VirtualVolume::~VirtualVolume() = default;

std::uint32_t VirtualVolume::FolderIndex(std::string_view folder) {
    if (m_lastFolder != UINT32_MAX && m_folderNames[m_lastFolder] == folder) {
        return m_lastFolder;
    }
    if (m_folderIndex.empty() && !m_folderNames.empty()) {
        // Dropped once the volume was loaded whole; made again for songs added later.
        for (std::uint32_t f = 0; f < m_folderNames.size(); ++f) {
            m_folderIndex.emplace(m_folderNames[f], f);
        }
    }
    if (const auto found = m_folderIndex.find(folder); found != m_folderIndex.end()) {
        m_lastFolder = found->second;
        return m_lastFolder;
    }
    // `folder` is a view into the record just stored, which stays put.
    const auto index = static_cast<std::uint32_t>(m_folderNames.size());
    m_folderNames.push_back(folder);
    m_folderIndex.emplace(folder, index);
    m_lastFolder = index;
    return index;
}

char* VirtualVolume::Reserve(std::size_t bytes, Entry& entry) {
    if (m_ownChunk == SIZE_MAX || m_chunkUsed + bytes > m_chunkSize) {
        // Small volumes take small blocks; the blocks grow to a fixed size.
        const std::size_t next =
            m_chunkSize == 0 ? kFirstChunkBytes : std::min(m_chunkSize * 2, kLargestChunkBytes);
        m_chunkSize = std::max(next, bytes);
        Chunk& chunk = m_chunks.emplace_back();
        if (m_chunkSize >= kPagedChunkBytes) {
            chunk.pages = PageBlock(m_chunkSize);
            chunk.data = chunk.pages.Data();
        } else {
            // Not cleared: every byte is written before it is read.
            chunk.heap = std::make_unique_for_overwrite<char[]>(m_chunkSize);
            chunk.data = chunk.heap.get();
        }
        m_allocated += m_chunkSize;
        m_ownChunk = m_chunks.size() - 1;
        m_chunkUsed = 0;
    }
    entry.chunk = static_cast<std::uint32_t>(m_ownChunk);
    entry.offset = static_cast<std::uint32_t>(m_chunkUsed);
    Chunk& own = m_chunks[m_ownChunk];
    char* at = (own.pages.Data() != nullptr ? own.pages.Data() : own.heap.get()) + m_chunkUsed;
    m_chunkUsed += bytes;
    return at;
}

void VirtualVolume::ReleaseSpare() {
    m_folderIndex = {};
    if (m_ownChunk != SIZE_MAX && m_chunks[m_ownChunk].pages.Data() != nullptr) {
        m_chunks[m_ownChunk].pages.ReleaseAfter(m_chunkUsed);
    }
}

void VirtualVolume::Append(const SongFieldViews& fields, std::int16_t track,
                           std::int16_t reserved) {
    std::array<std::string_view, kSongFieldCount> stored{};
    std::size_t bytes = 0;
    for (int key = 1; key <= kSongFieldCount; ++key) {
        // The Volume is the volume's name: not kept.
        const std::string_view text = key == kKeyVolume
                                          ? std::string_view()
                                          : Storable(fields[static_cast<std::size_t>(key - 1)]);
        stored[static_cast<std::size_t>(key - 1)] = text;
        bytes += 2 + text.size();
    }
    Entry entry;
    char* out = Reserve(kSmallBytes + bytes, entry);
    entry.offset += kSmallBytes;
    for (const std::int16_t small : {track, reserved}) {
        const auto value = static_cast<std::uint16_t>(small);
        *out++ = static_cast<char>(value >> 8);
        *out++ = static_cast<char>(value & 0xFF);
    }
    const char* pathAt = nullptr;
    for (std::size_t k = 0; k < stored.size(); ++k) {
        const std::string_view text = stored[k];
        *out++ = static_cast<char>(text.size() >> 8);
        *out++ = static_cast<char>(text.size() & 0xFF);
        if (k == kKeyPath - 1) {
            pathAt = out;
        }
        out = CopyShort(out, text);
    }
    const std::string_view path(pathAt, stored[kKeyPath - 1].size());
    entry.folder = FolderIndex(path.substr(0, FileNameStart(path)));
    m_entries.push_back(entry);
}

void VirtualVolume::AppendStored(const std::shared_ptr<const MappedFile>& file, std::size_t offset,
                                 std::size_t recordBytes, std::string_view path) {
    if (m_lastFile != file.get()) {
        // Each file a volume adopts from is one block of its own, shared with the other volumes.
        m_lastFileChunk = m_chunks.size();
        for (std::size_t c = 0; c < m_chunks.size(); ++c) {
            if (m_chunks[c].file == file) {
                m_lastFileChunk = c;
            }
        }
        if (m_lastFileChunk == m_chunks.size()) {
            Chunk& chunk = m_chunks.emplace_back();
            chunk.file = file;
            chunk.data = file->Bytes().data();
        }
        m_lastFile = file.get();
    }
    Entry entry;
    entry.chunk = static_cast<std::uint32_t>(m_lastFileChunk);
    entry.offset = static_cast<std::uint32_t>(offset);
    entry.folder = FolderIndex(path.substr(0, FileNameStart(path)));
    m_adoptedBytes += recordBytes;
    m_entries.push_back(entry);
}

void VirtualVolume::Append(const SongInfo& song) {
    SongFieldViews fields;
    for (int key = 1; key <= kSongFieldCount; ++key) {
        fields[static_cast<std::size_t>(key - 1)] = SongField(song, key);
    }
    Append(fields, song.Track, song.Reserved);
}

const unsigned char* VirtualVolume::RecordAt(const Entry& entry) const {
    return reinterpret_cast<const unsigned char*>(m_chunks[entry.chunk].data + entry.offset);
}

std::string_view VirtualVolume::Field(std::size_t i, int key) const {
    if (key == kKeyVolume) {
        return Name;
    }
    return FieldAt(RecordAt(m_entries[i]), key);
}

std::int16_t VirtualVolume::SmallAt(const Entry& entry, int which) const {
    if (m_chunks[entry.chunk].file != nullptr) {
        return 0;
    }
    const unsigned char* at = RecordAt(entry) - kSmallBytes + std::ptrdiff_t{2} * which;
    return static_cast<std::int16_t>(static_cast<std::uint16_t>((at[0] << 8) | at[1]));
}

std::int16_t VirtualVolume::TrackOf(std::size_t i) const {
    return SmallAt(m_entries[i], 0);
}

std::int16_t VirtualVolume::ReservedOf(std::size_t i) const {
    return SmallAt(m_entries[i], 1);
}

std::string_view VirtualVolume::PathAt(const Entry& entry) const {
    return FieldAt(RecordAt(entry), kKeyPath);
}

std::string_view VirtualVolume::FolderOf(std::size_t i) const {
    return m_folderNames[m_entries[i].folder];
}

std::string_view VirtualVolume::NameOf(const Entry& entry) const {
    return PathAt(entry).substr(m_folderNames[entry.folder].size());
}

std::string_view VirtualVolume::FileNameOf(std::size_t i) const {
    return NameOf(m_entries[i]);
}

std::string VirtualVolume::PathOf(std::size_t i) const {
    return std::string(PathAt(m_entries[i]));
}

SongFieldViews VirtualVolume::FieldsOf(std::size_t i) const {
    SongFieldViews fields{};
    const unsigned char* at = RecordAt(m_entries[i]);
    for (std::string_view& field : fields) {
        const std::size_t n = LengthAt(at);
        field = {reinterpret_cast<const char*>(at + 2), n};
        at += 2 + n;
    }
    fields[kKeyVolume - 1] = Name;
    return fields;
}

SongInfo VirtualVolume::Song(std::size_t i) const {
    const SongFieldViews fields = FieldsOf(i);
    SongInfo song;
    for (int key = 1; key <= kSongFieldCount; ++key) {
        SongField(song, key) = fields[static_cast<std::size_t>(key - 1)];
    }
    song.Track = TrackOf(i);
    song.Reserved = ReservedOf(i);
    return song;
}

bool VirtualVolume::IsSortedByPath() const {
    // A record holds its whole path: the texts are compared as they stand.
    std::string_view previous;
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        const std::string_view path = PathAt(m_entries[i]);
        if (i > 0 && path < previous) {
            return false;
        }
        previous = path;
    }
    return true;
}

void VirtualVolume::SortByPath() {
    // A file this program saved is sorted already: one pass tells.
    if (IsSortedByPath()) {
        return;
    }
    // Otherwise the keys are sorted, not the records. Folders are ranked first: two paths in
    // different folders compare as their folders do, unless one folder lies inside the other
    // (all folders inside F sort right after F, up to `inside[F]`); only then are the texts
    // compared.
    const std::size_t folderCount = m_folderNames.size();
    std::vector<std::uint32_t> byText(folderCount);
    for (std::uint32_t f = 0; f < folderCount; ++f) {
        byText[f] = f;
    }
    std::sort(byText.begin(), byText.end(), [this](std::uint32_t a, std::uint32_t b) {
        return m_folderNames[a] < m_folderNames[b];
    });
    std::vector<std::uint32_t> rank(folderCount);
    std::vector<std::uint32_t> inside(folderCount);
    std::vector<std::uint32_t> open;
    for (std::uint32_t r = 0; r < folderCount; ++r) {
        const std::string_view text = m_folderNames[byText[r]];
        while (!open.empty() && !text.starts_with(m_folderNames[byText[open.back()]])) {
            inside[byText[open.back()]] = r;
            open.pop_back();
        }
        rank[byText[r]] = r;
        open.push_back(r);
    }
    for (const std::uint32_t r : open) {
        inside[byText[r]] = static_cast<std::uint32_t>(folderCount);
    }
    struct Key {
        std::string_view name;
        std::uint32_t folder;
        std::uint32_t index;
    };
    std::vector<Key> keys;
    keys.reserve(m_entries.size());
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        const Entry& e = m_entries[i];
        keys.push_back({NameOf(e), e.folder, static_cast<std::uint32_t>(i)});
    }
    const auto compare = [&](const Key& a, const Key& b) {
        if (a.folder == b.folder) {
            return a.name.compare(b.name);
        }
        const std::uint32_t ra = rank[a.folder];
        const std::uint32_t rb = rank[b.folder];
        const bool nested = ra < rb ? rb < inside[a.folder] : ra < inside[b.folder];
        if (!nested) {
            return ra < rb ? -1 : 1;
        }
        return CompareTwoPart(m_folderNames[a.folder], a.name, m_folderNames[b.folder], b.name);
    };
    std::sort(keys.begin(), keys.end(), [&compare](const Key& a, const Key& b) {
        const int c = compare(a, b);
        // Songs of one path keep their order.
        return c != 0 ? c < 0 : a.index < b.index;
    });
    std::vector<Entry> sorted;
    sorted.reserve(m_entries.size());
    for (const Key& key : keys) {
        sorted.push_back(m_entries[key.index]);
    }
    m_entries = std::move(sorted);
}

void VirtualVolume::Clear() {
    m_entries.clear();
    m_entries.shrink_to_fit();
    m_chunks.clear();
    m_ownChunk = SIZE_MAX;
    m_chunkUsed = 0;
    m_chunkSize = 0;
    m_lastFile = nullptr;
    m_lastFileChunk = 0;
    m_folderNames.clear();
    m_folderIndex.clear();
    m_lastFolder = UINT32_MAX;
    m_allocated = 0;
    m_adoptedBytes = 0;
}

void VirtualVolume::TakeSongs(VirtualVolume& other) {
    for (std::size_t i = 0; i < other.Count(); ++i) {
        Append(other.FieldsOf(i), other.TrackOf(i), other.ReservedOf(i));
    }
    other.Clear();
}

std::size_t VirtualVolume::MemoryBytes() const {
    std::size_t bytes = m_entries.capacity() * sizeof(Entry);
    bytes += m_allocated + m_adoptedBytes;
    bytes += m_folderNames.capacity() * sizeof(std::string_view);
    bytes += m_folderIndex.size() * (sizeof(std::string_view) + 4 + 16);
    return bytes;
}

}  // namespace jk
