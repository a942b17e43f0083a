#pragma once

// The freedesktop trash: a file moved there can be restored from the desktop's trash can. Files
// are never deleted for good by this program.

#include <string>

namespace jk {

// Moves the file to the trash of its filesystem (the home trash, or the ".Trash-UID" folder at
// the top of another filesystem). False with the reason when it cannot: the file is gone, its
// folder is read-only, or its filesystem has no trash; the file then stays where it was.
bool MoveToTrash(const std::string& path, std::string& why);

}  // namespace jk
