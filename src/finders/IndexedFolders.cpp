#include "finders/IndexedFolders.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "util/PathHelpers.h"

namespace jk {

template <typename Visit>
void IndexedFolders::ForEachText(const Visit& visit) const {
    std::vector<std::uint32_t> chain;
    std::string text;
    for (std::size_t f = 0; f < Count(); ++f) {
        chain.clear();
        for (std::size_t at = f; at != 0; at = m_parent.Get(at)) {
            chain.push_back(m_part.Get(at));
        }
        text.clear();
        for (auto part = chain.rbegin(); part != chain.rend(); ++part) {
            text.append(m_parts.Entry(*part));
        }
        visit(f, std::string_view(text));
    }
}

std::vector<std::size_t> IndexedFolders::Heads(std::string_view folded) {
    std::vector<std::size_t> heads;
    for (std::size_t i = 0; i < folded.size(); ++i) {
        if (IsCataloguedSeparator(folded[i])) {
            heads.push_back(i + 1);
        }
    }
    return heads;
}

// What each distinct part says about the heads of a text, worked out once a part rather than
// once a folder. A part holds one separator, at its end.
IndexedFolders::PartMasks IndexedFolders::MasksOfParts(
    std::string_view folded, const std::vector<std::size_t>& heads) const {
    PartMasks masks;
    const std::size_t count = m_parts.Count();
    masks.Ends.assign(count, 0);
    masks.Chunks.assign(count, 0);
    masks.Starts.assign(count, 0);
    for (std::size_t p = 0; p < count; ++p) {
        const std::string_view part = m_parts.Entry(p);
        std::uint32_t ends = 0;
        std::uint32_t chunks = 0;
        std::uint32_t starts = 0;
        for (std::size_t k = 0; k < heads.size(); ++k) {
            const std::size_t length = heads[k];
            if (part.size() >= length) {
                ends |= static_cast<std::uint32_t>(part.substr(part.size() - length) ==
                                                   folded.substr(0, length))
                        << k;
            } else if (k > 0) {
                // Shorter than the head: it can only be the piece between the head before
                // and this one.
                chunks |= static_cast<std::uint32_t>(
                              folded.substr(heads[k - 1], length - heads[k - 1]) == part)
                          << k;
            }
            const std::string_view rest = folded.substr(length);
            starts |=
                static_cast<std::uint32_t>(!rest.empty() && part.substr(0, rest.size()) == rest)
                << k;
        }
        masks.Ends[p] = ends;
        masks.Chunks[p] = chunks;
        masks.Starts[p] = starts;
    }
    return masks;
}

// A folder's text ends with a head when its own part does, or when its part is the piece
// before the head and its parent's text ends with the head before.
std::vector<std::uint32_t> IndexedFolders::EndingMasks(const PartMasks& parts) const {
    std::vector<std::uint32_t> masks(Count(), 0);
    m_part.WithWidth([&](auto partWidth) {
        m_parent.WithWidth([&](auto parentWidth) {
            constexpr unsigned kPart = decltype(partWidth)::value;
            constexpr unsigned kParent = decltype(parentWidth)::value;
            for (std::size_t f = 1; f < Count(); ++f) {
                const std::uint32_t part = m_part.GetAs<kPart>(f);
                const std::uint32_t above = masks[m_parent.GetAs<kParent>(f)];
                masks[f] = parts.Ends[part] | ((above << 1) & parts.Chunks[part]);
            }
        });
    });
    return masks;
}

FoldersHoldingText::FoldersHoldingText(const IndexedFolders& folders, std::string_view folded)
    : m_folders(&folders) {
    if (!IndexedFolders::Heads(folded).empty()) {
        // Over the parts' joints: decided at once.
        m_holding = folders.FoldersHolding(folded);
        m_decided = folders.Count();
        return;
    }
    m_holding = SegmentBits(folders.Count());
    m_parts = EntriesHolding(folders.m_parts, folded);
    if (!m_parts.Any()) {
        m_decided = folders.Count();  // none holds it
    }
}

// Within one part: a folder holds the text when its own part or one above does.
const SegmentBits& FoldersHoldingText::Upto(std::size_t count) {
    const IndexedFolders& folders = *m_folders;
    count = std::min(count, folders.Count());
    if (count <= m_decided) {
        return m_holding;
    }
    folders.m_part.WithWidth([&](auto partWidth) {
        folders.m_parent.WithWidth([&](auto parentWidth) {
            constexpr unsigned kPart = decltype(partWidth)::value;
            constexpr unsigned kParent = decltype(parentWidth)::value;
            if (m_decided == 0) {
                if (m_parts.Test(folders.m_part.GetAs<kPart>(0))) {
                    m_holding.Set(0);
                }
                m_decided = 1;
            }
            for (std::size_t f = m_decided; f < count; ++f) {
                if (m_parts.Test(folders.m_part.GetAs<kPart>(f)) ||
                    m_holding.Test(folders.m_parent.GetAs<kParent>(f))) {
                    m_holding.Set(f);
                }
            }
        });
    });
    m_decided = count;
    return m_holding;
}

SegmentBits IndexedFolders::FoldersHolding(std::string_view folded) const {
    const std::vector<std::size_t> heads = Heads(folded);
    if (heads.empty()) {
        FoldersHoldingText holding(*this, folded);
        return holding.Upto(Count());
    }
    SegmentBits folders(Count());
    const SegmentBits parts = EntriesHolding(m_parts, folded);
    if (heads.size() > kMostHeads) {
        ForEachText([&](std::size_t f, std::string_view text) {
            if (text.size() >= folded.size() &&
                ::memmem(text.data(), text.size(), folded.data(), folded.size()) != nullptr) {
                folders.Set(f);
            }
        });
        return folders;
    }
    // Over the parts' joints: the last joint a match runs over lies before the folder's own
    // part, so the parent's text ends with a head of the text and the part begins the rest.
    const PartMasks partMasks = MasksOfParts(folded, heads);
    const std::vector<std::uint32_t> masks = EndingMasks(partMasks);
    m_part.WithWidth([&](auto partWidth) {
        m_parent.WithWidth([&](auto parentWidth) {
            constexpr unsigned kPart = decltype(partWidth)::value;
            constexpr unsigned kParent = decltype(parentWidth)::value;
            for (std::size_t f = 1; f < Count(); ++f) {
                const std::uint32_t parent = m_parent.GetAs<kParent>(f);
                const std::uint32_t part = m_part.GetAs<kPart>(f);
                if (folders.Test(parent) || parts.Test(part) ||
                    (masks[parent] & partMasks.Starts[part]) != 0) {
                    folders.Set(f);
                }
            }
        });
    });
    return folders;
}

SegmentBits IndexedFolders::FoldersEndingWith(std::string_view folded) const {
    SegmentBits folders(Count());
    const std::vector<std::size_t> heads = Heads(folded);
    if (heads.empty() || heads.back() != folded.size()) {
        return folders;  // every folder's text ends with a separator (or is empty)
    }
    if (heads.size() > kMostHeads) {
        ForEachText([&](std::size_t f, std::string_view text) {
            if (text.size() >= folded.size() &&
                text.substr(text.size() - folded.size()) == folded) {
                folders.Set(f);
            }
        });
        return folders;
    }
    const std::vector<std::uint32_t> masks = EndingMasks(MasksOfParts(folded, heads));
    const std::uint32_t whole = std::uint32_t{1} << (heads.size() - 1);
    for (std::size_t f = 1; f < Count(); ++f) {
        if ((masks[f] & whole) != 0) {
            folders.Set(f);
        }
    }
    return folders;
}

std::size_t IndexedFolders::MemoryBytes() const {
    return m_parts.MemoryBytes() + m_parent.MemoryBytes() + m_part.MemoryBytes();
}

IndexedFoldersBuilder::IndexedFoldersBuilder(IndexedFolders& out)
    : m_out(out), m_parts(out.m_parts) {
    m_part.push_back(m_parts.Id({}));
    m_parent.push_back(0);
}

std::uint32_t IndexedFoldersBuilder::Id(std::string_view folder) {
    if (m_haveLast && folder == m_last) {
        return m_lastId;
    }
    // The folders above this one that the last one had too are known: the walk starts below
    // the deepest of them.
    const std::size_t shared = static_cast<std::size_t>(
        std::mismatch(folder.begin(), folder.begin() + std::min(folder.size(), m_last.size()),
                      m_last.begin())
            .first -
        folder.begin());
    std::uint32_t id = 0;
    std::size_t pos = 0;
    std::size_t kept = 0;
    for (; kept < m_chain.size() && m_chain[kept].End <= shared; ++kept) {
        id = m_chain[kept].Folder;
        pos = m_chain[kept].End;
    }
    m_chain.resize(kept);
    while (pos < folder.size()) {
        const std::size_t sep = folder.find_first_of("/\\", pos);
        const std::size_t end = sep == std::string_view::npos ? folder.size() : sep + 1;
        const std::uint32_t part = m_parts.Id(folder.substr(pos, end - pos));
        bool added = false;
        const std::uint32_t child =
            m_children.Id((static_cast<std::uint64_t>(id) << 32) | part, added) + 1;
        if (added) {
            m_parent.push_back(id);
            m_part.push_back(part);
        }
        id = child;
        pos = end;
        m_chain.push_back(Step{pos, id});
    }
    m_last = folder;
    m_lastId = id;
    m_haveLast = true;
    return id;
}

void IndexedFoldersBuilder::Finish() {
    m_parts.Finish();
    m_children.Clear();
    m_out.m_parent.Pack(m_parent);
    m_out.m_part.Pack(m_part);
    m_parent = {};
    m_part = {};
}

}  // namespace jk
