#include "app/SettingsTable.h"

#include <cmath>
#include <type_traits>

#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {

namespace {

template <typename Value>
constexpr bool kIsScalar =
    std::is_same_v<Value, std::int16_t> || std::is_same_v<Value, std::int32_t> ||
    std::is_same_v<Value, double> || std::is_same_v<Value, std::string>;

// Calls `f` with the member behind a field (the element, for arrays), const when `settings` is.
template <typename S, typename F>
auto VisitValue(S& settings, const SettingField& field, F&& f) {
    return std::visit(
        [&](auto member) {
            auto& value = settings.*member;
            using Value = std::remove_cvref_t<decltype(value)>;
            if constexpr (kIsScalar<Value>) {
                return f(value);
            } else {
                return f(value[field.index]);
            }
        },
        field.member);
}

double FiniteOrZero(double value) {
    return std::isfinite(value) ? value : 0.0;
}

}  // namespace

bool IsNumericKind(SettingKind kind) {
    return kind == SettingKind::Int16 || kind == SettingKind::Int32 || kind == SettingKind::Twips;
}

std::string SettingText(const Settings& settings, const SettingField& field) {
    return VisitValue(settings, field, [](const auto& value) -> std::string {
        using Value = std::remove_cvref_t<decltype(value)>;
        if constexpr (std::is_same_v<Value, std::string>) {
            return value;
        } else if constexpr (std::is_same_v<Value, double>) {
            return NumberText(value);
        } else {
            return std::to_string(value);
        }
    });
}

double SettingNumber(const Settings& settings, const SettingField& field) {
    return VisitValue(settings, field, [](const auto& value) -> double {
        using Value = std::remove_cvref_t<decltype(value)>;
        if constexpr (std::is_same_v<Value, std::string>) {
            return 0.0;
        } else {
            return static_cast<double>(value);
        }
    });
}

void SetSettingFromText(Settings& settings, const SettingField& field, std::string_view text) {
    VisitValue(settings, field, [&](auto& value) {
        using Value = std::remove_cvref_t<decltype(value)>;
        if constexpr (std::is_same_v<Value, std::string>) {
            value = field.kind == SettingKind::NumberText ? NumberText(FiniteOrZero(Val(text)))
                                                          : std::string(text);
        } else if constexpr (std::is_same_v<Value, double>) {
            value = FiniteOrZero(Val(text));
        } else if constexpr (std::is_same_v<Value, std::int32_t>) {
            value = ToInt32Clamped(Val(text));
        } else {
            value = ToInt16Clamped(Val(text));
        }
    });
}

void SetSettingDefault(Settings& settings, const SettingField& field) {
    VisitValue(settings, field, [&](auto& value) {
        using Value = std::remove_cvref_t<decltype(value)>;
        if constexpr (std::is_same_v<Value, std::string>) {
            value = field.kind == SettingKind::NumberText ? NumberText(field.numberDefault)
                                                          : std::string(field.textDefault);
        } else {
            value = static_cast<Value>(field.numberDefault);
        }
    });
}

std::string SettingName(const SettingField& field) {
    return std::string(field.section) + "." + field.key;
}

SettingLookup FindSetting(std::string_view name) {
    SettingLookup lookup;
    const std::size_t dot = name.find('.');
    const std::string_view section =
        dot == std::string_view::npos ? std::string_view{} : name.substr(0, dot);
    const std::string_view key = dot == std::string_view::npos ? name : name.substr(dot + 1);
    for (const SettingField& field : SettingsTable()) {
        const bool keyMatches = EqualsNoCase(field.key, key) ||
                                (!field.readKey.empty() && EqualsNoCase(field.readKey, key));
        if (!keyMatches) {
            continue;
        }
        if (dot != std::string_view::npos) {
            if (EqualsNoCase(field.section, section)) {
                lookup.field = &field;
                lookup.candidates.clear();
                return lookup;
            }
            continue;
        }
        lookup.candidates.push_back(&field);
    }
    if (lookup.candidates.size() == 1) {
        lookup.field = lookup.candidates.front();
        lookup.candidates.clear();
    }
    return lookup;
}

}  // namespace jk
