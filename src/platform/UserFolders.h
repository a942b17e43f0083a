#pragma once

// The user's own folders that sample paths of the settings point into.

#include <string>

namespace jk {

// XDG_MUSIC_DIR (from the environment or the user-dirs file), else ~/Music.
std::string MusicFolder();
// XDG_DOWNLOAD_DIR likewise, else ~/Downloads.
std::string DownloadFolder();
// The home folder the user database gives the user ("" when it has none), for when HOME is
// not set.
std::string AccountHomeFolder();

}  // namespace jk
