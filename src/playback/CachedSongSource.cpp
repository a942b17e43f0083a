#include "playback/CachedSongSource.h"

#include <memory>
#include <utility>

#include "catalogue/GetSongInfo.h"
#include "listing/ReadAhead.h"
#include "listing/WalkRules.h"

namespace jk {

namespace {

// Every line of a list names a song, whatever its name: all are read ahead. The read-ahead asks
// the cache about each file ahead, in list order, to learn whether the file must be read; the
// lookup keeps that search for the file's turn.
class ReadAheadOfList final : public SongReading {
public:
    explicit ReadAheadOfList(SongLookup& lookup)
        : m_lookup(lookup),
          m_scanner(
              kFilterAll,
              [this](std::string& path, const PrefetchedBytes* prefetched) {
                  m_song = &LendSongInfo(path, m_lookup, prefetched);
                  *m_path = std::move(path);
              },
              [this](std::string_view path) { return m_lookup.StampAhead(path); }) {}

    void Announce(std::string path) override { m_scanner.Announce(std::move(path)); }

    const SongInfo& Next(std::string& path) override {
        m_path = &path;
        m_song = nullptr;
        m_scanner.ScanNext();
        if (m_song == nullptr) {
            m_none = NonExistantSong();  // nothing was announced
            return m_none;
        }
        return *m_song;
    }

private:
    SongLookup& m_lookup;
    std::string* m_path = nullptr;
    const SongInfo* m_song = nullptr;
    SongInfo m_none;
    ReadAheadScanner m_scanner;
};

}  // namespace

SongSource CachedSongSource(SongLookup& lookup) {
    return SongSource::ReadingAhead(
        [&lookup] { return std::make_unique<ReadAheadOfList>(lookup); });
}

}  // namespace jk
