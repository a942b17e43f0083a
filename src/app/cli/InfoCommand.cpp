// info [--no-cache] [--json] FILE...

#include <array>
#include <span>
#include <string>
#include <string_view>

#include "app/JsonLine.h"
#include "app/Session.h"
#include "app/cli/CliContext.h"
#include "app/cli/CliRegistry.h"
#include "app/cli/CommandArgs.h"
#include "app/cli/CommandOutput.h"
#include "app/cli/ProgressLine.h"
#include "app/cli/SongLookupRun.h"
#include "catalogue/GetSongInfo.h"
#include "util/Text.h"

namespace jk {

namespace {

struct BlockLine {
    std::string_view label;
    std::string SongInfo::*field;
};

// The record's texts in its own order, the path first since it names the block.
constexpr std::array<BlockLine, 13> kBlockLines = {{
    {"Path:", &SongInfo::Path},
    {"Title:", &SongInfo::Title},
    {"Artist:", &SongInfo::Artist},
    {"Album:", &SongInfo::Album},
    {"Comment:", &SongInfo::Comment},
    {"Genre:", &SongInfo::Genre},
    {"Year:", &SongInfo::Year},
    {"Bitrate:", &SongInfo::Bitrate},
    {"Date:", &SongInfo::Date},
    {"Size:", &SongInfo::Size},
    {"Time:", &SongInfo::Time},
    {"Volume:", &SongInfo::Volume},
    {"LastUsed:", &SongInfo::LastUsed},
}};
constexpr std::size_t kLabelWidth = 10;

void PrintBlockLine(std::string_view label, std::string_view value) {
    std::string line(label);
    if (!value.empty()) {
        line.resize(kLabelWidth, ' ');
        line += value;
    }
    PrintOut(line);
}

void PrintSongBlock(const SongInfo& song) {
    for (const BlockLine& line : kBlockLines) {
        PrintBlockLine(line.label, song.*line.field);
    }
    PrintBlockLine("Reserved:", std::to_string(song.Reserved));
    PrintBlockLine("Track:", std::to_string(song.Track));
}

int RunInfo(CliContext& context, std::span<const std::string> args) {
    const CommandArgs parsed = ParseCommandArgs(args, {"--no-cache", "--json"}, {}, "info");
    if (!parsed.error.empty()) {
        return UsageError(parsed.error);
    }
    if (parsed.operands.empty()) {
        return UsageError("info needs at least one FILE");
    }
    const bool json = parsed.Has("--json");
    const bool noCache = parsed.Has("--no-cache");

    SongLookupRun run(context, false);
    SongLookup& lookup = run.Lookup();
    lookup.noCache = noCache;

    ProgressLine progress("Reading songs");
    const auto total = static_cast<std::int64_t>(parsed.operands.size());
    std::int64_t done = 0;
    bool anyFailed = false;
    bool anyPrinted = false;
    for (const std::string& arg : parsed.operands) {
        progress.Update(done++, total);
        // The song is looked up under the trimmed path, which a failure names.
        const std::string path(Trim(FullPathOf(arg)));
        const SongInfo song = GetSongInfo(path, lookup);
        progress.Finish();
        if (IsNonExistant(song)) {
            ReportUnreadable(path);
            anyFailed = true;
            // A script pairs its arguments with the lines it reads: each gets its line.
            if (json) {
                PrintOut(SongJsonLine(song));
            }
            continue;
        }
        if (json) {
            PrintOut(SongJsonLine(song));
        } else {
            if (anyPrinted) {
                PrintOut("");
            }
            PrintSongBlock(song);
        }
        anyPrinted = true;
    }

    const int saved = run.Finish();
    return FinishOutput(anyFailed ? kExitFailed : saved);
}

const CliRegistration kInfoCommand{CliCommand{
    .name = "info",
    .help =
        {
            {"info [--no-cache] [--json] FILE...", "read songs as the program lists them"},
        },
    .details =
        "Each FILE is read through the song cache of the data folder, as a folder listing\n"
        "reads it: a cached record when the file's date matches its slot, else the tags and\n"
        "the MPEG stream. Without --json each song is a block of \"Field: value\" lines, the\n"
        "blocks parted by an empty line. With --json each song is one object on a line:\n"
        "  {\"Title\":\"Blue\",\"Artist\":\"Ann\",\"Album\":\"Sea - 03\",\"Comment\":\"\",\n"
        "   \"Genre\":\"Jazz\",\"Year\":\"1999\",\"Bitrate\":\"128\",\"Date\":\"...\",\n"
        "   \"Size\":\"4022912\",\"Time\":\"04:11\",\"Path\":\"/music/blue.mp3\",\n"
        "   \"Volume\":\"\",\"LastUsed\":\"\",\"Reserved\":0,\"Track\":3}\n"
        "(shown here on four lines). Texts are JSON strings, Reserved and Track numbers.\n"
        "Album carries \" - NN\" when the song has a track number. LastUsed is the stamp of\n"
        "the song's last use when it came from the cache.\n"
        "--no-cache: songs read from disk are not added to the cache (cached ones are still\n"
        "used).\n"
        "The cache (trimmed to the cache size of the settings) and the counters of \"cache\n"
        "stats\" are saved afterwards. While the desktop program runs on the same data folder\n"
        "the songs are still printed, but nothing is saved; one line on standard error says\n"
        "so, and the exit status is not changed by it.\n"
        "A file that is missing, a folder, shorter than 132 bytes or unreadable is reported\n"
        "on standard error as \"File non-existant\"; with --json its line is the failure\n"
        "record, whose Title and Path are \"File non-existant\", so that there is one line for\n"
        "each FILE, in order. The other files are still printed, and the exit status is then 2.",
    .run = &RunInfo,
}};

}  // namespace

}  // namespace jk
