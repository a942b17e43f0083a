#include "browse/ReadAhead.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "browse/WalkRules.h"
#include "util/FileIo.h"
#include "util/Text.h"
#include "util/TimeHelpers.h"

namespace jk {

ReadAheadScanner::ReadAheadScanner(int filterMode, SongConsumer consumer,
                                   CacheStampLookup cacheStamp, int threads)
    : m_filterMode(filterMode),
      m_consumer(std::move(consumer)),
      m_cacheStamp(std::move(cacheStamp)) {
    const std::size_t count = static_cast<std::size_t>(std::max(threads, 0));
    m_window = std::max<std::size_t>(32, count * 8);
    m_workers.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        try {
            m_workers.emplace_back([this] { WorkerLoop(); });
        } catch (const std::system_error&) {
            break;  // fewer workers; the walk's thread reads what none of them takes
        }
    }
}

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

std::size_t ReadAheadScanner::ClaimableLocked() const {
    const std::size_t limit = std::min(m_front + std::min(m_slots.size(), m_window), m_stamped);
    return limit > m_nextClaim ? limit - m_nextClaim : 0;
}

void ReadAheadScanner::WakeWorkersLocked(bool walkStarved) {
    // Each wake-up costs a system call and a switch, so workers are woken on demand: one more
    // whenever the walk's thread finds its next file not read yet (on a cold disk that soon
    // sets them all going), and one when all sleep while a batch of files waits. On a warm disk
    // one worker keeps ahead and is woken once a batch.
    if (m_idleWorkers == 0 || ClaimableLocked() == 0) {
        return;
    }
    const bool allAsleep = m_idleWorkers == m_workers.size();
    if (walkStarved || (allAsleep && ClaimableLocked() >= m_window / 4)) {
        m_workCv.notify_one();
    }
}

void ReadAheadScanner::Announce(std::string path) {
    Slot slot;
    slot.path = std::move(path);
    // A refused file (in a recycle bin or a trash) may be read ahead for nothing: rare, and
    // cheaper than asking every path.
    if (m_workers.empty() || !PassesFilter(slot.path, m_filterMode)) {
        slot.state = SlotState::Ready;  // nothing to read ahead
    } else if (m_cacheStamp) {
        slot.state = SlotState::Unstamped;
    }
    std::lock_guard lock(m_mutex);
    m_slots.push_back(std::move(slot));
    if (!m_cacheStamp) {
        m_stamped = m_front + m_slots.size();
    }
    WakeWorkersLocked(false);
}

void ReadAheadScanner::StampAhead() {
    // Announcing may happen on another thread, but the cache is asked here, on the walk's.
    std::size_t end = 0;
    {
        std::lock_guard lock(m_mutex);
        end = m_front + std::min(m_slots.size(), m_window);
        if (end <= m_stamped) {
            return;
        }
        m_toStamp.clear();
        for (std::size_t i = std::max(m_stamped, m_front); i < end; ++i) {
            Slot& slot = m_slots[i - m_front];
            if (slot.state == SlotState::Unstamped) {
                m_toStamp.push_back(&slot);
            }
        }
    }
    for (Slot* slot : m_toStamp) {
        if (std::optional<std::string> stamp = m_cacheStamp(Trim(slot->path))) {
            slot->cachedStamp = std::move(*stamp);
        }
    }
    std::lock_guard lock(m_mutex);
    for (Slot* slot : m_toStamp) {
        slot->state = SlotState::Pending;
    }
    m_stamped = end;
    WakeWorkersLocked(false);
}

void ReadAheadScanner::Prefetch(Slot& slot) {
    // The song reader trims the path it is given; read the file it will look at.
    const std::string readPath(Trim(slot.path));
    auto bytes = std::make_unique<PrefetchedBytes>();
    const FileStatus status = StatPath(readPath);
    const bool cacheHit = !slot.cachedStamp.empty() && status.exists &&
                          FormatStamp14(status.modifiedSeconds) == slot.cachedStamp;
    if (!status.exists || !status.isRegular || cacheHit) {
        bytes->status = status;  // nothing to read: the reader needs no open of its own
    } else if (!PrefetchSongBytes(readPath, *bytes)) {
        *bytes = PrefetchedBytes{};
        bytes->status = status;
    }
    slot.bytes = std::move(bytes);
}

void ReadAheadScanner::WorkerLoop() {
    std::unique_lock lock(m_mutex);
    for (;;) {
        while (!m_stop && ClaimableLocked() == 0) {
            ++m_idleWorkers;
            m_workCv.wait(lock);
            --m_idleWorkers;
        }
        if (m_stop) {
            return;
        }
        Slot& slot = m_slots[m_nextClaim++ - m_front];
        if (slot.state != SlotState::Pending) {
            continue;  // nothing to read, or the walk's thread took it itself
        }
        slot.state = SlotState::Claimed;
        ++m_inFlight;
        lock.unlock();
        Prefetch(slot);
        lock.lock();
        slot.state = SlotState::Ready;
        --m_inFlight;
        if (m_walkWaiting) {
            m_readyCv.notify_all();
        }
    }
}

void ReadAheadScanner::ScanNext() {
    if (m_cacheStamp && !m_workers.empty()) {
        StampAhead();
    }
    Slot* slot = nullptr;
    {
        std::unique_lock lock(m_mutex);
        if (m_slots.empty()) {
            return;
        }
        slot = &m_slots.front();
        if (slot->state == SlotState::Pending || slot->state == SlotState::Unstamped) {
            // No worker has come to it yet: read it here rather than wait.
            slot->state = SlotState::Ready;
            WakeWorkersLocked(true);
        } else if (slot->state == SlotState::Claimed) {
            WakeWorkersLocked(true);
        }
        while (slot->state == SlotState::Claimed) {
            m_walkWaiting = true;
            m_readyCv.wait(lock);
        }
        m_walkWaiting = false;
    }
    // A ready slot belongs to the walk's thread alone, and stays in place while others are
    // added behind it.
    m_consumer(slot->path, slot->bytes.get());
    std::lock_guard lock(m_mutex);
    m_slots.pop_front();
    ++m_front;
    m_nextClaim = std::max(m_nextClaim, m_front);
    m_stamped = std::max(m_stamped, m_front);
    WakeWorkersLocked(false);
}

void ReadAheadScanner::DropAnnounced() {
    std::unique_lock lock(m_mutex);
    m_nextClaim = m_front + m_slots.size();  // no more claims
    while (m_inFlight > 0) {
        m_walkWaiting = true;
        m_readyCv.wait(lock);
    }
    m_walkWaiting = false;
    m_front += m_slots.size();
    m_nextClaim = m_front;
    m_stamped = std::max(m_stamped, m_front);
    m_slots.clear();
}

}  // namespace jk
