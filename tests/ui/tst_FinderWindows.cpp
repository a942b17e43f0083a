// The finders' windows under the offscreen platform: the Search Wizard over an in-memory folder
// tree and an in-memory catalogue (with the live search), every result command, the Selection
// Wizard's rules on the panes, and the Duplicate Finder with its keep-best proposal that moves
// files to the trash of a temporary data folder only once confirmed. Qt's model checker
// watches every result list.

#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <QAbstractItemModelTester>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>

#include "catalogue/GetSongInfo.h"
#include "core/browse/FakeFolderLister.h"
#include "core/finders/MemoryCatalogue.h"
#include "finders/DuplicateFinder.h"
#include "finders/ResultRows.h"
#include "finders/ui/FinderWindows.h"
#include "finders/ui/ResultsPane.h"
#include "finders/ui/wizDuplicate.h"
#include "finders/ui/wizSearch.h"
#include "finders/ui/wizSelect.h"
#include "platform/FileOperations.h"
#include "ui/WindowShots.h"

namespace {

using jk::Column;
using jk::ListRow;
using jk::RowList;

ListRow Row(const std::string& title, const std::string& path, const std::string& bitrate = "128",
            const std::string& size = "1000") {
    ListRow row;
    row.Set(Column::Title, title);
    row.Set(Column::Artist, "Artist of " + title);
    row.Set(Column::Time, "03:00");
    row.Set(Column::Bitrate, bitrate);
    row.Set(Column::Filename, path);
    row.Set(Column::Size, size);
    row.Set(Column::Date, "1/2/01 10:00:00");
    return row;
}

QStringList Column0(const RowList& rows, Column column = Column::Title) {
    QStringList out;
    for (const ListRow& row : rows) {
        const std::string_view text = row.Get(column);
        out << QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    }
    return out;
}

// Everything a finder asks of the main window, recorded.
struct Host {
    jk::Settings settings;
    RowList files;
    RowList playlist;
    jk::test::MemoryCatalogue catalogue;
    jk::test::FakeFolderLister lister;
    std::map<std::string, jk::SongInfo> songs;
    jk::RealFileSetup real;
    jk::DriveList drives;
    jk::FinderHost host;
    std::vector<std::string> asked;
    std::vector<std::string> told;
    std::vector<std::pair<std::vector<std::string>, jk::PlayRequest>> played;
    std::vector<std::string> trashed;
    std::set<std::string> untrashable;
    bool answer = true;

    Host() {
        settings.SearchIn = "111111111";
        settings.Autocomplete = 1;
        settings.SearchAsYouType = 1;
        settings.ExactTimes = 1;
        lister.AddFolder("/m", {"a.mp3", "sub/", "b.mp3"});
        lister.AddFolder("/m/sub", {"c.mp3"});
        int n = 0;
        for (const char* path : {"/m/a.mp3", "/m/b.mp3", "/m/sub/c.mp3"}) {
            jk::SongInfo song =
                jk::test::Song(n == 1 ? "" : std::string("Love song ") + path, "Band", path);
            song.Size = std::to_string(1000 * (n + 1));
            songs[path] = song;
            ++n;
        }
        real.Lister = &lister;
        real.FilterMode = 0;
        real.ReadAheadThreads = 0;
        real.ReadSong = [this](const std::string& path) {
            return songs.count(path) != 0 ? songs[path] : jk::NonExistantSong();
        };
        auto& pop = catalogue.Add("Pop");
        pop.Songs.push_back(jk::test::Song("Love me", "Ann", "/pop/love.mp3"));
        pop.Songs.push_back(jk::test::Song("Hate me", "Ann", "/popular/hate.mp3"));
        auto& jazz = catalogue.Add("Jazz");
        jazz.Songs.push_back(jk::test::Song("Lövely", "Bob", "/jazz/lovely.mp3"));
        jazz.Songs.push_back(jk::test::Song("Blue in green", "Bob", "/jazz/blue.mp3"));

        host.Options = &settings;
        host.Files = &files;
        host.Playlist = &playlist;
        host.Catalogue = &catalogue;
        host.CurrentFolder = "/m";
        host.Drives = &drives;
        host.RealFiles = &real;
        host.Ask = [this](const jk::UserMessage& q) {
            asked.push_back(q.text);
            return answer;
        };
        host.AddToPlaylist = [this](RowList rows) {
            for (ListRow& row : rows) {
                playlist.push_back(std::move(row));
            }
        };
        host.WipePlaylist = [this] { playlist.clear(); };
        host.Tell = [this](const jk::UserMessage& m) { told.push_back(m.text); };
        host.Play = [this](const RowList& rows, jk::PlayRequest how) {
            std::vector<std::string> paths;
            for (const ListRow& row : rows) {
                if (row.Selected() || how == jk::PlayRequest::PlayAll ||
                    how == jk::PlayRequest::EnqueueAll || how == jk::PlayRequest::Shuffle) {
                    paths.emplace_back(row.Get(Column::Filename));
                }
            }
            played.emplace_back(paths, how);
        };
        host.Trash = [this](const std::string& path, std::string& why) {
            if (untrashable.count(path) != 0) {
                why = "read-only";
                return false;
            }
            trashed.push_back(path);
            return true;
        };
    }
};

template <typename T>
T* Child(QWidget& window, const char* name) {
    T* child = window.findChild<T*>(name);
    if (child == nullptr) {
        qFatal("no child %s", name);
    }
    return child;
}

// Types text as key presses, letters beyond Latin-1's ASCII included.
void Type(QWidget* widget, const QString& text) {
    for (const QChar c : text) {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString(c));
        QApplication::sendEvent(widget, &press);
        QKeyEvent release(QEvent::KeyRelease, Qt::Key_unknown, Qt::NoModifier, QString(c));
        QApplication::sendEvent(widget, &release);
    }
}

