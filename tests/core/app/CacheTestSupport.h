#pragma once

// Song caches and settings files built in a line, for the tests of the cache's wiring.

#include <string>
#include <string_view>
#include <vector>

#include "app/ProfileFile.h"
#include "catalogue/SongCache.h"
#include "catalogue/VBaseFile.h"
#include "metadata/SongInfo.h"
#include "support/CacheRecords.h"

namespace jk::test {

// A record in the cache's stored form, keyed by `key`.
inline SongInfo StoredRecord(std::string_view key, std::string_view lastUsed,
                             std::string_view title = "Song") {
    SongInfo song;
    song.Title = title;
    song.Genre = "Unknown";
    song.Bitrate = "128";
    song.Date = "20240101120000";
    song.Size = "4000";
    song.Time = "0312";
    song.Path = key;
    song.LastUsed = lastUsed;
    return song;
}

// The keys of the cache.dat in `folder`.
inline std::vector<std::string> KeysOnDisk(const std::string& folder) {
    SongCache cache;
    LoadCache(cache, folder);
    return KeysOf(cache);
}

inline std::string IniValue(const std::string& iniPath, std::string_view section,
                            std::string_view key) {
    return ProfileFile::Load(iniPath).GetINI(section, key);
}

// The settings file of a previous run, with further lines (CR LF each) behind its header.
inline std::string PreviousRunIni(std::string_view lines) {
    return "[INIexists]\r\nCheck=1\r\n" + std::string(lines);
}

}  // namespace jk::test
