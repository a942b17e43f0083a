#pragma once

// Reading ahead of a walk. While the walk's thread reads songs one by one in walk order, a few
// workers read the files the walk has announced (their status, and for a file the song cache
// cannot answer, its head and tail), across folder boundaries, so that the walk's thread rarely
// waits for the disk. The walk's thread alone touches the song cache and the rows: it asks the
// cache about the files just ahead of the one it scans before any worker may take them, and a
// file the cache will answer is never opened. The workers only read files.

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "browse/FolderWalk.h"
#include "metadata/SongFileReader.h"

namespace jk {

// Reads one file on the walk's thread, with what the workers read of it (null when they read
// nothing).
using SongConsumer = std::function<void(std::string& path, const PrefetchedBytes* prefetched)>;

// The date stamp ("yyyymmddhhnnss") of the song cache slot that the file at a (trimmed) path
// would find, or nothing. Asked on the walk's thread only.
using CacheStampLookup = std::function<std::optional<std::string>(std::string_view path)>;

inline constexpr int kDefaultReadAheadThreads = 8;

class ReadAheadScanner final : public SongScanner {
public:
    // `filterMode` decides which files are worth reading ahead (the song scan applies it again).
    // With `threads` at 0 every file is read on the walk's thread. No worker outlives this
    // object.
    ReadAheadScanner(int filterMode, SongConsumer consumer, CacheStampLookup cacheStamp,
                     int threads = kDefaultReadAheadThreads);
    ~ReadAheadScanner() override;
    ReadAheadScanner(const ReadAheadScanner&) = delete;
    ReadAheadScanner& operator=(const ReadAheadScanner&) = delete;

    std::size_t LookAhead() const override { return m_workers.empty() ? 0 : m_window; }
    void Announce(std::string path) override;
    void ScanNext() override;
    void DropAnnounced() override;

    std::size_t WorkerCount() const { return m_workers.size(); }

private:
    // Unstamped: announced, waiting for the walk's thread to ask the cache about it; Pending:
    // free for a worker; Claimed: a worker reads it; Ready: belongs to the walk's thread.
    enum class SlotState : unsigned char { Unstamped, Pending, Claimed, Ready };

    // A whole folder is announced at once, so a slot stays small until a worker fills it.
    struct Slot {
        std::string path;
        std::string cachedStamp;  // the stamp of the cache slot the file would hit, or empty
        SlotState state = SlotState::Pending;
        std::unique_ptr<PrefetchedBytes> bytes;  // what a worker read, or null
    };

    void WorkerLoop();
    void StampAhead();
    static void Prefetch(Slot& slot);
    std::size_t ClaimableLocked() const;
    void WakeWorkersLocked(bool walkStarved);

    int m_filterMode;
    SongConsumer m_consumer;
    CacheStampLookup m_cacheStamp;
    std::size_t m_window = 0;

    std::mutex m_mutex;
    std::condition_variable m_workCv;   // workers wait here for files to read
    std::condition_variable m_readyCv;  // the walk's thread waits here for a file under way
    // Announced files not yet scanned; a deque keeps each slot in place while others come and
    // go, so a worker may fill its slot outside the lock. Positions count from the first file
    // ever announced: m_slots.front() is position m_front.
    std::deque<Slot> m_slots;
    std::size_t m_front = 0;
    std::size_t m_stamped = 0;  // slots before this position need no more word from the cache
    std::size_t m_nextClaim = 0;
    std::size_t m_inFlight = 0;
    std::size_t m_idleWorkers = 0;
    bool m_walkWaiting = false;
    bool m_stop = false;
    std::vector<std::thread> m_workers;
    std::vector<Slot*> m_toStamp;
};

}  // namespace jk
