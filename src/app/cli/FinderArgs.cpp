#include "app/cli/FinderArgs.h"

#include "util/Utf8.h"

namespace jk {

namespace {

// The session holds no catalogued discs yet: the finders see a catalogue of no volumes.
class EmptyCatalogue final : public CatalogueView {
public:
    std::size_t VolumeCount() const override { return 0; }
    std::string_view VolumeName(std::size_t) const override { return {}; }
    std::size_t SongCount(std::size_t) const override { return 0; }
    SongFieldViews Fields(std::size_t, std::size_t) const override { return {}; }
    std::uint64_t Generation() const override { return 0; }
};

}  // namespace

const CatalogueView& SessionCatalogue(Session& /*session*/) {
    // Hook for the catalogue of discs: once the session holds its volume table, this hands
    // out a view of it (a CatalogueView over the table's volumes).
    static const EmptyCatalogue none;
    return none;
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
