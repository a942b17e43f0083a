// The Duplicate Finder's window over a catalogue, under the offscreen platform:
//
//   dupes_window_bench DIR [ROUNDS (3)]
//
// loads DIR/master.dat (`finders_bench 1000000 --master DIR` writes the catalogue its figures
// use), opens the Duplicate Finder on "Virtual drives" by "ID3 Title" with "Clear results" on,
// and presses Start ROUNDS times. Each round reports the time from the click to the list shown
// (its first rows and the statistics line, the window answering again), to every row made, and
// the longest gap between two turns of the event loop while the rows fill, measured by a timer
// that asks to run every 5 ms. Beside it, in the same run, `LC_ALL=C sort -f` of the same keys.

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QTimer>

#include "BenchSupport.h"
#include "catalogue/VirtualCatalogue.h"
#include "finders/VolumeTableView.h"
#include "finders/ui/ResultsPane.h"
#include "finders/ui/wizDuplicate.h"

namespace {

class NoQuestions final : public jk::CatalogueQuestions {
public:
    bool AskYesNo(const jk::UserMessage&) override { return false; }
    void ShowMessage(const jk::UserMessage&) override {}
};

double ChildCpuSeconds() {
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

template <typename T>
T* Check(T* child, const char* name) {
    if (child == nullptr) {
        std::fprintf(stderr, "dupes_window_bench: the window has no %s\n", name);
        std::exit(2);
    }
    return child;
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: dupes_window_bench DIR [ROUNDS]\n");
        return 2;
    }
    const std::string folder = argv[1];
    const int rounds = argc > 2 ? std::max(1, std::atoi(argv[2])) : 3;
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    std::printf("%s\n", jkbench::MachineNote("/tmp").c_str());

    jk::VirtualCatalogue loaded;
    NoQuestions questions;
    if (!jk::LoadVirtualCache(loaded, folder + "/", {true, true}, questions)) {
        std::fprintf(stderr, "dupes_window_bench: %s/master.dat could not be read\n",
                     folder.c_str());
        return 2;
    }
    const jk::VolumeTableView catalogue(loaded.Volumes);
    // The keys sort -f is given: every song's title, one a line.
    const std::string keys = "/tmp/dupes_window_bench." + std::to_string(::getpid()) + ".txt";
    {
        std::ofstream out(keys);
        for (std::size_t v = 0; v < catalogue.VolumeCount(); ++v) {
            for (std::size_t i = 0; i < catalogue.SongCount(v); ++i) {
                out << catalogue.Fields(v, i)[jk::kKeyTitle - 1] << '\n';
            }
        }
    }
    std::printf("catalogue: %zu songs on %zu discs\n", catalogue.TotalSongs(),
                catalogue.VolumeCount());

    jk::Settings settings;
    jk::FinderHost host;
    host.Options = &settings;
    host.Catalogue = &catalogue;
    jk::wizDuplicate window(host);
    Check(window.findChild<QCheckBox*>("chkFolder"), "chkFolder")->setChecked(false);
    Check(window.findChild<QCheckBox*>("chkPlaylist"), "chkPlaylist")->setChecked(false);
    Check(window.findChild<QCheckBox*>("chkVirtual"), "chkVirtual")->setChecked(true);
    Check(window.findChild<QCheckBox*>("chkClear"), "chkClear")->setChecked(true);
    Check(window.findChild<QComboBox*>("Combo1"), "Combo1")->setCurrentIndex(0);
    Check(window.findChild<QComboBox*>("Combo2"), "Combo2")->setCurrentIndex(2);
    window.show();
    QCoreApplication::processEvents();

    QTimer ticker;
    ticker.setInterval(5);
    QElapsedTimer sinceTick;
    qint64 longestGap = 0;
    QObject::connect(&ticker, &QTimer::timeout, &ticker,
                     [&] { longestGap = std::max(longestGap, sinceTick.restart()); });

    qint64 bestShown = -1;
    qint64 bestAll = -1;
    double bestSort = 1e18;
    int rc = 0;
    for (int round = 0; round < rounds; ++round) {
        QElapsedTimer clock;
        clock.start();
        const double cpuStart = jkbench::CpuSeconds();
        window.Command1_Click();
        const qint64 shown = clock.elapsed();
        const int firstRows = window.Results().Model().rowCount();
        longestGap = 0;
        sinceTick.start();
        ticker.start();
        while (window.Results().Filling()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        const qint64 all = clock.elapsed();
        const double cpuMs = (jkbench::CpuSeconds() - cpuStart) * 1000;
        ticker.stop();
        const std::size_t rows = window.Results().RowsMade();

        const double childCpu = ChildCpuSeconds();
        QElapsedTimer sortClock;
        sortClock.start();
        rc |= std::system(("LC_ALL=C sort -f " + keys + " > /dev/null").c_str());
        const double sortMs = static_cast<double>(sortClock.nsecsElapsed()) / 1e6;
        std::printf(
            "round %d: list shown %lld ms (%d rows, \"%s\"), every row made %lld ms (%.0f ms "
            "CPU, %zu rows), longest gap %lld ms | LC_ALL=C sort -f %.0f ms wall, %.0f ms CPU\n",
            round + 1, static_cast<long long>(shown), firstRows,
            window.Status().toUtf8().constData(), static_cast<long long>(all), cpuMs, rows,
            static_cast<long long>(longestGap), sortMs, (ChildCpuSeconds() - childCpu) * 1000);
        bestShown = bestShown < 0 ? shown : std::min(bestShown, shown);
        bestAll = bestAll < 0 ? all : std::min(bestAll, all);
        bestSort = std::min(bestSort, sortMs);
    }
    // The same rows made at one go, as a command that reads every row has them made: the
    // cost of making them beside the cost of the slices' turns of the event loop.
    QElapsedTimer atOnce;
    atOnce.start();
    window.Command1_Click();
    const qint64 shownAgain = atOnce.elapsed();
    window.Results().FinishRows();
    std::printf("rows made at one go: list shown %lld ms, every row made %lld ms\n",
                static_cast<long long>(shownAgain), static_cast<long long>(atOnce.elapsed()));
    std::remove(keys.c_str());
    std::printf(
        "best of %d: list shown %lld ms = %.2fx sort -f, every row made %lld ms = %.2fx "
        "(sort -f %.0f ms%s)\n",
        rounds, static_cast<long long>(bestShown), static_cast<double>(bestShown) / bestSort,
        static_cast<long long>(bestAll), static_cast<double>(bestAll) / bestSort, bestSort,
        rc == 0 ? "" : ", sort failed");
    return rc == 0 ? 0 : 1;
}
