// shuffle [--quick|--enhanced] [--seed N] [--write] FILE.m3u

#include <charconv>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "app/Session.h"
#include "app/cli/CliContext.h"
#include "app/cli/CliRegistry.h"
#include "app/cli/CommandArgs.h"
#include "app/cli/CommandOutput.h"
#include "app/cli/SongLookupRun.h"
#include "playback/CachedSongSource.h"
#include "playback/PlaylistCommands.h"
#include "playback/ShuffleRandom.h"
#include "playback/Shuffler.h"

namespace jk {

namespace {

std::optional<std::uint64_t> ParseSeed(const std::string& text) {
    std::uint64_t seed = 0;
    const char* end = text.data() + text.size();
    const auto [at, error] = std::from_chars(text.data(), end, seed);
    if (text.empty() || error != std::errc() || at != end) {
        return std::nullopt;
    }
    return seed;
}

int RunShuffle(CliContext& context, std::span<const std::string> args) {
    const CommandArgs parsed =
        ParseCommandArgs(args, {"--quick", "--enhanced", "--write"}, {"--seed"}, "shuffle");
    if (!parsed.error.empty()) {
        return UsageError(parsed.error);
    }
    if (parsed.operands.size() != 1) {
        return UsageError("shuffle needs one FILE");
    }
    if (parsed.Has("--quick") && parsed.Has("--enhanced")) {
        return UsageError("shuffle: give --quick or --enhanced, not both");
    }
    std::optional<std::uint64_t> seed;
    if (const std::string* text = parsed.Value("--seed")) {
        seed = ParseSeed(*text);
        if (!seed) {
            return UsageError("shuffle: --seed takes a whole number from 0, not \"" + *text + "\"");
        }
    }
    const bool write = parsed.Has("--write");
    const std::string listPath = FullPathOf(parsed.operands[0]);
    if (write && !context.AcquireWriteAccess()) {
        return kExitFailed;
    }

    SongLookupRun run(context, write);
    Session& session = run.TheSession();
    PlaylistState& list = session.Playlist;
    if (!run.OpenListFile(list, listPath)) {
        run.Finish();
        return FinishOutput(kExitFailed);
    }

    const bool enhanced = parsed.Has("--quick") || parsed.Has("--enhanced")
                              ? parsed.Has("--enhanced")
                              : UseEnhancedShuffle(session.Settings.QuickShuffle);
    ShuffleRandom random = seed ? ShuffleRandom(*seed) : ShuffleRandom();
    ShuffleListRows(list.Rows, false, enhanced, random);
    list.PlaylistSaved = false;
    for (const ListRow& row : list.Rows) {
        PrintOut(row.Get(Column::Filename));
    }

    const int status = write && !run.SaveListFile(list, listPath) ? kExitFailed : kExitOk;
    const int cacheSaved = run.Finish();
    return FinishOutput(status != kExitOk ? status : cacheSaved);
}

const CliRegistration kShuffleCommand{CliCommand{
    .name = "shuffle",
    .help =
        {
            {"shuffle [--quick|--enhanced] [--seed N] [--write] FILE",
             "print a playlist's songs in shuffled order"},
        },
    .details =
        "Opens FILE as \"playlist show\" does (HideGhosts leaves ghosts out), shuffles its\n"
        "rows and prints their paths, one a line. --quick is a plain shuffle; --enhanced\n"
        "keeps songs of the same artist apart where it can, the first and last place counted\n"
        "as neighbours. Without either, the QuickShuffle setting decides: the plain shuffle\n"
        "when it is 1, else the enhanced one.\n"
        "--seed N (0 or more) gives the same order each time for the same list and seed;\n"
        "without it the order is seeded from the time of day.\n"
        "--write saves the shuffled list back to FILE as the program saves a list (relative\n"
        "paths when RelativePaths is 1, CR LF, replaced in one step); it is refused while the\n"
        "desktop program runs on the same data folder.",
    .run = &RunShuffle,
}};

}  // namespace

}  // namespace jk
