#pragma once

// How a song becomes a row of a list pane, and where songs come from when a list is read.

#include <concepts>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "catalogue/GetSongInfo.h"
#include "listing/ListRow.h"
#include "metadata/SongInfo.h"

namespace jk {

// Songs asked for one after another in an order told beforehand, so that whoever gives them
// can read ahead of the one asked for.
class SongReading {
public:
    virtual ~SongReading() = default;
    // The path that will be asked for after those announced before it.
    virtual void Announce(std::string path) = 0;
    // The song of the oldest announced path not asked for yet, as SongSource::View gives it:
    // `path` receives that path, trimmed; false for a file that can't be read.
    virtual bool ViewNext(std::string& path, SongInfo& read, SongView& view) = 0;
};

// Gives the song at `path`, trimming the path in place as GetSongInfo does; a file that can't
// be read gives the "File non-existant" record. Made from any callable of that form, or with a
// road that views the song in place (GetSongView), which a list of thousands of known songs
// takes to build its rows without a record each, and one that reads ahead of a list.
class SongSource {
public:
    using SongFn = std::function<SongInfo(std::string& path)>;
    // As GetSongView: false for a song that can't be read; a song read from its file is put in
    // `read` and viewed there.
    using ViewFn = std::function<bool(std::string& path, SongInfo& read, SongView& view)>;

    SongSource() = default;
    template <class F>
    requires(!std::same_as<std::remove_cvref_t<F>, SongSource> &&
             std::is_invocable_r_v<SongInfo, F&, std::string&>) SongSource(F songs)
        : m_songs(std::move(songs)) {}
    using ReadingFn = std::function<std::unique_ptr<SongReading>()>;
    SongSource(SongFn songs, ViewFn views, ReadingFn reading = {})
        : m_songs(std::move(songs)), m_views(std::move(views)), m_reading(std::move(reading)) {}

    SongInfo operator()(std::string& path) const { return m_songs(path); }
    // The song at `path` as a view; false, as IsNonExistant, for a file that can't be read.
    bool View(std::string& path, SongInfo& read, SongView& view) const;
    // A reading of many songs in order, reading ahead where this source can.
    std::unique_ptr<SongReading> StartReading() const;

private:
    SongFn m_songs;
    ViewFn m_views;
    ReadingFn m_reading;
};

// The file name of a path without its extension, each "_" shown as a blank. A path of a
// Windows form ("d:\...", "\\server\...") is cut at its last "\" as well.
std::string DisplayNameOf(std::string_view path);

// The row of a song that exists: Title with trailing blanks cut (the display name when that
// leaves nothing), then Artist, Album, Year, Genre, Time, Bitrate as the panes show it (cut or
// padded to four characters), the path, Comment, Size, Date and Volume.
ListRow SongRow(const SongView& song, std::string_view path);
ListRow SongRow(const SongInfo& song, std::string_view path);

// The row of a line that points nowhere: "* " and the display name, the path in column 7,
// every other column empty.
ListRow GhostRow(std::string_view path);

}  // namespace jk
