// The playlist's table model over the rows themselves: captions and cell texts, the selected
// flag both ways between rows and view, and the core's appends and removals reaching a view,
// all under Qt's model checker.

#include <array>
#include <string>

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>

#include "playback/PlaylistCommands.h"
#include "playback/ui/PlaylistModel.h"

namespace {

using jk::Column;
using jk::PlaylistModel;

jk::ListRow Row(const std::string& title, const std::string& artist, const std::string& path) {
    jk::ListRow row;
    row.Set(Column::Title, title);
    row.Set(Column::Artist, artist);
    row.Set(Column::Filename, path);
    return row;
}

QString Cell(const PlaylistModel& model, int row, Column column) {
    return model.data(model.index(row, static_cast<int>(column))).toString();
}

QStringList Titles(const PlaylistModel& model) {
    QStringList titles;
    for (int row = 0; row < model.rowCount(); ++row) {
        titles.append(Cell(model, row, Column::Title));
    }
    return titles;
}

}  // namespace

class PlaylistModelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void showsTheTwelveColumnsUnderTheirCaptions();
    void selectedFlagIsReadAndWrittenThroughItsRoleOnly();
    void viewSelectionAndRowFlagsMapBothWays();
    void coreChangesReachTheViewUnderTheModelChecker();
    void grabShowsAPlaylistAsAUserSeesIt();
    void aHundredThousandRowsShowAtOnce();
};

void PlaylistModelTest::showsTheTwelveColumnsUnderTheirCaptions() {
    jk::RowList rows;
    std::array<std::string_view, jk::kColumnCount> texts = {
        "Jóga", "Björk",           "Homogenic", "1997", "Pop",     "0505",
        "256",  "/music/jóga.mp3", "東京",      "8 MB", "1997-09", "CD 1"};
    rows.emplace_back(texts);
    PlaylistModel model(rows);
    QAbstractItemModelTester tester(&model);

    QCOMPARE(model.columnCount(), 12);
    const QStringList expected = {"Title",   "Artist",   "Album",   "Year", "Genre", "Time",
                                  "Bitrate", "Filename", "Comment", "Size", "Date",  "Volume"};
    for (int column = 0; column < 12; ++column) {
        QCOMPARE(model.headerData(column, Qt::Horizontal).toString(), expected[column]);
        QCOMPARE(model.data(model.index(0, column)).toString(),
                 QString::fromUtf8(
                     texts[static_cast<std::size_t>(column)].data(),
                     static_cast<qsizetype>(texts[static_cast<std::size_t>(column)].size())));
    }
    QCOMPARE(model.headerData(0, Qt::Vertical).toInt(), 1);
    QVERIFY(!model.index(1, 0).isValid());
    QVERIFY(!model.index(0, 12).isValid());
}

void PlaylistModelTest::selectedFlagIsReadAndWrittenThroughItsRoleOnly() {
    jk::RowList rows = {Row("a", "x", "/a.mp3"), Row("b", "y", "/b.mp3")};
    PlaylistModel model(rows);
    QAbstractItemModelTester tester(&model);
    QSignalSpy changed(&model, &PlaylistModel::dataChanged);

    const QModelIndex second = model.index(1, 3);
    QCOMPARE(second.data(PlaylistModel::SelectedRole).toBool(), false);
    QVERIFY(model.setData(second, true, PlaylistModel::SelectedRole));
    QVERIFY(rows[1].Selected());
    QVERIFY(!rows[0].Selected());
    QCOMPARE(second.data(PlaylistModel::SelectedRole).toBool(), true);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed[0][0].toModelIndex(), model.index(1, 0));
    QCOMPARE(changed[0][1].toModelIndex(), model.index(1, 11));

    // The texts belong to the core; a view cannot edit them.
    QVERIFY(!model.setData(model.index(0, 0), QStringLiteral("edited"), Qt::EditRole));
    QCOMPARE(rows[0].Get(Column::Title), "a");
    QVERIFY(!(model.flags(model.index(0, 0)) & Qt::ItemIsEditable));
}

