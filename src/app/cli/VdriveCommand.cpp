// vdrive list|create|update|remove|rename|summary|ls|export|import|where|restore, and eject

#include <span>
#include <string>

#include "app/JsonLine.h"
#include "app/Session.h"
#include "app/cli/CliContext.h"
#include "app/cli/CliRegistry.h"
#include "app/cli/CommandArgs.h"
#include "app/cli/CommandOutput.h"
#include "app/cli/InterruptStop.h"
#include "app/cli/SongLookupRun.h"
#include "app/cli/VdriveSupport.h"
#include "browse/VirtualListing.h"
#include "catalogue/InsertDisc.h"
#include "catalogue/VolumeFile.h"
#include "platform/DirectoryListing.h"
#include "platform/DiscMounts.h"
#include "util/FileIo.h"
#include "util/PathHelpers.h"
#include "util/Text.h"
#include "util/TimeHelpers.h"

namespace jk {
namespace {

using Args = std::span<const std::string>;

int List(CliContext& context, Args args) {
    const CommandArgs parsed = ParseCommandArgs(args, {"--json"}, {}, "vdrive list");
    if (!parsed.error.empty() || !parsed.operands.empty()) {
        return UsageError(parsed.error.empty() ? "vdrive list takes no operand" : parsed.error);
    }
    const bool json = parsed.Has("--json");
    Session& session = VirtualSession(context);
    const MountedDiscs discs = ListMountedDiscs();
    const bool exact = session.Settings.ExactTimes != 0;
    if (!json) {
        PrintOut("Name\tSongs\tSize\tTime\tPresent\tLabel\tUUID");
    }
    for (const VirtualVolume& volume : session.Virtual.Volumes) {
        VolumeTable one;
        const VirtualSummary summary = [&] {
            VirtualSummary s;
            for (std::size_t i = 0; i < volume.Count(); ++i) {
                s.Seconds += ParseTime(volume.Field(i, kKeyTime), exact);
                s.Bytes += Val(volume.Field(i, kKeySize));
            }
            s.SizeText = SummarySizeText(s.Bytes);
            s.TimeText = FormatHMS(s.Seconds);
            return s;
        }();
        const DiscRecord* record = FindDiscRecord(session.Virtual.Discs, volume.Name);
        const MountedDisc* disc = FindVolumeDisc(volume.Name, session.Virtual.Discs, discs);
        const std::string present = disc != nullptr ? disc->MountRoot : "";
        const std::string label = record != nullptr ? record->Label : "";
        const std::string uuid = record != nullptr ? record->Uuid : "";
        if (json) {
            PrintOut(JsonLine()
                         .AddText("Name", volume.Name)
                         .AddInteger("Songs", static_cast<std::int64_t>(volume.Count()))
                         .AddText("Size", summary.SizeText)
                         .AddText("Time", summary.TimeText)
                         .AddText("Present", present)
                         .AddText("Label", label)
                         .AddText("UUID", uuid)
                         .Text());
        } else {
            PrintOut(TabbedLine({volume.Name, std::to_string(volume.Count()), summary.SizeText,
                                 summary.TimeText, present, label, uuid}));
        }
    }
    return FinishOutput(kExitOk);
}

int ReportScan(const ScanOutcome& outcome, const std::string& name, CliVirtualFront& front,
               int saved) {
    if (outcome.aborted) {
        PrintError("the scan was stopped; " + name + " was not changed");
        return kExitInterrupted;
    }
    if (!outcome.added) {
        if (!front.Told()) {
            PrintError("no songs were found; no volume " + name + " was added");
        }
        return kExitFailed;
    }
    PrintOut(name + ": " + std::to_string(outcome.songs) + " songs");
    if (!outcome.saved) {
        return kExitFailed;
    }
    return FinishOutput(saved);
}

int Create(CliContext& context, Args args) {
    const CommandArgs parsed =
        ParseCommandArgs(args, {"--no-cache", "--eject"}, {"--name"}, "vdrive create");
    if (!parsed.error.empty()) {
        return UsageError(parsed.error);
    }
    if (parsed.operands.size() != 1) {
        return UsageError("vdrive create needs one PATH");
    }
    const std::string start = FullPathOf(parsed.operands[0]);
    if (!FolderExists(start)) {
        PrintError(start + ": no such folder");
        return kExitFailed;
    }
    if (!context.AcquireWriteAccess()) {
        return kExitFailed;
    }
    SongLookupRun run(context, true);
    Session& session = VirtualSession(context);
    if (!MayChangeCatalogue(context, session)) {
        return kExitFailed;
    }
    std::string name;
    if (const std::string* given = parsed.Value("--name")) {
        name = std::string(Trim(*given));
    } else {
        const MountedDiscs discs = ListMountedDiscs();
        const MountedDisc* disc = DiscOfPath(discs, start);
        name = disc != nullptr ? std::string(Trim(disc->Label)) : std::string();
        if (name.empty()) {
            PrintError(start + ": the disc has no label; give --name NAME");
            return kExitUsage;
        }
    }
    CliVirtualFront front;
    if (!VolumeNameAccepted(session, name)) {
        front.ShowMessage(VolumeNameRefusedMessage());
        return kExitFailed;
    }
    PosixFolderLister lister;
    const bool noCache = parsed.Has("--no-cache") || session.Settings.VirtualNoCache != 0;
    const ScanOutcome outcome = CreateVirtualDrive(session, lister, start, name, noCache, front);
    const int saved = SaveCatalogueAsShutdown(session, front);
    const int cacheSaved = run.Finish();
    if (outcome.added && parsed.Has("--eject")) {
        EjectDisc(start);
    }
    return ReportScan(outcome, name, front, saved != kExitOk ? saved : cacheSaved);
}

int Update(CliContext& context, Args args) {
    const CommandArgs parsed =
        ParseCommandArgs(args, {"--no-cache", "--eject"}, {}, "vdrive update");
    if (!parsed.error.empty()) {
        return UsageError(parsed.error);
    }
    if (parsed.operands.size() != 2) {
        return UsageError("vdrive update needs NAME and PATH");
    }
    const std::string& name = parsed.operands[0];
    const std::string path = FullPathOf(parsed.operands[1]);
    if (!context.AcquireWriteAccess()) {
        return kExitFailed;
    }
    SongLookupRun run(context, true);
    Session& session = VirtualSession(context);
    if (!MayChangeCatalogue(context, session)) {
        return kExitFailed;
    }
    if (FindVolume(session.Virtual.Volumes, name) == kNoVolume) {
        PrintError(name + ": no such volume");
        return kExitFailed;
    }
    CliVirtualFront front;
    PosixFolderLister lister;
    const ScanOutcome outcome =
        VirtualUpdate(session, lister, name, path, parsed.Has("--eject"),
                      parsed.Has("--no-cache") || session.Settings.VirtualNoCache != 0, front);
    const int saved = SaveCatalogueAsShutdown(session, front);
    const int cacheSaved = run.Finish();
    return ReportScan(outcome, name, front, saved != kExitOk ? saved : cacheSaved);
}

int Remove(CliContext& context, Args args) {
    if (args.empty()) {
        return UsageError("vdrive remove needs NAME...");
    }
    Session& session = VirtualSession(context);
    if (!MayChangeCatalogue(context, session)) {
        return kExitFailed;
    }
    const std::vector<std::string> names(args.begin(), args.end());
    for (const std::string& name : names) {
        if (FindVolume(session.Virtual.Volumes, name) == kNoVolume) {
            PrintError(name + ": no such volume; nothing was removed");
            return kExitFailed;
        }
    }
    CliVirtualFront front;
    if (!VirtualRemove(session, names, front)) {
        return kExitFailed;
    }
    return SaveCatalogueAsShutdown(session, front);
}

int Rename(CliContext& context, Args args) {
    if (args.size() != 2) {
        return UsageError("vdrive rename needs OLD and NEW");
    }
    Session& session = VirtualSession(context);
    if (!MayChangeCatalogue(context, session)) {
        return kExitFailed;
    }
    if (FindVolume(session.Virtual.Volumes, args[0]) == kNoVolume) {
        PrintError(args[0] + ": no such volume");
        return kExitFailed;
    }
    CliVirtualFront front;
    if (!VirtualRename(session, args[0], args[1], front) || session.VirtualDirty != 0) {
        const int saved = SaveCatalogueAsShutdown(session, front);
        return front.Told() ? kExitFailed : saved;
    }
    return kExitOk;
}

int Summary(CliContext& context, Args args) {
    if (!args.empty()) {
        return UsageError("vdrive summary takes no operand");
    }
    Session& session = VirtualSession(context);
    const VirtualSummary s =
        SummarizeVolumes(session.Virtual.Volumes, session.Settings.ExactTimes != 0);
    PrintOut("Total drives: " + std::to_string(s.Drives));
    PrintOut("Total songs: " + std::to_string(s.Songs));
    PrintOut("Total size: " + s.SizeText);
    PrintOut("Total playing time: " + s.TimeText);
    return FinishOutput(kExitOk);
}

int Ls(CliContext& context, Args args) {
    const CommandArgs parsed =
        ParseCommandArgs(args, {"--recurse", "--json", "--all"}, {}, "vdrive ls");
    if (!parsed.error.empty()) {
        return UsageError(parsed.error);
    }
    const bool all = parsed.Has("--all");
    if (all != parsed.operands.empty() || parsed.operands.size() > 1) {
        return UsageError("vdrive ls needs one VPATH, or --all");
    }
    Session& session = VirtualSession(context);
    const bool exact = session.Settings.ExactTimes != 0;
    RowList rows;
    if (all) {
        RecurseAllVirtual(session.Virtual.Volumes, rows, exact);
    } else {
        const std::string& key = parsed.operands[0];
        if (FindVolume(session.Virtual.Volumes, SplitVirtualKey(key).Volume) == kNoVolume) {
            PrintError(key + ": no such volume");
            return kExitFailed;
        }
        if (parsed.Has("--recurse")) {
            RecurseDirVirtual(session.Virtual.Volumes, key, rows, exact);
        } else {
            GetVirtualFolder(session.Virtual.Volumes, key, rows, exact);
        }
    }
    const bool json = parsed.Has("--json");
    PrintRowHeader(json);
    for (const ListRow& row : rows) {
        PrintRow(row, json);
    }
    return FinishOutput(kExitOk);
}

int Export(CliContext& context, Args args) {
    if (args.size() < 2) {
        return UsageError("vdrive export needs FILE.jvd and NAME...");
    }
    Session& session = VirtualSession(context);
    const std::vector<std::string> names(args.begin() + 1, args.end());
    for (const std::string& name : names) {
        if (FindVolume(session.Virtual.Volumes, name) == kNoVolume) {
            PrintError(name + ": no such volume; nothing was written");
            return kExitFailed;
        }
    }
    const std::string path = FullPathOf(args[0]);
    const ExportResult result = VirtualExport(session, names, path);
    if (!result.io.ok) {
        PrintError(result.io.error);
        return kExitFailed;
    }
    PrintOut(path + ": " + std::to_string(result.songs) + " songs");
    return FinishOutput(kExitOk);
}

int Import(CliContext& context, Args args) {
    if (args.size() != 1) {
        return UsageError("vdrive import needs one FILE.jvd");
    }
    const std::string path = FullPathOf(args[0]);
    if (!FileExists(path)) {
        PrintError(path + ": no such file");
        return kExitFailed;
    }
    Session& session = VirtualSession(context);
    if (!MayChangeCatalogue(context, session)) {
        return kExitFailed;
    }
    CliVirtualFront front;
    const ImportResult result = VirtualImport(session, path, front);
    const int saved = SaveCatalogueAsShutdown(session, front);
    for (const std::string& name : result.names) {
        PrintOut(name);
    }
    if (!result.ok) {
        PrintError(path +
                   ": the file is damaged; the volumes read before the damage were "
                   "imported");
        return kExitFailed;
    }
    return FinishOutput(front.Told() ? kExitFailed : saved);
}

int Where(CliContext& context, Args args) {
    if (args.empty()) {
        return UsageError("vdrive where needs PATH...");
    }
    Session& session = VirtualSession(context);
    const MountedDiscs discs = ListMountedDiscs();
    const VolumeTable& table = session.Virtual.Volumes;
    for (const std::string& path : args) {
        std::string volume;
        for (std::size_t v = 0; v < table.size() && volume.empty(); ++v) {
            for (std::size_t i = 0; i < table[v].Count(); ++i) {
                if (table[v].PathOf(i) == path) {
                    volume = table[v].Name;
                    break;
                }
            }
        }
        if (volume.empty()) {
            PrintOut(path + "\t\tnot catalogued");
            continue;
        }
        const MountedDisc* disc = FindVolumeDisc(volume, session.Virtual.Discs, discs);
        if (disc != nullptr) {
            PrintOut(TabbedLine(
                {path, volume,
                 "present at " +
                     ResolveSongPath(path, FindDiscRecord(session.Virtual.Discs, volume), *disc)}));
        } else {
            PrintOut(TabbedLine({path, volume, "insert disc " + volume}));
        }
    }
    return FinishOutput(kExitOk);
}

int Restore(CliContext& context, Args args) {
    if (args.size() != 1 || (args[0] != "da2" && args[0] != "da3")) {
        return UsageError("vdrive restore needs da2 or da3");
    }
    if (!context.AcquireWriteAccess()) {
        return kExitFailed;
    }
    const std::string folder = context.DataFolder();
    const std::string backup = JoinPath(folder, "master." + args[0]);
    VirtualCatalogue check;
    bool ready = false;
    if (!FileExists(backup) || !LoadDatabaseFile(backup, check, true, ready)) {
        PrintError(backup + " does not load whole; nothing was changed");
        return kExitFailed;
    }
    std::string bytes;
    const std::string master = JoinPath(folder, kMasterFileName);
    if (FileExists(master)) {
        std::string current;
        const IoResult read = ReadWholeFile(master, current, std::int64_t{4} << 30);
        const IoResult kept = read.ok ? WriteFileAtomically(master + ".replaced", current) : read;
        if (!kept.ok) {
            PrintError("cannot keep the current master.dat: " + kept.error);
            return kExitFailed;
        }
    }
    IoResult copied = ReadWholeFile(backup, bytes, std::int64_t{4} << 30);
    if (copied.ok) {
        copied = WriteFileAtomically(master, bytes);
    }
    if (!copied.ok) {
        PrintError(copied.error);
        return kExitFailed;
    }
    PrintOut("master.dat restored from master." + args[0] + "; the file it replaced is " +
             "master.dat.replaced");
    return FinishOutput(kExitOk);
}

struct Sub {
    std::string_view name;
    int (*run)(CliContext&, Args);
};

constexpr Sub kSubs[] = {{"list", &List},     {"create", &Create},  {"update", &Update},
                         {"remove", &Remove}, {"rename", &Rename},  {"summary", &Summary},
                         {"ls", &Ls},         {"export", &Export},  {"import", &Import},
                         {"where", &Where},   {"restore", &Restore}};

int RunVdrive(CliContext& context, Args args) {
    if (args.empty()) {
        return UsageError("vdrive needs a sub-command");
    }
    for (const Sub& sub : kSubs) {
        if (args[0] == sub.name) {
            return sub.run(context, args.subspan(1));
        }
    }
    return UsageError("unknown vdrive sub-command " + args[0]);
}

int RunEject(CliContext& /*context*/, Args args) {
    if (args.size() != 1) {
        return UsageError("eject needs one PATH");
    }
    EjectDisc(FullPathOf(args[0]));
    return kExitOk;
}

const CliRegistration kVdriveCommand{CliCommand{
    .name = "vdrive",
    .help =
        {
            {"vdrive list [--json]", "the catalogued discs: songs, size, time, presence"},
            {"vdrive create [--name N] [--no-cache] [--eject] PATH", "catalogue a disc"},
            {"vdrive update NAME PATH", "catalogue a volume's disc anew"},
            {"vdrive remove NAME...", "remove catalogued volumes"},
            {"vdrive rename OLD NEW", "rename a catalogued volume"},
            {"vdrive summary", "totals of every catalogued volume"},
            {"vdrive ls [--recurse] [--json] VPATH|--all", "songs of a virtual folder"},
            {"vdrive export FILE.jvd NAME...", "write volumes to an image"},
            {"vdrive import FILE.jvd", "add the volumes of an image"},
            {"vdrive where PATH...", "the volume of a song, and its disc"},
            {"vdrive restore da2|da3", "put a backup of the catalogue back in place"},
        },
    .details =
        "Works on master.dat of the data folder (the catalogue of discs), its backups master.da2\n"
        "and master.da3, and discs.dat (which disc each volume came from).\n"
        "A VPATH is a volume's name followed by a folder of the disc, as the folder tree keys\n"
        "it: \"Rock/albums/1999\"; the volume's name alone is the disc's root.\n"
        "create names the volume after the disc's label unless --name is given; the name must\n"
        "not hold \\, / or : nor be all digits, and no volume may have it already.\n"
        "Changing commands refuse while the desktop program runs, and save as it would when\n"
        "it closes; with SafeCatalogue on, the backups move on once per run.\n"
        "restore keeps the file it replaces as master.dat.replaced.",
    .run = &RunVdrive,
}};

const CliRegistration kEjectCommand{CliCommand{
    .name = "eject",
    .help = {{"eject PATH", "open the door of the drive that holds PATH"}},
    .details =
        "Unmounts the removable or optical medium that holds PATH and ejects it; says nothing.",
    .run = &RunEject,
}};

}  // namespace
}  // namespace jk
