#pragma once

// The Help menu's pages and the tips: the program's own help pages are installed beside it
// (share/jukarra/help), so the Help menu's web items open a local page and the program makes
// no network request of its own.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace jk {

// The page a Help menu item opens ("HelpWeb" gives "index.html"); "" for any other item.
std::string_view HelpPageFile(std::string_view itemName);

// Where the help pages may stand, most likely first, for a program in `programFolder`: the
// installed share folder beside its bin folder, then a help folder beside the program (the
// build tree).
std::vector<std::string> HelpFolderCandidates(std::string_view programFolder);

// The tips of the day, in order.
std::span<const std::string_view> TipTexts();
// The tip after `lastTip` (1-based, as LastTip keeps it), going round; the first for 0.
std::int16_t NextTip(std::int16_t lastTip);
std::int16_t PreviousTip(std::int16_t lastTip);

// A Go menu item's caption for entry 1..15: its access key is the entry's key name ("&1" ..
// "&9", "&0", "&A" .. "&E") and the path follows with any "&" doubled.
std::string GoMenuCaption(std::size_t entry, std::string_view path);

}  // namespace jk
