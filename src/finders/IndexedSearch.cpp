#include "finders/IndexedSearch.h"

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

void AppendEverySetBit(const SearchIndex& index, const SegmentBits& hits, const Scope& scope,
                       std::vector<SongRef>& songs) {
    songs.reserve(hits.Count());
    const std::vector<std::uint64_t>& words = hits.WordList();
    for (std::size_t v = scope.FirstVolume; v < scope.EndVolume; ++v) {
        const std::size_t base = index.VolumeStart(v);
        const std::size_t end = index.VolumeStart(v + 1);
        for (std::size_t w = base >> 6; w < words.size() && (w << 6) < end; ++w) {
            std::uint64_t word = words[w];
            if ((w << 6) < base) {
                word &= ~std::uint64_t{0} << (base & 63);
            }
            while (word != 0) {
                const std::size_t song =
                    (w << 6) + static_cast<std::size_t>(std::countr_zero(word));
                if (song >= end) {
                    break;
                }
                songs.push_back(SongRef{static_cast<std::uint32_t>(v),
                                        static_cast<std::uint32_t>(song - base)});
                word &= word - 1;
            }
        }
    }
}

}  // namespace

IndexedResult FindIndexed(const SearchIndex& index, const CatalogueView& catalogue,
                          const SearchRequest& request, std::string_view lookIn) {
    IndexedResult result;
    Scope scope{0, catalogue.VolumeCount(), lookIn};
    if (!lookIn.empty()) {
        scope.FirstVolume = VolumeOfLookIn(catalogue, lookIn);
        scope.EndVolume =
            scope.FirstVolume < catalogue.VolumeCount() ? scope.FirstVolume + 1 : scope.FirstVolume;
    }
    if (request.SizeDate.AlwaysFails()) {
        if (ScopeHasRecords(catalogue, scope)) {
            result.End = SearchEnd::Failed;
        }
        return result;
    }

    const TextQuery& query = request.Query;
    // A binary query is looked for among the songs that hold it ignoring case; that holds for
    // any query of whole characters. Bytes that are no characters are tested song by song.
    const bool everySong = query.Binary() && !IsValidUtf8(query.Text());
    const bool verify = query.Binary();
    SegmentBits hits;
    if (!everySong) {
        hits =
            index.Find(query.Binary() ? FoldedText(query.Text()) : query.Folded(), request.Fields);
    }
    if (!everySong && !verify && scope.Folder.empty() && !request.SizeDate.Active()) {
        // Nothing left to test song by song: the found songs are the set bits, read a word
        // at a time without looking at the records.
        AppendEverySetBit(index, hits, scope, result.Songs);
        return result;
    }
    for (std::size_t v = scope.FirstVolume; v < scope.EndVolume; ++v) {
        const std::size_t base = index.VolumeStart(v);
        const std::size_t end = index.VolumeStart(v + 1);
        std::size_t song = everySong ? base : hits.Next(base);
        while (song < end) {
            const std::size_t i = song - base;
            const SongFieldViews fields = catalogue.Fields(v, i);
            const bool wanted =
                InScope(scope, fields) &&
                (!verify || TextTest([&fields](SearchField f) { return SearchFieldOf(fields, f); },
                                     request.Fields, query)) &&
                (!request.SizeDate.Active() ||
                 request.SizeDate.Match(fields[kKeySize - 1], fields[kKeyDate - 1]) ==
                     Verdict::Match);
            if (wanted) {
                result.Songs.push_back(
                    SongRef{static_cast<std::uint32_t>(v), static_cast<std::uint32_t>(i)});
            }
            song = everySong ? song + 1 : hits.Next(song + 1);
        }
    }
    return result;
}

void AppendCatalogueRows(const CatalogueView& catalogue, const std::vector<SongRef>& songs,
                         std::size_t from, std::size_t to, RowList& rows) {
    for (std::size_t k = from; k < to && k < songs.size(); ++k) {
        rows.push_back(CatalogueHitRow(catalogue.Fields(songs[k].Volume, songs[k].Song)));
    }
}

}  // namespace jk
