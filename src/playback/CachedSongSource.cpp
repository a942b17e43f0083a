#include "playback/CachedSongSource.h"

#include "metadata/GetSongInfo.h"

namespace jk {

SongSource CachedSongSource(SongLookupContext& ctx) {
    return [&ctx](std::string& path) { return GetSongInfo(path, false, ctx); };
}

}  // namespace jk
