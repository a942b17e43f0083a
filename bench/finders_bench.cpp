// The finders at scale, side by side in one run: a search of a generated catalogue through the
// index, through the plain record-by-record loop, and through SQLite FTS5 with the trigram
// tokenizer (the nine fields in one table); the index's build time and memory; the Duplicate
// Finder's grouping of every record by title beside `LC_ALL=C sort -f` of the same keys; and the
// Selection wizard over a pane of 100,000 rows.
//
// Usage: finders_bench [SONGS (1000000)] [QUERIES (1000)] [--no-fts] [--scan-every N]
//                      [--index-only] [--dupes-only] [--master DIR]
// (--scan-every times the plain loop on every Nth query only: at a million songs it takes
// seconds a query; --index-only builds the index five times and stops, to profile the build;
// --dupes-only runs the Duplicate Finder and the Selection wizard alone; --master writes the
// catalogue as DIR/master.dat and stops, for jukarra-cli to read.)

#include <sqlite3.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "BenchCatalogue.h"
#include "BenchSupport.h"
#include "catalogue/SongFields.h"
#include "finders/CatalogueSearch.h"
#include "finders/DuplicateArray.h"
#include "finders/DuplicateFinder.h"
#include "finders/DuplicateSort.h"
#include "finders/IndexedSearch.h"
#include "finders/ResultRows.h"
#include "finders/SearchIndex.h"
#include "finders/SelectionWizard.h"

namespace {

using Clock = std::chrono::steady_clock;
double Ms(Clock::time_point a, Clock::time_point b) {
    return std::chrono::duration<double, std::milli>(b - a).count();
}

// A catalogue held as one text arena with each song's thirteen fields as offsets into it.
class PackedCatalogue final : public jk::CatalogueView {
public:
    static constexpr std::size_t kFields = 13;
    std::vector<std::string> names;
    std::vector<std::size_t> firstSong{0};
    std::string arena;
    std::vector<std::uint32_t> ends;  // kFields per song