void SelectRows(jk::ResultsPane& pane, std::initializer_list<int> rows) {
    pane.clearSelection();
    for (const int r : rows) {
        pane.selectionModel()->select(pane.model()->index(r, 0),
                                      QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
}

}  // namespace

class FinderWindowsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void searchWizardShowsEveryControlAndLoadsTheSettings();
    void searchOfAFolderListsHitsAndKeepsTheHistories();
    void searchOfTheCatalogueFollowsTheTypingWithoutTouchingHistories();
    void aLargeCatalogueIsListedAsTypedInSlicesThroughItsIndex();
    void aBetweenTokenThatIsNoDateEndsWithErrorBox();
    void resultCommandsWorkOnTheSelection();
    void deleteMovesToTheTrashAndKeepsWhatCouldNotGo();
    void headersSortSizesAsNumbers();
    void columnOrdersAreKeptInTheSettings();
    void selectionWizardFollowsItsRules();
    void duplicateFinderGroupsAndProposesWithoutDeleting();
    void bestCopiesGoToARealTrashOnlyWhenConfirmed();
    void manyDuplicatesListInSlicesAndSurviveACatalogueChange();
    void theMainWindowOpensEachFinderOnce();
};

void FinderWindowsTest::searchWizardShowsEveryControlAndLoadsTheSettings() {
    Host h;
    h.settings.SearchHistory[1] = "love";
    h.settings.SearchPaths[1] = "/elsewhere";
    h.settings.DefaultToCurrent = 1;
    h.settings.SearchLasts[1] = "1/1/01";
    jk::wizSearch window(h.host);
    QCOMPARE(window.windowTitle(), QString("Search Wizard"));
    QVERIFY(!window.isModal());
    QCOMPARE(window.Status(), QString("Ready..."));
    auto* combo2 = Child<QComboBox>(window, "Combo2");
    QCOMPARE(combo2->currentText(), QString("/m"));  // DefaultToCurrent
    QCOMPARE(combo2->itemText(combo2->count() - 3), QString("All drives (real and virtual)"));
    QCOMPARE(combo2->itemText(combo2->count() - 1), QString("Virtual drives (disc images)"));
    QCOMPARE(Child<QComboBox>(window, "Combo1")->currentText(), QString("love"));
    QCOMPARE(Child<QComboBox>(window, "Combo5")->currentText(), QString("1/1/01"));
    QCOMPARE(Child<QComboBox>(window, "Combo3")->itemText(2), QString("greater than"));
    QCOMPARE(Child<QComboBox>(window, "Combo4")->itemText(3), QString("between"));
    QCOMPARE(Child<QComboBox>(window, "Combo6")->itemText(3), QString("months"));
    QVERIFY(Child<QRadioButton>(window, "Option1")->isChecked());
    QCOMPARE(Child<QCheckBox>(window, "Check5")->text(), QString("Keep this window always on top"));
    auto* none = Child<QAction>(window, "SearchNone");
    none->trigger();
    QVERIFY(window.Form().Fields.none());
    Child<QAction>(window, "SearchAll")->trigger();
    QVERIFY(window.Form().Fields.all());
    Child<QAction>(window, "SearchVolume")->trigger();
    QVERIFY(!window.Form().Fields.test(static_cast<std::size_t>(jk::SearchField::Volume)));
    QStringList captions;
    for (const char* name :
         {"resultsAddSelected", "resultsAddAll", "resultsRemove", "resultsCrop", "CopyTo", "MoveTo",
          "DeleteFile", "resultsClear", "playlistWipe", "enqueueAll", "enqueueSelected",
          "playSelected", "playAll", "playShuffle"}) {
        captions << Child<QAction>(window, name)->text();
    }
    QCOMPARE(
        captions.join("|"),
        QString("A&dd selected|Add &all results|&Remove selected|Cro&p selected|&Copy "
                "to...|&Move to...|&Delete|&Clear results|&Wipe playlist|En&queue all "
                "results|Enqueue selecte&d|&Play selected|P&lay all results|&Jukarra results"));
}

