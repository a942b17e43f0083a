#pragma once

// The read-ahead as it stood before ReadAhead.h, kept for one measurement beside it. While the
// walk's thread reads songs one by one in walk order, a worker looks at the files just ahead of it:
// their status, and for a file the song cache cannot answer, the head and tail the song reader
// wants. The walk's thread never sits idle while there is such work: when its next file is not
// ready it takes that file itself, or helps with the files behind it until the worker is done. A
// file whose bytes are not all in memory is left to the workers, more of which wake while files
// keep the disk busy, so that many are under way at once. The walk's thread alone touches the song
// cache and the rows: it asks the cache about the files ahead before anyone may take them, and a
// file the cache will answer is never opened.

#include <atomic>
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

#include "listing/ReadAhead.h"
#include "listing/SongScanner.h"
#include "metadata/SongFileReader.h"
#include "util/FileIo.h"

namespace jk {

class IntricateReadAheadScanner final : public SongScanner {
public:
    // `filterMode` decides which files are worth reading ahead (the song scan applies it again).
    // With `threads` at 0 nothing is read ahead: each file is read when its turn comes. Workers,
    // up to `threads`, start when there is work for them; none outlives this object.
    IntricateReadAheadScanner(int filterMode, SongConsumer consumer, CacheStampLookup cacheStamp,
                              int threads = kDefaultReadAheadThreads);
    ~IntricateReadAheadScanner() override;
    IntricateReadAheadScanner(const IntricateReadAheadScanner&) = delete;
    IntricateReadAheadScanner& operator=(const IntricateReadAheadScanner&) = delete;

    std::size_t LookAhead() const override { return m_window; }
    void Announce(std::string path) override;
    void ScanNext() override;
    void DropAnnounced() override;

    // The workers started so far.
    std::size_t WorkerCount() const;

private:
    enum class SlotState : unsigned char {
        Unstamped,  // announced; the walk's thread has not asked the cache about it yet
        Pending,    // free for whoever comes to it first
        Claimed,    // being read, by a worker or by the walk's thread
        Ready,      // read ahead (or nothing to read); belongs to the walk's thread
    };

    // Slots stay in place in their deque while others come and go, so whoever claimed one may
    // fill it outside the lock.
    struct Slot {
        std::string path;
        std::string cachedStamp;                 // of the cache slot it would hit, or empty
        std::unique_ptr<PrefetchedBytes> bytes;  // null when nothing is to be read ahead
        ReadFile file;  // open while bytes asked of the disk are on their way
        std::size_t position = 0;
        std::atomic<SlotState> state = SlotState::Unstamped;
        bool onItsWay = false;  // ready, but some of its bytes are still coming from the disk
        bool mustWait = false;  // its file system can't tell what memory holds: a worker waits
    };

    enum class Wait : bool { ForDisk, Never };
    // How far a read ahead got: all there; the rest asked of the disk; or the file system can't
    // tell what memory holds, so only waiting for the disk will do.
    enum class Outcome : unsigned char { Done, OnItsWay, Unknown };

    void StampAhead(bool needFront);
    Slot* ClaimLocked(bool fromMemoryOnly);
    std::size_t ClaimableLocked() const;
    void WakeWorkersLocked(std::size_t wanted);
    void WorkerLoop();
    // The folder a thread looked at last, held open.
    class HeldFolder {
    public:
        struct Place {
            const FolderHandle* folder;  // null: `name` is the whole path
            std::string name;
        };
        Place Of(std::string_view path);
        FileDates& Dates() { return m_dates; }

    private:
        FileDates m_dates;
        std::string m_path;
        FolderHandle m_handle;
    };

    Outcome ReadAheadOf(Slot& slot, Wait wait, HeldFolder& folder);
    void SettleLocked(Slot& slot, Outcome outcome);
    void ReleaseFile(Slot& slot);
    bool HelpLocked(std::unique_lock<std::mutex>& lock);
    void MakeFrontReady(Slot& front, std::unique_lock<std::mutex>& lock);
    std::unique_ptr<PrefetchedBytes> SpareBytes();
    void KeepSpare(std::unique_ptr<PrefetchedBytes> bytes);

    int m_filterMode;
    SongConsumer m_consumer;
    CacheStampLookup m_cacheStamp;
    std::size_t m_threads;
    std::size_t m_window;  // how many files ahead of the walk's thread are looked at

    // The walk's thread only.
    HeldFolder m_walkFolder;
    std::vector<Slot*> m_toStamp;
    std::vector<std::unique_ptr<PrefetchedBytes>> m_spare;
    std::size_t m_largeSpares = 0;  // spares that grew past the usual size

    // Positions count the files announced since the start: m_slots.front() is m_front.
    mutable std::mutex m_mutex;
    std::condition_variable m_workCv;   // workers wait here for files to read
    std::condition_variable m_readyCv;  // the walk's thread waits here for a file under way
    std::deque<Slot> m_slots;           // announced and not yet scanned, in walk order
    std::size_t m_front = 0;
    std::size_t m_stamped = 0;    // slots before this position are stamped
    std::size_t m_nextClaim = 0;  // no slot before this position is Pending
    std::size_t m_reading = 0;    // slots that workers read now
    std::size_t m_idleWorkers = 0;
    std::atomic<std::size_t> m_batches = 0;  // batches stamped so far
    std::atomic<std::size_t> m_heldFiles = 0;
    bool m_walkWaiting = false;
    bool m_stop = false;
    std::vector<std::thread> m_workers;
};

}  // namespace jk
