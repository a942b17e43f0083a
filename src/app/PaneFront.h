#pragma once

// What start-up and shutdown show in the main window's panes: the folder tree, the lists and
// the status panel. A front end without panes keeps every empty default.

#include <string_view>

namespace jk {

class PaneFront {
public:
    virtual ~PaneFront() = default;

    // ---- The folder tree ----
    // One folder tree root for each catalogued volume.
    virtual void LoadVirtualFolders() {}
    virtual void UpdateBookmarks() {}
    // Opens the folder tree down to a folder and lists it.
    virtual void OpenFolder(std::string_view /*path*/) {}

    // ---- The lists ----
    // The recent lists of the File menu.
    virtual void UpdateLastLists() {}
    virtual void ListStats() {}
    // The File menu's save command for the open playlist.
    virtual void SaveListClick() {}

    // ---- The status panel ----
    // Panel 5 of the status bar.
    virtual void SetPanelText(std::string_view /*text*/) {}
};

}  // namespace jk
