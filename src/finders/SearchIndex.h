#pragma once

// The index that lets a search of the catalogue keep pace with typing: the folded text of the
// nine fields of every song, packed so that one pass at memory speed answers a query. Texts
// that songs share (artists, albums, the parts of folders, and the genre, year and bitrate
// together) are held once in dictionaries and each song keeps a small number for each; the texts of
// its own (file name, title, comment) are held in three buffers, song after song (the comments
// of those that have one); the ".mp3" that
// ends nearly every file name is held once, with a bit for each song whose name ends so. It
// answers the textual (case-folded) test exactly as the plain test does; the searches check the
// rest.

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "finders/CatalogueView.h"
#include "finders/IndexedFolders.h"
#include "finders/PackedNumbers.h"
#include "finders/SearchFields.h"
#include "finders/SegmentScan.h"
#include "finders/TextDictionary.h"

namespace jk {

class SearchIndex {
public:
    // Builds the index of the catalogue as it stands, in two halves on two threads (this one
    // and one of its own). Polls `stop` and gives null when it is set; the catalogue must not
    // change while this runs.
    static std::unique_ptr<SearchIndex> Build(const CatalogueView& catalogue,
                                              const std::atomic<bool>* stop = nullptr);

    // The catalogue generation it was built from.
    std::uint64_t Generation() const { return m_generation; }
    std::size_t SongCount() const { return m_songs; }
    std::size_t VolumeCount() const { return m_volumeStarts.size() - 1; }
    // Songs are numbered volume by volume: volume v holds VolumeStart(v) .. VolumeStart(v+1)-1.
    std::size_t VolumeStart(std::size_t volume) const { return m_volumeStarts[volume]; }
    std::size_t VolumeOf(std::size_t song) const;

    // A query with its look-ups in the texts that songs share, made once for all its ranges.
    struct Query {
        std::string Folded;
        SearchFieldSet Fields;
        SegmentBits Artists;
        SegmentBits Albums;
        FoldersHoldingText Folders;  // decided as the songs come
        SegmentBits Combinations;    // of genre, year and bitrate
        SegmentBits Volumes;
        // The file name's part of a match that runs into the shared ending, each ended by
        // kSegmentEnd; or none, the ending holding the whole query (EndingHolds).
        std::vector<std::string> NameHeads;
        bool EndingHolds = false;
        // A match that runs from a folder into the file name: the folders that end with its
        // first part, and the part that begins the name.
        SegmentBits FolderEndings;
        std::string NameStart;
    };
    // `folded` is a query as AppendFolded writes it, looked for by the textual test in the
    // checked `fields`: an empty query finds the songs with a non-empty checked field.
    Query Prepare(std::string_view folded, const SearchFieldSet& fields) const;
    // The songs from `from` (a multiple of 64) up to `to` that `query` finds; bit 0 is song
    // `from`. A `to` within a block of 64 is taken to the block's end (or the last song). The
    // query learns what it needs of the folders of the songs as they come.
    SegmentBits FindRange(Query& query, std::size_t from, std::size_t to) const;
    // Every song the query finds.
    SegmentBits Find(std::string_view folded, const SearchFieldSet& fields) const;

    // Bytes of memory held.
    std::size_t MemoryBytes() const;

private:
    SearchIndex() = default;
    // The halves of a build, which fill members of their own: the songs' texts but their
    // folders; and their folders. False when stopped.
    bool BuildOwnTexts(const CatalogueView& catalogue, const std::atomic<bool>* stop);
    bool BuildFolders(const CatalogueView& catalogue, const std::atomic<bool>* stop);

    enum Own : std::size_t { kFileNames = 0, kTitles, kComments, kOwnCount };
    struct OwnTexts {
        std::string Buffer;                  // one segment per song (comments: per commented)
        std::vector<std::uint32_t> Every64;  // where the segments of songs 64k on begin
    };
    // The segments of songs `from` (a multiple of 64) up to `to` (one too, or the last song).
    std::string_view Segments(Own own, std::size_t from, std::size_t to) const;

    // Each sets the bits of the songs from `from` up to `to` it finds; bit 0 is song `from`.
    void FindInNames(const Query& query, std::size_t from, std::size_t to, SegmentBits& hits) const;
    void FindInComments(const Query& query, std::size_t from, std::size_t to,
                        SegmentBits& hits) const;
    bool NameStartsWith(std::size_t song, std::string_view rest, std::string_view head) const;
    void FindShared(Query& query, std::size_t from, std::size_t to, SegmentBits& hits) const;
    void FindAcrossFolder(const Query& query, std::size_t from, std::size_t to,
                          SegmentBits& hits) const;

    std::uint64_t m_generation = 0;
    std::size_t m_songs = 0;
    std::vector<std::size_t> m_volumeStarts{0};
    TextDictionary m_volumeNames;  // one entry per volume, in order
    OwnTexts m_own[kOwnCount];
    // The songs whose folded file name ends with ".mp3", which their segment leaves out.
    SegmentBits m_sharedEnding;
    // The songs with a comment: most have none, so only those that have one get a segment.
    SegmentBits m_commented;
    std::size_t m_commentCount = 0;
    TextDictionary m_artists;
    TextDictionary m_albums;
    IndexedFolders m_folders;  // the folder part of the paths, with its final separator
    // The folders met by the end of each block of 64 songs: folders are numbered as met.
    std::vector<std::uint32_t> m_foldersMet;
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
