// Timings of the catalogue of discs beside SQLite, in one run:
//   vdrive_bench [VOLUMES [SONGS_PER_VOLUME]]   (default 100 x 10,000)
// - master.dat loaded (LoadVirtualCache) and its folders made (LoadVirtualFolders), against
//   SQLite stepping every row of the same records in one table;
// - a save with its backups;
// - a click on a folder of 5,000 songs in a volume of 100,000;
// - resident and peak memory after loading 1,000,000 songs, beside the size of master.dat.

#include <sqlite3.h>
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "browse/VirtualListing.h"
#include "catalogue/SongFields.h"
#include "catalogue/VirtualCatalogue.h"
#include "catalogue/VirtualFolders.h"
#include "catalogue/VolumeFile.h"

namespace {

using Clock = std::chrono::steady_clock;

double Ms(Clock::time_point since) {
    return std::chrono::duration<double, std::milli>(Clock::now() - since).count();
}

long ResidentKb() {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line)) {
        if (line.rfind("VmRSS:", 0) == 0) {
            return std::atol(line.c_str() + 6);
        }
    }
    return 0;
}

long PeakKb() {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line)) {
        if (line.rfind("VmHWM:", 0) == 0) {
            return std::atol(line.c_str() + 6);
        }
    }
    return 0;
}

jk::SongInfo SongOf(int v, int i, int folders) {
    jk::SongInfo song;
    song.Title = "A song title number " + std::to_string(i);
    song.Artist = "Some Artist " + std::to_string(i % 397);
    song.Album = "An Album Name " + std::to_string(i % 1013);
    song.Year = "1999";
    song.Genre = "Rock";
    song.Time = "03:25";
    song.Bitrate = " 192";
    song.Size = std::to_string(3000000 + i);
    song.Date = "2/26/00 11:22:33 PM";
    song.LastUsed = "20240101120000";
    song.Path = "/media/ann/Disc" + std::to_string(v) + "/Artist " + std::to_string(i % folders) +
                "/Album " + std::to_string(i % 7) + "/" + std::to_string(i) + " - Track.mp3";
    song.Volume = "Disc" + std::to_string(v);
    return song;
}

void Generate(const std::string& folder, int volumes, int perVolume, int folders) {
    jk::VolumeTable table;
    for (int v = 0; v < volumes; ++v) {
        table.emplace_back("Disc" + std::to_string(v));
        for (int i = 0; i < perVolume; ++i) {
            table.back().Append(SongOf(v, i, folders));
        }
    }
    std::ofstream out(folder + "/master.dat", std::ios::binary);
    jk::WriteVolumes(table, [&out](std::string_view piece) {
        out.write(piece.data(), static_cast<std::streamsize>(piece.size()));
        return true;
    });
}

class NoQuestions final : public jk::CatalogueQuestions {
public:
    bool AskYesNo(const jk::UserMessage&) override { return false; }
    void ShowMessage(const jk::UserMessage&) override {}
};

double SqliteStep(const std::string& folder, const jk::VolumeTable& table) {
    const std::string path = folder + "/songs.sqlite";
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
    std::string scratch;
    for (const jk::VirtualVolume& volume : table) {
        for (std::size_t i = 0; i < volume.Count(); ++i) {
            const jk::SongFieldViews fields = volume.FieldsOf(i, scratch);
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

    const auto start = Clock::now();
    sqlite3_open(path.c_str(), &db);
    sqlite3_stmt* select = nullptr;
    sqlite3_prepare_v2(db, "SELECT * FROM songs", -1, &select, nullptr);
    std::size_t bytes = 0;
    while (sqlite3_step(select) == SQLITE_ROW) {
        for (int k = 0; k < jk::kSongFieldCount; ++k) {
            bytes += static_cast<std::size_t>(sqlite3_column_bytes(select, k));
            (void)sqlite3_column_text(select, k);
        }
    }
    sqlite3_finalize(select);
    sqlite3_close(db);
    const double ms = Ms(start);
    std::filesystem::remove(path);
    return bytes > 0 ? ms : -1;
}

}  // namespace

int main(int argc, char** argv) {
    const int volumes = argc > 1 ? std::atoi(argv[1]) : 100;
    const int perVolume = argc > 2 ? std::atoi(argv[2]) : 10000;
    const std::string folder =
        (std::filesystem::temp_directory_path() / "jk-vdrive-bench").string();
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);

    // The memory figures first, in a fresh process state: 1,000,000 songs in one load.
    Generate(folder, volumes, perVolume, 200);
    const auto fileBytes = std::filesystem::file_size(folder + "/master.dat");
    const long rssBefore = ResidentKb();
    jk::VirtualCatalogue catalogue;
    NoQuestions questions;
    auto start = Clock::now();
    jk::LoadVirtualCache(catalogue, folder + "/", {true, true}, questions);
    const double loadMs = Ms(start);
    start = Clock::now();
    const auto trees = jk::LoadVirtualFolders(catalogue.Volumes);
    const double foldersMs = Ms(start);
    const long rssAfter = ResidentKb();
    std::printf("master.dat: %d volumes x %d songs, %.1f MB\n", volumes, perVolume,
                static_cast<double>(fileBytes) / 1e6);
    std::printf("LoadVirtualCache %.0f ms + LoadVirtualFolders %.0f ms = %.0f ms (%zu trees)\n",
                loadMs, foldersMs, loadMs + foldersMs, trees.size());
    std::printf(
        "memory: resident growth %.1f MB = %.2fx master.dat; peak of the process %.1f MB = "
        "%.2fx\n",
        static_cast<double>(rssAfter - rssBefore) / 1024,
        static_cast<double>(rssAfter - rssBefore) * 1024 / static_cast<double>(fileBytes),
        static_cast<double>(PeakKb()) / 1024,
        static_cast<double>(PeakKb()) * 1024 / static_cast<double>(fileBytes));

    const double sqliteMs = SqliteStep(folder, catalogue.Volumes);
    std::printf("SQLite stepping every row of the same records: %.0f ms\n", sqliteMs);

    start = Clock::now();
    jk::CatalogueSave save;
    save.moveBackups = true;
    jk::SaveVirtualCatalogue(catalogue, folder + "/", jk::RealCatalogueFiles(), save);
    jk::SaveVirtualCatalogue(catalogue, folder + "/", jk::RealCatalogueFiles(), save);
    const double saveMs = Ms(start) / 2;
    std::printf("save with backups moved on: %.0f ms\n", saveMs);

    // A folder of 5,000 songs in a volume of 100,000.
    jk::VolumeTable big;
    big.emplace_back("Big");
    for (int i = 0; i < 100000; ++i) {
        jk::SongInfo song = SongOf(0, i, 20);
        song.Path =
            "/media/ann/Big/Artist " + std::to_string(i % 20) + "/" + std::to_string(i) + ".mp3";
        big[0].Append(song);
    }
    jk::AddVolumeTree(big[0]);
    jk::RowList rows;
    start = Clock::now();
    const std::size_t listed = jk::GetVirtualFolder(big, "Big/Artist 3", rows, true);
    std::printf("virtual folder click: %zu rows in %.1f ms\n", listed, Ms(start));
    std::filesystem::remove_all(folder);
    return 0;
}
