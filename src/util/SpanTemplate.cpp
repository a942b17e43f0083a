#include "util/SpanTemplate.h"

#include "util/PathHelpers.h"
#include "util/StringHelpers.h"
#include "util/Text.h"

namespace jk {
namespace {

struct SplitTemplate {
    std::string ahead;   // folder + separator + the part ahead of "/": pages 2 and on
    std::string behind;  // the part behind "/": page 1's name
};

SplitTemplate Split(std::string_view templ, std::string_view folder) {
    std::string whole = JoinPath(folder, "");
    whole.append(templ);
    // The folder itself may hold "/" now, so split the template, not the joined text.
    const std::size_t slash = templ.find('/');
    SplitTemplate parts;
    if (slash == std::string_view::npos) {
        parts.ahead = whole;
        return parts;
    }
    parts.ahead = JoinPath(folder, "") + std::string(templ.substr(0, slash));
    parts.behind = std::string(templ.substr(slash + 1));
    return parts;
}

}  // namespace

bool ValidSpanTemplate(std::string_view templ, std::string_view folder, std::string& firstPage) {
    const std::string lower = AsciiLower(templ);
    if (lower.find('/') == std::string::npos || lower.find('#') == std::string::npos) {
        return false;
    }
    for (char bad : {'"', '?', '*', '<', '>', '|'}) {
        if (lower.find(bad) != std::string::npos) {
            return false;
        }
    }
    const SplitTemplate parts = Split(templ, folder);
    firstPage = JoinPath(ParentPath(parts.ahead), Trim(parts.behind));
    return true;
}

std::string SpanPagePath(std::string_view templ, std::string_view folder, int page) {
    const SplitTemplate parts = Split(templ, folder);
    if (page == 1) {
        return JoinPath(ParentPath(parts.ahead), Trim(parts.behind));
    }
    return ReplaceChar(RTrim(parts.ahead), "#", FormatZeroPadded(page, 3));
}

}  // namespace jk
