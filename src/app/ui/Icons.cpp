#include "app/ui/Icons.h"

#include <utility>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QStyle>

namespace jk {

namespace {

constexpr std::pair<std::string_view, QStyle::StandardPixmap> kStyleFallbacks[] = {
    {"document-new", QStyle::SP_FileIcon},
    {"document-open", QStyle::SP_DialogOpenButton},
    {"document-save", QStyle::SP_DialogSaveButton},
    {"document-save-as", QStyle::SP_DialogSaveButton},
    {"go-up", QStyle::SP_ArrowUp},
    {"go-down", QStyle::SP_ArrowDown},
    {"go-top", QStyle::SP_ArrowUp},
    {"go-bottom", QStyle::SP_ArrowDown},
    {"view-refresh", QStyle::SP_BrowserReload},
    {"edit-delete", QStyle::SP_TrashIcon},
    {"media-playback-start", QStyle::SP_MediaPlay},
    {"media-playlist-play", QStyle::SP_MediaPlay},
    {"media-playback-pause", QStyle::SP_MediaPause},
    {"media-playback-stop", QStyle::SP_MediaStop},
    {"media-skip-backward", QStyle::SP_MediaSkipBackward},
    {"media-skip-forward", QStyle::SP_MediaSkipForward},
    {"media-seek-backward", QStyle::SP_MediaSeekBackward},
    {"media-seek-forward", QStyle::SP_MediaSeekForward},
    {"help-about", QStyle::SP_MessageBoxInformation},
    {"help-contents", QStyle::SP_DialogHelpButton},
    {"folder-music", QStyle::SP_DirIcon},
    {"folder-open", QStyle::SP_DirOpenIcon},
    {"computer", QStyle::SP_ComputerIcon},
    {"media-optical", QStyle::SP_DriveCDIcon},
    {"document-properties", QStyle::SP_FileDialogDetailedView},
    {"system-search", QStyle::SP_FileDialogContentsView},
    {"bookmarks", QStyle::SP_DirLinkIcon},
    {"application-exit", QStyle::SP_DialogCloseButton},
    {"window-close", QStyle::SP_TitleBarCloseButton},
};

QString Name(std::string_view name) {
    return QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size()));
}

QIcon Fallback(std::string_view name) {
    const QString bundled = QStringLiteral(":/icons/%1.svg").arg(Name(name));
    if (QFile::exists(bundled)) {
        QIcon icon(bundled);
        if (!icon.pixmap(16, 16).isNull()) {
            return icon;
        }
    }
    const QStyle* style = QApplication::style();
    for (const auto& [known, pixmap] : kStyleFallbacks) {
        if (known == name && style != nullptr) {
            return style->standardIcon(pixmap);
        }
    }
    return {};
}

bool ThemeHasActionIcons() {
    return QIcon::hasThemeIcon(QStringLiteral("document-open")) &&
           QIcon::hasThemeIcon(QStringLiteral("list-add"));
}

}  // namespace

QIcon ThemeIcon(std::string_view name) {
    if (name.empty()) {
        return {};
    }
    return QIcon::fromTheme(Name(name), Fallback(name));
}

QIcon ProgramIcon() {
    QIcon icon = QIcon::fromTheme(QStringLiteral("jukarra"));
    if (icon.isNull() || icon.pixmap(32, 32).isNull()) {
        icon = QIcon(QStringLiteral(":/icons/jukarra.svg"));
    }
    if (icon.pixmap(32, 32).isNull()) {
        const QStyle* style = QApplication::style();
        icon = style != nullptr ? style->standardIcon(QStyle::SP_MediaVolume) : QIcon();
    }
    return icon;
}

void ChooseFallbackIconTheme() {
    if (ThemeHasActionIcons()) {
        return;
    }
    const QString original = QIcon::themeName();
    const QStringList paths = QIcon::themeSearchPaths();
    for (const QString& theme : {QStringLiteral("breeze"), QStringLiteral("Adwaita"),
                                 QStringLiteral("oxygen"), QStringLiteral("Tango")}) {
        for (const QString& path : paths) {
            if (QFile::exists(QDir(path).filePath(theme + QStringLiteral("/index.theme")))) {
                QIcon::setThemeName(theme);
                if (ThemeHasActionIcons()) {
                    return;
                }
            }
        }
    }
    QIcon::setThemeName(original);
}

}  // namespace jk
