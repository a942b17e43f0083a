// The finders as the main window opens them: the Tools and Management items and the toolbar's
// search key open their windows, and a search's results reach the main window's playlist.
#include <QAction>
#include <QTemporaryDir>
#include <QTest>

#include "DesktopTestSupport.h"
#include "app/Session.h"
#include "app/ui/DesktopProgram.h"
#include "app/ui/ListPane.h"
#include "app/ui/MainWindow.h"
#include "finders/ui/ResultsPane.h"
#include "finders/ui/wizDuplicate.h"
#include "finders/ui/wizSearch.h"
#include "playback/ui/PlaylistModel.h"

using jk::test::FolderOf;
using jk::test::WritePreviousRun;

namespace {

const char* const kSongs = JUKARRA_TEST_DATA "/songs";

}  // namespace

class MainFindersTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theItemsOpenTheFindersOnce();
    void searchResultsReachThePlaylist();
};

void MainFindersTest::theItemsOpenTheFindersOnce() {
    jk::test::StartedProgram started;
    jk::DesktopProgram& program = started.program;
    jk::Main& main = program.MainWindow();
    for (const char* name : {"Wizard_Search", "DupeWiz", "Wizard_Selection"}) {
        QVERIFY2(main.Action(name)->isEnabled(), name);
    }
    QVERIFY(main.ToolbarButton("search")->isEnabled());

    main.Action("Wizard_Search")->trigger();
    auto* search = main.findChild<jk::wizSearch*>();
    QVERIFY(search != nullptr);
    QVERIFY(search->isVisible());
    QCOMPARE(search->windowTitle(), QString("Search Wizard"));
    main.ToolbarButton("search")->trigger();  // the same window comes to the front
    QCOMPARE(main.findChildren<jk::wizSearch*>().size(), 1);

    main.Action("DupeWiz")->trigger();
    auto* dupes = main.findChild<jk::wizDuplicate*>();
    QVERIFY(dupes != nullptr);
    QCOMPARE(dupes->windowTitle(), QString("Duplicate Finder"));
    search->close();
    dupes->close();
}

void MainFindersTest::searchResultsReachThePlaylist() {
    jk::test::StartedProgram started;
    jk::DesktopProgram& program = started.program;
    jk::Main& main = program.MainWindow();
    const std::size_t before = program.State().Playlist.Rows.size();

    main.Action("Wizard_Search")->trigger();
    auto* search = main.findChild<jk::wizSearch*>();
    QVERIFY(search != nullptr);
    jk::SearchForm form = search->Form();
    form.Text = "";  // every song: its file name is never empty
    form.LookIn = kSongs;
    form.Fields.set();  // every field
    form.ClearFirst = true;
    search->SetForm(form);
    search->Command1_Click();
    const std::size_t found = search->Results().Rows().size();
    QVERIFY(found > 0);

    search->Results().AddAll();
    QCOMPARE(program.State().Playlist.Rows.size(), before + found);
    QCOMPARE(static_cast<std::size_t>(main.PlaylistPane().Model().rowCount()), before + found);
    QVERIFY(!program.State().Playlist.PlaylistSaved);
    search->close();
}

QTEST_MAIN(MainFindersTest)
#include "tst_MainFinders.moc"
