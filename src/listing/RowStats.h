#pragma once

// What the status bar tells of a list pane (ListStats): how many songs, how long they play and
// how much room they take, from the rows' Time and Size texts.

#include <cstdint>
#include <string>

#include "listing/ListRow.h"

namespace jk {

struct RowTotals {
    std::size_t songs = 0;
    std::int64_t seconds = 0;
    std::int64_t bytes = 0;
};

RowTotals TotalsOf(const RowList& rows);
// The seconds of a Time text ("03:25", "123:04"); 0 when it is not one.
std::int64_t SecondsOfTime(std::string_view time);

// "1 song", "12 songs, 47:10, 52.3 MB", "2,345 songs, 6:01:15, 10.2 GB".
std::string TotalsText(const RowTotals& totals);
// "1:02:03" for an hour or more, "47:10" below it.
std::string DurationText(std::int64_t seconds);
// "512 bytes", "3.4 KB", "52.3 MB", "10.2 GB" (1024-based).
std::string SizeText(std::int64_t bytes);
// "2,345".
std::string CountText(std::size_t count);

}  // namespace jk
