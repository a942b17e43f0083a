// The Setup Browser as a user meets it: its categories and pages with their captions, its
// controls filled from the settings, "Okay" storing and applying them, "Cancel" storing nothing.

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QStackedWidget>
#include <QTest>
#include <QTreeWidget>

#include "app/Session.h"
#include "app/SettingsTable.h"
#include "setup/SetupPages.h"
#include "setup/ui/SetupBrowser.h"
#include "ui/WindowShots.h"

namespace jk {
namespace {

QString Q(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

class EffectRecorder final : public SetupEffects {
public:
    QStringList calls;
    void SetTop(bool on) override { calls << QStringLiteral("SetTop %1").arg(on); }
    void UpdateWindowsMode(std::int16_t mode) override {
        calls << QStringLiteral("UpdateWindowsMode %1").arg(mode);
    }
    void ListCurrentFolderAfresh() override { calls << QStringLiteral("ListCurrentFolderAfresh"); }
    void ApplyDelMode(bool on) override { calls << QStringLiteral("ApplyDelMode %1").arg(on); }
    void ShowGridLines(bool on) override { calls << QStringLiteral("ShowGridLines %1").arg(on); }
    void ShowCurrSongChanged(bool on) override {
        calls << QStringLiteral("ShowCurrSongChanged %1").arg(on);
    }
    void UpdatePlayerMode() override { calls << QStringLiteral("UpdatePlayerMode"); }
    void SetPlayerMode() override { calls << QStringLiteral("SetPlayerMode"); }
    void ResizeForm() override { calls << QStringLiteral("ResizeForm"); }
};

// Every setting as text, to compare two states whole.
QStringList AllSettings(const Settings& settings) {
    QStringList values;
    for (const SettingField& field : SettingsTable()) {
        values << Q(field.key) + QLatin1Char('=') + Q(SettingText(settings, field));
    }
    return values;
}

}  // namespace

class SetupBrowserTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_session = std::make_unique<Session>();
        LoadDefaults(*m_session, "/usr/bin/mpv");
        ApplyMaxCache(*m_session);
        m_session->CacheCodepage = m_session->Settings.TagCodepage;
        m_session->Settings.PlayerHistory[1] = "/usr/bin/mpv";
        m_session->Settings.PlayerHistory[2] = "/usr/bin/audacious";
        m_effects = std::make_unique<EffectRecorder>();
        m_browser = std::make_unique<SetupBrowser>(*m_session, *m_effects);
        m_browser->show();
    }

    void cleanup() {
        m_browser.reset();
        m_effects.reset();
        m_session.reset();
    }

