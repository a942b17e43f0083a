#include "playback/CachedSongSource.h"

#include <utility>

#include "browse/CacheScan.h"
#include "browse/ReadAhead.h"
#include "browse/WalkRules.h"
#include "metadata/GetSongInfo.h"

namespace jk {

namespace {

// Every line of a list names a song, whatever its name: all are read ahead.
class ReadAheadOfList final : public SongReading {
public:
    explicit ReadAheadOfList(SongLookupContext& ctx)
        : m_scanner(kFilterAll,
                    [this, &ctx](std::string& path, const PrefetchedBytes* prefetched) {
                        // The caller's string takes the path, so the view may point into it.
                        std::swap(*m_path, path);
                        m_found = GetSongView(*m_path, false, ctx, prefetched, *m_read, *m_view);
                    },
                    CacheStampsOf(ctx)) {}

    void Announce(std::string path) override { m_scanner.Announce(std::move(path)); }

    bool ViewNext(std::string& path, SongInfo& read, SongView& view) override {
        m_path = &path;
        m_read = &read;
        m_view = &view;
        m_found = false;
        m_scanner.ScanNext();
        return m_found;
    }

private:
    std::string* m_path = nullptr;
    SongInfo* m_read = nullptr;
    SongView* m_view = nullptr;
    bool m_found = false;
    ReadAheadScanner m_scanner;
};

}  // namespace

SongSource CachedSongSource(SongLookupContext& ctx) {
    return SongSource([&ctx](std::string& path) { return GetSongInfo(path, false, ctx); },
                      [&ctx](std::string& path, SongInfo& read, SongView& view) {
                          return GetSongView(path, false, ctx, nullptr, read, view);
                      },
                      [&ctx] { return std::make_unique<ReadAheadOfList>(ctx); });
}

}  // namespace jk
