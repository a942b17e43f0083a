#pragma once

// The commands on catalogued discs, as the windows and the command-line tool run them: create,
// update, remove, rename, export, import, and the save that ends each of them. Each is one call
// on the session; a front end answers its messages and shows its progress.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "browse/FolderLister.h"
#include "catalogue/VirtualImages.h"
#include "catalogue/VirtualSummary.h"
#include "util/UserMessage.h"

namespace jk {

struct Session;

inline constexpr std::string_view kCreatingVirtualStatus = "Creating virtual drive...";
inline constexpr std::string_view kAddingVolumeCaption = "Adding new volume...";
inline constexpr std::string_view kDoneCaption = "Done.";

class VirtualFront {
public:
    virtual ~VirtualFront() = default;
    // Status panel 5.
    virtual void SetStatus(std::string_view /*text*/) {}
    // The scan window's caption and bar; false stops the scan.
    virtual bool Progress(std::string_view /*caption*/, int /*value*/, int /*maximum*/) {
        return true;
    }
    virtual void ShowMessage(const UserMessage& message) = 0;
};

// "The volume name given contains illegal characters (colons, slashes, etc), is all numeric,
// or already exists." (title "Drats!") for a name ValidVolume or UniqueVolume refuses.
UserMessage VolumeNameRefusedMessage();
// "Sorry, NAME contains illegal characters." (title "Sorry!").
UserMessage RenameRefusedMessage(std::string_view name);
// "No songs were found in PATH.  The volume NAME was left as it was." (title "Sorry...").
UserMessage NoSongsFoundMessage(std::string_view path, std::string_view name);
UserMessage ScanCutShortMessage(std::string_view path, std::string_view name, bool update);

// True when wizVirtual's Create may use the name.
bool VolumeNameAccepted(const Session& session, std::string_view name);

struct ScanOutcome {
    bool added = false;  // a volume of the name is in the table afterwards, from this scan
    bool aborted = false;
    bool cutShort = false;
    std::size_t songs = 0;
    bool saved = true;  // false: SafeCatalogue's save failed (the user was told)
};

// CreateVirtualDrive: scans `start` into a new volume `name`. The song cache is frozen during
// the scan and trimmed after; the database is marked changed in every case. With SafeCatalogue,
// a scan that finds no song or is cut short adds nothing.
ScanOutcome CreateVirtualDrive(Session& session, FolderLister& lister, const std::string& start,
                               const std::string& name, bool noCache, VirtualFront& front);

// Virtual_Update's Update: the volume `name` scanned anew from `path`; `eject` and `noCache`
// are the window's two boxes, stored as VirtualEject and VirtualNoCache, and the path joins the
// VRupdate history. Without SafeCatalogue the old volume goes before the scan, as the original
// did; with it the old volume stays unless the new scan ran to the end and found songs.
ScanOutcome VirtualUpdate(Session& session, FolderLister& lister, const std::string& name,
                          const std::string& path, bool eject, bool noCache, VirtualFront& front);

// Virtual_Remove: every named volume goes, in the order given; nothing is asked. The database
// is marked changed even when no name is given.
bool VirtualRemove(Session& session, const std::vector<std::string>& names, VirtualFront& front);

// Virtual_Rename: the new name trimmed; refused (message, false) when ValidVolume refuses it.
// Uniqueness is not tested. The tree nodes of the volume are made anew.
bool VirtualRename(Session& session, const std::string& oldName, const std::string& newName,
                   VirtualFront& front);

// Virtual_Export: the path joins the VRexport history when something was written.
ExportResult VirtualExport(Session& session, const std::vector<std::string>& names,
                           const std::string& path);
// VirtualImport_Click after the dialog: LastImport is set, the volumes join the table and get
// their tree nodes.
ImportResult VirtualImport(Session& session, const std::string& path, VirtualFront& front);

// The end of every changing command: the database is marked changed and, with SafeCatalogue,
// saved now (the backups move on at the run's first save). False when that save failed; the
// user was told.
bool VirtualCommandEnded(Session& session, VirtualFront& front);

// The save itself, as the shutdown runs it after BackupVirtualCache: master.dat and discs.dat.
IoResult SaveVirtualDatabase(Session& session);

// RefreshVirtualTree / RemoveRootNode for the session's copy of the nodes.
void RefreshVirtualTree(Session& session, std::string_view name);
void RemoveVirtualTree(Session& session, std::string_view name);

// ShiftHistory on one of the four-deep histories (elements 1..4): the entry first, without a
// repeat (compared ignoring case).
void ShiftHistory(std::string_view entry, std::array<std::string, 5>& history);

}  // namespace jk
