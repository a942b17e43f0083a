#include "finders/SearchIndex.h"

#include <algorithm>
#include <thread>

#include "catalogue/SongFields.h"
#include "finders/TextTest.h"

namespace jk {

namespace {

// The folded ending that nearly every file name shares, held once rather than once a song.
constexpr std::string_view kSharedEnding = ".mp3";

std::string_view Key(const SongFieldViews& fields, int key) {
    return fields[static_cast<std::size_t>(key - 1)];
}

std::size_t NameStart(std::string_view path) {
    const std::size_t sep = path.find_last_of("/\\");
    return sep == std::string_view::npos ? 0 : sep + 1;
}

// Songs whose entry in a dictionary column is one of `entries`, added to `hits`, 64 at a time.
template <unsigned Width>
void MarkByColumn(const PackedNumbers& column, const SegmentBits& entries, SegmentBits& hits) {
    const std::size_t n = hits.Size();
    std::uint64_t* words = hits.Words();
    for (std::size_t base = 0; base < n; base += 64) {
        if (words[base >> 6] == ~std::uint64_t{0}) {
            continue;  // all 64 found already
        }
        const std::size_t stop = std::min<std::size_t>(n, base + 64);
        std::uint64_t word = 0;
        for (std::size_t s = base; s < stop; ++s) {
            const std::uint32_t id = column.GetAs<Width>(s);
            word |= static_cast<std::uint64_t>(entries.Test(id)) << (s - base);
        }
        words[base >> 6] |= word;
    }
}

void MarkByColumn(const PackedNumbers& column, const SegmentBits& entries, SegmentBits& hits) {
    if (!entries.Any()) {
        return;
    }
    switch (column.Width()) {
        case 1:
            MarkByColumn<1>(column, entries, hits);
            break;
        case 2:
            MarkByColumn<2>(column, entries, hits);
            break;
        case 3:
            MarkByColumn<3>(column, entries, hits);
            break;
        default:
            MarkByColumn<4>(column, entries, hits);
            break;
    }
}

bool Checked(const SearchFieldSet& fields, SearchField field) {
    return fields.test(static_cast<std::size_t>(field));
}

// into |= (from & mask), a word at a time.
void AddMasked(SegmentBits& into, const SegmentBits& from, const SegmentBits& mask) {
    std::uint64_t* words = into.Words();
    const std::vector<std::uint64_t>& a = from.WordList();
    const std::vector<std::uint64_t>& b = mask.WordList();
    for (std::size_t w = 0; w < a.size(); ++w) {
        words[w] |= a[w] & b[w];
    }
}

}  // namespace

namespace {

bool Stopped(std::size_t song, const std::atomic<bool>* stop) {
    return (song & 4095) == 0 && stop != nullptr && stop->load(std::memory_order_relaxed);
}

}  // namespace

std::unique_ptr<SearchIndex> SearchIndex::Build(const CatalogueView& catalogue,
                                                const std::atomic<bool>* stop) {
    std::unique_ptr<SearchIndex> index(new SearchIndex());
    index->m_generation = catalogue.Generation();
    index->m_songs = catalogue.TotalSongs();
    // The halves touch no member in common; the catalogue is only read.
    bool otherDone = false;
    std::thread other([&] { otherDone = index->BuildFolders(catalogue, stop); });
    const bool done = index->BuildOwnTexts(catalogue, stop);
    other.join();
    if (!done || !otherDone) {
        return nullptr;
    }
    for (const OwnTexts& own : index->m_own) {
        // Offsets are 32-bit: a catalogue whose texts outgrow them is searched without the index.
        if (own.Buffer.size() > UINT32_MAX) {
            return nullptr;
        }
    }
    // A combination keeps 21 bits for each of its three numbers.
    constexpr std::size_t kMostPerPart = 0x1FFFFF;
    if (index->m_genres.Count() > kMostPerPart || index->m_years.Count() > kMostPerPart ||
        index->m_bitrates.Count() > kMostPerPart) {
        return nullptr;
    }
    return index;
}

bool SearchIndex::BuildOwnTexts(const CatalogueView& catalogue, const std::atomic<bool>* stop) {
    DictionaryBuilder artists(m_artists);
    DictionaryBuilder albums(m_albums);
    DictionaryBuilder genres(m_genres);
    DictionaryBuilder years(m_years);
    DictionaryBuilder bitrates(m_bitrates);
    NumberTable triples;
    std::vector<std::uint32_t> artistOf;
    std::vector<std::uint32_t> albumOf;
    std::vector<std::uint32_t> tripleOf;
    artistOf.reserve(m_songs);
    albumOf.reserve(m_songs);
    tripleOf.reserve(m_songs);
    m_own[kFileNames].Every64.reserve(m_songs / 64 + 1);
    m_sharedEnding = SegmentBits(m_songs);
    m_commented = SegmentBits(m_songs);

    std::size_t song = 0;
    for (std::size_t v = 0; v < catalogue.VolumeCount(); ++v) {
        // Each volume its own entry, even when two share a name, so entry v is volume v.
        m_volumeNames.Starts.push_back(static_cast<std::uint32_t>(m_volumeNames.Buffer.size()));
        AppendFolded(m_volumeNames.Buffer, catalogue.VolumeName(v));
        m_volumeNames.Buffer.push_back(static_cast<char>(kSegmentEnd));
        const std::size_t count = catalogue.SongCount(v);
        for (std::size_t i = 0; i < count; ++i, ++song) {
            if (Stopped(song, stop)) {
                return false;
            }
            const SongFieldViews fields = catalogue.Fields(v, i);
            const std::string_view path = Key(fields, kKeyPath);
            const std::string_view own[kOwnCount] = {
                path.substr(NameStart(path)), Key(fields, kKeyTitle), Key(fields, kKeyComment)};
            if (song % 64 == 0) {
                // Only the names are read song by song (a search over a folder's joint).
                m_own[kFileNames].Every64.push_back(
                    static_cast<std::uint32_t>(m_own[kFileNames].Buffer.size()));
            }
            for (std::size_t f = 0; f < kOwnCount; ++f) {
                if (f == kComments) {
                    if (own[f].empty()) {
                        continue;
                    }
                    m_commented.Set(song);
                    ++m_commentCount;
                }
                std::string& buffer = m_own[f].Buffer;
                const std::size_t segmentStart = buffer.size();
                AppendFolded(buffer, own[f]);
                if (f == kFileNames && buffer.size() - segmentStart >= kSharedEnding.size() &&
                    std::string_view(buffer).ends_with(kSharedEnding)) {
                    buffer.resize(buffer.size() - kSharedEnding.size());
                    m_sharedEnding.Set(song);
                }
                buffer.push_back(static_cast<char>(kSegmentEnd));
            }
            artistOf.push_back(artists.Id(Key(fields, kKeyArtist)));
            albumOf.push_back(albums.Id(Key(fields, kKeyAlbum)));
            const std::uint64_t triple =
                (static_cast<std::uint64_t>(genres.Id(Key(fields, kKeyGenre))) << 42) |
                (static_cast<std::uint64_t>(years.Id(Key(fields, kKeyYear))) << 21) |
                bitrates.Id(Key(fields, kKeyBitrate));
            bool added = false;
            const std::uint32_t combination = triples.Id(triple, added);
            if (added) {
                m_triples.push_back(static_cast<std::uint32_t>(triple >> 42));
                m_triples.push_back(static_cast<std::uint32_t>((triple >> 21) & 0x1FFFFF));
                m_triples.push_back(static_cast<std::uint32_t>(triple & 0x1FFFFF));
            }
            tripleOf.push_back(combination);
        }
        m_volumeStarts.push_back(song);
    }
    for (OwnTexts& own : m_own) {
        own.Buffer.shrink_to_fit();
        own.Every64.shrink_to_fit();
    }
    m_volumeNames.Buffer.shrink_to_fit();
    m_volumeNames.Starts.shrink_to_fit();
    artists.Finish();
    albums.Finish();
    genres.Finish();
    years.Finish();
    bitrates.Finish();
    m_triples.shrink_to_fit();
    m_artistOf.Pack(artistOf);
    m_albumOf.Pack(albumOf);
    m_tripleOf.Pack(tripleOf);
    return true;
}

bool SearchIndex::BuildFolders(const CatalogueView& catalogue, const std::atomic<bool>* stop) {
    IndexedFoldersBuilder folders(m_folders);
    std::vector<std::uint32_t> folderOf;
    folderOf.reserve(m_songs);
    std::size_t song = 0;
    for (std::size_t v = 0; v < catalogue.VolumeCount(); ++v) {
        const std::size_t count = catalogue.SongCount(v);
        for (std::size_t i = 0; i < count; ++i, ++song) {
            if (Stopped(song, stop)) {
                return false;
            }
            const SongFieldViews fields = catalogue.Fields(v, i);
            const std::string_view path = Key(fields, kKeyPath);
            folderOf.push_back(folders.Id(path.substr(0, NameStart(path))));
        }
    }
    folders.Finish();
    m_folderOf.Pack(folderOf);
    return true;
}

std::size_t SearchIndex::VolumeOf(std::size_t song) const {
    const auto after = std::upper_bound(m_volumeStarts.begin(), m_volumeStarts.end(), song);
    return static_cast<std::size_t>(after - m_volumeStarts.begin()) - 1;
}

SegmentBits SearchIndex::Find(std::string_view folded, const SearchFieldSet& fields) const {
    SegmentBits hits(m_songs);
    if (Checked(fields, SearchField::Filename)) {
        FindInNames(folded, hits);
    }
    if (Checked(fields, SearchField::Title)) {
        ScanSegments(m_own[kTitles].Buffer, folded, hits);
    }
    if (Checked(fields, SearchField::Comment)) {
        FindInComments(folded, hits);
    }
    FindShared(folded, fields, hits);
    if (Checked(fields, SearchField::Filename) && !folded.empty()) {
        FindAcrossFolder(folded, hits);
    }
    return hits;
}

// A name is its segment followed, when its bit says so, by the shared ending.
void SearchIndex::FindInNames(std::string_view folded, SegmentBits& hits) const {
    const std::string& names = m_own[kFileNames].Buffer;
    ScanSegments(names, folded, hits);
    if (folded.empty() || kSharedEnding.find(folded) != std::string_view::npos) {
        AddMasked(hits, m_sharedEnding, m_sharedEnding);  // the ending holds it (and is text)
        return;
    }
    // A match that runs from the segment into the ending: the segment ends with the query's
    // head, and the ending begins with the rest.
    for (std::size_t tail = 1; tail <= kSharedEnding.size() && tail < folded.size(); ++tail) {
        if (folded.substr(folded.size() - tail) != kSharedEnding.substr(0, tail)) {
            continue;
        }
        std::string head(folded.substr(0, folded.size() - tail));
        head.push_back(static_cast<char>(kSegmentEnd));
        SegmentBits endings(m_songs);
        ScanSegments(names, head, endings);
        AddMasked(hits, endings, m_sharedEnding);
    }
}

// Comment k is that of the k-th song with one.
void SearchIndex::FindInComments(std::string_view folded, SegmentBits& hits) const {
    if (folded.empty()) {
        AddMasked(hits, m_commented, m_commented);
        return;
    }
    SegmentBits found(m_commentCount);
    ScanSegments(m_own[kComments].Buffer, folded, found);
    if (!found.Any()) {
        return;
    }
    std::size_t k = 0;
    for (std::size_t song = m_commented.Next(0); song < m_songs;
         song = m_commented.Next(song + 1), ++k) {
        if (found.Test(k)) {
            hits.Set(song);
        }
    }
}

// Whether the file name of `song`, whose segment is `rest`, begins with `head`.
bool SearchIndex::NameStartsWith(std::size_t song, std::string_view rest,
                                 std::string_view head) const {
    if (head.size() <= rest.size()) {
        return rest.substr(0, head.size()) == head;
    }
    const std::size_t over = head.size() - rest.size();
    return m_sharedEnding.Test(song) && over <= kSharedEnding.size() &&
           head.substr(0, rest.size()) == rest &&
           head.substr(rest.size()) == kSharedEnding.substr(0, over);
}

void SearchIndex::FindShared(std::string_view folded, const SearchFieldSet& fields,
                             SegmentBits& hits) const {
    if (Checked(fields, SearchField::Artist)) {
        MarkByColumn(m_artistOf, EntriesHolding(m_artists, folded), hits);
    }
    if (Checked(fields, SearchField::Album)) {
        MarkByColumn(m_albumOf, EntriesHolding(m_albums, folded), hits);
    }
    if (Checked(fields, SearchField::Filename)) {
        MarkByColumn(m_folderOf, m_folders.FoldersHolding(folded), hits);
    }
    const bool genre = Checked(fields, SearchField::Genre);
    const bool year = Checked(fields, SearchField::Year);
    const bool bitrate = Checked(fields, SearchField::Bitrate);
    if (genre || year || bitrate) {
        const SegmentBits none;
        const SegmentBits genres = genre ? EntriesHolding(m_genres, folded) : none;
        const SegmentBits years = year ? EntriesHolding(m_years, folded) : none;
        const SegmentBits bitrates = bitrate ? EntriesHolding(m_bitrates, folded) : none;
        const std::size_t count = m_triples.size() / 3;
        SegmentBits combinations(count);
        for (std::size_t t = 0; t < count; ++t) {
            if ((genre && genres.Test(m_triples[3 * t])) ||
                (year && years.Test(m_triples[3 * t + 1])) ||
                (bitrate && bitrates.Test(m_triples[3 * t + 2]))) {
                combinations.Set(t);
            }
        }
        MarkByColumn(m_tripleOf, combinations, hits);
    }
    if (Checked(fields, SearchField::Volume)) {
        const SegmentBits volumes = EntriesHolding(m_volumeNames, folded);
        for (std::size_t v = 0; v < VolumeCount(); ++v) {
            if (volumes.Test(v)) {
                hits.SetRange(m_volumeStarts[v], m_volumeStarts[v + 1]);
            }
        }
    }
}

// A query with a separator may run from the end of a song's folder into its file name: the
// part up to its last separator ends the folder, the rest begins the name.
void SearchIndex::FindAcrossFolder(std::string_view folded, SegmentBits& hits) const {
    const std::size_t sep = folded.find_last_of("/\\");
    if (sep == std::string_view::npos || sep + 1 == folded.size()) {
        return;  // wholly inside a folder, or with no folder part: found already
    }
    const std::string_view folderEnd = folded.substr(0, sep + 1);
    const std::string_view nameStart = folded.substr(sep + 1);
    const SegmentBits endings = m_folders.FoldersEndingWith(folderEnd);
    if (!endings.Any()) {
        return;
    }
    // The songs in such folders not found yet, then their names read through a cursor that
    // jumps from one to the next by the index of every 64th name.
    SegmentBits candidates(m_songs);
    MarkByColumn(m_folderOf, endings, candidates);
    const std::vector<std::uint64_t>& found = hits.WordList();
    std::uint64_t* words = candidates.Words();
    for (std::size_t w = 0; w < found.size(); ++w) {
        words[w] &= ~found[w];
    }
    const OwnTexts& names = m_own[kFileNames];
    constexpr char kEnd = static_cast<char>(kSegmentEnd);
    std::size_t song = 0;
    std::size_t start = 0;
    for (std::size_t next = candidates.Next(0); next < m_songs; next = candidates.Next(next + 1)) {
        if (next / 64 != song / 64 || next < song) {
            song = next / 64 * 64;
            start = names.Every64[next / 64];
        }
        for (; song < next; ++song) {
            start = names.Buffer.find(kEnd, start) + 1;
        }
        const std::size_t stop = names.Buffer.find(kEnd, start);
        if (NameStartsWith(next, std::string_view(names.Buffer).substr(start, stop - start),
                           nameStart)) {
            hits.Set(next);
        }
    }
}

std::size_t SearchIndex::MemoryBytes() const {
    std::size_t bytes = sizeof(SearchIndex) + m_volumeStarts.capacity() * sizeof(std::size_t);
    for (const OwnTexts& own : m_own) {
        bytes += own.Buffer.capacity() + own.Every64.capacity() * 4;
    }
    bytes += (m_sharedEnding.WordList().capacity() + m_commented.WordList().capacity()) * 8;
    for (const TextDictionary* d :
         {&m_volumeNames, &m_artists, &m_albums, &m_genres, &m_years, &m_bitrates}) {
        bytes += d->MemoryBytes();
    }
    bytes += m_folders.MemoryBytes();
    bytes += m_triples.capacity() * 4 + m_artistOf.MemoryBytes() + m_albumOf.MemoryBytes() +
             m_folderOf.MemoryBytes() + m_tripleOf.MemoryBytes();
    return bytes;
}

}  // namespace jk
