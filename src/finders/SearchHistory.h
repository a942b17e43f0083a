#pragma once

// The history lists of the finders, newest first, element 1 the newest (element 0 unused): the
// fifteen past queries and look-in folders, and the four past dates and selection texts.

#include <string_view>

#include "app/Settings.h"

namespace jk {

// The fifteen-entry push: the trimmed text first, then the old entries in order, leaving out
// those equal to it ignoring case, until fifteen are taken.
void PushHistory(TextList15& list, std::string_view text);

// The four-entry push (compared ignoring case): found at position 1, nothing changes and the
// entry keeps its old form; found at 2, 3 or 4, the entries above it move down over it; not
// found, all move down and the fourth is lost. The text, as given, then becomes entry 1.
void PushFour(TextList4& list, std::string_view text);

// Type-ahead: the first item that begins with `typed` ignoring case (a textual InStr of 1), or
// null. An empty text completes nothing.
template <typename Items>
const std::string* CompletionFor(const Items& items, std::string_view typed);

bool BeginsWithNoCase(std::string_view item, std::string_view typed);

template <typename Items>
const std::string* CompletionFor(const Items& items, std::string_view typed) {
    if (typed.empty()) {
        return nullptr;
    }
    for (const std::string& item : items) {
        if (BeginsWithNoCase(item, typed)) {
            return &item;
        }
    }
    return nullptr;
}

}  // namespace jk
