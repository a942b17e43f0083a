// Timings of the catalogue of discs beside its peers, in one run:
//   vdrive_bench [VOLUMES [SONGS_PER_VOLUME]] [--dir DIR] [--runs N] [--unsorted]
//                [--create COLLECTION --cli PATH_TO_jukarra-cli] [--no-cold]
// (default 100 x 10,000 songs, files in the system's temporary folder)
// - master.dat loaded (LoadVirtualCache) and its folders made (LoadVirtualFolders), against
//   SQLite stepping every row of the same records in one table; resident and peak memory of the
//   first load in a fresh process, beside the size of master.dat. The file is written as a save
//   of this program writes it (each volume sorted by path); --unsorted adds a load of the same
//   records unsorted, as an older file may hold them.
// - a save with its backups, in DIR and on /dev/shm (memory), and the building of its bytes
//   alone, so that the disk's share shows;
// - a click on a folder of 5,000 songs in a volume of 100,000;
// - with --create: "vdrive create --no-cache" of a collection (scan, tree and save, song cache
//   empty, a fresh data folder each time), against TagLib's FileRef walk of the same tree, with
//   the page cache warm and dropped.
// Each figure is the best of --runs runs (default 3): the machine is shared.

#include <sqlite3.h>
#include <sys/wait.h>
#include <taglib/fileref.h>
#include <taglib/tag.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "BenchCatalogue.h"
#include "BenchSupport.h"
#include "browse/VirtualListing.h"
#include "catalogue/SongFields.h"
#include "catalogue/VirtualCatalogue.h"
#include "catalogue/VirtualFolders.h"
#include "catalogue/VolumeFile.h"

namespace {

using Clock = std::chrono::steady_clock;

struct Timing {
    double wallMs = 1e18;
    double cpuMs = 1e18;
    void Keep(double wall, double cpu) {
        wallMs = std::min(wallMs, wall);
        cpuMs = std::min(cpuMs, cpu);
    }
};

// Times `work` once: wall clock and this process's CPU time.
std::pair<double, double> Measure(const std::function<void()>& work) {
    const double cpu = jkbench::CpuSeconds();
    const auto start = Clock::now();
    work();
    return {std::chrono::duration<double, std::milli>(Clock::now() - start).count(),
            (jkbench::CpuSeconds() - cpu) * 1000};
}

long StatusKb(const char* field) {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line)) {
        if (line.rfind(field, 0) == 0) {
            return std::atol(line.c_str() + std::strlen(field));
        }
    }
    return 0;
}

