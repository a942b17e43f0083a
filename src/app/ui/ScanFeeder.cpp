#include "app/ui/ScanFeeder.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <new>
#include <system_error>

#include "playback/ui/PlaylistModel.h"

namespace jk {
namespace {

// Lists shorter than this grow in place: that costs less than a slice.
constexpr std::size_t kRoomFromRows = 8192;
// A list shorter than this grows in place rather than wait for its room at the end.
constexpr std::size_t kWaitFromRows = 65536;
// The most rows that join the pane at one turn.
constexpr std::size_t kMostRowsAtOnce = 32768;
// Room is made ready this many rows at a time, so that a scan that ends waits for no more.
constexpr std::size_t kRoomStep = 65536;

}  // namespace

ScanFeeder::ScanFeeder(PlaylistModel& pane, std::function<void(const ScanProgress&)> show,
                       std::function<bool()> aborted)
    : m_pane(pane), m_show(std::move(show)), m_aborted(std::move(aborted)) {
    m_sinceRows.start();
}

ScanFeeder::~ScanFeeder() {
    m_roomWanted = false;
}

ScanProgressFn ScanFeeder::Progress() {
    return [this](const ScanProgress& progress) { return Report(progress); };
}

bool ScanFeeder::Report(const ScanProgress& progress) {
    // The first report shows the progress at once; then one at each turn.
    if (m_reported && !m_turns.Due()) {
        return true;
    }
    m_reported = true;
    if (m_show) {
        m_show(progress);
    }
    m_turns.Turn();
    // After the turn, so that the insertion and the scan share the next slice. Rows that
    // would have to wait for their room stay in the batch till the next turn; many rows join
    // over several turns, since the views take their time over each one.
    if ((m_sinceRows.elapsed() >= kRowsEveryMs || m_batch.size() > kMostRowsAtOnce) &&
        !MustWaitForRoom()) {
        JoinRows(kMostRowsAtOnce);
    }
    return !(m_aborted && m_aborted());
}

void ScanFeeder::ExpectRows(std::size_t rows) {
    const std::size_t total = m_pane.Rows().size() + rows;
    if (!m_room.valid() && total >= kRoomFromRows && total > m_pane.Rows().capacity()) {
        PrepareRoom(total);
    }
}

bool ScanFeeder::RoomReady() const {
    return m_room.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
}

bool ScanFeeder::MustWaitForRoom() const {
    const RowList& live = m_pane.Rows();
    return live.size() + std::min(m_batch.size(), kMostRowsAtOnce) > live.capacity() &&
           m_room.valid() && !RoomReady();
}

void ScanFeeder::Flush() {
    JoinRows(m_batch.size());
}

void ScanFeeder::JoinRows(std::size_t most) {
    m_sinceRows.restart();
    if (m_batch.empty()) {
        return;
    }
    MakeRoom(m_pane.Rows().size() + std::min(most, m_batch.size()));
    // The batch keeps its room: the next rows go where these were.
    m_pane.AppendFrom(m_batch, most);
}

void ScanFeeder::MakeRoom(std::size_t rows) {
    RowList& live = m_pane.Rows();
    // A short list grows in place while its room is still being made; a long one waits for
    // the room, which costs less than growing it here would.
    if (rows > live.capacity() && m_room.valid() && (live.size() >= kWaitFromRows || RoomReady())) {
        // The rows move into the room made ready (no view sees a change: the same rows in
        // the same order), and the old block goes.
        RowList room = m_room.get();
        if (room.capacity() >= rows) {
            room.insert(room.end(), std::make_move_iterator(live.begin()),
                        std::make_move_iterator(live.end()));
            live.swap(room);
        }
    }
    if (!m_room.valid() && rows >= kRoomFromRows && rows > live.capacity() / 2) {
        // Room for twice as many as the list has room for.
        PrepareRoom(std::max(rows, live.capacity()) * 2);
    }
}

void ScanFeeder::PrepareRoom(std::size_t rows) {
    try {
        m_room = std::async(std::launch::async, [rows, wanted = &m_roomWanted] {
            // Default rows touch every page of the block on that thread; emptied, they leave
            // it ready.
            RowList room;
            try {
                room.reserve(rows);
            } catch (const std::bad_alloc&) {
                return room;  // the list grows in place, if it can
            }
            while (room.size() < rows && wanted->load()) {
                room.resize(std::min(rows, room.size() + kRoomStep));
            }
            room.clear();
            return room;
        });
    } catch (const std::system_error&) {
        // No thread to be had: the list grows in place.
    }
}

}  // namespace jk
