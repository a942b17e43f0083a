#include "playback/ListReading.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

#include "playback/ListLines.h"
#include "playback/ListPaths.h"
#include "util/Codepage.h"
#include "util/FileIo.h"
#include "util/PathHelpers.h"
#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {

namespace {

// The line ends of a text, to size the rows ahead.
std::size_t CountLineFeeds(std::string_view text) {
    std::size_t count = 0;
    const char* at = text.data();
    const char* const end = at + text.size();
    while (at < end) {
        const auto* lf =
            static_cast<const char*>(std::memchr(at, '\n', static_cast<std::size_t>(end - at)));
        if (lf == nullptr) {
            break;
        }
        ++count;
        at = lf + 1;
    }
    return count;
}

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

// Lines read ahead of the songs they name.
constexpr std::size_t kLinesAhead = 256;

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
    const std::size_t lineEnds = CountLineFeeds(text);
    rows.reserve(rows.size() + std::min(lineEnds + 1, kMaxListLines));

    // Lines are taken a batch at a time, so that the songs of a batch can be read ahead of
    // their turn; they are still asked for one by one, in the order of the list.
    struct SongLine {
        std::string path;
        bool canExist = false;
    };
    std::vector<SongLine> batch;
    batch.reserve(kLinesAhead);
    const std::unique_ptr<SongReading> reading = songs.StartReading();
    std::size_t pos = 0;
    std::size_t songLines = 0;
    std::string_view line;
    bool more = true;
    while (more) {
        batch.clear();
        while (batch.size() < kLinesAhead) {
            if (!NextListLine(text, pos, line)) {
                more = false;
                break;
            }
            if (options.SkipExtendedInfo && IsExtendedInfoLine(line)) {
                continue;
            }
            // A line that ends the reading does so after the lines before it.
            if (++songLines > kMaxListLines) {
                result.error = TooManyLines();
                more = false;
                break;
            }
            ListPathResult full = PathOfLine(line, path);
            if (!full.Ok()) {
                result.error = std::move(full.error);
                more = false;
                break;
            }
            SongLine& songLine = batch.emplace_back();
            // No file name holds a NUL byte, so such a line points nowhere.
            songLine.canExist = full.path.find('\0') == std::string::npos;
            if (songLine.canExist) {
                reading->Announce(std::move(full.path));
            } else {
                songLine.path = std::move(full.path);
            }
        }
        for (SongLine& songLine : batch) {
            if (songLine.canExist) {
                const SongInfo& song = reading->Next(songLine.path);
                // The song is looked up under its trimmed path, which the row shows.
                const std::string_view songPath = Trim(songLine.path);
                if (!IsNonExistant(song)) {
                    rows.push_back(SongRow(song, songPath));
                    ++result.rowsAdded;
                    continue;
                }
                if (options.HideGhosts != 1) {
                    rows.push_back(GhostRow(songPath));
                    ++result.rowsAdded;
                }
            } else if (options.HideGhosts != 1) {
                rows.push_back(GhostRow(songLine.path));
                ++result.rowsAdded;
            }
        }
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
