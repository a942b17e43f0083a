#pragma once

// The session: the one non-visual object that holds the program's shared state for the whole
// run (what the main window and the module arrays held in the Windows program). The application
// owns it and hands it by reference to windows and commands. It holds data, not behaviour.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "app/Settings.h"
#include "browse/DriveRoot.h"
#include "catalogue/Bookmarks.h"
#include "catalogue/DiscPresence.h"
#include "catalogue/SongCache.h"
#include "catalogue/VirtualCatalogue.h"
#include "catalogue/VirtualFolders.h"
#include "playback/PlaylistState.h"

namespace jk {

// The remote control's "no value yet".
inline constexpr std::int32_t kRemoteNoValue = 2147483647;

struct Session {
    Session() = default;
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Every key of jukarra2.ini, the player and search histories among them.
    jk::Settings Settings;

    std::string AppPath;                // the data folder, ending in "/"
    std::int16_t Starting = 0;          // -1 while start-up runs
    std::int16_t VirtualDirty = 0;      // non-zero: the virtual drive database changed
    std::int16_t VolumesReady = 0;      // -1: the database was read in its per-volume form
    std::int32_t CacheLimit = 1000000;  // songs kept in the song cache
    std::int16_t CacheFrozen = 0;       // non-zero: the cache is not trimmed at shutdown
    std::string FileFilter = "*.mp3";   // the pattern of files listed, from FilterMode
    std::int32_t RemoteSentinel = kRemoteNoValue;
    // The player steered (SetPlayerMode): 1 to 5 the Windows players, 6 mpv, 7 an MPRIS player.
    std::int16_t PlayerKind = 0;

    jk::SongCache SongCache;
    // The tag code page that the texts of SongCache were decoded in.
    std::string CacheCodepage;
    // True while this run's TagCodepage is not the settings file's: the cache was emptied for
    // this run, and cache.dat keeps the records of the saved code page.
    bool CacheSaveBlocked = false;
    // The volume label of the filesystem that holds a path, for songs read from disk. Set by the
    // front end, which may reach the platform layer; when empty, labels are "".
    std::function<std::string(const std::string& path)> VolumeLabelLookup;

    // The open playlist: its rows, its name (CurrentList), whether it is saved (PlaylistSaved)
    // and the recent lists.
    PlaylistState Playlist;

    // The roots of the folder tree, in the tree's order: filled by InitializeDrives from
    // DriveLister, which the front end sets (it may reach the platform layer); when that is
    // empty, the tree has no drive roots.
    DriveList Drives;
    std::function<DriveList()> DriveLister;

    // The virtual drive database: VirtualVolumes, the passing flat form VirtualDrive, the
    // identities of the discs, and what this run has done to its files.
    VirtualCatalogue Virtual;
    // The folder nodes of each volume, as LoadVirtualFolders made them (in the table's order).
    std::vector<std::vector<VirtualFolderNode>> VirtualTrees;
    // The file system the database is saved through (tests put a faulty one here); null for
    // the real one.
    CatalogueFiles* Files = nullptr;
    // Called between the steps of a save (a test hook); empty normally.
    SaveStepHook SaveHook;
    // The mounted discs, from the platform layer; empty: none known.
    std::function<MountedDiscs()> DiscLister;
    // Opens the door of the drive that holds a path (EjectCD); empty: nothing happens.
    std::function<void(const std::string& path)> Ejector;

    // BookmarkList, in the order of the menu.
    BookmarkList Bookmarks;
};

// The settings file of a session.
std::string IniPath(const Session& session);

// LoadDefaults for the session: every setting at its first-run value, the playlist untitled and
// saved, and the cache limit at its largest.
void LoadDefaults(Session& session, std::string_view firstPlayerPath);

// The cache limit for a MaxCache index (0..7); nullopt for any other index.
std::optional<std::int32_t> CacheLimitFor(std::int16_t maxCache);
// CacheLimit from MaxCache; an index outside 0..7 leaves it as it is.
void ApplyMaxCache(Session& session);

// The file pattern for a FilterMode (0..2); nullopt for any other mode.
std::optional<std::string_view> FileFilterFor(std::int16_t filterMode);
// FileFilter from FilterMode; a mode outside 0..2 leaves it as it is.
void ApplyFilterMode(Session& session);

// RememberList is held as text and compared as a number: "is 1" at start-up, "is true"
// (not 0) at shutdown.
bool RememberListIsOne(const jk::Settings& settings);
bool RememberListIsOn(const jk::Settings& settings);

// The settings that decide how lists are read and written: HideGhosts, RelativePaths and the
// player in use.
ListSettings ListSettingsOf(const jk::Settings& settings);

// The main window's caption for the open playlist.
std::string PlaylistCaption(const Session& session);

// True when the player in use is Winamp ("winamp" in its file name, in any case).
bool IsWinampOnlyMode(const jk::Settings& settings);

}  // namespace jk