void FinderWindowsTest::searchOfAFolderListsHitsAndKeepsTheHistories() {
    Host h;
    jk::wizSearch window(h.host);
    QAbstractItemModelTester tester(&window.Results().Model());
    jk::SearchForm form = window.Form();
    form.Text = " song";  // a leading blank: matched as it stands, stored trimmed
    form.LookIn = "/m";
    form.Subfolders = true;
    form.ClearFirst = true;
    window.SetForm(form);
    window.Command1_Click();
    // "Love song /m/a.mp3" and ".../sub/c.mp3"; b.mp3 has no title.
    QCOMPARE(window.Results().Model().rowCount(), 2);
    QCOMPARE(window.Status(), QString(" 2 songs - 00:06:50, 0.00 MB"));
    QCOMPARE(QString::fromStdString(h.settings.SearchHistory[1]), QString("song"));
    QCOMPARE(QString::fromStdString(h.settings.SearchPaths[1]), QString("/m"));
    QCOMPARE(h.settings.SearchMode, 1);

    form.Text = "band";
    form.Subfolders = false;
    form.ClearFirst = false;  // appended
    window.SetForm(form);
    window.Command1_Click();
    QCOMPARE(window.Results().Rows().size(), std::size_t{4});
    // The untitled song shows its bare name.
    QVERIFY(Column0(window.Results().Rows()).contains("b.mp3"));
    QCOMPARE(QString::fromStdString(h.settings.SearchHistory[1]), QString("band"));
    jk::test::SaveShot(window, "wizSearch");
}

void FinderWindowsTest::searchOfTheCatalogueFollowsTheTypingWithoutTouchingHistories() {
    Host h;
    h.settings.SearchHistory[1] = "old";
    jk::wizSearch window(h.host);
    QAbstractItemModelTester tester(&window.Results().Model());
    window.show();
    auto* combo1 = Child<QComboBox>(window, "Combo1");
    auto* combo2 = Child<QComboBox>(window, "Combo2");
    combo2->setEditText("Virtual drives (disc images)");
    combo1->setEditText("");
    QVERIFY(window.LiveSearchApplies());
    combo1->lineEdit()->setFocus();
    // Letters beyond ASCII fold one by one: "LÖ" finds "Lövely" and not "Love me".
    Type(combo1->lineEdit(), QString::fromUtf8("LÖ"));
    QTRY_COMPARE(window.Results().Rows().size(), std::size_t{1});
    QCOMPARE(Column0(window.Results().Rows()), QStringList({QString::fromUtf8("Lövely")}));
    QCOMPARE(QString::fromStdString(h.settings.SearchHistory[1]), QString("old"));

    // The live rows are exactly what "Search" gives.
    const RowList live = window.Results().Rows();
    Child<QCheckBox>(window, "Check1")->setChecked(true);
    window.Command1_Click();
    QCOMPARE(Column0(window.Results().Rows()), Column0(live));
    QCOMPARE(QString::fromStdString(h.settings.SearchHistory[1]), QString::fromUtf8("LÖ"));

    // A virtual folder is a prefix of text: "Pop/pop" takes in "Pop/popular".
    combo2->setEditText("pop/pop");
    combo1->setEditText("");
    QTest::keyClicks(combo1->lineEdit(), "me");
    QTRY_COMPARE(window.Results().Rows().size(), std::size_t{2});
    jk::test::SaveShot(window, "wizSearch-catalogue");
}

