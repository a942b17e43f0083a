#pragma once

// What the file commands ask of the file system: moving a file to the freedesktop trash, and
// copying or moving a file to a path that is free. None of them ever overwrites a file.

#include <string>

namespace jk {

struct FileResult {
    bool ok = false;
    std::string error;  // one line, for the user
};

// Moves the file to the freedesktop trash of its filesystem (the home trash, or the
// ".Trash-UID" folder at the top of another filesystem), from where the user can restore it.
// Files are never deleted for good by this program. Fails with the reason when the file is
// gone, is a folder, its folder is read-only, or its filesystem has no trash; the file then
// stays where it was.
FileResult MoveToTrash(const std::string& path);
// Copies the file to `target`, which must not exist; the copy keeps the file's date.
FileResult CopyFileTo(const std::string& path, const std::string& target);
// Moves the file to `target`, which must not exist: a rename where it can be, else a copy and
// the removal of the original once the copy is whole.
FileResult MoveFileTo(const std::string& path, const std::string& target);
// True when something stands at the path (a link that points nowhere counts).
bool PathExists(const std::string& path);

}  // namespace jk
