// cache.dat of many records: time to save and to load it, and the peak memory of a process that
// loads it (a fresh process, so nothing else is counted).
//
//   cache_bench [RECORDS]          (100,000 by default)

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>

#include "BenchSupport.h"
#include "catalogue/SongCache.h"
#include "catalogue/VBaseFile.h"

extern char** environ;

namespace {

double Since(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
        .count();
}

std::string Words(std::mt19937& random, int lo, int hi) {
    static const char* const kWords[] = {"love",  "night", "dream", "fire",  "blue",     "heart",
                                         "rain",  "city",  "road",  "light", "dance",    "shadow",
                                         "river", "gold",  "Björk", "Café",  "electric", "ocean"};
    std::string out;
    const int n = lo + static_cast<int>(random() % static_cast<unsigned>(hi - lo + 1));
    for (int i = 0; i < n; ++i) {
        if (i > 0) {
            out += ' ';
        }
        out += kWords[random() % (sizeof kWords / sizeof kWords[0])];
    }
    return out;
}

int Load(const std::string& folder) {
    jk::SongCache cache;
    const auto start = std::chrono::steady_clock::now();
    jk::LoadCache(cache, folder);
    const double ms = Since(start);
    std::printf("load: %lld records in %.1f ms, peak memory of the loading process %.1f MiB\n",
                static_cast<long long>(cache.UpperBound()), ms, jkbench::PeakRssMiB());
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 3 && std::strcmp(argv[1], "--load") == 0) {
        return Load(argv[2]);
    }
    const long records = argc > 1 ? std::atol(argv[1]) : 100000;
    char folderTemplate[] = "/tmp/cache_bench.XXXXXX";
    const std::string folder = std::string(mkdtemp(folderTemplate)) + "/";

    {
        std::mt19937 random(7);
        jk::SongCache cache;
        const std::string now = "20261123013200";
        for (long i = 0; i < records; ++i) {
            jk::SongInfo song;
            song.Title = Words(random, 1, 6);
            song.Artist = Words(random, 1, 3);
            song.Album = Words(random, 1, 4);
            song.Comment = random() % 4 == 0 ? "ripped by me" : "";
            song.Genre = "Rock";
            song.Year = std::to_string(1960 + random() % 60);
            song.Bitrate = random() % 3 == 0 ? "192" : "128";
            song.Size = std::to_string(2000000 + random() % 8000000);
            song.Time = "04:" + std::to_string(10 + random() % 50);
            song.Path = "/music/" + Words(random, 1, 2) + "/" + std::to_string(i) + " - " +
                        song.Title + ".mp3";
            song.Volume = "MUSIC";
            song.Track = static_cast<std::int16_t>(random() % 3 == 0 ? 0 : 1 + random() % 15);
            jk::CacheAdd(cache, song, "20250101120000", now);
        }
        const auto start = std::chrono::steady_clock::now();
        const jk::IoResult saved = jk::SaveCache(cache, folder);
        std::printf("save: %lld records in %.1f ms%s\n", static_cast<long long>(cache.UpperBound()),
                    Since(start), saved.ok ? "" : (" FAILED: " + saved.error).c_str());
    }
    std::printf("file: %s%s\n", folder.c_str(), "cache.dat");

    std::fflush(stdout);
    pid_t child = 0;
    const std::string self = "/proc/self/exe";
    char* childArgs[] = {argv[0], const_cast<char*>("--load"), const_cast<char*>(folder.c_str()),
                         nullptr};
    if (posix_spawn(&child, self.c_str(), nullptr, nullptr, childArgs, environ) != 0) {
        std::perror("posix_spawn");
        return 2;
    }
    int status = 0;
    waitpid(child, &status, 0);
    const std::string cleanup = "rm -rf '" + folder + "'";
    return std::system(cleanup.c_str()) == 0 && status == 0 ? 0 : 2;
}
