#pragma once

// Shared pieces of the playlist tests: a scratch folder, file helpers and a song source that
// knows a fixed set of songs and counts its lookups.

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <string_view>

#include <unistd.h>

#include "metadata/SongInfo.h"
#include "playback/ListRow.h"
#include "playback/SongRows.h"
#include "util/Text.h"

namespace jk::test {

// A fresh folder below the system's temporary folder, removed again at the end of the test.
class ScratchFolder {
public:
    ScratchFolder() {
        static int counter = 0;
        const auto base =
            std::filesystem::temp_directory_path() /
            ("jk-playback-" + std::to_string(::getpid()) + "-" + std::to_string(counter++));
        std::filesystem::remove_all(base);
        std::filesystem::create_directories(base);
        m_path = base.string();
    }
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::string& Path() const { return m_path; }
    std::string operator/(std::string_view name) const { return m_path + "/" + std::string(name); }

private:
    std::string m_path;
};

inline void WriteBytes(const std::string& path, std::string_view bytes) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary).write(bytes.data(), std::ssize(bytes));
}

inline std::string ReadBytes(const std::string& path) {
    std::ostringstream all;
    all << std::ifstream(path, std::ios::binary).rdbuf();
    return all.str();
}

// Songs by path; any other path is a file that doesn't exist. Paths are trimmed in place, as
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
        return [this](std::string& path) {
            ++m_lookups;
            path = std::string(Trim(path));
            const auto found = m_songs.find(path);
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
