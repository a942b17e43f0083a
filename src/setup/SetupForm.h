#pragma once

// The Setup Browser's controls as values: filled from the settings when it opens, stored into
// them on "Okay". Until then nothing reaches the settings, so "Cancel" changes nothing.

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "app/Settings.h"

namespace jk {

struct SetupControlValue {
    bool checked = false;  // Check
    int choice = -1;       // List, TextList, Options: the item or button chosen; -1 for none
    std::string text;      // Number, Text, PlayerList: the text in the box
};

struct SetupForm {
    // By control name (the first button's, for two option buttons).
    std::map<std::string, SetupControlValue, std::less<>> values;
    // The player list's items: the last players, newest first.
    std::vector<std::string> players;

    SetupControlValue& operator[](std::string_view name);
    // A blank value for a name the form does not hold.
    const SetupControlValue& At(std::string_view name) const;
};

// Initialize: every control of every page from the settings. A list whose key names none of
// its items shows no choice.
SetupForm InitializeSetupForm(const Settings& settings);

// The player list: the last eight players, newest first, without the empty entries.
std::vector<std::string> PlayerListItems(const Settings& settings);

// Moves `player` to the head of the last eight players without a repeat: an entry equal to it
// (as paths are compared, case counting) moves up, the others keep their order; else all move
// down and the eighth is dropped. An empty entry changes nothing.
void ShiftPlayerHistory(TextList10& history, std::string_view player);

// "Okay"'s first step: the trimmed text of the player list at the head of the last players,
// and as the player path.
void StorePlayerChoice(const SetupForm& form, Settings& settings);

// "Okay"'s stores, in the order of SetupStoreOrder (the player path was set by
// StorePlayerChoice). A list with no choice leaves its key as it was.
void StoreSetupForm(const SetupForm& form, Settings& settings);

// True while each check box that a control depends on is checked.
bool ControlEnabled(const SetupForm& form, std::string_view name);

}  // namespace jk
