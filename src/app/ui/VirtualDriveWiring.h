#pragma once

// The catalogued discs and the bookmarks brought into the main window: the "&Virtual drives"
// wizards, the summary, "Recurse &virtual drives", the Bookmarks menu, the toolbar keys
// "addvdrive" and "bookmarks", and the watch that marks the inserted discs in the tree.

#include <functional>
#include <memory>
#include <string>
#include <string_view>

class QObject;

namespace jk {

class Main;
class MessageFront;
class MountWatcher;
class PosixFolderLister;
struct Session;

class VirtualDriveWiring {
public:
    // Wires the commands into `main` and sets the session's disc seams.
    VirtualDriveWiring(Session& session, Main& main, MessageFront& messages);
    ~VirtualDriveWiring();
    VirtualDriveWiring(const VirtualDriveWiring&) = delete;
    VirtualDriveWiring& operator=(const VirtualDriveWiring&) = delete;

    // UpdateBookmarks: the menu's entries from Session::Bookmarks.
    void UpdateBookmarks();
    // The inserted discs marked in the tree afresh.
    void UpdatePresentVolumes();
    // From now on a mount or unmount marks the tree anew (start-up's end).
    void WatchMounts();
    // Mark_Click: the bookmark's folder opened (a real one that has gone: its nearest parent).
    void Mark_Click(std::size_t index);

private:
    void WireCommands();
    // After a command that changed the catalogue.
    void ChangeCatalogue(const std::function<bool()>& change);
    void CatalogueChanged();
    void Status(std::string_view text);

    Session& m_session;
    Main& m_main;
    MessageFront& m_messages;
    std::unique_ptr<PosixFolderLister> m_lister;
    std::unique_ptr<QObject> m_context;  // the window's thread, for the watch's calls
    std::unique_ptr<MountWatcher> m_watcher;
};

}  // namespace jk
