#include "browse/VirtualListing.h"

#include "browse/ScanAddSong.h"
#include "catalogue/SongCache.h"
#include "catalogue/SongFields.h"
#include "catalogue/VirtualFolders.h"
#include "listing/RowCopy.h"

namespace jk {
namespace {

constexpr std::size_t kProgressEvery = 4096;

std::size_t AppendSongs(const VirtualVolume& volume, const std::vector<std::size_t>& songs,
                        RowList& playlist, bool exactTimes, const RowProgress& progress,
                        std::size_t& done, std::size_t total, bool& stopped) {
    std::size_t added = 0;
    for (const std::size_t i : songs) {
        playlist.push_back(PlaylistRowOf(VirtualSongRow(volume, i, exactTimes)));
        ++added;
        if (progress && ++done % kProgressEvery == 0 && !progress(done, total)) {
            stopped = true;
            break;
        }
    }
    return added;
}

}  // namespace

ListRow VirtualSongRow(const VirtualVolume& volume, std::size_t i, bool exactTimes) {
    const SongFieldViews fields = volume.FieldsOf(i);
    // Songs keep the Time their scan gave ("MM:SS"); older files may hold the cache's "MMSS".
    std::string stored(fields[kKeyTime - 1]);
    std::erase(stored, ':');
    const std::string time = ShownTime(stored, exactTimes);
    SongRowTexts texts;
    texts.Title = fields[kKeyTitle - 1];
    texts.Artist = fields[kKeyArtist - 1];
    texts.Album = fields[kKeyAlbum - 1];
    texts.Year = fields[kKeyYear - 1];
    texts.Genre = fields[kKeyGenre - 1];
    texts.Time = time;
    texts.Bitrate = fields[kKeyBitrate - 1];
    texts.Path = fields[kKeyPath - 1];
    texts.Comment = fields[kKeyComment - 1];
    texts.Size = fields[kKeySize - 1];
    texts.Date = fields[kKeyDate - 1];
    texts.Volume = fields[kKeyVolume - 1];
    return FilesPaneRow(texts);
}

std::size_t GetVirtualFolder(const VolumeTable& table, std::string_view key, RowList& rows,
                             bool exactTimes) {
    rows.clear();
    const VirtualKeyParts parts = SplitVirtualKey(key);
    const std::size_t v = FindVolume(table, parts.Volume);
    if (v == kNoVolume) {
        return 0;
    }
    const std::vector<std::size_t> songs = SongsOfVirtualFolder(table[v], parts.Folder, false);
    rows.reserve(songs.size());
    for (const std::size_t i : songs) {
        rows.push_back(VirtualSongRow(table[v], i, exactTimes));
    }
    return rows.size();
}

std::size_t RecurseDirVirtual(const VolumeTable& table, std::string_view key, RowList& playlist,
                              bool exactTimes, const RowProgress& progress) {
    const VirtualKeyParts parts = SplitVirtualKey(key);
    const std::size_t v = FindVolume(table, parts.Volume);
    if (v == kNoVolume) {
        return 0;
    }
    const std::vector<std::size_t> songs = SongsOfVirtualFolder(table[v], parts.Folder, true);
    std::size_t done = 0;
    bool stopped = false;
    playlist.reserve(playlist.size() + songs.size());
    return AppendSongs(table[v], songs, playlist, exactTimes, progress, done, songs.size(),
                       stopped);
}

std::size_t RecurseAllVirtual(const VolumeTable& table, RowList& playlist, bool exactTimes,
                              const RowProgress& progress) {
    const auto total = static_cast<std::size_t>(TotalSongs(table));
    playlist.reserve(playlist.size() + total);
    std::size_t done = 0;
    std::size_t added = 0;
    bool stopped = false;
    for (const VirtualVolume& volume : table) {
        std::vector<std::size_t> songs(volume.Count());
        for (std::size_t i = 0; i < songs.size(); ++i) {
            songs[i] = i;
        }
        added += AppendSongs(volume, songs, playlist, exactTimes, progress, done, total, stopped);
        if (stopped) {
            break;
        }
    }
    return added;
}

}  // namespace jk
