#pragma once

// "Okay" of the Setup Browser: the controls stored into the settings, then each change applied,
// in the order the program always applied them. What it changes in the main window goes through
// SetupEffects, which the main window implements.

#include <cstdint>

#include "setup/SetupForm.h"

namespace jk {

struct Session;

class SetupEffects {
public:
    virtual ~SetupEffects() = default;

    // SetTop: the main window stays above others or not, by AlwaysOnTop.
    virtual void SetTop(bool alwaysOnTop) = 0;
    // UpdateWindowsMode: 0 taskbar only, 1 taskbar and tray, 2 tray only.
    virtual void UpdateWindowsMode(std::int16_t windowsMode) = 0;
    // After a new FilterMode (the session's FileFilter already follows it): the current folder
    // listed afresh.
    virtual void ListCurrentFolderAfresh() = 0;
    // ApplyDelMode: the delete commands on or off.
    virtual void ApplyDelMode(bool deleteCommandsEnabled) = 0;
    // ShowLVGrid on both list panes.
    virtual void ShowGridLines(bool on) = 0;
    // ShowCurrSong was switched: the status bar shows the playing song, or stops showing it.
    virtual void ShowCurrSongChanged(bool on) = 0;
    // UpdatePlayerMode, then SetPlayerMode: the player's kind and the commands shown for it,
    // from the player path and the settings as they now stand.
    virtual void UpdatePlayerMode() = 0;
    virtual void SetPlayerMode() = 0;
    // ResizeForm: the panes laid out anew (LayoutMode may have changed).
    virtual void ResizeForm() = 0;
};

// Command1_Click without the closing of the window:
// 1. the player list's text at the head of the last players, and the player path;
// 2. ShowCurrSong's old value kept for comparison;
// 3. the keys stored (StoreSetupForm), and a new tag code page empties the song cache;
// 4. CacheLimit from MaxCache;
// 5. SetTop, UpdateWindowsMode;
// 6. a new FilterMode applied (ApplyMode) and the current folder listed afresh; a new DelMode
//    applied (ApplyDelMode);
// 7. the grid lines as ShowGrid says (on when it is 1), and the playing song's display when
//    ShowCurrSong changed;
// 8. OptimizeCache, so that a shorter expiry takes effect at once;
// 9. UpdatePlayerMode, SetPlayerMode, ResizeForm.
void SetupOkay(Session& session, const SetupForm& form, SetupEffects& effects);

// ApplyDelMode's rule: DelMode 2 ("Disabled") switches the delete commands off, any other
// value on.
bool DeleteCommandsEnabled(std::int16_t delMode);

}  // namespace jk
