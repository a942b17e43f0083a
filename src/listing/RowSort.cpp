#include "listing/RowSort.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

namespace jk {

namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

char FoldAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Compares the digit runs starting at a[i] and b[j] by value; moves i and j past them.
int CompareNumbers(std::string_view a, std::size_t& i, std::string_view b, std::size_t& j) {
    while (i < a.size() && a[i] == '0') {
        ++i;
    }
    while (j < b.size() && b[j] == '0') {
        ++j;
    }
    const std::size_t startA = i;
    const std::size_t startB = j;
    while (i < a.size() && IsDigit(a[i])) {
        ++i;
    }
    while (j < b.size() && IsDigit(b[j])) {
        ++j;
    }
    const std::size_t lengthA = i - startA;
    const std::size_t lengthB = j - startB;
    if (lengthA != lengthB) {
        return lengthA < lengthB ? -1 : 1;
    }
    const int order = a.substr(startA, lengthA).compare(b.substr(startB, lengthB));
    return order < 0 ? -1 : (order > 0 ? 1 : 0);
}

}  // namespace

int CompareNatural(std::string_view a, std::string_view b) {
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < a.size() && j < b.size()) {
        if (IsDigit(a[i]) && IsDigit(b[j])) {
            if (const int order = CompareNumbers(a, i, b, j); order != 0) {
                return order;
            }
            continue;
        }
        const auto ca = static_cast<unsigned char>(FoldAscii(a[i]));
        const auto cb = static_cast<unsigned char>(FoldAscii(b[j]));
        if (ca != cb) {
            return ca < cb ? -1 : 1;
        }
        ++i;
        ++j;
    }
    if (i < a.size()) {
        return 1;
    }
    return j < b.size() ? -1 : 0;
}

void SortRows(RowList& rows, int column, bool descending) {
    if (column < 0 || static_cast<std::size_t>(column) >= kColumnCount || rows.size() < 2) {
        return;
    }
    const auto key = static_cast<std::size_t>(column);
    // The texts beside their row numbers, so that a comparison reads no row.
    std::vector<std::pair<std::string_view, std::uint32_t>> order;
    order.reserve(rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        order.emplace_back(rows[i].Get(key), static_cast<std::uint32_t>(i));
    }
    std::stable_sort(order.begin(), order.end(), [descending](const auto& x, const auto& y) {
        const int c = CompareNatural(x.first, y.first);
        return descending ? c > 0 : c < 0;
    });
    RowList sorted;
    sorted.reserve(rows.size());
    for (const auto& entry : order) {
        sorted.push_back(std::move(rows[entry.second]));
    }
    rows = std::move(sorted);
}

}  // namespace jk
