#include "catalogue/CacheSaveSteps.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "catalogue/SongCache.h"
#include "catalogue/SongFields.h"
#include "catalogue/VBaseFile.h"
#include "catalogue/VBaseFormat.h"
#include "metadata/TrackSuffix.h"
#include "util/PathHelpers.h"

namespace jk {
namespace {

// Records written between two looks at the clock: a look costs more than a record.
constexpr std::int64_t kRecordsPerClockLook = 256;
// The records go to the file in pieces of about this size.
constexpr std::size_t kPieceBytes = std::size_t{1} << 20;

}  // namespace

CacheSaveSteps::CacheSaveSteps(SongCache& cache, const std::string& dataFolder)
    : m_cache(cache),
      m_folder(dataFolder),
      m_file(std::make_unique<AtomicFileWriter>(JoinPath(dataFolder, kCacheFileName))),
      m_count(cache.UpperBound()),
      m_changesSeen(cache.Changes()) {
    m_piece.reserve(kPieceBytes + kVBaseHeaderBytes);
    AppendVBaseHeader(m_piece, kVBaseVersion100, m_count);
}

CacheSaveSteps::~CacheSaveSteps() = default;

void CacheSaveSteps::Finish(IoResult result) {
    m_result = std::move(result);
    m_done = true;
    m_file.reset();
    m_piece = std::string();
}

bool CacheSaveSteps::Step(std::chrono::steady_clock::duration budget) {
    if (m_done) {
        return true;
    }
    if (m_commit.valid()) {
        if (m_commit.wait_for(budget) != std::future_status::ready) {
            return false;
        }
        Finish(m_commit.get());
        return true;
    }
    if (m_cache.Changes() != m_changesSeen) {
        // Changed since the last step: the records written so far may no longer be the
        // cache's. The temporary file goes, and the cache is saved whole.
        m_file.reset();
        Finish(SaveCache(m_cache, m_folder));
        return true;
    }
    const auto until = std::chrono::steady_clock::now() + budget;
    while (m_next <= m_count) {
        const std::int64_t end = std::min(m_count + 1, m_next + kRecordsPerClockLook);
        for (; m_next < end; ++m_next) {
            const std::int16_t track = m_cache.TrackOf(m_next);
            if (track > 0) {
                // As SaveVBase does: the suffix goes into the cache as well as the file.
                std::string album(m_cache.FieldOf(m_next, kKeyAlbum));
                AppendTrackSuffix(album, track);
                m_cache.SetField(m_next, kKeyAlbum, album);
            }
            AppendVBaseRecord(m_piece, m_cache.Slot(m_next).Fields());
        }
        if (m_piece.size() >= kPieceBytes) {
            m_file->Write(m_piece);
            m_piece.clear();
        }
        if (std::chrono::steady_clock::now() >= until) {
            break;
        }
    }
    m_changesSeen = m_cache.Changes();
    if (m_next <= m_count) {
        return false;
    }
    m_file->Write(m_piece);
    m_piece = std::string();
    // The cache is not touched from here on: only the writer works on that thread.
    try {
        m_commit = std::async(std::launch::async, [file = m_file.get()] { return file->Commit(); });
    } catch (const std::system_error&) {
        Finish(m_file->Commit());
        return true;
    }
    return false;
}

}  // namespace jk
