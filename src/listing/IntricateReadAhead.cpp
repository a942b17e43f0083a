#include "listing/IntricateReadAhead.h"

#include <algorithm>
#include <chrono>
#include <system_error>
#include <utility>

#include "listing/WalkRules.h"
#include "metadata/Id3v2Header.h"
#include "util/FileIo.h"
#include "util/Text.h"
#include "util/TimeHelpers.h"

namespace jk {
namespace {

// How far ahead of the walk's thread files are looked at, per worker that may run.
constexpr std::size_t kLookAheadPerWorker = 32;
constexpr std::size_t kSmallestLookAhead = 32;
// The cache is asked about files ahead in batches, and a sleeping worker is woken only for a
// batch: each wake-up costs a system call and a switch.
constexpr std::size_t kBatch = 16;
// A file a worker reads from memory is ready within microseconds: the walk's thread waits that
// long for it without going to sleep.
constexpr std::chrono::microseconds kShortWait{50};
// About how long the disk takes to bring a block: the walk's thread helps with other files that
// long before it waits for the bytes of its own.
constexpr std::chrono::microseconds kDiskWait{150};

// The song reader takes an ID3v2 tag and about this much behind it in its first read, up to
// its limit; a read-ahead that holds as much spares it any read of the head.
constexpr std::int64_t kBehindTagBytes = 2048;
// A larger head (a tag with a big picture) is only asked of the disk, not held.
constexpr std::int64_t kMostHeadHeld = std::int64_t{128} << 10;
// Files whose bytes are on their way from the disk stay open, up to this many.
constexpr std::size_t kMostHeldFiles = 64;
// Buffers kept for the next files: any number of the usual size, but only a few of those that
// grew for a tag with a picture, so that a window full of them doesn't pin tens of megabytes.
constexpr std::size_t kUsualBufferBytes =
    2 * kHeadBlockBytes + 2 * static_cast<std::size_t>(kBehindTagBytes);
constexpr std::size_t kKeptBufferBytes = kMostHeadHeld + 4096;
constexpr std::size_t kMostLargeSpares = 8;

std::span<std::uint8_t> Bytes(std::vector<std::uint8_t>& buffer) {
    return {buffer.data(), buffer.size()};
}

std::int64_t ReadWaiting(const ReadFile& file, std::int64_t offset, std::span<std::uint8_t> out) {
    return file.ReadAt(offset, out);
}

std::int64_t ReadInMemory(const ReadFile& file, std::int64_t offset, std::span<std::uint8_t> out) {
    return file.ReadCachedAt(offset, out);
}

// Takes the head and the tail of an open file into `bytes` as the song reader will want them,
// through `read`: ReadAt, or ReadCachedAt for what memory holds now. True when all of it was had;
// `unknown` is set when the file system could not tell what memory holds.
template <class Read>
bool TakeHeadAndTail(const ReadFile& file, PrefetchedBytes& bytes, const Read& read,
                     bool& unknown) {
    const std::int64_t size = bytes.status.size;
    const std::int64_t first = std::min<std::int64_t>(size, kHeadBlockBytes);
    bytes.head.resize(static_cast<std::size_t>(first));
    std::int64_t gotHead = read(file, 0, Bytes(bytes.head));
    unknown = gotHead < 0;
    bool complete = gotHead == first;
    if (complete) {
        const std::int64_t wanted = HeadBytesWanted(ByteView(bytes.head), size);
        const std::int64_t held = wanted;
        if (held > first) {
            bytes.head.resize(static_cast<std::size_t>(held));
            const std::int64_t more = read(file, first, Bytes(bytes.head).subspan(first));
            unknown = more < 0;
            gotHead = first + std::max<std::int64_t>(more, 0);
            complete = gotHead == held;
        }
    }
    const auto headEnd = static_cast<std::int64_t>(bytes.head.size());
    const std::int64_t tailBytes = std::min<std::int64_t>(size - headEnd, kTailBlockBytes);
    bytes.tailOffset = size - tailBytes;
    bytes.tail.resize(static_cast<std::size_t>(tailBytes));
    // The tail is asked for even when the head is missing, so that the disk reads both at once.
    const std::int64_t gotTail = read(file, bytes.tailOffset, Bytes(bytes.tail));
    unknown = unknown || gotTail < 0;
    if (!complete) {
        bytes.head.resize(static_cast<std::size_t>(std::clamp<std::int64_t>(gotHead, 0, headEnd)));
    }
    if (gotTail != tailBytes) {
        bytes.tail.clear();
        bytes.tailOffset = size;
        complete = false;
    }
    return complete;
}

}  // namespace

IntricateReadAheadScanner::IntricateReadAheadScanner(int filterMode, SongConsumer consumer,
                                                     CacheStampLookup cacheStamp, int threads)
    : m_filterMode(filterMode),
      m_consumer(std::move(consumer)),
      m_cacheStamp(std::move(cacheStamp)),
      m_threads(static_cast<std::size_t>(std::max(threads, 0))),
      m_window(m_threads == 0 ? 0 : std::max(kSmallestLookAhead, m_threads * kLookAheadPerWorker)) {
}

IntricateReadAheadScanner::~IntricateReadAheadScanner() {
    {
        std::lock_guard lock(m_mutex);
        m_stop = true;
    }
    m_workCv.notify_all();
    for (std::thread& worker : m_workers) {
        worker.join();
    }
}

std::size_t IntricateReadAheadScanner::WorkerCount() const {
    std::lock_guard lock(m_mutex);
    return m_workers.size();
}

void IntricateReadAheadScanner::Announce(std::string path) {
    std::lock_guard lock(m_mutex);
    Slot& slot = m_slots.emplace_back();
    slot.path = std::move(path);
    slot.position = m_front + m_slots.size() - 1;
    if (m_window == 0) {
        slot.state = SlotState::Ready;  // nothing is read ahead
    }
}

std::unique_ptr<PrefetchedBytes> IntricateReadAheadScanner::SpareBytes() {
    if (m_spare.empty()) {
        return std::make_unique<PrefetchedBytes>();
    }
    std::unique_ptr<PrefetchedBytes> bytes = std::move(m_spare.back());
    m_spare.pop_back();
    if (bytes->head.capacity() > kUsualBufferBytes) {
        --m_largeSpares;
    }
    return bytes;
}

void IntricateReadAheadScanner::KeepSpare(std::unique_ptr<PrefetchedBytes> bytes) {
    // Buffers serve file after file, so the look-ahead allocates nothing once it runs.
    if (!bytes || m_spare.size() >= m_window || bytes->head.capacity() > kKeptBufferBytes) {
        return;
    }
    if (bytes->head.capacity() > kUsualBufferBytes) {
        if (m_largeSpares >= kMostLargeSpares) {
            return;
        }
        ++m_largeSpares;
    }
    m_spare.push_back(std::move(bytes));
}

// Reads ahead what the song reader will want of a file: its status, and unless the cache will
// answer, its head and tail. What memory holds is taken at once. With `wait` the rest is waited
// for; without, the disk is only asked for it, and the answer says it is on its way.
// The folder of the file looked at last, held open: the files of a folder come one after the
// other, and each is then looked up by its name alone. A folder renamed while the walk is in it
// keeps giving its files under the names the walk knows them by, as its listing already did.
IntricateReadAheadScanner::HeldFolder::Place IntricateReadAheadScanner::HeldFolder::Of(
    std::string_view path) {
    const std::size_t slash = path.find_last_of('/');
    if (slash == std::string_view::npos || slash == 0) {
        return {nullptr, std::string(path)};
    }
    const std::string_view folder = path.substr(0, slash);
    if (folder != m_path || !m_handle.IsOpen()) {
        m_path.assign(folder);
        m_handle = FolderHandle(m_path);
    }
    return {m_handle.IsOpen() ? &m_handle : nullptr,
            std::string(m_handle.IsOpen() ? path.substr(slash + 1) : path)};
}

IntricateReadAheadScanner::Outcome IntricateReadAheadScanner::ReadAheadOf(Slot& slot, Wait wait,
                                                                          HeldFolder& folder) {
    PrefetchedBytes& bytes = *slot.bytes;
    bool unknown = false;
    if (slot.file.IsOpen()) {
        // Asked of the disk before, its status taken: the bytes are most likely there by now.
        TakeHeadAndTail(slot.file, bytes, ReadWaiting, unknown);
        ReleaseFile(slot);
        return Outcome::Done;
    }
    // The status alone, when nothing is to be read. (The buffers are not emptied otherwise: a
    // read fills them to their new length without clearing them first.)
    const auto statusOnly = [&bytes](const FileStatus& status) {
        bytes.status = status;
        bytes.head.clear();
        bytes.tail.clear();
        bytes.tailOffset = 0;
        return Outcome::Done;
    };
    // The song reader trims the path it is given; look at the file it will look at.
    const HeldFolder::Place place = folder.Of(Trim(slot.path));
    const auto statOf = [&place] {
        return place.folder != nullptr ? place.folder->StatAt(place.name) : StatPath(place.name);
    };
    if (!slot.cachedStamp.empty()) {
        const FileStatus status = statOf();
        if (!status.exists || !status.isRegular ||
            folder.Dates().Stamp(status.modifiedSeconds) == slot.cachedStamp) {
            return statusOnly(status);  // the cache will answer, or there is nothing to read
        }
    }
    ReadFile file =
        place.folder != nullptr ? ReadFile(*place.folder, place.name) : ReadFile(place.name);
    if (!file.IsOpen()) {
        return statusOnly(statOf());  // it may exist and refuse to be read
    }
    const FileStatus status = file.Status();
    if (!status.isRegular || status.size < kSmallestSongFile) {
        return statusOnly(status);  // the reader reads nothing of it
    }
    file.ReadsAtRandom();
    bytes.status = status;
    if (wait == Wait::ForDisk) {
        TakeHeadAndTail(file, bytes, ReadWaiting, unknown);
        return Outcome::Done;
    }
    if (TakeHeadAndTail(file, bytes, ReadInMemory, unknown)) {
        return Outcome::Done;
    }
    if (unknown) {
        return Outcome::Unknown;
    }
    // The file stays open for whoever finishes the reading, within a bound on open files.
    if (m_heldFiles.fetch_add(1, std::memory_order_relaxed) < kMostHeldFiles) {
        slot.file = std::move(file);
    } else {
        m_heldFiles.fetch_sub(1, std::memory_order_relaxed);
    }
    return Outcome::OnItsWay;
}

void IntricateReadAheadScanner::ReleaseFile(Slot& slot) {
    if (slot.file.IsOpen()) {
        slot.file = ReadFile();
        m_heldFiles.fetch_sub(1, std::memory_order_relaxed);
    }
}

std::size_t IntricateReadAheadScanner::ClaimableLocked() const {
    const std::size_t start = std::max(m_nextClaim, m_front);
    return m_stamped > start ? m_stamped - start : 0;
}

void IntricateReadAheadScanner::WakeWorkersLocked(std::size_t wanted) {
    if (m_stop) {
        return;
    }
    std::size_t woken = 0;
    for (; woken < wanted && woken < m_idleWorkers; ++woken) {
        m_workCv.notify_one();
    }
    // Workers start when there is work for them: a walk that reads nothing ahead has none.
    for (; woken < wanted && m_workers.size() < m_threads; ++woken) {
        try {
            m_workers.emplace_back([this] { WorkerLoop(); });
        } catch (const std::system_error&) {
            m_threads = m_workers.size();  // the walk's thread reads what no worker takes
        }
    }
}

void IntricateReadAheadScanner::StampAhead(bool needFront) {
    // The cache is asked on the walk's thread; announcing may happen on another.
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
        m_stamped = end;
    }
    for (Slot* slot : m_toStamp) {
        // A file the filter turns away is not worth reading ahead. A refused one (in a recycle
        // bin or a trash) may be read for nothing: rare, and cheaper than asking every path.
        if (PassesFilter(slot->path, m_filterMode)) {
            slot->bytes = SpareBytes();
            if (m_cacheStamp) {
                slot->cachedStamp = m_cacheStamp(Trim(slot->path));
            }
        }
    }
    std::lock_guard lock(m_mutex);
    for (Slot* slot : m_toStamp) {
        slot->state = slot->bytes ? SlotState::Pending : SlotState::Ready;
    }
    ++m_batches;
    // One worker keeps ahead; it is woken once a batch, not for every file.
    if (m_idleWorkers == m_workers.size() && ClaimableLocked() >= kBatch) {
        WakeWorkersLocked(1);
    }
}

