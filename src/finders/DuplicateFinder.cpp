#include "finders/DuplicateFinder.h"

#include <algorithm>
#include <utility>

#include "catalogue/SongFields.h"
#include "finders/DuplicateSort.h"
#include "util/InParts.h"
#include "util/PathHelpers.h"
#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {
namespace {

constexpr std::size_t kProgressEvery = 4096;

}  // namespace

std::int16_t ShowBit(int showIndex) {
    switch (showIndex) {
        case 0:
            return kSourceFolder;
        case 1:
            return kSourcePlaylist;
        case 2:
            return kSourceVirtual;
        default:
            return 0;
    }
}

void LoadRowsSource(const RowList& rows, std::int16_t source, std::vector<DupeRecord>& records,
                    const DupeProgress& progress) {
    records.reserve(records.size() + rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        ListRow row = rows[i];
        row.SetSelected(false);
        records.push_back(DupeRecord{std::move(row), source, source});
        if (progress && ((i + 1) % kProgressEvery == 0 || i + 1 == rows.size())) {
            progress(i + 1, rows.size());
        }
    }
}

void LoadVirtualSource(const CatalogueView& catalogue, std::vector<DupeRecord>& records,
                       const DupeProgress& progress) {
    const std::size_t total = catalogue.TotalSongs();
    const std::size_t base = records.size();
    records.resize(base + total);
    // Where each volume's songs begin among all of them.
    std::vector<std::size_t> starts{0};
    starts.reserve(catalogue.VolumeCount() + 1);
    for (std::size_t v = 0; v < catalogue.VolumeCount(); ++v) {
        starts.push_back(starts.back() + catalogue.SongCount(v));
    }
    const DupeSortThreads threads;
    const unsigned parts = total >= threads.parallelFrom ? threads.threads : 1;
    // The slices are copied on threads of their own; the first, on this thread, tells the
    // progress for all.
    InParts(total, parts, [&](std::size_t begin, std::size_t end, unsigned part) {
        auto v = static_cast<std::size_t>(std::upper_bound(starts.begin(), starts.end(), begin) -
                                          starts.begin() - 1);
        for (std::size_t song = begin; song < end; ++song) {
            while (song >= starts[v + 1]) {
                ++v;
            }
            const SongFieldViews f = catalogue.Fields(v, song - starts[v]);
            const auto key = [&f](int k) { return f[static_cast<std::size_t>(k - 1)]; };
            records[base + song] = DupeRecord{
                ListRow({key(kKeyTitle), key(kKeyArtist), key(kKeyAlbum), key(kKeyYear),
                         key(kKeyGenre), key(kKeyTime), key(kKeyBitrate), key(kKeyPath),
                         key(kKeyComment), key(kKeySize), key(kKeyDate), key(kKeyVolume)}),
                kSourceVirtual, kSourceVirtual};
            const std::size_t done = song + 1 - begin;
            if (part == 0 && progress && done % kProgressEvery == 0) {
                progress(std::min(total, done * parts), total);
            }
        }
    });
    if (progress) {
        progress(total, total);
    }
}

bool Less(std::string_view a, std::string_view b, bool numeric) {
    if (numeric) {
        return Val(a) < Val(b);
    }
    return CompareNoCase(a, b) < 0;
}

Column DupeKeyColumn(int criterion) {
    switch (criterion) {
        case 0:
            return Column::Title;
        case 1:
            return Column::Artist;
        case 2:
            return Column::Album;
        case 3:
            return Column::Size;
        case 4:
            return Column::Filename;
        default:
            return Column::Count;
    }
}

std::string_view SortKeyOf(std::string_view column, int criterion) {
    return criterion == 4 ? CataloguedBareName(column) : column;
}

std::string_view SortKey(const ListRow& row, int criterion) {
    return SortKeyOf(row.Get(DupeKeyColumn(criterion)), criterion);
}

std::string_view GroupKey(const ListRow& row, int criterion) {
    return row.Get(DupeKeyColumn(criterion));
}

