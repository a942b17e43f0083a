#pragma once

// The virtual drive database as the program holds it for a run, and its loading and saving:
// master.dat with its two older generations master.da2 and master.da3, and discs.dat beside
// them. Every file is written under a temporary name, flushed and renamed into place, so that
// at every moment each of them is a whole file.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/CatalogueFiles.h"
#include "catalogue/DiscRecords.h"
#include "catalogue/VBaseFile.h"
#include "catalogue/VirtualVolumes.h"
#include "util/UserMessage.h"

namespace jk {

inline constexpr std::string_view kSavingVirtualStatus = "Saving virtual drives...";
inline constexpr std::string_view kBackingUpVirtualStatus = "Backing up virtual cache...";

struct VirtualCatalogue {
    VolumeTable Volumes;                 // VirtualVolumes
    std::vector<SongInfo> VirtualDrive;  // the flat passing form of an older file or an image
    DiscRecords Discs;                   // the discs the volumes came from
    // master.dat loaded whole (or was missing): only then may this run move the backups on
    // under SafeCatalogue.
    bool LoadedWhole = false;
    // The generations have moved on in this run already.
    bool BackupsMoved = false;
    // BackupVirtualCache asked the next save to move the generations on first.
    bool BackupRequested = false;
};

struct CatalogueOptions {
    bool safe = false;          // SafeCatalogue
    bool discIdentity = false;  // DiscIdentity
};

// The questions and messages of loading and saving; the front end answers them.
class CatalogueQuestions {
public:
    virtual ~CatalogueQuestions() = default;
    virtual bool AskYesNo(const UserMessage& question) = 0;
    virtual void ShowMessage(const UserMessage& message) = 0;
    // The splash's progress box is cleared before a backup loads.
    virtual void ClearProgress() {}
};

UserMessage LoadBackupQuestion();
UserMessage LoadOlderBackupQuestion();
UserMessage CatalogueBeyondRepairMessage();
UserMessage CatalogueNotSavedMessage();

// The temporary files of an interrupted save are removed (at start-up, before loading).
void RemoveSaveLeftovers(CatalogueFiles& files, const std::string& folder);

// LoadVirtualCache: master.dat, falling back on the backups as the user agrees. Returns true
// when the database was read in its per-volume form (VolumesReady); false leaves an older flat
// file in VirtualDrive for BuildVirtualVolumes. Also reads discs.dat.
bool LoadVirtualCache(VirtualCatalogue& catalogue, const std::string& folder,
                      const CatalogueOptions& options, CatalogueQuestions& questions,
                      const LoadProgress& progress = {});

// One database file as LoadVBase reads it: "VBASE" gives LoadVolumes into the table; any other
// text the older flat form into VirtualDrive. With `strict` (SafeCatalogue), a file that is
// empty or holds neither form fails. `volumesReady` tells which form was read.
bool LoadDatabaseFile(const std::string& path, VirtualCatalogue& catalogue, bool strict,
                      bool& volumesReady, const LoadProgress& progress = {});

// A step of a save, for the tests that stop a save between any two of them.
using SaveStepHook = std::function<void(int step, std::string_view what)>;

struct CatalogueSave {
    bool moveBackups = false;  // BackupVirtualCache first: da2 to da3, then dat to da2
    SaveStepHook hook;
};

// Writes master.dat (and discs.dat when there are records or the file exists) after moving the
// backups on when asked. Each file goes to a temporary name first; only when all are whole are
// they renamed into place. On failure the temporary files are removed and the files in place
// are untouched.
IoResult SaveVirtualCatalogue(const VirtualCatalogue& catalogue, const std::string& folder,
                              CatalogueFiles& files, const CatalogueSave& save);

// Whether a save of this run moves the backups on: always when SafeCatalogue is off; with it
// on, at the run's first save, and only when master.dat loaded whole.
bool SaveMovesBackups(const VirtualCatalogue& catalogue, const CatalogueOptions& options);

}  // namespace jk
