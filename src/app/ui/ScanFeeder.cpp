#include "app/ui/ScanFeeder.h"

#include <algorithm>
#include <iterator>
#include <system_error>

#include "playback/ui/PlaylistModel.h"

namespace jk {
namespace {

// Lists shorter than this grow in place: that costs less than a slice.
constexpr std::size_t kRoomFromRows = 16384;

}  // namespace

ScanFeeder::ScanFeeder(PlaylistModel& pane, std::function<void(const ScanProgress&)> show,
                       std::function<bool()> aborted)
    : m_pane(pane), m_show(std::move(show)), m_aborted(std::move(aborted)) {
    m_sinceRows.start();
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
    // After the turn, so that the insertion and the scan share the next slice.
    if (m_sinceRows.elapsed() >= kRowsEveryMs) {
        Flush();
    }
    return !(m_aborted && m_aborted());
}

void ScanFeeder::Flush() {
    m_sinceRows.restart();
    if (m_batch.empty()) {
        return;
    }
    MakeRoom(m_pane.Rows().size() + m_batch.size());
    RowList rows = std::move(m_batch);
    m_batch.clear();
    m_pane.AppendRows(std::move(rows));
}

void ScanFeeder::MakeRoom(std::size_t rows) {
    RowList& live = m_pane.Rows();
    if (rows > live.capacity() && m_room.valid()) {
        // The rows move into the room made ready (no view sees a change: the same rows in
        // the same order), and the old block goes.
        RowList room = m_room.get();
        if (room.capacity() >= rows) {
            room.insert(room.end(), std::make_move_iterator(live.begin()),
                        std::make_move_iterator(live.end()));
            live.swap(room);
        }
    }
    if (!m_room.valid() && rows >= kRoomFromRows / 2 && rows > live.capacity() / 2) {
        // Room for twice as many as the list has room for: default rows touch every page of
        // the block on that thread, and emptied, they leave it ready.
        const std::size_t wanted = std::max(rows, live.capacity()) * 2;
        try {
            m_room = std::async(std::launch::async, [wanted] {
                RowList room(wanted);
                room.clear();
                return room;
            });
        } catch (const std::system_error&) {
            // No thread to be had: the list grows in place.
        }
    }
}

}  // namespace jk
