// drives [--json]

#include <span>
#include <string>

#include "app/JsonLine.h"
#include "app/Session.h"
#include "app/cli/CliContext.h"
#include "app/cli/CliRegistry.h"
#include "app/cli/CommandArgs.h"
#include "app/cli/CommandOutput.h"
#include "platform/Drives.h"

namespace jk {

namespace {

std::string DriveJsonLine(const DriveRoot& drive) {
    return JsonLine()
        .AddText("Root", drive.Root)
        .AddText("Text", drive.Text)
        .AddText("Label", drive.Label)
        .AddInteger("Type", drive.Type)
        .AddBool("HomeShortcut", drive.HomeShortcut)
        .Text();
}

std::string DriveTextLine(const DriveRoot& drive) {
    return drive.Root + '\t' + drive.Label + '\t' + std::to_string(drive.Type) + '\t' +
           (drive.HomeShortcut ? "home" : "");
}

int RunDrives(CliContext& context, std::span<const std::string> args) {
    const CommandArgs parsed = ParseCommandArgs(args, {"--json"}, {}, "drives");
    if (!parsed.error.empty()) {
        return UsageError(parsed.error);
    }
    if (!parsed.operands.empty()) {
        return UsageError("drives: unexpected " + parsed.operands[0]);
    }
    const bool json = parsed.Has("--json");
    Session& session = context.StartedSession();
    // The tree's own start-up step, given this machine's drives.
    session.DriveLister = [] { return ListDrives(); };
    context.Data().InitializeDrives(session);

    if (!json) {
        PrintOut("Root\tLabel\tType\tShortcut");
    }
    for (const DriveRoot& drive : session.Drives) {
        PrintOut(json ? DriveJsonLine(drive) : DriveTextLine(drive));
    }
    return FinishOutput(kExitOk);
}

const CliRegistration kDrivesCommand{CliCommand{
    .name = "drives",
    .help =
        {
            {"drives [--json]", "the drive roots of the folder tree"},
        },
    .details =
        "Prints every root the folder tree shows, in its order: \"/\" first, then each mounted\n"
        "filesystem a user browses (other disks, removable and optical media, network\n"
        "shares) by mount point, then the home folder as a shortcut, which whole-computer\n"
        "walks leave out. A drive that is not ready is not shown.\n"
        "Without --json: a header line, then one line a root with tab-separated columns:\n"
        "the mount point, the volume label (the filesystem's label, else the mount point's\n"
        "last folder; empty for \"/\"), the type number (1 fixed disk, 3 optical, 4 network,\n"
        "5 removable) and \"home\" for the home shortcut.\n"
        "With --json each root is one object on a line:\n"
        "  {\"Root\":\"/media/ann/USB\",\"Text\":\"USB\",\"Label\":\"USB\",\"Type\":5,\n"
        "   \"HomeShortcut\":false}\n"
        "(shown here on two lines); Text is what the tree shows.",
    .run = &RunDrives,
}};

}  // namespace

}  // namespace jk
