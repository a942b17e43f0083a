#include "catalogue/VirtualVolume.h"

#include <algorithm>
#include <cstring>

#include "catalogue/SongFields.h"
#include "catalogue/VBaseFormat.h"
#include "util/Utf8.h"

namespace jk {
namespace {

constexpr std::size_t kChunkBytes = std::size_t{1} << 20;
constexpr std::size_t kFirstChunkBytes = std::size_t{4} << 10;
constexpr std::size_t kFolderBlockBytes = std::size_t{64} << 10;
// The stored fields: every key but Volume (11), with Path (8) holding the file name alone.
constexpr int kStoredFields = kSongFieldCount - 1;

constexpr int StoredSlot(int key) {
    return key < kKeyVolume ? key - 1 : key - 2;
}

std::size_t VarintBytes(std::size_t n) {
    std::size_t bytes = 1;
    while (n >= 0x80) {
        n >>= 7;
        ++bytes;
    }
    return bytes;
}

char* WriteVarint(char* out, std::size_t n) {
    while (n >= 0x80) {
        *out++ = static_cast<char>((n & 0x7F) | 0x80);
        n >>= 7;
    }
    *out++ = static_cast<char>(n);
    return out;
}

std::size_t ReadVarint(const unsigned char*& in) {
    std::size_t n = 0;
    int shift = 0;
    while ((*in & 0x80) != 0) {
        n |= static_cast<std::size_t>(*in & 0x7F) << shift;
        shift += 7;
        ++in;
    }
    n |= static_cast<std::size_t>(*in) << shift;
    ++in;
    return n;
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
    const std::size_t sep = path.find_last_of("/\\");
    return sep == std::string_view::npos ? 0 : sep + 1;
}

VirtualVolume::~VirtualVolume() = default;

std::uint32_t VirtualVolume::FolderIndex(std::string_view folder) {
    if (m_lastFolder != UINT32_MAX && m_folderNames[m_lastFolder] == folder) {
        return m_lastFolder;
    }
    if (const auto found = m_folderIndex.find(folder); found != m_folderIndex.end()) {
        m_lastFolder = found->second;
        return m_lastFolder;
    }
    if (m_folderBlocks.empty() || m_folderBlockUsed + folder.size() > m_folderBlockSize) {
        const std::size_t next = m_folderBlockSize == 0
                                     ? std::size_t{256}
                                     : std::min(m_folderBlockSize * 2, kFolderBlockBytes);
        m_folderBlockSize = std::max(next, folder.size());
        m_allocated += m_folderBlockSize;
        m_folderBlocks.push_back(std::make_unique<char[]>(m_folderBlockSize));
        m_folderBlockUsed = 0;
    }
    char* at = m_folderBlocks.back().get() + m_folderBlockUsed;
    if (!folder.empty()) {
        std::memcpy(at, folder.data(), folder.size());
    }
    m_folderBlockUsed += folder.size();
    const std::string_view kept(at, folder.size());
    const auto index = static_cast<std::uint32_t>(m_folderNames.size());
    m_folderNames.push_back(kept);
    m_folderIndex.emplace(kept, index);
    m_lastFolder = index;
    return index;
}

char* VirtualVolume::Reserve(std::size_t bytes, Entry& entry) {
    if (m_chunks.empty() || m_chunkUsed + bytes > m_chunkSize) {
        // Small volumes take small blocks; the blocks grow to a fixed size.
        const std::size_t next =
            m_chunkSize == 0 ? kFirstChunkBytes : std::min(m_chunkSize * 2, kChunkBytes);
        m_chunkSize = std::max(next, bytes);
        m_chunks.push_back(std::make_unique<char[]>(m_chunkSize));
        m_allocated += m_chunkSize;
        m_chunkUsed = 0;
    }
    entry.chunk = static_cast<std::uint32_t>(m_chunks.size() - 1);
    entry.offset = static_cast<std::uint32_t>(m_chunkUsed);
    char* at = m_chunks.back().get() + m_chunkUsed;
    m_chunkUsed += bytes;
    return at;
}

void VirtualVolume::Append(const SongFieldViews& fields, std::int16_t track,
                           std::int16_t reserved) {
    const std::string_view path = Storable(fields[kKeyPath - 1]);
    const std::size_t nameAt = FileNameStart(path);
    Entry entry;
    entry.folder = FolderIndex(path.substr(0, nameAt));
    entry.track = track;
    entry.reserved = reserved;

    std::array<std::string_view, kStoredFields> stored{};
    std::size_t bytes = 0;
    for (int key = 1; key <= kSongFieldCount; ++key) {
        if (key == kKeyVolume) {
            continue;
        }
        const std::string_view text = key == kKeyPath
                                          ? path.substr(nameAt)
                                          : Storable(fields[static_cast<std::size_t>(key - 1)]);
        stored[static_cast<std::size_t>(StoredSlot(key))] = text;
        bytes += VarintBytes(text.size()) + text.size();
    }
    char* out = Reserve(bytes, entry);
    for (const std::string_view text : stored) {
        out = WriteVarint(out, text.size());
        if (!text.empty()) {
            std::memcpy(out, text.data(), text.size());
            out += text.size();
        }
    }
    m_textBytes += bytes;
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
    return reinterpret_cast<const unsigned char*>(m_chunks[entry.chunk].get() + entry.offset);
}

std::string_view VirtualVolume::Field(std::size_t i, int key) const {
    if (key == kKeyVolume) {
        return Name;
    }
    const unsigned char* at = RecordAt(m_entries[i]);
    const int slot = StoredSlot(key);
    for (int s = 0; s < slot; ++s) {
        at += ReadVarint(at);
    }
    const std::size_t n = ReadVarint(at);
    return {reinterpret_cast<const char*>(at), n};
}

std::string_view VirtualVolume::FolderOf(std::size_t i) const {
    return m_folderNames[m_entries[i].folder];
}

std::string_view VirtualVolume::FileNameOf(std::size_t i) const {
    return Field(i, kKeyPath);
}

std::string VirtualVolume::PathOf(std::size_t i) const {
    std::string path(FolderOf(i));
    path.append(FileNameOf(i));
    return path;
}

SongFieldViews VirtualVolume::FieldsOf(std::size_t i, std::string& pathScratch) const {
    SongFieldViews fields{};
    const unsigned char* at = RecordAt(m_entries[i]);
    for (int key = 1; key <= kSongFieldCount; ++key) {
        if (key == kKeyVolume) {
            fields[static_cast<std::size_t>(key - 1)] = Name;
            continue;
        }
        const std::size_t n = ReadVarint(at);
        fields[static_cast<std::size_t>(key - 1)] = {reinterpret_cast<const char*>(at), n};
        at += n;
    }
    pathScratch.assign(FolderOf(i));
    pathScratch.append(fields[kKeyPath - 1]);
    fields[kKeyPath - 1] = pathScratch;
    return fields;
}

SongInfo VirtualVolume::Song(std::size_t i) const {
    std::string path;
    const SongFieldViews fields = FieldsOf(i, path);
    SongInfo song;
    for (int key = 1; key <= kSongFieldCount; ++key) {
        SongField(song, key) = fields[static_cast<std::size_t>(key - 1)];
    }
    song.Track = m_entries[i].track;
    song.Reserved = m_entries[i].reserved;
    return song;
}

int VirtualVolume::ComparePaths(const Entry& a, const Entry& b) const {
    const std::string_view fa = m_folderNames[a.folder];
    const std::string_view fb = m_folderNames[b.folder];
    const auto nameOf = [this](const Entry& e) {
        const unsigned char* at = RecordAt(e);
        for (int s = 0; s < StoredSlot(kKeyPath); ++s) {
            at += ReadVarint(at);
        }
        const std::size_t n = ReadVarint(at);
        return std::string_view(reinterpret_cast<const char*>(at), n);
    };
    if (a.folder == b.folder) {
        const std::string_view na = nameOf(a);
        const std::string_view nb = nameOf(b);
        return na.compare(nb) < 0 ? -1 : (na == nb ? 0 : 1);
    }
    return CompareTwoPart(fa, nameOf(a), fb, nameOf(b));
}

bool VirtualVolume::IsSortedByPath() const {
    for (std::size_t i = 1; i < m_entries.size(); ++i) {
        if (ComparePaths(m_entries[i - 1], m_entries[i]) > 0) {
            return false;
        }
    }
    return true;
}

void VirtualVolume::SortByPath() {
    if (IsSortedByPath()) {
        return;
    }
    std::stable_sort(m_entries.begin(), m_entries.end(),
                     [this](const Entry& a, const Entry& b) { return ComparePaths(a, b) < 0; });
}

void VirtualVolume::Clear() {
    m_entries.clear();
    m_entries.shrink_to_fit();
    m_chunks.clear();
    m_chunkUsed = 0;
    m_chunkSize = 0;
    m_folderBlocks.clear();
    m_folderBlockUsed = 0;
    m_folderBlockSize = 0;
    m_folderNames.clear();
    m_folderIndex.clear();
    m_lastFolder = UINT32_MAX;
    m_textBytes = 0;
    m_allocated = 0;
}

void VirtualVolume::TakeSongs(VirtualVolume& other) {
    std::string path;
    for (std::size_t i = 0; i < other.Count(); ++i) {
        Append(other.FieldsOf(i, path), other.TrackOf(i), other.ReservedOf(i));
    }
    other.Clear();
}

std::size_t VirtualVolume::MemoryBytes() const {
    std::size_t bytes = m_entries.capacity() * sizeof(Entry);
    bytes += m_allocated;
    bytes += m_folderNames.capacity() * sizeof(std::string_view);
    bytes += m_folderIndex.size() * (sizeof(std::string_view) + 4 + 16);
    return bytes;
}

}  // namespace jk
