// The Search Wizard typed into over a large catalogue, under the offscreen platform:
//
//   search_window_bench [SONGS (1000000)] [--pause MS (150)]
//
// makes a catalogue of SONGS songs on discs of 10,000, opens the Search Wizard on "Virtual drives
// (disc images)" with every field checked and search as you type on, and types queries key by key,
// MS apart (longer when a key's results take longer), backspacing down to the empty query, which
// lists every song. For each key it reports the time from the key to the results model holding
// the first of the new rows, and to it holding all of them with the statistics line shown; and
// the longest gap between two turns of the event loop from that key to the next, measured by a
// timer that asks to run every 5 ms. Beside them stand the window's thread's CPU times (to the
// first rows, and the most in one turn), the steadier figures on a loaded machine. The index is
// built from the moment the window opens; the first key also waits for what is left of that.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include <time.h>

#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QTimer>

#include "catalogue/VirtualVolumes.h"
#include "finders/SearchForm.h"
#include "finders/SearchRequest.h"
#include "finders/VolumeTableView.h"
#include "finders/ui/ResultsPane.h"
#include "finders/ui/wizSearch.h"

namespace {

double CpuMs(clockid_t clock = CLOCK_PROCESS_CPUTIME_ID) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) * 1000.0 + static_cast<double>(now.tv_nsec) / 1e6;
}

// The window's thread's own CPU time: on a machine shared with other work the wall clock
// stretches with the load, this much less.
double WindowCpuMs() {
    return CpuMs(CLOCK_THREAD_CPUTIME_ID);
}

// The longest time between two ticks of a 5 ms timer, which only ticks when the event loop runs,
// and the most CPU time the window's thread spent between two ticks.
class GapMeter {
public:
    GapMeter() {
        m_timer.setInterval(5);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
            m_longest = std::max(m_longest, m_since.restart());
            const double cpu = WindowCpuMs();
            m_longestCpu = std::max(m_longestCpu, cpu - m_cpuAt);
            m_cpuAt = cpu;
        });
    }
    void Start() {
        m_longest = 0;
        m_longestCpu = 0;
        m_cpuAt = WindowCpuMs();
        m_since.start();
        m_timer.start();
    }
    qint64 Stop() {
        m_timer.stop();
        m_longestCpu = std::max(m_longestCpu, WindowCpuMs() - m_cpuAt);
        return std::max(m_longest, m_since.elapsed());
    }
    double LongestCpu() const { return m_longestCpu; }

private:
    QTimer m_timer;
    QElapsedTimer m_since;
    qint64 m_longest = 0;
    double m_longestCpu = 0;
    double m_cpuAt = 0;
};

const char* const kWords[] = {"love", "night",  "blue",    "fire",  "heart", "river", "dance",
                              "moon", "rain",   "city",    "dream", "road",  "gold",  "wild",
                              "Élan", "Straße", "Mädchen", "niño",  "café",  "echo",  "stone"};

std::string Words(std::mt19937& rng, int n) {
    std::string out;
    for (int i = 0; i < n; ++i) {
        out += (i > 0 ? " " : "") + std::string(kWords[rng() % std::size(kWords)]);
    }
    return out;
}

// Discs of 10,000 songs in folders of artists and albums.
void MakeCatalogue(jk::VolumeTable& table, long songs) {
    std::mt19937 rng(42);
    for (long done = 0; done < songs;) {
        const std::string name = "Disc" + std::to_string(table.size() + 1);
        jk::VirtualVolume& volume = table.emplace_back(name);
        const long count = std::min(10000L, songs - done);
        for (long i = 0; i < count; ++i) {
            jk::SongInfo song;
            song.Title = Words(rng, 1 + static_cast<int>(rng() % 3));
            song.Artist = Words(rng, 2) + " " + std::to_string(rng() % 97);
            song.Album = Words(rng, 2) + " " + std::to_string(rng() % 50);
            song.Year = std::to_string(1950 + rng() % 75);
            song.Genre = "Rock";
            song.Time = "03:25";
            song.Bitrate = " 192";
            song.Comment = rng() % 4 == 0 ? Words(rng, 3) : "";
            song.Size = std::to_string(3000000 + rng() % 5000000);
            song.Date = "2/26/00 11:22:33 PM";
            song.Path = "/media/ann/" + name + "/" + song.Artist + "/" + song.Album + "/" +
                        std::to_string(i % 20 + 1) + " " + song.Title + ".mp3";
            volume.Append(song);
        }
        volume.ReleaseSpare();
        done += count;
    }
}

struct KeyFigures {
    std::string text;  // the query after the key
    qint64 firstRows = -1;
    qint64 allRows = -1;
    qint64 gap = 0;
    double firstRowsCpu = -1;  // the window's thread's CPU time from the key to the first rows
    double gapCpu = 0;         // the most CPU time of the window's thread between two turns
    int rows = 0;
};