    void AddSong(const std::array<std::string, kFields>& fields) {
        for (const std::string& f : fields) {
            arena += f;
            ends.push_back(static_cast<std::uint32_t>(arena.size()));
        }
    }
    std::size_t VolumeCount() const override { return names.size(); }
    std::string_view VolumeName(std::size_t v) const override { return names[v]; }
    std::size_t SongCount(std::size_t v) const override { return firstSong[v + 1] - firstSong[v]; }
    jk::SongFieldViews Fields(std::size_t v, std::size_t i) const override {
        const std::size_t song = firstSong[v] + i;
        jk::SongFieldViews out;
        std::uint32_t start = song == 0 ? 0 : ends[song * kFields - 1];
        for (std::size_t f = 0; f < kFields; ++f) {
            const std::uint32_t end = ends[song * kFields + f];
            out[f] = std::string_view(arena).substr(start, end - start);
            start = end;
        }
        out[jk::kKeyVolume - 1] = names[v];
        return out;
    }
    std::uint64_t Generation() const override { return 1; }
    std::size_t MemoryBytes() const { return arena.capacity() + ends.capacity() * 4; }
};

const char* const kWords[] = {
    "love",  "night", "blue",  "fire",  "heart",  "river",   "dance",    "moon",   "rain",
    "city",  "dream", "road",  "gold",  "wild",   "shadow",  "light",    "summer", "ocean",
    "storm", "angel", "sky",   "Élan",  "Straße", "Mädchen", "Göteborg", "niño",   "Ångström",
    "café",  "über",  "señor", "déjà",  "vu",     "home",    "time",     "fall",   "rise",
    "run",   "stone", "glass", "paper", "silver", "echo"};
const char* const kGenres[] = {"Rock",    "Pop",   "Jazz",       "Blues", "Classical",
                               "Country", "Dance", "Electronic", "Folk",  "Hip-Hop",
                               "Metal",   "Punk",  "Reggae",     "Soul"};

std::string Words(std::mt19937& rng, int n) {
    std::string out;
    for (int i = 0; i < n; ++i) {
        if (i > 0) {
            out += ' ';
        }
        out += kWords[rng() % std::size(kWords)];
    }
    return out;
}

PackedCatalogue Generate(std::size_t songs) {
    std::mt19937 rng(42);
    PackedCatalogue catalogue;
    const std::size_t perVolume = 1000;
    std::vector<std::string> artists;
    for (int i = 0; i < 20000; ++i) {
        artists.push_back(Words(rng, 2) + " " + std::to_string(i % 97));
    }
    for (std::size_t done = 0; done < songs;) {
        catalogue.names.push_back("Disc" + std::to_string(catalogue.names.size() + 1));
        const std::size_t n = std::min(perVolume, songs - done);
        for (std::size_t i = 0; i < n; ++i) {
            const std::string& artist = artists[rng() % artists.size()];
            const std::string album = Words(rng, 2) + " " + std::to_string(rng() % 50);
            const std::string title = Words(rng, 1 + static_cast<int>(rng() % 3));
            const std::string path = "/" + artist + "/" + album + "/" + std::to_string(i % 20 + 1) +
                                     " " + title + ".mp3";
            std::array<std::string, PackedCatalogue::kFields> f;
            f[jk::kKeyTitle - 1] = title;
            f[jk::kKeyArtist - 1] = artist;
            f[jk::kKeyAlbum - 1] = album;
            f[jk::kKeyYear - 1] = std::to_string(1950 + rng() % 75);
            f[jk::kKeyComment - 1] = rng() % 4 == 0 ? Words(rng, 3) : "";
            f[jk::kKeyGenre - 1] = kGenres[rng() % std::size(kGenres)];
            f[jk::kKeyTime - 1] = "03:" + std::to_string(10 + rng() % 50);
            f[jk::kKeyPath - 1] = path;
            f[jk::kKeySize - 1] = std::to_string(2000000 + rng() % 8000000);
            f[jk::kKeyDate - 1] = "2/26/00 11:22:33 PM";
            f[jk::kKeyBitrate - 1] = std::to_string(128 + 32 * (rng() % 7));
            catalogue.AddSong(f);
        }
        done += n;
        catalogue.firstSong.push_back(done);
    }
    // Its memory is what it holds, not what the growing buffers happened to reserve.
    catalogue.arena.shrink_to_fit();
    catalogue.ends.shrink_to_fit();
    return catalogue;
}

// Queries of 1 to 12 characters cut from the data (whole UTF-8 characters), with some misses.
std::vector<std::string> Queries(const PackedCatalogue& catalogue, std::size_t count) {
    std::mt19937 rng(7);
    std::vector<std::string> out;
    const std::size_t songs = catalogue.ends.size() / PackedCatalogue::kFields;
    while (out.size() < count) {
        if (rng() % 10 == 0) {
            out.push_back(std::string("zqx").substr(0, 1 + rng() % 3) + "jw");
            continue;
        }
        const std::size_t song = rng() % songs;
        std::size_t volume = 0;
        while (catalogue.firstSong[volume + 1] <= song) {
            ++volume;
        }
        const auto fields = catalogue.Fields(volume, song - catalogue.firstSong[volume]);
        const int keys[] = {jk::kKeyTitle, jk::kKeyArtist, jk::kKeyAlbum, jk::kKeyPath,
                            jk::kKeyYear};
        const std::string_view field = fields[keys[rng() % std::size(keys)] - 1];
        if (field.empty()) {
            continue;
        }
        std::size_t start = rng() % field.size();
        while (start > 0 && (static_cast<unsigned char>(field[start]) & 0xC0) == 0x80) {
            --start;
        }
        std::size_t end = std::min(field.size(), start + 1 + rng() % 12);
        while (end < field.size() && (static_cast<unsigned char>(field[end]) & 0xC0) == 0x80) {
            ++end;
        }
        std::string q(field.substr(start, end - start));
        if (rng() % 3 == 0) {
            std::transform(q.begin(), q.end(), q.begin(), [](char c) {
                return static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
            });
        }
        out.push_back(q);
    }
    return out;
}

std::size_t CharCount(std::string_view text) {
    std::size_t n = 0;
    for (const char c : text) {
        n += (static_cast<unsigned char>(c) & 0xC0) != 0x80 ? 1 : 0;
    }
    return n;
}

struct Timings {
    std::vector<double> shortQ;  // 1-2 characters
    std::vector<double> longQ;   // 3 and more
    std::vector<std::size_t> hits;
    void Add(const std::string& q, double ms, std::size_t found) {
        (CharCount(q) <= 2 ? shortQ : longQ).push_back(ms);
        hits.push_back(found);
    }
};

double Percentile(std::vector<double> v, double p) {
    if (v.empty()) {
        return 0;
    }
    std::sort(v.begin(), v.end());
    const auto at = static_cast<std::size_t>(std::ceil(p * static_cast<double>(v.size()))) - 1;
    return v[std::min(at, v.size() - 1)];
}

void Print(const char* what, const Timings& t) {
    std::vector<double> all = t.shortQ;
    all.insert(all.end(), t.longQ.begin(), t.longQ.end());
    std::printf(
        "%-24s all: median %8.2f ms  p99 %8.2f ms | 3+ chars: median %8.2f p99 %8.2f | "
        "1-2 chars: median %8.2f p99 %8.2f\n",
        what, Percentile(all, 0.5), Percentile(all, 0.99), Percentile(t.longQ, 0.5),
        Percentile(t.longQ, 0.99), Percentile(t.shortQ, 0.5), Percentile(t.shortQ, 0.99));
}

jk::SearchRequest RequestFor(const std::string& q) {
    jk::SearchRequest request;
    request.Query = jk::TextQuery(q, false);
    request.Fields.set();
    return request;
}

// The Part's loop: every record of every volume through the text test; the hits counted and
// the first 100 rows built.
std::size_t LinearScan(const PackedCatalogue& catalogue, const jk::SearchRequest& request) {
    std::size_t hits = 0;
    jk::RowList rows;
    for (std::size_t v = 0; v < catalogue.VolumeCount(); ++v) {
        for (std::size_t i = 0; i < catalogue.SongCount(v); ++i) {
            const jk::SongFieldViews fields = catalogue.Fields(v, i);
            if (jk::SearchVirtualRecord(fields, request) == jk::Verdict::Match) {
                if (++hits <= 100) {
                    rows.push_back(jk::CatalogueHitRow(fields));
                }
            }
        }
    }
    return hits;
}

std::size_t Indexed(const jk::SearchIndex& index, const PackedCatalogue& catalogue,
                    const jk::SearchRequest& request) {
    const jk::IndexedResult found = jk::FindIndexed(index, catalogue, request, "");
    jk::RowList rows;
    jk::AppendCatalogueRows(catalogue, found.Songs, 0,
                            std::min<std::size_t>(100, found.Songs.size()), rows);
    return found.Songs.size();
}

struct Fts {
    sqlite3* db = nullptr;
    sqlite3_stmt* match = nullptr;
    sqlite3_stmt* like = nullptr;
};

const char* const kFtsColumns[] = {"title", "artist",  "album", "comment", "genre",
                                   "year",  "bitrate", "path",  "volume"};

double BuildFts(Fts& fts, const PackedCatalogue& catalogue, const std::string& file) {
    std::remove(file.c_str());
    sqlite3_open(file.c_str(), &fts.db);
    sqlite3_exec(fts.db, "PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF;", nullptr, nullptr,
                 nullptr);
    sqlite3_exec(fts.db,
                 "CREATE VIRTUAL TABLE songs USING fts5(title, artist, album, comment, genre, "
                 "year, bitrate, path, volume, tokenize='trigram')",
                 nullptr, nullptr, nullptr);
    const auto start = Clock::now();
    sqlite3_exec(fts.db, "BEGIN", nullptr, nullptr, nullptr);
    sqlite3_stmt* insert = nullptr;
    sqlite3_prepare_v2(fts.db, "INSERT INTO songs VALUES (?,?,?,?,?,?,?,?,?)", -1, &insert,
                       nullptr);
    const int keys[] = {jk::kKeyTitle,   jk::kKeyArtist, jk::kKeyAlbum,
                        jk::kKeyComment, jk::kKeyGenre,  jk::kKeyYear,
                        jk::kKeyBitrate, jk::kKeyPath,   jk::kKeyVolume};
    for (std::size_t v = 0; v < catalogue.VolumeCount(); ++v) {
        for (std::size_t i = 0; i < catalogue.SongCount(v); ++i) {
            const jk::SongFieldViews fields = catalogue.Fields(v, i);
            for (int c = 0; c < 9; ++c) {
                const std::string_view f = fields[static_cast<std::size_t>(keys[c] - 1)];
                sqlite3_bind_text(insert, c + 1, f.data(), static_cast<int>(f.size()),
                                  SQLITE_STATIC);
            }
            sqlite3_step(insert);
            sqlite3_reset(insert);
        }
    }
    sqlite3_finalize(insert);
    sqlite3_exec(fts.db, "COMMIT", nullptr, nullptr, nullptr);
    const double ms = Ms(start, Clock::now());
    sqlite3_prepare_v2(fts.db, "SELECT * FROM songs WHERE songs MATCH ?", -1, &fts.match, nullptr);
    std::string like = "SELECT * FROM songs WHERE ";
    for (int c = 0; c < 9; ++c) {
        like += std::string(c > 0 ? " OR " : "") + kFtsColumns[c] + " LIKE ?1";
    }
    sqlite3_prepare_v2(fts.db, like.c_str(), -1, &fts.like, nullptr);
    return ms;
}

// The same substring test in FTS5: a phrase of the query for three characters and more (the
// trigram index), LIKE over the nine columns below that (no index can serve it).
std::size_t FtsSearch(Fts& fts, const std::string& q) {
    sqlite3_stmt* statement = nullptr;
    std::string bound;
    if (CharCount(q) >= 3) {
        statement = fts.match;
        bound = "\"";
        for (const char c : q) {
            bound += c == '"' ? std::string("\"\"") : std::string(1, c);
        }
        bound += "\"";
    } else {
        statement = fts.like;
        bound = "%" + q + "%";
    }
    sqlite3_bind_text(statement, 1, bound.data(), static_cast<int>(bound.size()), SQLITE_TRANSIENT);
    std::size_t hits = 0;
    std::vector<std::string> first;
    while (sqlite3_step(statement) == SQLITE_ROW) {
        if (++hits <= 100) {
            for (int c = 0; c < 9; ++c) {
                first.emplace_back(
                    reinterpret_cast<const char*>(sqlite3_column_text(statement, c)));
            }
        }
    }
    sqlite3_reset(statement);
    return hits;
}

double ChildCpuSeconds() {
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

// The finder's whole run (the records gathered, sorted and grouped into the listed order)
// beside sort -f of the same keys, best of `rounds`; CPU time is given too, as a loaded machine
// stretches the wall clock. The rows of the listed songs are made where they are shown (the
// window) or printed (the CLI): their making is timed on its own, as is the earlier road that
// copied every song into a row before sorting.
void DuplicateBench(const PackedCatalogue& catalogue, int rounds) {
    // A name of this run's own: another run of the bench may be writing its keys beside it.
    const std::string keys = "/tmp/finders_bench_keys." + std::to_string(::getpid()) + ".txt";
    {
        std::ofstream out(keys);
        for (std::size_t v = 0; v < catalogue.VolumeCount(); ++v) {
            for (std::size_t i = 0; i < catalogue.SongCount(v); ++i) {
                out << catalogue.Fields(v, i)[jk::kKeyTitle - 1] << '\n';
            }
        }
    }
    // Wall and CPU time (summed over threads) of a part, best of the rounds.
    struct Phase {
        double wall = 1e18;
        double cpu = 1e18;
        void Take(double cpuStart, Clock::time_point start) {
            wall = std::min(wall, Ms(start, Clock::now()));
            cpu = std::min(cpu, (jkbench::CpuSeconds() - cpuStart) * 1000);
        }
    };
    double loadMs = 1e18;
    double groupMs = 1e18;
    Phase finder;
    Phase rowsMade;
    Phase rowsPrinted;
    std::size_t rowBytes = 0;
    Phase sortF;
    std::size_t listedCount = 0;
    int rc = 0;
    for (int round = 0; round < rounds; ++round) {
        double cpu = jkbench::CpuSeconds();
        const auto load = Clock::now();
        jk::DupeArray array;
        array.AddCatalogue(catalogue);
        const auto grouped = Clock::now();
        const std::vector<jk::DupeMember> members = array.Group(0, jk::kSourceVirtual);
        const auto done = Clock::now();
        if (Ms(load, done) < loadMs + groupMs) {
            loadMs = Ms(load, grouped);
            groupMs = Ms(grouped, done);
        }
        finder.Take(cpu, load);
        listedCount = members.size();

        // Each row made and dropped, as the CLI prints them.
        cpu = jkbench::CpuSeconds();
        const auto printStart = Clock::now();
        for (const jk::DupeMember& member : members) {
            const jk::ListRow row = jk::DupeRow(array.Row(member.Record));
            rowBytes += row.Text().size();
        }
        rowsPrinted.Take(cpu, printStart);
        // Every row held, as the window's list holds them.
        cpu = jkbench::CpuSeconds();
        const auto rowsStart = Clock::now();
        {
            jk::RowList rows;
            rows.reserve(members.size());
            for (const jk::DupeMember& member : members) {
                rows.push_back(jk::DupeRow(array.Row(member.Record)));
            }
            rowsMade.Take(cpu, rowsStart);
        }

        const double childCpu = ChildCpuSeconds();
        const auto sortStart = Clock::now();
        rc |= std::system(("LC_ALL=C sort -f " + keys + " > /dev/null").c_str());
        sortF.wall = std::min(sortF.wall, Ms(sortStart, Clock::now()));
        sortF.cpu = std::min(sortF.cpu, (ChildCpuSeconds() - childCpu) * 1000);
    }
    std::remove(keys.c_str());
    // The parts of the run on their own, and the earlier road (every song copied into a row,
    // the listed rows moved out) for comparison in the same run.
    Phase columnPhase;
    Phase keysPhase;
    Phase sortPhase;
    Phase copiedPhase;
    Phase copiedGroupPhase;
    for (int round = 0; round < rounds; ++round) {
        jk::DupeArray array;
        array.AddCatalogue(catalogue);
        double cpu = jkbench::CpuSeconds();
        auto start = Clock::now();
        const std::vector<std::string_view> column = array.ColumnOf(jk::Column::Title);
        columnPhase.Take(cpu, start);
        cpu = jkbench::CpuSeconds();
        start = Clock::now();
        const jk::DupeSortKeys sortKeys = jk::DupeKeysOf(column, 0);
        keysPhase.Take(cpu, start);
        std::vector<std::uint32_t> order(column.size());
        for (std::size_t k = 0; k < order.size(); ++k) {
            order[k] = static_cast<std::uint32_t>(k);
        }
        cpu = jkbench::CpuSeconds();
        start = Clock::now();
        jk::SortDupeOrder(order, 0, order.size() - 1, sortKeys);
        sortPhase.Take(cpu, start);

        std::vector<jk::DupeRecord> records;
        cpu = jkbench::CpuSeconds();
        start = Clock::now();
        jk::LoadVirtualSource(catalogue, records);
        const double loadedCpu = jkbench::CpuSeconds();
        const auto loaded = Clock::now();
        const std::vector<jk::DupeListed> listed =
            jk::GroupDuplicates(records, 0, jk::kSourceVirtual);
        copiedGroupPhase.Take(loadedCpu, loaded);
        copiedPhase.Take(cpu, start);
    }
    const double wall = loadMs + groupMs;
    std::printf(
        "Duplicate Finder by \"ID3 Title\" (best of %d): gathered %.0f ms + sorted and grouped "
        "%.0f ms = %.0f ms wall, %.0f ms CPU (%zu rows listed) | LC_ALL=C sort -f of the keys "
        "%.0f ms wall, %.0f ms CPU%s | ratio %.2f wall, %.2f CPU\n",
        rounds, loadMs, groupMs, wall, finder.cpu, listedCount, sortF.wall, sortF.cpu,
        rc == 0 ? "" : " (sort failed)", wall / sortF.wall, finder.cpu / sortF.cpu);
    std::printf(
        "  every listed row made as well, one at a time as the CLI prints them (%zu bytes): "
        "+%.0f ms wall, +%.0f ms CPU | ratio %.2f wall, %.2f CPU\n",
        rowBytes / static_cast<std::size_t>(rounds), rowsPrinted.wall, rowsPrinted.cpu,
        (wall + rowsPrinted.wall) / sortF.wall, (finder.cpu + rowsPrinted.cpu) / sortF.cpu);
    std::printf(
        "  every listed row made and held, as the window's list holds them: +%.0f ms wall, "
        "+%.0f ms CPU | ratio %.2f wall, %.2f CPU\n",
        rowsMade.wall, rowsMade.cpu, (wall + rowsMade.wall) / sortF.wall,
        (finder.cpu + rowsMade.cpu) / sortF.cpu);
    std::printf(
        "  its parts, best of %d, wall/CPU ms: title column gathered %.0f/%.0f, keys folded and "
        "ranked %.0f/%.0f, partition sort %.0f/%.0f\n",
        rounds, columnPhase.wall, columnPhase.cpu, keysPhase.wall, keysPhase.cpu, sortPhase.wall,
        sortPhase.cpu);
    std::printf(
        "  the earlier road, every song copied into a row first: %.0f ms wall, %.0f ms CPU "
        "(of which the grouping and the listed rows %.0f/%.0f) | ratio %.2f wall, %.2f CPU\n",
        copiedPhase.wall, copiedPhase.cpu, copiedGroupPhase.wall, copiedGroupPhase.cpu,
        copiedPhase.wall / sortF.wall, copiedPhase.cpu / sortF.cpu);
}

// The catalogue as master.dat in `folder`, each volume's songs in their order.
bool WriteMaster(const PackedCatalogue& catalogue, const std::string& folder) {
    jk::VolumeTable table;
    for (std::size_t v = 0; v < catalogue.VolumeCount(); ++v) {
        table.emplace_back(std::string(catalogue.VolumeName(v)));
        for (std::size_t i = 0; i < catalogue.SongCount(v); ++i) {
            const jk::SongFieldViews fields = catalogue.Fields(v, i);
            jk::SongInfo song;
            for (int key = 1; key <= jk::kSongFieldCount; ++key) {
                jk::SongField(song, key) = fields[static_cast<std::size_t>(key - 1)];
            }
            jk::VolumeAppend(table.back(), song);
        }
    }
    return jkbench::WriteMasterFile(folder + "/master.dat", table);
}

void SelectionBench(const PackedCatalogue& catalogue) {
    jk::RowList pane;
    for (std::size_t v = 0; v < catalogue.VolumeCount() && pane.size() < 100000; ++v) {
        for (std::size_t i = 0; i < catalogue.SongCount(v) && pane.size() < 100000; ++i) {
            pane.push_back(jk::CatalogueHitRow(catalogue.Fields(v, i)));
        }
    }
    jk::SearchFieldSet fields;
    fields.set();
    // Each query's best of five runs, wall and CPU.
    std::vector<double> times;
    std::vector<double> cpuTimes;
    std::string each;
    for (const char* q : {"love", "ö", "zzz", "19", "Disc"}) {
        double best = 1e18;
        double bestCpu = 1e18;
        for (int round = 0; round < 5; ++round) {
            const double cpu = jkbench::CpuSeconds();
            const auto start = Clock::now();
            const std::size_t selected =
                jk::SelectRows(pane, jk::TextQuery(q, false), fields, false);
            best = std::min(best, Ms(start, Clock::now()));
            bestCpu = std::min(bestCpu, (jkbench::CpuSeconds() - cpu) * 1000);
            (void)selected;
        }
        times.push_back(best);
        cpuTimes.push_back(bestCpu);
        each += std::string(each.empty() ? "" : ", ") + "\"" + q + "\" " +
                std::to_string(static_cast<int>(best)) + " ms";
    }
    std::printf(
        "Selection wizard over %zu rows: median %.1f ms wall (%.1f ms CPU), slowest %.1f ms "
        "(5 queries, best of 5 each: %s)\n",
        pane.size(), Percentile(times, 0.5), Percentile(cpuTimes, 0.5), Percentile(times, 1.0),
        each.c_str());
}

}  // namespace

int main(int argc, char** argv) {
    std::size_t songs = 1000000;
    std::size_t queryCount = 1000;
    bool fts = true;
    bool indexOnly = false;
    bool dupesOnly = false;
    std::string master;
    std::size_t scanEvery = 1;
    int positional = 0;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--no-fts") {
            fts = false;
        } else if (arg == "--index-only") {
            indexOnly = true;
        } else if (arg == "--dupes-only") {
            dupesOnly = true;
        } else if (arg == "--master" && i + 1 < argc) {
            master = argv[++i];
        } else if (arg == "--scan-every" && i + 1 < argc) {
            scanEvery = std::max<std::size_t>(1, std::stoul(argv[++i]));
        } else if (positional++ == 0) {
            songs = std::stoul(arg);
        } else {
            queryCount = std::stoul(arg);
        }
    }
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    std::printf("%s\n", jkbench::MachineNote("/tmp").c_str());
    auto start = Clock::now();
    const PackedCatalogue catalogue = Generate(songs);
    std::printf("catalogue: %zu songs in %zu volumes, %.0f MiB, generated in %.0f ms\n", songs,
                catalogue.VolumeCount(), static_cast<double>(catalogue.MemoryBytes()) / 1048576.0,
                Ms(start, Clock::now()));
    if (!master.empty()) {
        const bool written = WriteMaster(catalogue, master);
        std::printf("%s/master.dat %s\n", master.c_str(), written ? "written" : "NOT written");
        return written ? 0 : 2;
    }
    if (dupesOnly) {
        DuplicateBench(catalogue, 5);
        SelectionBench(catalogue);
        std::printf("peak memory %.0f MiB\n", jkbench::PeakRssMiB());
        return 0;
    }

    start = Clock::now();
    const double buildCpu = jkbench::CpuSeconds();
    const std::unique_ptr<jk::SearchIndex> index = jk::SearchIndex::Build(catalogue);
    const double buildMs = Ms(start, Clock::now());
    std::printf("index: built in %.0f ms wall (%.0f ms CPU), %.1f MiB (%.1f%% of the catalogue)\n",
                buildMs, (jkbench::CpuSeconds() - buildCpu) * 1000,
                static_cast<double>(index->MemoryBytes()) / 1048576.0,
                100.0 * static_cast<double>(index->MemoryBytes()) /
                    static_cast<double>(catalogue.MemoryBytes()));
    if (indexOnly) {
        // Four builds more, so that a profile of the run is mostly the build.
        for (int round = 0; round < 4; ++round) {
            start = Clock::now();
            const double cpu = jkbench::CpuSeconds();
            const std::unique_ptr<jk::SearchIndex> again = jk::SearchIndex::Build(catalogue);
            std::printf("index: built again in %.0f ms wall (%.0f ms CPU)\n",
                        Ms(start, Clock::now()), (jkbench::CpuSeconds() - cpu) * 1000);
        }
        return 0;
    }

    const std::vector<std::string> queries = Queries(catalogue, queryCount);
    // Wall and CPU time each: on a loaded machine the CPU time is the steadier figure.
    Timings indexed;
    Timings indexedCpu;
    Timings linear;
    Timings linearCpu;
    Timings sqlite;
    Fts db;
    if (fts) {
        const double ms = BuildFts(db, catalogue, "/tmp/finders_bench_fts.db");
        std::printf("FTS5 trigram table: filled and indexed in %.0f ms\n", ms);
    }
    std::size_t disagreements = 0;
    std::size_t ftsDisagreements = 0;
    for (std::size_t n = 0; n < queries.size(); ++n) {
        const std::string& q = queries[n];
        const jk::SearchRequest request = RequestFor(q);
        const double cpu0 = jkbench::CpuSeconds();
        auto t0 = Clock::now();
        const std::size_t a = Indexed(*index, catalogue, request);
        auto t1 = Clock::now();
        indexed.Add(q, Ms(t0, t1), a);
        indexedCpu.Add(q, (jkbench::CpuSeconds() - cpu0) * 1000, a);
        if (n % scanEvery == 0) {
            const double cpu1 = jkbench::CpuSeconds();
            t1 = Clock::now();
            const std::size_t b = LinearScan(catalogue, request);
            linear.Add(q, Ms(t1, Clock::now()), b);
            linearCpu.Add(q, (jkbench::CpuSeconds() - cpu1) * 1000, b);
            disagreements += a != b ? 1 : 0;
        }
        if (fts) {
            const auto t2 = Clock::now();
            const std::size_t c = FtsSearch(db, q);
            sqlite.Add(q, Ms(t2, Clock::now()), c);
            ftsDisagreements += a != c ? 1 : 0;
        }
        std::fflush(stdout);
    }
    std::printf("%zu queries (%zu of 1-2 characters), all nine fields, ignoring case\n",
                queries.size(), indexed.shortQ.size());
    // The slowest queries by CPU time, to show where the tail of the index's times lies.
    std::vector<std::size_t> order(queries.size());
    for (std::size_t n = 0; n < order.size(); ++n) {
        order[n] = n;
    }
    std::vector<double> cpuOf;
    {
        std::size_t s = 0;
        std::size_t l = 0;
        for (const std::string& q : queries) {
            cpuOf.push_back(CharCount(q) <= 2 ? indexedCpu.shortQ[s++] : indexedCpu.longQ[l++]);
        }
    }
    std::sort(order.begin(), order.end(),
              [&cpuOf](std::size_t a, std::size_t b) { return cpuOf[a] > cpuOf[b]; });
    std::string slowest;
    for (std::size_t k = 0; k < std::min<std::size_t>(8, order.size()); ++k) {
        slowest += " \"" + queries[order[k]] + "\" " +
                   std::to_string(cpuOf[order[k]]).substr(0, 5) + " ms (" +
                   std::to_string(indexedCpu.hits[order[k]]) + " hits);";
    }
    std::printf("slowest through the index, CPU:%s\n", slowest.c_str());
    Print("index", indexed);
    Print("index, CPU", indexedCpu);
    Print(scanEvery == 1 ? "linear scan" : "linear scan (sampled)", linear);
    Print(scanEvery == 1 ? "linear scan, CPU" : "linear scan (sampled), CPU", linearCpu);
    if (fts) {
        Print("SQLite FTS5 trigram", sqlite);
        std::printf(
            "hit counts: index and scan differ on %zu queries; FTS5 differs from them on "
            "%zu (its case folding and LIKE differ from the textual compare)\n",
            disagreements, ftsDisagreements);
        sqlite3_finalize(db.match);
        sqlite3_finalize(db.like);
        sqlite3_close(db.db);
        std::remove("/tmp/finders_bench_fts.db");
    } else {
        std::printf("hit counts: index and scan differ on %zu queries\n", disagreements);
    }
    DuplicateBench(catalogue, 3);
    SelectionBench(catalogue);
    std::printf("peak memory %.0f MiB\n", jkbench::PeakRssMiB());
    return 0;
}
