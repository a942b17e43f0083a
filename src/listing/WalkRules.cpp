#include "listing/WalkRules.h"

#include <array>
#include <cstdint>
#include <cstring>
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

char AsciiLowerChar(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Only two characters outside ASCII lower-case into it: the dotted capital I and the Kelvin
// sign. A text without them, with A-Z folded and every other byte left as it is, holds a
// lower-case ASCII needle exactly where its lower-cased form does, so no lower-cased copy of
// every path is made.
bool FoldsLikeAscii(std::string_view text) {
    static constexpr std::string_view kDottedCapitalI = "\xC4\xB0";
    static constexpr std::string_view kKelvinSign = "\xE2\x84\xAA";
    return text.find(kDottedCapitalI) == std::string_view::npos &&
           text.find(kKelvinSign) == std::string_view::npos;
}

// Eight bytes with A-Z folded at once; bytes outside ASCII stay as they are.
std::uint64_t FoldWord(std::uint64_t word) {
    constexpr std::uint64_t kHigh = 0x8080808080808080ull;
    constexpr std::uint64_t kLow7 = 0x7F7F7F7F7F7F7F7Full;
    const std::uint64_t low = word & kLow7;
    const std::uint64_t atLeastA = (low + 0x3F3F3F3F3F3F3F3Full) & kHigh;  // 0x80 - 'A'
    const std::uint64_t pastZ = (low + 0x2525252525252525ull) & kHigh;     // 0x80 - ('Z' + 1)
    const std::uint64_t capital = atLeastA & ~pastZ & ~(word & kHigh);
    return word | (capital >> 2);  // 0x20 on each capital
}

// `text` with A-Z folded into `out` (text.size() bytes); true when it holds any byte outside
// ASCII.
bool FoldInto(std::string_view text, char* out) {
    std::uint64_t high = 0;
    std::size_t i = 0;
    for (; i + 8 <= text.size(); i += 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, text.data() + i, 8);
        high |= word;
        word = FoldWord(word);
        std::memcpy(out + i, &word, 8);
    }
    for (; i < text.size(); ++i) {
        high |= static_cast<unsigned char>(text[i]);
        out[i] = AsciiLowerChar(text[i]);
    }
    return (high & 0x8080808080808080ull) != 0;
}

// `test` of a form of `text` that holds a lower-case ASCII needle where ToLower(text) does:
// folded (on the stack, for all but the longest paths) when that gives the same answer, else
// lower-cased.
template <class Test>
bool OnLowered(std::string_view text, const Test& test) {
    constexpr std::size_t kOnStack = 1024;
    if (text.size() <= kOnStack) {
        std::array<char, kOnStack> folded;
        if (!FoldInto(text, folded.data()) || FoldsLikeAscii(text)) {
            return test(std::string_view(folded.data(), text.size()));
        }
    } else if (FoldsLikeAscii(text)) {
        std::string folded(text.size(), '\0');
        FoldInto(text, folded.data());
        return test(std::string_view(folded));
    }
    return test(std::string_view(ToLower(text)));
}

bool Holds(std::string_view text, std::string_view needle) {
    return text.find(needle) != std::string_view::npos;
}

// The last four characters of a name, lower-cased (the whole name when it is shorter), are
// `suffix`; for a name of fewer characters, its whole lower-cased text is. `suffix` is
// lower-case ASCII.
bool EndsLowered(std::string_view name, std::string_view suffix) {
    const std::string_view tail = name.size() >= 4 ? name.substr(name.size() - 4) : name;
    if (IsAscii(tail)) {
        if (tail.size() != suffix.size()) {
            return false;
        }
        for (std::size_t i = 0; i < tail.size(); ++i) {
            if (AsciiLowerChar(tail[i]) != suffix[i]) {
                return false;
            }
        }
        return true;
    }
    return ToLower(CharRight(name, 4)) == suffix;
}

// The same for the first three of those four characters (fewer when the name is shorter).
bool EndsLoweredMpAny(std::string_view name) {
    const std::string_view tail = name.size() >= 4 ? name.substr(name.size() - 4) : name;
    if (IsAscii(tail)) {
        const std::string_view first = tail.substr(0, 3);
        return first.size() == 3 && AsciiLowerChar(first[0]) == '.' &&
               AsciiLowerChar(first[1]) == 'm' && AsciiLowerChar(first[2]) == 'p';
    }
    return CharLeft(ToLower(CharRight(name, 4)), 3) == ".mp";
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
    // Every trash folder's name holds "Trash": most paths are done with at one search.
    if (lastSlash == std::string_view::npos ||
        path.substr(0, lastSlash).find("Trash") == std::string_view::npos) {
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
            return EndsLowered(nameOrPath, ".mp3");
        case kFilterMpAny:
            return EndsLoweredMpAny(nameOrPath);
        case kFilterAll:
            return true;
        default:
            return false;
    }
}

bool IsRefusedSongPath(std::string_view path) {
    return OnLowered(path,
                     [](std::string_view lower) {
                         return Holds(lower, "recycle") || Holds(lower, "windows/recent");
                     }) ||
           IsInsideTrash(path);
}

bool IsInsideTrashFolder(std::string_view path) {
    return IsInsideTrash(path);
}

bool IsTemporaryInternetFolder(std::string_view path) {
    return OnLowered(path,
                     [](std::string_view lower) { return Holds(lower, "temporary internet"); });
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
