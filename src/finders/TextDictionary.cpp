#include "finders/TextDictionary.h"

#include <functional>

#include "finders/TextTest.h"

namespace jk {
namespace {

std::uint64_t HashOf(std::string_view text) {
    return std::hash<std::string_view>()(text);
}

// A 64-bit key spread over the table (the numbers of a pair differ in few bits).
std::uint64_t Spread(std::uint64_t key) {
    key ^= key >> 33;
    key *= 0xff51afd7ed558ccdULL;
    key ^= key >> 33;
    return key;
}

}  // namespace

std::string_view TextDictionary::Entry(std::size_t i) const {
    const std::size_t start = Starts[i];
    const std::size_t end = i + 1 < Starts.size() ? Starts[i + 1] - 1 : Buffer.size() - 1;
    return std::string_view(Buffer).substr(start, end - start);
}

SegmentBits EntriesHolding(const TextDictionary& dictionary, std::string_view folded) {
    SegmentBits entries(dictionary.Count());
    ScanSegments(dictionary.Buffer, folded, entries);
    return entries;
}

std::uint32_t NumberTable::Id(std::uint64_t key, bool& added) {
    const std::size_t mask = m_slots.size() - 1;
    for (std::size_t at = Spread(key) & mask;; at = (at + 1) & mask) {
        const std::uint32_t slot = m_slots[at];
        if (slot == 0) {
            const auto id = static_cast<std::uint32_t>(m_keys.size());
            m_keys.push_back(key);
            m_slots[at] = id + 1;
            if (2 * m_keys.size() > m_slots.size()) {
                Grow();
            }
            added = true;
            return id;
        }
        if (m_keys[slot - 1] == key) {
            added = false;
            return slot - 1;
        }
    }
}

void NumberTable::Grow() {
    std::vector<std::uint32_t> slots(m_slots.size() * 2, 0);
    const std::size_t mask = slots.size() - 1;
    for (std::size_t id = 0; id < m_keys.size(); ++id) {
        std::size_t at = Spread(m_keys[id]) & mask;
        while (slots[at] != 0) {
            at = (at + 1) & mask;
        }
        slots[at] = static_cast<std::uint32_t>(id + 1);
    }
    m_slots = std::move(slots);
}

void NumberTable::Clear() {
    m_keys = {};
    m_slots = std::vector<std::uint32_t>(1024, 0);
}

std::uint32_t DictionaryBuilder::Id(std::string_view text) {
    if (m_haveLast && text == m_last) {
        return m_lastId;
    }
    const std::uint64_t hash = HashOf(text);
    const std::uint64_t tag = hash >> 32;
    const std::size_t mask = m_slots.size() - 1;
    std::uint32_t id = 0;
    for (std::size_t at = hash & mask;; at = (at + 1) & mask) {
        const std::uint64_t slot = m_slots[at];
        if (slot == 0) {
            id = static_cast<std::uint32_t>(m_out.Starts.size());
            m_out.Starts.push_back(static_cast<std::uint32_t>(m_out.Buffer.size()));
            AppendFolded(m_out.Buffer, text);
            m_out.Buffer.push_back(static_cast<char>(kSegmentEnd));
            m_keys.push_back(text);
            m_slots[at] = (tag << 32) | (id + 1);
            if (2 * m_keys.size() > m_slots.size()) {
                Grow();
            }
            break;
        }
        const auto number = static_cast<std::uint32_t>(slot & 0xFFFFFFFF) - 1;
        if ((slot >> 32) == tag && m_keys[number] == text) {
            id = number;
            break;
        }
    }
    m_last = text;
    m_lastId = id;
    m_haveLast = true;
    return id;
}

void DictionaryBuilder::Grow() {
    std::vector<std::uint64_t> slots(m_slots.size() * 2, 0);
    const std::size_t mask = slots.size() - 1;
    for (std::size_t id = 0; id < m_keys.size(); ++id) {
        const std::uint64_t hash = HashOf(m_keys[id]);
        std::size_t at = hash & mask;
        while (slots[at] != 0) {
            at = (at + 1) & mask;
        }
        slots[at] = ((hash >> 32) << 32) | (id + 1);
    }
    m_slots = std::move(slots);
}

void DictionaryBuilder::Finish() {
    m_out.Buffer.shrink_to_fit();
    m_out.Starts.shrink_to_fit();
    m_keys = {};
    m_slots = {};
    m_haveLast = false;
}

}  // namespace jk