// Too many songs to read on the window's thread at each key: the first key waits for the index,
// the list then fills a slice at a time, and rows and statistics are those "Search" gives.
void FinderWindowsTest::aLargeCatalogueIsListedAsTypedInSlicesThroughItsIndex() {
    Host h;
    for (int v = 0; v < 6; ++v) {
        auto& volume = h.catalogue.Add("Disc" + std::to_string(v));
        for (int i = 0; i < 10000; ++i) {
            jk::SongInfo song =
                jk::test::Song("Song " + std::to_string(i), "Band",
                               "/d" + std::to_string(v) + "/" + std::to_string(i) + ".mp3");
            song.Size = std::to_string(1000 + i);
            song.Time = "03:2" + std::to_string(i % 10);
            volume.Songs.push_back(song);
        }
    }
    jk::wizSearch window(h.host);
    // (No model tester: it reads every row at each slice.)
    jk::ResultsModel& model = window.Results().Model();
    std::vector<int> firstRows;
    connect(&model, &QAbstractItemModel::modelReset, this,
            [&] { firstRows.push_back(model.rowCount()); });
    window.show();
    auto* combo1 = Child<QComboBox>(window, "Combo1");
    Child<QComboBox>(window, "Combo2")->setEditText("Virtual drives (disc images)");
    combo1->setEditText("");
    combo1->lineEdit()->setFocus();
    QTest::keyClicks(combo1->lineEdit(), "g 7");
    // "Song 7", "Song 70" to "Song 7999" of each disc, in order: the index answers once built.
    QTRY_VERIFY_WITH_TIMEOUT(
        !firstRows.empty() && !window.Results().Filling() && window.Status().contains("songs"),
        20000);
    QVERIFY(firstRows.back() < model.rowCount());  // the first slice, then the rest
    const RowList live = window.Results().Rows();
    const QString liveStatus = window.Status();
    QCOMPARE(live.size(), std::size_t{6 * 1111});

    Child<QCheckBox>(window, "Check1")->setChecked(true);
    window.Command1_Click();
    QCOMPARE(Column0(window.Results().Rows()), Column0(live));
    QCOMPARE(window.Status(), liveStatus);

    // A key while the list fills replaces it with the next query's rows.
    QTest::keyClicks(combo1->lineEdit(), "1");
    QTRY_VERIFY_WITH_TIMEOUT(!window.Results().Filling() && window.Status().contains("songs") &&
                                 model.rowCount() == 6 * 111,
                             20000);
    for (const QString& title : Column0(window.Results().Rows())) {
        QVERIFY2(title.startsWith("Song 71"), qPrintable(title));
    }

    // One character finds a third of the songs: the first screenful is shown before the rest of
    // the catalogue is searched, and the whole list is then the one "Search" gives, in order.
    combo1->setEditText("");
    firstRows.clear();
    QTest::keyClicks(combo1->lineEdit(), "7");
    QTRY_VERIFY_WITH_TIMEOUT(!firstRows.empty() && !window.Results().Filling(), 20000);
    QCOMPARE(firstRows.front(), static_cast<int>(jk::ResultsPane::kFirstRows));
    const RowList typed = window.Results().Rows();
    const QString typedStatus = window.Status();
    QVERIFY(typed.size() > 6 * 3000);
    window.Command1_Click();
    QCOMPARE(Column0(window.Results().Rows(), Column::Filename), Column0(typed, Column::Filename));
    QCOMPARE(window.Status(), typedStatus);
}

void FinderWindowsTest::aBetweenTokenThatIsNoDateEndsWithErrorBox() {
    Host h;
    jk::wizSearch window(h.host);
    jk::SearchForm form = window.Form();
    form.Text = "love";
    form.LookIn = "Virtual drives (disc images)";
    form.SizeDate.TimeMode = jk::kBetween;
    form.SizeDate.DateText = "soon - 1/1/01";
    window.SetForm(form);
    window.Command1_Click();
    QCOMPARE(h.told.size(), std::size_t{1});
    QVERIFY(QString::fromStdString(h.told[0]).startsWith("Sorry, this tool requires"));
    QCOMPARE(window.Results().Rows().size(), std::size_t{0});
}

void FinderWindowsTest::resultCommandsWorkOnTheSelection() {
    Host h;
    jk::wizSearch window(h.host);
    jk::ResultsPane& pane = window.Results();
    QAbstractItemModelTester tester(&pane.Model());
    pane.Rows() = {Row("A", "/m/a.mp3"), Row("", "/m/b.mp3"), Row("C", "/m/c.mp3"),
                   Row("D", "/m/d.mp3")};
    pane.Model().RowsReplaced();

    SelectRows(pane, {1, 2});
    pane.AddSelected();
    QCOMPARE(Column0(h.playlist), QStringList({"b.mp3", "C"}));
    pane.AddAll();
    QCOMPARE(h.playlist.size(), std::size_t{6});
    pane.WipePlaylist();
    QVERIFY(h.playlist.empty());

    SelectRows(pane, {0, 3});
    pane.EnqueueSelected();
    pane.PlayAll();
    pane.PlayShuffle();
    QCOMPARE(h.played.size(), std::size_t{3});
    QCOMPARE(h.played[0].first, (std::vector<std::string>{"/m/a.mp3", "/m/d.mp3"}));
    QCOMPARE(h.played[1].first.size(), std::size_t{4});
    QVERIFY(h.played[2].second == jk::PlayRequest::Shuffle);

    // Enter in the list plays the selection, as a double click does.
    pane.setFocus();
    QTest::keyClick(&pane, Qt::Key_Return);
    QCOMPARE(h.played.size(), std::size_t{4});
    QVERIFY(h.played[3].second == jk::PlayRequest::PlaySelected);

    SelectRows(pane, {0});
    pane.RemoveSelected();
    QCOMPARE(Column0(pane.Rows()), QStringList({"", "C", "D"}));
    SelectRows(pane, {1});
    pane.CropSelected();
    QCOMPARE(Column0(pane.Rows()), QStringList({"C"}));
    QCOMPARE(window.Status(), QString(" 1 song - 00:03:00, 0.00 MB"));
    pane.Clear();
    QCOMPARE(window.Status(), QString(" No results."));
}

