#include "app/ui/VirtualDriveWiring.h"

#include <QAction>
#include <QMenu>
#include <QMetaObject>

#include "app/Session.h"
#include "app/ui/MainWindow.h"
#include "catalogue/Bookmarks.h"
#include "catalogue/DiscPresence.h"
#include "finders/ui/FinderWindows.h"
#include "platform/DirectoryListing.h"
#include "platform/DiscMounts.h"
#include "setup/ui/VirtualWindows.h"
#include "ui/catalogue/VirtualVolumeDialogs.h"

namespace jk {

VirtualDriveWiring::VirtualDriveWiring(Session& session, Main& main, MessageFront& messages)
    : m_session(session),
      m_main(main),
      m_messages(messages),
      m_lister(std::make_unique<PosixFolderLister>()),
      m_context(std::make_unique<QObject>()) {
    if (!m_session.DiscLister) {
        m_session.DiscLister = &ListMountedDiscs;
    }
    if (!m_session.Ejector) {
        m_session.Ejector = &EjectDisc;
    }
    WireCommands();
}

VirtualDriveWiring::~VirtualDriveWiring() = default;

void VirtualDriveWiring::Status(std::string_view text) {
    m_main.SetPanelText(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
}

void VirtualDriveWiring::WireCommands() {
    Main* main = &m_main;
    const StatusFn status = [this](std::string_view text) { Status(text); };
    m_main.Wire("VirtualCreate", [this, main, status] {
        ChangeCatalogue(
            [&] { return RunVirtualCreate(main, m_session, *m_lister, m_messages, status); });
    });
    m_main.Wire("VirtualUpdate", [this, main, status] {
        ChangeCatalogue(
            [&] { return RunVirtualUpdate(main, m_session, *m_lister, m_messages, status); });
    });
    m_main.Wire("VirtualRemove", [this, main] {
        ChangeCatalogue([&] { return RunVirtualRemove(main, m_session, m_messages); });
    });
    m_main.Wire("VirtualRename", [this, main] {
        ChangeCatalogue([&] { return RunVirtualRename(main, m_session, m_messages); });
    });
    m_main.Wire("VirtualExport", [this, main] { RunVirtualExport(main, m_session, m_messages); });
    m_main.Wire("VirtualImport", [this, main] {
        const QString path = JK2Import(main, QString::fromStdString(m_session.Settings.LastImport));
        ChangeCatalogue(
            [&] { return RunVirtualImport(m_session, path.toStdString(), m_messages); });
    });
    m_main.Wire("VirtualStats", [this, main] { RunVirtualSummary(main, m_session); });
    m_main.Wire("RecurseAllVirtual", [main] { main->RecurseAllVirtual_Click(); });

    m_main.Wire("Bookmark_Add", [this, main] {
        RunBookmarkAdd(main, m_session, main->CurrentFolder());
        UpdateBookmarks();
    });
    const auto editor = [this, main] {
        RunBookmarkEditor(main, m_session, [main](const std::string& location) {
            main->OpenFolder(BookmarkDestination(location));
        });
        UpdateBookmarks();
    };
    m_main.Wire("Bookmark_Edit", editor);
    m_main.Wire("MoreBMarks", editor);
    for (std::size_t i = 0; i < kBookmarkMenuEntries; ++i) {
        const QString name = QStringLiteral("Mark") + QString::number(i + 1);
        if (auto* item = m_main.findChild<QAction*>(name)) {
            QObject::connect(item, &QAction::triggered, &m_main, [this, i] { Mark_Click(i); });
        }
    }
}

// A command that may change the catalogue: an open Search Wizard keeps its index's build off
// the catalogue until the command is over.
void VirtualDriveWiring::ChangeCatalogue(const std::function<bool()>& change) {
    FindersCatalogueChanging(&m_main);
    const bool changed = change();
    FindersCatalogueChanged(&m_main);
    if (changed) {
        CatalogueChanged();
    }
}

void VirtualDriveWiring::CatalogueChanged() {
    m_main.RebuildVirtualRoots();
    UpdatePresentVolumes();
}

void VirtualDriveWiring::UpdateBookmarks() {
    bool more = false;
    const std::vector<std::string> captions = BookmarkMenuCaptions(m_session.Bookmarks, more);
    for (std::size_t i = 0; i < kBookmarkMenuEntries; ++i) {
        const QString name = QStringLiteral("Mark") + QString::number(i + 1);
        auto* item = m_main.findChild<QAction*>(name);
        if (item == nullptr) {
            continue;
        }
        const bool shown = i < captions.size();
        item->setText(shown ? QString::fromStdString(captions[i]) : QString());
        item->setToolTip(shown ? QString::fromStdString(m_session.Bookmarks[i].Location)
                               : QString());
        item->setVisible(shown);
        item->setEnabled(shown);
    }
    if (QAction* moreItem = m_main.Action("MoreBMarks")) {
        moreItem->setVisible(more);
    }
}

void VirtualDriveWiring::Mark_Click(std::size_t index) {
    if (index >= m_session.Bookmarks.size() || m_main.Busy()) {
        return;
    }
    m_main.OpenFolder(BookmarkDestination(m_session.Bookmarks[index].Location));
}

void VirtualDriveWiring::UpdatePresentVolumes() {
    const MountedDiscs discs = m_session.DiscLister ? m_session.DiscLister() : MountedDiscs{};
    m_main.SetPresentVolumes(
        PresentVolumes(m_session.Virtual.Volumes, m_session.Virtual.Discs, discs));
}

void VirtualDriveWiring::WatchMounts() {
    UpdatePresentVolumes();
    // The watch calls from a thread of its own: the tree is marked on the window's.
    // A call still queued when this goes is dropped with its context object.
    QObject* context = m_context.get();
    m_watcher = std::make_unique<MountWatcher>([this, context] {
        QMetaObject::invokeMethod(
            context, [this] { UpdatePresentVolumes(); }, Qt::QueuedConnection);
    });
}

}  // namespace jk
