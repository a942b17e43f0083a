#pragma once

// Saving the song cache a slice at a time, so that a window can keep its event loop turning
// while a cache of a hundred thousand songs or more goes to disk. The file is the one
// SaveCache writes, records and Album suffixes alike, as long as nothing changes the cache
// between two slices; when something does, the rest is not pieced together from two states:
// the whole cache is saved at once instead.

#include <chrono>
#include <cstdint>
#include <future>
#include <memory>
#include <string>

#include "util/FileIo.h"

namespace jk {

class SongCache;

class CacheSaveSteps {
public:
    // `cache` must outlive this object and be changed only between steps.
    CacheSaveSteps(SongCache& cache, const std::string& dataFolder);
    ~CacheSaveSteps();
    CacheSaveSteps(const CacheSaveSteps&) = delete;
    CacheSaveSteps& operator=(const CacheSaveSteps&) = delete;

    // Saves records for about `budget` (at least a few hundred of them); true once the file is
    // written or has failed. Syncing the file to disk and renaming it into place take a thread
    // of their own, since they can take longer than a slice; the steps after the last record
    // only ask whether that has finished.
    bool Step(std::chrono::steady_clock::duration budget);
    bool Done() const { return m_done; }
    // The outcome, once Done.
    const IoResult& Result() const { return m_result; }

private:
    void Finish(IoResult result);

    SongCache& m_cache;
    std::string m_folder;
    std::unique_ptr<AtomicFileWriter> m_file;
    std::future<IoResult> m_commit;
    std::string m_piece;
    std::int64_t m_count = 0;
    std::int64_t m_next = 1;
    std::uint64_t m_changesSeen = 0;
    bool m_done = false;
    IoResult m_result;
};

}  // namespace jk