// Writes master.dat in a child process, so that its memory counts in no figure of ours. A save
// of this program writes each volume sorted by path (the tree sorted it at start-up).
// Written aside and renamed into place, as the program saves: a catalogue loaded from the file
// before keeps reading the bytes it mapped.
void Generate(const std::string& path, int volumes, int perVolume, bool sorted) {
    const pid_t child = ::fork();
    if (child == 0) {
        const std::string aside = path + ".new";
        const bool written =
            jkbench::WriteMasterFile(aside,
                                     jkbench::CatalogueVolumes(volumes, perVolume, 200, sorted)) &&
            std::rename(aside.c_str(), path.c_str()) == 0;
        ::_exit(written ? 0 : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
}

class NoQuestions final : public jk::CatalogueQuestions {
public:
    bool AskYesNo(const jk::UserMessage&) override { return false; }
    void ShowMessage(const jk::UserMessage&) override {}
};

void LoadAll(const std::string& folder, jk::VirtualCatalogue& catalogue, Timing& load,
             Timing& folders) {
    NoQuestions questions;
    auto [loadWall, loadCpu] = Measure([&] {
        jk::LoadVirtualCache(catalogue, folder + "/", {true, true}, questions);
    });
    auto [treeWall, treeCpu] = Measure([&] { jk::LoadVirtualFolders(catalogue.Volumes); });
    load.Keep(loadWall, loadCpu);
    folders.Keep(treeWall, treeCpu);
}

void Print(const char* what, const Timing& t) {
    std::printf("  %-58s %8.0f ms wall %8.0f ms CPU\n", what, t.wallMs, t.cpuMs);
}

void PrintSum(const char* what, const Timing& a, const Timing& b) {
    Timing sum;
    sum.Keep(a.wallMs + b.wallMs, a.cpuMs + b.cpuMs);
    Print(what, sum);
}

void WriteSqlite(const std::string& path, const jk::VolumeTable& table) {
    std::filesystem::remove(path);
    sqlite3* db = nullptr;
    sqlite3_open(path.c_str(), &db);
    sqlite3_exec(db,
                 "CREATE TABLE songs(Title,Artist,Album,Year,Genre,Time,Bitrate,Path,Comment,"
                 "Size,Volume,Date,LastUsed)",
                 nullptr, nullptr, nullptr);
    sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr);
    sqlite3_stmt* insert = nullptr;
    sqlite3_prepare_v2(db, "INSERT INTO songs VALUES(?,?,?,?,?,?,?,?,?,?,?,?,?)", -1, &insert,
                       nullptr);
    for (const jk::VirtualVolume& volume : table) {
        for (std::size_t i = 0; i < volume.Count(); ++i) {
            const jk::SongFieldViews fields = volume.FieldsOf(i);
            for (int k = 0; k < jk::kSongFieldCount; ++k) {
                sqlite3_bind_text(insert, k + 1, fields[static_cast<std::size_t>(k)].data(),
                                  static_cast<int>(fields[static_cast<std::size_t>(k)].size()),
                                  SQLITE_TRANSIENT);
            }
            sqlite3_step(insert);
            sqlite3_reset(insert);
        }
    }
    sqlite3_finalize(insert);
    sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
    sqlite3_close(db);
}

std::pair<double, double> SqliteStep(const std::string& path) {
    std::size_t bytes = 0;
    const auto times = Measure([&] {
        sqlite3* db = nullptr;
        sqlite3_open(path.c_str(), &db);
        sqlite3_stmt* select = nullptr;
        sqlite3_prepare_v2(db, "SELECT * FROM songs", -1, &select, nullptr);
        while (sqlite3_step(select) == SQLITE_ROW) {
            for (int k = 0; k < jk::kSongFieldCount; ++k) {
                bytes += static_cast<std::size_t>(sqlite3_column_bytes(select, k));
                (void)sqlite3_column_text(select, k);
            }
        }
        sqlite3_finalize(select);
        sqlite3_close(db);
    });
    return bytes > 0 ? times : std::pair<double, double>{-1, -1};
}

Timing TimeSaves(const jk::VirtualCatalogue& catalogue, const std::string& folder, int runs) {
    Timing save;
    for (int run = 0; run < runs; ++run) {
        jk::CatalogueSave request;
        request.moveBackups = true;
        const auto [wall, cpu] = Measure([&] {
            jk::SaveVirtualCatalogue(catalogue, folder + "/", jk::RealCatalogueFiles(), request);
        });
        save.Keep(wall, cpu);
    }
    return save;
}

std::size_t g_sink = 0;

int RunCli(const std::string& cli, const std::string& dataDir, const std::string& collection) {
    std::filesystem::remove_all(dataDir);
    std::filesystem::create_directories(dataDir);
    const std::string command = "'" + cli + "' --data-dir '" + dataDir +
                                "' vdrive create --no-cache --name Bench '" + collection +
                                "' >/dev/null 2>&1";
    return std::system(command.c_str());
}

void CreateAgainstTagLib(const std::string& collection, const std::string& cli,
                         const std::string& dataDir, int runs, bool cold) {
    const std::vector<std::string> files = jkbench::CollectSongs(collection);
    std::printf(
        "\nvdrive create --no-cache of %s (%zu songs), song cache empty, scan, tree and "
        "save;\nagainst TagLib's FileRef walk of the same tree (best of %d)\nmachine: %s\n",
        collection.c_str(), files.size(), runs, jkbench::MachineNote(collection).c_str());
    const auto tagLibWalk = [&] {
        jkbench::WalkSongs(collection, [](const std::string& path) {
            TagLib::FileRef file(path.c_str(), true, TagLib::AudioProperties::Fast);
            if (!file.isNull() && file.tag() != nullptr) {
                g_sink += file.tag()->title().size();
            }
            if (!file.isNull() && file.audioProperties() != nullptr) {
                g_sink += static_cast<std::size_t>(file.audioProperties()->lengthInSeconds());
            }
        });
    };
    int failed = 0;
    const auto create = [&] { failed |= RunCli(cli, dataDir, collection); };
    const auto line = [&](const char* what, double ms, double reference) {
        const double rate = static_cast<double>(files.size()) * 1000 / ms;
        std::printf("  %-40s %10.0f files/s %8.0f ms %6.2fx\n", what, rate, ms,
                    reference > 0 ? rate / reference : 0.0);
    };
    tagLibWalk();  // warms the page cache
    double oursWarm = 1e18;
    double tagLibWarm = 1e18;
    for (int run = 0; run < runs; ++run) {
        tagLibWarm = std::min(tagLibWarm, Measure(tagLibWalk).first);
        oursWarm = std::min(oursWarm, Measure(create).first);
    }
    const double tagLibWarmRate = static_cast<double>(files.size()) * 1000 / tagLibWarm;
    std::printf("page cache warm\n");
    line("vdrive create", oursWarm, tagLibWarmRate);
    line("TagLib walk (FileRef per file)", tagLibWarm, tagLibWarmRate);
    if (cold) {
        std::string how;
        double oursCold = 1e18;
        double tagLibCold = 1e18;
        for (int run = 0; run < runs; ++run) {
            how = jkbench::DropPageCache(files);
            tagLibCold = std::min(tagLibCold, Measure(tagLibWalk).first);
            how = jkbench::DropPageCache(files);
            oursCold = std::min(oursCold, Measure(create).first);
        }
        const double tagLibColdRate = static_cast<double>(files.size()) * 1000 / tagLibCold;
        std::printf("%s\n", how.c_str());
        line("vdrive create", oursCold, tagLibColdRate);
        line("TagLib walk (FileRef per file)", tagLibCold, tagLibColdRate);
    }
    if (failed != 0) {
        std::printf("  (jukarra-cli failed: the figures of vdrive create are not valid)\n");
    }
    std::filesystem::remove_all(dataDir);
}

}  // namespace

