#include "app/ui/LoopTurns.h"

#include <algorithm>
#include <chrono>

#include <QCoreApplication>

#include "app/Session.h"
#include "catalogue/CacheSaveSteps.h"

namespace jk {

void LoopTurns::Turn() {
    // Events that keep coming (a timer of 0 ms) cannot hold the work up for long.
    QCoreApplication::processEvents(QEventLoop::AllEvents, static_cast<int>(kSliceMs / 4));
    m_longestGap = std::max(m_longestGap, m_since.elapsed());
    m_since.restart();
}

IoResult SaveSessionCacheInTurns(Session& session, LoopTurns& turns) {
    if (session.CacheSaveBlocked) {
        return {};
    }
    // What came before the save had its slice already.
    turns.Turn();
    CacheSaveSteps save(session.SongCache, session.AppPath);
    while (!save.Step(std::chrono::milliseconds(LoopTurns::kSliceMs))) {
        turns.Turn();
    }
    return save.Result();
}

}  // namespace jk
