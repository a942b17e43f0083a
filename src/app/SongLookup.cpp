#include "app/SongLookup.h"

#include "app/Session.h"
#include "util/Codepage.h"

namespace jk {

SongReadOptions SongReadOptionsOf(const Session& session) {
    const Settings& settings = session.Settings;
    SongReadOptions options;
    options.readId3v2 = settings.ReadID3v2 != 0;
    options.exactTimes = settings.ExactTimes != 0;
    options.codepage = SingleByteCodepage::Get(settings.TagCodepage);
    options.volumeLabel = session.VolumeLabelLookup;
    return options;
}

SongLookup MakeSongLookup(Session& session) {
    return SongLookup(session.SongCache,
                      {.totalCacheHits = session.Settings.TotalCacheHits,
                       .cacheHits = session.Settings.CacheHits},
                      SongReadOptionsOf(session));
}

}  // namespace jk
