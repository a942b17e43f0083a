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

// Numbers of a fixed number of keys of 64 bits, given in the order first met. Open addressing:
// a key costs no allocation of its own, so millions of them build quickly.
class NumberTable {
public:
    NumberTable() : m_slots(1024, 0) {}
    // The key's number; `added` tells whether it is new.
    std::uint32_t Id(std::uint64_t key, bool& added);
    std::size_t Count() const { return m_keys.size(); }
    void Clear();

private:
    void Grow();
    std::vector<std::uint64_t> m_keys;   // by number
    std::vector<std::uint32_t> m_slots;  // number + 1, 0 when empty
};

// Numbers the distinct texts met, keyed by the text as the caller holds it: equal texts fold
// alike, so each is folded once, when first met. The keys are views, which must hold until
// Finish (the catalogue stands still while an index is built), so a new text costs no
// allocation of its own. Neighbours often share a text, so the last one is tried first.
class DictionaryBuilder {
public:
    explicit DictionaryBuilder(TextDictionary& out) : m_out(out), m_slots(1024, 0) {}

    std::uint32_t Id(std::string_view text);
    // Gives the memory of the building back; the dictionary is complete.
    void Finish();

private:
    void Grow();

    TextDictionary& m_out;
    std::vector<std::string_view> m_keys;  // by number
    std::vector<std::uint64_t> m_slots;    // the hash's top half, and the number + 1 (0: empty)
    std::string_view m_last;
    std::uint32_t m_lastId = 0;
    bool m_haveLast = false;
};

}  // namespace jk
