#include "playback/Shuffler.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace jk {

namespace {

std::string_view ArtistOf(const SongInfo& song) {
    return song.Artist;
}
std::string_view ArtistOf(const ListRow& row) {
    return row.Get(Column::Artist);
}
bool HasNoFilename(const SongInfo& song) {
    return song.Path.empty();
}
bool HasNoFilename(const ListRow& row) {
    return row.Get(Column::Filename).empty();
}

template <class Record>
void QuickShuffle(std::vector<Record>& rows, ShuffleRandom& random) {
    const std::size_t n = rows.size();
    for (std::size_t i = 1; i <= n; ++i) {
        const std::size_t j = random.Pick(i, n);
        if (j != i) {
            std::swap(rows[i - 1], rows[j - 1]);
        }
    }
}

// The free places of the ring, found without walking over the taken ones: for each place the
// first free place at or after it (n + 1 when none is left before the end), kept as a disjoint
// set forest with path halving.
class FreePlaces {
public:
    explicit FreePlaces(std::size_t n) : m_next(n + 2), m_n(n) {
        for (std::size_t i = 0; i < m_next.size(); ++i) {
            m_next[i] = static_cast<std::uint32_t>(i);
        }
    }

    void Take(std::size_t place) { m_next[place] = static_cast<std::uint32_t>(place + 1); }

    // The first free place from `place` on, going round the ring past n to 1.
    std::size_t FromOn(std::size_t place) {
        const std::size_t found = Find(place);
        return found <= m_n ? found : Find(1);
    }

    // The first free place after `place`.
    std::size_t After(std::size_t place) { return FromOn(place == m_n ? 1 : place + 1); }

private:
    std::size_t Find(std::size_t place) {
        while (m_next[place] != place) {
            m_next[place] = m_next[m_next[place]];
            place = m_next[place];
        }
        return place;
    }

    std::vector<std::uint32_t> m_next;
    std::size_t m_n;
};

// The places of the enhanced shuffle, numbered 1 to n as the algorithm counts them: for each
// place the number of the record put there (1 to n), or 0 when none stayed there. Artists are
// compared as views into the records, which don't move meanwhile.
//
// The walks of the algorithm go one place at a time, but a taken place can neither end the
// search for home nor be chosen, and home is free, so only the free places are visited here:
// the same places result, without the walks over long runs of taken ones.
std::vector<std::uint32_t> PlaceRecords(const std::vector<std::string_view>& artists,
                                        const std::vector<std::uint8_t>& leavesPlaceFree,
                                        ShuffleRandom& random) {
    const std::size_t n = artists.size();
    std::vector<std::uint32_t> recordAt(n + 1, 0);
    std::vector<std::string_view> artistAt(n + 1);  // a free place's artist is empty
    FreePlaces free(n);
    const auto place = [&](std::size_t at, std::size_t i) {
        recordAt[at] = static_cast<std::uint32_t>(i);
        artistAt[at] = artists[i - 1];
        if (!leavesPlaceFree[i - 1]) {
            free.Take(at);
        }
    };
    for (std::size_t i = 1; i <= n; ++i) {
        const std::size_t r = random.Pick(i, n);
        if (i == 1) {
            place(r, i);
            continue;
        }
        const std::size_t home = free.FromOn(r);
        const std::string_view artist = artists[i - 1];
        // The search begins behind home and tries home itself last, after the whole ring.
        std::size_t c = home;
        for (;;) {
            c = free.After(c);
            const std::size_t before = c == 1 ? n : c - 1;
            const std::size_t after = c == n ? 1 : c + 1;
            if (c == home || (artistAt[before] != artist && artistAt[after] != artist)) {
                break;
            }
        }
        place(c, i);
    }
    return recordAt;
}

template <class Record>
void EnhancedShuffle(std::vector<Record>& rows, ShuffleRandom& random) {
    QuickShuffle(rows, random);
    const std::size_t n = rows.size();
    if (n == 0) {
        return;
    }
    std::vector<std::string_view> artists;
    std::vector<std::uint8_t> leavesPlaceFree;
    artists.reserve(n);
    leavesPlaceFree.reserve(n);
    for (const Record& record : rows) {
        artists.push_back(ArtistOf(record));
        leavesPlaceFree.push_back(HasNoFilename(record) ? 1 : 0);
    }
    const std::vector<std::uint32_t> recordAt = PlaceRecords(artists, leavesPlaceFree, random);
    artists.clear();  // views into the records, which move now
    std::vector<Record> placed(n);
    for (std::size_t at = 1; at <= n; ++at) {
        if (recordAt[at] != 0) {
            placed[at - 1] = std::move(rows[recordAt[at] - 1]);
        }
    }
    rows = std::move(placed);
}

}  // namespace