void QuickSortDuplicates(std::vector<std::uint32_t>& order, std::size_t L, std::size_t R,
                         const std::vector<DupeRecord>& records, int criterion) {
    if (order.empty() || R >= order.size()) {
        return;
    }
    SortDupeOrder(order, L, R, DupeKeysOf(records, criterion));
}

std::vector<DupeMember> GroupDuplicateMembers(const std::vector<std::string_view>& column,
                                              std::vector<std::int16_t>& reserved, int criterion,
                                              std::int16_t showBit, std::size_t firstGroup) {
    std::vector<DupeMember> members;
    const std::size_t n = column.size();
    if (n == 0 || reserved.size() != n || criterion < 0 ||
        criterion >= static_cast<int>(kDupeCriteria.size())) {
        return members;
    }
    const DupeSortKeys keys = DupeKeysOf(column, criterion);
    std::vector<std::uint32_t> order(n);
    for (std::size_t k = 0; k < n; ++k) {
        order[k] = static_cast<std::uint32_t>(k);
    }
    SortDupeOrder(order, 0, n - 1, keys);

    std::size_t group = firstGroup;
    std::size_t i = 0;
    while (i < n) {
        const std::uint32_t key = keys.groups[order[i]];
        std::size_t j = i + 1;
        if (key != kNoGroup) {
            // FindRunEnd: up to the first record whose key differs, or past the last.
            while (j < n && keys.groups[order[j]] == key) {
                ++j;
            }
        }
        if (j - i >= 2) {
            std::int16_t sources = 0;
            for (std::size_t k = i; k < j; ++k) {
                sources = static_cast<std::int16_t>(sources | reserved[order[k]]);
            }
            for (std::size_t k = i; k < j; ++k) {
                reserved[order[k]] = sources;
            }
            // AddDuplicateRow: a whole group shows when one member has the bit.
            if ((sources & showBit) != 0) {
                for (std::size_t k = i; k < j; ++k) {
                    members.push_back(DupeMember{order[k], group});
                }
                ++group;
            }
            // The record right behind a group never starts one.
            i = j + 1;
        } else {
            i = i + 1;
        }
    }
    return members;
}

std::vector<DupeListed> GroupDuplicates(std::vector<DupeRecord>& records, int criterion,
                                        std::int16_t showBit, std::size_t firstGroup,
                                        const DupeProgress& progress) {
    std::vector<DupeListed> listed;
    if (records.empty() || criterion < 0 || criterion >= static_cast<int>(kDupeCriteria.size())) {
        return listed;
    }
    const std::size_t n = records.size();
    const Column keyColumn = DupeKeyColumn(criterion);
    std::vector<std::string_view> column(n);
    std::vector<std::int16_t> reserved(n);
    for (std::size_t k = 0; k < n; ++k) {
        column[k] = records[k].Row.Get(keyColumn);
        reserved[k] = records[k].Reserved;
    }
    const std::vector<DupeMember> members =
        GroupDuplicateMembers(column, reserved, criterion, showBit, firstGroup);
    for (std::size_t k = 0; k < n; ++k) {
        records[k].Reserved = reserved[k];
    }
    // Room made once: the rows are moved in where they are first written, a million of them
    // touching fresh memory but once.
    listed.reserve(members.size());
    for (const DupeMember& m : members) {
        DupeRecord& member = records[m.Record];
        listed.push_back(DupeListed{DupeRow(std::move(member.Row)), m.Group, member.Source});
        if (progress && listed.size() % kProgressEvery == 0) {
            progress(listed.size() * n / members.size(), n);
        }
    }
    if (progress) {
        progress(n, n);
    }
    return listed;
}

ListRow DupeRow(ListRow record) {
    const std::string_view title = record.Get(Column::Title);
    const std::string_view trimmed = Trim(title);
    if (trimmed.empty()) {
        const std::string name(CataloguedBareName(record.Get(Column::Filename)));
        record.Set(Column::Title, name);
    } else if (trimmed.size() != title.size()) {
        const std::string kept(trimmed);
        record.Set(Column::Title, kept);
    }
    record.SetSelected(false);
    return record;
}

}  // namespace jk
