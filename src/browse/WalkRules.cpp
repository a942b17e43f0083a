#include "browse/WalkRules.h"

#include <array>
#include <string>

#include "util/StringHelpers.h"
#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {
namespace {

// True when `path` is `folder` itself or lies below it.
bool IsAtOrBelow(std::string_view path, std::string_view folder) {
    if (!StartsWith(path, folder)) {
        return false;
    }
    return path.size() == folder.size() || path[folder.size()] == '/';
}

bool IsAscii(std::string_view text) {
    for (const char c : text) {
        if (static_cast<unsigned char>(c) >= 0x80) {
            return false;
        }
    }
    return true;
}

char AsciiLowerChar(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// True when the lower-cased `text` holds `needle` (lower-case ASCII). Only two characters
// outside ASCII lower-case into it (the dotted capital I and the Kelvin sign); a text without
// them is searched as it stands, byte by byte with A-Z folded, which gives the same answer
// without building a lower-cased copy of every path.
bool LowerHolds(std::string_view text, std::string_view needle) {
    static constexpr std::string_view kDottedCapitalI = "\xC4\xB0";
    static constexpr std::string_view kKelvinSign = "\xE2\x84\xAA";
    if (!IsAscii(text) && (text.find(kDottedCapitalI) != std::string_view::npos ||
                           text.find(kKelvinSign) != std::string_view::npos)) {
        return ToLower(text).find(needle) != std::string::npos;
    }
    if (needle.size() > text.size()) {
        return false;
    }
    for (std::size_t i = 0; i + needle.size() <= text.size(); ++i) {
        std::size_t k = 0;
        while (k < needle.size() && AsciiLowerChar(text[i + k]) == needle[k]) {
            ++k;
        }
        if (k == needle.size()) {
            return true;
        }
    }
    return false;
}

// The last four characters of a name, lower-cased (the whole name when it is shorter).
std::string LastFourLowered(std::string_view name) {
    const std::string_view tail = name.size() >= 4 && IsAscii(name.substr(name.size() - 4))
                                      ? name.substr(name.size() - 4)
                                      : CharRight(name, 4);
    if (IsAscii(tail)) {
        std::string out(tail);
        for (char& c : out) {
            c = AsciiLowerChar(c);
        }
        return out;
    }
    return ToLower(tail);
}

bool IsTrashFolderName(std::string_view name) {
    static constexpr std::string_view kTrash = ".Trash";
    if (name == kTrash) {
        return true;
    }
    // ".Trash-1000": a per-user trash at the top of a removable medium.
    if (name.size() <= kTrash.size() + 1 || !StartsWith(name, kTrash) ||
        name[kTrash.size()] != '-') {
        return false;
    }
    return IsAllDigits(name.substr(kTrash.size() + 1));
}

bool IsInsideTrash(std::string_view path) {
    const std::size_t lastSlash = path.find_last_of('/');
    if (lastSlash == std::string_view::npos) {
        return false;
    }
    // Only the folders of the path count, not the file's own name.
    const std::string_view folders = path.substr(0, lastSlash);
    std::string_view previous;
    std::size_t begin = 0;
    while (begin <= folders.size()) {
        std::size_t end = folders.find('/', begin);
        if (end == std::string_view::npos) {
            end = folders.size();
        }
        const std::string_view component = folders.substr(begin, end - begin);
        if (IsTrashFolderName(component) || (previous == "Trash" && component == "files")) {
            return true;
        }
        previous = component;
        begin = end + 1;
    }
    return false;
}

}  // namespace

bool PassesFilter(std::string_view nameOrPath, int filterMode) {
    switch (filterMode) {
        case kFilterMp3:
            return LastFourLowered(nameOrPath) == ".mp3";
        case kFilterMpAny:
            return CharLeft(LastFourLowered(nameOrPath), 3) == ".mp";
        case kFilterAll:
            return true;
        default:
            return false;
    }
}

bool IsRefusedSongPath(std::string_view path) {
    return LowerHolds(path, "recycle") || LowerHolds(path, "windows/recent") || IsInsideTrash(path);
}

bool IsTemporaryInternetFolder(std::string_view path) {
    return LowerHolds(path, "temporary internet");
}

bool IsSystemFolder(std::string_view path) {
    while (path.size() > 1 && path.back() == '/') {
        path.remove_suffix(1);
    }
    static constexpr std::array<std::string_view, 3> kKernelTrees = {"/proc", "/sys", "/dev"};
    for (std::string_view tree : kKernelTrees) {
        if (IsAtOrBelow(path, tree)) {
            return true;
        }
    }
    return IsAtOrBelow(path, "/run") && !IsAtOrBelow(path, "/run/media");
}

}  // namespace jk
