#include "finders/SearchForm.h"

#include "finders/CatalogueSearch.h"
#include "finders/RealSearch.h"
#include "finders/SearchHistory.h"
#include "util/PathHelpers.h"
#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {

SearchForm LoadSearchForm(const Settings& settings, std::string_view currentFolder) {
    SearchForm form;
    form.Text = settings.SearchHistory[1];
    form.LookIn = settings.SearchPaths[1];
    form.Fields = ParseFieldFlags(settings.SearchIn);
    form.ClearFirst = settings.ClearSearch != 0;
    form.CaseSensitive = settings.CaseMatch != 0;
    form.Subfolders = settings.SearchMode != 0;
    form.DefaultToCurrent = settings.DefaultToCurrent != 0;
    if (form.DefaultToCurrent) {
        form.LookIn = std::string(currentFolder);
    }
    form.OnTop = settings.SearchOnTop != 0;
    SizeDateCriteria& c = form.SizeDate;
    c.SizeMode = settings.SearchSizeMode;
    c.SizeText = std::to_string(settings.SearchSize);
    c.LastWritten = true;  // Form_Load selects Option1
    c.TimeMode = settings.SearchTimeMode;
    c.DateText = settings.SearchLasts[1];
    c.LastUnit = settings.SearchLastMode;
    c.LastCount = std::to_string(settings.SearchLastTime);
    return form;
}

void StoreSearchForm(Settings& settings, const SearchForm& form) {
    settings.SearchIn = FieldFlagsText(form.Fields);
    settings.ClearSearch = form.ClearFirst ? 1 : 0;
    settings.CaseMatch = form.CaseSensitive ? 1 : 0;
    settings.SearchMode = form.Subfolders ? 1 : 0;
    settings.DefaultToCurrent = form.DefaultToCurrent ? 1 : 0;
    settings.SearchOnTop = form.OnTop ? 1 : 0;
    const SizeDateCriteria& c = form.SizeDate;
    settings.SearchSizeMode = static_cast<std::int16_t>(c.SizeMode);
    settings.SearchSize = ToInt32Clamped(Val(c.SizeText));
    settings.SearchTimeMode = static_cast<std::int16_t>(c.TimeMode);
    settings.SearchLastMode = static_cast<std::int16_t>(c.LastUnit);
    settings.SearchLastTime = ToInt16Clamped(Val(c.LastCount));
    settings.SearchIncrement = c.LastWritten ? 0 : 1;
}

void UpdateQueues(Settings& settings, const SearchForm& form) {
    PushHistory(settings.SearchHistory, form.Text);
    PushHistory(settings.SearchPaths, form.LookIn);
    PushFour(settings.SearchLasts, form.SizeDate.DateText);
}

std::vector<std::string> QueryList(const Settings& settings) {
    return std::vector<std::string>(settings.SearchHistory.begin() + 1,
                                    settings.SearchHistory.end());
}

std::vector<std::string> LookInList(const Settings& settings) {
    std::vector<std::string> list(settings.SearchPaths.begin() + 1, settings.SearchPaths.end());
    list.emplace_back(kLookInAllDrives);
    list.emplace_back(kLookInRealDrives);
    list.emplace_back(kLookInVirtualDrives);
    return list;
}

SearchRequest RequestOf(const SearchForm& form, const CivilMoment& now) {
    SearchRequest request;
    request.Query = TextQuery(form.Text, form.CaseSensitive);
    request.Fields = form.Fields;
    request.SizeDate = SizeDateTest(form.SizeDate, now);
    request.Subfolders = form.Subfolders;
    return request;
}

SearchScope ScopeOf(std::string_view lookIn) {
    const std::string chosen = ToLower(Trim(lookIn));
    if (chosen == ToLower(kLookInAllDrives)) {
        return SearchScope::AllDrives;
    }
    if (chosen == ToLower(kLookInRealDrives)) {
        return SearchScope::RealDrives;
    }
    if (chosen == ToLower(kLookInVirtualDrives)) {
        return SearchScope::VirtualDrives;
    }
    return IsRealPath(lookIn) ? SearchScope::RealFolder : SearchScope::VirtualFolder;
}

bool IsCatalogueScope(SearchScope scope) {
    return scope == SearchScope::VirtualDrives || scope == SearchScope::VirtualFolder;
}

namespace {

// A catalogue of no volumes, for a search that has none.
class NoCatalogue final : public CatalogueView {
public:
    std::size_t VolumeCount() const override { return 0; }
    std::string_view VolumeName(std::size_t) const override { return {}; }
    std::size_t SongCount(std::size_t) const override { return 0; }
    SongFieldViews Fields(std::size_t, std::size_t) const override { return {}; }
    std::uint64_t Generation() const override { return 0; }
};

}  // namespace

SearchOutcome RunSearch(const SearchForm& form, const SearchSources& sources, RowList& rows,
                        SearchFront& front, const CivilMoment& now,
                        const std::function<void()>& cleanUp) {
    if (form.ClearFirst) {
        rows.clear();
    }
    const SearchRequest request = RequestOf(form, now);
    const NoCatalogue none;
    const CatalogueView& catalogue = sources.Catalogue != nullptr ? *sources.Catalogue : none;
    const DriveList noDrives;
    const DriveList& drives = sources.Drives != nullptr ? *sources.Drives : noDrives;
    SearchOutcome outcome;
    const auto clean = [&outcome, &cleanUp] {
        if (outcome.End != SearchEnd::Failed && cleanUp) {
            cleanUp();
        }
    };
    const auto virtualRoad = [&](const CatalogueSearchEnd& end) {
        outcome.End = end.End;
        outcome.CatalogueChanged = end.CatalogueChanged;
        clean();
    };
    switch (ScopeOf(form.LookIn)) {
        case SearchScope::AllDrives:
            outcome.End = SearchAllRealDrives(drives, request, *sources.Real, rows, front);
            clean();
            if (outcome.End != SearchEnd::Failed) {
                virtualRoad(SearchAllVirtualDrives(catalogue, request, rows, front));
            }
            break;
        case SearchScope::RealDrives:
            outcome.End = SearchAllRealDrives(drives, request, *sources.Real, rows, front);
            clean();
            break;
        case SearchScope::VirtualDrives:
            virtualRoad(SearchAllVirtualDrives(catalogue, request, rows, front));
            break;
        case SearchScope::RealFolder:
            outcome.End = SearchFolder(form.LookIn, request, *sources.Real, rows, front);
            clean();
            break;
        case SearchScope::VirtualFolder:
            virtualRoad(SearchVirtualFolder(catalogue, form.LookIn, request, rows, front));
            break;
    }
    return outcome;
}

}  // namespace jk
