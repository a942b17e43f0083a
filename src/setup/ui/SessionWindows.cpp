#include "setup/ui/SessionWindows.h"

#include "app/Session.h"
#include "catalogue/CachePerformance.h"
#include "catalogue/ui/wizCache.h"
#include "metadata/ui/wizSilent.h"

namespace jk {

void RunCacheWizard(QWidget* parent, Session& session) {
    CachePerformance performance(session.SongCache, session.Settings.TotalCacheHits,
                                 session.Settings.CacheHits, session.CacheLimit,
                                 session.Settings.ExpireMode);
    ShowCachePerformance(parent, performance);
}

void RunSilentWizard(QWidget* parent, const Session& session) {
    ShowSilentWizard(parent, session.AppPath);
}

}  // namespace jk
