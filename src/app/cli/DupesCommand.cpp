// dupes [--by title|artist|album|size|filename] [--folder DIR] [--playlist FILE.m3u]
//       [--virtual] [--show folder|playlist|virtual] [--json] [--propose [--trash --yes]]

#include <array>
#include <optional>
#include <span>
#include <string>

#include "app/JsonLine.h"
#include "app/Session.h"
#include "app/cli/CliContext.h"
#include "app/cli/CliRegistry.h"
#include "app/cli/CommandArgs.h"
#include "app/cli/CommandOutput.h"
#include "app/cli/FinderArgs.h"
#include "app/cli/SongLookupRun.h"
#include "browse/FolderScan.h"
#include "finders/BestCopies.h"
#include "finders/DuplicateArray.h"
#include "finders/DuplicateFinder.h"
#include "finders/ResultRows.h"
#include "finders/TrashRows.h"
#include "platform/DirectoryListing.h"
#include "platform/FileOperations.h"
#include "playback/CachedSongSource.h"
#include "playback/PlaylistCommands.h"
#include "util/FileIo.h"
#include "util/PathHelpers.h"
#include "util/Utf8.h"

namespace jk {

namespace {

constexpr std::array<std::string_view, 5> kByNames = {"title", "artist", "album", "size",
                                                      "filename"};
constexpr std::array<std::string_view, 3> kShowNames = {"folder", "playlist", "virtual"};

int IndexOf(std::span<const std::string_view> names, std::string_view name) {
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (EqualsNoCase(names[i], name)) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

void PrintListed(const DupeListed& row, const CopyProposal* proposal, std::size_t index,
                 bool json) {
    std::string verdict;
    if (proposal != nullptr) {
        verdict = proposal->Keep[index] ? "keep" : proposal->Select[index] ? "trash" : "stay";
    }
    if (json) {
        JsonLine line;
        const auto& captions = ColumnCaptions();
        for (std::size_t c = 0; c < kColumnCount; ++c) {
            line.AddText(captions[c], row.Row.Get(c));
        }
        line.AddInteger("Group", static_cast<std::int64_t>(row.Group + 1));
        if (proposal != nullptr) {
            line.AddText("Proposal", verdict);
        }
        PrintOut(line.Text());
        return;
    }
    if (proposal != nullptr) {
        std::string line = verdict + "\t";
        for (std::size_t c = 0; c < kColumnCount; ++c) {
            line.append(c == 0 ? "" : "\t").append(row.Row.Get(c));
        }
        PrintOut(line);
        return;
    }
    PrintRow(row.Row, false);
}

int RunDupes(CliContext& context, std::span<const std::string> args) {
    const CommandArgs parsed =
        ParseCommandArgs(args, {"--virtual", "--json", "--propose", "--trash", "--yes"},
                         {"--by", "--folder", "--playlist", "--show"}, "dupes");
    if (!parsed.error.empty()) {
        return UsageError(parsed.error);
    }
    if (!parsed.operands.empty()) {
        return UsageError("dupes: unexpected " + parsed.operands[0]);
    }
    const bool propose = parsed.Has("--propose");
    const bool trash = parsed.Has("--trash");
    if (trash && !propose) {
        return UsageError("--trash moves the copies that --propose offers: give both");
    }
    if (trash && !parsed.Has("--yes")) {
        return UsageError("--trash moves files to the trash: refused without --yes");
    }
    const std::string* folder = parsed.Value("--folder");
    const std::string* list = parsed.Value("--playlist");
    const bool virtualDrives = parsed.Has("--virtual");
    if (folder == nullptr && list == nullptr && !virtualDrives) {
        return UsageError("dupes compares songs from --folder, --playlist or --virtual");
    }

    SongLookupRun run(context, false);
    Session& session = run.TheSession();
    int criterion = session.Settings.DupeCriteria;
    int show = session.Settings.DupeShowCriteria;
    if (const std::string* by = parsed.Value("--by")) {
        criterion = IndexOf(kByNames, *by);
        if (criterion < 0) {
            return UsageError("--by is one of title, artist, album, size, filename");
        }
    }
    if (const std::string* chosen = parsed.Value("--show")) {
        show = IndexOf(kShowNames, *chosen);
        if (show < 0) {
            return UsageError("--show is one of folder, playlist, virtual");
        }
    }
    if (criterion < 0 || criterion >= static_cast<int>(kDupeCriteria.size())) {
        criterion = 4;
    }

    // The sources in the finder's order: playlist, current folder, catalogue.
    DupeArray records;
    std::optional<VolumeTableView> catalogue;
    int status = kExitOk;
    if (list != nullptr) {
        const std::string listPath = FullPathOf(*list);
        PlaylistState playlist;
        if (!run.OpenListFile(playlist, listPath)) {
            return FinishOutput(kExitFailed);
        }
        records.AddRows(playlist.Rows, kSourcePlaylist);
    }
    if (folder != nullptr) {
        std::string path = FullPathOf(*folder);
        if (!FolderExists(path)) {
            PrintError(path + ": no such folder");
            return kExitFailed;
        }
        PosixFolderLister lister;
        RowList files;
        GetFolderNow(path, files, run.Walk(lister));
        records.AddRows(files, kSourceFolder);
    }
    if (virtualDrives) {
        catalogue.emplace(SessionCatalogue(session));
        records.AddCatalogue(*catalogue);
    }
    const std::vector<DupeMember> members = records.Group(criterion, ShowBit(show));
    const bool json = parsed.Has("--json");
    if (!json) {
        std::string header = propose ? "Proposal\t" : "";
        for (const std::string_view caption : ColumnCaptions()) {
            header.append(caption).append("\t");
        }
        header.pop_back();
        PrintOut(header);
    }
    ResultsTally tally(session.Settings.ExactTimes != 0);
    if (!propose) {
        // Each row made as it is printed: a million of them are never held at once.
        for (std::size_t i = 0; i < members.size(); ++i) {
            const DupeListed row = records.Listed(members[i]);
            PrintListed(row, nullptr, i, json);
            tally.Add(row.Row);
        }
        std::fprintf(stderr, "%s\n", tally.Text().c_str());
        const int saved = run.Finish();
        return FinishOutput(saved);
    }

    std::vector<DupeListed> listed;
    listed.reserve(members.size());
    for (const DupeMember& member : members) {
        listed.push_back(records.Listed(member));
    }
    const CopyProposal proposal = ProposeBestCopies(listed, [](const DupeListed& row) {
        const std::string path(row.Row.Get(Column::Filename));
        return IsRealPath(path) && FileExists(path);
    });
    for (std::size_t i = 0; i < listed.size(); ++i) {
        PrintListed(listed[i], &proposal, i, json);
        tally.Add(listed[i].Row);
    }
    std::fprintf(stderr, "%s\n", tally.Text().c_str());
    if (trash) {
        RowList rows;
        rows.reserve(listed.size());
        for (DupeListed& l : listed) {
            rows.push_back(std::move(l.Row));
        }
        const TrashOutcome outcome =
            TrashSelectedRows(rows, proposal.Select, [](const std::string& path, std::string& why) {
                const FileResult result = MoveToTrash(path);
                why = result.error;
                return result.ok;
            });
        if (!outcome.Failed.empty()) {
            std::string line =
                std::to_string(outcome.Failed.size()) + " file(s) could not be moved to the trash:";
            for (const auto& [path, why] : outcome.Failed) {
                line.append(" ").append(path).append(" (").append(why).append(");");
            }
            line.pop_back();
            PrintError(line);
            status = kExitFailed;
        }
        std::fprintf(stderr, "%zu file(s) moved to the trash\n", outcome.Removed.size());
    }
    const int saved = run.Finish();
    return FinishOutput(status != kExitOk ? status : saved);
}

const CliRegistration kDupesCommand{CliCommand{
    .name = "dupes",
    .help =
        {
            {"dupes [--by KEY] [--folder DIR] [--playlist FILE.m3u] [--virtual] [--show SOURCE] "
             "[--json]",
             "the Duplicate Finder: runs of songs with equal keys"},
            {"dupes ... --propose [--trash --yes]",
             "the copies to keep and those to trash, and moving them to the trash"},
        },
    .details =
        "Gathers the songs of a list (--playlist), a folder (--folder, its own files as the\n"
        "files pane lists them) and the catalogued discs (--virtual), in that order, sorts them\n"
        "on one key by the Duplicate Finder's own sort and lists each run of neighbours whose\n"
        "keys are equal ignoring case, as the finder does (the run right behind a group is\n"
        "never the start of one, and an empty key never groups):\n"
        "  --by title|artist|album|size|filename  the key (default: DupeCriteria); size sorts\n"
        "               by number and groups by text; filename sorts by the bare name and\n"
        "               groups by the whole path, so only the very same file pairs up\n"
        "  --show folder|playlist|virtual  list a group when one of its songs comes from that\n"
        "               source (default: DupeShowCriteria)\n"
        "Rows are printed as the finder's list shows them; with --json each has its \"Group\".\n"
        "--propose adds a first column (\"Proposal\" in JSON): \"keep\" for the copy each group\n"
        "keeps (a file here before one only catalogued, then the higher bitrate, the longer\n"
        "time, the larger size, the newer date, then the first), \"trash\" for each other copy\n"
        "that is a file here, \"stay\" for the rest. With --trash --yes the \"trash\" copies are\n"
        "moved to the desktop's trash; nothing is ever deleted for good, and a file that cannot\n"
        "go to the trash is named on standard error (exit status 2).",
    .run = &RunDupes,
}};

}  // namespace

}  // namespace jk
