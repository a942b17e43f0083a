#pragma once

// How a song becomes a row of a list pane, and where songs come from when a list is read.

#include <concepts>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

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
    // The song of the oldest announced path not asked for yet, as GetSongInfo gives it (the
    // "File non-existant" record for a file that can't be read); `path` receives that path as
    // it was announced. The record is lent until the next call.
    virtual const SongInfo& Next(std::string& path) = 0;
};

// Where the songs of a list come from: a reading through the song cache that reads ahead
// (CachedSongSource), or any callable that gives the song at a path, one by one.
class SongSource {
public:
    using SongFn = std::function<SongInfo(std::string_view path)>;
    using ReadingFn = std::function<std::unique_ptr<SongReading>()>;

    SongSource() = default;
    template <class F>
    requires(!std::same_as<std::remove_cvref_t<F>, SongSource> &&
             std::is_invocable_r_v<SongInfo, F&, std::string_view>) SongSource(F songs)
        : m_songs(std::move(songs)) {}
    static SongSource ReadingAhead(ReadingFn reading);

    // A reading of many songs in order.
    std::unique_ptr<SongReading> StartReading() const;

private:
    SongFn m_songs;
    ReadingFn m_reading;
};

// The file name of a path without its extension, each "_" shown as a blank. A path of a
// Windows form ("d:\...", "\\server\...") is cut at its last "\" as well.
std::string DisplayNameOf(std::string_view path);

// The row of a song that exists: Title with trailing blanks cut (the display name when that
// leaves nothing), then Artist, Album, Year, Genre, Time, Bitrate as the panes show it (cut or
// padded to four characters), the path, Comment, Size, Date and Volume.
ListRow SongRow(const SongInfo& song, std::string_view path);

// The row of a line that points nowhere: "* " and the display name, the path in column 7,
// every other column empty.
ListRow GhostRow(std::string_view path);

}  // namespace jk
