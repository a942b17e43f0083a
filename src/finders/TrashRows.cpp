#include "finders/TrashRows.h"

#include <algorithm>
#include <set>

namespace jk {

UserMessage DeleteFilesQuestion() {
    return UserMessage{"Are you sure you want to delete?", "Verify", MessageIcon::Question};
}

TrashOutcome TrashSelectedRows(RowList& rows, const std::vector<bool>& selected,
                               const TrashFile& trash) {
    TrashOutcome outcome;
    std::set<std::string> trashed;
    for (std::size_t k = rows.size(); k-- > 0;) {
        if (k >= selected.size() || !selected[k]) {
            continue;
        }
        const std::string path(rows[k].Get(Column::Filename));
        std::string why;
        if (trashed.count(path) != 0 || trash(path, why)) {
            trashed.insert(path);
            rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(k));
            outcome.Removed.push_back(k);
        } else {
            outcome.Failed.emplace_back(path, why);
        }
    }
    std::reverse(outcome.Failed.begin(), outcome.Failed.end());
    return outcome;
}

UserMessage TrashFailuresMessage(const std::vector<std::pair<std::string, std::string>>& failed) {
    constexpr std::size_t kNamed = 10;
    std::string text = failed.size() == 1 ? "This file could not be moved to the trash and stays "
                                            "in the list:\n"
                                          : std::to_string(failed.size()) +
                                                " files could not be moved to the trash and stay "
                                                "in the list:\n";
    for (std::size_t i = 0; i < failed.size() && i < kNamed; ++i) {
        text += "\n" + failed[i].first;
        if (!failed[i].second.empty()) {
            text += " (" + failed[i].second + ")";
        }
    }
    if (failed.size() > kNamed) {
        text += "\n... and " + std::to_string(failed.size() - kNamed) + " more";
    }
    return UserMessage{text, "Sorry...", MessageIcon::Warning};
}

}  // namespace jk
