#pragma once

// Path helpers. Paths are plain UTF-8 strings with "/" as the separator; a real path is
// absolute, a virtual one (a catalogued disc) never begins with "/".

#include <string>
#include <string_view>

namespace jk {

inline constexpr char kSep = '/';

// A separator of a catalogued path: "/", or the "\" of a disc catalogued under Windows.
inline constexpr bool IsCataloguedSeparator(char c) {
    return c == kSep || c == '\\';
}

// What follows the last separator; the whole text if there is none.
std::string_view BareName(std::string_view path);
// Likewise after the last separator of either kind (catalogues made on older systems
// hold "d:\folder\name.mp3").
std::string_view CataloguedBareName(std::string_view path);
// A final separator is cut first, then everything from the last separator on; the text itself
// if no separator remains.
std::string_view ParentPath(std::string_view path);
// A final separator is cut, then what follows the last separator.
std::string_view LastFolder(std::string_view path);
// The text ahead of the first separator, or the whole.
std::string_view TopFolder(std::string_view path);
// Cut from the last "."; a name with no dot, or whose only dot is its first character, stays.
std::string_view StripExtension(std::string_view name);
// The drive part of a path: "d:" for the older Windows form, else the mount root of a removable
// medium that the path lies below ("/media/USER/NAME", "/run/media/USER/NAME", "/mnt/NAME",
// "/Volumes/NAME"), else "/". Only those forms are mount roots: "/media/song.mp3",
// "/mnt/song.mp3" and "/media/USER/NAME" itself lie on "/".
std::string_view DrivePart(std::string_view path);
// The part behind the drive, always beginning with "/".
std::string RelativeRoot(std::string_view path);
// The short 8.3 form of the Windows days: the path unchanged.
std::string ShortPath(std::string_view path);
// True when a path names the real file system (absolute), false for a virtual path.
bool IsRealPath(std::string_view path);
// The text inside double quotes.
std::string Quoted(std::string_view text);
// The file:// URI of an absolute path: every byte but letters, digits, "-._~" and "/"
// percent-encoded, so blanks, quotes, line ends and bytes that are not UTF-8 all survive.
std::string FileUri(std::string_view path);

// Joins a folder and a name with exactly one separator between them.
std::string JoinPath(std::string_view folder, std::string_view name);

}  // namespace jk
