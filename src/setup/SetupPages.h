#pragma once

// The Setup Browser as data: its tree of pages, and on each page the controls with their
// captions, list items, help texts and the settings key each sets on "Okay". The window builds
// itself from these tables, and the form routines (SetupForm.h) read and store the keys through
// them, so a new setting is one line in the control table.

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

namespace jk {

inline constexpr std::string_view kSetupCaption = "Setup";
inline constexpr std::string_view kCategoryLabel = "Category:";
inline constexpr std::string_view kOkayCaption = "Okay";
inline constexpr std::string_view kCancelCaption = "Cancel";
inline constexpr std::string_view kBrowseCaption = "Browse...";

struct SetupPage {
    std::string_view text{};     // in the tree of categories
    std::string_view key{};      // the tree node's key
    std::string_view frame{};    // the frame that holds the page's controls
    std::string_view caption{};  // the frame's caption
};

enum class SetupControlKind : std::uint8_t {
    Check,       // a check box: its key is 1 when checked, else 0
    Number,      // a box for a number: its key takes the numeric value of the text
    Text,        // a box for text: its key takes the text trimmed
    List,        // a drop-down list: its key is the index of the item chosen
    TextList,    // a drop-down list: its key is the text of the item chosen
    Options,     // two option buttons: its key takes the value of the one chosen
    PlayerList,  // the player executable with the last eight players
};

struct SetupControl {
    std::string_view page{};  // the node key of its page
    std::string_view name{};  // the control's name; for Options, the first button's
    SetupControlKind kind = SetupControlKind::Check;
    std::string_view caption{};             // the check box's text, or the words before the control
    std::string_view key{};                 // the settings key it sets on "Okay"
    std::vector<std::string_view> items{};  // list items, or the two option buttons' captions
    std::string_view trailing{};            // words behind a box ("entries.")
    std::string_view group{};               // the box the control stands in on its page
    bool sameRow = false;                   // stands in the row of the control before it
    std::string_view help{};                // a help text below it
    // Options: the second button's name, the value each button stands for, and the button
    // checked when the key holds neither value.
    std::string_view secondName{};
    std::array<std::int16_t, 2> optionValues{0, 1};
    int fallbackOption = 0;
};

// A control that is enabled only while each of its enablers (check boxes) is checked.
struct SetupDependency {
    std::string_view control{};
    std::vector<std::string_view> enablers{};
};

// The pages, in the order of the tree.
const std::vector<SetupPage>& SetupPages();
// The controls, page by page, each page's in the order they stand on it.
const std::vector<SetupControl>& SetupControls();
const std::vector<SetupDependency>& SetupDependencies();

// The page of a node key, the control of a name (either button's name for Options); null
// when there is none.
const SetupPage* FindSetupPage(std::string_view key);
const SetupControl* FindSetupControl(std::string_view name);
// The controls of one page, in order.
std::vector<const SetupControl*> ControlsOfPage(std::string_view pageKey);

// The keys in the order "Okay" stores them: the player path, then the keys of the pages in the
// order the program always stored them, then those it did not name (QuickShuffle,
// AutoMinimize and this build's additions) in the order of the control table.
std::vector<std::string_view> SetupStoreOrder();

// The key of the player path (the player in use), which the player list sets.
inline constexpr std::string_view kPlayerKey = "PlayerExe1";

}  // namespace jk
