#pragma once

// "Copy to...", "Move to..." and pasting files into a folder, planned before a file is
// touched: where each song goes, and which are left alone. A user's file is never overwritten:
// a song whose name is already taken in the destination is skipped with its reason. After a
// move, the rows that named a moved file name its new place.

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "listing/ListRow.h"

namespace jk {

struct FileTransfer {
    std::string from;
    std::string to;
};

struct SkippedFile {
    std::string path;
    std::string reason;
};

struct TransferPlan {
    std::vector<FileTransfer> transfers;
    std::vector<SkippedFile> skipped;
};

// Plans copying or moving `sources` into `folder`. `exists` tells whether a path is taken.
// Ghost rows and virtual paths are skipped; so is a file already in that folder, and a second
// file of the same name.
TransferPlan PlanTransfer(const std::vector<std::string>& sources, std::string_view folder,
                          const std::function<bool(const std::string&)>& exists);

// The paths of the selected rows, in order, each once.
std::vector<std::string> SelectedPaths(const RowList& rows);
// The paths of every row, in order, each once.
std::vector<std::string> AllPaths(const RowList& rows);

// Points the rows that name a moved file at its new place; returns the count changed.
std::size_t RetargetRows(RowList& rows, const std::vector<FileTransfer>& moved);
// Drops the rows whose file is among `gone`; returns the count removed.
std::size_t DropRowsOf(RowList& rows, const std::vector<std::string>& gone);

// One line for each skipped or failed file, for a message: "name: reason".
std::string SkippedText(const std::vector<SkippedFile>& skipped, std::size_t most = 10);

}  // namespace jk
