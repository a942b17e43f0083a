#pragma once

// The rules that decide which files of a walk become songs and which folders a walk enters.
// Each is a test on a name or a path alone, so the walker, the song scan and the read-ahead
// workers can all ask them without touching the disk.

#include <string_view>

namespace jk {

// The filter settings of FilterMode.
inline constexpr int kFilterMp3 = 0;    // names ending in ".mp3"
inline constexpr int kFilterMpAny = 1;  // names ending in ".mp" and one more character
inline constexpr int kFilterAll = 2;    // every file
// Any other value accepts nothing; the tree lists folders with it.
inline constexpr int kFilterNone = -1;

// The file filter on a bare name or a whole path (only its end counts). Characters, not bytes,
// are counted, and a text shorter than four characters is compared as a whole.
bool PassesFilter(std::string_view nameOrPath, int filterMode);

// Files that are never songs however the filter reads: anything whose lower-cased path holds
// "recycle" or "windows/recent", and anything inside a trash folder (".Trash", ".Trash-N",
// "Trash/files"). The walk still enters such folders; it refuses their files one by one.
bool IsRefusedSongPath(std::string_view path);

// True when a folder of the path (not its last component) is a trash folder.
bool IsInsideTrashFolder(std::string_view path);

// A sub-folder whose lower-cased path holds "temporary internet" is not entered.
bool IsTemporaryInternetFolder(std::string_view path);

// The kernel's own trees are never walked: /proc, /sys, /dev and /run, except /run/media where
// removable media are mounted.
bool IsSystemFolder(std::string_view path);

}  // namespace jk
