#include "app/CacheSaving.h"

#include <array>
#include <string_view>

#include "app/CacheCodepage.h"
#include "app/ProfileFile.h"
#include "app/Session.h"
#include "app/SettingsStore.h"
#include "app/SettingsTable.h"
#include "catalogue/CacheMaintenance.h"
#include "catalogue/VBaseFile.h"
#include "util/Text.h"

namespace jk {

namespace {

constexpr std::array<std::string_view, 2> kCounterNames = {"Records.TotalCacheHits",
                                                           "Records.CacheHits"};

bool RecordsPreviousRun(const ProfileFile& ini) {
    return Val(ini.GetINI("INIexists", "Check")) > 0;
}

// The settings file as it will be saved, made ready in memory. `cacheMustFollow` tells whether
// cache.dat has to be written to agree with it.
ProfileFile SettingsWithCounters(Session& session, bool& cacheMustFollow) {
    ProfileFile ini = ProfileFile::Load(IniPath(session));
    if (!RecordsPreviousRun(ini)) {
        WriteINI(session.Settings, ini);
        cacheMustFollow = FlushCacheOnCodepageChange(session, SettingScope::Saved);
        return ini;
    }
    for (const std::string_view name : kCounterNames) {
        const SettingField& field = *FindSetting(name).field;
        ini.PutINI(field.section, field.key, SettingText(session.Settings, field));
    }
    cacheMustFollow = false;
    return ini;
}

IoResult FirstFailure(const IoResult& first, const IoResult& second) {
    return first.ok ? second : first;
}

}  // namespace

IoResult SaveSessionCache(Session& session) {
    if (session.CacheSaveBlocked) {
        return {};
    }
    return SaveCache(session.SongCache, session.AppPath);
}

IoResult SaveCacheCounters(Session& session) {
    bool cacheMustFollow = false;
    const ProfileFile ini = SettingsWithCounters(session, cacheMustFollow);
    const IoResult cache = cacheMustFollow ? SaveSessionCache(session) : IoResult{};
    return FirstFailure(cache, ini.Save(IniPath(session)));
}

IoResult SaveLookupResults(Session& session) {
    TrimCache(session.SongCache, session.CacheLimit, session.CacheFrozen);
    // The settings first in memory: a first run's whole settings decide whether the cache may
    // be saved.
    bool cacheMustFollow = false;
    const ProfileFile ini = SettingsWithCounters(session, cacheMustFollow);
    const IoResult cache = SaveSessionCache(session);
    return FirstFailure(cache, ini.Save(IniPath(session)));
}

}  // namespace jk