void FinderWindowsTest::deleteMovesToTheTrashAndKeepsWhatCouldNotGo() {
    Host h;
    jk::wizSearch window(h.host);
    jk::ResultsPane& pane = window.Results();
    QAbstractItemModelTester tester(&pane.Model());
    pane.Rows() = {Row("A", "/m/a.mp3"), Row("B", "/m/b.mp3"), Row("C", "/m/c.mp3")};
    pane.Model().RowsReplaced();
    SelectRows(pane, {0, 1, 2});
    h.answer = false;
    pane.DeleteSelected();
    QCOMPARE(h.asked, std::vector<std::string>{"Are you sure you want to delete?"});
    QVERIFY(h.trashed.empty());
    QCOMPARE(pane.Rows().size(), std::size_t{3});

    h.answer = true;
    h.untrashable = {"/m/b.mp3"};
    SelectRows(pane, {0, 1, 2});
    pane.DeleteSelected();
    // Last row to first; the one that could not go stays and is named once.
    QCOMPARE(h.trashed, (std::vector<std::string>{"/m/c.mp3", "/m/a.mp3"}));
    QCOMPARE(Column0(pane.Rows()), QStringList({"B"}));
    QCOMPARE(h.told.size(), std::size_t{1});
    QVERIFY(QString::fromStdString(h.told[0]).contains("/m/b.mp3"));

    // Without warning: no question.
    h.settings.DelMode = 1;
    h.untrashable.clear();
    h.asked.clear();
    SelectRows(pane, {0});
    pane.DeleteSelected();
    QVERIFY(h.asked.empty());
    QVERIFY(pane.Rows().empty());
}

void FinderWindowsTest::headersSortSizesAsNumbers() {
    Host h;
    jk::wizSearch window(h.host);
    jk::ResultsPane& pane = window.Results();
    QAbstractItemModelTester tester(&pane.Model());
    pane.Rows() = {Row("A", "/a", "128", "900"), Row("B", "/b", "128", "10000"),
                   Row("C", "/c", "128", "95")};
    pane.Model().RowsReplaced();
    SelectRows(pane, {1});
    pane.TakeSelection();
    pane.Model().sort(static_cast<int>(Column::Size), Qt::AscendingOrder);
    QCOMPARE(Column0(pane.Rows()), QStringList({"C", "A", "B"}));
    // The selection follows its row.
    QCOMPARE(pane.SelectedPaths(), std::vector<std::string>{"/b"});
}

// Each result list takes its column order from its own key and gives it back on closing; a
// token the list has no column for keeps its place.
void FinderWindowsTest::columnOrdersAreKeptInTheSettings() {
    Host h;
    h.settings.ColumnOrderSearch = " 2x 0x 1x 3x 4x 5x 6x 7x 8x 9x 10x 11x";
    h.settings.ColumnOrderDupe = " 7x 12x 0x";
    {
        jk::wizSearch search(h.host);
        QHeaderView* header = search.Results().horizontalHeader();
        QCOMPARE(header->logicalIndex(0), 2);
        QCOMPARE(header->logicalIndex(1), 0);
        header->moveSection(header->visualIndex(9), 0);
        search.Command2_Click();
    }
    QCOMPARE(QString::fromStdString(h.settings.ColumnOrderSearch),
             QString(" 9x 2x 0x 1x 3x 4x 5x 6x 7x 8x 10x 11x"));
    {
        jk::wizDuplicate dupes(h.host);
        QHeaderView* header = dupes.Results().horizontalHeader();
        QCOMPARE(header->logicalIndex(0), 7);
        QCOMPARE(header->logicalIndex(1), 0);
        QCOMPARE(header->logicalIndex(2), 1);
        header->moveSection(header->visualIndex(0), 0);
        dupes.close();
    }
    QCOMPARE(QString::fromStdString(h.settings.ColumnOrderDupe),
             QString(" 0x 12x 7x 1x 2x 3x 4x 5x 6x 8x 9x 10x 11x"));
    // The other window's key is left alone.
    QCOMPARE(QString::fromStdString(h.settings.ColumnOrderSearch),
             QString(" 9x 2x 0x 1x 3x 4x 5x 6x 7x 8x 10x 11x"));
}

