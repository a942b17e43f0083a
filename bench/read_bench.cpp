// Reading speed of a collection, four ways in one run: our GetSongInfo with an empty song cache
// (extensions on, then off), TagLib's FileRef with tags and audio properties, and an I/O floor
// (stat, one read at the head and one at the tail, nothing parsed); then a listing through a warm
// song cache beside a bare walk that stats each file. Warm page cache, then dropped.
//
//   read_bench COLLECTION [--passes N] [--no-cold]

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <taglib/fileref.h>
#include <taglib/tag.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <unordered_map>
#include <vector>

#include "BenchSupport.h"
#include "catalogue/GetSongInfo.h"
#include "catalogue/SongCache.h"
#include "util/PathHelpers.h"
#include "util/Utf8.h"

namespace {

std::size_t g_sink = 0;  // printed at the end, so no pass is optimised away

void ReadFloor(const std::string& path) {
    g_sink += jkbench::ReadFloor(path);
}

void ReadTagLib(const std::string& path) {
    TagLib::FileRef file(path.c_str(), true, TagLib::AudioProperties::Fast);
    if (!file.isNull() && file.tag() != nullptr) {
        g_sink += file.tag()->title().size() + file.tag()->artist().size();
    }
    if (!file.isNull() && file.audioProperties() != nullptr) {
        g_sink += static_cast<std::size_t>(file.audioProperties()->lengthInSeconds());
    }
}

void StatOnly(const std::string& path) {
    struct stat st {};
    g_sink += ::stat(path.c_str(), &st) == 0 ? static_cast<std::size_t>(st.st_size) : 0;
}

struct Ours {
    jk::SongCache cache;
    std::int32_t lookups = 0;
    std::int32_t hits = 0;
    jk::SongLookup lookup{cache, {lookups, hits}};

    explicit Ours(bool extensions) {
        lookup.Options().readId3v2 = extensions;
        lookup.Options().exactTimes = extensions;
    }
    void Read(const std::string& path) {
        const jk::SongInfo song = jk::GetSongInfo(path, lookup);
        g_sink += song.Title.size() + song.Time.size();
    }
};

struct Row {
    std::string name;
    jkbench::PassResult result;
    std::string deviceMB;  // bytes read from the disk, when measured
    std::string processMB;
};

void Print(const char* heading, const std::vector<Row>& rows, const std::string& reference) {
    double referenceRate = 0;
    for (const Row& row : rows) {
        if (row.name == reference) {
            referenceRate = row.result.FilesPerSecond();
        }
    }
    std::printf("\n%s\n", heading);
    const bool bytes = !rows.empty() && !rows.front().deviceMB.empty();
    std::printf("  %-32s %10s %9s %7s %11s", "reader", "files/s", "seconds", "ratio",
                "cpu us/file");
    std::printf(bytes ? " %9s %9s\n" : "\n", "MB device", "MB ours");
    for (const Row& row : rows) {
        const double rate = row.result.FilesPerSecond();
        std::printf("  %-32s %10.0f %9.3f %6.2fx %11.1f", row.name.c_str(), rate,
                    row.result.seconds, referenceRate > 0 ? rate / referenceRate : 0.0,
                    1e6 * row.result.cpuSeconds / static_cast<double>(row.result.files));
        if (bytes) {
            std::printf(" %9s %9s\n", row.deviceMB.c_str(), row.processMB.c_str());
        } else {
            std::printf("\n");
        }
    }
    std::printf("  (ratios against: %s)\n", reference.c_str());
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: read_bench COLLECTION [--passes N] [--no-cold]\n");
        return 1;
    }
    const std::string root = argv[1];
    int passes = 3;
    bool cold = true;
    for (int i = 2; i < argc; ++i) {
        if (std::strcmp(argv[i], "--passes") == 0 && i + 1 < argc) {
            passes = std::max(1, std::atoi(argv[++i]));
        } else if (std::strcmp(argv[i], "--no-cold") == 0) {
            cold = false;
        }
    }
    const std::vector<std::string> files = jkbench::CollectSongs(root);
    std::printf("collection: %s, %zu songs\nmachine: %s\n", root.c_str(), files.size(),
                jkbench::MachineNote(root).c_str());
    if (files.empty()) {
        return 2;
    }