bool UseEnhancedShuffle(std::int16_t quickShuffle) {
    return quickShuffle != 1;
}

void QuickShuffleRows(std::vector<SongInfo>& rows, ShuffleRandom& random) {
    QuickShuffle(rows, random);
}

void QuickShuffleRows(RowList& rows, ShuffleRandom& random) {
    QuickShuffle(rows, random);
}

void EnhancedShuffleRows(std::vector<SongInfo>& rows, ShuffleRandom& random) {
    EnhancedShuffle(rows, random);
}

void EnhancedShuffleRows(RowList& rows, ShuffleRandom& random) {
    EnhancedShuffle(rows, random);
}

SongInfo SongFromRow(const ListRow& row) {
    SongInfo song;
    song.Title = row.Get(Column::Title);
    song.Artist = row.Get(Column::Artist);
    song.Album = row.Get(Column::Album);
    song.Comment = row.Get(Column::Comment);
    song.Genre = row.Get(Column::Genre);
    song.Year = row.Get(Column::Year);
    song.Bitrate = row.Get(Column::Bitrate);
    song.Date = row.Get(Column::Date);
    song.Size = row.Get(Column::Size);
    song.Time = row.Get(Column::Time);
    song.Path = row.Get(Column::Filename);
    song.Volume = row.Get(Column::Volume);
    return song;
}

void WriteSongToRow(const SongInfo& song, ListRow& row) {
    row.SetAll({song.Title, song.Artist, song.Album, song.Year, song.Genre, song.Time, song.Bitrate,
                song.Path, song.Comment, song.Size, song.Date, song.Volume});
}

namespace {

// Records or rows, by the shuffle the setting names.
template <typename Rows>
void Shuffle(Rows& rows, bool enhanced, ShuffleRandom& random) {
    if (enhanced) {
        EnhancedShuffle(rows, random);
    } else {
        QuickShuffle(rows, random);
    }
}

// The records of the rows that `take` accepts, shuffled; an empty list leaves `rows` as it is.
template <typename Predicate>
void ShuffleRowsWhere(const RowList& list, std::vector<SongInfo>& rows, bool enhanced,
                      ShuffleRandom& random, Predicate take) {
    if (list.empty()) {
        return;
    }
    rows.clear();
    rows.reserve(list.size());
    for (const ListRow& row : list) {
        if (take(row)) {
            rows.push_back(SongFromRow(row));
        }
    }
    Shuffle(rows, enhanced, random);
}

}  // namespace

void ShuffleAllRows(const RowList& list, std::vector<SongInfo>& rows, bool enhanced,
                    ShuffleRandom& random) {
    ShuffleRowsWhere(list, rows, enhanced, random, [](const ListRow&) { return true; });
}

void ShuffleSelectedRows(const RowList& list, std::vector<SongInfo>& rows, bool enhanced,
                         ShuffleRandom& random) {
    ShuffleRowsWhere(list, rows, enhanced, random,
                     [](const ListRow& row) { return row.Selected(); });
}

void WriteBackAllRows(RowList& list, const std::vector<SongInfo>& rows) {
    const std::size_t count = std::min(list.size(), rows.size());
    for (std::size_t i = 0; i < count; ++i) {
        WriteSongToRow(rows[i], list[i]);
    }
}

void WriteBackSelectedRows(RowList& list, const std::vector<SongInfo>& rows) {
    std::size_t next = 0;
    for (ListRow& row : list) {
        if (next == rows.size()) {
            break;
        }
        if (row.Selected()) {
            WriteSongToRow(rows[next++], row);
        }
    }
}

void ShuffleListRows(RowList& list, bool selectedOnly, bool enhanced, ShuffleRandom& random) {
    if (list.empty()) {
        return;
    }
    if (!selectedOnly) {
        std::vector<std::uint8_t> selected(list.size());
        for (std::size_t i = 0; i < list.size(); ++i) {
            selected[i] = list[i].Selected() ? 1 : 0;
        }
        Shuffle(list, enhanced, random);
        for (std::size_t i = 0; i < list.size(); ++i) {
            list[i].SetSelected(selected[i] != 0);
        }
        return;
    }
    std::vector<std::size_t> positions;
    RowList picked;
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (list[i].Selected()) {
            positions.push_back(i);
            picked.push_back(std::move(list[i]));
        }
    }
    Shuffle(picked, enhanced, random);
    for (std::size_t k = 0; k < positions.size(); ++k) {
        list[positions[k]] = std::move(picked[k]);
        list[positions[k]].SetSelected(true);
    }
}

}  // namespace jk
