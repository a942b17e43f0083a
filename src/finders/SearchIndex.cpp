#include "finders/SearchIndex.h"

#include <algorithm>
#include <thread>

#include "catalogue/SongFields.h"
#include "finders/TextTest.h"

namespace jk {

namespace {

// The folded ending that nearly every file name shares, held once rather than once a song.
constexpr std::string_view kSharedEnding = ".mp3";

std::size_t NameStart(std::string_view path) {
    const std::size_t sep = path.find_last_of("/\\");
    return sep == std::string_view::npos ? 0 : sep + 1;
}

// Songs `from` on (a multiple of 64) whose entry in a dictionary column is one of `entries`,
// added to `hits` (bit 0 is song `from`), 64 at a time.
template <unsigned Width>
void MarkByColumn(const PackedNumbers& column, const SegmentBits& entries, SegmentBits& hits,
                  std::size_t from) {
    const std::size_t n = hits.Size();
    std::uint64_t* words = hits.Words();
    for (std::size_t base = 0; base < n; base += 64) {
        if (words[base >> 6] == ~std::uint64_t{0}) {
            continue;  // all 64 found already
        }
        const std::size_t stop = std::min<std::size_t>(n, base + 64);
        std::uint64_t word = 0;
        for (std::size_t s = base; s < stop; ++s) {
            const std::uint32_t id = column.GetAs<Width>(from + s);
            word |= static_cast<std::uint64_t>(entries.Test(id)) << (s - base);
        }
        words[base >> 6] |= word;
    }
}

void MarkByColumn(const PackedNumbers& column, const SegmentBits& entries, SegmentBits& hits,
                  std::size_t from) {
    if (!entries.Any()) {
        return;
    }
    switch (column.Width()) {
        case 1:
            MarkByColumn<1>(column, entries, hits, from);
            break;
        case 2:
            MarkByColumn<2>(column, entries, hits, from);
            break;
        case 3:
            MarkByColumn<3>(column, entries, hits, from);
            break;
        default:
            MarkByColumn<4>(column, entries, hits, from);
            break;
    }
}

bool Checked(const SearchFieldSet& fields, SearchField field) {
    return fields.test(static_cast<std::size_t>(field));
}

// into |= (from & mask), a word at a time; `mask` is read from word `maskWord` on.
void AddMasked(SegmentBits& into, const SegmentBits& from, const SegmentBits& mask,
               std::size_t maskWord) {
    std::uint64_t* words = into.Words();
    const std::vector<std::uint64_t>& a = from.WordList();
    const std::vector<std::uint64_t>& b = mask.WordList();
    for (std::size_t w = 0; w < a.size(); ++w) {
        words[w] |= a[w] & b[maskWord + w];
    }
}

// into |= mask, `mask` read from word `maskWord` on.
void AddWords(SegmentBits& into, const SegmentBits& mask, std::size_t maskWord) {
    std::uint64_t* words = into.Words();
    const std::vector<std::uint64_t>& b = mask.WordList();
    const std::size_t count = into.WordList().size();
    for (std::size_t w = 0; w < count; ++w) {
        words[w] |= b[maskWord + w];
    }
}

// The set bits of `bits` from `from` up to `to`.
std::size_t CountRange(const SegmentBits& bits, std::size_t from, std::size_t to) {
    std::size_t count = 0;
    for (std::size_t i = bits.Next(from); i < to; i = bits.Next(i + 1)) {
        ++count;
    }
    return count;
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
    for (OwnTexts& texts : m_own) {
        texts.Every64.reserve(m_songs / 64 + 1);
    }
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
            const std::string_view path = SongFieldView(fields, kKeyPath);
            const std::string_view own[kOwnCount] = {path.substr(NameStart(path)),
                                                     SongFieldView(fields, kKeyTitle),
                                                     SongFieldView(fields, kKeyComment)};
            if (song % 64 == 0) {
                // Where each range of songs begins, for a search a range at a time.
                for (OwnTexts& texts : m_own) {
                    texts.Every64.push_back(static_cast<std::uint32_t>(texts.Buffer.size()));
                }
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
            artistOf.push_back(artists.Id(SongFieldView(fields, kKeyArtist)));
            albumOf.push_back(albums.Id(SongFieldView(fields, kKeyAlbum)));
            const std::uint64_t triple =
                (static_cast<std::uint64_t>(genres.Id(SongFieldView(fields, kKeyGenre))) << 42) |
                (static_cast<std::uint64_t>(years.Id(SongFieldView(fields, kKeyYear))) << 21) |
                bitrates.Id(SongFieldView(fields, kKeyBitrate));
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
    m_foldersMet.reserve(m_songs / 64 + 1);
    std::uint32_t met = 1;  // the empty folder is there from the start
    std::size_t song = 0;
    for (std::size_t v = 0; v < catalogue.VolumeCount(); ++v) {
        const std::size_t count = catalogue.SongCount(v);
        for (std::size_t i = 0; i < count; ++i, ++song) {
            if (Stopped(song, stop)) {
                return false;
            }
            const SongFieldViews fields = catalogue.Fields(v, i);
            const std::string_view path = SongFieldView(fields, kKeyPath);
            const std::uint32_t folder = folders.Id(path.substr(0, NameStart(path)));
            folderOf.push_back(folder);
            met = std::max(met, folder + 1);
            if ((song + 1) % 64 == 0 || song + 1 == m_songs) {
                m_foldersMet.push_back(met);
            }
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

SearchIndex::Query SearchIndex::Prepare(std::string_view folded,
                                        const SearchFieldSet& fields) const {
    Query query;
    query.Folded = std::string(folded);
    query.Fields = fields;
    if (Checked(fields, SearchField::Artist)) {
        query.Artists = EntriesHolding(m_artists, folded);
    }
    if (Checked(fields, SearchField::Album)) {
        query.Albums = EntriesHolding(m_albums, folded);
    }
    const bool names = Checked(fields, SearchField::Filename);
    if (names) {
        query.Folders = FoldersHoldingText(m_folders, folded);
        // A name is its segment followed, when its bit says so, by the shared ending: the
        // ending holds the query, or the segment ends with the query's head and the ending
        // begins with the rest.
        query.EndingHolds = folded.empty() || kSharedEnding.find(folded) != std::string_view::npos;
        for (std::size_t tail = 1;
             !query.EndingHolds && tail <= kSharedEnding.size() && tail < folded.size(); ++tail) {
            if (folded.substr(folded.size() - tail) == kSharedEnding.substr(0, tail)) {
                std::string head(folded.substr(0, folded.size() - tail));
                head.push_back(static_cast<char>(kSegmentEnd));
                query.NameHeads.push_back(std::move(head));
            }
        }
        // A query with a separator may run from the end of a song's folder into its file
        // name: the part up to its last separator ends the folder, the rest begins the name.
        const std::size_t sep = folded.find_last_of("/\\");
        if (sep != std::string_view::npos && sep + 1 < folded.size()) {
            query.FolderEndings = m_folders.FoldersEndingWith(folded.substr(0, sep + 1));
            query.NameStart = std::string(folded.substr(sep + 1));
        }
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
        query.Combinations = SegmentBits(count);
        for (std::size_t t = 0; t < count; ++t) {
            if ((genre && genres.Test(m_triples[3 * t])) ||
                (year && years.Test(m_triples[3 * t + 1])) ||
                (bitrate && bitrates.Test(m_triples[3 * t + 2]))) {
                query.Combinations.Set(t);
            }
        }
    }
    if (Checked(fields, SearchField::Volume)) {
        query.Volumes = EntriesHolding(m_volumeNames, folded);
    }
    return query;
}

SegmentBits SearchIndex::Find(std::string_view folded, const SearchFieldSet& fields) const {
    Query query = Prepare(folded, fields);
    return FindRange(query, 0, m_songs);
}

SegmentBits SearchIndex::FindRange(Query& query, std::size_t from, std::size_t to) const {
    from = std::min(from / 64 * 64, m_songs);
    to = std::clamp((to + 63) / 64 * 64, from, m_songs);
    SegmentBits hits(to - from);
    if (from == to) {
        return hits;
    }
    if (Checked(query.Fields, SearchField::Filename)) {
        FindInNames(query, from, to, hits);
    }
    if (Checked(query.Fields, SearchField::Title)) {
        ScanSegments(Segments(kTitles, from, to), query.Folded, hits);
    }
    if (Checked(query.Fields, SearchField::Comment)) {
        FindInComments(query, from, to, hits);
    }
    FindShared(query, from, to, hits);
    if (Checked(query.Fields, SearchField::Filename)) {
        FindAcrossFolder(query, from, to, hits);
    }
    return hits;
}

std::string_view SearchIndex::Segments(Own own, std::size_t from, std::size_t to) const {
    const OwnTexts& texts = m_own[own];
    const std::size_t start = texts.Every64[from / 64];
    const std::size_t end = to >= m_songs ? texts.Buffer.size() : texts.Every64[to / 64];
    return std::string_view(texts.Buffer).substr(start, end - start);
}

void SearchIndex::FindInNames(const Query& query, std::size_t from, std::size_t to,
                              SegmentBits& hits) const {
    const std::string_view names = Segments(kFileNames, from, to);
    ScanSegments(names, query.Folded, hits);
    if (query.EndingHolds) {
        AddWords(hits, m_sharedEnding, from / 64);  // the ending holds it (and is text)
        return;
    }
    for (const std::string& head : query.NameHeads) {
        SegmentBits endings(to - from);
        ScanSegments(names, head, endings);
        AddMasked(hits, endings, m_sharedEnding, from / 64);
    }
}

// Comment k of a range is that of its k-th song with one.
void SearchIndex::FindInComments(const Query& query, std::size_t from, std::size_t to,
                                 SegmentBits& hits) const {
    if (query.Folded.empty()) {
        AddWords(hits, m_commented, from / 64);
        return;
    }
    SegmentBits found(CountRange(m_commented, from, to));
    ScanSegments(Segments(kComments, from, to), query.Folded, found);
    if (!found.Any()) {
        return;
    }
    std::size_t k = 0;
    for (std::size_t song = m_commented.Next(from); song < to;
         song = m_commented.Next(song + 1), ++k) {
        if (found.Test(k)) {
            hits.Set(song - from);
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

void SearchIndex::FindShared(Query& query, std::size_t from, std::size_t to,
                             SegmentBits& hits) const {
    if (Checked(query.Fields, SearchField::Artist)) {
        MarkByColumn(m_artistOf, query.Artists, hits, from);
    }
    if (Checked(query.Fields, SearchField::Album)) {
        MarkByColumn(m_albumOf, query.Albums, hits, from);
    }
    if (Checked(query.Fields, SearchField::Filename)) {
        MarkByColumn(m_folderOf, query.Folders.Upto(m_foldersMet[(to - 1) / 64]), hits, from);
    }
    if (query.Combinations.Size() > 0) {
        MarkByColumn(m_tripleOf, query.Combinations, hits, from);
    }
    for (std::size_t v = 0; v < query.Volumes.Size(); ++v) {
        if (query.Volumes.Test(v)) {
            const std::size_t first = std::max(m_volumeStarts[v], from);
            const std::size_t end = std::min(m_volumeStarts[v + 1], to);
            if (first < end) {
                hits.SetRange(first - from, end - from);
            }
        }
    }
}

// The songs in folders that end with the query's first part, not found yet, and their names
// read through a cursor that jumps from one to the next by the index of every 64th name.
void SearchIndex::FindAcrossFolder(const Query& query, std::size_t from, std::size_t to,
                                   SegmentBits& hits) const {
    if (query.NameStart.empty() || !query.FolderEndings.Any()) {
        return;  // wholly inside a folder, or with no folder part: found already
    }
    SegmentBits candidates(to - from);
    MarkByColumn(m_folderOf, query.FolderEndings, candidates, from);
    const std::vector<std::uint64_t>& found = hits.WordList();
    std::uint64_t* words = candidates.Words();
    for (std::size_t w = 0; w < found.size(); ++w) {
        words[w] &= ~found[w];
    }
    const OwnTexts& names = m_own[kFileNames];
    constexpr char kEnd = static_cast<char>(kSegmentEnd);
    std::size_t song = 0;
    std::size_t start = 0;
    for (std::size_t local = candidates.Next(0); local < candidates.Size();
         local = candidates.Next(local + 1)) {
        const std::size_t next = from + local;
        if (next / 64 != song / 64 || next < song) {
            song = next / 64 * 64;
            start = names.Every64[next / 64];
        }
        for (; song < next; ++song) {
            start = names.Buffer.find(kEnd, start) + 1;
        }
        const std::size_t stop = names.Buffer.find(kEnd, start);
        if (NameStartsWith(next, std::string_view(names.Buffer).substr(start, stop - start),
                           query.NameStart)) {
            hits.Set(local);
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
    bytes += m_folders.MemoryBytes() + m_foldersMet.capacity() * 4;
    bytes += m_triples.capacity() * 4 + m_artistOf.MemoryBytes() + m_albumOf.MemoryBytes() +
             m_folderOf.MemoryBytes() + m_tripleOf.MemoryBytes();
    return bytes;
}

}  // namespace jk
