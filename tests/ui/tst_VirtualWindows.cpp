// The virtual drives' windows and the bookmark windows, their commands handed to recording
// callables: what each window hands over, when it closes, and what it shows.

#include <QAbstractItemModelTester>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QTableView>
#include <QTest>

#include "catalogue/VirtualSummary.h"
#include "ui/WindowShots.h"
#include "ui/catalogue/BookmarkModel.h"
#include "ui/catalogue/BookmarkWindows.h"
#include "ui/catalogue/VirtualVolumeDialogs.h"
#include "ui/catalogue/Virtual_Summary.h"
#include "ui/catalogue/wizVirtual.h"

namespace jk {
namespace {

template <typename T>
T* Child(QWidget& window, const char* name) {
    T* child = window.findChild<T*>(QLatin1String(name));
    if (child == nullptr) {
        qFatal("no child %s", name);
    }
    return child;
}

void Click(QWidget& window, const char* button) {
    QTest::mouseClick(Child<QPushButton>(window, button), Qt::LeftButton);
}

void SelectRows(QListWidget& list, std::initializer_list<int> rows) {
    for (const int row : rows) {
        list.item(row)->setSelected(true);
    }
}

struct CreateCall {
    std::string path, name;
    bool noCache = false, eject = false;
};

}  // namespace

class VirtualWindowsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void wizardRefusesANameTheCallerRefusesAndCreatesWithTheBoxes() {
        std::vector<CreateCall> calls;
        std::vector<std::string> asked;
        bool accept = false;
        wizVirtual* self = nullptr;
        VirtualWizardHooks hooks;
        hooks.NameAccepted = [&](const std::string& name) {
            asked.push_back(name);
            return accept;
        };
        hooks.Create = [&](const std::string& path, const std::string& name, bool noCache,
                           bool eject) {
            calls.push_back({path, name, noCache, eject});
            return self->Progress("Scanning /media/ann/DISC/rock", 3, 10);
        };
        hooks.DiscLabel = [](const std::string& path) {
            return path == "/media/ann/DISC" ? std::string("SUMMER_99") : std::string();
        };
        hooks.PickFolder = [](QWidget*, const QString&) {
            return QStringLiteral("/media/ann/DISC");
        };
        wizVirtual wizard({{"/media/ann/OLD", "", "", ""}, {"1999", "", "", ""}, true, false},
                          hooks, nullptr);
        self = &wizard;
        QCOMPARE(wizard.windowTitle(), QStringLiteral("Virtual Drive Wizard"));
        QCOMPARE(wizard.Path(), std::string("/media/ann/OLD"));
        QCOMPARE(Child<QComboBox>(wizard, "Combo1")->count(), 1);  // blanks are no entries
        QVERIFY(Child<QCheckBox>(wizard, "Check1")->isChecked());

        Click(wizard, "Command3");  // Browse...
        Click(wizard, "Command4");  // Extract...
        QCOMPARE(wizard.Path(), std::string("/media/ann/DISC"));
        QCOMPARE(wizard.Name(), std::string("SUMMER_99"));

        Click(wizard, "Command1");
        QCOMPARE(asked, std::vector<std::string>{"SUMMER_99"});
        QVERIFY(calls.empty());  // refused: nothing scanned, the window stays

        accept = true;
        Child<QCheckBox>(wizard, "Check2")->setChecked(true);
        Click(wizard, "Command1");
        QCOMPARE(calls.size(), std::size_t{1});
        QCOMPARE(calls[0].path, std::string("/media/ann/DISC"));
        QCOMPARE(calls[0].name, std::string("SUMMER_99"));
        QVERIFY(calls[0].noCache);
        QVERIFY(calls[0].eject);
        QCOMPARE(Child<QLabel>(wizard, "lblCaption")->text(),
                 QStringLiteral("Scanning /media/ann/DISC/rock"));
        test::SaveShot(wizard, QStringLiteral("virtual-wizard"));
    }

    void closingTheWizardDuringAScanStopsTheScan() {
        // The window's Close (reject) during the scan stops it at its next step.
        wizVirtual* self = nullptr;
        int steps = 0;
        VirtualWizardHooks hooks;
        hooks.NameAccepted = [](const std::string&) { return true; };
        hooks.Create = [&](const std::string&, const std::string&, bool, bool) {
            while (self->Progress("Scanning x", steps, 0)) {
                if (++steps == 3) {
                    self->reject();  // the user closes the window
                }
                if (steps == 100) {
                    break;  // not stopped: the comparison below fails
                }
            }
            return false;
        };
        wizVirtual wizard({}, hooks, nullptr);
        self = &wizard;
        wizard.show();
        Click(wizard, "Command1");
        QCOMPARE(steps, 3);
        QVERIFY(!wizard.isVisible());
    }

