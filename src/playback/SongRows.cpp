#include "playback/SongRows.h"

#include <algorithm>

#include "playback/ListPaths.h"
#include "util/PathHelpers.h"
#include "util/StringHelpers.h"
#include "util/Text.h"

namespace jk {

namespace {

inline constexpr std::size_t kBitrateWidth = 4;

}  // namespace

std::string DisplayNameOf(std::string_view path) {
    std::string_view name = BareName(path);
    if (IsWindowsDrivePath(path) || IsWindowsNetworkPath(path)) {
        const std::size_t backslash = name.find_last_of('\\');
        if (backslash != std::string_view::npos) {
            name.remove_prefix(backslash + 1);
        }
    }
    std::string out(StripExtension(name));
    std::replace(out.begin(), out.end(), '_', ' ');
    return out;
}

ListRow SongRow(const SongInfo& song, std::string_view path) {
    const std::string_view title = RTrim(song.Title);
    const std::string shownTitle = title.empty() ? DisplayNameOf(path) : std::string(title);
    const std::string bitrate = PadField(song.Bitrate, kBitrateWidth);
    return ListRow({shownTitle, song.Artist, song.Album, song.Year, song.Genre, song.Time, bitrate,
                    path, song.Comment, song.Size, song.Date, song.Volume});
}

ListRow GhostRow(std::string_view path) {
    const std::string text = "* " + DisplayNameOf(path);
    ListRow row;
    std::array<std::string_view, kColumnCount> columns{};
    columns[static_cast<std::size_t>(Column::Title)] = text;
    columns[static_cast<std::size_t>(Column::Filename)] = path;
    row.SetAll(columns);
    return row;
}

}  // namespace jk