// The first Pending slot from the claim position on, now Claimed; with `fromMemoryOnly`, one
// that is not known to need the disk.
IntricateReadAheadScanner::Slot* IntricateReadAheadScanner::ClaimLocked(bool fromMemoryOnly) {
    m_nextClaim = std::max(m_nextClaim, m_front);
    bool passedOver = false;  // the claim position stays at a slot passed over
    for (std::size_t position = m_nextClaim; position < m_stamped; ++position) {
        Slot& slot = m_slots[position - m_front];
        const bool free = slot.state == SlotState::Pending;
        if (free && !(fromMemoryOnly && slot.mustWait)) {
            slot.state = SlotState::Claimed;
            if (!passedOver) {
                m_nextClaim = position + 1;
            }
            return &slot;
        }
        passedOver = passedOver || free;
        if (!passedOver) {
            m_nextClaim = position + 1;
        }
    }
    return nullptr;
}

// Marks a slot read ahead as far as it went: ready, or on its way from the disk, or (where the
// file system can't tell what memory holds) back to the workers to wait for.
void IntricateReadAheadScanner::SettleLocked(Slot& slot, Outcome outcome) {
    if (outcome == Outcome::Unknown) {
        slot.state = SlotState::Pending;
        slot.mustWait = true;
        m_nextClaim = std::min(m_nextClaim, slot.position);
        WakeWorkersLocked(1);
        return;
    }
    slot.onItsWay = outcome == Outcome::OnItsWay;
    slot.state = SlotState::Ready;
}

