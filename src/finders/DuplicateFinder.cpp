#include "finders/DuplicateFinder.h"

#include <algorithm>
#include <utility>

#include "catalogue/SongFields.h"
#include "finders/TextTest.h"
#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {
namespace {

constexpr std::size_t kProgressEvery = 4096;

std::string_view NameOf(std::string_view path) {
    const std::size_t sep = path.find_last_of("/\\");
    return sep == std::string_view::npos ? path : path.substr(sep + 1);
}

// A text key's first eight bytes as one number (zero-padded, the first byte highest): two keys
// whose numbers differ order as these do, so most comparisons of the sort read no text at all.
std::uint64_t HeadOf(std::string_view key) {
    std::uint64_t head = 0;
    const std::size_t n = std::min<std::size_t>(8, key.size());
    for (std::size_t i = 0; i < n; ++i) {
        head |= static_cast<std::uint64_t>(static_cast<unsigned char>(key[i])) << (56 - 8 * i);
    }
    return head;
}

// The keys of every record, computed once: the comparisons then run on folded bytes (which
// order as the case-folded compare of characters does) or on numbers, never folding again.
struct Keys {
    struct Text {
        std::uint64_t head = 0;
        std::size_t begin = 0;
        std::size_t length = 0;
    };
    std::string sortText;
    std::vector<Text> sortKeys;
    std::vector<double> sortNumbers;
    std::string groupText;  // empty when the group key is the sort key
    std::vector<Text> groupKeys;
    bool numeric = false;

    std::string_view Group(std::size_t i) const {
        const Text& key = groupKeys[i];
        return std::string_view(groupText.empty() ? sortText : groupText)
            .substr(key.begin, key.length);
    }
    bool Less(std::uint32_t a, std::uint32_t b) const {
        if (numeric) {
            return sortNumbers[a] < sortNumbers[b];
        }
        const Text& x = sortKeys[a];
        const Text& y = sortKeys[b];
        if (x.head != y.head) {
            return x.head < y.head;
        }
        if (x.length <= 8 || y.length <= 8) {
            return x.length < y.length;
        }
        const std::string_view whole(sortText);
        return whole.substr(x.begin + 8, x.length - 8) < whole.substr(y.begin + 8, y.length - 8);
    }
};

// Folds `key` onto the end of `text` and notes where it stands.
Keys::Text AppendKey(std::string& text, std::string_view key) {
    Keys::Text out;
    out.begin = text.size();
    AppendFolded(text, key);
    out.length = text.size() - out.begin;
    out.head = HeadOf(std::string_view(text).substr(out.begin));
    return out;
}

Keys KeysOf(const std::vector<DupeRecord>& records, int criterion) {
    Keys keys;
    keys.numeric = kDupeCriteria[static_cast<std::size_t>(criterion)].SortColumn == 10;
    // Titles, artists and albums group by the very key they sort by: folded once.
    const bool shared = !keys.numeric && criterion != 4;
    keys.groupKeys.reserve(records.size());
    if (keys.numeric) {
        keys.sortNumbers.reserve(records.size());
    } else {
        keys.sortKeys.reserve(records.size());
    }
    for (const DupeRecord& record : records) {
        if (keys.numeric) {
            keys.sortNumbers.push_back(Val(SortKey(record.Row, criterion)));
        } else {
            keys.sortKeys.push_back(AppendKey(keys.sortText, SortKey(record.Row, criterion)));
        }
        keys.groupKeys.push_back(shared
                                     ? keys.sortKeys.back()
                                     : AppendKey(keys.groupText, GroupKey(record.Row, criterion)));
    }
    return keys;
}

// The sort itself on precomputed keys. The two halves of a partition are sorted one after the
// other from a list rather than by recursion, so no input can run the stack out; each half's
// order depends on its own elements alone, so the permutation is that of the recursive sort.
void SortOrder(std::vector<std::uint32_t>& order, std::size_t left, std::size_t right,
               const Keys& keys) {
    const auto less = [&keys](std::uint32_t a, std::uint32_t b) { return keys.Less(a, b); };
    std::vector<std::pair<std::size_t, std::size_t>> pending{{left, right}};
    while (!pending.empty()) {
        const auto [L, R] = pending.back();
        pending.pop_back();
        if (R <= L) {
            continue;
        }
        // Indices are signed here: j may step below L.
        auto i = static_cast<std::ptrdiff_t>(L);
        auto j = static_cast<std::ptrdiff_t>(R);
        const auto l = static_cast<std::ptrdiff_t>(L);
        const auto r = static_cast<std::ptrdiff_t>(R);
        const std::uint32_t pivot = order[(L + R) / 2];
        while (j >= i) {
            while (i < r && less(order[static_cast<std::size_t>(i)], pivot)) {
                ++i;
            }
            while (j > l && less(pivot, order[static_cast<std::size_t>(j)])) {
                --j;
            }
            if (i <= j) {
                std::swap(order[static_cast<std::size_t>(i)], order[static_cast<std::size_t>(j)]);
                ++i;
                --j;
            }
        }
        if (l < j) {
            pending.emplace_back(L, static_cast<std::size_t>(j));
        }
        if (i < r) {
            pending.emplace_back(static_cast<std::size_t>(i), R);
        }
    }
}

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
    records.reserve(records.size() + total);
    std::size_t done = 0;
    for (std::size_t v = 0; v < catalogue.VolumeCount(); ++v) {
        for (std::size_t i = 0; i < catalogue.SongCount(v); ++i) {
            const SongFieldViews f = catalogue.Fields(v, i);
            const auto key = [&f](int k) { return f[static_cast<std::size_t>(k - 1)]; };
            records.push_back(DupeRecord{
                ListRow({key(kKeyTitle), key(kKeyArtist), key(kKeyAlbum), key(kKeyYear),
                         key(kKeyGenre), key(kKeyTime), key(kKeyBitrate), key(kKeyPath),
                         key(kKeyComment), key(kKeySize), key(kKeyDate), key(kKeyVolume)}),
                kSourceVirtual, kSourceVirtual});
            ++done;
            if (progress && done % kProgressEvery == 0) {
                progress(done, total);
            }
        }
    }
    if (progress) {
        progress(done, total);
    }
}

