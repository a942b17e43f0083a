// The Cache Performance window and the cache viewer over a small song cache.

#include <QAbstractItemModelTester>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QTest>

#include "catalogue/CachePerformance.h"
#include "catalogue/SongCache.h"
#include "support/CacheRecords.h"
#include "ui/WindowShots.h"
#include "ui/catalogue/CacheViewer.h"
#include "ui/catalogue/CacheViewerModel.h"
#include "ui/catalogue/wizCache.h"

namespace jk {
namespace {

SongCache SmallCache() {
    std::vector<SongInfo> songs;
    const char* titles[] = {"Blue in Green", "Freddie Freeloader", "So What"};
    const char* keys[] = {"blue in green.mp3", "freddie freeloader.mp3", "so what.mp3"};
    for (int i = 0; i < 3; ++i) {
        SongInfo song;
        song.Title = titles[i];
        song.Artist = "Miles Davis";
        song.Album = "Kind of Blue";
        song.Year = "1959";
        song.Genre = "Jazz";
        song.Time = "0537";
        song.Bitrate = " 192";
        song.Path = keys[i];
        song.Size = "7741440";
        song.Volume = "MUSIC";
        song.Date = "20240301101500";
        song.LastUsed = "20240412183000";
        songs.push_back(song);
    }
    return test::CacheOf(songs);
}

}  // namespace

class CacheWindowsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void labelsReadAsTheCounterAndLimitSay() {
        struct Case {
            std::int32_t attempts, hits, limit;
            const char *rate, *size;
        };
        const Case cases[] = {
            {0, 0, 1000000, "0.00%", "3 / Infinity"},
            {3, 1, 50, "33.33%", "3 / 50 (06.0%)"},
            {200, 200, 2500, "100.00%", "3 / 2500 (00.1%)"},
            {7, 0, 2501, "0.00%", "3 / Infinity"},
            {7, 7, 0, "100.00%", "None"},
        };
        for (const Case& c : cases) {
            SongCache cache = SmallCache();
            std::int32_t attempts = c.attempts;
            std::int32_t hits = c.hits;
            CachePerformance performance(cache, attempts, hits, c.limit, 2);
            wizCache window(performance);
            QCOMPARE(window.windowTitle(), QStringLiteral("Cache Performance"));
            QCOMPARE(Label(window, "lblHitAttempts"), QString::number(c.attempts));
            QCOMPARE(Label(window, "lblHits"), QString::number(c.hits));
            QCOMPARE(Label(window, "lblMisses"), QString::number(c.attempts - c.hits));
            QCOMPARE(Label(window, "lblSuccessRate"), QLatin1String(c.rate));
            QCOMPARE(Label(window, "lblCacheSize"), QLatin1String(c.size));
        }
    }

    void captionsAndHints() {
        SongCache cache = SmallCache();
        std::int32_t attempts = 0;
        std::int32_t hits = 0;
        CachePerformance performance(cache, attempts, hits, 1000000, 2);
        wizCache window(performance);
        QStringList texts;
        for (const QLabel* label : window.findChildren<QLabel*>()) {
            texts << label->text();
        }
        for (const char* text :
             {"Hit attempts:", "Hits:", "Misses:", "Success rate:", "Cache size:",
              "Feeling kinda sluggish?  Try removing duplicates and expired cache entries.",
              "Want a clean slate?  When all else fails: flush!"}) {
            QVERIFY2(texts.contains(QLatin1String(text)), text);
        }
        QCOMPARE(Button(window, "cmdOptimizeCache")->text(), QStringLiteral("Optimize"));
        QCOMPARE(Button(window, "Command3")->text(), QStringLiteral("Flush"));
        QCOMPARE(Button(window, "Command2")->text(), QStringLiteral("Reset statistics"));
        QCOMPARE(Button(window, "Command1")->text(), QStringLiteral("Close"));
        test::SaveShot(window, QStringLiteral("cache-performance"));
    }

