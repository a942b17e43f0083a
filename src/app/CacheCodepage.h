#pragma once

// The song cache holds decoded text, so its records are only good for the tag code page they
// were read in. A change of TagCodepage empties the cache; whether the empty cache may replace
// cache.dat depends on whether the change is saved.

#include <string>
#include <string_view>

namespace jk {

class ProfileFile;
struct Session;

enum class SettingScope {
    Saved,    // the settings file will hold the new value (settings set, the Setup Browser)
    ThisRun,  // an override for this run only (--set)
};

// The TagCodepage that a settings file holds: its value when the file records a previous run,
// else the first-run default.
std::string SavedTagCodepage(const ProfileFile& ini);

// True when the two names give the same code page (an empty or unknown name is windows-1252).
bool SameTagCodepage(std::string_view a, std::string_view b);

// Empties the cache when the session's TagCodepage gives another code page than the cache's
// texts were decoded in. For a change of this run only, the emptied cache is then held back
// from saving, so that cache.dat keeps the records of the saved code page. For a saved change
// the cache is free to be saved again. Returns true when cache.dat has to be written to agree
// with the settings file (a saved change that emptied the cache or ended a hold).
bool FlushCacheOnCodepageChange(Session& session, SettingScope scope);

}  // namespace jk
