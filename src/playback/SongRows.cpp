#include "playback/SongRows.h"

#include <algorithm>
#include <deque>

#include "playback/ListPaths.h"
#include "util/PathHelpers.h"
#include "util/StringHelpers.h"
#include "util/Text.h"

namespace jk {

namespace {

inline constexpr std::size_t kBitrateWidth = 4;

}  // namespace

namespace {

// The songs one by one, as the source gives them when asked.
class EachInTurn final : public SongReading {
public:
    explicit EachInTurn(const SongSource::SongFn& songs) : m_songs(songs) {}
    void Announce(std::string path) override { m_paths.push_back(std::move(path)); }
    const SongInfo& Next(std::string& path) override {
        if (m_paths.empty()) {
            m_song = NonExistantSong();
            return m_song;
        }
        path = std::move(m_paths.front());
        m_paths.pop_front();
        m_song = m_songs(path);
        return m_song;
    }

private:
    const SongSource::SongFn& m_songs;
    std::deque<std::string> m_paths;
    SongInfo m_song;
};

}  // namespace

SongSource SongSource::ReadingAhead(ReadingFn reading) {
    SongSource source;
    source.m_reading = std::move(reading);
    return source;
}

std::unique_ptr<SongReading> SongSource::StartReading() const {
    if (m_reading) {
        return m_reading();
    }
    return std::make_unique<EachInTurn>(m_songs);
}

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
    const std::string shownName = title.empty() ? DisplayNameOf(path) : std::string();
    const std::string bitrate = PadField(song.Bitrate, kBitrateWidth);
    return ListRow({title.empty() ? std::string_view(shownName) : title, song.Artist, song.Album,
                    song.Year, song.Genre, song.Time, bitrate, path, song.Comment, song.Size,
                    song.Date, song.Volume});
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
