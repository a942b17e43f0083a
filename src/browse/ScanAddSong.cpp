#include "browse/ScanAddSong.h"

#include <string>

#include "listing/WalkRules.h"
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

ListRow FilesPaneRow(const SongInfo& song) {
    return FilesPaneRow(SongRowTexts{song.Title, song.Artist, song.Album, song.Year, song.Genre,
                                     song.Time, song.Bitrate, song.Path, song.Comment, song.Size,
                                     song.Date, song.Volume});
}

ListRow FilesPaneRow(const SongRowTexts& song) {
    const std::string_view title = Trim(song.Title);
    const std::string nameTitle = title.empty() ? NameAsTitle(song.Path) : std::string();
    std::string bitrate(song.Bitrate);
    PadRight(bitrate, 4);
    return ListRow({title.empty() ? std::string_view(nameTitle) : title, Trim(song.Artist),
                    Trim(song.Album), Trim(song.Year), Trim(song.Genre), Trim(song.Time), bitrate,
                    Trim(song.Path), Trim(song.Comment), song.Size, song.Date, song.Volume});
}

bool ScanAddSong(std::string_view path, RowList& rows, int filterMode, SongLookup& lookup,
                 const PrefetchedBytes* prefetched) {
    if (!PassesFilter(path, filterMode) || IsRefusedSongPath(path)) {
        return false;
    }
    const SongInfo& song = LendSongInfo(path, lookup, prefetched);
    if (IsNonExistant(song)) {
        return false;
    }
    rows.push_back(FilesPaneRow(song));
    return true;
}

}  // namespace jk
