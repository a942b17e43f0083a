#include "setup/SetupForm.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "app/SettingsTable.h"
#include "setup/SetupPages.h"
#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {

namespace {

constexpr std::size_t kPlayersKept = 8;

const SettingField* FieldOf(const SetupControl& control) {
    return FindSetting(control.key).field;
}

// The key's value as a number, whatever kind the key is held in.
double NumberOf(const Settings& settings, const SettingField& field) {
    return IsNumericKind(field.kind) ? SettingNumber(settings, field)
                                     : Val(SettingText(settings, field));
}

int ListChoice(double value, std::size_t itemCount) {
    if (value != std::floor(value) || value < 0 || value >= static_cast<double>(itemCount)) {
        return -1;
    }
    return static_cast<int>(value);
}

int TextChoice(std::string_view value, const std::vector<std::string_view>& items) {
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (EqualsNoCase(items[i], value)) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

int OptionChoice(double value, const SetupControl& control) {
    for (int i = 0; i < 2; ++i) {
        if (value == control.optionValues[static_cast<std::size_t>(i)]) {
            return i;
        }
    }
    return control.fallbackOption;
}

SetupControlValue InitialValue(const SetupControl& control, const Settings& settings) {
    SetupControlValue value;
    if (control.kind == SetupControlKind::PlayerList) {
        value.text = CurrentPlayerPath(settings);
        return value;
    }
    const SettingField* field = FieldOf(control);
    if (field == nullptr) {
        return value;
    }
    const double number = NumberOf(settings, *field);
    switch (control.kind) {
        case SetupControlKind::Check:
            value.checked = number != 0;
            break;
        case SetupControlKind::Number:
        case SetupControlKind::Text:
            value.text = SettingText(settings, *field);
            break;
        case SetupControlKind::List:
            value.choice = ListChoice(number, control.items.size());
            break;
        case SetupControlKind::TextList:
            value.choice = TextChoice(SettingText(settings, *field), control.items);
            break;
        case SetupControlKind::Options:
            value.choice = OptionChoice(number, control);
            break;
        case SetupControlKind::PlayerList:
            break;
    }
    return value;
}

// The text the key takes from the control; nothing when the control leaves it as it was.
std::optional<std::string> StoredText(const SetupControl& control, const SetupControlValue& value) {
    const auto chosen = [&](std::size_t count) {
        return value.choice >= 0 && static_cast<std::size_t>(value.choice) < count;
    };
    switch (control.kind) {
        case SetupControlKind::Check:
            return value.checked ? "1" : "0";
        case SetupControlKind::Number:
        case SetupControlKind::Text:
            return std::string(Trim(value.text));
        case SetupControlKind::List:
            return chosen(control.items.size()) ? std::optional(std::to_string(value.choice))
                                                : std::nullopt;
        case SetupControlKind::TextList:
            return chosen(control.items.size())
                       ? std::optional(
                             std::string(control.items[static_cast<std::size_t>(value.choice)]))
                       : std::nullopt;
        case SetupControlKind::Options:
            return chosen(2) ? std::optional(std::to_string(
                                   control.optionValues[static_cast<std::size_t>(value.choice)]))
                             : std::nullopt;
        case SetupControlKind::PlayerList:
            break;
    }
    return std::nullopt;
}

const SetupControl* ControlOfKey(std::string_view key) {
    for (const SetupControl& control : SetupControls()) {
        if (control.key == key) {
            return &control;
        }
    }
    return nullptr;
}

}  // namespace

SetupControlValue& SetupForm::operator[](std::string_view name) {
    auto found = values.find(name);
    if (found == values.end()) {
        found = values.emplace(std::string(name), SetupControlValue{}).first;
    }
    return found->second;
}

const SetupControlValue& SetupForm::At(std::string_view name) const {
    static const SetupControlValue blank;
    const auto found = values.find(name);
    return found == values.end() ? blank : found->second;
}

SetupForm InitializeSetupForm(const Settings& settings) {
    SetupForm form;
    for (const SetupControl& control : SetupControls()) {
        form[control.name] = InitialValue(control, settings);
    }
    form.players = PlayerListItems(settings);
    return form;
}

std::vector<std::string> PlayerListItems(const Settings& settings) {
    std::vector<std::string> players;
    for (std::size_t i = 1; i <= kPlayersKept; ++i) {
        if (!settings.PlayerHistory[i].empty()) {
            players.push_back(settings.PlayerHistory[i]);
        }
    }
    return players;
}

void ShiftPlayerHistory(TextList10& history, std::string_view player) {
    if (player.empty()) {
        return;
    }
    std::size_t from = kPlayersKept;  // the entry that leaves its place: the last, or the match
    for (std::size_t i = 1; i <= kPlayersKept; ++i) {
        if (history[i] == player) {
            from = i;
            break;
        }
    }
    for (std::size_t j = from; j > 1; --j) {
        history[j] = std::move(history[j - 1]);
    }
    history[1] = std::string(player);
}

void StorePlayerChoice(const SetupForm& form, Settings& settings) {
    const SetupControl* list = ControlOfKey(kPlayerKey);
    const std::string player(Trim(form.At(list != nullptr ? list->name : "").text));
    ShiftPlayerHistory(settings.PlayerHistory, player);
    settings.PlayerExes[1] = player;
}

void StoreSetupForm(const SetupForm& form, Settings& settings) {
    for (const std::string_view key : SetupStoreOrder()) {
        const SetupControl* control = ControlOfKey(key);
        const SettingField* field = control != nullptr ? FieldOf(*control) : nullptr;
        if (field == nullptr) {
            continue;
        }
        if (const auto text = StoredText(*control, form.At(control->name))) {
            SetSettingFromText(settings, *field, *text);
        }
    }
}

bool ControlEnabled(const SetupForm& form, std::string_view name) {
    const SetupControl* control = FindSetupControl(name);
    const std::string_view own = control != nullptr ? control->name : name;
    for (const SetupDependency& dependency : SetupDependencies()) {
        if (dependency.control != own) {
            continue;
        }
        return std::all_of(dependency.enablers.begin(), dependency.enablers.end(),
                           [&](std::string_view enabler) { return form.At(enabler).checked; });
    }
    return true;
}

}  // namespace jk
