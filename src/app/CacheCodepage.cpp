#include "app/CacheCodepage.h"

#include "app/ProfileFile.h"
#include "app/Session.h"
#include "app/SettingsTable.h"
#include "util/Codepage.h"
#include "util/Text.h"

namespace jk {

namespace {

const SettingField& TagCodepageField() {
    static const SettingField* const field = FindSetting("Options.TagCodepage").field;
    return *field;
}

}  // namespace

std::string SavedTagCodepage(const ProfileFile& ini) {
    const SettingField& field = TagCodepageField();
    if (Val(ini.GetINI("INIexists", "Check")) > 0) {
        return ini.GetINI(field.section, field.ReadName());
    }
    return std::string(field.textDefault);
}

bool SameTagCodepage(std::string_view a, std::string_view b) {
    return AsciiLower(SingleByteCodepage::Get(a)->Name()) ==
           AsciiLower(SingleByteCodepage::Get(b)->Name());
}

bool FlushCacheOnCodepageChange(Session& session, SettingScope scope) {
    bool flushed = false;
    if (!SameTagCodepage(session.Settings.TagCodepage, session.CacheCodepage)) {
        session.SongCache.Clear();
        session.CacheCodepage = session.Settings.TagCodepage;
        flushed = true;
    }
    if (scope == SettingScope::ThisRun) {
        session.CacheSaveBlocked = session.CacheSaveBlocked || flushed;
        return false;
    }
    const bool wasBlocked = session.CacheSaveBlocked;
    session.CacheSaveBlocked = false;
    return flushed || wasBlocked;
}

}  // namespace jk
