#pragma once

// The text test of the Search and Selection wizards: InStr(field, query) > 0 over the checked
// fields, binary (case-sensitive) or textual (case folded per character). The query is one
// literal substring as it stands: not trimmed, not split into words.

#include <string>
#include <string_view>

#include "finders/SearchFields.h"

namespace jk {

// The text folded as the textual compare folds it, written so that a byte-wise substring search
// finds exactly what a character-wise folded search finds: each character lower-cased and
// written in UTF-8, each byte that is no character written as a four-byte unit of its own
// (beyond U+10FFFF, so it matches only itself). The bytes 0xFE and 0xFF never occur in it.
void AppendFolded(std::string& out, std::string_view text);
std::string FoldedText(std::string_view text);

class TextQuery {
public:
    TextQuery() = default;
    TextQuery(std::string_view query, bool binary);

    // InStr(field, query) > 0: an empty field never matches, an empty query matches every other.
    bool Found(std::string_view field) const;

    const std::string& Text() const { return m_text; }
    // The query as AppendFolded writes it (empty for a binary query).
    const std::string& Folded() const { return m_folded; }
    bool Binary() const { return m_binary; }

private:
    std::string m_text;
    std::string m_folded;
    bool m_binary = false;
    bool m_foldedAscii = true;
};

// The text test of one record: true when a checked field holds the query, the fields tried in
// SearchTestOrder. `fieldOf(SearchField)` gives a field's text.
template <typename FieldOf>
bool TextTest(const FieldOf& fieldOf, const SearchFieldSet& fields, const TextQuery& query) {
    bool found = false;
    for (const SearchField field : SearchTestOrder()) {
        if (!found && fields.test(static_cast<std::size_t>(field)) && query.Found(fieldOf(field))) {
            found = true;
        }
    }
    return found;
}

bool TextTest(const SongInfo& song, const SearchFieldSet& fields, const TextQuery& query);

}  // namespace jk
