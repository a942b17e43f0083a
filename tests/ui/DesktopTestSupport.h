#pragma once

// What the window tests share: a data folder in a QTemporaryDir, the settings file of a
// previous run, and an answerer for the message boxes that open.

#include <string>

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QFile>
#include <QList>
#include <QMessageBox>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "WindowShots.h"

#include "app/ProfileFile.h"
#include "app/Session.h"
#include "app/ui/DesktopProgram.h"
#include "playback/SongRows.h"

namespace jk::test {

struct SeenBox {
    QString title;
    QString text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
};

// Answers every message box that opens with the next of the given buttons, and writes down what
// each box said. A box beyond the answers is rejected (and still written down).
class BoxAnswerer {
public:
    explicit BoxAnswerer(QList<QMessageBox::StandardButton> answers) : m_answers(answers) {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { Poll(); });
        m_timer.start(10);
    }
    QList<SeenBox> seen;
    // Other modal windows (the Setup Browser of a first run), closed with Cancel.
    QStringList dialogs;

private:
    void Poll() {
        QWidget* modal = QApplication::activeModalWidget();
        auto* box = qobject_cast<QMessageBox*>(modal);
        if (box == nullptr) {
            if (auto* dialog = qobject_cast<QDialog*>(modal)) {
                dialogs.append(dialog->windowTitle());
                SaveShotNow(*dialog, QStringLiteral("dialog-") + dialog->windowTitle());
                dialog->reject();
            }
            return;
        }
        if (box == m_last) {
            return;
        }
        m_last = box;
        seen.append({box->windowTitle(), box->text(), box->icon()});
        if (m_answers.isEmpty()) {
            box->reject();
            return;
        }
        box->button(m_answers.takeFirst())->click();
    }

    QList<QMessageBox::StandardButton> m_answers;
    QTimer m_timer;
    // Guarded: the next box may be built where the last one stood.
    QPointer<QMessageBox> m_last;
};

// The data folder's path as the program holds it, ending in "/".
inline std::string FolderOf(const QTemporaryDir& dir) {
    return dir.path().toStdString() + "/";
}

inline QString FileText(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

inline QString IniText(const QTemporaryDir& dir) {
    return FileText(dir.filePath(QStringLiteral("jukarra2.ini")));
}

inline std::string IniValue(const QTemporaryDir& dir, const char* section, const char* key) {
    return ProfileFile::Load(dir.filePath(QStringLiteral("jukarra2.ini")).toStdString())
        .GetINI(section, key);
}

// The settings file of a previous run, with `more` (CR LF lines) behind its window size.
inline void WritePreviousRun(const QTemporaryDir& dir, const QByteArray& more = {}) {
    QFile ini(dir.filePath(QStringLiteral("jukarra2.ini")));
    QVERIFY(ini.open(QIODevice::WriteOnly));
    ini.write("[INIexists]\r\nCheck=1\r\n[WindowPosition]\r\nWidth=9000\r\nHeight=6000\r\n" + more);
}

// A desktop program started over a fresh data folder that holds a previous run's settings.
struct StartedProgram {
    StartedProgram() : program(Prepared(dir), data) { program.Start(); }

    QTemporaryDir dir;
    SessionData data;
    DesktopProgram program;

private:
    static std::string Prepared(const QTemporaryDir& folder) {
        WritePreviousRun(folder);
        return FolderOf(folder);
    }
};

// A playlist of `count` songs that changed since it was saved.
inline void GiveUnsavedRows(Session& session, int count) {
    for (int i = 0; i < count; ++i) {
        session.Playlist.Rows.push_back(GhostRow("/music/song" + std::to_string(i) + ".mp3"));
    }
    session.Playlist.PlaylistSaved = false;
}

}  // namespace jk::test
