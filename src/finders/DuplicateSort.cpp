#include "finders/DuplicateSort.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

#include "finders/TextTest.h"
#include "util/InParts.h"
#include "util/Text.h"

namespace jk {
namespace {

unsigned PartsFor(std::size_t n, const DupeSortThreads& threads) {
    return n >= threads.parallelFrom ? std::max(1u, threads.threads) : 1u;
}

// A key folded into the shared text, and the hash of its folded bytes.
struct Span {
    std::uint64_t hash = 0;
    std::size_t begin = 0;
    std::size_t length = 0;
};

struct Folded {
    std::string text;
    std::vector<Span> spans;

    std::string_view View(std::size_t i) const {
        return std::string_view(text).substr(spans[i].begin, spans[i].length);
    }
};

std::uint64_t Mix(std::uint64_t h) {
    h ^= h >> 33;
    h *= 0xff51afd7ed558ccdULL;
    h ^= h >> 33;
    h *= 0xc4ceb9fe1a85ec53ULL;
    h ^= h >> 33;
    return h;
}

std::uint64_t HashOf(std::string_view bytes, std::uint64_t seed) {
    std::uint64_t h = seed ^ (bytes.size() * 0x9E3779B97F4A7C15ULL);
    std::size_t pos = 0;
    for (; pos + 8 <= bytes.size(); pos += 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes.data() + pos, 8);
        h = Mix(h ^ word);
    }
    std::uint64_t tail = 0;
    std::memcpy(&tail, bytes.data() + pos, bytes.size() - pos);
    return Mix(h ^ tail);
}

// A seed of each run's own, so that no crafted set of tags makes the table's probes long.
std::uint64_t HashSeed() {
    static const std::uint64_t seed = Mix(
        static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count()));
    return seed;
}

// Each record's key folded, on several threads: each slice into a text of its own, joined
// behind one another afterwards.
template <typename KeyOf>
Folded FoldAll(std::size_t n, const KeyOf& keyOf, const DupeSortThreads& threads) {
    Folded folded;
    folded.spans.resize(n);
    const unsigned parts = PartsFor(n, threads);
    std::vector<std::string> texts(parts);
    const std::uint64_t seed = HashSeed();
    InParts(n, parts, [&](std::size_t begin, std::size_t end, unsigned part) {
        std::string& text = texts[part];
        for (std::size_t i = begin; i < end; ++i) {
            Span& span = folded.spans[i];
            span.begin = text.size();
            AppendFolded(text, keyOf(i));
            span.length = text.size() - span.begin;
            span.hash = HashOf(std::string_view(text).substr(span.begin), seed);
        }
    });
    std::size_t total = 0;
    for (const std::string& text : texts) {
        total += text.size();
    }
    folded.text.reserve(total);
    for (unsigned part = 0; part < parts; ++part) {
        const std::size_t offset = folded.text.size();
        folded.text += texts[part];
        for (std::size_t i = n * part / parts; i < n * (part + 1) / parts; ++i) {
            folded.spans[i].begin += offset;
        }
    }
    return folded;
}

// Each record's key numbered in order of first sight: equal numbers, equal folded keys.
// `firsts` receives the record that first showed each number.
std::vector<std::uint32_t> Distinct(const Folded& folded, std::vector<std::uint32_t>& firsts) {
    const std::size_t n = folded.spans.size();
    std::size_t size = 16;
    while (size < 2 * n) {
        size *= 2;
    }
    const std::size_t mask = size - 1;
    std::vector<std::uint32_t> table(size, 0);  // a number + 1; 0 is a free slot
    std::vector<std::uint32_t> ids(n);
    firsts.clear();
    for (std::size_t i = 0; i < n; ++i) {
        const std::uint64_t hash = folded.spans[i].hash;
        std::size_t slot = static_cast<std::size_t>(hash) & mask;
        while (true) {
            const std::uint32_t entry = table[slot];
            if (entry == 0) {
                firsts.push_back(static_cast<std::uint32_t>(i));
                table[slot] = static_cast<std::uint32_t>(firsts.size());
                ids[i] = static_cast<std::uint32_t>(firsts.size() - 1);
                break;
            }
            const std::uint32_t first = firsts[entry - 1];
            if (folded.spans[first].hash == hash && folded.View(first) == folded.View(i)) {
                ids[i] = entry - 1;
                break;
            }
            slot = (slot + 1) & mask;
        }
    }
    return ids;
}

