#pragma once

// What the finders' commands share: the fields named by --in, the window's stand-in that shows
// a search's progress on standard error and stops it on Ctrl-C.

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "app/cli/InterruptStop.h"
#include "app/cli/ProgressLine.h"
#include "finders/SearchFields.h"
#include "finders/SearchRequest.h"
#include "finders/VolumeTableView.h"

namespace jk {

// --in: a string of "1" and "0", one for each field in `names`' order, or names joined by commas
// ("title,artist"), compared ignoring case. Nothing for any other text.
std::optional<SearchFieldSet> ParseFieldList(std::string_view text,
                                             std::span<const std::string_view> names);

struct Session;

// The catalogued discs of the session as the finders read them.
VolumeTableView SessionCatalogue(Session& session);

// The search's status on a progress line; Ctrl-C is the abort flag.
class CliSearchFront final : public SearchFront {
public:
    void SetStatus(std::string_view text) override { m_line.Show(text); }
    bool AbortRequested() override { return m_interrupt.Requested(); }
    void Finish() { m_line.Finish(); }

private:
    ProgressLine m_line;
    InterruptStop m_interrupt;
};

}  // namespace jk
