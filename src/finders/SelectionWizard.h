#pragma once

// The Selection wizard's work on the panes: the rows of the files pane, the playlist or both
// whose checked columns hold the text get selected, by the Search wizard's text test. Nothing
// is read from disk and nothing is ever deselected by the test itself.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "app/Settings.h"
#include "finders/SearchFields.h"
#include "finders/TextTest.h"
#include "listing/ListRow.h"

namespace jk {

// The wizard's fields, in test order, and the pane column each tests: against the Search
// wizard's menu this one has Time and has no Volume.
struct SelectField {
    std::string_view Name;     // the menu item ("SearchTime")
    std::string_view Caption;  // its text
    jk::Column Pane;           // the pane column it tests
};
inline constexpr std::size_t kSelectFieldCount = 9;
const std::array<SelectField, kSelectFieldCount>& SelectFields();

// "From which window?": Option1 "Files ", Option2 "Playlist", Option3 "Both", kept in SelectMode.
enum class SelectWindow : std::int16_t { Files = 0, Playlist = 1, Both = 2 };

struct SelectionChoice {
    std::string Text;       // Combo1, as it stands
    SearchFieldSet Fields;  // the checked entries, in SelectFields order
    SelectWindow Window = SelectWindow::Files;
    bool CaseSensitive = false;  // Check2
    bool Retain = false;         // Check1 "Retain current selections"
};

// The choice the window starts with: Combo1 at Select1, the rest from the settings.
SelectionChoice InitialSelection(const Settings& settings);

// The test on one pane: unless `retain`, every row is deselected first; then each row whose
// checked column holds the text is selected. Returns the rows selected afterwards.
std::size_t SelectRows(RowList& rows, const TextQuery& query, const SearchFieldSet& fields,
                       bool retain);

struct SelectionCounts {
    std::size_t Files = 0;
    std::size_t Playlist = 0;
};

// "Okay": the text joins the Select history (the four-entry rule), the chosen panes are worked
// on one after the other, each on its own, and SelectMode, SaveSelect, SelectCase and
// SelectOptions are stored.
SelectionCounts RunSelection(Settings& settings, RowList& files, RowList& playlist,
                             const SelectionChoice& choice);

}  // namespace jk