    // Each warm figure is the best of `passes` passes, after one pass that fills the page cache.
    const auto bestOver = [&](const std::vector<std::string>& list,
                              const std::function<void(const std::string&)>& work,
                              const std::function<void()>& reset) {
        jkbench::PassResult bestPass;
        for (int p = 0; p < passes; ++p) {
            reset();
            const jkbench::PassResult pass = jkbench::TimePass(list, work);
            if (p == 0 || pass.seconds < bestPass.seconds) {
                bestPass = pass;
            }
        }
        return bestPass;
    };
    const auto best = [&](const std::function<void(const std::string&)>& work,
                          const std::function<void()>& reset) {
        return bestOver(files, work, reset);
    };
    jkbench::TimePass(files, ReadFloor);

    std::unique_ptr<Ours> on;
    std::unique_ptr<Ours> off;
    std::vector<Row> warm;
    warm.push_back({"GetSongInfo, extensions on",
                    best([&](const std::string& p) { on->Read(p); },
                         [&] { on = std::make_unique<Ours>(true); }),
                    "", ""});
    warm.push_back({"GetSongInfo, extensions off",
                    best([&](const std::string& p) { off->Read(p); },
                         [&] { off = std::make_unique<Ours>(false); }),
                    "", ""});
    warm.push_back({"TagLib FileRef (Fast)", best(ReadTagLib, [] {}), "", ""});
    warm.push_back({"I/O floor (stat, head, tail)", best(ReadFloor, [] {}), "", ""});
    Print("warm page cache, empty song cache", warm, "TagLib FileRef (Fast)");

    // `on` now holds every song. The cache is keyed by bare file name, so a file that shares its
    // name with another one finds the other's record, is read again and gets a record of its own
    // on every pass; only files with a name of their own are answered without opening them.
    std::unordered_map<std::string, int> nameCounts;
    for (const std::string& path : files) {
        ++nameCounts[jk::ToLower(jk::BareName(path))];
    }
    std::vector<std::string> unique;
    for (const std::string& path : files) {
        if (nameCounts[jk::ToLower(jk::BareName(path))] == 1) {
            unique.push_back(path);
        }
    }
    std::vector<Row> listing;
    listing.push_back({"GetSongInfo, warm song cache",
                       best([&](const std::string& p) { on->Read(p); }, [] {}), "", ""});
    listing.push_back({"bare walk, one stat per file", best(StatOnly, [] {}), "", ""});
    Print("listing through the song cache, every file", listing, "bare walk, one stat per file");
    std::printf("  (%zu of the %zu files share their name with another file)\n",
                files.size() - unique.size(), files.size());
    std::vector<Row> uniqueListing;
    uniqueListing.push_back({"GetSongInfo, warm song cache",
                             bestOver(
                                 unique, [&](const std::string& p) { on->Read(p); }, [] {}),
                             "", ""});
    uniqueListing.push_back(
        {"bare walk, one stat per file", bestOver(unique, StatOnly, [] {}), "", ""});
    Print("listing through the song cache, files with names of their own", uniqueListing,
          "bare walk, one stat per file");

    if (cold) {
        std::string how;
        // Each pass from a dropped page cache, with the bytes it read from the disk.
        const auto coldPass = [&](const char* name,
                                  const std::function<void(const std::string&)>& work) {
            how = jkbench::DropPageCache(files);
            const jkbench::DiskBytes before = jkbench::DiskBytesNow(root);
            const jkbench::PassResult result = jkbench::TimePass(files, work);
            const jkbench::DiskBytes after = jkbench::DiskBytesNow(root);
            return Row{name, result, jkbench::MegabytesText(before.device, after.device),
                       jkbench::MegabytesText(before.process, after.process)};
        };
        std::vector<Row> dropped;
        on = std::make_unique<Ours>(true);
        dropped.push_back(
            coldPass("GetSongInfo, extensions on", [&](const std::string& p) { on->Read(p); }));
        off = std::make_unique<Ours>(false);
        dropped.push_back(
            coldPass("GetSongInfo, extensions off", [&](const std::string& p) { off->Read(p); }));
        dropped.push_back(coldPass("TagLib FileRef (Fast)", ReadTagLib));
        dropped.push_back(coldPass("I/O floor (stat, head, tail)", ReadFloor));
        Print(("page cache dropped: " + how).c_str(), dropped, "TagLib FileRef (Fast)");
        std::printf(
            "  (MB read from the disk: by the whole device, which other processes share, "
            "and by this program alone)\n");
    }
    std::printf("\npeak memory: %.1f MiB (checksum %zu)\n", jkbench::PeakRssMiB(), g_sink);
    return 0;
}
