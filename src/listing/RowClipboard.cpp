#include "listing/RowClipboard.h"

#include <algorithm>

#include "listing/RowEditing.h"

namespace jk {

std::size_t CopyRows(const RowList& rows, RowClipboard& clipboard) {
    clipboard.Rows.clear();
    clipboard.Cut = false;
    for (const ListRow& row : rows) {
        if (row.Selected()) {
            clipboard.Rows.push_back(row);
            clipboard.Rows.back().SetSelected(false);
        }
    }
    return clipboard.Rows.size();
}

std::size_t CutRows(RowList& rows, RowClipboard& clipboard) {
    const std::size_t count = CopyRows(rows, clipboard);
    clipboard.Cut = true;
    RemoveSelectedRows(rows);
    return count;
}

std::size_t PasteRows(RowList& rows, const RowClipboard& clipboard, std::size_t at) {
    SelectNoRows(rows);
    at = std::min(at, rows.size());
    rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(at), clipboard.Rows.begin(),
                clipboard.Rows.end());
    for (std::size_t i = at; i < at + clipboard.Rows.size(); ++i) {
        rows[i].SetSelected(true);
    }
    return clipboard.Rows.size();
}

}  // namespace jk
