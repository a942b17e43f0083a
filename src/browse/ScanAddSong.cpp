#include "browse/ScanAddSong.h"

#include "browse/WalkRules.h"
#include "util/PathHelpers.h"
#include "util/StringHelpers.h"
#include "util/Text.h"

namespace jk {
namespace {

// A song with no title shows its file name, without extension, with blanks for underscores.
std::string NameAsTitle(std::string_view path) {
    return ReplaceChar(StripExtension(Trim(BareName(path))), "_", " ");
}

}  // namespace

ListRow FilesPaneRow(const SongInfo& song, std::string_view path) {
    const std::string title =
        RTrim(song.Title).empty() ? NameAsTitle(path) : std::string(Trim(song.Title));
    std::string bitrate = song.Bitrate;
    PadRight(bitrate, 4);
    return ListRow({title, Trim(song.Artist), Trim(song.Album), Trim(song.Year), Trim(song.Genre),
                    Trim(song.Time), bitrate, Trim(song.Path), Trim(song.Comment), song.Size,
                    song.Date, song.Volume});
}

bool ScanAddSong(std::string path, RowList& rows, int filterMode, const SongReadFn& readSong,
                 const PrefetchedBytes* prefetched) {
    if (!PassesFilter(path, filterMode) || IsRefusedSongPath(path)) {
        return false;
    }
    const SongInfo song = readSong(path, prefetched);
    if (IsNonExistant(song)) {
        return false;
    }
    rows.push_back(FilesPaneRow(song, path));
    return true;
}

}  // namespace jk
