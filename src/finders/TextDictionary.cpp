#include "finders/TextDictionary.h"

#include <cstring>
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
    const std::size_t mask = m_keys.size() - 1;
    for (std::size_t at = Spread(key) & mask;; at = (at + 1) & mask) {
        const std::uint32_t number = m_numbers[at];
        if (number == 0) {
            const auto id = static_cast<std::uint32_t>(m_count++);
            m_keys[at] = key;
            m_numbers[at] = id + 1;
            if (2 * m_count > m_keys.size()) {
                Grow();
            }
            added = true;
            return id;
        }
        if (m_keys[at] == key) {
            added = false;
            return number - 1;
        }
    }
}

void NumberTable::Grow() {
    std::vector<std::uint64_t> keys(m_keys.size() * 2, 0);
    std::vector<std::uint32_t> numbers(m_numbers.size() * 2, 0);
    const std::size_t mask = keys.size() - 1;
    for (std::size_t old = 0; old < m_keys.size(); ++old) {
        if (m_numbers[old] == 0) {
            continue;
        }
        std::size_t at = Spread(m_keys[old]) & mask;
        while (numbers[at] != 0) {
            at = (at + 1) & mask;
        }
        keys[at] = m_keys[old];
        numbers[at] = m_numbers[old];
    }
    m_keys = std::move(keys);
    m_numbers = std::move(numbers);
}

void NumberTable::Clear() {
    m_keys = std::vector<std::uint64_t>(1024, 0);
    m_numbers = std::vector<std::uint32_t>(1024, 0);
    m_count = 0;
}

std::uint32_t DictionaryBuilder::Id(std::string_view text) {
    if (m_haveLast && text == m_last) {
        return m_lastId;
    }
    m_folded.clear();
    AppendFolded(m_folded, text);
    const std::uint64_t hash = HashOf(m_folded);
    const auto tag = static_cast<std::uint32_t>(hash >> 32);
    const auto length = static_cast<std::uint32_t>(m_folded.size());
    const std::size_t mask = m_slots.size() - 1;
    std::uint32_t id = 0;
    for (std::size_t at = hash & mask;; at = (at + 1) & mask) {
        Slot& slot = m_slots[at];
        if (slot.Number == 0) {
            id = static_cast<std::uint32_t>(m_out.Starts.size());
            const auto start = static_cast<std::uint32_t>(m_out.Buffer.size());
            m_out.Starts.push_back(start);
            m_out.Buffer.append(m_folded);
            m_out.Buffer.push_back(static_cast<char>(kSegmentEnd));
            slot = Slot{tag, id + 1, start, length};
            if (2 * m_out.Starts.size() > m_slots.size()) {
                Grow();
            }
            break;
        }
        if (slot.Tag == tag && slot.Length == length &&
            std::memcmp(m_out.Buffer.data() + slot.Start, m_folded.data(), length) == 0) {
            id = slot.Number - 1;
            break;
        }
    }
    m_last = text;
    m_lastId = id;
    m_haveLast = true;
    return id;
}

void DictionaryBuilder::Grow() {
    std::vector<Slot> slots(m_slots.size() * 2);
    const std::size_t mask = slots.size() - 1;
    for (const Slot& slot : m_slots) {
        if (slot.Number == 0) {
            continue;
        }
        const std::uint64_t hash =
            HashOf(std::string_view(m_out.Buffer).substr(slot.Start, slot.Length));
        std::size_t at = hash & mask;
        while (slots[at].Number != 0) {
            at = (at + 1) & mask;
        }
        slots[at] = slot;
    }
    m_slots = std::move(slots);
}

void DictionaryBuilder::Finish() {
    m_out.Buffer.shrink_to_fit();
    m_out.Starts.shrink_to_fit();
    m_slots = {};
    m_folded = {};
    m_haveLast = false;
}

}  // namespace jk
