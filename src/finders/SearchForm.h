#pragma once

// The Search wizard's controls as values: what Form_Load puts in them from the settings, what
// CleanUp stores back and pushes on the histories, and the search "Search" runs for them. The
// window and the command-line tool both go through these.

#include <functional>
#include <string>
#include <string_view>

#include "app/Settings.h"
#include "browse/DriveRoot.h"
#include "finders/CatalogueView.h"
#include "finders/RealSearch.h"
#include "finders/SearchRequest.h"
#include "listing/ListRow.h"

namespace jk {

struct SearchForm {
    std::string Text;              // Combo1 "Containing text:"
    std::string LookIn;            // Combo2 "Look in:"
    SearchFieldSet Fields;         // the checked entries of SearchIn
    bool ClearFirst = true;        // Check1 "Clear results first" (ClearSearch)
    bool CaseSensitive = false;    // Check2 "Case-sensitive matches only" (CaseMatch)
    bool Subfolders = false;       // Check3 "Include subfolders" (SearchMode)
    bool DefaultToCurrent = true;  // Check4 (DefaultToCurrent)
    bool OnTop = false;            // Check5 (SearchOnTop)
    SizeDateCriteria SizeDate;     // the second page
};

// Form_Load: the controls from the settings. Combo1 and Combo2 start at the first history
// entries, Combo5 at SearchLast1, Option1 selected; with DefaultToCurrent, Combo2 holds
// `currentFolder`.
SearchForm LoadSearchForm(const Settings& settings, std::string_view currentFolder);

// The settings CleanUp stores: SearchIn rebuilt from the checks, the boxes and the second page.
void StoreSearchForm(Settings& settings, const SearchForm& form);

// UpdateQueues: Combo1's text on the query history and Combo2's on the look-in history (both
// trimmed, fifteen deep), Combo5's on the date history (four deep).
void UpdateQueues(Settings& settings, const SearchForm& form);

// Combo1's and Combo2's lists: the fifteen history entries (UpdateCombo1, UpdateCombo2), the
// second followed by its three fixed rows.
std::vector<std::string> QueryList(const Settings& settings);
std::vector<std::string> LookInList(const Settings& settings);

// What "Search" makes of the form.
SearchRequest RequestOf(const SearchForm& form, const CivilMoment& now);

enum class SearchScope : std::uint8_t {
    AllDrives,
    RealDrives,
    VirtualDrives,
    RealFolder,
    VirtualFolder
};
// The dispatch on Combo2's text, trimmed and lower-cased, against the three fixed rows; any
// other text is a real folder when it is a real path (RealFolder), else a virtual one.
SearchScope ScopeOf(std::string_view lookIn);
bool IsCatalogueScope(SearchScope scope);

// Where a search may look.
struct SearchSources {
    const DriveList* Drives = nullptr;
    const RealFileSetup* Real = nullptr;       // lister and song lookups of real files
    const CatalogueView* Catalogue = nullptr;  // null: no catalogue
};

struct SearchOutcome {
    SearchEnd End = SearchEnd::Done;
    bool CatalogueChanged = false;
};

// Command1 "Search" after the abort flag is cleared: with ClearFirst the rows go first, then
// the search of the scope; `cleanUp` runs at the end of each road (twice for all drives), never
// after a failure.
SearchOutcome RunSearch(const SearchForm& form, const SearchSources& sources, RowList& rows,
                        SearchFront& front, const CivilMoment& now,
                        const std::function<void()>& cleanUp);

}  // namespace jk
