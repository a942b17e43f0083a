// select [--in FIELDS] [--case] QUERY FILE.m3u

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
#include "finders/SelectionWizard.h"
#include "playback/CachedSongSource.h"
#include "playback/PlaylistCommands.h"

namespace jk {

namespace {

constexpr std::array<std::string_view, kSelectFieldCount> kSelectFieldNames = {
    "title", "artist", "album", "year", "genre", "time", "bitrate", "filename", "comment"};

int RunSelect(CliContext& context, std::span<const std::string> args) {
    const CommandArgs parsed = ParseCommandArgs(args, {"--case", "--json"}, {"--in"}, "select");
    if (!parsed.error.empty()) {
        return UsageError(parsed.error);
    }
    if (parsed.operands.size() != 2) {
        return UsageError("select needs a QUERY and one FILE.m3u");
    }
    SongLookupRun run(context, false);
    Session& session = run.TheSession();
    SelectionChoice choice = InitialSelection(session.Settings);
    choice.Text = parsed.operands[0];
    choice.CaseSensitive = parsed.Has("--case");
    if (choice.Fields.none()) {
        // A data folder whose wizard never stored its fields: every column is tested.
        choice.Fields.set();
    }
    if (const std::string* in = parsed.Value("--in")) {
        const auto fields = ParseFieldList(*in, kSelectFieldNames);
        if (!fields) {
            return UsageError(
                "--in names fields from title, artist, album, year, genre, time, "
                "bitrate, filename, comment");
        }
        choice.Fields = *fields;
    }
    const bool json = parsed.Has("--json");
    const std::string listPath = FullPathOf(parsed.operands[1]);
    const int status = run.OpenListFile(session.Playlist, listPath) ? kExitOk : kExitFailed;
    RowList& rows = session.Playlist.Rows;
    SelectRows(rows, TextQuery(choice.Text, choice.CaseSensitive), choice.Fields, false);
    PrintRowHeader(json);
    for (const ListRow& row : rows) {
        if (row.Selected()) {
            PrintRow(row, json);
        }
    }
    const int saved = run.Finish();
    return FinishOutput(status != kExitOk ? status : saved);
}

const CliRegistration kSelectCommand{CliCommand{
    .name = "select",
    .help =
        {
            {"select [--in FIELDS] [--case] [--json] QUERY FILE.m3u",
             "the Selection wizard: the rows of a list it would select"},
        },
    .details =
        "Opens FILE.m3u as the playlist pane would hold it and prints the rows the Selection\n"
        "wizard selects for QUERY: those whose checked columns hold QUERY as it stands,\n"
        "ignoring case unless --case is given. An empty QUERY (\"\") selects every row with a\n"
        "non-empty checked column.\n"
        "  --in FIELDS  the columns to test: names joined by commas from title, artist, album,\n"
        "               year, genre, time, bitrate, filename (the whole path), comment, or nine\n"
        "               1/0 flags in that order; default: the SelectOptions setting, or all\n"
        "               nine when it checks none (as on a fresh data folder)",
    .run = &RunSelect,
}};

}  // namespace

}  // namespace jk
