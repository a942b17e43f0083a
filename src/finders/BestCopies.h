#pragma once

// "Propose best copies" of the Duplicate Finder: in each listed group, the copy to keep is
// marked and every other copy that is a file here now is selected; nothing is deleted. A copy
// known only to the catalogue (its disc is not here) is never selected.

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "finders/DuplicateFinder.h"
#include "util/UserMessage.h"

namespace jk {

struct CopyProposal {
    std::vector<bool> Keep;    // per row: the copy its group keeps
    std::vector<bool> Select;  // per row: proposed for the trash
    std::size_t Selected = 0;
};

// Whether a row's file is here now (a file on disk, or on a catalogued disc that is inserted).
using CopyPresent = std::function<bool(const DupeListed& row)>;

// The copy a group keeps: one that is here before one known only to the catalogue, then the
// higher Bitrate, the longer Time, the larger Size, the newer Date, then the first row. Rows are
// taken in the order given; groups need not stand together.
CopyProposal ProposeBestCopies(const std::vector<DupeListed>& rows, const CopyPresent& present);

// The question before the proposed copies go to the trash, asked whatever DelMode says: the
// count and the first few files.
UserMessage BestCopiesDeleteQuestion(const std::vector<std::string>& paths);

}  // namespace jk
