#include "setup/ui/VirtualWindows.h"

#include <QApplication>
#include <QDir>
#include <QStandardPaths>

#include "app/MessageFront.h"
#include "app/Session.h"
#include "app/VirtualDrives.h"
#include "catalogue/DiscPresence.h"
#include "catalogue/VirtualSummary.h"
#include "ui/catalogue/BookmarkWindows.h"
#include "ui/catalogue/DialogParts.h"
#include "ui/catalogue/VirtualVolumeDialogs.h"
#include "ui/catalogue/Virtual_Summary.h"
#include "ui/catalogue/wizVirtual.h"
#include "util/Text.h"

namespace jk {
namespace {

std::vector<std::string> History(const TextList4& keys) {
    return {keys.begin() + 1, keys.end()};
}

// The commands' front: status panel 5, the open window's caption and bar, messages as boxes.
class WindowFront final : public VirtualFront {
public:
    using ProgressFn = std::function<bool(std::string_view, int, int)>;
    WindowFront(MessageFront& messages, const StatusFn& status, ProgressFn progress = {})
        : m_messages(messages), m_status(status), m_progress(std::move(progress)) {}

    void SetStatus(std::string_view text) override {
        if (m_status) {
            m_status(text);
        }
    }
    bool Progress(std::string_view caption, int value, int maximum) override {
        return !m_progress || m_progress(caption, value, maximum);
    }
    void ShowMessage(const UserMessage& message) override {
        // A box is answered with the normal pointer, even in the midst of busy work.
        const bool busy = QApplication::overrideCursor() != nullptr;
        if (busy) {
            QApplication::restoreOverrideCursor();
        }
        m_messages.ShowMessage(message);
        if (busy) {
            QApplication::setOverrideCursor(Qt::WaitCursor);
        }
    }

private:
    MessageFront& m_messages;
    const StatusFn& m_status;
    ProgressFn m_progress;
};

// The busy pointer while an image is written or read in one go: a large one takes a moment
// and has no steps to show.
class BusyPointer {
public:
    BusyPointer() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~BusyPointer() { QApplication::restoreOverrideCursor(); }
    BusyPointer(const BusyPointer&) = delete;
    BusyPointer& operator=(const BusyPointer&) = delete;
};

}  // namespace

bool RunVirtualCreate(QWidget* parent, Session& session, FolderLister& lister,
                      MessageFront& messages, const StatusFn& status) {
    Settings& settings = session.Settings;
    VirtualWizardState state{History(settings.VRnewdrives), History(settings.VRnewvolumes),
                             settings.VirtualEject != 0, settings.VirtualNoCache != 0};
    bool changed = false;
    wizVirtual* wizard = nullptr;
    VirtualWizardHooks hooks;
    hooks.DiscLabel = [&session](const std::string& path) {
        const MountedDiscs discs = session.DiscLister ? session.DiscLister() : MountedDiscs();
        const MountedDisc* disc = DiscOfPath(discs, path);
        return disc != nullptr ? std::string(Trim(disc->Label)) : std::string();
    };
    hooks.NameAccepted = [&session, &messages](const std::string& name) {
        if (VolumeNameAccepted(session, name)) {
            return true;
        }
        messages.ShowMessage(VolumeNameRefusedMessage());
        return false;
    };
    hooks.Create = [&](const std::string& path, const std::string& name, bool noCache, bool eject) {
        WindowFront front(messages, status, [&wizard](std::string_view caption, int v, int m) {
            return wizard->Progress(caption, v, m);
        });
        const ScanOutcome outcome = CreateVirtualDrive(session, lister, path, name, noCache, front);
        changed = true;
        if (outcome.added && eject && session.Ejector) {
            session.Ejector(path);
        }
        return outcome.added;
    };
    wizVirtual window(state, std::move(hooks), parent);
    wizard = &window;
    window.exec();
    // CleanUp: the histories and the boxes.
    if (!Trim(window.Path()).empty()) {
        ShiftHistory(window.Path(), settings.VRnewdrives);
    }
    if (!Trim(window.Name()).empty()) {
        ShiftHistory(window.Name(), settings.VRnewvolumes);
    }
    settings.VirtualEject = window.Eject() ? 1 : 0;
    settings.VirtualNoCache = window.NoCache() ? 1 : 0;
    return changed;
}

bool RunVirtualUpdate(QWidget* parent, Session& session, FolderLister& lister,
                      MessageFront& messages, const StatusFn& status) {
    bool changed = false;
    Virtual_Update* dialog = nullptr;
    auto update = [&](const UpdateRequest& request) {
        WindowFront front(messages, status, [&dialog](std::string_view caption, int v, int m) {
            return dialog->Progress(caption, v, m);
        });
        VirtualUpdate(session, lister, request.Name, request.Path, request.Eject, request.NoCache,
                      front);
        changed = true;
    };
    Virtual_Update window(GetVirtualVolumes(session.Virtual.Volumes),
                          History(session.Settings.VRupdates), session.Settings.VirtualEject != 0,
                          session.Settings.VirtualNoCache != 0, update, parent);
    dialog = &window;
    window.exec();
    return changed;
}

bool RunVirtualRemove(QWidget* parent, Session& session, MessageFront& messages) {
    bool changed = false;
    Virtual_Remove window(
        GetVirtualVolumes(session.Virtual.Volumes),
        [&](const std::vector<std::string>& names) {
            WindowFront front(messages, {});
            VirtualRemove(session, names, front);
            changed = true;
        },
        parent);
    window.exec();
    return changed;
}

bool RunVirtualRename(QWidget* parent, Session& session, MessageFront& messages) {
    bool changed = false;
    Virtual_Rename window(
        GetVirtualVolumes(session.Virtual.Volumes), History(session.Settings.VRrenames),
        [&](const std::string& oldName, const std::string& newName) {
            WindowFront front(messages, {});
            const bool renamed = VirtualRename(session, oldName, newName, front);
            changed |= renamed;
            return renamed;
        },
        parent);
    window.exec();
    return changed;
}

void RunVirtualExport(QWidget* parent, Session& session, MessageFront& messages) {
    const QString sample = QDir(QStandardPaths::writableLocation(QStandardPaths::MusicLocation))
                               .filePath(QStringLiteral("export.jvd"));
    Virtual_Export window(
        GetVirtualVolumes(session.Virtual.Volumes), History(session.Settings.VRexports), sample,
        [&](const std::vector<std::string>& names, const std::string& path) {
            ExportResult result;
            {
                const BusyPointer busy;
                result = VirtualExport(session, names, path);
            }
            if (!result.io.ok) {
                messages.ShowMessage({result.io.error, "Sorry...", MessageIcon::Warning});
            }
        },
        parent);
    window.exec();
}

bool RunVirtualImport(Session& session, const std::string& path, MessageFront& messages) {
    if (path.empty()) {
        return false;
    }
    WindowFront front(messages, {});
    const BusyPointer busy;
    VirtualImport(session, path, front);
    return true;
}

void RunVirtualSummary(QWidget* parent, const Session& session) {
    Virtual_Summary window(
        SummarizeVolumes(session.Virtual.Volumes, session.Settings.ExactTimes != 0), parent);
    window.exec();
}

void RunBookmarkAdd(QWidget* parent, Session& session, const std::string& currentFolder) {
    wizBookmark window(
        currentFolder, [&session](const Bookmark& mark) { session.Bookmarks.push_back(mark); },
        parent);
    window.exec();
}

void RunBookmarkEditor(QWidget* parent, Session& session,
                       const std::function<void(const std::string& location)>& jump) {
    Bookmarks window(
        session.Bookmarks, [&session](const BookmarkList& edited) { session.Bookmarks = edited; },
        [&jump](const std::string& location) {
            if (jump) {
                jump(BookmarkDestination(location));
            }
        },
        parent);
    window.exec();
}

}  // namespace jk