    void everyCategoryShowsItsPageUnderItsCaption() {
        QCOMPARE(m_browser->windowTitle(), QStringLiteral("Setup"));
        auto* tree = m_browser->findChild<QTreeWidget*>(QStringLiteral("Tree1"));
        QVERIFY(tree != nullptr);
        QVERIFY(m_browser->findChild<QLabel*>() != nullptr);
        QCOMPARE(tree->topLevelItemCount(), static_cast<int>(SetupPages().size()));
        auto* caption = m_browser->findChild<QLabel*>(QStringLiteral("caption"));
        auto* pages = m_browser->findChild<QStackedWidget*>();
        for (int i = 0; i < tree->topLevelItemCount(); ++i) {
            const SetupPage& page = SetupPages()[static_cast<std::size_t>(i)];
            QCOMPARE(tree->topLevelItem(i)->text(0), Q(page.text));
            const QRect node = tree->visualItemRect(tree->topLevelItem(i));
            QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, node.center());
            QCOMPARE(m_browser->CurrentPageKey(), Q(page.key));
            QCOMPARE(caption->text(), Q(page.caption));
            // The page shown is the frame of this category, and only it.
            QVERIFY(pages->currentWidget()->findChild<QWidget*>(Q(page.frame)) != nullptr);
        }
        QCOMPARE(m_browser->findChild<QPushButton*>(QStringLiteral("Command1"))->text(),
                 QStringLiteral("Okay"));
        QCOMPARE(m_browser->findChild<QPushButton*>(QStringLiteral("Command2"))->text(),
                 QStringLiteral("Cancel"));
    }

    void everyControlCarriesItsCaptionAndItems() {
        for (const SetupControl& control : SetupControls()) {
            const QString name = Q(control.name);
            switch (control.kind) {
                case SetupControlKind::Check: {
                    auto* check = m_browser->findChild<QCheckBox*>(name);
                    QVERIFY2(check != nullptr, qPrintable(name));
                    QCOMPARE(check->text().replace(QLatin1String("&&"), QLatin1String("&")),
                             Q(control.caption));
                    break;
                }
                case SetupControlKind::List:
                case SetupControlKind::TextList: {
                    auto* list = m_browser->findChild<QComboBox*>(name);
                    QVERIFY2(list != nullptr, qPrintable(name));
                    QCOMPARE(list->count(), static_cast<int>(control.items.size()));
                    for (int i = 0; i < list->count(); ++i) {
                        QCOMPARE(list->itemText(i), Q(control.items[static_cast<std::size_t>(i)]));
                    }
                    break;
                }
                case SetupControlKind::Options:
                    QCOMPARE(m_browser->findChild<QRadioButton*>(name)->text(),
                             Q(control.items[0]));
                    QCOMPARE(m_browser->findChild<QRadioButton*>(Q(control.secondName))->text(),
                             Q(control.items[1]));
                    break;
                default:
                    QVERIFY2(m_browser->findChild<QWidget*>(name) != nullptr, qPrintable(name));
                    break;
            }
            if (!control.caption.empty() && control.kind != SetupControlKind::Check) {
                bool found = false;
                for (const QLabel* label : m_browser->findChildren<QLabel*>()) {
                    found = found || label->text() == Q(control.caption);
                }
                QVERIFY2(found, qPrintable(Q(control.caption)));
            }
        }
        QCOMPARE(m_browser->findChild<QPushButton*>(QStringLiteral("Command3"))->text(),
                 QStringLiteral("Browse..."));
    }

    void controlsOpenWithTheSettings() {
        QCOMPARE(Combo(QStringLiteral("Combo5"))->currentText(), QStringLiteral("/usr/bin/mpv"));
        QCOMPARE(Combo(QStringLiteral("Combo5"))->count(), 2);
        QCOMPARE(Combo(QStringLiteral("Combo6"))->currentText(), QStringLiteral("Infinity"));
        QCOMPARE(Combo(QStringLiteral("Combo7"))->currentText(), QStringLiteral("after 1 week"));
        QCOMPARE(Combo(QStringLiteral("cboTagCodepage"))->currentText(),
                 QStringLiteral("windows-1252"));
        QVERIFY(Check(QStringLiteral("Check11"))->isChecked());
        QVERIFY(!Check(QStringLiteral("Check7"))->isChecked());
        QCOMPARE(m_browser->findChild<QSpinBox*>(QStringLiteral("Text2"))->value(), 45);
        QVERIFY(m_browser->findChild<QRadioButton*>(QStringLiteral("Option3"))->isChecked());
        QVERIFY(m_browser->findChild<QRadioButton*>(QStringLiteral("Option2"))->isChecked());
    }

    void okayStoresTheKeysAndAppliesThem() {
        const Settings before = m_session->Settings;
        Combo(QStringLiteral("Combo5"))->setEditText(QStringLiteral(" /usr/bin/vlc "));
        Combo(QStringLiteral("Combo6"))->setCurrentIndex(1);
        Combo(QStringLiteral("Combo10"))->setCurrentIndex(1);
        Check(QStringLiteral("Check11"))->setChecked(false);
        Check(QStringLiteral("Check1"))->setChecked(true);
        m_browser->findChild<QSpinBox*>(QStringLiteral("Text2"))->setValue(30);
        m_browser->findChild<QRadioButton*>(QStringLiteral("optTree1"))->setChecked(true);
        QTest::mouseClick(m_browser->findChild<QPushButton*>(QStringLiteral("Command1")),
                          Qt::LeftButton);

        QCOMPARE(m_browser->result(), static_cast<int>(QDialog::Accepted));
        QVERIFY(!m_browser->isVisible());
        const Settings& after = m_session->Settings;
        QCOMPARE(after.PlayerExes[1], std::string("/usr/bin/vlc"));
        QCOMPARE(after.PlayerHistory[1], std::string("/usr/bin/vlc"));
        QCOMPARE(after.PlayerHistory[2], std::string("/usr/bin/mpv"));
        QCOMPARE(after.MaxCache, std::int16_t{1});
        QCOMPARE(m_session->CacheLimit, 50);
        QCOMPARE(after.FilterMode, std::int16_t{1});
        QCOMPARE(m_session->FileFilter, std::string("*.mp*"));
        QCOMPARE(after.ShowGrid, std::int16_t{0});
        QCOMPARE(after.RememberList, std::string("1"));
        QCOMPARE(after.IntroSkip, std::int16_t{30});
        QCOMPARE(after.LayoutMode, std::int16_t{1});
        QCOMPARE(after.IntroLength, before.IntroLength);
        QCOMPARE(
            m_effects->calls,
            QStringList({"SetTop 0", "UpdateWindowsMode 0", "ListCurrentFolderAfresh",
                         "ShowGridLines 0", "UpdatePlayerMode", "SetPlayerMode", "ResizeForm"}));
    }

    void cancelAfterChangingPagesStoresNothing() {
        const QStringList before = AllSettings(m_session->Settings);
        const TextList10 players = m_session->Settings.PlayerHistory;
        m_browser->ShowPage("mCache");
        Combo(QStringLiteral("Combo6"))->setCurrentIndex(0);
        m_browser->ShowPage("mShutdown");
        Check(QStringLiteral("Check7"))->setChecked(true);
        m_browser->findChild<QRadioButton*>(QStringLiteral("Option1"))->setChecked(true);
        m_browser->ShowPage("mPlayer");
        Combo(QStringLiteral("Combo5"))->setEditText(QStringLiteral("/usr/bin/vlc"));
        QTest::mouseClick(m_browser->findChild<QPushButton*>(QStringLiteral("Command2")),
                          Qt::LeftButton);

        QCOMPARE(m_browser->result(), static_cast<int>(QDialog::Rejected));
        QCOMPARE(AllSettings(m_session->Settings), before);
        QVERIFY(m_session->Settings.PlayerHistory == players);
        QCOMPARE(m_session->CacheLimit, 1000000);
        QVERIFY(m_effects->calls.isEmpty());
    }

    void dependentControlsFollowTheirCheckBoxes() {
        QCheckBox* check5 = Check(QStringLiteral("Check5"));
        QCheckBox* check6 = Check(QStringLiteral("Check6"));
        auto* text4 = m_browser->findChild<QSpinBox*>(QStringLiteral("Text4"));
        check5->setChecked(true);
        check6->setChecked(true);
        QVERIFY(check6->isEnabled());
        QVERIFY(text4->isEnabled());
        check6->setChecked(false);
        QVERIFY(!text4->isEnabled());
        check6->setChecked(true);
        check5->setChecked(false);
        QVERIFY(!check6->isEnabled());
        QVERIFY(!text4->isEnabled());

        QCheckBox* check4 = Check(QStringLiteral("Check4"));
        auto* text1 = m_browser->findChild<QSpinBox*>(QStringLiteral("Text1"));
        check4->setChecked(false);
        QVERIFY(!text1->isEnabled());
        check4->setChecked(true);
        QVERIFY(text1->isEnabled());

        QCheckBox* check7 = Check(QStringLiteral("Check7"));
        auto* option1 = m_browser->findChild<QRadioButton*>(QStringLiteral("Option1"));
        auto* option2 = m_browser->findChild<QRadioButton*>(QStringLiteral("Option2"));
        QVERIFY(!option1->isEnabled());  // NeverAsk is 0 by default
        check7->setChecked(true);
        QVERIFY(option1->isEnabled());
        QVERIFY(option2->isEnabled());
    }

    void browsePutsTheChosenPlayerInTheList() {
        QString askedWith;
        m_browser->SetPlayerChooser([&](const QString& current) {
            askedWith = current;
            return QStringLiteral("/opt/players/audacious");
        });
        QTest::mouseClick(m_browser->findChild<QPushButton*>(QStringLiteral("Command3")),
                          Qt::LeftButton);
        QCOMPARE(askedWith, QStringLiteral("/usr/bin/mpv"));
        QCOMPARE(Combo(QStringLiteral("Combo5"))->currentText(),
                 QStringLiteral("/opt/players/audacious"));

        m_browser->SetPlayerChooser([](const QString&) { return QString(); });
        QTest::mouseClick(m_browser->findChild<QPushButton*>(QStringLiteral("Command3")),
                          Qt::LeftButton);
        QCOMPARE(Combo(QStringLiteral("Combo5"))->currentText(),
                 QStringLiteral("/opt/players/audacious"));
    }

    void pictures() {
        for (const char* key :
             {"mPlayer", "mLoading", "mShutdown", "mInterface", "mOptimize", "mAdvanced"}) {
            m_browser->ShowPage(key);
            test::SaveShot(*m_browser, QStringLiteral("setup-") + QLatin1String(key));
        }
    }

private:
    QComboBox* Combo(const QString& name) const {
        auto* combo = m_browser->findChild<QComboBox*>(name);
        Q_ASSERT(combo != nullptr);
        return combo;
    }
    QCheckBox* Check(const QString& name) const {
        auto* check = m_browser->findChild<QCheckBox*>(name);
        Q_ASSERT(check != nullptr);
        return check;
    }

    std::unique_ptr<Session> m_session;
    std::unique_ptr<EffectRecorder> m_effects;
    std::unique_ptr<SetupBrowser> m_browser;
};

}  // namespace jk

QTEST_MAIN(jk::SetupBrowserTest)
#include "tst_SetupBrowser.moc"
