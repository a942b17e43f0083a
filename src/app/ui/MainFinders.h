#pragma once

// The finders opened from the main window: the Search Wizard ("Wizard_Search", which the
// toolbar key "search" runs), the Duplicate Finder ("DupeWiz") and the Selection Wizard
// ("Wizard_Selection"), over a host filled from the session, the panes, the file operations
// and the player.

#include <memory>
#include <string>
#include <vector>

#include "app/SongLookup.h"
#include "browse/FolderScan.h"
#include "finders/VolumeTableView.h"
#include "finders/ui/FinderHost.h"

namespace jk {

class Main;
class PlayerBridge;
class PosixFolderLister;
struct Session;

class MainFinders {
public:
    // `player` may be null: the play commands then do nothing. Wires the three commands.
    MainFinders(Session& session, Main& main, PlayerBridge* player);
    ~MainFinders();
    MainFinders(const MainFinders&) = delete;
    MainFinders& operator=(const MainFinders&) = delete;

    // The bridge the result lists' play commands go through.
    void UsePlayer(PlayerBridge* player) { m_player = player; }
    // The host with the panes' rows, the current folder and the drives read afresh.
    FinderHost& Host();

private:
    void AddToPlaylist(RowList rows);
    void WipePlaylist();
    void SelectionChanged();
    void CopyOrMove(const std::vector<std::string>& paths, bool move);
    void Play(const RowList& rows, PlayRequest how);

    Session& m_session;
    Main& m_main;
    PlayerBridge* m_player;
    std::unique_ptr<PosixFolderLister> m_lister;
    std::unique_ptr<SongLookup> m_lookup;
    RealFileSetup m_realFiles;
    VolumeTableView m_catalogue;
    FinderHost m_host;
};

}  // namespace jk
