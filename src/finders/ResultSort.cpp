#include "finders/ResultSort.h"

#include <algorithm>
#include <cstdint>
#include <optional>

#include "finders/SearchDates.h"
#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {

namespace {

// A date's place on the time line; a text that is no date sorts before every date.
std::int64_t DateKey(std::string_view text) {
    const std::optional<CivilMoment> moment = ParseRecordDate(text);
    if (!moment) {
        return INT64_MIN;
    }
    return (DaysFromCivil(moment->Year, moment->Month, moment->Day) * 24 + moment->Hour) * 3600 +
           std::int64_t{moment->Minute} * 60 + moment->Second;
}

template <typename Key>
void SortByKey(RowList& rows, bool descending, Key key) {
    using K = decltype(key(rows.front()));
    std::vector<std::pair<K, std::size_t>> keys;
    keys.reserve(rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        keys.emplace_back(key(rows[i]), i);
    }
    std::stable_sort(keys.begin(), keys.end(), [descending](const auto& a, const auto& b) {
        return descending ? b.first < a.first : a.first < b.first;
    });
    RowList sorted;
    sorted.reserve(rows.size());
    for (const auto& entry : keys) {
        sorted.push_back(std::move(rows[entry.second]));
    }
    rows = std::move(sorted);
}

}  // namespace

void SortResultRows(RowList& rows, int column, bool descending) {
    if (column < 0 || column >= static_cast<int>(kColumnCount) || rows.empty()) {
        return;
    }
    const auto c = static_cast<std::size_t>(column);
    if (c == static_cast<std::size_t>(Column::Size)) {
        SortByKey(rows, descending, [c](const ListRow& row) { return Val(row.Get(c)); });
    } else if (c == static_cast<std::size_t>(Column::Date)) {
        SortByKey(rows, descending, [c](const ListRow& row) { return DateKey(row.Get(c)); });
    } else {
        SortByKey(rows, descending, [c](const ListRow& row) { return ToLower(row.Get(c)); });
    }
}

}  // namespace jk
