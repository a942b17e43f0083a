#pragma once

// Finding programs on the PATH, for the first run's choice of player.

#include <string>
#include <string_view>

namespace jk {

// The full path of the first executable file called `name` in the folders of `pathVariable`
// (a PATH value: folders separated by ":"); "" when there is none. Empty entries are skipped.
std::string FindExecutableOnPath(std::string_view name, std::string_view pathVariable);
// The same on this process's PATH.
std::string FindExecutableOnPath(std::string_view name);

// The first of mpv, audacious and vlc on the PATH, as a full path; "" when none is there.
std::string FindDefaultPlayer();

}  // namespace jk