// A folded key's first eight bytes as one number (zero-padded, the first byte highest): two
// keys whose numbers differ order as these do.
std::uint64_t HeadOf(std::string_view key) {
    std::uint64_t head = 0;
    const std::size_t n = std::min<std::size_t>(8, key.size());
    for (std::size_t i = 0; i < n; ++i) {
        head |= static_cast<std::uint64_t>(static_cast<unsigned char>(key[i])) << (56 - 8 * i);
    }
    return head;
}

// The rank of each distinct key among them all. Folded bytes order as the case-folded
// characters do, so the ranks order as the keys compared ignoring case.
std::vector<std::uint32_t> RanksOf(const Folded& folded, const std::vector<std::uint32_t>& firsts) {
    struct Entry {
        std::uint64_t head;
        std::uint32_t id;
    };
    std::vector<Entry> entries(firsts.size());
    for (std::size_t id = 0; id < firsts.size(); ++id) {
        entries[id] = Entry{HeadOf(folded.View(firsts[id])), static_cast<std::uint32_t>(id)};
    }
    std::sort(entries.begin(), entries.end(), [&](const Entry& a, const Entry& b) {
        if (a.head != b.head) {
            return a.head < b.head;
        }
        return folded.View(firsts[a.id]) < folded.View(firsts[b.id]);
    });
    std::vector<std::uint32_t> ranks(firsts.size());
    for (std::size_t rank = 0; rank < entries.size(); ++rank) {
        ranks[entries[rank].id] = static_cast<std::uint32_t>(rank);
    }
    return ranks;
}

// Group ids from distinct numbers: an empty key stands in no group.
std::vector<std::uint32_t> GroupsOf(const Folded& folded, std::vector<std::uint32_t> ids) {
    for (std::size_t i = 0; i < ids.size(); ++i) {
        if (folded.spans[i].length == 0) {
            ids[i] = kNoGroup;
        }
    }
    return ids;
}

// Threads that may still be started for the parts of the sort.
class Spare {
public:
    explicit Spare(unsigned count) : m_count(static_cast<int>(count)) {}
    bool Take() {
        int count = m_count.load();
        while (count > 0) {
            if (m_count.compare_exchange_weak(count, count - 1)) {
                return true;
            }
        }
        return false;
    }
    void Give() { m_count.fetch_add(1); }

private:
    std::atomic<int> m_count;
};

template <typename Key>
struct Slot {
    Key key;
    std::uint32_t record;
};

// The finder's partition sort of a[left..right]: the middle element's key as pivot, the scans
// stopping at the part's ends. The parts are sorted from a list rather than by recursion, so no
// input runs the stack out; a large part may go to another thread. Each part's order depends on
// its own elements alone, so the permutation is that of the recursive sort.
template <typename Key>
void SortPart(std::vector<Slot<Key>>& a, std::size_t left, std::size_t right,
              std::size_t parallelFrom, Spare& spare) {
    std::vector<std::thread> helpers;
    std::vector<std::pair<std::size_t, std::size_t>> pending{{left, right}};
    const auto hand = [&](std::size_t L, std::size_t R) {
        if (R - L + 1 >= parallelFrom && spare.Take()) {
            try {
                helpers.emplace_back([&a, L, R, parallelFrom, &spare] {
                    SortPart(a, L, R, parallelFrom, spare);
                    spare.Give();
                });
                return;
            } catch (const std::system_error&) {
                spare.Give();
            }
        }
        pending.emplace_back(L, R);
    };
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
        const Key pivot = a[(L + R) / 2].key;
        while (j >= i) {
            while (i < r && a[static_cast<std::size_t>(i)].key < pivot) {
                ++i;
            }
            while (j > l && pivot < a[static_cast<std::size_t>(j)].key) {
                --j;
            }
            if (i <= j) {
                std::swap(a[static_cast<std::size_t>(i)], a[static_cast<std::size_t>(j)]);
                ++i;
                --j;
            }
        }
        if (l < j) {
            hand(L, static_cast<std::size_t>(j));
        }
        if (i < r) {
            hand(static_cast<std::size_t>(i), R);
        }
    }
    for (std::thread& helper : helpers) {
        helper.join();
    }
}

