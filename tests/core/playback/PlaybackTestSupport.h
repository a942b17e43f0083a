#pragma once

// Shared pieces of the playlist tests: a scratch folder and a song source that knows a fixed
// set of songs and counts its lookups.

#include <map>
#include <string>
#include <string_view>

#include "listing/ListRow.h"
#include "metadata/SongInfo.h"
#include "playback/SongRows.h"
#include "support/TempFolder.h"
#include "util/Text.h"

namespace jk::test {

// A temporary folder whose files are named as `folder / "name"`.
class ScratchFolder : public TempFolder {
public:
    std::string operator/(std::string_view name) const { return File(name); }
};

// Songs by path; any other path is a file that doesn't exist. Paths are trimmed, as
// GetSongInfo trims them.
class FakeSongs {
public:
    SongInfo& Add(const std::string& path, std::string_view title = "Title") {
        SongInfo& song = m_songs[path];
        // clang-format off
        song = {std::string(title), "Artist", "Album", "Comment", "Rock", "1999", "128",
                "2000-02-26 12:00:00", "3300000", "03:25", path, "MUSIC", "", 0, 0};
        // clang-format on
        return song;
    }
    SongSource Source() {
        return [this](std::string_view path) {
            ++m_lookups;
            const auto found = m_songs.find(std::string(Trim(path)));
            return found == m_songs.end() ? NonExistantSong() : found->second;
        };
    }
    int Lookups() const { return m_lookups; }

private:
    std::map<std::string, SongInfo> m_songs;
    int m_lookups = 0;
};

inline ListRow RowAt(std::string_view path, std::string_view artist = "", bool selected = false) {
    ListRow row({path, artist, "", "", "", "", "", path, "", "", "", ""});
    row.SetSelected(selected);
    return row;
}

}  // namespace jk::test