void IntricateReadAheadScanner::WorkerLoop() {
    HeldFolder folder;
    std::unique_lock lock(m_mutex);
    for (;;) {
        Slot* slot = m_stop ? nullptr : ClaimLocked(false);
        if (slot == nullptr) {
            if (m_stop) {
                return;
            }
            // The walk's thread hands out work a batch at a time: the next batch is usually a
            // few microseconds away, and going to sleep and waking up would cost more.
            const std::size_t batches = m_batches;
            lock.unlock();
            const auto until = std::chrono::steady_clock::now() + kShortWait;
            while (m_batches.load(std::memory_order_acquire) == batches &&
                   std::chrono::steady_clock::now() < until) {
            }
            lock.lock();
            if (m_batches == batches && !m_stop) {
                ++m_idleWorkers;
                m_workCv.wait(lock);
                --m_idleWorkers;
            }
            continue;
        }
        ++m_reading;
        lock.unlock();
        Outcome outcome = Outcome::Done;
        if (slot->mustWait) {
            // Another worker goes on with the files behind this one meanwhile.
            {
                std::lock_guard wake(m_mutex);
                if (ClaimableLocked() > 0) {
                    WakeWorkersLocked(1);
                }
            }
            ReadAheadOf(*slot, Wait::ForDisk, folder);
        } else {
            outcome = ReadAheadOf(*slot, Wait::Never, folder);
        }
        lock.lock();
        SettleLocked(*slot, outcome);
        --m_reading;
        if (m_walkWaiting) {
            m_readyCv.notify_all();
        }
    }
}

