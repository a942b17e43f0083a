#include "listing/ReadAhead.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "support/TempFolder.h"
#include "util/FileIo.h"
#include "util/TimeHelpers.h"

namespace jk {
namespace {

using test::TempFolder;

// A file of `size` bytes in a pattern that differs with the length of its name.
std::string WritePattern(const TempFolder& dir, const std::string& name, std::size_t size) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<char>((i * 7 + name.size()) & 0xFF);
    }
    return dir.Write(name, bytes);
}

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

// Writes a file of `size` bytes beginning with an ID3v2 header whose tag (header included)
// takes `tagBytes`.
std::string WriteTagged(const TempFolder& dir, const std::string& name, std::size_t size,
                        std::size_t tagBytes) {
    const std::string path = WritePattern(dir, name, size);
    const std::size_t body = tagBytes - 10;
    const unsigned char header[10] = {'I',
                                      'D',
                                      '3',
                                      3,
                                      0,
                                      0,
                                      static_cast<unsigned char>((body >> 21) & 0x7F),
                                      static_cast<unsigned char>((body >> 14) & 0x7F),
                                      static_cast<unsigned char>((body >> 7) & 0x7F),
                                      static_cast<unsigned char>(body & 0x7F)};
    std::fstream out(path, std::ios::binary | std::ios::in | std::ios::out);
    out.write(reinterpret_cast<const char*>(header), sizeof header);
    return path;
}

// The disk's files, with a hook that runs before each file's head and tail are read (on the
// thread that reads them): a delay, a wait for the disk, the file's removal.
class HookedFiles final : public AheadFiles {
public:
    using Hook = std::function<void(std::string_view path)>;
    explicit HookedFiles(Hook hook) : m_hook(std::move(hook)) {}
    FileStatus Stat(std::string_view path) override { return m_disk.Stat(path); }
    bool ReadHeadAndTail(std::string_view path, OpenedAhead* opened,
                         PrefetchedBytes& bytes) override {
        m_hook(path);
        return m_disk.ReadHeadAndTail(path, opened, bytes);
    }
    // Nothing is opened ahead: the hook sees every file before it is opened.
    void Expect(std::string_view, OpenedAhead&) override {}

private:
    Hook m_hook;
    DiskAheadFiles m_disk;
};

AheadFilesMaker Hooked(const HookedFiles::Hook& hook) {
    return [hook] { return std::make_unique<HookedFiles>(hook); };
}

// What the workers told the disk of and read, in the order it happened.
struct DiskLog {
    std::mutex mutex;
    std::vector<std::string> expected;
    std::vector<std::string> read;
    std::size_t readAfterExpected = 0;  // reads of files the disk had been told of
};

// The disk's files, each read taking a little while and reported as having come from the disk
// (or, with `fromDisk` false, from memory).
class LoggedFiles final : public AheadFiles {
public:
    LoggedFiles(DiskLog& log, bool fromDisk) : m_log(log), m_fromDisk(fromDisk) {}
    FileStatus Stat(std::string_view path) override { return m_disk.Stat(path); }
    bool ReadHeadAndTail(std::string_view path, OpenedAhead* opened,
                         PrefetchedBytes& bytes) override {
        {
            std::lock_guard lock(m_log.mutex);
            m_log.read.emplace_back(path);
            if (std::find(m_log.expected.begin(), m_log.expected.end(), path) !=
                m_log.expected.end()) {
                ++m_log.readAfterExpected;
            }
        }
        if (m_fromDisk) {
            std::this_thread::sleep_for(std::chrono::microseconds(300));
        }
        m_disk.ReadHeadAndTail(path, opened, bytes);
        return !m_fromDisk;
    }
    void Expect(std::string_view path, OpenedAhead& opened) override {
        {
            std::lock_guard lock(m_log.mutex);
            m_log.expected.emplace_back(path);
        }
        m_disk.Expect(path, opened);
    }

private:
    DiskLog& m_log;
    bool m_fromDisk;
    DiskAheadFiles m_disk;
};

// Checks that each file came whole, in order, on the walk's thread.
void ExpectWholeInOrder(const std::vector<Seen>& seen, const std::string& folder,
                        const std::vector<std::string>& names, std::size_t size) {
    ASSERT_EQ(seen.size(), names.size());
    for (std::size_t i = 0; i < seen.size(); ++i) {
        EXPECT_EQ(seen[i].path, folder + names[i]);
        EXPECT_EQ(seen[i].thread, std::this_thread::get_id());
        EXPECT_EQ(seen[i].head, kHeadBlockBytes) << names[i];
        EXPECT_EQ(seen[i].tail, kTailBlockBytes) << names[i];
        EXPECT_EQ(seen[i].tailEnd, static_cast<std::int64_t>(size)) << names[i];
    }
}

