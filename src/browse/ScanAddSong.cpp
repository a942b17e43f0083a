#include "browse/ScanAddSong.h"

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

bool Admitted(std::string_view path, int filterMode) {
    return PassesFilter(path, filterMode) && !IsRefusedSongPath(path);
}

}  // namespace

ListRow FilesPaneRow(const SongView& song, std::string_view path) {
    const std::string_view title = Trim(song.Title);
    const std::string nameTitle = title.empty() ? NameAsTitle(path) : std::string();
    std::string bitrate(song.Bitrate);
    PadRight(bitrate, 4);
    return ListRow({title.empty() ? std::string_view(nameTitle) : title, Trim(song.Artist),
                    Trim(song.Album), Trim(song.Year), Trim(song.Genre), Trim(song.Time), bitrate,
                    Trim(song.Path), Trim(song.Comment), song.Size, song.Date, song.Volume});
}

ListRow FilesPaneRow(const SongInfo& song, std::string_view path) {
    return FilesPaneRow(ViewOf(song), path);
}

bool ScanAddSong(std::string path, RowList& rows, int filterMode, const SongReadFn& readSong,
                 const PrefetchedBytes* prefetched) {
    if (!Admitted(path, filterMode)) {
        return false;
    }
    const SongInfo song = readSong(path, prefetched);
    if (IsNonExistant(song)) {
        return false;
    }
    rows.push_back(FilesPaneRow(song, path));
    return true;
}

bool ScanAddSong(std::string path, RowList& rows, int filterMode, const SongViewFn& viewSong,
                 const PrefetchedBytes* prefetched) {
    if (!Admitted(path, filterMode)) {
        return false;
    }
    SongInfo read;  // a song read from its file, which `song` then views
    SongView song;
    if (!viewSong(path, prefetched, read, song)) {
        return false;
    }
    rows.push_back(FilesPaneRow(song, path));
    return true;
}

}  // namespace jk