template <typename T>
T Median(std::vector<T> v) {
    if (v.empty()) {
        return -1;
    }
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    long songs = 1000000;
    int pauseMs = 150;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--pause" && i + 1 < argc) {
            pauseMs = std::max(1, std::atoi(argv[++i]));
        } else {
            songs = std::max(1L, std::atol(argv[i]));
        }
    }
    std::setvbuf(stdout, nullptr, _IOLBF, 0);

    QElapsedTimer clock;
    clock.start();
    jk::VolumeTable table;
    MakeCatalogue(table, songs);
    const jk::VolumeTableView catalogue(table);
    std::printf("catalogue: %ld songs on %zu discs, made in %lld ms\n", songs, table.size(),
                static_cast<long long>(clock.elapsed()));

    jk::FinderHost host;
    host.Catalogue = &catalogue;
    jk::wizSearch window(host);
    jk::SearchForm form;
    form.LookIn = std::string(jk::kLookInVirtualDrives);
    form.Fields.set();
    form.ClearFirst = true;
    window.SetForm(form);
    window.show();
    QElapsedTimer settle;
    settle.start();
    while (settle.elapsed() < 300) {
        QCoreApplication::processEvents();
    }
    QLineEdit* edit = window.findChild<QComboBox*>("Combo1")->lineEdit();
    auto* status = window.findChild<QLabel*>("lblStatus");
    jk::ResultsModel& model = window.Results().Model();
    edit->setFocus();

    // When the model began to hold the new rows, since the key.
    QElapsedTimer sinceKey;
    qint64 resetAt = -1;
    double keyCpu = 0;
    double resetCpu = -1;
    QObject::connect(&model, &QAbstractItemModel::modelReset, &model, [&] {
        if (resetAt < 0) {
            resetAt = sinceKey.elapsed();
            resetCpu = WindowCpuMs() - keyCpu;
        }
    });

    // Typed key by key: a word, back to nothing (every song), another word, then a miss.
    struct Key {
        int code;
        char text;
    };
    std::vector<Key> keys;
    const auto type = [&keys](const std::string& word) {
        for (const char c : word) {
            keys.push_back({0, c});
        }
    };
    const auto back = [&keys](int n) {
        for (int i = 0; i < n; ++i) {
            keys.push_back({Qt::Key_Backspace, 0});
        }
    };
    type("love");
    back(4);
    type("river 1");
    back(7);
    type("zqxj");

    GapMeter meter;
    std::vector<KeyFigures> figures;
    const double cpuStart = CpuMs();
    for (const Key& key : keys) {
        status->setText(QString());
        resetAt = -1;
        resetCpu = -1;
        meter.Start();
        keyCpu = WindowCpuMs();
        sinceKey.start();
        if (key.code != 0) {
            QTest::keyClick(edit, static_cast<Qt::Key>(key.code));
        } else {
            QTest::keyClicks(edit, QString(QChar::fromLatin1(key.text)));
        }
        KeyFigures f;
        f.text = edit->text().toStdString();
        // The next key comes after the pause, or once this one's rows are all in (20 s at most,
        // 120 s for the first, which waits for the index).
        const qint64 patience = figures.empty() ? 120000 : 20000;
        while (sinceKey.elapsed() < patience &&
               (sinceKey.elapsed() < pauseMs || status->text().isEmpty())) {
            // Waits for the next event (the meter's timer comes every 5 ms) rather than spinning:
            // a loop that spins would take a core from the index's build and count its own
            // turns as the window's CPU time.
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
            if (f.allRows < 0 && !status->text().isEmpty()) {
                f.allRows = sinceKey.elapsed();
            }
        }
        f.firstRows = resetAt;
        f.firstRowsCpu = resetCpu;
        f.gap = meter.Stop();
        f.gapCpu = meter.LongestCpu();
        f.rows = model.rowCount();
        std::printf(
            "key -> \"%s\": first rows %6lld ms (%5.1f ms CPU), all rows %6lld ms, longest gap "
            "%5lld ms (%5.1f ms CPU), %d rows\n",
            f.text.c_str(), static_cast<long long>(f.firstRows), f.firstRowsCpu,
            static_cast<long long>(f.allRows), static_cast<long long>(f.gap), f.gapCpu, f.rows);
        figures.push_back(f);
    }
    const double cpu = CpuMs() - cpuStart;

    // The first key waits for the index; the rest are the typing figures.
    std::vector<qint64> first;
    std::vector<double> firstCpu;
    std::vector<qint64> all;
    qint64 worstFirst = 0;
    double worstFirstCpu = 0;
    qint64 worstGap = 0;
    double worstGapCpu = 0;
    qint64 emptyAll = -1;
    qint64 emptyGap = 0;
    for (std::size_t k = 1; k < figures.size(); ++k) {
        const KeyFigures& f = figures[k];
        first.push_back(f.firstRows);
        firstCpu.push_back(f.firstRowsCpu);
        all.push_back(f.allRows);
        worstFirst = std::max(worstFirst, f.firstRows);
        worstFirstCpu = std::max(worstFirstCpu, f.firstRowsCpu);
        worstGap = std::max(worstGap, f.gap);
        worstGapCpu = std::max(worstGapCpu, f.gapCpu);
        if (f.text.empty()) {
            emptyAll = std::max(emptyAll, f.allRows);
            emptyGap = std::max(emptyGap, f.gap);
        }
    }
    std::printf(
        "\n%zu keys after the first: first rows median %lld ms, slowest %lld ms (goal <= 50; the "
        "window's CPU to them median %.1f ms, most %.1f ms, after the 30 ms pause); all rows "
        "median %lld ms; longest gap %lld ms (goal <= 100; most CPU in one turn %.1f ms); empty "
        "query: all %ld rows in %lld ms, longest gap %lld ms\nthe first key (waiting for the index "
        "as it is built): first rows %lld ms, longest gap %lld ms (%.1f ms CPU); CPU of the "
        "typing, "
        "all threads, %.0f ms\n",
        figures.size() - 1, static_cast<long long>(Median(first)),
        static_cast<long long>(worstFirst), Median(firstCpu), worstFirstCpu,
        static_cast<long long>(Median(all)), static_cast<long long>(worstGap), worstGapCpu, songs,
        static_cast<long long>(emptyAll), static_cast<long long>(emptyGap),
        static_cast<long long>(figures[0].firstRows), static_cast<long long>(figures[0].gap),
        figures[0].gapCpu, cpu);
    window.close();
    return 0;
}
