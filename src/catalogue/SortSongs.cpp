#include "catalogue/SortSongs.h"

#include <string>
#include <utility>

#include "catalogue/SongCache.h"

namespace jk {
namespace {

// The pivot's text must outlive swaps: a SongInfo's text moves when swapped (short strings live
// inside the record), a PackedSong's block never does.
std::string PivotOf(const SongInfo& song, int key) {
    return SongField(song, key);
}
std::string_view PivotOf(const PackedSong& song, int key) {
    return song.Field(key);
}

std::string_view FieldOf(const SongInfo& song, int key) {
    return SongField(song, key);
}
std::string_view FieldOf(const PackedSong& song, int key) {
    return song.Field(key);
}

// Hoare's partition around the middle element, ranges inclusive. The two parts it leaves are
// independent, so sorting the smaller one first (and looping on the larger) gives the order of
// the plain recursion with a stack of logarithmic depth.
template <class Record>
void QuickSort(std::span<Record> records, int key, std::ptrdiff_t low, std::ptrdiff_t high) {
    using std::swap;
    while (low < high) {
        const auto pivot = PivotOf(records[static_cast<std::size_t>((low + high) / 2)], key);
        const std::string_view pivotText = pivot;
        std::ptrdiff_t i = low;
        std::ptrdiff_t j = high;
        while (i <= j) {
            while (FieldOf(records[static_cast<std::size_t>(i)], key) < pivotText) {
                ++i;
            }
            while (pivotText < FieldOf(records[static_cast<std::size_t>(j)], key)) {
                --j;
            }
            if (i <= j) {
                swap(records[static_cast<std::size_t>(i)], records[static_cast<std::size_t>(j)]);
                ++i;
                --j;
            }
        }
        if (j - low < high - i) {
            QuickSort(records, key, low, j);
            low = i;
        } else {
            QuickSort(records, key, i, high);
            high = j;
        }
    }
}

template <class Record>
void SortRecords(int key, std::span<Record> records) {
    if (IsSongKey(key) && records.size() > 1) {
        QuickSort(records, key, 0, static_cast<std::ptrdiff_t>(records.size()) - 1);
    }
}

}  // namespace

void SortSongs(int key, std::span<SongInfo> songs) {
    SortRecords(key, songs);
}

void SortSongs(int key, std::span<PackedSong> songs) {
    SortRecords(key, songs);
}

void SortSongs(int key, SongCache& cache) {
    if (!IsSongKey(key) || cache.UpperBound() < 2) {
        return;
    }
    std::vector<PackedSong> records = cache.TakeAll();
    SortRecords(key, std::span<PackedSong>(records));
    cache.Assign(std::move(records));
}

}  // namespace jk