void FinderWindowsTest::selectionWizardFollowsItsRules() {
    Host h;
    h.settings.Selects[1] = "love";
    h.settings.SelectOptions = "100000000";  // Title
    h.settings.SelectMode = 2;               // Both
    h.files = {Row("Love one", "/f/1.mp3"), Row("Other", "/f/2.mp3")};
    h.playlist = {Row("Nothing", "/p/1.mp3"), Row("LOVE two", "/p/2.mp3")};
    h.files[1].SetSelected(true);
    int refreshed = 0;
    h.host.SelectionChanged = [&refreshed] { ++refreshed; };
    {
        jk::wizSelect dialog(h.host);
        QVERIFY(dialog.isModal());
        QCOMPARE(dialog.windowTitle(), QString("Selection Wizard"));
        QCOMPARE(Child<QRadioButton>(dialog, "Option1")->text(), QString("Files "));
        QCOMPARE(Child<QComboBox>(dialog, "Combo1")->currentText(), QString("love"));
        QVERIFY(Child<QRadioButton>(dialog, "Option3")->isChecked());
        Child<QCheckBox>(dialog, "Check1")->setChecked(true);  // retain
        jk::test::SaveShot(dialog, "wizSelect");
        // Enter in the text box runs "Okay".
        QTest::keyClick(Child<QComboBox>(dialog, "Combo1")->lineEdit(), Qt::Key_Return);
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
    }
    QVERIFY(h.files[0].Selected() && h.files[1].Selected());  // retained
    QVERIFY(!h.playlist[0].Selected() && h.playlist[1].Selected());
    QCOMPARE(refreshed, 1);
    QCOMPARE(h.settings.SaveSelect, 1);

    // Cancel changes nothing, and Esc is Cancel.
    {
        jk::wizSelect dialog(h.host);
        Child<QComboBox>(dialog, "Combo1")->setEditText("nothing at all");
        Child<QCheckBox>(dialog, "Check1")->setChecked(false);
        QTest::keyClick(Child<QComboBox>(dialog, "Combo1")->lineEdit(), Qt::Key_Escape);
        QCOMPARE(dialog.result(), int(QDialog::Rejected));
    }
    QVERIFY(h.files[0].Selected() && h.files[1].Selected());
    QCOMPARE(QString::fromStdString(h.settings.Selects[1]), QString("love"));

    // Not retaining and matching nothing empties the selection; Files only.
    {
        jk::wizSelect dialog(h.host);
        Child<QComboBox>(dialog, "Combo1")->setEditText("zzz");
        Child<QCheckBox>(dialog, "Check1")->setChecked(false);
        Child<QRadioButton>(dialog, "Option1")->setChecked(true);
        dialog.Command1_Click();
    }
    QVERIFY(!h.files[0].Selected() && !h.files[1].Selected());
    QVERIFY(h.playlist[1].Selected());
    QCOMPARE(QString::fromStdString(h.settings.Selects[1]), QString("zzz"));
    QCOMPARE(h.settings.SelectMode, 0);
}

