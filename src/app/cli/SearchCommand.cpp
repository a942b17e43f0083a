// search [--in FIELDS] [--case] [--size lt:KB|gt:KB] [--before DATE|--after DATE|
//        --between "D1 - D2"|--within N:UNIT] [--subfolders] [--json] QUERY
//        [--all|--real|--virtual|LOOKIN]

#include <array>
#include <span>
#include <string>

#include "app/Session.h"
#include "app/cli/CliContext.h"
#include "app/cli/CliRegistry.h"
#include "app/cli/CommandArgs.h"
#include "app/cli/CommandOutput.h"
#include "app/cli/FinderArgs.h"
#include "app/cli/SongLookupRun.h"
#include "browse/FolderScan.h"
#include "finders/ResultRows.h"
#include "finders/SearchForm.h"
#include "platform/DirectoryListing.h"
#include "platform/Drives.h"
#include "util/PathHelpers.h"
#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {

namespace {

constexpr std::array<std::string_view, kSearchFieldCount> kSearchFieldNames = {
    "title", "artist", "album", "year", "genre", "bitrate", "filename", "comment", "volume"};

// The second page of the window from the options; false (the user told) on a bad option.
bool ReadSizeAndDate(const CommandArgs& parsed, SizeDateCriteria& criteria) {
    if (const std::string* size = parsed.Value("--size")) {
        const std::string_view mode = std::string_view(*size).substr(0, 3);
        if (mode != "lt:" && mode != "gt:") {
            UsageError("--size wants lt:KB or gt:KB");
            return false;
        }
        criteria.SizeMode = mode == "lt:" ? kSizeLessThan : kSizeGreaterThan;
        criteria.SizeText = size->substr(3);
    }
    int dates = 0;
    for (const auto& [option, mode] : {std::pair{"--before", kBefore}, std::pair{"--after", kAfter},
                                       std::pair{"--between", kBetween}}) {
        if (const std::string* text = parsed.Value(option)) {
            criteria.TimeMode = mode;
            criteria.DateText = *text;
            ++dates;
        }
    }
    if (const std::string* within = parsed.Value("--within")) {
        static constexpr std::array<std::string_view, 4> kUnits = {"hours", "days", "weeks",
                                                                   "months"};
        const std::size_t colon = within->find(':');
        const std::string_view unit = colon == std::string::npos
                                          ? std::string_view()
                                          : std::string_view(*within).substr(colon + 1);
        criteria.LastUnit = -1;
        for (std::size_t u = 0; u < kUnits.size(); ++u) {
            if (EqualsNoCase(unit, kUnits[u])) {
                criteria.LastUnit = static_cast<int>(u);
            }
        }
        if (criteria.LastUnit < 0) {
            UsageError("--within wants N:hours, N:days, N:weeks or N:months");
            return false;
        }
        criteria.LastWritten = false;
        criteria.LastCount = within->substr(0, colon);
        ++dates;
    }
    if (dates > 1) {
        UsageError("give one of --before, --after, --between and --within");
        return false;
    }
    return true;
}

// The look-in of the window from the operand or the scope options.
bool ReadLookIn(const CommandArgs& parsed, std::string& lookIn) {
    int scopes = 0;
    for (const auto& [flag, row] :
         {std::pair{"--all", kLookInAllDrives}, std::pair{"--real", kLookInRealDrives},
          std::pair{"--virtual", kLookInVirtualDrives}}) {
        if (parsed.Has(flag)) {
            lookIn = std::string(row);
            ++scopes;
        }
    }
    if (parsed.operands.size() > 2 || scopes + (parsed.operands.size() == 2 ? 1 : 0) > 1) {
        UsageError("search looks in one place: --all, --real, --virtual or one LOOKIN");
        return false;
    }
    if (parsed.operands.size() == 2) {
        // A path that names the file system is a real folder; any other, a catalogued one.
        const std::string& where = parsed.operands[1];
        const bool real = IsRealPath(where) || where == "." || where == ".." ||
                          StartsWith(where, "./") || StartsWith(where, "../");
        lookIn = real ? FullPathOf(where) : where;
    } else if (scopes == 0) {
        lookIn = FullPathOf(".");
    }
    return true;
}

int RunSearchCommand(CliContext& context, std::span<const std::string> args) {
    const CommandArgs parsed = ParseCommandArgs(
        args, {"--case", "--subfolders", "--json", "--all", "--real", "--virtual"},
        {"--in", "--size", "--before", "--after", "--between", "--within"}, "search");
    if (!parsed.error.empty()) {
        return UsageError(parsed.error);
    }
    if (parsed.operands.empty()) {
        return UsageError("search needs a QUERY (\"\" finds every song with a checked field)");
    }
    SongLookupRun run(context, false);
    Session& session = run.TheSession();
    SearchForm form = LoadSearchForm(session.Settings, "");
    form.Text = parsed.operands[0];
    form.CaseSensitive = parsed.Has("--case");
    form.Subfolders = parsed.Has("--subfolders");
    form.ClearFirst = true;
    form.SizeDate = SizeDateCriteria{};
    form.SizeDate.DateText = session.Settings.SearchLasts[1];  // Combo5 starts as SearchLast1
    if (const std::string* in = parsed.Value("--in")) {
        const auto fields = ParseFieldList(*in, kSearchFieldNames);
        if (!fields) {
            return UsageError(
                "--in names fields from title, artist, album, year, genre, "
                "bitrate, filename, comment, volume");
        }
        form.Fields = *fields;
    }
    if (!ReadSizeAndDate(parsed, form.SizeDate) || !ReadLookIn(parsed, form.LookIn)) {
        return kExitUsage;
    }
    const SizeDateTest test(form.SizeDate, NowCivil());
    if (test.AlwaysFails()) {
        return UsageError("\"" + form.SizeDate.DateText + "\" holds no date where one is needed");
    }
    if (form.SizeDate.SizeMode != kSizeIrrelevant && !ParseUserDate(form.SizeDate.DateText)) {
        PrintError(
            "--size finds nothing unless a date is given too (--before, --after or "
            "--within with SearchLast1 a date), as the window's date box must hold one");
    }

    const bool json = parsed.Has("--json");
    PosixFolderLister lister;
    RealFileSetup setup;
    setup.Lister = &lister;
    setup.FilterMode = session.Settings.FilterMode;
    setup.Lookup = &run.Lookup();
    const DriveList drives = ListDrives();
    SearchSources sources;
    sources.Drives = &drives;
    sources.Real = &setup;
    const VolumeTableView catalogue = SessionCatalogue(session);
    sources.Catalogue = &catalogue;
    const SearchScope scope = ScopeOf(form.LookIn);
    if (scope == SearchScope::RealFolder && !FolderExists(form.LookIn)) {
        PrintError(form.LookIn + ": no such folder");
        return kExitFailed;
    }

    RowList rows;
    CliSearchFront front;
    const SearchOutcome outcome = RunSearch(form, sources, rows, front, NowCivil(), {});
    front.Finish();
    PrintRowHeader(json);
    for (const ListRow& row : rows) {
        PrintRow(row, json);
    }
    std::fprintf(stderr, "%s\n", ResultsStats(rows, session.Settings.ExactTimes != 0).c_str());
    const int saved = run.Finish();
    if (saved != kExitOk) {
        return FinishOutput(saved);
    }
    return FinishOutput(outcome.End == SearchEnd::Aborted ? kExitInterrupted : kExitOk);
}

const CliRegistration kSearchCommand{CliCommand{
    .name = "search",
    .help =
        {
            {"search [OPTIONS] QUERY [--all|--real|--virtual|LOOKIN]",
             "the Search wizard: songs whose fields hold QUERY"},
        },
    .details =
        "Finds the songs whose checked fields hold QUERY as it stands (not trimmed, not split\n"
        "into words), ignoring case unless --case is given, as the Search wizard does, and\n"
        "prints them as the wizard's result list shows them (the twelve columns of a list\n"
        "pane, tab-separated under a header line, or with --json one object a line). The\n"
        "statistics line of the wizard (\" 12 songs - 00:41:10, 52.31 MB\") follows on standard\n"
        "error. An empty QUERY (\"\") finds every song with a non-empty checked field.\n"
        "Where it looks: LOOKIN, a real folder when it begins with \"/\", \"./\" or \"../\" (only\n"
        "its own files unless --subfolders), else a catalogued folder \"VOLUME/folder\" (always\n"
        "with everything below it); --real every drive, --virtual every catalogued disc,\n"
        "--all both (a song on a drive and in the catalogue is listed twice). Without any,\n"
        "the working folder.\n"
        "Options:\n"
        "  --in FIELDS       fields to test: names joined by commas from title, artist, album,\n"
        "                    year, genre, bitrate, filename (the whole path), comment, volume,\n"
        "                    or nine 1/0 flags in that order; default: the SearchIn setting\n"
        "  --case            case-sensitive matches only\n"
        "  --size lt:KB|gt:KB  size in kilobytes of 1024 bytes, less or greater (equal is\n"
        "                    neither). As in the window it needs a date in the date box:\n"
        "                    --before, --after, or SearchLast1 holding one\n"
        "  --before DATE, --after DATE  last written before or after the day; DATE as\n"
        "                    the locale's short date, yyyy-mm-dd or m/d/yy\n"
        "  --between \"D1 - D2\"  on or between the two days; the words between the first\n"
        "                    and the second blank are not read\n"
        "  --within N:UNIT   last written during the last N hours, days, weeks or months,\n"
        "                    counted by calendar boundaries crossed\n"
        "Real files are read through the song cache, which is saved afterwards. Ctrl-C stops\n"
        "the search: the songs found so far are printed and the exit status is 130.",
    .run = &RunSearchCommand,
}};

}  // namespace

}  // namespace jk
