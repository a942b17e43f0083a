#include "app/VirtualDrives.h"

#include "app/Session.h"
#include "app/SongLookup.h"
#include "browse/VirtualScan.h"
#include "catalogue/CacheMaintenance.h"
#include "catalogue/VirtualFolders.h"
#include "util/PathHelpers.h"
#include "util/Text.h"
#include "util/TimeHelpers.h"
#include "util/Utf8.h"

namespace jk {
namespace {

CatalogueOptions OptionsOf(const Session& session) {
    return {session.Settings.SafeCatalogue != 0, session.Settings.DiscIdentity != 0};
}

CatalogueFiles& FilesOf(Session& session) {
    return session.Files != nullptr ? *session.Files : RealCatalogueFiles();
}

void RecordDisc(Session& session, const std::string& name, const std::string& start) {
    if (session.Settings.DiscIdentity == 0 || !session.DiscLister) {
        return;
    }
    const MountedDiscs discs = session.DiscLister();
    if (const MountedDisc* disc = DiscOfPath(discs, start)) {
        SetDiscRecord(session.Virtual.Discs, RecordOfDisc(name, *disc, NowStamp14()));
    }
}

// RecurseVirtual into a scratch volume, with the cache frozen and trimmed after.
CatalogueScanResult ScanInto(Session& session, FolderLister& lister, const std::string& start,
                             bool noCache, VirtualFront& front, VirtualVolume& scratch) {
    front.SetStatus(kCreatingVirtualStatus);
    session.CacheFrozen = 1;
    SongLookup lookup = MakeSongLookup(session);
    lookup.noCache = noCache;
    CatalogueScanSetup setup;
    setup.Lister = &lister;
    setup.Lookup = &lookup;
    setup.FilterMode = session.Settings.FilterMode;
    setup.Progress = [&front](std::string_view caption, int value, int maximum) {
        return front.Progress(caption, value, maximum);
    };
    const CatalogueScanResult result = RecurseVirtual(start, scratch, setup);
    front.Progress(kAddingVolumeCaption, 0, 0);
    return result;
}

void FinishScan(Session& session, VirtualFront& front) {
    front.Progress(kDoneCaption, 0, 0);
    session.CacheFrozen = 0;
    TrimCache(session.SongCache, session.CacheLimit, session.CacheFrozen);
    session.VirtualDirty = -1;
    front.SetStatus("");
}

void AddScanned(Session& session, VirtualVolume scratch) {
    session.Virtual.Volumes.push_back(std::move(scratch));
    session.VirtualTrees.resize(session.Virtual.Volumes.size() - 1);
    session.VirtualTrees.push_back(AddVolumeTree(session.Virtual.Volumes.back()));
}

}  // namespace

UserMessage VolumeNameRefusedMessage() {
    return {
        "The volume name given contains illegal characters (colons, slashes, etc), is all "
        "numeric, or already exists.",
        "Drats!", MessageIcon::Warning};
}

UserMessage RenameRefusedMessage(std::string_view name) {
    return {"Sorry, " + std::string(name) + " contains illegal characters.", "Sorry!",
            MessageIcon::Warning};
}

UserMessage NoSongsFoundMessage(std::string_view path, std::string_view name) {
    return {"No songs were found in " + std::string(path) + ".  The volume " + std::string(name) +
                " was left as it was.",
            "Sorry...", MessageIcon::Warning};
}

UserMessage ScanCutShortMessage(std::string_view path, std::string_view name, bool update) {
    std::string text = "The scan of " + std::string(path) + " was cut short.  ";
    text += update ? "The volume " + std::string(name) + " was left as it was."
                   : "No volume " + std::string(name) + " was added.";
    return {text, "Sorry...", MessageIcon::Warning};
}

bool VolumeNameAccepted(const Session& session, std::string_view name) {
    return ValidVolume(name) && UniqueVolume(session.Virtual.Volumes, name);
}

void ShiftHistory(std::string_view entry, std::array<std::string, 5>& history) {
    for (std::size_t i = 1; i <= 4; ++i) {
        if (EqualsNoCase(history[i], entry)) {
            std::string found = std::move(history[i]);
            for (std::size_t j = i; j > 1; --j) {
                history[j] = std::move(history[j - 1]);
            }
            history[1] = std::move(found);
            return;
        }
    }
    for (std::size_t j = 4; j > 1; --j) {
        history[j] = std::move(history[j - 1]);
    }
    history[1] = std::string(entry);
}

ScanOutcome CreateVirtualDrive(Session& session, FolderLister& lister, const std::string& start,
                               const std::string& name, bool noCache, VirtualFront& front) {
    ScanOutcome outcome;
    VirtualVolume scratch(name);
    const CatalogueScanResult scan = ScanInto(session, lister, start, noCache, front, scratch);
    outcome.aborted = scan.Aborted;
    outcome.cutShort = scan.CutShort;
    outcome.songs = scan.Songs;
    const bool safe = session.Settings.SafeCatalogue != 0;
    bool add = !scan.Aborted;
    if (safe && (scan.CutShort || scan.Songs == 0)) {
        add = false;
    }
    if (add) {
        AddScanned(session, std::move(scratch));
        RecordDisc(session, name, start);
        outcome.added = true;
    }
    FinishScan(session, front);
    if (safe && scan.CutShort && !scan.Aborted) {
        front.ShowMessage(ScanCutShortMessage(start, name, false));
    }
    outcome.saved = VirtualCommandEnded(session, front);
    return outcome;
}

ScanOutcome VirtualUpdate(Session& session, FolderLister& lister, const std::string& name,
                          const std::string& path, bool eject, bool noCache, VirtualFront& front) {
    ScanOutcome outcome;
    const bool safe = session.Settings.SafeCatalogue != 0;
    if (!safe) {
        RemoveVirtualTree(session, name);
        WipeVolume(session.Virtual.Volumes, name);
    }
    VirtualVolume scratch(name);
    const CatalogueScanResult scan = ScanInto(session, lister, path, noCache, front, scratch);
    outcome.aborted = scan.Aborted;
    outcome.cutShort = scan.CutShort;
    outcome.songs = scan.Songs;
    bool replace = !scan.Aborted;
    if (safe && (scan.CutShort || scan.Songs == 0)) {
        replace = false;
    }
    if (replace) {
        if (safe) {
            RemoveVirtualTree(session, name);
            WipeVolume(session.Virtual.Volumes, name);
        }
        AddScanned(session, std::move(scratch));
        RecordDisc(session, name, path);
        outcome.added = true;
    }
    FinishScan(session, front);
    if (safe && !replace) {
        front.ShowMessage(scan.Aborted || scan.Songs == 0 || !scan.CutShort
                              ? NoSongsFoundMessage(path, name)
                              : ScanCutShortMessage(path, name, true));
    }
    Settings& settings = session.Settings;
    ShiftHistory(path, settings.VRupdates);
    settings.VirtualEject = eject ? 1 : 0;
    settings.VirtualNoCache = noCache ? 1 : 0;
    if (eject && session.Ejector) {
        session.Ejector(std::string(Trim(path)));
    }
    outcome.saved = VirtualCommandEnded(session, front);
    return outcome;
}

bool VirtualRemove(Session& session, const std::vector<std::string>& names, VirtualFront& front) {
    for (const std::string& name : names) {
        RemoveVirtualTree(session, name);
        if (WipeVolume(session.Virtual.Volumes, name) &&
            FindVolume(session.Virtual.Volumes, name) == kNoVolume) {
            RemoveDiscRecord(session.Virtual.Discs, name);
        }
    }
    return VirtualCommandEnded(session, front);
}

bool VirtualRename(Session& session, const std::string& oldName, const std::string& newName,
                   VirtualFront& front) {
    const std::string name(Trim(newName));
    if (!ValidVolume(name)) {
        front.ShowMessage(RenameRefusedMessage(name));
        return false;
    }
    if (RenameVolume(session.Virtual.Volumes, oldName, name)) {
        RenameDiscRecord(session.Virtual.Discs, oldName, name);
    }
    RefreshVirtualTree(session, name);
    ShiftHistory(name, session.Settings.VRrenames);
    VirtualCommandEnded(session, front);
    return true;
}

ExportResult VirtualExport(Session& session, const std::vector<std::string>& names,
                           const std::string& path) {
    ExportResult result = ExportVolumes(session.Virtual.Volumes, names, path);
    if (result.written) {
        ShiftHistory(path, session.Settings.VRexports);
    }
    return result;
}

ImportResult VirtualImport(Session& session, const std::string& path, VirtualFront& front) {
    ImportResult result = ImportImage(session.Virtual, path);
    session.Settings.LastImport = path;
    for (const std::string& name : result.names) {
        RefreshVirtualTree(session, name);
    }
    VirtualCommandEnded(session, front);
    return result;
}

IoResult SaveVirtualDatabase(Session& session) {
    VirtualCatalogue& catalogue = session.Virtual;
    const CatalogueOptions options = OptionsOf(session);
    CatalogueSave save;
    save.moveBackups =
        SaveMovesBackups(catalogue, options) && (options.safe || catalogue.BackupRequested);
    save.hook = session.SaveHook;
    IoResult result = SaveVirtualCatalogue(catalogue, session.AppPath, FilesOf(session), save);
    if (result.ok) {
        catalogue.BackupRequested = false;
        if (save.moveBackups) {
            catalogue.BackupsMoved = true;
        }
    }
    return result;
}

bool VirtualCommandEnded(Session& session, VirtualFront& front) {
    session.VirtualDirty = -1;
    if (session.Settings.SafeCatalogue == 0) {
        return true;
    }
    front.SetStatus(kSavingVirtualStatus);
    const IoResult saved = SaveVirtualDatabase(session);
    front.SetStatus("");
    if (!saved.ok) {
        front.ShowMessage(CatalogueNotSavedMessage());
        return false;
    }
    session.VirtualDirty = 0;
    return true;
}

void RefreshVirtualTree(Session& session, std::string_view name) {
    VolumeTable& table = session.Virtual.Volumes;
    session.VirtualTrees.resize(table.size());
    const std::size_t v = FindVolume(table, name);
    if (v != kNoVolume) {
        session.VirtualTrees[v] = AddVolumeTree(table[v]);
    }
}

void RemoveVirtualTree(Session& session, std::string_view name) {
    const std::size_t v = FindVolume(session.Virtual.Volumes, name);
    if (v != kNoVolume && v < session.VirtualTrees.size()) {
        session.VirtualTrees.erase(session.VirtualTrees.begin() + static_cast<std::ptrdiff_t>(v));
    }
}

}  // namespace jk
