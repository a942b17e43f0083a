#pragma once

// Distinct texts held once: the folded text of each, one after another in one buffer, numbered
// in the order first met. The search index keeps the texts that songs share this way.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "finders/SegmentScan.h"

namespace jk {

struct TextDictionary {
    std::string Buffer;                 // each entry folded and ended by kSegmentEnd
    std::vector<std::uint32_t> Starts;  // where each entry begins, for reading one back
    std::size_t Count() const { return Starts.size(); }
    std::string_view Entry(std::size_t i) const;
    std::size_t MemoryBytes() const { return Buffer.capacity() + Starts.capacity() * 4; }
};

// The entries that hold `folded` (an empty text: the entries that are not empty).
SegmentBits EntriesHolding(const TextDictionary& dictionary, std::string_view folded);

// Numbers of a fixed number of keys of 64 bits, given in the order first met. Open addressing
// with each key beside its number, so that a look-up reads one place of the table.
class NumberTable {
public:
    NumberTable() : m_keys(1024, 0), m_numbers(1024, 0) {}
    // The key's number; `added` tells whether it is new.
    std::uint32_t Id(std::uint64_t key, bool& added);
    std::size_t Count() const { return m_count; }
    void Clear();

private:
    void Grow();
    std::vector<std::uint64_t> m_keys;     // by slot
    std::vector<std::uint32_t> m_numbers;  // by slot: number + 1, 0 when empty
    std::size_t m_count = 0;
};

// Numbers the distinct texts met by their folded text, which is all the index asks of them:
// texts that fold alike share an entry. Each text met is folded into a scratch buffer and looked
// up by the folded text, compared with the dictionary's own compact buffer rather than with the
// catalogue's scattered records. Neighbours often share a text, so the last one is tried first.
class DictionaryBuilder {
public:
    explicit DictionaryBuilder(TextDictionary& out) : m_out(out), m_slots(1024) {}

    // `text` must hold until the next call.
    std::uint32_t Id(std::string_view text);
    // Gives the memory of the building back; the dictionary is complete.
    void Finish();

private:
    struct Slot {
        std::uint32_t Tag = 0;     // the hash's top half
        std::uint32_t Number = 0;  // the entry's number + 1, 0 when empty
        std::uint32_t Start = 0;   // where the entry's text begins in the buffer
        std::uint32_t Length = 0;
    };
    void Grow();

    TextDictionary& m_out;
    std::vector<Slot> m_slots;
    std::string m_folded;
    std::string_view m_last;
    std::uint32_t m_lastId = 0;
    bool m_haveLast = false;
};

}  // namespace jk
