#include "setup/ui/SessionWindows.h"

#include "app/Session.h"
#include "catalogue/CachePerformance.h"
#include "ui/catalogue/wizCache.h"
#include "ui/metadata/wizSilent.h"

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
