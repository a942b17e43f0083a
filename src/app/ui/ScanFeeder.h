#pragma once

// Keeps a pane alive while a scan fills it on the window's thread: the scan adds its rows to a
// batch and runs in slices, with a turn of the event loop between them (LoopTurns), so the
// window repaints and Abort can be pressed. The batch joins the pane (one insertion) only every
// quarter of a second: each insertion lays the pane out and repaints it. A long list grows into
// memory made ready on another thread ahead of time: growing it in place would stop the window
// for longer than a slice (a new block for every row, touched page by page).

#include <atomic>
#include <functional>
#include <future>

#include <QElapsedTimer>

#include "app/ui/LoopTurns.h"
#include "browse/FolderWalk.h"
#include "listing/ListRow.h"

namespace jk {

class PlaylistModel;

class ScanFeeder {
public:
    // `show` sees the progress report at each turn; `aborted` is asked after each turn.
    ScanFeeder(PlaylistModel& pane, std::function<void(const ScanProgress&)> show,
               std::function<bool()> aborted);
    ~ScanFeeder();
    ScanFeeder(const ScanFeeder&) = delete;
    ScanFeeder& operator=(const ScanFeeder&) = delete;

    // The batch the scan adds to.
    RowList& Batch() { return m_batch; }
    // The scan's progress callable: false asks it to stop.
    ScanProgressFn Progress();
    // When the scan knows how many rows it brings: room for them is made ready at once.
    void ExpectRows(std::size_t rows);
    // The rows still in the batch join the pane (waiting for their room if need be).
    void Flush();
    // The turns so far, for work that follows the scan in the same busy spell.
    LoopTurns& Turns() { return m_turns; }
    // The longest time without a turn of the event loop, in milliseconds.
    qint64 LongestGapMs() const { return m_turns.LongestGapMs(); }

    static constexpr qint64 kRowsEveryMs = 250;

private:
    bool Report(const ScanProgress& progress);
    void JoinRows(std::size_t most);
    void MakeRoom(std::size_t rows);
    bool RoomReady() const;
    bool MustWaitForRoom() const;
    void PrepareRoom(std::size_t rows);

    PlaylistModel& m_pane;
    std::function<void(const ScanProgress&)> m_show;
    std::function<bool()> m_aborted;
    RowList m_batch;
    LoopTurns m_turns;
    QElapsedTimer m_sinceRows;
    bool m_reported = false;
    // An empty list with room for more rows than the pane has, made on another thread; told
    // to stop when the scan ends before it is used.
    std::atomic<bool> m_roomWanted = true;
    std::future<RowList> m_room;
};

}  // namespace jk