template <typename Key>
void SortBy(std::vector<std::uint32_t>& order, std::size_t L, std::size_t R,
            const std::vector<Key>& keys, const DupeSortThreads& threads) {
    std::vector<Slot<Key>> slots;
    slots.reserve(R - L + 1);
    for (std::size_t k = L; k <= R; ++k) {
        slots.push_back(Slot<Key>{keys[order[k]], order[k]});
    }
    Spare spare(std::max(1u, threads.threads) - 1);
    SortPart(slots, 0, slots.size() - 1, std::max<std::size_t>(2, threads.parallelFrom), spare);
    for (std::size_t k = L; k <= R; ++k) {
        order[k] = slots[k - L].record;
    }
}

}  // namespace

unsigned DefaultDupeThreads() {
    return std::clamp(std::thread::hardware_concurrency(), 1u, 4u);
}

DupeSortKeys DupeKeysOf(const std::vector<DupeRecord>& records, int criterion,
                        const DupeSortThreads& threads) {
    if (criterion < 0 || criterion >= static_cast<int>(kDupeCriteria.size())) {
        return DupeSortKeys{};
    }
    const Column column = DupeKeyColumn(criterion);
    std::vector<std::string_view> keys(records.size());
    for (std::size_t i = 0; i < records.size(); ++i) {
        keys[i] = records[i].Row.Get(column);
    }
    return DupeKeysOf(keys, criterion, threads);
}

DupeSortKeys DupeKeysOf(const std::vector<std::string_view>& column, int criterion,
                        const DupeSortThreads& threads) {
    DupeSortKeys keys;
    if (criterion < 0 || criterion >= static_cast<int>(kDupeCriteria.size())) {
        return keys;
    }
    const bool numeric = kDupeCriteria[static_cast<std::size_t>(criterion)].SortColumn == 10;
    const auto sortKey = [&column, criterion](std::size_t i) {
        return SortKeyOf(column[i], criterion);
    };
    const auto groupKey = [&column](std::size_t i) { return column[i]; };
    const std::size_t n = column.size();
    std::vector<std::uint32_t> firsts;
    keys.numeric = numeric;
    if (numeric) {
        keys.numbers.resize(n);
        InParts(n, PartsFor(n, threads),
                [&](std::size_t begin, std::size_t end, unsigned /*part*/) {
                    for (std::size_t i = begin; i < end; ++i) {
                        keys.numbers[i] = Val(sortKey(i));
                    }
                });
    } else {
        const Folded folded = FoldAll(n, sortKey, threads);
        std::vector<std::uint32_t> ids = Distinct(folded, firsts);
        const std::vector<std::uint32_t> rankOf = RanksOf(folded, firsts);
        keys.ranks.resize(ids.size());
        for (std::size_t i = 0; i < ids.size(); ++i) {
            keys.ranks[i] = rankOf[ids[i]];
        }
        // Titles, artists and albums group by the very key they sort by.
        if (criterion != 4) {
            keys.groups = GroupsOf(folded, std::move(ids));
            return keys;
        }
    }
    const Folded folded = FoldAll(n, groupKey, threads);
    keys.groups = GroupsOf(folded, Distinct(folded, firsts));
    return keys;
}

void SortDupeOrder(std::vector<std::uint32_t>& order, std::size_t L, std::size_t R,
                   const DupeSortKeys& keys, const DupeSortThreads& threads) {
    if (R <= L || R >= order.size()) {
        return;
    }
    if (!keys.numeric) {
        SortBy(order, L, R, keys.ranks, threads);
    } else {
        SortBy(order, L, R, keys.numbers, threads);
    }
}

}  // namespace jk
