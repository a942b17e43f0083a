#pragma once

// The index that lets a search of the catalogue keep pace with typing: the folded text of the
// nine fields of every song, packed so that one pass at memory speed answers a query. Texts
// that songs share (artists, albums, folders, and the genre, year and bitrate together) are held
// once in dictionaries and each song keeps a small number for each; the texts of its own (file
// name, title, comment) are held in three buffers, song after song. It answers the textual
// (case-folded) test exactly as the plain test does; the searches check the rest.

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "finders/CatalogueView.h"
#include "finders/SearchFields.h"
#include "finders/SegmentScan.h"

namespace jk {

// Numbers of a fixed number of bytes each (1 to 4), as small as the largest asks.
class PackedNumbers {
public:
    void Pack(const std::vector<std::uint32_t>& values);
    std::uint32_t Get(std::size_t i) const {
        const unsigned char* p = m_bytes.data() + i * m_width;
        std::uint32_t value = 0;
        for (unsigned b = 0; b < m_width; ++b) {
            value |= static_cast<std::uint32_t>(p[b]) << (8 * b);
        }
        return value;
    }
    // Get for a column known to be `Width` bytes wide.
    template <unsigned Width>
    std::uint32_t GetAs(std::size_t i) const {
        const unsigned char* p = m_bytes.data() + i * Width;
        std::uint32_t value = p[0];
        if constexpr (Width > 1) {
            value |= static_cast<std::uint32_t>(p[1]) << 8;
        }
        if constexpr (Width > 2) {
            value |= static_cast<std::uint32_t>(p[2]) << 16;
        }
        if constexpr (Width > 3) {
            value |= static_cast<std::uint32_t>(p[3]) << 24;
        }
        return value;
    }
    std::size_t Size() const { return m_width == 0 ? 0 : m_bytes.size() / m_width; }
    unsigned Width() const { return m_width; }
    std::size_t MemoryBytes() const { return m_bytes.capacity(); }

private:
    std::vector<unsigned char> m_bytes;
    unsigned m_width = 1;
};

// Distinct folded texts, each a segment of one buffer, numbered in the order first met.
struct TextDictionary {
    std::string Buffer;
    std::vector<std::uint32_t> Starts;  // where each entry begins, for reading one back
    std::size_t Count() const { return Starts.size(); }
    std::string_view Entry(std::size_t i) const;
    std::size_t MemoryBytes() const { return Buffer.capacity() + Starts.capacity() * 4; }
};

class SearchIndex {
public:
    // Builds the index of the catalogue as it stands. Polls `stop` and gives null when it is
    // set; the catalogue must not change while this runs.
    static std::unique_ptr<SearchIndex> Build(const CatalogueView& catalogue,
                                              const std::atomic<bool>* stop = nullptr);

    // The catalogue generation it was built from.
    std::uint64_t Generation() const { return m_generation; }
    std::size_t SongCount() const { return m_songs; }
    std::size_t VolumeCount() const { return m_volumeStarts.size() - 1; }
    // Songs are numbered volume by volume: volume v holds VolumeStart(v) .. VolumeStart(v+1)-1.
    std::size_t VolumeStart(std::size_t volume) const { return m_volumeStarts[volume]; }
    std::size_t VolumeOf(std::size_t song) const;

    // The songs for which a checked field holds `folded` (a query as AppendFolded writes it),
    // by the textual test: an empty query finds the songs with a non-empty checked field.
    SegmentBits Find(std::string_view folded, const SearchFieldSet& fields) const;

    // Bytes of memory held.
    std::size_t MemoryBytes() const;

private:
    SearchIndex() = default;

    enum Own : std::size_t { kFileNames = 0, kTitles, kComments, kOwnCount };
    struct OwnTexts {
        std::string Buffer;                  // one segment per song
        std::vector<std::uint32_t> Every64;  // where song 64k begins
        std::string_view SegmentOf(std::size_t song) const;
    };

    void FindShared(std::string_view folded, const SearchFieldSet& fields, SegmentBits& hits) const;
    void FindAcrossFolder(std::string_view folded, SegmentBits& hits) const;

    std::uint64_t m_generation = 0;
    std::size_t m_songs = 0;
    std::vector<std::size_t> m_volumeStarts{0};
    TextDictionary m_volumeNames;  // one entry per volume, in order
    OwnTexts m_own[kOwnCount];
    TextDictionary m_artists;
    TextDictionary m_albums;
    TextDictionary m_folders;  // the folder part of the paths, with its final separator
    // Genre, Year and Bitrate together: each combination's three entries.
    TextDictionary m_genres;
    TextDictionary m_years;
    TextDictionary m_bitrates;
    std::vector<std::uint32_t> m_triples;  // genre, year, bitrate of each combination
    PackedNumbers m_artistOf;
    PackedNumbers m_albumOf;
    PackedNumbers m_folderOf;
    PackedNumbers m_tripleOf;
};

}  // namespace jk
