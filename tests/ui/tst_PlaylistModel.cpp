// The playlist's table model over the rows themselves: captions and cell texts, the selected
// flag both ways between rows and view, and the core's appends and removals reaching a view,
// all under Qt's model checker.

#include <array>
#include <memory>
#include <string>

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QMimeData>
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
    void rowsDragOutAsFilesAndDropsGoToTheWindow();
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
    QSignalSpy aboutToInsert(&model, &PlaylistModel::rowsAboutToBeInserted);
    QSignalSpy inserted(&model, &PlaylistModel::rowsInserted);
    QSignalSpy removed(&model, &PlaylistModel::rowsRemoved);
    QSignalSpy reset(&model, &PlaylistModel::modelReset);
    QSignalSpy layout(&model, &PlaylistModel::layoutChanged);

    // The views hear of an insertion before it is made: the rows are not there yet.
    int rowsWhenTold = -1;
    connect(&model, &PlaylistModel::rowsAboutToBeInserted, this,
            [&] { rowsWhenTold = static_cast<int>(state.Rows.size()); });
    // A walk adds rows in batches; each batch reaches the view as one insertion.
    jk::RowList batch;
    for (const char* title : {"three", "four", "five"}) {
        batch.push_back(Row(title, "", std::string("/") + title + ".mp3"));
    }
    model.AppendRows(std::move(batch));
    QCOMPARE(rowsWhenTold, 2);
    QCOMPARE(aboutToInsert.count(), 1);
    QCOMPARE(inserted[0][1].toInt(), 2);
    QCOMPARE(inserted[0][2].toInt(), 4);
    model.AppendRows({});
    QCOMPARE(inserted.count(), 1);  // nothing new, nothing said
    model.InsertRows(1, {Row("one and a half", "", "/1.5.mp3")});
    QCOMPARE(Titles(model), (QStringList{"one", "one and a half", "two", "three", "four", "five"}));

    // Rows that stand together leave in one removal; scattered ones in one reset.
    view.selectionModel()->select(model.index(1, 0),
                                  QItemSelectionModel::Select | QItemSelectionModel::Rows);
    model.ApplySelection(view.selectionModel()->selection());
    QCOMPARE(model.RemoveSelected(), std::size_t{1});
    QCOMPARE(removed.count(), 1);
    state.Rows[1].SetSelected(true);
    state.Rows[4].SetSelected(true);
    QCOMPARE(model.RemoveSelected(), std::size_t{2});
    QCOMPARE(reset.count(), 1);
    QCOMPARE(Titles(model), (QStringList{"one", "three", "four"}));
    QCOMPARE(model.RemoveSelected(), std::size_t{0});

    // A sort or a slide is one layout change; the selected flags travel with their rows.
    model.SortBy(static_cast<int>(Column::Title), false);
    QCOMPARE(layout.count(), 1);
    QCOMPARE(Titles(model), (QStringList{"four", "one", "three"}));
    model.sort(static_cast<int>(Column::Title), Qt::DescendingOrder);
    QCOMPARE(Titles(model), (QStringList{"three", "one", "four"}));

    state.Rows[1].Set(Column::Title, "one (edited)");
    QSignalSpy changed(&model, &PlaylistModel::dataChanged);
    model.RowsChanged(1, 99);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed[0][0].toModelIndex(), model.index(1, 0));
    QCOMPARE(changed[0][1].toModelIndex(), model.index(2, 11));
    QCOMPARE(Cell(model, 1, Column::Title), QStringLiteral("one (edited)"));

    model.ChangeAll([](jk::RowList& rows) { rows.clear(); });
    QCOMPARE(model.rowCount(), 0);
    model.RowsChanged(0, 0);  // nothing to change in an empty list
    QCOMPARE(changed.count(), 1);

    // Rows filled before the view was in use are shown on Resync.
    state.Rows.push_back(Row("six", "", "/6.mp3"));
    QCOMPARE(model.rowCount(), 0);
    model.Resync();
    QCOMPARE(Titles(model), (QStringList{"six"}));
}

void PlaylistModelTest::rowsDragOutAsFilesAndDropsGoToTheWindow() {
    jk::RowList rows = {Row("a", "", "/music/a.mp3"), Row("ghost", "", "gone.mp3"),
                        Row("b", "", "/music/b.mp3")};
    PlaylistModel model(rows);
    QAbstractItemModelTester tester(&model);
    std::unique_ptr<QMimeData> data(model.mimeData(
        {model.index(0, 0), model.index(0, 3), model.index(1, 0), model.index(2, 0)}));
    QCOMPARE(data->urls().size(), 2);  // only real files leave the program
    QCOMPARE(data->urls()[1].toLocalFile(), QStringLiteral("/music/b.mp3"));
    QVERIFY(data->data(PlaylistModel::kRowsMimeType).endsWith(":0 1 2 "));
    QVERIFY(!(model.flags(model.index(0, 0)) & Qt::ItemIsDropEnabled));
    QVERIFY(model.flags(QModelIndex()) & Qt::ItemIsDropEnabled);

    // Without a handler nothing is taken; with one, it gets the data and the row.
    QVERIFY(!model.dropMimeData(data.get(), Qt::CopyAction, 1, 0, QModelIndex()));
    int droppedAt = -2;
    model.SetDropHandler([&](const QMimeData& dropped, int row, Qt::DropAction) {
        droppedAt = row;
        return dropped.hasUrls();
    });
    QVERIFY(model.dropMimeData(data.get(), Qt::MoveAction, 1, 0, QModelIndex()));
    QCOMPARE(droppedAt, 1);
    QCOMPARE(model.rowCount(), 3);  // the window moves rows, not the view
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
