#include "ui/catalogue/DialogParts.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QFile>
#include <QIcon>
#include <QLabel>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>

// The bundled icons live in the library's resources, which a static library must ask for.
static void InitCatalogueIcons() {
    Q_INIT_RESOURCE(catalogue_icons);
}

namespace jk {

std::string ToStdString(const QString& text) {
    return text.toStdString();
}

QPushButton* DialogButton(std::string_view caption, const char* name) {
    auto* button = new QPushButton(ToQString(caption));
    button->setObjectName(QLatin1String(name));
    button->setAutoDefault(false);
    return button;
}

QIcon ThemedIcon(const char* name) {
    static const bool loaded = [] {
        InitCatalogueIcons();
        return true;
    }();
    (void)loaded;
    const QString theme = QLatin1String(name);
    const QString bundled = QStringLiteral(":/icons/%1.svg").arg(theme);
    return QIcon::fromTheme(theme, QFile::exists(bundled) ? QIcon(bundled) : QIcon());
}

QComboBox* HistoryCombo(const std::vector<std::string>& history, const char* name,
                        const QString& first) {
    auto* combo = new QComboBox;
    combo->setObjectName(QLatin1String(name));
    combo->setEditable(true);
    combo->setInsertPolicy(QComboBox::NoInsert);
    combo->setMinimumContentsLength(32);
    for (const std::string& entry : history) {
        if (!entry.empty()) {
            combo->addItem(ToQString(entry));
        }
    }
    if (!first.isEmpty()) {
        combo->setEditText(first);
    } else if (combo->count() > 0) {
        combo->setCurrentIndex(0);
    }
    return combo;
}

QListWidget* VolumeList(const std::vector<std::string>& names, bool several, const char* name) {
    auto* list = new QListWidget;
    list->setObjectName(QLatin1String(name));
    list->setSelectionMode(several ? QAbstractItemView::ExtendedSelection
                                   : QAbstractItemView::SingleSelection);
    for (const std::string& volume : names) {
        auto* item = new QListWidgetItem(ToQString(volume), list);
        item->setIcon(QIcon::fromTheme(QStringLiteral("media-optical")));
    }
    return list;
}

std::vector<std::string> SelectedNames(const QListWidget& list) {
    std::vector<std::string> names;
    for (int row = 0; row < list.count(); ++row) {
        if (list.item(row)->isSelected()) {
            names.push_back(ToStdString(list.item(row)->text()));
        }
    }
    return names;
}

bool DialogScanProgress::Update(std::string_view caption, int value, int maximum) {
    m_caption.setText(ToQString(caption));
    if (maximum > 0) {
        m_bar.setRange(0, maximum);
        m_bar.setValue(std::min(value, maximum));
    } else {
        m_bar.setRange(0, 0);  // busy: the walk does not know its end
    }
    if (!m_sinceYield.isValid() || m_sinceYield.elapsed() >= 50) {
        QCoreApplication::processEvents();
        m_sinceYield.start();
    }
    return !m_stopped;
}

}  // namespace jk
