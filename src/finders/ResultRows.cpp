#include "finders/ResultRows.h"

#include <cstdio>

#include "catalogue/SongFields.h"
#include "util/PathHelpers.h"
#include "util/StringHelpers.h"
#include "util/Text.h"
#include "util/TimeHelpers.h"

namespace jk {
namespace {

std::string_view TitleOrName(std::string_view title, std::string_view path) {
    return Trim(title).empty() ? CataloguedBareName(path) : title;
}

}  // namespace

ListRow RealHitRow(const SongInfo& song) {
    const std::string_view path = Trim(song.Path);
    const std::string_view title = Trim(song.Title);
    const std::string bitrate = PadField(song.Bitrate, 4);
    return ListRow({title.empty() ? BareName(path) : title, Trim(song.Artist), Trim(song.Album),
                    Trim(song.Year), Trim(song.Genre), Trim(song.Time), bitrate, path,
                    Trim(song.Comment), Trim(song.Size), Trim(song.Date), Trim(song.Volume)});
}

ListRow CatalogueHitRow(const SongFieldViews& fields) {
    const std::string_view path = SongFieldView(fields, kKeyPath);
    return ListRow({TitleOrName(SongFieldView(fields, kKeyTitle), path),
                    SongFieldView(fields, kKeyArtist), SongFieldView(fields, kKeyAlbum),
                    SongFieldView(fields, kKeyYear), SongFieldView(fields, kKeyGenre),
                    SongFieldView(fields, kKeyTime), SongFieldView(fields, kKeyBitrate), path,
                    SongFieldView(fields, kKeyComment), SongFieldView(fields, kKeySize),
                    SongFieldView(fields, kKeyDate), SongFieldView(fields, kKeyVolume)});
}

std::string_view SearchFieldOf(const SongFieldViews& fields, SearchField field) {
    switch (field) {
        case SearchField::Title:
            return SongFieldView(fields, kKeyTitle);
        case SearchField::Artist:
            return SongFieldView(fields, kKeyArtist);
        case SearchField::Album:
            return SongFieldView(fields, kKeyAlbum);
        case SearchField::Year:
            return SongFieldView(fields, kKeyYear);
        case SearchField::Genre:
            return SongFieldView(fields, kKeyGenre);
        case SearchField::Bitrate:
            return SongFieldView(fields, kKeyBitrate);
        case SearchField::Filename:
            return SongFieldView(fields, kKeyPath);
        case SearchField::Comment:
            return SongFieldView(fields, kKeyComment);
        case SearchField::Volume:
            return SongFieldView(fields, kKeyVolume);
        case SearchField::Count:
            break;
    }
    return {};
}

ListRow PlaylistRowOfResult(const ListRow& result) {
    ListRow row = result;
    row.SetSelected(false);
    const std::string_view path = result.Get(Column::Filename);
    if (Trim(result.Get(Column::Title)).empty()) {
        row.Set(Column::Title, CataloguedBareName(path));
    }
    return row;
}

void ResultsTally::Add(const ListRow& row) {
    Add(row.Get(Column::Time), row.Get(Column::Size));
}

void ResultsTally::Add(std::string_view time, std::string_view size) {
    m_seconds += ParseTime(time, m_exactTimes);
    m_bytes += Val(size);
    ++m_rows;
}

std::string ResultsTally::Text() const {
    if (m_rows == 0) {
        return " No results.";
    }
    const double megabytes = m_bytes / 1024 / 1024;
    char size[64];
    if (megabytes <= 1024) {
        std::snprintf(size, sizeof size, "%.2f MB", megabytes);
    } else {
        std::snprintf(size, sizeof size, "%.2f GB", megabytes / 1024);
    }
    const std::string time = FormatHMS(m_seconds);
    if (m_rows == 1) {
        return " 1 song - " + time + ", " + size;
    }
    return " " + std::to_string(m_rows) + " songs - " + time + ", " + size;
}

std::string ResultsStats(const RowList& rows, bool exactTimes) {
    ResultsTally tally(exactTimes);
    for (const ListRow& row : rows) {
        tally.Add(row);
    }
    return tally.Text();
}

}  // namespace jk