void PlaylistModelTest::viewSelectionAndRowFlagsMapBothWays() {
    jk::RowList rows;
    for (int i = 0; i < 6; ++i) {
        rows.push_back(Row("song " + std::to_string(i), "", "/s" + std::to_string(i) + ".mp3"));
    }
    rows[0].SetSelected(true);  // stale: the view's selection replaces it
    PlaylistModel model(rows);
    QTableView view;
    view.setModel(&model);
    view.setSelectionBehavior(QAbstractItemView::SelectRows);
    view.setSelectionMode(QAbstractItemView::ExtendedSelection);
    auto* selection = view.selectionModel();
    const auto pick = QItemSelectionModel::Select | QItemSelectionModel::Rows;
    selection->select(model.index(1, 0), pick);
    selection->select(model.index(2, 0), pick);
    selection->select(model.index(4, 0), pick);

    model.ApplySelection(selection->selection());
    QList<bool> flags;
    for (const jk::ListRow& row : rows) {
        flags.append(row.Selected());
    }
    QCOMPARE(flags, (QList<bool>{false, true, true, false, true, false}));

    const QItemSelection back = model.SelectionOfRows();
    QCOMPARE(back.size(), 2);
    QCOMPARE(back[0].top(), 1);
    QCOMPARE(back[0].bottom(), 2);
    QCOMPARE(back[1].top(), 4);
    QCOMPARE(back[1].bottom(), 4);
    QCOMPARE(back[0].right(), 11);

    selection->clearSelection();
    selection->select(back, QItemSelectionModel::Select);
    QCOMPARE(selection->selectedRows().size(), 3);

    // Rows at the end of the list close the last range.
    rows[5].SetSelected(true);
    QCOMPARE(model.SelectionOfRows().last().bottom(), 5);
}

void PlaylistModelTest::coreChangesReachTheViewUnderTheModelChecker() {
    jk::PlaylistState state;
    state.Rows = {Row("one", "", "/1.mp3"), Row("two", "", "/2.mp3")};
    PlaylistModel model(state.Rows);
    QAbstractItemModelTester tester(&model);
    QTableView view;
    view.setModel(&model);
    view.show();
    QSignalSpy inserted(&model, &PlaylistModel::rowsInserted);
    QSignalSpy reset(&model, &PlaylistModel::modelReset);

    // A walk adds rows in batches; each batch reaches the view as one insertion.
    for (const char* title : {"three", "four", "five"}) {
        state.Rows.push_back(Row(title, "", std::string("/") + title + ".mp3"));
    }
    QCOMPARE(model.rowCount(), 2);  // the view hears of rows only when told
    model.RowsAppended();
    QCOMPARE(inserted.count(), 1);
    QCOMPARE(inserted[0][1].toInt(), 2);
    QCOMPARE(inserted[0][2].toInt(), 4);
    model.RowsAppended();
    QCOMPARE(inserted.count(), 1);  // nothing new, nothing said
    QCOMPARE(Titles(model), (QStringList{"one", "two", "three", "four", "five"}));

    // RemoveFromList drops the selected rows; the view starts afresh.
    view.selectionModel()->select(model.index(1, 0),
                                  QItemSelectionModel::Select | QItemSelectionModel::Rows);
    view.selectionModel()->select(model.index(4, 0),
                                  QItemSelectionModel::Select | QItemSelectionModel::Rows);
    model.ApplySelection(view.selectionModel()->selection());
    jk::RemoveFromList(state);
    model.RowsReplaced();
    QCOMPARE(reset.count(), 1);
    QCOMPARE(Titles(model), (QStringList{"one", "three", "four"}));
    QVERIFY(!view.selectionModel()->hasSelection());
    QVERIFY(!state.PlaylistSaved);

    // Word of an append to a list that got shorter is taken as the reset it must be.
    state.Rows.erase(state.Rows.begin(), state.Rows.begin() + 2);
    state.Rows.push_back(Row("six", "", "/6.mp3"));
    model.RowsAppended();
    QCOMPARE(reset.count(), 2);
    QCOMPARE(Titles(model), (QStringList{"four", "six"}));
    state.Rows.push_back(Row("seven", "", "/7.mp3"));
    model.RowsAppended();
    QCOMPARE(Titles(model), (QStringList{"four", "six", "seven"}));

    state.Rows[1].Set(Column::Title, "six (edited)");
    QSignalSpy changed(&model, &PlaylistModel::dataChanged);
    model.RowsChanged(1, 99);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed[0][0].toModelIndex(), model.index(1, 0));
    QCOMPARE(changed[0][1].toModelIndex(), model.index(2, 11));
    QCOMPARE(Cell(model, 1, Column::Title), QStringLiteral("six (edited)"));

    jk::NewList(state);
    model.RowsReplaced();
    QCOMPARE(model.rowCount(), 0);
    model.RowsChanged(0, 0);  // nothing to change in an empty list
    QCOMPARE(changed.count(), 1);
}

