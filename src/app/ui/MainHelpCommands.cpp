// The Help menu (tips, the program's own help pages, about) and the tray's window commands.

#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QMessageBox>
#include <QUrl>

#include "app/HelpPages.h"
#include "app/Session.h"
#include "app/Version.h"
#include "app/ui/Icons.h"
#include "app/ui/MainWindow.h"
#include "app/ui/TipsDialog.h"
#include "ui/common/QtText.h"

namespace jk {

namespace {

// The folder of the help pages: installed beside the program, or in the build tree.
QString HelpFolder() {
    const std::string program = QCoreApplication::applicationDirPath().toStdString();
    for (const std::string& folder : HelpFolderCandidates(program)) {
        if (QFileInfo::exists(QString::fromStdString(folder + "/index.html"))) {
            return QString::fromStdString(folder);
        }
    }
    return {};
}

}  // namespace

void Main::Tips_Click() {
    // Beside the window, not in its way: start-up goes on while the tip is read.
    if (m_tips == nullptr) {
        m_tips = new TipsDialog(m_session.Settings, this);
    }
    m_tips->ShowNext();
    m_tips->show();
    m_tips->raise();
}

void Main::HelpPage_Click(std::string_view item) {
    const QString folder = HelpFolder();
    if (folder.isEmpty()) {
        QMessageBox::information(this, QStringLiteral("Sorry..."),
                                 QStringLiteral("The help pages are not installed."));
        return;
    }
    // A local page: the program itself asks nothing of the network.
    QDesktopServices::openUrl(
        QUrl::fromLocalFile(QDir(folder).filePath(ToQString(HelpPageFile(item)))));
}

void Main::AboutJK2_Click() {
    QMessageBox box(this);
    box.setWindowTitle(QStringLiteral("About Ostrel Jukarra"));
    box.setIconPixmap(ProgramIcon().pixmap(64, 64));
    box.setTextFormat(Qt::RichText);
    box.setText(QStringLiteral("<h3>Ostrel Jukarra %1</h3><p>version %1 - %2</p>")
                    .arg(ToQString(kVersionText), ToQString(kBuildDateText)));
    box.setInformativeText(
        QStringLiteral("A manager for your collection of MP3 files: browse your folders and "
                       "discs, build playlists, shuffle them and hand them to your player."));
    box.exec();
}

void Main::restore_Click() {
    if (isMinimized()) {
        showNormal();
    }
    show();
    raise();
    activateWindow();
}

void Main::Minimize_Click() {
    showMinimized();
}

void Main::close_Click() {
    close();
}

}  // namespace jk
