#include "finders/SearchIndex.h"

#include <algorithm>

#include "catalogue/SongFields.h"
#include "finders/TextTest.h"

namespace jk {

std::string_view SearchIndex::OwnTexts::SegmentOf(std::size_t song) const {
    constexpr char kEnd = static_cast<char>(kSegmentEnd);
    std::size_t start = Every64[song / 64];
    for (std::size_t skip = song % 64; skip > 0; --skip) {
        start = Buffer.find(kEnd, start) + 1;
    }
    const std::size_t stop = Buffer.find(kEnd, start);
    return std::string_view(Buffer).substr(start, stop - start);
}

namespace {

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

}  // namespace

std::unique_ptr<SearchIndex> SearchIndex::Build(const CatalogueView& catalogue,
                                                const std::atomic<bool>* stop) {
    std::unique_ptr<SearchIndex> index(new SearchIndex());
    index->m_generation = catalogue.Generation();
    const std::size_t total = catalogue.TotalSongs();
    index->m_songs = total;

    DictionaryBuilder artists(index->m_artists);
    DictionaryBuilder albums(index->m_albums);
    IndexedFoldersBuilder folders(index->m_folders);
    DictionaryBuilder genres(index->m_genres);
    DictionaryBuilder years(index->m_years);
    DictionaryBuilder bitrates(index->m_bitrates);
    NumberTable triples;
    std::vector<std::uint32_t> artistOf;
    std::vector<std::uint32_t> albumOf;
    std::vector<std::uint32_t> folderOf;
    std::vector<std::uint32_t> tripleOf;
    artistOf.reserve(total);
    albumOf.reserve(total);
    folderOf.reserve(total);
    tripleOf.reserve(total);
    for (OwnTexts& own : index->m_own) {
        own.Every64.reserve(total / 64 + 1);
    }

    std::size_t song = 0;
    for (std::size_t v = 0; v < catalogue.VolumeCount(); ++v) {
        // Each volume its own entry, even when two share a name, so entry v is volume v.
        TextDictionary& names = index->m_volumeNames;
        names.Starts.push_back(static_cast<std::uint32_t>(names.Buffer.size()));
        AppendFolded(names.Buffer, catalogue.VolumeName(v));
        names.Buffer.push_back(static_cast<char>(kSegmentEnd));
        const std::size_t count = catalogue.SongCount(v);
        for (std::size_t i = 0; i < count; ++i, ++song) {
            if ((song & 4095) == 0 && stop != nullptr && stop->load(std::memory_order_relaxed)) {
                return nullptr;
            }
            const SongFieldViews fields = catalogue.Fields(v, i);
            const std::string_view path = Key(fields, kKeyPath);
            const std::size_t nameAt = NameStart(path);
            const std::string_view own[kOwnCount] = {path.substr(nameAt), Key(fields, kKeyTitle),
                                                     Key(fields, kKeyComment)};
            for (std::size_t f = 0; f < kOwnCount; ++f) {
                OwnTexts& texts = index->m_own[f];
                if (song % 64 == 0) {
                    texts.Every64.push_back(static_cast<std::uint32_t>(texts.Buffer.size()));
                }
                AppendFolded(texts.Buffer, own[f]);
                texts.Buffer.push_back(static_cast<char>(kSegmentEnd));
            }
            artistOf.push_back(artists.Id(Key(fields, kKeyArtist)));
            albumOf.push_back(albums.Id(Key(fields, kKeyAlbum)));
            folderOf.push_back(folders.Id(path.substr(0, nameAt)));
            const std::uint64_t triple =
                (static_cast<std::uint64_t>(genres.Id(Key(fields, kKeyGenre))) << 42) |
                (static_cast<std::uint64_t>(years.Id(Key(fields, kKeyYear))) << 21) |
                bitrates.Id(Key(fields, kKeyBitrate));
            bool added = false;
            const std::uint32_t combination = triples.Id(triple, added);
            if (added) {
                index->m_triples.push_back(static_cast<std::uint32_t>(triple >> 42));
                index->m_triples.push_back(static_cast<std::uint32_t>((triple >> 21) & 0x1FFFFF));
                index->m_triples.push_back(static_cast<std::uint32_t>(triple & 0x1FFFFF));
            }
            tripleOf.push_back(combination);
        }
        index->m_volumeStarts.push_back(song);
    }
    for (OwnTexts& own : index->m_own) {
        own.Buffer.shrink_to_fit();
        own.Every64.shrink_to_fit();
        // Offsets are 32-bit: a catalogue whose texts outgrow them is searched without the index.
        if (own.Buffer.size() > UINT32_MAX) {
            return nullptr;
        }
    }
    artists.Finish();
    albums.Finish();
    folders.Finish();
    genres.Finish();
    years.Finish();
    bitrates.Finish();
    // A combination keeps 21 bits for each of its three numbers.
    constexpr std::size_t kMostPerPart = 0x1FFFFF;
    if (index->m_genres.Count() > kMostPerPart || index->m_years.Count() > kMostPerPart ||
        index->m_bitrates.Count() > kMostPerPart) {
        return nullptr;
    }
    index->m_triples.shrink_to_fit();
    index->m_artistOf.Pack(artistOf);
    index->m_albumOf.Pack(albumOf);
    index->m_folderOf.Pack(folderOf);
    index->m_tripleOf.Pack(tripleOf);
    return index;
}

std::size_t SearchIndex::VolumeOf(std::size_t song) const {
    const auto after = std::upper_bound(m_volumeStarts.begin(), m_volumeStarts.end(), song);
    return static_cast<std::size_t>(after - m_volumeStarts.begin()) - 1;
}

SegmentBits SearchIndex::Find(std::string_view folded, const SearchFieldSet& fields) const {
    SegmentBits hits(m_songs);
    if (Checked(fields, SearchField::Filename)) {
        ScanSegments(m_own[kFileNames].Buffer, folded, hits);
    }
    if (Checked(fields, SearchField::Title)) {
        ScanSegments(m_own[kTitles].Buffer, folded, hits);
    }
    if (Checked(fields, SearchField::Comment)) {
        ScanSegments(m_own[kComments].Buffer, folded, hits);
    }
    FindShared(folded, fields, hits);
    if (Checked(fields, SearchField::Filename) && !folded.empty()) {
        FindAcrossFolder(folded, hits);
    }
    return hits;
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
        const std::string_view name =
            std::string_view(names.Buffer).substr(start, nameStart.size());
        if (name == nameStart && name.find(kEnd) == std::string_view::npos) {
            hits.Set(next);
        }
    }
}

std::size_t SearchIndex::MemoryBytes() const {
    std::size_t bytes = sizeof(SearchIndex) + m_volumeStarts.capacity() * sizeof(std::size_t);
    for (const OwnTexts& own : m_own) {
        bytes += own.Buffer.capacity() + own.Every64.capacity() * 4;
    }
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
