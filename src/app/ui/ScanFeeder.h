#pragma once

// Keeps a pane alive while a scan fills it on the window's thread: the scan adds its rows to a
// batch, and at most every 50 ms the batch joins the pane (one insertion) and the event loop
// runs, so the window repaints and Abort can be pressed. The longest gap between two turns of
// the event loop is kept for the benchmarks.

#include <functional>

#include <QElapsedTimer>

#include "browse/FolderWalk.h"
#include "listing/ListRow.h"

namespace jk {

class PlaylistModel;

class ScanFeeder {
public:
    // `show` sees every progress report; `aborted` is asked at each turn of the loop.
    ScanFeeder(PlaylistModel& pane, std::function<void(const ScanProgress&)> show,
               std::function<bool()> aborted);

    // The batch the scan adds to.
    RowList& Batch() { return m_batch; }
    // The scan's progress callable: false asks it to stop.
    ScanProgressFn Progress();
    // The rows still in the batch join the pane.
    void Flush();
    // The longest time without a turn of the event loop, in milliseconds.
    qint64 LongestGapMs() const { return m_longestGap; }

    static constexpr qint64 kYieldEveryMs = 50;

private:
    bool Report(const ScanProgress& progress);

    PlaylistModel& m_pane;
    std::function<void(const ScanProgress&)> m_show;
    std::function<bool()> m_aborted;
    RowList m_batch;
    QElapsedTimer m_sinceYield;
    qint64 m_longestGap = 0;
    bool m_reported = false;
};

}  // namespace jk