bool Less(std::string_view a, std::string_view b, bool numeric) {
    if (numeric) {
        return Val(a) < Val(b);
    }
    return CompareNoCase(a, b) < 0;
}

std::string_view SortKey(const ListRow& row, int criterion) {
    switch (criterion) {
        case 0:
            return row.Get(Column::Title);
        case 1:
            return row.Get(Column::Artist);
        case 2:
            return row.Get(Column::Album);
        case 3:
            return row.Get(Column::Size);
        case 4:
            return NameOf(row.Get(Column::Filename));
        default:
            return {};
    }
}

std::string_view GroupKey(const ListRow& row, int criterion) {
    return criterion == 4 ? row.Get(Column::Filename) : SortKey(row, criterion);
}

void QuickSortDuplicates(std::vector<std::uint32_t>& order, std::size_t L, std::size_t R,
                         const std::vector<DupeRecord>& records, int criterion) {
    if (order.empty() || R >= order.size()) {
        return;
    }
    SortOrder(order, L, R, KeysOf(records, criterion));
}

std::vector<DupeListed> GroupDuplicates(std::vector<DupeRecord>& records, int criterion,
                                        std::int16_t showBit, std::size_t firstGroup,
                                        const DupeProgress& progress) {
    std::vector<DupeListed> listed;
    if (records.empty() || criterion < 0 || criterion >= static_cast<int>(kDupeCriteria.size())) {
        return listed;
    }
    const std::size_t n = records.size();
    const Keys keys = KeysOf(records, criterion);
    std::vector<std::uint32_t> order(n);
    for (std::size_t k = 0; k < n; ++k) {
        order[k] = static_cast<std::uint32_t>(k);
    }
    SortOrder(order, 0, n - 1, keys);

    std::size_t group = firstGroup;
    std::size_t i = 0;
    while (i < n) {
        const std::string_view key = keys.Group(order[i]);
        std::size_t j = i + 1;
        if (!key.empty()) {
            // FindRunEnd: up to the first record whose key differs, or past the last.
            while (j < n && keys.Group(order[j]) == key) {
                ++j;
                if (progress && j % kProgressEvery == 0) {
                    progress(j, n);
                }
            }
        }
        if (j - i >= 2) {
            std::int16_t sources = 0;
            for (std::size_t k = i; k < j; ++k) {
                sources = static_cast<std::int16_t>(sources | records[order[k]].Reserved);
            }
            for (std::size_t k = i; k < j; ++k) {
                DupeRecord& member = records[order[k]];
                member.Reserved = sources;
                // AddDuplicateRow: a whole group shows when one member has the bit.
                if ((sources & showBit) != 0) {
                    listed.push_back(DupeListed{DupeRow(member.Row), group, member.Source});
                }
            }
            if ((sources & showBit) != 0) {
                ++group;
            }
            // The record right behind a group never starts one.
            i = j + 1;
        } else {
            i = i + 1;
        }
        if (progress && i % kProgressEvery == 0) {
            progress(std::min(i, n), n);
        }
    }
    if (progress) {
        progress(n, n);
    }
    return listed;
}

ListRow DupeRow(const ListRow& record) {
    std::array<std::string_view, kColumnCount> columns = record.All();
    const std::string_view title = Trim(columns[static_cast<std::size_t>(Column::Title)]);
    columns[static_cast<std::size_t>(Column::Title)] =
        title.empty() ? NameOf(record.Get(Column::Filename)) : title;
    return ListRow(columns);
}

}  // namespace jk