    void removeHandsOverTheSelectionInListOrderEvenWhenEmpty() {
        const std::vector<std::string> names{"Jazz", "Pop", "Rock"};
        struct Case {
            std::initializer_list<int> rows;
            std::vector<std::string> expected;
        };
        const Case cases[] = {{{2, 0}, {"Jazz", "Rock"}}, {{}, {}}};
        for (const Case& c : cases) {
            std::vector<std::vector<std::string>> calls;
            Virtual_Remove window(
                names, [&](const std::vector<std::string>& n) { calls.push_back(n); }, nullptr);
            QCOMPARE(window.windowTitle(), QStringLiteral("Remove Virtual Drive"));
            window.show();
            SelectRows(*Child<QListWidget>(window, "List1"), c.rows);
            Click(window, "Command1");
            QCOMPARE(calls.size(), std::size_t{1});
            QCOMPARE(calls[0], c.expected);
            QVERIFY(!window.isVisible());
        }
    }

    void renameCopiesTheClickedNameAndStaysOpenWhenRefused() {
        std::vector<std::pair<std::string, std::string>> calls;
        bool accept = false;
        Virtual_Rename window(
            {"Jazz", "Rock"}, {},
            [&](const std::string& o, const std::string& n) {
                calls.emplace_back(o, n);
                return accept;
            },
            nullptr);
        window.show();
        auto* combo = Child<QComboBox>(window, "Combo1");
        QCOMPARE(combo->currentText(), QStringLiteral("New Volume Name"));
        auto* list = Child<QListWidget>(window, "List1");
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualItemRect(list->item(1)).center());
        QCOMPARE(combo->currentText(), QStringLiteral("Rock"));
        combo->setEditText(QStringLiteral("Rock: live"));
        Click(window, "Command1");
        QVERIFY(window.isVisible());
        accept = true;
        combo->setEditText(QStringLiteral("Rock Live"));
        Click(window, "Command1");
        QVERIFY(!window.isVisible());
        const std::vector<std::pair<std::string, std::string>> expected{{"Rock", "Rock: live"},
                                                                        {"Rock", "Rock Live"}};
        QCOMPARE(calls, expected);
    }

    void updateAndExportHandOverTheirFields() {
        std::vector<UpdateRequest> updates;
        Virtual_Update update(
            {"Jazz", "Rock"}, {"/media/ann/ROCK", "", "", ""}, false, true,
            [&](const UpdateRequest& r) { updates.push_back(r); }, nullptr);
        QCOMPARE(update.windowTitle(), QStringLiteral("Update Virtual Drive"));
        update.show();
        Click(update, "Command1");  // nothing selected: nothing done
        QVERIFY(updates.empty());
        SelectRows(*Child<QListWidget>(update, "List1"), {1});
        Child<QCheckBox>(update, "Check1")->setChecked(true);
        test::SaveShot(update, QStringLiteral("virtual-update"));
        Click(update, "Command1");
        QCOMPARE(updates.size(), std::size_t{1});
        QCOMPARE(updates[0].Name, std::string("Rock"));
        QCOMPARE(updates[0].Path, std::string("/media/ann/ROCK"));
        QVERIFY(updates[0].Eject);
        QVERIFY(updates[0].NoCache);

        std::vector<std::pair<std::vector<std::string>, std::string>> exports;
        Virtual_Export exporter(
            {"Jazz", "Pop", "Rock"}, {}, QStringLiteral("/home/ann/Music/export.jvd"),
            [&](const std::vector<std::string>& n, const std::string& p) {
                exports.emplace_back(n, p);
            },
            nullptr);
        exporter.show();
        QCOMPARE(Child<QComboBox>(exporter, "Combo1")->currentText(),
                 QStringLiteral("/home/ann/Music/export.jvd"));
        SelectRows(*Child<QListWidget>(exporter, "List1"), {0, 2});
        Click(exporter, "Command1");
        QCOMPARE(exports.size(), std::size_t{1});
        QCOMPARE(exports[0].first, (std::vector<std::string>{"Jazz", "Rock"}));
        QCOMPARE(exports[0].second, std::string("/home/ann/Music/export.jvd"));
        QCOMPARE(VirtualImageFilters(),
                 QStringLiteral("Virtual Drive images (*.jvd);;All files (*.*)"));
    }

    void summaryShowsTheFourFigures() {
        VirtualSummary summary;
        summary.Drives = 3;
        summary.Songs = 1234;
        summary.SizeText = "1024.00 MB";
        summary.TimeText = "3 hours, 2 minutes, 1 second";
        Virtual_Summary window(summary, nullptr);
        QCOMPARE(window.windowTitle(), QStringLiteral("Virtual Drives"));
        QCOMPARE(Child<QLabel>(window, "lblDrives")->text(), QStringLiteral("3"));
        QCOMPARE(Child<QLabel>(window, "lblSongs")->text(), QStringLiteral("1234"));
        QCOMPARE(Child<QLabel>(window, "lblSize")->text(), QStringLiteral("1024.00 MB"));
        test::SaveShot(window, QStringLiteral("virtual-summary"));
    }

    void newBookmarkStartsAtTheCurrentFolder() {
        std::vector<Bookmark> added;
        wizBookmark window(
            "/home/ann/Music/Jazz", [&](const Bookmark& b) { added.push_back(b); }, nullptr);
        QCOMPARE(window.windowTitle(), QStringLiteral("New Bookmark"));
        QCOMPARE(Child<QLineEdit>(window, "Text2")->text(), QStringLiteral("/home/ann/Music/Jazz"));
        Child<QLineEdit>(window, "Text1")->setText(QStringLiteral("Jazz"));
        Click(window, "Command1");
        QCOMPARE(added, (std::vector<Bookmark>{{"Jazz", "/home/ann/Music/Jazz"}}));
    }

    void editorKeysHaveBundledIconsWithoutATheme() {
        const QString theme = QIcon::themeName();
        const QString fallback = QIcon::fallbackThemeName();
        QIcon::setThemeName(QStringLiteral("no-such-theme"));
        QIcon::setFallbackThemeName(QStringLiteral("no-such-theme"));
        {
            Bookmarks window({{"a", "/a"}}, {}, {}, nullptr);
            for (const char* key : {"up", "down", "top", "bottom"}) {
                const QAction* action = window.findChild<QAction*>(QLatin1String(key));
                QVERIFY2(action != nullptr && !action->icon().pixmap(16, 16).isNull(), key);
            }
            QVERIFY(!window.windowIcon().isNull());
        }
        QIcon::setThemeName(theme);
        QIcon::setFallbackThemeName(fallback);
    }

    void editorSlidesKeepingTheSelectionSortsJumpsAndAppliesOnClosing() {
        const BookmarkList marks{{"c", "/c"}, {"A", "/a"}, {"b", "CD/b"}, {"d", "/d"}};
        std::vector<BookmarkList> applied;
        std::vector<std::string> jumps;
        Bookmarks window(
            marks, [&](const BookmarkList& l) { applied.push_back(l); },
            [&](const std::string& l) { jumps.push_back(l); }, nullptr);
        QAbstractItemModelTester tester(&window.Model(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        window.show();
        QTableView& view = window.View();
        view.selectRow(2);  // "b"
        window.findChild<QAction*>(QStringLiteral("top"))->trigger();
        QCOMPARE(window.Model().Bookmarks()[0].Name, std::string("b"));
        QCOMPARE(view.selectionModel()->selectedRows().size(), 1);
        QCOMPARE(view.selectionModel()->selectedRows()[0].row(), 0);
        window.findChild<QAction*>(QStringLiteral("SlideDown"))->trigger();
        QCOMPARE(window.Model().Bookmarks()[1].Name, std::string("b"));

        // Every key shows a picture, the theme's or the bundled one.
        for (const char* key : {"up", "down", "top", "bottom"}) {
            const QAction* action = window.findChild<QAction*>(QLatin1String(key));
            QVERIFY2(!action->icon().pixmap(16, 16).isNull(), key);
        }

        view.horizontalHeader()->sectionClicked(0);  // by name, ignoring case
        QCOMPARE(window.Model().Bookmarks()[0].Name, std::string("A"));
        QCOMPARE(window.Model().Bookmarks()[3].Name, std::string("d"));
        test::SaveShot(window, QStringLiteral("bookmark-editor"));

        view.doubleClicked(window.Model().index(1, 0));
        QCOMPARE(jumps, std::vector<std::string>{"CD/b"});

        view.selectRow(3);
        window.RemoveSelected();
        QCOMPARE(window.Model().rowCount(), 3);
        QVERIFY(applied.empty());  // nothing applied before closing
        window.close();
        window.close();
        QCOMPARE(applied.size(), std::size_t{1});
        const BookmarkList expected{{"A", "/a"}, {"b", "CD/b"}, {"c", "/c"}};
        QCOMPARE(applied[0], expected);
    }
};

}  // namespace jk

QTEST_MAIN(jk::VirtualWindowsTest)
#include "tst_VirtualWindows.moc"