// Reads from memory one file ahead of the walk that nobody has taken; false when there is none.
bool IntricateReadAheadScanner::HelpLocked(std::unique_lock<std::mutex>& lock) {
    Slot* other = ClaimLocked(true);
    if (other == nullptr) {
        return false;
    }
    lock.unlock();
    const Outcome outcome = ReadAheadOf(*other, Wait::Never, m_walkFolder);
    lock.lock();
    SettleLocked(*other, outcome);
    return true;
}

// Makes the front slot ready, its bytes all there. The walk's thread reads it itself when
// nobody has taken it; while it waits (for a worker, or for the disk to bring bytes it asked
// for), it helps with the files behind it.
void IntricateReadAheadScanner::MakeFrontReady(Slot& front, std::unique_lock<std::mutex>& lock) {
    for (;;) {
        if (m_stamped <= m_front) {
            lock.unlock();
            StampAhead(true);
            lock.lock();
            continue;
        }
        if (front.state == SlotState::Ready && !front.onItsWay) {
            return;
        }
        if (front.state == SlotState::Ready || front.state == SlotState::Pending) {
            // Nobody reads it now: the walk's thread does, helping meanwhile if it must wait.
            const bool asked = front.onItsWay;
            front.state = SlotState::Claimed;
            lock.unlock();
            // Bytes asked for a while ago are most likely there by now.
            const Outcome outcome =
                asked ? Outcome::Unknown : ReadAheadOf(front, Wait::Never, m_walkFolder);
            if (outcome != Outcome::Done) {
                lock.lock();
                const auto until = std::chrono::steady_clock::now() + kDiskWait;
                while (outcome == Outcome::OnItsWay && std::chrono::steady_clock::now() < until &&
                       HelpLocked(lock)) {
                }
                lock.unlock();
                ReadAheadOf(front, Wait::ForDisk, m_walkFolder);
            }
            lock.lock();
            front.onItsWay = false;
            front.state = SlotState::Ready;
            return;
        }
        // A worker reads it.
        if (HelpLocked(lock)) {
            continue;
        }
        lock.unlock();
        const auto until = std::chrono::steady_clock::now() + kShortWait;
        while (front.state.load(std::memory_order_acquire) == SlotState::Claimed &&
               std::chrono::steady_clock::now() < until) {
        }
        lock.lock();
        m_walkWaiting = true;
        m_readyCv.wait(lock, [&front] { return front.state != SlotState::Claimed; });
        m_walkWaiting = false;
    }
}

