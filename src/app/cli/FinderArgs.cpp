#include "app/cli/FinderArgs.h"

#include "app/Session.h"
#include "util/Utf8.h"

namespace jk {

VolumeTableView SessionCatalogue(Session& session) {
    return VolumeTableView(session.Virtual.Volumes);
}

std::optional<SearchFieldSet> ParseFieldList(std::string_view text,
                                             std::span<const std::string_view> names) {
    if (text.size() == names.size() && text.find_first_not_of("01") == std::string_view::npos) {
        return ParseFieldFlags(text, names.size());
    }
    SearchFieldSet fields;
    while (!text.empty()) {
        const std::size_t comma = text.find(',');
        const std::string_view name = text.substr(0, comma);
        bool known = false;
        for (std::size_t i = 0; i < names.size(); ++i) {
            if (EqualsNoCase(name, names[i])) {
                fields.set(i);
                known = true;
            }
        }
        if (!known) {
            return std::nullopt;
        }
        text = comma == std::string_view::npos ? std::string_view() : text.substr(comma + 1);
    }
    return fields;
}

}  // namespace jk
