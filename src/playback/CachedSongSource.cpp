#include "playback/CachedSongSource.h"

#include <deque>
#include <optional>
#include <utility>

#include "catalogue/GetSongInfo.h"
#include "listing/ReadAhead.h"
#include "listing/WalkRules.h"
#include "util/Text.h"

namespace jk {

namespace {

// Every line of a list names a song, whatever its name: all are read ahead. The read-ahead asks
// the cache about each file ahead, in list order, to learn whether the file must be read; that
// search is kept, and the file's turn takes its answer instead of searching again while the
// cache has not changed.
class ReadAheadOfList final : public SongReading {
public:
    explicit ReadAheadOfList(SongLookupContext& ctx)
        : m_ctx(ctx),
          m_scanner(
              kFilterAll,
              [this](std::string& path, const PrefetchedBytes* prefetched) {
                  const std::optional<SongLookAhead> ahead = TakeLookAhead(path);
                  // The caller's string takes the path, so the view may point into it.
                  std::swap(*m_path, path);
                  m_found =
                      ahead
                          ? GetSongView(*m_path, false, m_ctx, prefetched, *ahead, *m_read, *m_view)
                          : GetSongView(*m_path, false, m_ctx, prefetched, *m_read, *m_view);
              },
              [this](std::string_view trimmedPath) -> std::optional<std::string> {
                  const SongLookAhead ahead = LookAheadInCache(trimmedPath, m_ctx.cache);
                  m_ahead.push_back({trimmedPath.data(), trimmedPath.size(), ahead});
                  const std::string_view stamp = StampOf(ahead);
                  if (stamp.empty()) {
                      return std::nullopt;
                  }
                  return std::string(stamp);
              }) {}

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
    // A search made for a file ahead, known by the text of its path as the read-ahead holds it
    // (which stays in place until the file's turn is over).
    struct Ahead {
        const char* pathData;
        std::size_t pathSize;
        SongLookAhead lookAhead;
    };

    // The search made for `path` ahead of its turn, if there was one; those of files passed
    // over without a turn are dropped.
    std::optional<SongLookAhead> TakeLookAhead(const std::string& path) {
        const std::string_view trimmed = Trim(path);
        while (!m_ahead.empty()) {
            const Ahead front = m_ahead.front();
            m_ahead.pop_front();
            if (front.pathData == trimmed.data() && front.pathSize == trimmed.size()) {
                return front.lookAhead;
            }
        }
        return std::nullopt;
    }

    SongLookupContext& m_ctx;
    std::deque<Ahead> m_ahead;  // in the order the files were asked about
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