int main(int argc, char** argv) {
    int volumes = 100;
    int perVolume = 10000;
    int runs = 3;
    bool unsorted = false;
    bool cold = true;
    std::string base = std::filesystem::temp_directory_path().string();
    std::string collection;
    std::string cli;
    int positional = 0;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--dir" && i + 1 < argc) {
            base = argv[++i];
        } else if (arg == "--runs" && i + 1 < argc) {
            runs = std::max(1, std::atoi(argv[++i]));
        } else if (arg == "--unsorted") {
            unsorted = true;
        } else if (arg == "--no-cold") {
            cold = false;
        } else if (arg == "--create" && i + 1 < argc) {
            collection = argv[++i];
        } else if (arg == "--cli" && i + 1 < argc) {
            cli = argv[++i];
        } else if (positional == 0) {
            volumes = std::atoi(argv[i]);
            ++positional;
        } else {
            perVolume = std::atoi(argv[i]);
        }
    }
    const std::string folder = base + "/jk-vdrive-bench";
    const std::string shm = "/dev/shm/jk-vdrive-bench";
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);

    Generate(folder + "/master.dat", volumes, perVolume, true);
    const auto fileBytes = static_cast<double>(std::filesystem::file_size(folder + "/master.dat"));
    std::printf("master.dat: %d volumes x %d songs, %.1f MB, sorted as a save writes it; in %s\n",
                volumes, perVolume, fileBytes / 1e6, folder.c_str());
    std::printf("machine: %s; best of %d runs\n", jkbench::MachineNote(folder).c_str(), runs);

    // The first load in a fresh process gives the memory figures.
    std::ofstream("/proc/self/clear_refs") << "5\n";  // peak resident from here
    const long rssBefore = StatusKb("VmRSS:");
    Timing load;
    Timing folders;
    auto catalogue = std::make_unique<jk::VirtualCatalogue>();
    LoadAll(folder, *catalogue, load, folders);
    const long rssAfter = StatusKb("VmRSS:");
    const long peak = StatusKb("VmHWM:");
    for (int run = 1; run < runs; ++run) {
        catalogue = std::make_unique<jk::VirtualCatalogue>();
        LoadAll(folder, *catalogue, load, folders);
    }
    WriteSqlite(folder + "/songs.sqlite", catalogue->Volumes);
    Timing sqlite;
    for (int run = 0; run < runs; ++run) {
        const auto [wall, cpu] = SqliteStep(folder + "/songs.sqlite");
        sqlite.Keep(wall, cpu);
    }
    std::filesystem::remove(folder + "/songs.sqlite");
    std::printf("\nloading\n");
    Print("LoadVirtualCache", load);
    Print("LoadVirtualFolders", folders);
    PrintSum("both", load, folders);
    Print("SQLite stepping every row of the same records", sqlite);
    std::printf(
        "memory of the first load: resident growth %.1f MB = %.2fx master.dat; peak of the "
        "process %.1f MB = %.2fx\n",
        static_cast<double>(rssAfter - rssBefore) / 1024,
        static_cast<double>(rssAfter - rssBefore) * 1024 / fileBytes,
        static_cast<double>(peak) / 1024, static_cast<double>(peak) * 1024 / fileBytes);

    if (unsorted) {
        Generate(folder + "/master.dat", volumes, perVolume, false);
        Timing unsortedLoad;
        Timing unsortedFolders;
        for (int run = 0; run < runs; ++run) {
            jk::VirtualCatalogue other;
            LoadAll(folder, other, unsortedLoad, unsortedFolders);
        }
        Print("LoadVirtualCache, records unsorted", unsortedLoad);
        Print("LoadVirtualFolders, records unsorted (sorts them)", unsortedFolders);
    }

    std::printf("\nsaving (master.dat written, flushed and renamed; backups moved on)\n");
    Timing build;
    for (int run = 0; run < runs; ++run) {
        std::size_t bytes = 0;
        const auto [wall, cpu] = Measure([&] {
            jk::WriteVolumes(catalogue->Volumes, [&bytes](std::string_view piece) {
                bytes += piece.size();
                return true;
            });
        });
        build.Keep(wall, cpu);
    }
    Print("the bytes built, nothing written", build);
    Print(("save with backups in " + folder).c_str(), TimeSaves(*catalogue, folder, runs));
    std::filesystem::remove_all(shm);
    std::filesystem::create_directories(shm);
    std::filesystem::copy_file(folder + "/master.dat", shm + "/master.dat");
    Print("save with backups in /dev/shm (memory)", TimeSaves(*catalogue, shm, runs));
    std::filesystem::remove_all(shm);
    catalogue.reset();

    // A folder of 5,000 songs in a volume of 100,000.
    jk::VolumeTable big;
    big.emplace_back("Big");
    for (int i = 0; i < 100000; ++i) {
        big[0].Append(jkbench::CatalogueSong(
            "Disc0",
            "/media/ann/Big/Artist " + std::to_string(i % 20) + "/" + std::to_string(i) + ".mp3",
            i));
    }
    jk::AddVolumeTree(big[0]);
    Timing click;
    std::size_t listed = 0;
    for (int run = 0; run < runs; ++run) {
        jk::RowList rows;
        const auto [wall, cpu] =
            Measure([&] { listed = jk::GetVirtualFolder(big, "Big/Artist 3", rows, true); });
        click.Keep(wall, cpu);
    }
    std::printf("\nvirtual folder click: %zu rows in %.1f ms\n", listed, click.wallMs);
    std::filesystem::remove_all(folder);

    if (!collection.empty() && !cli.empty()) {
        CreateAgainstTagLib(collection, cli, base + "/jk-vdrive-bench-data", runs, cold);
    }
    std::printf("(checksum %zu)\n", g_sink);
    return 0;
}
