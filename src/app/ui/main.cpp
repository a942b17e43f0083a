// jukarra: the desktop program. It takes no arguments.

#include <QApplication>

#include "app/ui/DesktopProgram.h"
#include "app/ui/Icons.h"

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("jukarra"));
    QApplication::setApplicationDisplayName(QStringLiteral("Ostrel Jukarra"));
    // The desktop entry, so that a Wayland desktop shows the program's icon and name.
    QGuiApplication::setDesktopFileName(QStringLiteral("jukarra"));
    jk::ChooseFallbackIconTheme();
    QApplication::setWindowIcon(jk::ProgramIcon());
    return jk::RunDesktopProgram(app);
}
