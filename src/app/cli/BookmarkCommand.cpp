// bookmark list [--json] | add NAME LOCATION | remove N

#include <span>
#include <string>

#include "app/JsonLine.h"
#include "app/Session.h"
#include "app/cli/CliContext.h"
#include "app/cli/CliRegistry.h"
#include "app/cli/CommandArgs.h"
#include "app/cli/CommandOutput.h"
#include "app/cli/SongLookupRun.h"
#include "catalogue/Bookmarks.h"
#include "util/StringHelpers.h"
#include "util/Text.h"

namespace jk {
namespace {

std::string BookmarkPath(const Session& session) {
    return session.AppPath + std::string(kBookmarkFileName);
}

int Save(const Session& session) {
    const IoResult saved = SaveBookmarks(BookmarkPath(session), session.Bookmarks);
    if (!saved.ok) {
        PrintError(saved.error);
        return kExitFailed;
    }
    return kExitOk;
}

int RunBookmark(CliContext& context, std::span<const std::string> args) {
    if (args.empty()) {
        return UsageError("bookmark needs list, add or remove");
    }
    const std::string& sub = args[0];
    if (sub == "list") {
        const CommandArgs parsed =
            ParseCommandArgs(args.subspan(1), {"--json"}, {}, "bookmark list");
        if (!parsed.error.empty() || !parsed.operands.empty()) {
            return UsageError(parsed.error.empty() ? "bookmark list takes no operand"
                                                   : parsed.error);
        }
        Session& session = context.StartedSession();
        std::size_t n = 0;
        for (const Bookmark& b : session.Bookmarks) {
            ++n;
            if (parsed.Has("--json")) {
                PrintOut(JsonLine()
                             .AddInteger("N", static_cast<std::int64_t>(n))
                             .AddText("Name", b.Name)
                             .AddText("Location", b.Location)
                             .Text());
            } else {
                PrintOut(std::to_string(n) + "\t" + b.Name + "\t" + b.Location);
            }
        }
        return FinishOutput(kExitOk);
    }
    if (sub == "add") {
        if (args.size() != 3) {
            return UsageError("bookmark add needs NAME and LOCATION");
        }
        if (!context.AcquireWriteAccess()) {
            return kExitFailed;
        }
        Session& session = context.StartedSession();
        session.Bookmarks.push_back({args[1], args[2]});
        return Save(session);
    }
    if (sub == "remove") {
        if (args.size() != 2) {
            return UsageError("bookmark remove needs N");
        }
        if (!context.AcquireWriteAccess()) {
            return kExitFailed;
        }
        Session& session = context.StartedSession();
        const double n = Val(args[1]);
        if (args[1].empty() || !IsAllDigits(args[1]) || n < 1 ||
            n > static_cast<double>(session.Bookmarks.size())) {
            PrintError("bookmark " + args[1] + ": no such bookmark");
            return kExitFailed;
        }
        session.Bookmarks.erase(session.Bookmarks.begin() + static_cast<std::ptrdiff_t>(n) - 1);
        return Save(session);
    }
    return UsageError("unknown bookmark sub-command " + sub);
}

const CliRegistration kBookmarkCommand{CliCommand{
    .name = "bookmark",
    .help =
        {
            {"bookmark list [--json]", "the bookmarks, numbered from 1"},
            {"bookmark add NAME LOCATION", "add a bookmark at the end"},
            {"bookmark remove N", "remove bookmark N"},
        },
    .details = "Bookmarks are kept in bookmark.dat of the data folder, two lines each: the name\n"
               "and the location (a folder, or a virtual folder such as \"Rock/albums\").",
    .run = &RunBookmark,
}};

}  // namespace
}  // namespace jk
