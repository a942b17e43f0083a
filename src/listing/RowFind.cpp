#include "listing/RowFind.h"

#include "util/PathHelpers.h"
#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {

bool RowMatches(const ListRow& row, std::string_view text) {
    for (const Column column : {Column::Title, Column::Artist, Column::Album}) {
        if (ContainsNoCase(row.Get(column), text)) {
            return true;
        }
    }
    return ContainsNoCase(BareName(row.Get(Column::Filename)), text);
}

std::optional<std::size_t> FindRow(const RowList& rows, std::string_view text, std::size_t from) {
    text = Trim(text);
    if (text.empty() || rows.empty()) {
        return std::nullopt;
    }
    from = from < rows.size() ? from : 0;
    for (std::size_t step = 0; step < rows.size(); ++step) {
        const std::size_t at = (from + step) % rows.size();
        if (RowMatches(rows[at], text)) {
            return at;
        }
    }
    return std::nullopt;
}

}  // namespace jk
