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

// The songs one by one, as the source views them when asked.
class ViewEachInTurn final : public SongReading {
public:
    explicit ViewEachInTurn(const SongSource& source) : m_source(source) {}
    void Announce(std::string path) override { m_paths.push_back(std::move(path)); }
    bool ViewNext(std::string& path, SongInfo& read, SongView& view) override {
        if (m_paths.empty()) {
            return false;
        }
        path = std::move(m_paths.front());
        m_paths.pop_front();
        return m_source.View(path, read, view);
    }

private:
    const SongSource& m_source;
    std::deque<std::string> m_paths;
};

}  // namespace

std::unique_ptr<SongReading> SongSource::StartReading() const {
    if (m_reading) {
        return m_reading();
    }
    return std::make_unique<ViewEachInTurn>(*this);
}

bool SongSource::View(std::string& path, SongInfo& read, SongView& view) const {
    if (m_views) {
        return m_views(path, read, view);
    }
    read = m_songs(path);
    if (IsNonExistant(read)) {
        return false;
    }
    view = ViewOf(read);
    return true;
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

ListRow SongRow(const SongView& song, std::string_view path) {
    const std::string_view title = RTrim(song.Title);
    const std::string shownName = title.empty() ? DisplayNameOf(path) : std::string();
    const std::string bitrate = PadField(song.Bitrate, kBitrateWidth);
    return ListRow({title.empty() ? std::string_view(shownName) : title, song.Artist, song.Album,
                    song.Year, song.Genre, song.Time, bitrate, path, song.Comment, song.Size,
                    song.Date, song.Volume});
}

ListRow SongRow(const SongInfo& song, std::string_view path) {
    return SongRow(ViewOf(song), path);
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
