#include "app/FileTransferPlan.h"

#include <unordered_map>
#include <unordered_set>

#include "util/PathHelpers.h"

namespace jk {

namespace {

std::vector<std::string> PathsOf(const RowList& rows, bool selectedOnly) {
    std::vector<std::string> paths;
    std::unordered_set<std::string_view> seen;
    for (const ListRow& row : rows) {
        if (selectedOnly && !row.Selected()) {
            continue;
        }
        const std::string_view path = row.Get(Column::Filename);
        if (!path.empty() && seen.insert(path).second) {
            paths.emplace_back(path);
        }
    }
    return paths;
}

}  // namespace

TransferPlan PlanTransfer(const std::vector<std::string>& sources, std::string_view folder,
                          const std::function<bool(const std::string&)>& exists) {
    TransferPlan plan;
    std::unordered_set<std::string> taken;
    for (const std::string& source : sources) {
        if (!IsRealPath(source) || !exists(source)) {
            plan.skipped.push_back({source, "the file is not there"});
            continue;
        }
        std::string target = JoinPath(folder, BareName(source));
        if (target == source) {
            plan.skipped.push_back({source, "it is in that folder already"});
        } else if (taken.contains(target) || exists(target)) {
            plan.skipped.push_back({source, "a file of that name is there already"});
        } else {
            taken.insert(target);
            plan.transfers.push_back({source, std::move(target)});
        }
    }
    return plan;
}

std::vector<std::string> SelectedPaths(const RowList& rows) {
    return PathsOf(rows, true);
}

std::vector<std::string> AllPaths(const RowList& rows) {
    return PathsOf(rows, false);
}

std::size_t RetargetRows(RowList& rows, const std::vector<FileTransfer>& moved) {
    std::unordered_map<std::string_view, std::string_view> targets;
    for (const FileTransfer& transfer : moved) {
        targets.emplace(transfer.from, transfer.to);
    }
    std::size_t changed = 0;
    for (ListRow& row : rows) {
        const auto found = targets.find(row.Get(Column::Filename));
        if (found != targets.end()) {
            const std::string target(found->second);
            row.Set(Column::Filename, target);
            ++changed;
        }
    }
    return changed;
}

std::size_t DropRowsOf(RowList& rows, const std::vector<std::string>& gone) {
    const std::unordered_set<std::string_view> paths(gone.begin(), gone.end());
    return std::erase_if(
        rows, [&paths](const ListRow& row) { return paths.contains(row.Get(Column::Filename)); });
}

std::string SkippedText(const std::vector<SkippedFile>& skipped, std::size_t most) {
    std::string text;
    for (std::size_t i = 0; i < skipped.size() && i < most; ++i) {
        if (!text.empty()) {
            text += '\n';
        }
        text += std::string(BareName(skipped[i].path)) + ": " + skipped[i].reason;
    }
    if (skipped.size() > most) {
        text += "\n... and " + std::to_string(skipped.size() - most) + " more";
    }
    return text;
}

}  // namespace jk