void FinderWindowsTest::duplicateFinderGroupsAndProposesWithoutDeleting() {
    Host h;
    h.playlist = {Row("Same", "/p/same.mp3", "128"), Row("Alone", "/p/alone.mp3")};
    h.files = {Row("same", "/f/same.mp3", "320"), Row("Other", "/f/other.mp3")};
    jk::wizDuplicate window(h.host);
    QAbstractItemModelTester tester(&window.Results().Model());
    QCOMPARE(window.windowTitle(), QString("Duplicate Finder"));
    QVERIFY(Child<QWidget>(window, "Text1")
                ->property("plainText")
                .toString()
                .startsWith("The duplicate finder can help you weed out redundant "));
    // No source: nothing at all.
    Child<QCheckBox>(window, "chkFolder")->setChecked(false);
    Child<QCheckBox>(window, "chkPlaylist")->setChecked(false);
    Child<QCheckBox>(window, "chkVirtual")->setChecked(false);
    window.Command1_Click();
    QCOMPARE(window.Status(), QString("Ready..."));

    Child<QCheckBox>(window, "chkFolder")->setChecked(true);
    Child<QCheckBox>(window, "chkPlaylist")->setChecked(true);
    Child<QComboBox>(window, "Combo1")->setCurrentIndex(0);  // ID3 Title
    Child<QComboBox>(window, "Combo2")->setCurrentIndex(1);  // Playlist
    window.Command1_Click();
    QCOMPARE(window.Results().Rows().size(), std::size_t{2});
    QCOMPARE(window.Status(), QString(" 2 songs - 00:06:00, 0.00 MB"));
    QCOMPARE(h.settings.DupePlaylist, 1);

    // Neither copy is a file here: none is offered for deletion, and Delete asks nothing.
    window.ProposeBestCopies_Click();
    QVERIFY(window.Results().SelectedPaths().empty());
    window.DeleteFile_Click();
    QVERIFY(h.asked.empty());
    QVERIFY(h.trashed.empty());
    QCOMPARE(window.Results().Rows().size(), std::size_t{2});
    jk::test::SaveShot(window, "wizDuplicate");
}

void FinderWindowsTest::bestCopiesGoToARealTrashOnlyWhenConfirmed() {
    QTemporaryDir temp;
    QVERIFY(temp.isValid());
    const std::string root = temp.path().toStdString();
    qputenv("XDG_DATA_HOME", QByteArray::fromStdString(root + "/xdg"));
    QDir().mkpath(temp.path() + "/music");
    for (const char* name : {"low.mp3", "high.mp3"}) {
        std::ofstream(root + "/music/" + name) << "not really a song";
    }
    Host h;
    h.host.Trash = [](const std::string& path, std::string& why) {
        const jk::FileResult result = jk::MoveToTrash(path);
        why = result.error;
        return result.ok;
    };
    h.settings.DelMode = 1;  // without warning: the proposal asks all the same
    h.files = {Row("Tune", root + "/music/low.mp3", "96"),
               Row("TUNE", root + "/music/high.mp3", "256"),
               Row("Tune", "/gone/only-catalogued.mp3", "320")};
    jk::wizDuplicate window(h.host);
    QAbstractItemModelTester tester(&window.Results().Model());
    Child<QCheckBox>(window, "chkFolder")->setChecked(true);
    Child<QCheckBox>(window, "chkPlaylist")->setChecked(false);
    Child<QCheckBox>(window, "chkVirtual")->setChecked(false);
    Child<QComboBox>(window, "Combo2")->setCurrentIndex(0);
    window.Command1_Click();
    QCOMPARE(window.Results().Rows().size(), std::size_t{3});
    window.ProposeBestCopies_Click();
    // A copy here beats one known only elsewhere, whatever its bitrate.
    QCOMPARE(window.Results().SelectedPaths(), std::vector<std::string>{root + "/music/low.mp3"});
    h.answer = false;
    window.DeleteFile_Click();
    QCOMPARE(h.asked.size(), std::size_t{1});
    QVERIFY(QString::fromStdString(h.asked[0]).contains("low.mp3"));
    QVERIFY(QFile::exists(QString::fromStdString(root + "/music/low.mp3")));
    h.answer = true;
    window.DeleteFile_Click();
    QCOMPARE(h.asked.size(), std::size_t{2});
    QVERIFY(!QFile::exists(QString::fromStdString(root + "/music/low.mp3")));
    QVERIFY(QFile::exists(QString::fromStdString(root + "/music/high.mp3")));
    QVERIFY(QFile::exists(QString::fromStdString(root + "/xdg/Trash/files/low.mp3")));
    QCOMPARE(window.Results().Rows().size(), std::size_t{2});
    qunsetenv("XDG_DATA_HOME");
}

