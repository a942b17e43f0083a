// Kills "jukarra-cli vdrive rename" at random moments and at each step of its save, and checks
// after each kill that master.dat loads whole, with no question, as the old or the new
// catalogue, and that each backup loads whole.
//
//   crash_catalogue PATH_TO_JUKARRA_CLI [SONGS [MOMENTS]]

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "catalogue/VirtualCatalogue.h"
#include "catalogue/VolumeFile.h"
#include "util/FileIo.h"

namespace {

using jk::VolumeTable;

int g_failures = 0;

void Fail(const std::string& what) {
    std::fprintf(stderr, "FAIL: %s\n", what.c_str());
    ++g_failures;
}

std::string MakeCatalogue(const std::string& folder, int songs) {
    VolumeTable table;
    const int volumes = 10;
    for (int v = 0; v < volumes; ++v) {
        table.emplace_back("Disc" + std::to_string(v));
    }
    jk::SongInfo song;
    for (int i = 0; i < songs; ++i) {
        const int v = i * volumes / songs;
        song.Title = "Song number " + std::to_string(i);
        song.Artist = "Artist " + std::to_string(i % 97);
        song.Album = "Album " + std::to_string(i % 31);
        song.Year = "1999";
        song.Genre = "Rock";
        song.Time = "03:25";
        song.Bitrate = " 128";
        song.Size = "4194304";
        song.Date = "1/2/99 3:04:05";
        song.LastUsed = "20240101120000";
        song.Path = "/media/ann/Disc" + std::to_string(v) + "/folder" + std::to_string(i % 50) +
                    "/song" + std::to_string(i) + ".mp3";
        table[static_cast<std::size_t>(v)].Append(song);
    }
    const std::string bytes = jk::VolumesBytes(table);
    jk::WriteFileAtomically(folder + "/master.dat", bytes);
    return bytes;
}

// The first volume's name, and whether the file loaded whole.
bool LoadsWhole(const std::string& path, std::string& firstName, std::size_t& volumes) {
    VolumeTable table;
    const jk::VolumesLoad load = jk::LoadVolumes(path, table);
    firstName = table.empty() ? "" : table[0].Name;
    volumes = table.size();
    return load.ok;
}

// Runs the rename; kills it after `delay` (or lets a save step kill it); returns when it ended.
void RunRename(const std::string& cli, const std::string& folder, const std::string& from,
               const std::string& to, std::chrono::microseconds delay, int killStep) {
    const pid_t pid = fork();
    if (pid == 0) {
        if (killStep > 0) {
            setenv("JUKARRA_TEST_KILL_AT_SAVE_STEP", std::to_string(killStep).c_str(), 1);
        }
        std::freopen("/dev/null", "w", stderr);
        execl(cli.c_str(), cli.c_str(), "--data-dir", folder.c_str(), "vdrive", "rename",
              from.c_str(), to.c_str(), static_cast<char*>(nullptr));
        _exit(127);
    }
    if (killStep == 0) {
        std::this_thread::sleep_for(delay);
        kill(pid, SIGKILL);
    }
    int status = 0;
    waitpid(pid, &status, 0);
}

void Check(const std::string& folder, const std::string& what) {
    std::string first;
    std::size_t volumes = 0;
    if (!LoadsWhole(folder + "/master.dat", first, volumes)) {
        Fail(what + ": master.dat does not load whole");
    } else if (volumes != 10 || (first != "Disc0" && first != "Renamed")) {
        Fail(what + ": master.dat is neither the old nor the new catalogue (" + first + ")");
    }
    for (const char* backup : {"/master.da2", "/master.da3"}) {
        if (jk::FileExists(folder + backup) && !LoadsWhole(folder + backup, first, volumes)) {
            Fail(what + ": " + backup + " does not load whole");
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: crash_catalogue PATH_TO_JUKARRA_CLI [SONGS [MOMENTS]]\n");
        return 1;
    }
    const std::string cli = argv[1];
    const int songs = argc > 2 ? std::atoi(argv[2]) : 200000;
    const int moments = argc > 3 ? std::atoi(argv[3]) : 200;
    const std::string folder =
        (std::filesystem::temp_directory_path() / ("jk-crash-" + std::to_string(getpid())))
            .string();
    std::filesystem::create_directories(folder);
    MakeCatalogue(folder, songs);

    // How long a whole rename takes, to spread the kills over it.
    const auto start = std::chrono::steady_clock::now();
    RunRename(cli, folder, "Disc0", "Renamed", std::chrono::microseconds(0), -1);
    const auto whole = std::chrono::duration_cast<std::chrono::microseconds>(
        std::chrono::steady_clock::now() - start);
    Check(folder, "a whole rename");

    std::string first;
    std::size_t volumes = 0;
    const auto current = [&] {
        LoadsWhole(folder + "/master.dat", first, volumes);
        return first;
    };
    // Every step of a save: the three copies, the four renames.
    for (int step = 1; step <= 8; ++step) {
        const std::string from = current();
        RunRename(cli, folder, from, from == "Disc0" ? "Renamed" : "Disc0",
                  std::chrono::microseconds(0), step);
        Check(folder, "killed at save step " + std::to_string(step));
    }
    std::mt19937 random(12345);
    std::uniform_int_distribution<long> when(0, whole.count() + whole.count() / 5);
    for (int i = 0; i < moments; ++i) {
        const std::string from = current();
        RunRename(cli, folder, from, from == "Disc0" ? "Renamed" : "Disc0",
                  std::chrono::microseconds(when(random)), 0);
        Check(folder, "killed at moment " + std::to_string(i));
    }
    std::filesystem::remove_all(folder);
    std::printf("%d songs, %d moments and 8 save steps, a rename taking %lld ms: %s\n", songs,
                moments, static_cast<long long>(whole.count() / 1000),
                g_failures == 0 ? "all loads whole" : "FAILURES");
    std::printf("%d passed, %d failed\n", g_failures == 0 ? 1 : 0, g_failures == 0 ? 0 : 1);
    return g_failures == 0 ? 0 : 1;
}
