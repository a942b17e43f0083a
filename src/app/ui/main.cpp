// jukarra: the desktop program. It takes no arguments.

#include <QApplication>

#include "app/ui/DesktopProgram.h"

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("jukarra"));
    return jk::RunDesktopProgram(app);
}
