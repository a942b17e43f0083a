// cache stats | optimize | trim | flush | reset | dump [--json]

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "app/CacheSaving.h"
#include "app/JsonLine.h"
#include "app/Session.h"
#include "app/cli/CliContext.h"
#include "app/cli/CliRegistry.h"
#include "app/cli/CommandArgs.h"
#include "app/cli/CommandOutput.h"
#include "app/cli/SongLookupRun.h"
#include "catalogue/CacheMaintenance.h"
#include "catalogue/CacheStats.h"
#include "catalogue/SongCache.h"
#include "catalogue/VBaseFile.h"

namespace jk {

namespace {

void PrintLabelled(std::string_view label, std::string_view value) {
    PrintOut(std::string(label) + " " + std::string(value));
}

// A cache held back for this run's TagCodepage stays unsaved, and the user is told.
int SaveCacheOf(Session& session) {
    if (session.CacheSaveBlocked) {
        PrintError(
            "the cache was not saved: this run's TagCodepage is not the one the settings hold");
        return kExitOk;
    }
    const IoResult saved = SaveSessionCache(session);
    if (!saved.ok) {
        PrintError("cannot save the song cache: " + saved.error);
        return kExitFailed;
    }
    return kExitOk;
}

std::string RecordCount(std::int64_t count) {
    return std::to_string(count) + (count == 1 ? " record" : " records");
}

int ShowStats(CliContext& context) {
    const Session& session = CacheSession(context);
    const CacheStatsTexts texts =
        MakeCacheStatsTexts(session.Settings.TotalCacheHits, session.Settings.CacheHits,
                            session.SongCache.UpperBound(), session.CacheLimit);
    PrintLabelled(kHitAttemptsLabel, texts.hitAttempts);
    PrintLabelled(kHitsLabel, texts.hits);
    PrintLabelled(kMissesLabel, texts.misses);
    PrintLabelled(kSuccessRateLabel, texts.successRate);
    PrintLabelled(kCacheSizeLabel, texts.cacheSize);
    return FinishOutput(kExitOk);
}

int Optimize(CliContext& context) {
    if (!context.AcquireWriteAccess()) {
        return kExitFailed;
    }
    Session& session = CacheSession(context);
    const std::int64_t before = session.SongCache.UpperBound();
    const std::int64_t removed = OptimizeCache(session.SongCache, session.Settings.ExpireMode);
    const int status = SaveCacheOf(session);
    PrintOut("Removed " + std::to_string(removed) + " of " + RecordCount(before) + ".");
    return FinishOutput(status);
}

int TrimToLimit(CliContext& context) {
    if (!context.AcquireWriteAccess()) {
        return kExitFailed;
    }
    Session& session = CacheSession(context);
    const std::int64_t before = session.SongCache.UpperBound();
    TrimCache(session.SongCache, session.CacheLimit, session.CacheFrozen);
    const int status = SaveCacheOf(session);
    PrintOut("Kept " + std::to_string(session.SongCache.UpperBound()) + " of " +
             RecordCount(before) + ".");
    return FinishOutput(status);
}

int Flush(CliContext& context) {
    if (!context.AcquireWriteAccess()) {
        return kExitFailed;
    }
    Session& session = context.StartedSession();
    const std::int64_t before = session.SongCache.UpperBound();
    session.SongCache.Clear();
    // An empty cache holds no text of any code page, so it is saved even while a TagCodepage
    // of this run only holds the cache back.
    const IoResult saved = SaveCache(session.SongCache, session.AppPath);
    if (!saved.ok) {
        PrintError("cannot save the song cache: " + saved.error);
        return kExitFailed;
    }
    PrintOut("Flushed " + RecordCount(before) + ".");
    return FinishOutput(kExitOk);
}

int ResetStatistics(CliContext& context) {
    if (!context.AcquireWriteAccess()) {
        return kExitFailed;
    }
    Session& session = CacheSession(context);
    session.Settings.TotalCacheHits = 0;
    session.Settings.CacheHits = 0;
    const IoResult saved = SaveCacheCounters(session);
    if (!saved.ok) {
        PrintError("cannot save the settings: " + saved.error);
        return kExitFailed;
    }
    PrintOut("Statistics reset.");
    return FinishOutput(kExitOk);
}

// Tabs and line ends inside a text would break the columns.
std::string Cell(std::string_view text) {
    std::string cell(text);
    for (char& c : cell) {
        if (c == '\t' || c == '\n' || c == '\r') {
            c = ' ';
        }
    }
    return cell;
}

int Dump(CliContext& context, bool json) {
    const Session& session = CacheSession(context);
    if (!json) {
        PrintOut(
            "Title\tArtist\tAlbum\tYear\tGenre\tTime\tBitrate\tPath\tComment\tSize\tVolume\tDate"
            "\tLastUsed\tTrack");
    }
    std::string line;
    session.SongCache.ForEach([&](std::int64_t /*index*/, const PackedSong& record) {
        if (json) {
            PrintOut(SongJsonLine(record.ToSong()));
            return;
        }
        line.clear();
        for (const std::string_view field : record.Fields()) {
            line += Cell(field);
            line += '\t';
        }
        line += std::to_string(record.Track());
        PrintOut(line);
    });
    return FinishOutput(kExitOk);
}

int RunCache(CliContext& context, std::span<const std::string> args) {
    if (args.empty()) {
        return UsageError("cache needs stats, optimize, trim, flush, reset or dump");
    }
    const std::string& action = args[0];
    const CommandArgs parsed =
        ParseCommandArgs(args.subspan(1),
                         action == "dump" ? std::initializer_list<std::string_view>{"--json"}
                                          : std::initializer_list<std::string_view>{},
                         {}, "cache " + action);
    if (!parsed.error.empty()) {
        return UsageError(parsed.error);
    }
    if (!parsed.operands.empty()) {
        return UsageError("cache " + action + ": unexpected " + parsed.operands[0]);
    }
    if (action == "stats") {
        return ShowStats(context);
    }
    if (action == "optimize") {
        return Optimize(context);
    }
    if (action == "trim") {
        return TrimToLimit(context);
    }
    if (action == "flush") {
        return Flush(context);
    }
    if (action == "reset") {
        return ResetStatistics(context);
    }
    if (action == "dump") {
        return Dump(context, parsed.Has("--json"));
    }
    return UsageError("cache: unknown " + action +
                      "; give stats, optimize, trim, flush, reset or dump");
}

const CliRegistration kCacheCommand{CliCommand{
    .name = "cache",
    .help =
        {
            {"cache stats", "the song cache's hits, misses and size"},
            {"cache optimize", "remove expired and duplicate records from the song cache"},
            {"cache trim", "cut the song cache down to its size limit"},
            {"cache flush", "empty the song cache"},
            {"cache reset", "set the hit counters to 0"},
            {"cache dump [--json]", "print every record of the song cache as it is stored"},
        },
    .details =
        "\"cache stats\" prints the Cache Performance texts, one a line:\n"
        "  Hit attempts: 12\n"
        "  Hits: 9\n"
        "  Misses: 3\n"
        "  Success rate: 75.00%\n"
        "  Cache size: 40 / Infinity\n"
        "\"optimize\" removes records unused for the days that ExpireMode gives, and the older\n"
        "of two records of the same file name; \"trim\" keeps the most recently used records\n"
        "up to the limit that MaxCache gives. Start-up optimizes the cache already, so the\n"
        "records any command sees are the optimized ones. \"flush\" empties the cache and\n"
        "\"reset\" sets both counters to 0. These four save at once, and are refused while the\n"
        "desktop program runs on the same data folder.\n"
        "The cache holds text decoded in the TagCodepage of the settings: with --set\n"
        "TagCodepage naming another code page the cache is empty for that run, and only\n"
        "\"flush\" saves it.\n"
        "\"dump\" prints a header line and then one line a record, sorted by file name, with\n"
        "tab-separated fields as the cache stores them: Path is the file name in lower case,\n"
        "Date and LastUsed are yyyymmddhhnnss stamps, Time is MMSS. With --json each record\n"
        "is one object on a line with the song record's field names (see info --help).",
    .run = &RunCache,
}};

}  // namespace

}  // namespace jk
