#include "finders/SearchIndexKeeper.h"

#include <utility>

namespace jk {

SearchIndexKeeper::SearchIndexKeeper(const CatalogueView& catalogue, std::function<void()> ready)
    : m_catalogue(catalogue), m_ready(std::move(ready)) {}

SearchIndexKeeper::~SearchIndexKeeper() {
    StopBuild();
}

std::shared_ptr<const SearchIndex> SearchIndexKeeper::ReadyShared() {
    {
        std::lock_guard lock(m_mutex);
        if (m_built) {
            m_index = std::move(m_built);
        }
    }
    if (m_index && m_index->Generation() == m_catalogue.Generation()) {
        return m_index;
    }
    if (!m_building && !Unavailable()) {
        // A change nobody announced: the old index no longer answers for the catalogue.
        m_index.reset();
        StartBuild();
    }
    return nullptr;
}

bool SearchIndexKeeper::Building() const {
    return m_building;
}

bool SearchIndexKeeper::Unavailable() const {
    return m_failed && m_failedGeneration == m_catalogue.Generation();
}

void SearchIndexKeeper::CatalogueChanging() {
    StopBuild();
    m_index.reset();
    std::lock_guard lock(m_mutex);
    m_built.reset();
}

void SearchIndexKeeper::CatalogueChanged() {
    m_failed = false;
    if (!m_building) {
        StartBuild();
    }
}

void SearchIndexKeeper::WaitForBuild() {
    if (m_worker.joinable()) {
        m_worker.join();
    }
}

void SearchIndexKeeper::StartBuild() {
    if (m_worker.joinable()) {
        m_worker.join();
    }
    m_stop = false;
    m_building = true;
    m_failed = false;
    const std::uint64_t generation = m_catalogue.Generation();
    m_worker = std::thread([this, generation] {
        std::unique_ptr<SearchIndex> index = SearchIndex::Build(m_catalogue, &m_stop);
        const bool built = index != nullptr;
        if (!built && !m_stop) {
            m_failedGeneration = generation;
            m_failed = true;
        }
        {
            std::lock_guard lock(m_mutex);
            if (built) {
                m_built = std::move(index);
            }
        }
        m_building = false;
        if (built && m_ready) {
            m_ready();
        }
    });
}

void SearchIndexKeeper::StopBuild() {
    m_stop = true;
    if (m_worker.joinable()) {
        m_worker.join();
    }
    m_building = false;
}

}  // namespace jk
