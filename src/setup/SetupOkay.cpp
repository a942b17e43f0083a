#include "setup/SetupOkay.h"

#include "app/CacheCodepage.h"
#include "app/PaneActions.h"
#include "app/Session.h"
#include "catalogue/CacheMaintenance.h"

namespace jk {

void SetupOkay(Session& session, const SetupForm& form, SetupEffects& effects) {
    Settings& settings = session.Settings;
    const std::int16_t oldFilterMode = settings.FilterMode;
    const std::int16_t oldDelMode = settings.DelMode;

    StorePlayerChoice(form, settings);
    const std::int16_t oldShowCurrSong = settings.ShowCurrSong;
    StoreSetupForm(form, settings);
    // The cache holds text decoded in the old code page; the emptied cache is saved at
    // shutdown with the settings that name the new one.
    FlushCacheOnCodepageChange(session, SettingScope::Saved);

    ApplyMaxCache(session);

    effects.SetTop(settings.AlwaysOnTop != 0);
    effects.UpdateWindowsMode(settings.WindowsMode);

    if (settings.FilterMode != oldFilterMode) {
        ApplyFilterMode(session);
        effects.ListCurrentFolderAfresh();
    }
    if (settings.DelMode != oldDelMode) {
        effects.ApplyDelMode(DeleteCommandsEnabled(settings.DelMode));
    }

    effects.ShowGridLines(settings.ShowGrid == 1);
    if (settings.ShowCurrSong != oldShowCurrSong) {
        effects.ShowCurrSongChanged(settings.ShowCurrSong != 0);
    }

    OptimizeCache(session.SongCache, settings.ExpireMode);

    effects.UpdatePlayerMode();
    effects.SetPlayerMode();
    effects.ResizeForm();
}

bool DeleteCommandsEnabled(std::int16_t delMode) {
    return delMode != kDelModeDisabled;
}

}  // namespace jk
