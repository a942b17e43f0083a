#pragma once

// Keeps the search index in step with the catalogue: built on a worker thread when first asked
// for, dropped and built anew when the catalogue changes. Whoever changes the catalogue tells
// the keeper first (CatalogueChanging), on the thread that owns the catalogue; the build under
// way then stops before the catalogue is touched.

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include "finders/CatalogueView.h"
#include "finders/SearchIndex.h"

namespace jk {

class SearchIndexKeeper {
public:
    // `ready` is called on the worker thread when an index is built (a window posts it on).
    explicit SearchIndexKeeper(const CatalogueView& catalogue, std::function<void()> ready = {});
    ~SearchIndexKeeper();
    SearchIndexKeeper(const SearchIndexKeeper&) = delete;
    SearchIndexKeeper& operator=(const SearchIndexKeeper&) = delete;

    // The index of the catalogue as it stands, or null while it is built (a build is started if
    // none runs). On the catalogue's own thread.
    const SearchIndex* Ready() { return ReadyShared().get(); }
    // The same, shared: it stays whole while a search holds it, even once the keeper drops it.
    std::shared_ptr<const SearchIndex> ReadyShared();
    // A build is under way.
    bool Building() const;
    // No index can be had for the catalogue as it stands (its texts outgrow the index).
    bool Unavailable() const;
    // The catalogue is about to change: the build under way stops, the index is dropped.
    void CatalogueChanging();
    // The catalogue changed: a new index is built.
    void CatalogueChanged();
    // Waits for the build under way (tests and benchmarks).
    void WaitForBuild();

private:
    void StartBuild();
    void StopBuild();

    const CatalogueView& m_catalogue;
    std::function<void()> m_ready;
    std::shared_ptr<const SearchIndex> m_index;
    std::unique_ptr<SearchIndex> m_built;  // handed over by the worker, under the lock
    mutable std::mutex m_mutex;
    std::thread m_worker;
    std::atomic<bool> m_stop = false;
    std::atomic<bool> m_building = false;
    std::atomic<bool> m_failed = false;
    std::atomic<std::uint64_t> m_failedGeneration = 0;
};

}  // namespace jk
