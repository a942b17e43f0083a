#pragma once

// "&Delete" in a result list: the selected rows' files go to the trash, walking the rows from
// the last to the first; a row goes only when its file reached the trash, and the files that
// could not be moved are named in one message.

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "listing/ListRow.h"
#include "util/UserMessage.h"

namespace jk {

// "Are you sure you want to delete?" (title "Verify", Yes and No).
UserMessage DeleteFilesQuestion();

// Moves one file to the trash; false with the reason when it cannot.
using TrashFile = std::function<bool(const std::string& path, std::string& why)>;

struct TrashOutcome {
    std::vector<std::size_t> Removed;  // indices of the rows removed, highest first
    std::vector<std::pair<std::string, std::string>> Failed;  // path and reason
};

// The rows whose `selected` flag is set, from the last to the first. A file listed twice goes
// once; the second row goes with it.
TrashOutcome TrashSelectedRows(RowList& rows, const std::vector<bool>& selected,
                               const TrashFile& trash);

// One message naming the files that stayed, with the reason of each ("Sorry...").
UserMessage TrashFailuresMessage(const std::vector<std::pair<std::string, std::string>>& failed);

}  // namespace jk
