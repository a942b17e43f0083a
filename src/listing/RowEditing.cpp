#include "listing/RowEditing.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace jk {

namespace {

bool IsSelected(const ListRow& row) {
    return row.Selected();
}

// Slides toward the front of [first, last): each selected row passes the unselected row ahead
// of it, and a selected row that has none ahead of it stays with the block it belongs to.
template <typename It>
bool SlideTowardFront(It first, It last) {
    bool moved = false;
    bool blocked = true;  // the row ahead is the edge or a selected row that could not move
    for (It it = first; it != last; ++it) {
        if (!it->Selected()) {
            blocked = false;
            continue;
        }
        if (blocked) {
            continue;
        }
        std::iter_swap(it, std::prev(it));
        moved = true;
    }
    return moved;
}

}  // namespace

bool SlideUp(RowList& rows) {
    return SlideTowardFront(rows.begin(), rows.end());
}

bool SlideDown(RowList& rows) {
    return SlideTowardFront(rows.rbegin(), rows.rend());
}

bool SlideTop(RowList& rows) {
    const auto firstUnselected = std::find_if_not(rows.begin(), rows.end(), IsSelected);
    const bool moves = std::any_of(firstUnselected, rows.end(), IsSelected);
    if (moves) {
        std::stable_partition(rows.begin(), rows.end(), IsSelected);
    }
    return moves;
}

bool SlideBottom(RowList& rows) {
    const auto lastUnselected = std::find_if_not(rows.rbegin(), rows.rend(), IsSelected);
    const bool moves = std::any_of(lastUnselected, rows.rend(), IsSelected);
    if (moves) {
        std::stable_partition(rows.begin(), rows.end(),
                              [](const ListRow& row) { return !row.Selected(); });
    }
    return moves;
}

bool ReverseSelection(RowList& rows) {
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i].Selected()) {
            places.push_back(i);
        }
    }
    if (places.size() < 2) {
        return false;
    }
    for (std::size_t a = 0, b = places.size() - 1; a < b; ++a, --b) {
        std::swap(rows[places[a]], rows[places[b]]);
    }
    return true;
}

bool ReverseAll(RowList& rows) {
    if (rows.size() < 2) {
        return false;
    }
    std::reverse(rows.begin(), rows.end());
    return true;
}

std::size_t MoveSelectedTo(RowList& rows, std::size_t at) {
    at = std::min(at, rows.size());
    RowList moving;
    RowList staying;
    std::size_t stayingAhead = 0;  // unselected rows ahead of `at`
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i].Selected()) {
            moving.push_back(std::move(rows[i]));
        } else {
            stayingAhead += i < at ? 1 : 0;
            staying.push_back(std::move(rows[i]));
        }
    }
    rows.clear();
    rows.reserve(moving.size() + staying.size());
    const auto cut = staying.begin() + static_cast<std::ptrdiff_t>(stayingAhead);
    std::move(staying.begin(), cut, std::back_inserter(rows));
    std::move(moving.begin(), moving.end(), std::back_inserter(rows));
    std::move(cut, staying.end(), std::back_inserter(rows));
    return stayingAhead;
}

std::size_t CropList(RowList& rows) {
    if (SelectedCount(rows) == 0) {
        return 0;
    }
    return std::erase_if(rows, [](const ListRow& row) { return !row.Selected(); });
}

std::size_t RemoveSelectedRows(RowList& rows) {
    return std::erase_if(rows, IsSelected);
}

void SelectAllRows(RowList& rows) {
    for (ListRow& row : rows) {
        row.SetSelected(true);
    }
}

void SelectNoRows(RowList& rows) {
    for (ListRow& row : rows) {
        row.SetSelected(false);
    }
}

void InvertSelection(RowList& rows) {
    for (ListRow& row : rows) {
        row.SetSelected(!row.Selected());
    }
}

std::size_t SelectedCount(const RowList& rows) {
    return static_cast<std::size_t>(std::count_if(rows.begin(), rows.end(), IsSelected));
}

std::size_t FirstSelected(const RowList& rows) {
    return static_cast<std::size_t>(std::find_if(rows.begin(), rows.end(), IsSelected) -
                                    rows.begin());
}

}  // namespace jk
