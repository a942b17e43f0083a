// Renders the program's icon drawing into PNG files of the given sizes, for the icon theme's
// fixed-size folders: render_icon SVG OUTDIR SIZE... writes OUTDIR/SIZE/jukarra.png.

#include <cstdio>

#include <QDir>
#include <QGuiApplication>
#include <QIcon>
#include <QImage>
#include <QPainter>

int main(int argc, char** argv) {
    QGuiApplication app(argc, argv);
    if (argc < 4) {
        std::fprintf(stderr, "usage: render_icon SVG OUTDIR SIZE...\n");
        return 1;
    }
    const QIcon icon(QString::fromLocal8Bit(argv[1]));
    const QDir out(QString::fromLocal8Bit(argv[2]));
    for (int i = 3; i < argc; ++i) {
        const int size = QByteArray(argv[i]).toInt();
        QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        {
            QPainter painter(&image);
            icon.paint(&painter, QRect(0, 0, size, size));
        }
        if (image.isNull() || qAlpha(image.pixel(size / 2, size / 2)) == 0) {
            std::fprintf(stderr, "render_icon: could not draw %s (is Qt's SVG plug-in there?)\n",
                         argv[1]);
            return 2;
        }
        out.mkpath(QString::number(size));
        const QString file = out.filePath(QString::number(size) + QStringLiteral("/jukarra.png"));
        if (!image.save(file, "PNG")) {
            std::fprintf(stderr, "render_icon: could not write %s\n", qPrintable(file));
            return 2;
        }
    }
    return 0;
}
