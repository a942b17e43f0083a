#include "app/ui/ScanFeeder.h"

#include <QCoreApplication>

#include "playback/ui/PlaylistModel.h"

namespace jk {

ScanFeeder::ScanFeeder(PlaylistModel& pane, std::function<void(const ScanProgress&)> show,
                       std::function<bool()> aborted)
    : m_pane(pane), m_show(std::move(show)), m_aborted(std::move(aborted)) {
    m_sinceYield.start();
}

ScanProgressFn ScanFeeder::Progress() {
    return [this](const ScanProgress& progress) { return Report(progress); };
}

bool ScanFeeder::Report(const ScanProgress& progress) {
    // The first report shows the progress window at once; then every 50 ms.
    if (m_reported && m_sinceYield.elapsed() < kYieldEveryMs) {
        return true;
    }
    m_reported = true;
    if (m_show) {
        m_show(progress);
    }
    Flush();
    m_longestGap = std::max(m_longestGap, m_sinceYield.elapsed());
    QCoreApplication::processEvents(QEventLoop::AllEvents, static_cast<int>(kYieldEveryMs / 5));
    m_sinceYield.restart();
    return !(m_aborted && m_aborted());
}

void ScanFeeder::Flush() {
    if (m_batch.empty()) {
        return;
    }
    RowList rows = std::move(m_batch);
    m_batch.clear();
    m_pane.AppendRows(std::move(rows));
}

}  // namespace jk
