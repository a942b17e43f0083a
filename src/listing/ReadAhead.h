#pragma once

// Reading ahead of a walk. While the walk's thread reads songs one by one in walk order, a fixed
// pool of workers looks at the files just ahead of it, in the same order: their status, and for
// a file the song cache cannot answer, the head and tail blocks the song reader wants. The
// files ahead form a bounded queue that the walk's thread takes from the front, waiting when
// its file is still being read, and reading it itself when no worker has taken it yet. The
// walk's thread alone touches the song cache: it asks the cache about the files ahead before
// any worker takes them, so a file the cache will answer is never opened. While files come from
// the disk, the workers also tell the disk of the files a little further ahead before they read
// their own, so that the disk has many small reads to order at once rather than one per worker.

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "listing/AheadFiles.h"
#include "listing/SongScanner.h"
#include "metadata/SongFileReader.h"
#include "util/TimeHelpers.h"

namespace jk {

// Reads one file on the walk's thread, with what was read of it ahead (null when nothing was).
using SongConsumer = std::function<void(std::string& path, const PrefetchedBytes* prefetched)>;

// The date stamp ("yyyymmddhhnnss") of the song cache slot that the file at a (trimmed) path
// would find, "" for none. Asked on the walk's thread only, in walk order.
using CacheStampLookup = std::function<std::string_view(std::string_view path)>;

inline constexpr int kDefaultReadAheadThreads = 8;

class ReadAheadScanner final : public SongScanner {
public:
    // `filterMode` decides which files are worth reading ahead (the song scan applies it again).
    // With `threads` at 0 nothing is read ahead: each file is read when its turn comes. The
    // workers start when there is work for them; none outlives this object. `files` makes the
    // file source of each thread (the file system's when empty).
    ReadAheadScanner(int filterMode, SongConsumer consumer, CacheStampLookup cacheStamp,
                     int threads = kDefaultReadAheadThreads, AheadFilesMaker files = {});
    ~ReadAheadScanner() override;
    ReadAheadScanner(const ReadAheadScanner&) = delete;
    ReadAheadScanner& operator=(const ReadAheadScanner&) = delete;

    std::size_t LookAhead() const override { return m_window; }
    void Announce(std::string path) override;
    void ScanNext() override;
    void DropAnnounced() override;

    // The workers started so far.
    std::size_t WorkerCount() const;

private:
    enum class SlotState : unsigned char {
        Unstamped,  // announced; the walk's thread has not asked the cache about it yet
        Pending,    // waits for a worker (or the walk's thread)
        Claimed,    // being read
        Ready,      // read ahead, or nothing to read
    };

    // Slots stay in place in their deque while others come and go, so whoever claimed one
    // fills it outside the lock.
    struct Slot {
        std::string path;
        std::string cachedStamp;                 // of the cache slot it would hit, or empty
        std::unique_ptr<PrefetchedBytes> bytes;  // null when nothing is to be read ahead
        OpenedAhead opened;                      // the file, when the disk was told of it
        SlotState state = SlotState::Unstamped;
    };

    // What one thread reads through.
    struct Reader {
        std::unique_ptr<AheadFiles> files;
        FileDates dates;
        // The files to tell the disk of next: their positions, paths, and the files opened.
        struct Expected {
            std::size_t position = 0;
            std::string path;
            OpenedAhead opened;
        };
        std::vector<Expected> expected;
        std::size_t expectedCount = 0;
    };

    Reader MakeReader() const;
    void StampAhead(bool needFront);
    // True when nothing had to come from the disk.
    bool ReadAheadOf(Slot& slot, Reader& reader);
    Slot* ClaimLocked();
    // Tells the disk of a few files ahead of the claim position that no one has told it of.
    void ExpectAheadLocked(std::unique_lock<std::mutex>& lock, Reader& reader);
    void WakeWorkersLocked();
    void PopScannedLocked();
    void WorkerLoop();
    std::unique_ptr<PrefetchedBytes> SpareBytes();
    void KeepSpare(std::unique_ptr<PrefetchedBytes> bytes);

    int m_filterMode;
    SongConsumer m_consumer;
    CacheStampLookup m_cacheStamp;
    AheadFilesMaker m_files;
    std::size_t m_threads;
    std::size_t m_window;  // how many files ahead of the walk's thread are looked at

    // The walk's thread only.
    Reader m_walkReader;
    std::vector<Slot*> m_toStamp;
    std::vector<std::unique_ptr<PrefetchedBytes>> m_spare;
    bool m_frontScanned = false;  // the front slot was handed over and waits to be popped

    // Positions count the files announced since the start: m_slots.front() is m_front.
    mutable std::mutex m_mutex;
    std::condition_variable m_workCv;   // idle workers wait here to be woken
    std::condition_variable m_readyCv;  // the walk's thread waits here for its file
    std::deque<Slot> m_slots;           // announced and not yet scanned, in walk order
    std::size_t m_front = 0;
    std::atomic<std::size_t> m_announced = 0;  // m_front + m_slots.size(), kept by Announce
    std::size_t m_stamped = 0;                 // slots before this position are stamped
    std::size_t m_nextClaim = 0;               // no slot before this position is Pending
    std::size_t m_nextExpect = 0;              // the disk was told of files before this one
    std::size_t m_reading = 0;                 // slots that workers read now
    std::size_t m_idle = 0;                    // workers asleep for want of work
    std::size_t m_wakes = 0;                   // of those, the ones woken that have not yet got up
    bool m_walkWaiting = false;
    // The file read last had to come from the disk. A walk starts out taking its files to be in
    // memory, so that a walk over songs read lately starts only the one worker it needs; the
    // first read that must wait for the disk brings the others.
    bool m_fromDisk = false;
    bool m_stop = false;
    std::vector<std::thread> m_workers;
};

}  // namespace jk