void IntricateReadAheadScanner::ScanNext() {
    if (m_window > 0) {
        StampAhead(false);
    }
    Slot* front = nullptr;
    {
        std::unique_lock lock(m_mutex);
        if (m_slots.empty()) {
            return;
        }
        front = &m_slots.front();
        if (m_window > 0) {
            MakeFrontReady(*front, lock);
        }
    }
    // The front slot belongs to the walk's thread now, and stays in place while others are
    // announced behind it.
    m_consumer(front->path, front->bytes.get());
    std::lock_guard lock(m_mutex);
    KeepSpare(std::move(front->bytes));
    m_slots.pop_front();
    ++m_front;
    m_stamped = std::max(m_stamped, m_front);
}

void IntricateReadAheadScanner::DropAnnounced() {
    std::unique_lock lock(m_mutex);
    // No worker takes another of these; those under way are waited for.
    m_nextClaim = m_front + m_slots.size();
    m_stamped = std::max(m_stamped, m_nextClaim);
    m_walkWaiting = true;
    m_readyCv.wait(lock, [this] { return m_reading == 0; });
    m_walkWaiting = false;
    for (Slot& slot : m_slots) {
        ReleaseFile(slot);
        KeepSpare(std::move(slot.bytes));
    }
    m_front += m_slots.size();
    m_slots.clear();
    m_walkFolder = HeldFolder();
}

}  // namespace jk
