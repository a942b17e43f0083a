#include "finders/SearchHistory.h"

#include <string>
#include <vector>

#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {

void PushHistory(TextList15& list, std::string_view text) {
    const std::string entry(Trim(text));
    std::vector<std::string> next;
    next.push_back(entry);
    for (std::size_t i = 1; i < list.size() && next.size() < list.size() - 1; ++i) {
        if (!EqualsNoCase(list[i], entry)) {
            next.push_back(list[i]);
        }
    }
    for (std::size_t i = 1; i < list.size(); ++i) {
        list[i] = i - 1 < next.size() ? std::move(next[i - 1]) : std::string();
    }
}

void PushFour(TextList4& list, std::string_view text) {
    std::size_t found = 0;
    for (std::size_t i = 1; i <= 4; ++i) {
        if (EqualsNoCase(list[i], text)) {
            found = i;
            break;
        }
    }
    if (found == 1) {
        return;
    }
    const std::size_t last = found == 0 ? 4 : found;
    for (std::size_t i = last; i > 1; --i) {
        list[i] = list[i - 1];
    }
    list[1] = std::string(text);
}

bool BeginsWithNoCase(std::string_view item, std::string_view typed) {
    return FindNoCase(item, typed) == 0 && !item.empty();
}

}  // namespace jk
