#include "browse/CacheScan.h"

#include <optional>
#include <utility>

#include "catalogue/SongCache.h"

namespace jk {
namespace {

SongReadFn ReadThroughCache(SongLookupContext& ctx) {
    return [&ctx](std::string& path, const PrefetchedBytes* prefetched) {
        return GetSongInfo(path, false, ctx, prefetched);
    };
}

SongViewFn ViewThroughCache(SongLookupContext& ctx) {
    return [&ctx](std::string& path, const PrefetchedBytes* prefetched, SongInfo& read,
                  SongView& view) { return GetSongView(path, false, ctx, prefetched, read, view); };
}

}  // namespace

CacheStampLookup CacheStampsOf(SongLookupContext& ctx) {
    return [&ctx](std::string_view path) -> std::optional<std::string> {
        thread_local std::string key;
        CacheKeyInto(path, key);
        const std::int64_t index = CacheFind(ctx.cache, key);
        if (index < 1) {
            return std::nullopt;
        }
        return std::string(ctx.cache.DateOf(index));
    };
}

ScanSetup CacheScanSetup(SongLookupContext& ctx, FolderLister& lister, int filterMode,
                         ScanProgressFn progress, int readAheadThreads) {
    ScanSetup setup;
    setup.Lister = &lister;
    setup.FilterMode = filterMode;
    setup.ReadSong = ReadThroughCache(ctx);
    setup.ReadSongView = ViewThroughCache(ctx);
    setup.CacheStamp = CacheStampsOf(ctx);
    setup.Progress = std::move(progress);
    setup.ReadAheadThreads = readAheadThreads;
    return setup;
}

bool ScanAddSong(std::string path, RowList& rows, int filterMode, SongLookupContext& ctx,
                 const PrefetchedBytes* prefetched) {
    return ScanAddSong(std::move(path), rows, filterMode, ViewThroughCache(ctx), prefetched);
}

}  // namespace jk
