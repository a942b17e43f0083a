#include "playback/ListReading.h"

#include <algorithm>

#include "playback/ListLines.h"
#include "playback/ListPaths.h"
#include "util/Codepage.h"
#include "util/FileIo.h"
#include "util/PathHelpers.h"
#include "util/Utf8.h"

namespace jk {

namespace {

// The full path a list line names. A line that isn't valid UTF-8 was written in a Windows code
// page, unless a file of exactly those bytes exists (a name the file system holds in another
// encoding); only such lines cost a look at the disk.
ListPathResult PathOfLine(std::string_view line, const std::string& listPath) {
    std::string urlPath;
    if (FileUrlToPath(line, urlPath)) {
        return ResolveListPath(urlPath, listPath);
    }
    if (IsValidUtf8(line)) {
        return ResolveListPath(line, listPath);
    }
    ListPathResult asBytes = ResolveListPath(line, listPath);
    if (asBytes.Ok() && FileExists(asBytes.path)) {
        return asBytes;
    }
    return ResolveListPath(DecodeWindows1252(line), listPath);
}

std::string TooManyLines() {
    return "The list names more than " + std::to_string(kMaxListLines) +
           " songs; the rest of it was not read.";
}

}  // namespace

ListReadResult ReadListInto(const std::string& path, RowList& rows, const SongSource& songs,
                            const ListReadOptions& options) {
    ListReadResult result;
    // A pipe or a device would block the reading or never end it.
    const FileStatus status = StatPath(path);
    if (status.exists && !status.isRegular) {
        result.error = path + " is not a playlist file";
        return result;
    }
    std::string bytes;
    const IoResult read = ReadWholeFile(path, bytes, kMaxListFileBytes);
    if (!read.ok) {
        result.error = read.error;
        return result;
    }
    const std::string text = PrepareListText(std::move(bytes));
    const std::size_t lineEnds =
        static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
    rows.reserve(rows.size() + std::min(lineEnds + 1, kMaxListLines));

    std::size_t pos = 0;
    std::size_t songLines = 0;
    std::string_view line;
    while (NextListLine(text, pos, line)) {
        if (options.SkipExtendedInfo && IsExtendedInfoLine(line)) {
            continue;
        }
        if (++songLines > kMaxListLines) {
            result.error = TooManyLines();
            return result;
        }
        ListPathResult full = PathOfLine(line, path);
        if (!full.Ok()) {
            result.error = std::move(full.error);
            return result;
        }
        std::string& songPath = full.path;
        // No file name holds a NUL byte, so such a line points nowhere.
        const bool canExist = songPath.find('\0') == std::string::npos;
        const SongInfo song = canExist ? songs(songPath) : NonExistantSong();
        if (IsNonExistant(song)) {
            if (options.HideGhosts == 1) {
                continue;
            }
            rows.push_back(GhostRow(songPath));
        } else {
            rows.push_back(SongRow(song, songPath));
        }
        ++result.rowsAdded;
    }
    return result;
}

ListReadResult OpenListNow(const std::string& path, RowList& rows, const SongSource& songs,
                           std::int16_t hideGhosts) {
    if (path.empty()) {
        return {};
    }
    rows.clear();
    return ReadListInto(path, rows, songs, {hideGhosts, true});
}

ListReadResult AppendListNow(const std::string& path, RowList& rows, const SongSource& songs,
                             std::int16_t hideGhosts) {
    if (path.empty()) {
        return {};
    }
    return ReadListInto(path, rows, songs, {hideGhosts, true});
}

std::string LastListPath(std::string_view appPath) {
    return JoinPath(appPath, kLastListName);
}

ListReadResult OpenLastList(std::string_view appPath, RowList& rows, const SongSource& songs,
                            std::int16_t hideGhosts) {
    const std::string path = LastListPath(appPath);
    rows.clear();
    if (!FileExists(path)) {
        return {};
    }
    return ReadListInto(path, rows, songs, {hideGhosts, false});
}

}  // namespace jk
