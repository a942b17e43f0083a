#include "playback/ListPaths.h"

#include <algorithm>
#include <array>

#include "playback/ListLines.h"
#include "util/PathHelpers.h"
#include "util/StringHelpers.h"
#include "util/Utf8.h"

namespace jk {

namespace {

bool IsAsciiLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool IsSeparator(char c) {
    return c == '/' || c == '\\';
}

// The text ahead of the last "/": the folder a path lies in ("" when there is no "/").
std::string_view FolderPart(std::string_view path) {
    const std::size_t slash = path.find_last_of(kSep);
    return slash == std::string_view::npos ? std::string_view() : path.substr(0, slash);
}

template <std::size_t N>
struct Names {
    std::array<std::string_view, N> items;
    std::size_t count = 0;
};

// The folders of a path behind its drive, and its file name. False when there are more than
// kMaxWrittenFolders of them.
bool SplitBelowDrive(std::string_view path, Names<kMaxWrittenFolders>& folders,
                     std::string_view& fileName) {
    std::string_view rest = path.substr(DrivePart(path).size());
    while (!rest.empty() && rest.front() == kSep) {
        rest.remove_prefix(1);
    }
    folders.count = 0;
    for (;;) {
        const std::size_t slash = rest.find(kSep);
        if (slash == std::string_view::npos) {
            fileName = rest;
            return true;
        }
        if (folders.count == kMaxWrittenFolders) {
            return false;
        }
        folders.items[folders.count++] = rest.substr(0, slash);
        rest.remove_prefix(slash + 1);
    }
}

// The names of the list's path ahead of its file name, for rebuilding a relative line. The
// drive counts as the first name (the root "/" as an empty one), so that ".." stops there.
bool ListNames(std::string_view listPath, Names<kMaxReadNames>& names) {
    names.count = 0;
    std::string_view rest = listPath;
    const std::string_view drive = DrivePart(listPath);
    if (!drive.empty() && drive.front() == kSep) {
        names.items[names.count++] = drive == "/" ? std::string_view() : drive;
        rest.remove_prefix(drive.size());
        while (!rest.empty() && rest.front() == kSep) {
            rest.remove_prefix(1);
        }
    }
    for (;;) {
        const std::size_t slash = rest.find(kSep);
        if (slash == std::string_view::npos) {
            return true;
        }
        if (names.count == kMaxReadNames) {
            return false;
        }
        names.items[names.count++] = rest.substr(0, slash);
        rest.remove_prefix(slash + 1);
    }
}

// A path as an error message shows it: one short line, whatever bytes a foreign list held.
std::string Shown(std::string_view path) {
    constexpr std::size_t kShownCharacters = 120;
    path = CutAtNull(path);
    std::string shown(CharLeft(path, kShownCharacters));
    if (shown.size() < path.size()) {
        shown.append("...");
    }
    return shown;
}

std::string TooDeepToWrite(std::string_view path) {
    return "The path is deeper than 40 folders, so the list could not be written: " + Shown(path);
}

std::string TooDeepToRead(std::string_view path) {
    return "The path is deeper than 50 folders, so the list could not be read further: " +
           Shown(path);
}

}  // namespace

bool IsWindowsDrivePath(std::string_view path) {
    return path.size() >= 2 && IsAsciiLetter(path[0]) && path[1] == ':' &&
           (path.size() == 2 || IsSeparator(path[2]));
}

bool IsWindowsNetworkPath(std::string_view path) {
    return path.starts_with("\\\\");
}

bool HasUrlScheme(std::string_view line) {
    std::size_t i = 0;
    if (line.empty() || !IsAsciiLetter(line[0])) {
        return false;
    }
    while (i < line.size()) {
        const char c = line[i];
        if (IsAsciiLetter(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.') {
            ++i;
            continue;
        }
        break;
    }
    return i >= 2 && line.substr(i, 3) == "://";
}

ListPathResult MakeRelativePath(std::string_view path, std::string_view listPath, bool relative) {
    if (!relative || DrivePart(path) != DrivePart(listPath)) {
        return {std::string(path), {}};
    }
    ListPathResult line = FolderPart(path) == FolderPart(listPath)
                              ? ListPathResult{std::string(BareName(path)), {}}
                              : RelativeFromBase(path, listPath);
    // Names here may hold "\" or begin like an address, which a relative line can't carry: such
    // a path is written as it stands, so that every line reads back as the path it came from.
    std::string asAddress;
    if (line.Ok() && (FileUrlToPath(line.path, asAddress) ||
                      ResolveListPath(line.path, listPath).path != path)) {
        line.path = std::string(path);
    }
    return line;
}

ListPathResult RelativeFromBase(std::string_view path, std::string_view listPath) {
    Names<kMaxWrittenFolders> pathFolders;
    Names<kMaxWrittenFolders> listFolders;
    std::string_view fileName;
    std::string_view listFileName;
    if (!SplitBelowDrive(path, pathFolders, fileName)) {
        return {{}, TooDeepToWrite(path)};
    }
    if (!SplitBelowDrive(listPath, listFolders, listFileName)) {
        return {{}, TooDeepToWrite(listPath)};
    }
    const std::size_t shorter = std::min(pathFolders.count, listFolders.count);
    std::size_t common = 0;
    while (common < shorter && pathFolders.items[common] == listFolders.items[common]) {
        ++common;
    }
    std::string out;
    out.reserve(path.size());
    for (std::size_t i = common; i < listFolders.count; ++i) {
        out.append("../");
    }
    // With every list folder shared and none left over the path lies in the list's folder,
    // which the caller has handled already; the name alone is then all there is to write.
    for (std::size_t i = common; i < pathFolders.count; ++i) {
        out.append(pathFolders.items[i]);
        out.push_back(kSep);
    }
    out.append(fileName);
    return {std::move(out), {}};
}

ListPathResult ResolveListPath(std::string_view line, std::string_view listPath) {
    if (IsRealPath(line) || IsWindowsDrivePath(line) || IsWindowsNetworkPath(line) ||
        HasUrlScheme(line)) {
        return {std::string(line), {}};
    }
    std::size_t separators = 0;
    for (char c : line) {
        separators += IsSeparator(c) ? 1 : 0;
    }
    if (separators > kMaxReadNames) {
        return {{}, TooDeepToRead(line)};
    }
    Names<kMaxReadNames> listNames;
    if (!ListNames(listPath, listNames)) {
        return {{}, TooDeepToRead(listPath)};
    }

    // The line's folder names, each ended by "/" or "\"; what follows the last is its file name.
    Names<kMaxReadNames> lineNames;
    std::size_t start = 0;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (!IsSeparator(line[i])) {
            continue;
        }
        if (i > start) {
            lineNames.items[lineNames.count++] = line.substr(start, i - start);
        }
        start = i + 1;
    }
    const std::string_view fileName = line.substr(start);

    std::size_t keep = listNames.count;
    std::size_t first = 0;
    while (first < lineNames.count && lineNames.items[first] == "..") {
        if (keep > 1) {
            --keep;
        }
        ++first;
    }

    std::string out;
    out.reserve(listPath.size() + line.size());
    for (std::size_t i = 0; i < keep; ++i) {
        out.append(listNames.items[i]);
        out.push_back(kSep);
    }
    for (std::size_t i = first; i < lineNames.count; ++i) {
        out.append(lineNames.items[i]);
        out.push_back(kSep);
    }
    out.append(fileName);
    return {std::move(out), {}};
}

}  // namespace jk
