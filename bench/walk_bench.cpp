// Walking a collection into playlist rows, beside TagLib walking the same tree (a FileRef per
// file) and a bare walk that stats each file; then a list of 10,000 lines opened through the warm
// song cache and saved, and the shuffles. All in one run.
//
//   walk_bench COLLECTION [--no-cold] [--threads N] [--list-only]
//
// --list-only warms the song cache with one walk and times only the list (for profiling).

#include <sys/stat.h>

#include <taglib/fileref.h>
#include <taglib/tag.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "BenchSupport.h"
#include "browse/FolderScan.h"
#include "catalogue/GetSongInfo.h"
#include "catalogue/SongCache.h"
#include "platform/DirectoryListing.h"
#include "platform/Drives.h"
#include "playback/CachedSongSource.h"
#include "playback/ListReading.h"
#include "playback/ListWriting.h"
#include "playback/ShuffleRandom.h"
#include "playback/Shuffler.h"
#include "util/PathHelpers.h"
#include "util/Utf8.h"

namespace {

std::size_t g_sink = 0;  // printed at the end, so no pass is optimised away

double Seconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

struct Ours {
    jk::SongCache cache;
    std::int32_t lookups = 0;
    std::int32_t hits = 0;
    jk::SongLookup lookup{cache, {lookups, hits}};
    Ours() { lookup.Options().volumeLabel = jk::MakeVolumeLabelLookup(); }
};

std::size_t RecurseInto(Ours& ours, const std::string& root, jk::RowList& rows, int threads) {
    jk::PosixFolderLister lister;
    jk::ScanSetup setup;
    setup.Lister = &lister;
    setup.Lookup = &ours.lookup;
    setup.ReadAheadThreads = threads;
    return jk::RecurseDirReal(root, rows, setup).Added;
}

void Line(const char* name, std::size_t files, double seconds, double reference) {
    const double rate = seconds > 0 ? static_cast<double>(files) / seconds : 0;
    std::printf("  %-44s %10.0f %9.3f %7.2fx\n", name, rate, seconds,
                reference > 0 ? rate / reference : 0.0);
}

void Heading(const char* text) {
    std::printf("\n%s\n  %-44s %10s %9s %8s\n", text, "", "files/s", "seconds", "ratio");
}

// A pass from a dropped page cache, with the bytes it read from the disk.
struct ColdPass {
    double seconds = 0;
    std::string deviceMB;
    std::string processMB;
    std::string requests;  // the device's read requests
};

ColdPass TimeCold(const std::string& root, const std::vector<std::string>& files, std::string& how,
                  const std::function<void()>& work) {
    how = jkbench::DropPageCache(files);
    const jkbench::DiskBytes before = jkbench::DiskBytesNow(root);
    const double seconds = Seconds(work);
    const jkbench::DiskBytes after = jkbench::DiskBytesNow(root);
    return {seconds, jkbench::MegabytesText(before.device, after.device),
            jkbench::MegabytesText(before.process, after.process),
            jkbench::RequestsText(before, after, seconds)};
}

void ColdLine(const char* name, std::size_t files, const ColdPass& pass, double reference) {
    const double rate = pass.seconds > 0 ? static_cast<double>(files) / pass.seconds : 0;
    std::printf("  %-44s %10.0f %9.3f %7.2fx %9s %9s\n", name, rate, pass.seconds,
                reference > 0 ? rate / reference : 0.0, pass.deviceMB.c_str(),
                pass.processMB.c_str());
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr,
                     "usage: walk_bench COLLECTION [--no-cold] [--threads N] [--list-only]\n");
        return 1;
    }
    const std::string root = argv[1];
    bool cold = true;
    bool listOnly = false;
    int threads = jk::kDefaultReadAheadThreads;
    for (int i = 2; i < argc; ++i) {
        if (std::strcmp(argv[i], "--no-cold") == 0) {
            cold = false;
        } else if (std::strcmp(argv[i], "--list-only") == 0) {
            listOnly = true;
            cold = false;
        } else if (std::strcmp(argv[i], "--threads") == 0 && i + 1 < argc) {
            threads = std::atoi(argv[++i]);
        }
    }
    const std::vector<std::string> files = jkbench::CollectSongs(root);
    std::printf("collection: %s, %zu songs; read-ahead threads: %d\nmachine: %s\n", root.c_str(),
                files.size(), threads, jkbench::MachineNote(root).c_str());

    const auto tagLib = [](const std::string& path) {
        TagLib::FileRef file(path.c_str(), true, TagLib::AudioProperties::Fast);
        if (!file.isNull() && file.tag() != nullptr) {
            g_sink += file.tag()->title().size();
        }
        if (!file.isNull() && file.audioProperties() != nullptr) {
            g_sink += static_cast<std::size_t>(file.audioProperties()->lengthInSeconds());
        }
    };
    const auto statOnly = [](const std::string& path) {
        struct stat st {};
        g_sink += ::stat(path.c_str(), &st) == 0 ? static_cast<std::size_t>(st.st_size) : 0;
    };
    const auto walkWith = [&](const std::function<void(const std::string&)>& onSong) {
        return Seconds([&] { jkbench::WalkSongs(root, onSong); });
    };

    // Warm page cache.
    walkWith(statOnly);
    std::unique_ptr<Ours> ours = std::make_unique<Ours>();
    jk::RowList rows;
    std::size_t added = 0;
    if (listOnly) {
        RecurseInto(*ours, root, rows, threads);
    } else {
        jkbench::TimePass(files, tagLib);
        // Each side's best of a few rounds, taken in turns, so a moment of load on a shared
        // machine doesn't decide the ratio.
        constexpr int kRounds = 3;
        double tagLibWarm = 1e9;
        double statWarm = 1e9;
        double oursEmpty = 1e9;
        double oursWarm = 1e9;
        for (int round = 0; round < kRounds; ++round) {
            tagLibWarm = std::min(tagLibWarm, walkWith(tagLib));
            statWarm = std::min(statWarm, walkWith(statOnly));
            ours = std::make_unique<Ours>();
            rows.clear();
            oursEmpty = std::min(oursEmpty,
                                 Seconds([&] { added = RecurseInto(*ours, root, rows, threads); }));
            rows.clear();
            oursWarm = std::min(oursWarm,
                                Seconds([&] { added = RecurseInto(*ours, root, rows, threads); }));
        }
        const double tagLibRate = static_cast<double>(files.size()) / tagLibWarm;
        const double statRate = static_cast<double>(files.size()) / statWarm;
        Heading("page cache warm");
        Line("RecurseDirReal into rows, song cache empty", added, oursEmpty, tagLibRate);
        Line("TagLib walk (FileRef per file)", files.size(), tagLibWarm, tagLibRate);
        Line("RecurseDirReal into rows, song cache warm", added, oursWarm, statRate);
        Line("bare walk, one stat per file", files.size(), statWarm, statRate);
        std::printf(
            "  (best of %d rounds; ratios: song cache empty against TagLib; warm against the "
            "bare walk)\n",
            kRounds);
    }

    if (cold) {
        std::string how;
        jk::RowList coldRows;
        ours = std::make_unique<Ours>();
        const ColdPass oursCold = TimeCold(
            root, files, how, [&] { added = RecurseInto(*ours, root, coldRows, threads); });
        const ColdPass tagLibCold = TimeCold(root, files, how, [&] { walkWith(tagLib); });
        const ColdPass floorCold = TimeCold(root, files, how, [&] {
            walkWith([](const std::string& path) { g_sink += jkbench::ReadFloor(path); });
        });
        const ColdPass statCold = TimeCold(root, files, how, [&] { walkWith(statOnly); });
        const double tagLibColdRate = static_cast<double>(files.size()) / tagLibCold.seconds;
        std::printf("\npage cache dropped: %s\n  %-44s %10s %9s %8s %9s %9s\n", how.c_str(), "",
                    "files/s", "seconds", "ratio", "MB device", "MB ours");
        ColdLine("RecurseDirReal into rows, song cache empty", added, oursCold, tagLibColdRate);
        ColdLine("TagLib walk (FileRef per file)", files.size(), tagLibCold, tagLibColdRate);
        ColdLine("I/O floor walk (stat, 4 KB head, 256 B tail)", files.size(), floorCold,
                 tagLibColdRate);
        ColdLine("bare walk, one stat per file", files.size(), statCold, tagLibColdRate);
        std::printf(
            "  (ratios against TagLib's walk; MB read from the disk by the whole device, which "
            "other processes share, and by this program alone)\n");
        std::printf("  the device's reads: %s (ours); %s (TagLib); %s (I/O floor)\n",
                    oursCold.requests.c_str(), tagLibCold.requests.c_str(),
                    floorCold.requests.c_str());
        // Leave a warm song cache for the list figures below.
        walkWith(statOnly);
        coldRows.clear();
        RecurseInto(*ours, root, coldRows, threads);
    }

    // Lists of 10,000 lines through the warm song cache, and a save. The cache is keyed by bare
    // file name, so a file that shares its name with another one in the collection finds the
    // other's record, is read again and gets one of its own, on every opening: the first list
    // (the walk's first files) holds such files as they come, the second only files whose names
    // are unique in the collection.
    const std::size_t listSize = std::min<std::size_t>(10000, files.size());
    std::unordered_map<std::string, int> nameCounts;
    for (const std::string& path : files) {
        ++nameCounts[jk::ToLower(jk::BareName(path))];
    }
    std::vector<std::string> uniqueFiles;
    for (const std::string& path : files) {
        if (uniqueFiles.size() < listSize && nameCounts[jk::ToLower(jk::BareName(path))] == 1) {
            uniqueFiles.push_back(path);
        }
    }
    char folderTemplate[] = "/tmp/walk_bench.XXXXXX";
    const std::string folder = mkdtemp(folderTemplate);
    const std::string listPath = folder + "/bench.m3u";
    jk::RowList listRows;
    const jk::SongSource source = jk::CachedSongSource(ours->lookup);
    Heading("a list of songs, song cache warm");
    const auto timeList = [&](const std::vector<std::string>& listFiles, const char* what) {
        std::string text;
        for (const std::string& path : listFiles) {
            text += path + "\r\n";
        }
        FILE* out = std::fopen(listPath.c_str(), "wb");
        std::fwrite(text.data(), 1, text.size(), out);
        std::fclose(out);
        // One pass of either takes tens of milliseconds, so each figure is the best of five,
        // taken in turns so that both sides meet the same load.
        double openSeconds = 0;
        double statList = 0;
        std::int64_t readAgain = 0;
        for (int run = 0; run < 5; ++run) {
            const std::int64_t recordsBefore = ours->cache.UpperBound();
            const double open = Seconds([&] { jk::OpenListNow(listPath, listRows, source, 0); });
            readAgain = ours->cache.UpperBound() - recordsBefore;
            const double stat = jkbench::TimePass(listFiles, statOnly).seconds;
            openSeconds = run == 0 ? open : std::min(openSeconds, open);
            statList = run == 0 ? stat : std::min(statList, stat);
        }
        const double statRate = static_cast<double>(listFiles.size()) / statList;
        std::printf("  %s: %lld of %zu lines read again on each opening\n", what,
                    static_cast<long long>(readAgain), listFiles.size());
        Line("OpenListNow", listRows.size(), openSeconds, statRate);
        Line("bare stat of the same files", listFiles.size(), statList, statRate);
    };
    timeList(std::vector<std::string>(files.begin(), files.begin() + static_cast<long>(listSize)),
             "the walk's first files");
    timeList(uniqueFiles, "files whose names are unique in the collection");
    std::printf("  (best of 5 runs of each)\n");
    jk::ListSettings settings;
    settings.RelativePaths = 1;
    const double saveSeconds =
        Seconds([&] { jk::WriteListFile(folder + "/saved.m3u", listRows, settings); });
    std::printf("  SaveList of %zu rows (relative paths): %.1f ms\n", listRows.size(),
                saveSeconds * 1000);

    // Shuffles.
    const auto makeRows = [](std::size_t count, std::size_t artists) {
        jk::RowList made(count);
        for (std::size_t i = 0; i < count; ++i) {
            const std::string artist = "Artist " + std::to_string(i % artists);
            const std::string path = "/music/" + std::to_string(i) + ".mp3";
            made[i] = jk::ListRow({"Song", artist, "Album", "1999", "Rock", "03:00", "128 ", path,
                                   "", "1000", "", ""});
        }
        return made;
    };
    jk::ShuffleRandom random(42);
    jk::RowList many = makeRows(100000, 5000);
    const double enhancedMany = Seconds([&] { jk::ShuffleListRows(many, false, true, random); });
    jk::RowList single = makeRows(10000, 1);
    const double enhancedSingle =
        Seconds([&] { jk::ShuffleListRows(single, false, true, random); });
    jk::RowList quick = makeRows(100000, 5000);
    const double quickMany = Seconds([&] { jk::ShuffleListRows(quick, false, false, random); });
    std::printf("\nshuffles\n  enhanced, 100,000 rows by 5,000 artists: %.3f s\n", enhancedMany);
    std::printf("  enhanced, 10,000 rows by one artist: %.3f s\n", enhancedSingle);
    std::printf("  quick, 100,000 rows: %.3f s\n", quickMany);

    std::printf("\npeak memory of this program: %.1f MiB (checksum %zu)\n", jkbench::PeakRssMiB(),
                g_sink + rows.size());
    std::remove(listPath.c_str());
    std::remove((folder + "/saved.m3u").c_str());
    ::rmdir(folder.c_str());
    return 0;
}
