#include "playback/ListWriting.h"

#include "playback/ListPaths.h"
#include "playback/ListReading.h"
#include "util/PathHelpers.h"
#include "util/Utf8.h"

namespace jk {

namespace {

inline constexpr std::string_view kLineEnd = "\r\n";

std::size_t TextSizeGuess(const RowList& rows) {
    std::size_t size = 0;
    for (const ListRow& row : rows) {
        size += row.Get(Column::Filename).size() + kLineEnd.size();
    }
    return size;
}

}  // namespace

std::string PathForPlayer(std::string_view path, std::string_view playerExe) {
    return ContainsNoCase(playerExe, "winplay") ? ShortPath(path) : std::string(path);
}

ListText ListFileText(const RowList& rows, std::string_view listPath,
                      const ListSettings& settings) {
    ListText out;
    out.text.reserve(TextSizeGuess(rows));
    const bool relative = settings.RelativePaths == 1;
    for (const ListRow& row : rows) {
        const std::string path = PathForPlayer(row.Get(Column::Filename), settings.PlayerExe);
        ListPathResult line = MakeRelativePath(path, listPath, relative);
        if (!line.Ok()) {
            out.text.clear();
            out.error = std::move(line.error);
            return out;
        }
        out.text.append(line.path);
        out.text.append(kLineEnd);
    }
    return out;
}

IoResult WriteListFile(const std::string& listPath, const RowList& rows,
                       const ListSettings& settings) {
    ListText list = ListFileText(rows, listPath, settings);
    if (!list.Ok()) {
        return {false, std::move(list.error)};
    }
    return WriteFileAtomically(listPath, list.text);
}

IoResult SaveLastList(std::string_view appPath, const RowList& rows) {
    std::string text;
    text.reserve(TextSizeGuess(rows));
    for (const ListRow& row : rows) {
        text.append(row.Get(Column::Filename));
        text.append(kLineEnd);
    }
    return WriteFileAtomically(LastListPath(appPath), text);
}

UserMessage SaveFailedMessage() {
    return {"Current playlist could not be saved successfully.", "Uh-oh...",
            MessageIcon::Information};
}

}  // namespace jk
