#pragma once

// Loading and saving the settings: the first-run defaults, the reading of jukarra2.ini at
// start-up with its guards and quirks, and the writing of every key at shutdown.

#include <string>
#include <string_view>

#include "app/ProfileFile.h"
#include "app/Settings.h"

namespace jk {

inline constexpr std::string_view kIniFileName = "jukarra2.ini";
inline constexpr std::string_view kDefaultPlayerPath = "winamp.exe";

// Every key at its first-run value. The first player path is `firstPlayerPath`, or
// "winamp.exe" when it is empty.
void LoadDefaults(Settings& settings, std::string_view firstPlayerPath = {});

// Reads every key when the file records a previous run (INIexists.Check above 0) and returns
// true; otherwise returns false and leaves `settings` untouched. Keys missing from a file that
// does record a run read as 0 or "".
bool LoadINI(Settings& settings, const ProfileFile& file);

// Writes every key into `file` (State as 2 or 0, column widths of at least 1, Check as 1).
void WriteINI(const Settings& settings, ProfileFile& file);
// Writes every key into the file at `iniPath`, keeping whatever else it holds. False when the
// file could not be written, with the reason in `error` when asked.
bool WriteINI(const Settings& settings, const std::string& iniPath, std::string* error = nullptr);

}  // namespace jk
