#pragma once

// The folders of the songs' paths as a tree: each folder is its parent and its last part (the
// text up to and with its separator), and each distinct part is held once, folded. Paths share
// their upper folders, so a folder costs a few bytes however long its text, and a search
// tests each part once rather than every folder's whole text.

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "finders/PackedNumbers.h"
#include "finders/SegmentScan.h"
#include "finders/TextDictionary.h"

namespace jk {

class IndexedFolders {
public:
    // Folder 0 is the empty folder (a path without separator); parents precede their folders.
    std::size_t Count() const { return m_parent.Size(); }
    // The folders whose folded text holds `folded`; an empty text: those that are not empty.
    SegmentBits FoldersHolding(std::string_view folded) const;
    // The folders whose folded text ends with `folded`.
    SegmentBits FoldersEndingWith(std::string_view folded) const;
    std::size_t MemoryBytes() const;

private:
    friend class IndexedFoldersBuilder;
    friend class FoldersHoldingText;
    // Calls visit(folder, text) for every folder with its whole folded text.
    template <typename Visit>
    void ForEachText(const Visit& visit) const;
    // The heads of a text that end with a separator, by length; a mask has a bit for each.
    static constexpr std::size_t kMostHeads = 32;
    static std::vector<std::size_t> Heads(std::string_view folded);
    // For each distinct part, bit k set when: it ends with the first heads[k] bytes of
    // `folded` (Ends); it is the text between heads k-1 and k (Chunks); it begins with what
    // follows head k, not empty (Starts).
    struct PartMasks {
        std::vector<std::uint32_t> Ends;
        std::vector<std::uint32_t> Chunks;
        std::vector<std::uint32_t> Starts;
    };
    PartMasks MasksOfParts(std::string_view folded, const std::vector<std::size_t>& heads) const;
    // For each folder, bit k set when its text ends with the first heads[k] bytes of `folded`.
    std::vector<std::uint32_t> EndingMasks(const PartMasks& parts) const;

    TextDictionary m_parts;  // entry 0 is the empty part of folder 0
    PackedNumbers m_parent;
    PackedNumbers m_part;
};

// The folders whose folded text holds a text (IndexedFolders::FoldersHolding), decided in the
// order of their numbers as far as asked: a search that goes through the songs in order needs
// only the folders met so far, and a folder's parent comes before it.
class FoldersHoldingText {
public:
    FoldersHoldingText() = default;
    FoldersHoldingText(const IndexedFolders& folders, std::string_view folded);
    // The folders numbered below `count` decided; those above may still read as not holding it.
    const SegmentBits& Upto(std::size_t count);

private:
    const IndexedFolders* m_folders = nullptr;
    SegmentBits m_parts;  // the parts that hold the text, which has no separator
    SegmentBits m_holding;
    std::size_t m_decided = 0;
};

class IndexedFoldersBuilder {
public:
    // `out` must be empty; the text given to Id must hold until the next call.
    explicit IndexedFoldersBuilder(IndexedFolders& out);
    // The number of a folder: the text of a path before its file name, empty or ending with a
    // separator ("/" or "\").
    std::uint32_t Id(std::string_view folder);
    void Finish();

private:
    IndexedFolders& m_out;
    DictionaryBuilder m_parts;
    NumberTable m_children;  // (parent, part) -> folder - 1
    std::vector<std::uint32_t> m_parent;
    std::vector<std::uint32_t> m_part;
    // The last folder, and the folders along its path: where each ends in its text.
    struct Step {
        std::size_t End = 0;
        std::uint32_t Folder = 0;
    };
    std::string_view m_last;
    std::vector<Step> m_chain;
    std::uint32_t m_lastId = 0;
    bool m_haveLast = false;
};

}  // namespace jk