// Thousands of duplicates: the window lists a screenful at once with the final statistics and
// makes the rest between turns of the event loop; the whole list is the core's, a second run
// lands below the first, and a catalogue change finishes the rows before it (or, unannounced,
// ends the list where it stands with its statistics counted again).
void FinderWindowsTest::manyDuplicatesListInSlicesAndSurviveACatalogueChange() {
    Host h;
    h.catalogue.volumes.clear();
    for (int v = 0; v < 4; ++v) {
        auto& volume = h.catalogue.Add("Disc" + std::to_string(v));
        for (int i = 0; i < 3000; ++i) {
            jk::SongInfo song =
                jk::test::Song("  Song " + std::to_string(i % 1500), "Band",
                               "/d" + std::to_string(v) + "/" + std::to_string(i) + ".mp3");
            song.Size = std::to_string(1000 + i);
            song.Time = "0" + std::to_string(i % 10) + ":1" + std::to_string(v);
            volume.Songs.push_back(song);
        }
    }
    std::vector<jk::DupeRecord> records;
    jk::LoadVirtualSource(h.catalogue, records);
    RowList expected;
    for (jk::DupeListed& listed : jk::GroupDuplicates(records, 0, jk::kSourceVirtual)) {
        expected.push_back(std::move(listed.Row));
    }
    QVERIFY(expected.size() > 10 * jk::ResultsPane::kFirstRows);
    const QString expectedStats = QString::fromStdString(jk::ResultsStats(expected, true));

    QWidget main;
    auto* window = new jk::wizDuplicate(h.host, &main);
    jk::ResultsPane& results = window->Results();
    QAbstractItemModelTester tester(&results.Model());
    Child<QCheckBox>(*window, "chkFolder")->setChecked(false);
    Child<QCheckBox>(*window, "chkPlaylist")->setChecked(false);
    Child<QCheckBox>(*window, "chkVirtual")->setChecked(true);
    Child<QCheckBox>(*window, "chkClear")->setChecked(true);
    Child<QComboBox>(*window, "Combo1")->setCurrentIndex(0);
    Child<QComboBox>(*window, "Combo2")->setCurrentIndex(2);
    window->Command1_Click();
    QVERIFY(results.Filling());
    QVERIFY(results.Model().rowCount() < static_cast<int>(expected.size()));
    QCOMPARE(window->Status(), expectedStats);
    QTRY_VERIFY_WITH_TIMEOUT(!results.Filling(), 20000);
    QCOMPARE(Column0(results.Rows(), Column::Filename), Column0(expected, Column::Filename));
    QCOMPARE(Column0(results.Rows()), Column0(expected));
    QCOMPARE(window->Status(), expectedStats);
    window->resize(900, 560);
    jk::test::SaveShot(*window, "wizDuplicate-many");

    // Without "Clear results" a second run lands below the first, which is made first.
    Child<QCheckBox>(*window, "chkClear")->setChecked(false);
    window->Command1_Click();
    window->Command1_Click();
    QTRY_VERIFY_WITH_TIMEOUT(!results.Filling(), 20000);
    QCOMPARE(results.Rows().size(), 3 * expected.size());
    QCOMPARE(Column0(RowList(results.Rows().end() - static_cast<std::ptrdiff_t>(expected.size()),
                             results.Rows().end()),
                     Column::Filename),
             Column0(expected, Column::Filename));

    // The main window announces its change: every row is made before the catalogue moves.
    Child<QCheckBox>(*window, "chkClear")->setChecked(true);
    window->Command1_Click();
    QVERIFY(results.Filling());
    jk::FindersCatalogueChanging(&main);
    QVERIFY(!results.Filling());
    h.catalogue.volumes[0].Songs.clear();
    ++h.catalogue.generation;
    jk::FindersCatalogueChanged(&main);
    QCOMPARE(results.RowsMade(), expected.size());
    QCOMPARE(window->Status(), expectedStats);
    // The groups are still known: the proposal keeps one copy of each.
    window->ProposeBestCopies_Click();
    int kept = 0;
    for (int r = 0; r < results.Model().rowCount(); ++r) {
        kept +=
            results.Model().data(results.Model().index(r, 0), jk::ResultsModel::KeptRole).toBool();
    }
    QCOMPARE(kept, 1500);

    // Unannounced, the list ends where it stands and its statistics are counted again.
    window->Command1_Click();
    QVERIFY(results.Filling());
    const std::size_t made = results.RowsMade();
    h.catalogue.volumes.pop_back();
    ++h.catalogue.generation;
    QTRY_VERIFY_WITH_TIMEOUT(!results.Filling(), 20000);
    QCOMPARE(results.RowsMade(), made);
    QCOMPARE(window->Status(), QString::fromStdString(jk::ResultsStats(results.Rows(), true)));
}

void FinderWindowsTest::theMainWindowOpensEachFinderOnce() {
    Host h;
    QWidget main;
    jk::OpenSearchWizard(h.host, &main);
    jk::OpenSearchWizard(h.host, &main);
    jk::OpenDuplicateFinder(h.host, &main);
    QCOMPARE(main.findChildren<jk::wizSearch*>().size(), 1);
    QCOMPARE(main.findChildren<jk::wizDuplicate*>().size(), 1);
    main.findChild<jk::wizSearch*>()->Command2_Click();
    QTRY_COMPARE(main.findChildren<jk::wizSearch*>().size(), 0);
}

QTEST_MAIN(FinderWindowsTest)
#include "tst_FinderWindows.moc"