    void flushAndResetAskFirst() {
        SongCache cache = SmallCache();
        std::int32_t attempts = 9;
        std::int32_t hits = 6;
        CachePerformance performance(cache, attempts, hits, 1000000, 2);
        wizCache window(performance);
        QStringList asked;
        QMessageBox::StandardButton answer = QMessageBox::No;
        window.SetAsker([&](const QString& title, const QString& text) {
            asked << title + QLatin1Char('|') + text;
            return answer;
        });

        QTest::mouseClick(Button(window, "Command3"), Qt::LeftButton);
        QTest::mouseClick(Button(window, "Command2"), Qt::LeftButton);
        QCOMPARE(asked, QStringList({"Verify|Are you sure you want to flush the cache?",
                                     "Verify|Are you sure you want to reset the statistics?"}));
        QCOMPARE(cache.UpperBound(), 3);
        QCOMPARE(attempts, 9);

        answer = QMessageBox::Yes;
        QTest::mouseClick(Button(window, "Command2"), Qt::LeftButton);
        QCOMPARE(attempts, 0);
        QCOMPARE(hits, 0);
        QCOMPARE(Label(window, "lblHitAttempts"), QStringLiteral("0"));
        QCOMPARE(cache.UpperBound(), 3);
        QTest::mouseClick(Button(window, "Command3"), Qt::LeftButton);
        QCOMPARE(cache.UpperBound(), 0);
        QCOMPARE(Label(window, "lblCacheSize"), QStringLiteral("0 / Infinity"));
    }

    void optimizeFillsTheWindowAnew() {
        std::vector<SongInfo> songs(2);
        songs[0].Path = songs[1].Path = "same.mp3";
        songs[0].LastUsed = "20240101000000";
        songs[1].LastUsed = "20240102000000";
        SongCache cache = test::CacheOf(songs);
        std::int32_t attempts = 0;
        std::int32_t hits = 0;
        CachePerformance performance(cache, attempts, hits, 50, 0);
        wizCache window(performance);
        QCOMPARE(Label(window, "lblCacheSize"), QStringLiteral("2 / 50 (04.0%)"));
        QTest::mouseClick(Button(window, "cmdOptimizeCache"), Qt::LeftButton);
        QCOMPARE(Label(window, "lblCacheSize"), QStringLiteral("1 / 50 (02.0%)"));
    }

    void theViewerListsEveryRecord() {
        const SongCache cache = SmallCache();
        CacheViewerModel model(cache);
        QAbstractItemModelTester tester(&model,
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(model.rowCount(), 3);
        QCOMPARE(model.columnCount(), 13);
        QCOMPARE(model.headerData(7, Qt::Horizontal).toString(), QStringLiteral("Filename"));
        QCOMPARE(model.index(2, 0).data().toString(), QStringLiteral("So What"));
        QCOMPARE(model.index(0, 5).data().toString(), QStringLiteral("05:37"));
        QCOMPARE(model.index(0, 12).data().toString(), QStringLiteral("2024-04-12 18:30:00"));

        CacheViewer viewer(cache);
        viewer.resize(700, 300);
        viewer.show();
        QTest::qWait(10);
        const int narrow = viewer.View()->width();
        viewer.resize(1000, 400);
        QTest::qWait(10);
        QVERIFY(viewer.View()->width() > narrow);
        test::SaveShot(viewer, QStringLiteral("cache-viewer"));
    }

private:
    static QString Label(QWidget& window, const char* name) {
        auto* label = window.findChild<QLabel*>(QLatin1String(name));
        return label != nullptr ? label->text() : QStringLiteral("(none)");
    }
    static QPushButton* Button(QWidget& window, const char* name) {
        return window.findChild<QPushButton*>(QLatin1String(name));
    }
};

}  // namespace jk

QTEST_MAIN(jk::CacheWindowsTest)
#include "tst_CacheWindows.moc"
