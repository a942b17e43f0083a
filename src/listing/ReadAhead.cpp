#include "listing/ReadAhead.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "listing/WalkRules.h"
#include "util/Text.h"

namespace jk {
namespace {

// How far ahead of the walk's thread files are looked at, per worker that may run.
constexpr std::size_t kLookAheadPerWorker = 32;
constexpr std::size_t kSmallestLookAhead = 32;
// The cache is asked about files ahead in batches.
constexpr std::size_t kBatch = 16;
// A worker is woken for every so many files waiting to be read. Files that come from the disk
// keep a worker waiting for each: many run, so that the disk has many reads to order. Files in
// memory are read in microseconds: one worker reads dozens while the walk's thread uses a few,
// and waking more (or waking one more often) would cost a switch each and scatter the files of a
// folder over all of them.
constexpr std::size_t kFilesPerWorkerFromDisk = 16;
constexpr std::size_t kFilesPerWorkerFromMemory = 64;
// One worker reads files in memory faster than the walk's thread uses them; a second would only
// take turns with the first and the walk's thread for the processor.
constexpr std::size_t kMostWorkersFromMemory = 1;
// While files come from the disk, the disk is told of the files this far ahead of the claim
// position, a few at a time by whichever worker is about to read: with eight workers each
// waiting for one file there are only a few reads in flight, which a disk that serves many at
// once in the time of one turns into idle time. Told too far ahead, blocks would come long
// before they are read and wait in memory.
constexpr std::size_t kExpectAhead = 64;
constexpr std::size_t kExpectBatch = 8;
// Buffers kept for the next files are of the usual size (a head block, or a small tag and the
// bytes behind it); one that grew past this is let go.
constexpr std::size_t kKeptBufferBytes = std::size_t{32} * 1024;

}  // namespace

ReadAheadScanner::ReadAheadScanner(int filterMode, SongConsumer consumer,
                                   CacheStampLookup cacheStamp, int threads, AheadFilesMaker files)
    : m_filterMode(filterMode),
      m_consumer(std::move(consumer)),
      m_cacheStamp(std::move(cacheStamp)),
      m_files(std::move(files)),
      m_threads(static_cast<std::size_t>(std::max(threads, 0))),
      m_window(m_threads == 0 ? 0 : std::max(kSmallestLookAhead, m_threads * kLookAheadPerWorker)),
      m_walkReader(MakeReader()) {}

ReadAheadScanner::~ReadAheadScanner() {
    {
        std::lock_guard lock(m_mutex);
        m_stop = true;
    }
    m_workCv.notify_all();
    for (std::thread& worker : m_workers) {
        worker.join();
    }
}

ReadAheadScanner::Reader ReadAheadScanner::MakeReader() const {
    Reader reader;
    reader.files = m_files ? m_files() : std::make_unique<DiskAheadFiles>();
    return reader;
}

std::size_t ReadAheadScanner::WorkerCount() const {
    std::lock_guard lock(m_mutex);
    return m_workers.size();
}

void ReadAheadScanner::Announce(std::string path) {
    std::lock_guard lock(m_mutex);
    Slot& slot = m_slots.emplace_back();
    slot.path = std::move(path);
    if (m_window == 0) {
        slot.state = SlotState::Ready;  // nothing is read ahead
    }
    m_announced.store(m_front + m_slots.size(), std::memory_order_release);
}

std::unique_ptr<PrefetchedBytes> ReadAheadScanner::SpareBytes() {
    if (m_spare.empty()) {
        return std::make_unique<PrefetchedBytes>();
    }
    std::unique_ptr<PrefetchedBytes> bytes = std::move(m_spare.back());
    m_spare.pop_back();
    return bytes;
}

void ReadAheadScanner::KeepSpare(std::unique_ptr<PrefetchedBytes> bytes) {
    // Buffers serve file after file, so the look-ahead allocates nothing once it runs.
    if (bytes && m_spare.size() < m_window && bytes->head.capacity() <= kKeptBufferBytes) {
        m_spare.push_back(std::move(bytes));
    }
}

// Reads ahead what the song reader will want of a file: its status, and unless the cache will
// answer, its head and tail.
bool ReadAheadScanner::ReadAheadOf(Slot& slot, Reader& reader) {
    PrefetchedBytes& bytes = *slot.bytes;
    // The song reader trims the path it is given; look at the file it will look at.
    const std::string_view path = Trim(slot.path);
    if (!slot.cachedStamp.empty()) {
        const FileStatus status = reader.files->Stat(path);
        if (!status.exists || !status.isRegular ||
            reader.dates.Stamp(status.modifiedSeconds) == slot.cachedStamp) {
            // The cache will answer, or there is nothing to read.
            bytes.status = status;
            bytes.head.clear();
            bytes.tail.clear();
            bytes.tailOffset = 0;
            return true;
        }
    }
    const bool inMemory = reader.files->ReadHeadAndTail(path, &slot.opened, bytes);
    slot.opened.file = ReadFile();
    return inMemory;
}

void ReadAheadScanner::WakeWorkersLocked() {
    const std::size_t claimFrom = std::max(m_nextClaim, m_front);
    const std::size_t waiting = m_stamped > claimFrom ? m_stamped - claimFrom : 0;
    const std::size_t perWorker =
        m_fromDisk ? kFilesPerWorkerFromDisk
                   : std::min(kFilesPerWorkerFromMemory, std::max(m_window / 2, kBatch));
    const std::size_t most = m_fromDisk ? m_threads : std::min(m_threads, kMostWorkersFromMemory);
    const std::size_t wanted = waiting < perWorker ? 0 : std::min(most, waiting / perWorker);
    const std::size_t asleep = m_idle - m_wakes;  // and not yet woken
    std::size_t running = m_workers.size() - asleep;
    for (; running < wanted && m_wakes < m_idle; ++running) {
        ++m_wakes;
        m_workCv.notify_one();
    }
    // Workers start when there is work for them: a walk that reads nothing ahead has none.
    for (; running < wanted; ++running) {
        try {
            m_workers.emplace_back([this] { WorkerLoop(); });
        } catch (const std::system_error&) {
            m_threads = m_workers.size();  // the walk's thread reads what no worker takes
            return;
        }
    }
}

void ReadAheadScanner::StampAhead(bool needFront) {
    // The cache is asked on the walk's thread; announcing may happen on another. Only the walk's
    // thread moves the front and the stamped end, so it looks at them without the lock to see
    // whether a batch is due, as it does before every file.
    if (!needFront) {
        const std::size_t end =
            std::min(m_announced.load(std::memory_order_acquire), m_front + m_window);
        if (end <= m_stamped || end - m_stamped < kBatch) {
            return;
        }
    }
    std::size_t stampedEnd = 0;
    {
        std::lock_guard lock(m_mutex);
        const std::size_t end = m_front + std::min(m_slots.size(), m_window);
        if (end <= m_stamped || (!needFront && end - m_stamped < kBatch)) {
            return;
        }
        m_toStamp.clear();
        for (std::size_t position = std::max(m_stamped, m_front); position < end; ++position) {
            m_toStamp.push_back(&m_slots[position - m_front]);
        }
        stampedEnd = end;
    }
    for (Slot* slot : m_toStamp) {
        // A file the filter turns away is not worth reading ahead. A refused one (in a recycle
        // bin or a trash) may be read for nothing: rare, and cheaper than asking every path.
        if (PassesFilter(slot->path, m_filterMode)) {
            slot->bytes = SpareBytes();
            if (m_cacheStamp) {
                slot->cachedStamp.assign(m_cacheStamp(Trim(slot->path)));
            }
        }
    }
    {
        std::lock_guard lock(m_mutex);
        for (Slot* slot : m_toStamp) {
            slot->state = slot->bytes ? SlotState::Pending : SlotState::Ready;
        }
        // Only now may a worker look at them: one that passed them over while they were still
        // unstamped would move the claim position beyond them for good, and the walk's thread
        // would read the whole batch itself.
        m_stamped = stampedEnd;
        WakeWorkersLocked();
    }
}

// The first Pending slot from the claim position on, now Claimed; null when there is none.
ReadAheadScanner::Slot* ReadAheadScanner::ClaimLocked() {
    m_nextClaim = std::max(m_nextClaim, m_front);
    for (; m_nextClaim < m_stamped; ++m_nextClaim) {
        Slot& slot = m_slots[m_nextClaim - m_front];
        if (slot.state == SlotState::Pending) {
            slot.state = SlotState::Claimed;
            ++m_nextClaim;
            return &slot;
        }
    }
    return nullptr;
}

void ReadAheadScanner::ExpectAheadLocked(std::unique_lock<std::mutex>& lock, Reader& reader) {
    const std::size_t claimFrom = std::max(m_nextClaim, m_front);
    const std::size_t from = std::max(m_nextExpect, claimFrom);
    const std::size_t end = std::min({m_stamped, claimFrom + kExpectAhead, from + kExpectBatch});
    if (from >= end) {
        return;
    }
    // The paths are copied: a slot may be read and scanned while its file is expected.
    reader.expectedCount = 0;
    for (std::size_t position = from; position < end; ++position) {
        const Slot& slot = m_slots[position - m_front];
        // A file the cache will answer is only looked at, and a file being read is on its way.
        if (slot.state == SlotState::Pending && slot.cachedStamp.empty()) {
            if (reader.expected.size() <= reader.expectedCount) {
                reader.expected.emplace_back();
            }
            Reader::Expected& expected = reader.expected[reader.expectedCount++];
            expected.position = position;
            expected.path.assign(Trim(slot.path));
        }
    }
    m_nextExpect = end;
    lock.unlock();
    for (std::size_t i = 0; i < reader.expectedCount; ++i) {
        reader.files->Expect(reader.expected[i].path, reader.expected[i].opened);
    }
    lock.lock();
    // A file still waiting for its reader takes the file opened for it; one that has been taken
    // meanwhile is read through a file of its own, and this one is closed when the entry is
    // next used.
    for (std::size_t i = 0; i < reader.expectedCount; ++i) {
        Reader::Expected& expected = reader.expected[i];
        if (expected.position >= m_front && expected.position < m_front + m_slots.size()) {
            Slot& slot = m_slots[expected.position - m_front];
            if (slot.state == SlotState::Pending && !slot.opened.file.IsOpen()) {
                std::swap(slot.opened, expected.opened);
            }
        }
    }
}

void ReadAheadScanner::WorkerLoop() {
    Reader reader = MakeReader();
    std::unique_lock lock(m_mutex);
    for (;;) {
        if (m_stop) {
            return;
        }
        if (m_fromDisk) {
            // Files in memory are read in microseconds: telling of them would only add calls.
            ExpectAheadLocked(lock, reader);
        }
        Slot* slot = ClaimLocked();
        if (slot == nullptr) {
            // Asleep until the walk's thread has work for one more worker.
            ++m_idle;
            m_workCv.wait(lock, [this] { return m_stop || m_wakes > 0; });
            --m_idle;
            if (m_wakes > 0) {
                --m_wakes;
            }
            continue;
        }
        ++m_reading;
        lock.unlock();
        const bool inMemory = ReadAheadOf(*slot, reader);
        lock.lock();
        m_fromDisk = !inMemory;
        slot->state = SlotState::Ready;
        --m_reading;
        if (m_walkWaiting) {
            m_readyCv.notify_all();
        }
    }
}

void ReadAheadScanner::ScanNext() {
    if (m_window > 0) {
        StampAhead(false);
    }
    Slot* front = nullptr;
    {
        std::unique_lock lock(m_mutex);
        PopScannedLocked();
        if (m_slots.empty()) {
            return;
        }
        front = &m_slots.front();
        if (front->state == SlotState::Unstamped) {
            lock.unlock();
            StampAhead(true);
            lock.lock();
        }
        if (front->state == SlotState::Pending) {
            // No worker has taken it: the walk's thread reads it rather than wait.
            front->state = SlotState::Claimed;
            lock.unlock();
            const bool inMemory = ReadAheadOf(*front, m_walkReader);
            lock.lock();
            m_fromDisk = !inMemory;
            front->state = SlotState::Ready;
        }
        // A worker reads it. While files come from memory, the walk's thread reads files behind
        // it that no one has taken rather than sleep: a worker that the system has set aside for
        // other programs would otherwise hold the walk up for the rest of its turn.
        while (front->state == SlotState::Claimed && !m_fromDisk) {
            Slot* other = ClaimLocked();
            if (other == nullptr) {
                break;
            }
            lock.unlock();
            const bool inMemory = ReadAheadOf(*other, m_walkReader);
            lock.lock();
            m_fromDisk = !inMemory;
            other->state = SlotState::Ready;
        }
        m_walkWaiting = true;
        m_readyCv.wait(lock, [front] { return front->state == SlotState::Ready; });
        m_walkWaiting = false;
    }
    // The front slot belongs to the walk's thread now, and stays in place while others are
    // announced behind it.
    m_consumer(front->path, front->bytes.get());
    KeepSpare(std::move(front->bytes));
    // It leaves the queue when the lock is next taken, so a file costs the walk's thread one.
    m_frontScanned = true;
}

void ReadAheadScanner::PopScannedLocked() {
    if (m_frontScanned) {
        m_frontScanned = false;
        m_slots.pop_front();
        ++m_front;
        m_stamped = std::max(m_stamped, m_front);
    }
}

void ReadAheadScanner::DropAnnounced() {
    std::unique_lock lock(m_mutex);
    // No worker takes another of these; those under way are waited for.
    m_nextClaim = m_front + m_slots.size();
    m_stamped = std::max(m_stamped, m_nextClaim);
    m_walkWaiting = true;
    m_readyCv.wait(lock, [this] { return m_reading == 0; });
    m_walkWaiting = false;
    for (Slot& slot : m_slots) {
        KeepSpare(std::move(slot.bytes));
    }
    m_front += m_slots.size();
    m_slots.clear();
    m_frontScanned = false;
    m_walkReader = MakeReader();  // lets go of the folder it held
}

}  // namespace jk
