#pragma once

// Paths inside playlist files: written relative to the list where they share its drive, and
// turned back into full paths when a list is read.
//
// Paths use "/"; a real path is absolute. The drive of a path is DrivePart's: the mount root of
// a removable medium, else "/". Folders are compared as they stand (file systems here tell case
// apart). The arrays of the original hold at most 40 folder names when writing and 50 names when
// reading; a deeper path is an error that ends the operation.

#include <cstddef>
#include <string>
#include <string_view>

namespace jk {

inline constexpr std::size_t kMaxWrittenFolders = 40;
inline constexpr std::size_t kMaxReadNames = 50;

struct ListPathResult {
    std::string path;
    std::string error;  // one line for the user; empty when the conversion worked
    bool Ok() const { return error.empty(); }
};

// The path as a list line: unchanged when `relative` is false or the drives differ, the bare
// name when the song lies in the list's folder, else RelativeFromBase. A relative line that
// would not read back as the same path (a name holding "\", say) gives the path unchanged.
ListPathResult MakeRelativePath(std::string_view path, std::string_view listPath, bool relative);

// The path relative to the list's folder: one "../" for each list folder that the path doesn't
// share, then the path's own folders and its name. Folders are counted behind the drive.
ListPathResult RelativeFromBase(std::string_view path, std::string_view listPath);

// A list line as a full path. An absolute line stands as it is, and so do a line in a Windows
// form, "d:\..." or "\\server\share\..." (no such place here), and a URL. Anything else is
// relative to the list's folder: "\" counts as "/" (lists written on Windows), so a line that
// begins with "\" lands below the list's folder; empty names add nothing; each leading ".."
// goes one folder up, never above the drive the list lies on.
ListPathResult ResolveListPath(std::string_view line, std::string_view listPath);

// "d:" followed by a separator or nothing: a path of the Windows form.
bool IsWindowsDrivePath(std::string_view path);
// "\\server\share...": a Windows network path.
bool IsWindowsNetworkPath(std::string_view path);
// "scheme://" at the start, the scheme two or more characters of letters, digits, "+", "-", ".".
bool HasUrlScheme(std::string_view line);

}  // namespace jk