void PlaylistModelTest::grabShowsAPlaylistAsAUserSeesIt() {
    jk::RowList rows;
    const std::array<std::array<std::string_view, jk::kColumnCount>, 4> songs = {{
        {"Jóga", "Björk", "Homogenic", "1997", "Pop", "05:05", "256",
         "/home/ann/Music/Björk/jóga.mp3", "", "9.7 MB", "1997/09/22", ""},
        {"Teardrop", "Massive Attack", "Mezzanine", "1998", "Trip-Hop", "05:29", "192",
         "/home/ann/Music/Massive Attack/teardrop.mp3", "ripped 2001", "7.5 MB", "1998/04/20", ""},
        {"Army of Me", "Björk", "Post", "1995", "Pop", "03:54", "128",
         "/media/ann/CD1/post/army_of_me.mp3", "", "3.7 MB", "1995/06/13", "CD1"},
        {"* gone away", "", "", "", "", "", "", "/home/ann/Music/gone_away.mp3", "", "", "", ""},
    }};
    for (const auto& song : songs) {
        rows.emplace_back(song);
    }
    PlaylistModel model(rows);
    QTableView view;
    view.setModel(&model);
    view.setSelectionBehavior(QAbstractItemView::SelectRows);
    view.verticalHeader()->hide();
    view.resize(1100, 200);
    view.resizeColumnsToContents();
    view.selectRow(1);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QVERIFY(view.grab().save(QStringLiteral("/tmp/jukarra-playlist-model.png")));
}

void PlaylistModelTest::aHundredThousandRowsShowAtOnce() {
    constexpr int kRows = 100000;
    jk::RowList rows;
    rows.reserve(kRows);
    for (int i = 0; i < kRows; ++i) {
        const std::string number = std::to_string(i);
        rows.push_back(Row("Song " + number, "Artist " + number, "/music/" + number + ".mp3"));
    }
    QElapsedTimer timer;
    timer.start();
    PlaylistModel model(rows);
    QTableView view;
    view.setModel(&model);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    view.scrollToBottom();
    QCoreApplication::processEvents();
    // Seen, not asserted: speed is measured in bench/.
    qInfo("model and view of %d rows shown in %lld ms", kRows,
          static_cast<long long>(timer.elapsed()));
    QCOMPARE(model.rowCount(), kRows);
    const QModelIndex last = model.index(kRows - 1, 0);
    QVERIFY(view.viewport()->rect().contains(view.visualRect(last).center()));
    QCOMPARE(last.data().toString(), QStringLiteral("Song 99999"));
}

QTEST_MAIN(PlaylistModelTest)
#include "tst_PlaylistModel.moc"
