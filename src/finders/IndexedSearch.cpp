#include "finders/IndexedSearch.h"

#include <algorithm>
#include <bit>

#include "catalogue/SongFields.h"
#include "finders/CatalogueSearch.h"
#include "finders/ResultRows.h"
#include "util/Utf8.h"

namespace jk {
namespace {

struct Scope {
    std::size_t FirstVolume = 0;
    std::size_t EndVolume = 0;
    std::string_view Folder;  // "" for every volume
};

bool InScope(const Scope& scope, const SongFieldViews& fields) {
    return scope.Folder.empty() || InVirtualFolder(scope.Folder, fields[kKeyPath - 1]);
}

// Whether the scope holds any record at all: a search of an empty scope cannot fail.
bool ScopeHasRecords(const CatalogueView& catalogue, const Scope& scope) {
    for (std::size_t v = scope.FirstVolume; v < scope.EndVolume; ++v) {
        for (std::size_t i = 0; i < catalogue.SongCount(v); ++i) {
            if (InScope(scope, catalogue.Fields(v, i))) {
                return true;
            }
        }
    }
    return false;
}

}  // namespace

IndexedSearch::IndexedSearch(const SearchIndex& index, const CatalogueView& catalogue,
                             const SearchRequest& request, std::string_view lookIn)
    : m_index(index), m_catalogue(catalogue), m_request(request), m_folder(lookIn) {
    Scope scope{0, catalogue.VolumeCount(), m_folder};
    if (!lookIn.empty()) {
        scope.FirstVolume = VolumeOfLookIn(catalogue, lookIn);
        scope.EndVolume =
            scope.FirstVolume < catalogue.VolumeCount() ? scope.FirstVolume + 1 : scope.FirstVolume;
    }
    m_volume = scope.FirstVolume;
    m_start = index.VolumeStart(scope.FirstVolume);
    m_next = m_start;
    m_stop = index.VolumeStart(scope.EndVolume);
    if (request.SizeDate.AlwaysFails()) {
        if (ScopeHasRecords(catalogue, scope)) {
            m_end = SearchEnd::Failed;
        }
        m_next = m_stop;
        return;
    }
    const TextQuery& query = request.Query;
    // A binary query is looked for among the songs that hold it ignoring case; that holds for
    // any query of whole characters. Bytes that are no characters are tested song by song.
    m_everySong = query.Binary() && !IsValidUtf8(query.Text());
    m_verify = query.Binary();
    if (!m_everySong) {
        m_query = index.Prepare(query.Binary() ? FoldedText(query.Text()) : query.Folded(),
                                request.Fields);
    }
}

void IndexedSearch::Next(std::size_t songs, std::vector<SongRef>& found) {
    if (Done()) {
        return;
    }
    // Ranges begin on a block of 64, the first song of the range perhaps inside it.
    const std::size_t block = m_next / 64 * 64;
    const std::size_t span = std::clamp<std::size_t>(songs, 1, m_stop - m_next);
    const std::size_t to = std::min(m_stop, (m_next + span + 63) / 64 * 64);
    SegmentBits hits;
    if (!m_everySong) {
        hits = m_index.FindRange(m_query, block, to);
    }
    // Nothing left to test song by song: the found songs are the set bits, read a word at a time
    // without looking at the records.
    const bool bitsOnly =
        !m_everySong && !m_verify && m_folder.empty() && !m_request.SizeDate.Active();
    for (; m_next < to; ++m_volume) {
        const std::size_t base = m_index.VolumeStart(m_volume);
        const std::size_t end = std::min(to, m_index.VolumeStart(m_volume + 1));
        const auto v = static_cast<std::uint32_t>(m_volume);
        if (bitsOnly) {
            const std::vector<std::uint64_t>& words = hits.WordList();
            for (std::size_t w = (m_next - block) >> 6; w < words.size(); ++w) {
                std::uint64_t word = words[w];
                const std::size_t first = block + (w << 6);
                if (first < m_next) {
                    word &= ~std::uint64_t{0} << (m_next - first);
                }
                if (first >= end) {
                    break;
                }
                while (word != 0) {
                    const std::size_t song =
                        first + static_cast<std::size_t>(std::countr_zero(word));
                    if (song >= end) {
                        break;
                    }
                    found.push_back(SongRef{v, static_cast<std::uint32_t>(song - base)});
                    word &= word - 1;
                }
            }
        } else {
            const Scope scope{m_volume, m_volume + 1, m_folder};
            const TextQuery& query = m_request.Query;
            for (std::size_t song = m_everySong ? m_next : block + hits.Next(m_next - block);
                 song < end; song = m_everySong ? song + 1 : block + hits.Next(song + 1 - block)) {
                const std::size_t i = song - base;
                const SongFieldViews fields = m_catalogue.Fields(m_volume, i);
                const bool wanted =
                    InScope(scope, fields) &&
                    (!m_verify ||
                     TextTest([&fields](SearchField f) { return SearchFieldOf(fields, f); },
                              m_request.Fields, query)) &&
                    (!m_request.SizeDate.Active() ||
                     m_request.SizeDate.Match(fields[kKeySize - 1], fields[kKeyDate - 1]) ==
                         Verdict::Match);
                if (wanted) {
                    found.push_back(SongRef{v, static_cast<std::uint32_t>(i)});
                }
            }
        }
        m_next = end;
        if (end < m_index.VolumeStart(m_volume + 1)) {
            break;  // the range ends inside this volume
        }
    }
}

IndexedResult FindIndexed(const SearchIndex& index, const CatalogueView& catalogue,
                          const SearchRequest& request, std::string_view lookIn) {
    IndexedSearch search(index, catalogue, request, lookIn);
    IndexedResult result;
    while (!search.Done()) {
        search.Next(search.SongsInScope(), result.Songs);
    }
    result.End = search.End();
    return result;
}

void AppendCatalogueRows(const CatalogueView& catalogue, const std::vector<SongRef>& songs,
                         std::size_t from, std::size_t to, RowList& rows) {
    for (std::size_t k = from; k < to && k < songs.size(); ++k) {
        rows.push_back(CatalogueHitRow(catalogue.Fields(songs[k].Volume, songs[k].Song)));
    }
}

}  // namespace jk
