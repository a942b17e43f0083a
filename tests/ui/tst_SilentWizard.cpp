// The Silent MP3 Wizard writes its file in the data folder while the window stays alive.

#include <QApplication>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "metadata/SilentMp3.h"
#include "ui/WindowShots.h"
#include "ui/metadata/wizSilent.h"

namespace jk {

class SilentWizardTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        QVERIFY(m_folder.isValid());
        m_window = std::make_unique<wizSilent>(m_folder.path().toStdString() + "/");
        m_window->show();
    }
    void cleanup() { m_window.reset(); }

    void opensWithItsCaptions() {
        QCOMPARE(m_window->windowTitle(), QStringLiteral("Silent MP3 Wizard"));
        QCOMPARE(SizeBox()->text(), QStringLiteral("5000"));
        QCOMPARE(Button("Command1")->text(), QStringLiteral("Do it!"));
        bool sizeLabel = false;
        for (const QLabel* label : m_window->findChildren<QLabel*>()) {
            sizeLabel = sizeLabel || label->text() == QStringLiteral("Size (KB):");
        }
        QVERIFY(sizeLabel);
        test::SaveShot(*m_window, QStringLiteral("silent-wizard"));
    }

    void doItWritesTheFileAndComesBack() {
        QSignalSpy finished(m_window.get(), &wizSilent::Finished);
        SizeBox()->setText(QStringLiteral(" 64 "));
        QTest::mouseClick(Button("Command1"), Qt::LeftButton);
        // While the file is written, neither button can be pressed and closing waits.
        QVERIFY(!Button("Command1")->isEnabled());
        QVERIFY(!Button("Command2")->isEnabled());
        m_window->reject();
        QVERIFY(m_window->isVisible());

        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 10000);
        QCOMPARE(finished.at(0).at(0).toBool(), true);
        const QFileInfo made(m_folder.filePath(QStringLiteral("64KB.mp3")));
        QCOMPARE(finished.at(0).at(1).toString(), made.filePath());
        QVERIFY(made.size() >= 64 * 1024 + 128);
        QVERIFY(made.size() < 64 * 1024 + 128 + 8192 + 418);
        QVERIFY(Button("Command1")->isEnabled());
        QVERIFY(Button("Command2")->isEnabled());
        QVERIFY(m_window->findChild<QLabel*>(QStringLiteral("lblStatus"))
                    ->text()
                    .contains(made.filePath()));
        test::SaveShot(*m_window, QStringLiteral("silent-wizard-done"));
    }

    void aSizeOfNothingLeavesOneFrameAndTheTag() {
        QSignalSpy finished(m_window.get(), &wizSilent::Finished);
        SizeBox()->setText(QStringLiteral("0"));
        QTest::mouseClick(Button("Command1"), Qt::LeftButton);
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 10000);
        QCOMPARE(QFileInfo(m_folder.filePath(QStringLiteral("0KB.mp3"))).size(),
                 static_cast<qint64>(kSilentFrameBytes + 128));
    }

    void aSizeThatCannotNameAFileIsRefused() {
        QSignalSpy finished(m_window.get(), &wizSilent::Finished);
        QString boxTitle;
        QTimer answer;
        connect(&answer, &QTimer::timeout, this, [&] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                boxTitle = box->windowTitle();
                box->accept();
            }
        });
        answer.start(10);
        SizeBox()->setText(QStringLiteral("1/2"));
        QTest::mouseClick(Button("Command1"), Qt::LeftButton);
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 10000);
        QCOMPARE(finished.at(0).at(0).toBool(), false);
        QTRY_COMPARE_WITH_TIMEOUT(boxTitle, QStringLiteral("Sorry..."), 5000);
        QVERIFY(Button("Command1")->isEnabled());
    }

private:
    QLineEdit* SizeBox() const { return m_window->findChild<QLineEdit*>(QStringLiteral("Text1")); }
    QPushButton* Button(const char* name) const {
        return m_window->findChild<QPushButton*>(QLatin1String(name));
    }

    QTemporaryDir m_folder;
    std::unique_ptr<wizSilent> m_window;
};

}  // namespace jk

QTEST_MAIN(jk::SilentWizardTest)
#include "tst_SilentWizard.moc"
