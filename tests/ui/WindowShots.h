#pragma once

// Pictures of windows for a person to look at: when JUKARRA_SCREENSHOT_DIR names a folder, a
// test saves the windows it shows there as PNG files; otherwise nothing is written.

#include <QByteArray>
#include <QDir>
#include <QPixmap>
#include <QString>
#include <QTest>
#include <QWidget>

namespace jk::test {

// A window already on screen, as it stands, without turning the event loop.
inline void SaveShotNow(QWidget& window, const QString& name) {
    const QByteArray folder = qgetenv("JUKARRA_SCREENSHOT_DIR");
    if (folder.isEmpty()) {
        return;
    }
    const QString path =
        QDir(QString::fromLocal8Bit(folder)).filePath(name + QStringLiteral(".png"));
    QVERIFY2(window.grab().save(path), qPrintable(path));
}

inline void SaveShot(QWidget& window, const QString& name) {
    if (qEnvironmentVariableIsEmpty("JUKARRA_SCREENSHOT_DIR")) {
        return;
    }
    window.show();
    QTest::qWait(50);  // let the window paint at its own size
    SaveShotNow(window, name);
}

}  // namespace jk::test
