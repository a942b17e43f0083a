#pragma once

// Long work on the window's thread, kept from freezing the window: the work runs in slices of
// about 40 ms and the event loop turns between them, so the window repaints, takes keys and
// clicks, and Abort can be pressed. The longest time without a turn is kept for the
// benchmarks; a turn itself counts towards it, painting included.

#include <QElapsedTimer>

#include "util/FileIo.h"

namespace jk {

struct Session;

class LoopTurns {
public:
    LoopTurns() { m_since.start(); }

    // True once the work has had its slice since the last turn.
    bool Due() const { return m_since.elapsed() >= kSliceMs; }
    // Runs the events that wait, then starts the next slice.
    void Turn();
    qint64 LongestGapMs() const { return m_longestGap; }

    // A slice of work, short enough that the slice, the painting and the events that follow
    // stay well under a tenth of a second.
    static constexpr qint64 kSliceMs = 40;

private:
    QElapsedTimer m_since;
    qint64 m_longestGap = 0;
};

// The session's song cache saved as SaveSessionCache saves it, a slice at a time with the
// event loop turning between slices. The caller keeps the window from changing the cache
// meanwhile (its busy state); should something change it all the same, the save starts over
// as one piece.
IoResult SaveSessionCacheInTurns(Session& session, LoopTurns& turns);

}  // namespace jk