// The same, where the files in `hits` are answered by the cache and handed over unread.
void ExpectWholeInOrderOrHit(const std::vector<Seen>& seen, const std::string& folder,
                             const std::vector<std::string>& names,
                             const std::set<std::string>& hits) {
    ASSERT_EQ(seen.size(), names.size());
    for (std::size_t i = 0; i < seen.size(); ++i) {
        EXPECT_EQ(seen[i].path, folder + names[i]);
        EXPECT_EQ(seen[i].thread, std::this_thread::get_id());
        EXPECT_TRUE(seen[i].exists);
        const bool hit = hits.count(folder + names[i]) == 1;
        EXPECT_EQ(seen[i].head, hit ? 0u : kHeadBlockBytes) << names[i];
        EXPECT_EQ(seen[i].tail, hit ? 0u : kTailBlockBytes) << names[i];
    }
}

TEST(ReadAheadScanner, WaitsForSlowReadsAndKeepsTheOrder) {
    TempFolder dir;
    const std::vector<std::string> names = Names(120);
    for (const std::string& name : names) {
        WritePattern(dir, name, 9000);
    }
    std::atomic<int> reads = 0;
    // Every few files a read takes a while; the others come at once.
    const AheadFilesMaker slow = Hooked([&reads](std::string_view path) {
        ++reads;
        if (path.size() % 3 == 0) {
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
    });
    for (const int threads : {1, 4}) {
        reads = 0;
        std::vector<Seen> seen;
        {
            ReadAheadScanner scanner(0, Recorder(seen), {}, threads, slow);
            ScanAll(scanner, dir.Folder(), names);
        }
        ExpectWholeInOrder(seen, dir.Folder(), names, 9000);
        EXPECT_EQ(reads, static_cast<int>(names.size())) << "each file is read once";
    }
}

// A worker held up in the middle of a file (as when the system gives its processor to other
// programs) does not hold the walk up while files come from memory: the walk's thread reads the
// files behind that one itself. Without that, the walk would wait for the held worker.
TEST(ReadAheadScanner, ReadsPastAHeldUpWorkerWhileFilesComeFromMemory) {
    TempFolder dir;
    const std::vector<std::string> names = Names(300);
    for (const std::string& name : names) {
        WritePattern(dir, name, 5000);
    }
    const std::thread::id walk = std::this_thread::get_id();
    const auto indexOf = [](std::string_view path) {
        return std::stoi(std::string(path.substr(path.rfind("/f") + 2)));
    };
    std::mutex mutex;
    std::condition_variable passed;
    int held = -1;  // the file the worker is held up in
    bool walkedPast = false;
    const AheadFilesMaker files = Hooked([&](std::string_view path) {
        std::unique_lock lock(mutex);
        if (std::this_thread::get_id() == walk) {
            if (held >= 0 && indexOf(path) > held) {
                walkedPast = true;
                passed.notify_all();
            }
        } else if (held < 0 && indexOf(path) < 200) {
            held = indexOf(path);
            EXPECT_TRUE(passed.wait_for(lock, std::chrono::seconds(10), [&] { return walkedPast; }))
                << "the walk waited for the worker held up in " << path;
        }
    });
    std::vector<Seen> seen;
    const SongConsumer record = Recorder(seen);
    // The walk's thread takes a while over each file, so that the worker gets ahead of it.
    const SongConsumer slowly = [&record](std::string& path, const PrefetchedBytes* bytes) {
        std::this_thread::sleep_for(std::chrono::microseconds(200));
        record(path, bytes);
    };
    {
        ReadAheadScanner scanner(0, slowly, {}, 1, files);
        ScanAll(scanner, dir.Folder(), names);
    }
    EXPECT_GE(held, 0) << "a worker read a file";
    ExpectWholeInOrder(seen, dir.Folder(), names, 5000);
}

// Reads that must wait for the disk: each blocks until the "disk" brings its file, and the disk
// brings them out of order, the first ones last.
TEST(ReadAheadScanner, HandsOverFilesOnlyOnceTheDiskHasBroughtThem) {
    TempFolder dir;
    const std::vector<std::string> names = Names(40);
    for (const std::string& name : names) {
        WritePattern(dir, name, 12000);
    }
    std::mutex mutex;
    std::condition_variable brought;
    std::map<std::string, bool> onDisk;  // true once the disk has brought the file
    for (const std::string& name : names) {
        onDisk[dir.Folder() + name] = false;
    }
    const AheadFilesMaker diskBound = Hooked([&](std::string_view path) {
        std::unique_lock lock(mutex);
        const bool came = brought.wait_for(lock, std::chrono::seconds(10),
                                           [&] { return onDisk.at(std::string(path)); });
        EXPECT_TRUE(came) << path;
    });
    std::thread disk([&] {
        for (auto name = names.rbegin(); name != names.rend(); ++name) {
            std::this_thread::sleep_for(std::chrono::microseconds(500));
            std::lock_guard lock(mutex);
            onDisk[dir.Folder() + *name] = true;
            brought.notify_all();
        }
    });
    std::vector<Seen> seen;
    {
        ReadAheadScanner scanner(0, Recorder(seen), {}, 3, diskBound);
        ScanAll(scanner, dir.Folder(), names);
    }
    disk.join();
    ExpectWholeInOrder(seen, dir.Folder(), names, 12000);
}

TEST(ReadAheadScanner, AFileThatVanishesIsHandedOverAsMissingAndTheWalkGoesOn) {
    TempFolder dir;
    const std::vector<std::string> names = {"a.mp3", "gone1.mp3", "b.mp3", "gone2.mp3", "c.mp3"};
    for (const std::string& name : names) {
        WritePattern(dir, name, 5000);
    }
    // The files named "gone..." are removed between the walk's listing and their reading.
    const AheadFilesMaker vanishing = Hooked([](std::string_view path) {
        if (path.find("/gone") != std::string_view::npos) {
            std::filesystem::remove(std::string(path));
        }
    });
    for (const int threads : {0, 2}) {
        for (const std::string& name : names) {
            WritePattern(dir, name, 5000);
        }
        std::vector<Seen> seen;
        {
            ReadAheadScanner scanner(0, Recorder(seen), {}, threads, vanishing);
            ScanAll(scanner, dir.Folder(), names);
        }
        ASSERT_EQ(seen.size(), names.size());
        for (std::size_t i = 0; i < names.size(); ++i) {
            EXPECT_EQ(seen[i].path, dir.Folder() + names[i]);
            if (threads == 0) {
                EXPECT_FALSE(seen[i].prefetched) << "nothing is read ahead";
                continue;
            }
            const bool gone = names[i].starts_with("gone");
            EXPECT_EQ(seen[i].exists, !gone) << names[i];
            EXPECT_EQ(seen[i].head, gone ? 0u : kHeadBlockBytes) << names[i];
        }
    }
}

TEST(ReadAheadScanner, HandsFilesOverInOrderOnTheWalksThreadWithTheBytesTheReaderWants) {
    TempFolder dir;
    const std::vector<std::string> names = Names(300);
    for (std::size_t i = 0; i < names.size(); ++i) {
        WritePattern(dir, names[i], 200 + i * 50);
    }
    for (const int threads : {0, 1, 3, 8}) {
        std::vector<Seen> seen;
        {
            ReadAheadScanner scanner(0, Recorder(seen), {}, threads);
            ScanAll(scanner, dir.Folder(), names);
            ScanAll(scanner, dir.Folder(), names);  // a second folder through the same workers
            EXPECT_LE(scanner.WorkerCount(), static_cast<std::size_t>(threads));
        }
        ASSERT_EQ(seen.size(), 2 * names.size()) << threads;
        for (std::size_t i = 0; i < seen.size(); ++i) {
            const std::size_t n = i % names.size();
            EXPECT_EQ(seen[i].path, dir.Folder() + names[n]);
            EXPECT_EQ(seen[i].thread, std::this_thread::get_id());
            EXPECT_EQ(seen[i].prefetched, threads > 0);
            if (seen[i].prefetched) {
                // The head block and the tail block the song reader reads first.
                const std::size_t size = 200 + n * 50;
                EXPECT_EQ(seen[i].head, std::min(size, kHeadBlockBytes)) << size;
                EXPECT_EQ(seen[i].tail, std::min(size - seen[i].head, kTailBlockBytes)) << size;
                EXPECT_EQ(seen[i].tailEnd, static_cast<std::int64_t>(size));
            }
        }
    }
}

TEST(ReadAheadScanner, TakesAnId3v2TagWithTheBlockBehindItAsTheReaderDoes) {
    TempFolder dir;
    WriteTagged(dir, "small.mp3", 20000, 1000);  // tag and block within the first 4 KiB
    WriteTagged(dir, "tagged.mp3", 20000, 5000);
    WriteTagged(dir, "picture.mp3", 300000, 200000);  // the reader walks past the picture
    WriteTagged(dir, "short.mp3", 6000, 5000);        // the file ends first
    std::vector<Seen> seen;
    {
        ReadAheadScanner scanner(0, Recorder(seen), {}, 2);
        ScanAll(scanner, dir.Folder(), {"small.mp3", "tagged.mp3", "picture.mp3", "short.mp3"});
    }
    ASSERT_EQ(seen.size(), 4u);
    EXPECT_EQ(seen[0].head, kHeadBlockBytes);
    EXPECT_EQ(seen[1].head, 5000u + 2048u);
    EXPECT_EQ(seen[2].head, kHeadBlockBytes) << "a tag with a picture is not read whole";
    EXPECT_EQ(seen[2].tailEnd, 300000);
    EXPECT_EQ(seen[3].head, 6000u);
    EXPECT_EQ(seen[3].tail, 0u);
}

TEST(ReadAheadScanner, OpensNoFileThatTheCacheWillAnswer) {
    TempFolder dir;
    const std::string hit = WritePattern(dir, "hit.mp3", 5000);
    const std::string stale = WritePattern(dir, "stale.mp3", 5000);
    WritePattern(dir, "new.mp3", 5000);
    const std::string hitStamp = FormatStamp14(StatPath(hit).modifiedSeconds);
    std::vector<std::string> asked;
    std::vector<std::thread::id> askedOn;
    CacheStampLookup cache = [&](std::string_view path) -> std::string_view {
        asked.emplace_back(path);
        askedOn.push_back(std::this_thread::get_id());
        if (path == hit) {
            return hitStamp;
        }
        if (path == stale) {
            return "19990101000000";
        }
        return "";
    };
    std::mutex readMutex;
    std::vector<std::string> read;
    const AheadFilesMaker counted = Hooked([&](std::string_view path) {
        std::lock_guard lock(readMutex);
        read.emplace_back(path);
    });
    for (const int threads : {1, 4}) {
        asked.clear();
        askedOn.clear();
        read.clear();
        std::vector<Seen> seen;
        {
            ReadAheadScanner scanner(0, Recorder(seen), cache, threads, counted);
            ScanAll(scanner, dir.Folder(), {"hit.mp3", "stale.mp3", "new.mp3"});
        }
        std::sort(read.begin(), read.end());
        EXPECT_EQ(read, (std::vector<std::string>{dir.Folder() + "new.mp3", stale}));
        ASSERT_EQ(seen.size(), 3u);
        EXPECT_EQ(asked.size(), 3u) << "once a file";
        for (const std::thread::id id : askedOn) {
            EXPECT_EQ(id, std::this_thread::get_id()) << "the cache is asked on the walk's thread";
        }
        EXPECT_TRUE(seen[0].exists);
        EXPECT_EQ(seen[0].head, 0u) << "a hit is not read";
        EXPECT_EQ(seen[1].head, kHeadBlockBytes);
        EXPECT_EQ(seen[2].head, kHeadBlockBytes);
    }
}

TEST(ReadAheadScanner, ReadsNothingAheadForFilteredMissingOrTooShortFiles) {
    TempFolder dir;
    WritePattern(dir, "a.ogg", 1000);
    WritePattern(dir, "b.mp3", 1000);
    WritePattern(dir, "tiny.mp3", 131);
    std::filesystem::create_directory(dir.Folder() + "folder.mp3");
    std::vector<Seen> seen;
    {
        ReadAheadScanner scanner(0, Recorder(seen), {}, 4);
        ScanAll(scanner, dir.Folder(), {"a.ogg", "missing.mp3", "b.mp3", "tiny.mp3", "folder.mp3"});
    }
    ASSERT_EQ(seen.size(), 5u);
    EXPECT_FALSE(seen[0].prefetched) << "the filter turns it away";
    EXPECT_TRUE(seen[1].prefetched);
    EXPECT_FALSE(seen[1].exists);
    EXPECT_EQ(seen[2].head, 1000u);
    EXPECT_TRUE(seen[3].exists);
    EXPECT_EQ(seen[3].head, 0u) << "below the smallest song: the reader reads nothing";
    EXPECT_TRUE(seen[4].exists);
    EXPECT_EQ(seen[4].head, 0u);
}

TEST(ReadAheadScanner, HandsOverWholeBytesOfFilesThatHadToComeFromTheDisk) {
    TempFolder dir;
    const std::vector<std::string> names = Names(200);
    for (const std::string& name : names) {
        const std::string path = WritePattern(dir, name, 40000);
        // Out of memory, where the file system allows it: the read-ahead must wait for them.
        const int fd = ::open(path.c_str(), O_RDONLY);
        ::fdatasync(fd);
        ::posix_fadvise(fd, 0, 0, POSIX_FADV_DONTNEED);
        ::close(fd);
    }
    std::vector<Seen> seen;
    {
        ReadAheadScanner scanner(0, Recorder(seen), {}, 3);
        ScanAll(scanner, dir.Folder(), names);
    }
    ASSERT_EQ(seen.size(), names.size());
    for (const Seen& s : seen) {
        EXPECT_EQ(s.head, kHeadBlockBytes);
        EXPECT_EQ(s.tail, kTailBlockBytes);
        EXPECT_EQ(s.tailEnd, 40000);
    }
}

// Files of which memory holds only a part: the head, the tail, a page in the middle, or
// nothing. Whatever memory lacks comes from the disk, and the bytes handed over are the file's.
TEST(ReadAheadScanner, HandsOverTheFilesOwnBytesWhenMemoryHoldsOnlyPartOfThem) {
    TempFolder dir;
    constexpr std::size_t kSize = 64 * 1024;
    const std::vector<std::string> names = Names(40);
    std::vector<std::string> contents;
    for (std::size_t i = 0; i < names.size(); ++i) {
        // A tag of a few pages at the head of every other file: a head read in two parts.
        const std::string path = i % 2 == 0 ? WriteTagged(dir, names[i], kSize, 9000)
                                            : WritePattern(dir, names[i], kSize);
        std::ifstream in(path, std::ios::binary);
        contents.emplace_back(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
        const int fd = ::open(path.c_str(), O_RDONLY);
        ::fdatasync(fd);
        ::posix_fadvise(fd, 0, 0, POSIX_FADV_DONTNEED);
        char page[4096];
        switch (i % 4) {
            case 0:
                ::pread(fd, page, sizeof page, 0);
                break;
            case 1:
                ::pread(fd, page, sizeof page, kSize - sizeof page);
                break;
            case 2:
                ::pread(fd, page, sizeof page, 4096);
                break;
            default:
                break;
        }
        ::close(fd);
    }
    std::vector<std::string> heads;
    std::vector<std::string> tails;
    const SongConsumer keep = [&](std::string&, const PrefetchedBytes* p) {
        ASSERT_NE(p, nullptr);
        heads.emplace_back(p->head.begin(), p->head.end());
        tails.emplace_back(p->tail.begin(), p->tail.end());
        EXPECT_EQ(p->tailOffset + static_cast<std::int64_t>(p->tail.size()),
                  static_cast<std::int64_t>(kSize));
    };
    {
        ReadAheadScanner scanner(0, keep, {}, 2);
        ScanAll(scanner, dir.Folder(), names);
    }
    ASSERT_EQ(heads.size(), names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        EXPECT_EQ(heads[i].size(), i % 2 == 0 ? 9000u + 2048u : kHeadBlockBytes) << names[i];
        EXPECT_TRUE(heads[i] == contents[i].substr(0, heads[i].size())) << names[i];
        EXPECT_EQ(tails[i].size(), kTailBlockBytes) << names[i];
        EXPECT_TRUE(tails[i] == contents[i].substr(kSize - tails[i].size())) << names[i];
    }
}

TEST(ReadAheadScanner, DroppedFilesAreNeverHandedOverAndScanningGoesOnAfterwards) {
    TempFolder dir;
    const std::vector<std::string> names = Names(400);
    for (const std::string& name : names) {
        WritePattern(dir, name, 300);
    }
    std::vector<Seen> seen;
    {
        ReadAheadScanner scanner(0, Recorder(seen), {}, 8);
        EXPECT_EQ(scanner.LookAhead(), 256u);
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
    EXPECT_EQ(seen[2].head, 300u);
}

// While files come from the disk, the disk is told of files ahead before they are read: only of
// files that will be read (none the cache answers, none twice), so it reads nothing for nothing.
// Files that come from memory are not told of.
TEST(ReadAheadScanner, TellsTheDiskOfFilesAheadOnlyWhileTheyComeFromIt) {
    TempFolder dir;
    const std::vector<std::string> names = Names(300);
    std::set<std::string> hits;
    std::map<std::string, std::string> stamps;
    for (std::size_t i = 0; i < names.size(); ++i) {
        const std::string path = WritePattern(dir, names[i], 6000);
        if (i % 5 == 0) {
            hits.insert(path);
            stamps[path] = FormatStamp14(StatPath(path).modifiedSeconds);
        }
    }
    const CacheStampLookup cache = [&stamps](std::string_view path) -> std::string_view {
        const auto found = stamps.find(std::string(path));
        return found == stamps.end() ? std::string_view() : std::string_view(found->second);
    };
    for (const bool fromDisk : {true, false}) {
        for (const int threads : {1, 4}) {
            DiskLog log;
            std::vector<Seen> seen;
            {
                ReadAheadScanner scanner(0, Recorder(seen), cache, threads, [&log, fromDisk] {
                    return std::make_unique<LoggedFiles>(log, fromDisk);
                });
                ScanAll(scanner, dir.Folder(), names);
                // Files in memory need one worker: more would only take turns with it and the
                // walk's thread for the processor. Files from the disk keep more busy.
                if (!fromDisk || threads == 1) {
                    EXPECT_EQ(scanner.WorkerCount(), 1u) << fromDisk << " " << threads;
                } else {
                    EXPECT_GT(scanner.WorkerCount(), 1u) << threads;
                }
            }
            ExpectWholeInOrderOrHit(seen, dir.Folder(), names, hits);
            std::set<std::string> read(log.read.begin(), log.read.end());
            EXPECT_EQ(read.size(), log.read.size()) << "each file is read once";
            EXPECT_EQ(read.size(), names.size() - hits.size());
            std::set<std::string> expected(log.expected.begin(), log.expected.end());
            EXPECT_EQ(expected.size(), log.expected.size()) << "no file is told of twice";
            for (const std::string& path : expected) {
                EXPECT_TRUE(read.count(path) == 1) << path << " was told of and never read";
            }
            if (fromDisk) {
                EXPECT_GT(log.readAfterExpected, read.size() / 2) << threads;
            } else {
                // Only before the first file has been found in memory.
                EXPECT_LE(log.expected.size(), static_cast<std::size_t>(threads) * 8);
            }
        }
    }
}

// A file told of is kept open for its reading, which then needs neither its name nor its status:
// it is read as it was when it was told of, even when it has been removed since. Files that can't
// be read are passed over.
TEST(DiskAheadFiles, KeepsAFileToldOfOpenForItsReadingAndPassesOverTheRest) {
    TempFolder dir;
    const std::string song = WriteTagged(dir, "song.mp3", 30000, 5000);
    WritePattern(dir, "tiny.mp3", 100);
    std::filesystem::create_directory(dir.Folder() + "folder.mp3");
    DiskAheadFiles files;
    for (const std::string name : {"missing.mp3", "tiny.mp3", "folder.mp3", ""}) {
        OpenedAhead opened;
        files.Expect(dir.Folder() + name, opened);
        EXPECT_FALSE(opened.file.IsOpen()) << name;
    }
    OpenedAhead relative;
    files.Expect("relative.mp3", relative);
    EXPECT_FALSE(relative.file.IsOpen());

    OpenedAhead opened;
    files.Expect(song, opened);
    ASSERT_TRUE(opened.file.IsOpen());
    std::filesystem::remove(song);
    for (const bool toldOf : {true, false}) {
        PrefetchedBytes bytes;
        files.ReadHeadAndTail(song, toldOf ? &opened : nullptr, bytes);
        EXPECT_EQ(bytes.status.exists, toldOf);
        EXPECT_EQ(bytes.head.size(), toldOf ? 5000u + 2048u : 0u);
        EXPECT_EQ(bytes.tail.size(), toldOf ? kTailBlockBytes : 0u);
        EXPECT_EQ(bytes.tailOffset + static_cast<std::int64_t>(bytes.tail.size()),
                  toldOf ? 30000 : 0);
        EXPECT_FALSE(opened.file.IsOpen()) << "handed over to the reading";
    }
}

TEST(ReadAheadScanner, WithoutWorkersAsksForNoLookAheadAndStartsNoThread) {
    std::vector<Seen> seen;
    ReadAheadScanner none(0, Recorder(seen), {}, 0);
    EXPECT_EQ(none.LookAhead(), 0u);
    ReadAheadScanner idle(0, Recorder(seen), {}, 8);
    EXPECT_EQ(idle.WorkerCount(), 0u) << "workers start when there is work";
}

}  // namespace
}  // namespace jk
