#include "browse/ReadAhead.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "util/FileIo.h"
#include "util/TimeHelpers.h"

namespace jk {
namespace {

namespace fs = std::filesystem;

class TempFolder {
public:
    TempFolder() {
        path_ = fs::temp_directory_path() /
                ("jk-readahead-" + std::to_string(::getpid()) + "-" + std::to_string(counter_++));
        fs::create_directories(path_);
    }
    ~TempFolder() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    std::string Folder() const { return path_.string() + "/"; }
    std::string Write(const std::string& name, std::size_t size) {
        std::ofstream out(path_ / name, std::ios::binary);
        for (std::size_t i = 0; i < size; ++i) {
            out.put(static_cast<char>((i * 7 + name.size()) & 0xFF));
        }
        return Folder() + name;
    }

private:
    fs::path path_;
    static inline int counter_ = 0;
};

struct Seen {
    std::string path;
    bool prefetched = false;
    bool exists = false;
    std::size_t head = 0;
    std::size_t tail = 0;
    std::int64_t tailEnd = 0;  // where the tail block ends: the file's end when it was read
    std::thread::id thread;
};

SongConsumer Recorder(std::vector<Seen>& seen) {
    return [&seen](std::string& path, const PrefetchedBytes* p) {
        Seen s{path,
               p != nullptr,
               p && p->status.exists,
               p ? p->head.size() : 0,
               p ? p->tail.size() : 0,
               p ? p->tailOffset + static_cast<std::int64_t>(p->tail.size()) : 0,
               std::this_thread::get_id()};
        seen.push_back(s);
    };
}

std::vector<std::string> Names(std::size_t count, const std::string& ext = ".mp3") {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < count; ++i) {
        names.push_back("f" + std::to_string(i) + ext);
    }
    return names;
}

void ScanAll(ReadAheadScanner& scanner, const std::string& folder,
             const std::vector<std::string>& names) {
    for (const std::string& name : names) {
        scanner.Announce(folder + name);
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        scanner.ScanNext();
    }
    scanner.DropAnnounced();
}

TEST(ReadAheadScanner, HandsFilesOverInOrderOnTheWalksThreadWithTheirBytes) {
    TempFolder dir;
    const std::vector<std::string> names = Names(300);
    for (std::size_t i = 0; i < names.size(); ++i) {
        dir.Write(names[i], 200 + i * 50);
    }
    for (const int threads : {0, 1, 3, 8}) {
        std::vector<Seen> seen;
        {
            ReadAheadScanner scanner(0, Recorder(seen), {}, threads);
            EXPECT_EQ(scanner.WorkerCount(), static_cast<std::size_t>(threads));
            ScanAll(scanner, dir.Folder(), names);
            ScanAll(scanner, dir.Folder(), names);  // a second folder through the same workers
        }
        ASSERT_EQ(seen.size(), 2 * names.size()) << threads;
        for (std::size_t i = 0; i < seen.size(); ++i) {
            const std::size_t n = i % names.size();
            EXPECT_EQ(seen[i].path, dir.Folder() + names[n]);
            EXPECT_EQ(seen[i].thread, std::this_thread::get_id());
            if (threads > 0 && seen[i].prefetched) {
                const std::size_t size = 200 + n * 50;
                EXPECT_EQ(seen[i].head, std::min(size, kPrefetchHeadBytes));
                if (seen[i].tail > 0) {
                    EXPECT_EQ(seen[i].tailEnd, static_cast<std::int64_t>(size));
                }
            }
        }
        if (threads == 0) {
            EXPECT_FALSE(seen[5].prefetched);
        }
    }
}

TEST(ReadAheadScanner, OpensNoFileThatTheCacheWillAnswer) {
    TempFolder dir;
    const std::string hit = dir.Write("hit.mp3", 5000);
    const std::string stale = dir.Write("stale.mp3", 5000);
    dir.Write("new.mp3", 5000);
    const std::string hitStamp = FormatStamp14(StatPath(hit).modifiedSeconds);
    std::vector<std::string> asked;
    CacheStampLookup cache = [&](std::string_view path) -> std::optional<std::string> {
        asked.emplace_back(path);
        if (path == hit) {
            return hitStamp;
        }
        if (path == stale) {
            return std::string("19990101000000");
        }
        return std::nullopt;
    };
    std::vector<Seen> seen;
    {
        ReadAheadScanner scanner(0, Recorder(seen), cache, 2);
        ScanAll(scanner, dir.Folder(), {"hit.mp3", "stale.mp3", "new.mp3"});
    }
    ASSERT_EQ(seen.size(), 3u);
    EXPECT_EQ(asked.size(), 3u) << "asked on the walk's thread, once a file";
    // Whether a worker or the walk's thread got to a file first, a hit is never read.
    EXPECT_EQ(seen[0].head, 0u);
    if (seen[0].prefetched) {
        EXPECT_TRUE(seen[0].exists);
    }
    if (seen[1].prefetched) {
        EXPECT_EQ(seen[1].head, std::min<std::size_t>(5000, kPrefetchHeadBytes));
    }
}

TEST(ReadAheadScanner, ReadsNothingAheadForFilteredOrMissingFiles) {
    TempFolder dir;
    dir.Write("a.ogg", 1000);
    dir.Write("b.mp3", 1000);
    std::vector<Seen> seen;
    {
        ReadAheadScanner scanner(0, Recorder(seen), {}, 4);
        ScanAll(scanner, dir.Folder(), {"a.ogg", "missing.mp3", "b.mp3"});
    }
    ASSERT_EQ(seen.size(), 3u);
    EXPECT_FALSE(seen[0].prefetched) << "the filter turns it away";
    if (seen[1].prefetched) {
        EXPECT_FALSE(seen[1].exists);
    }
}

TEST(ReadAheadScanner, DroppedFilesAreNeverHandedOverAndScanningGoesOnAfterwards) {
    TempFolder dir;
    const std::vector<std::string> names = Names(200);
    for (const std::string& name : names) {
        dir.Write(name, 300);
    }
    std::vector<Seen> seen;
    {
        ReadAheadScanner scanner(0, Recorder(seen), {}, 8);
        EXPECT_EQ(scanner.LookAhead(), 64u);
        for (const std::string& name : names) {
            scanner.Announce(dir.Folder() + name);
        }
        scanner.ScanNext();
        scanner.ScanNext();
        scanner.DropAnnounced();  // the walk was stopped with workers busy ahead
        scanner.ScanNext();       // nothing is left to scan
        scanner.Announce(dir.Folder() + "f7.mp3");
        scanner.ScanNext();
        for (const std::string& name : names) {
            scanner.Announce(dir.Folder() + name);  // announced, never scanned
        }
    }
    ASSERT_EQ(seen.size(), 3u);
    EXPECT_EQ(seen[1].path, dir.Folder() + "f1.mp3");
    EXPECT_EQ(seen[2].path, dir.Folder() + "f7.mp3");
}

TEST(ReadAheadScanner, WithoutWorkersAsksForNoLookAhead) {
    std::vector<Seen> seen;
    ReadAheadScanner scanner(0, Recorder(seen), {}, 0);
    EXPECT_EQ(scanner.LookAhead(), 0u);
}

}  // namespace
}  // namespace jk
