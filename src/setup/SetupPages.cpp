#include "setup/SetupPages.h"

#include <algorithm>

#include "util/Codepage.h"

namespace jk {

namespace {

using Kind = SetupControlKind;

const std::vector<std::string_view> kLoadModes = {"Fast snap - fastest", "Regular snap - fast",
                                                  "Conventional - slowest"};

const std::vector<std::string_view> kDeleteKeyActions = {"Remove file from list", "Delete file",
                                                         "Deselect all files"};

std::vector<std::string_view> OfferedCodepages() {
    const auto& offered = OfferedTagCodepages();
    return {offered.begin(), offered.end()};
}

std::vector<SetupPage> BuildPages() {
    return {
        {"Player", "mPlayer", "frPlayer", "Player configuration"},
        {"IntroPlay", "mIntro", "frIntroPlay", "IntroPlay"},
        {"Delay", "mDelay", "frDelay", "Song Delay"},
        {"Song loading", "mLoading", "frLoading", "Loading"},
        {"System", "mSystem", "frSystem", "Basic system options"},
        {"Playlist", "mPlaylist", "frPlaylist", "Playlist options"},
        {"Data cache", "mCache", "frCache", "Cache properties"},
        {"Shutdown", "mShutdown", "frShutdown", "Shutdown"},
        {"Interface", "mInterface", "frInterface", "Interface options"},
        {"View", "mView", "frView", "View options"},
        {"Auto Optimize", "mOptimize", "frAutoOptimize", "Automatic Optimize"},
        {"Layout", "mLayout", "frLayout", "Layout"},
        {"Autocomplete", "mAutocomplete", "frAutocomplete", "AutoComplete"},
        {"Advanced", "mAdvanced", "frAdvanced", "Advanced options"},
    };
}

// Shorthands for the lines of the control table.
SetupControl Check(std::string_view page, std::string_view name, std::string_view caption,
                   std::string_view key, std::string_view help = {}) {
    return {.page = page,
            .name = name,
            .kind = Kind::Check,
            .caption = caption,
            .key = key,
            .help = help};
}

SetupControl Number(std::string_view page, std::string_view name, std::string_view caption,
                    std::string_view key, std::string_view trailing = {}) {
    return {.page = page,
            .name = name,
            .kind = Kind::Number,
            .caption = caption,
            .key = key,
            .trailing = trailing};
}

SetupControl List(std::string_view page, std::string_view name, std::string_view caption,
                  std::string_view key, std::vector<std::string_view> items) {
    return {.page = page,
            .name = name,
            .kind = Kind::List,
            .caption = caption,
            .key = key,
            .items = std::move(items)};
}

SetupControl Options(std::string_view page, std::string_view first, std::string_view second,
                     std::string_view key, std::vector<std::string_view> captions,
                     std::array<std::int16_t, 2> values, int fallback) {
    return {.page = page,
            .name = first,
            .kind = Kind::Options,
            .key = key,
            .items = std::move(captions),
            .secondName = second,
            .optionValues = values,
            .fallbackOption = fallback};
}

SetupControl InGroup(SetupControl control, std::string_view group) {
    control.group = group;
    return control;
}

SetupControl WithHelp(SetupControl control, std::string_view help) {
    control.help = help;
    return control;
}

SetupControl OnSameRow(SetupControl control) {
    control.sameRow = true;
    return control;
}

std::vector<SetupControl> BuildControls() {
    std::vector<SetupControl> c;
    c.push_back({.page = "mPlayer",
                 .name = "Combo5",
                 .kind = Kind::PlayerList,
                 .caption = "Player executable:",
                 .key = kPlayerKey,
                 .help = "Jukarra remembers your last 8 players, so you can effortlessly switch "
                         "between your favorite MP3 players."});
    c.push_back(Check("mPlayer", "Check10",
                      "Automatically load player at Jukarra startup, if necessary.",
                      "AutoLoadPlayer"));
    c.push_back({.page = "mPlayer",
                 .name = "txtMprisPlayer",
                 .kind = Kind::Text,
                 .caption = "MPRIS player:",
                 .key = "MprisPlayer",
                 .help = "Steers the player over the desktop's media bus by its name there "
                         "(\"vlc\", \"mpv\"), whatever the executable above. Empty: by "
                         "the executable."});

    c.push_back(Check("mIntro", "Check3", "Enable IntroPlay mode", "IntroPlay",
                      "Plays a few seconds of each song in the playlist, one song after "
                      "another."));
    c.push_back(Number("mIntro", "Text2", "Skip length (seconds):", "IntroSkip"));
    c.push_back(Number("mIntro", "Text3", "Playback time (seconds):", "IntroLength"));

    c.push_back(Check("mDelay", "Check4", "Insert delay between songs (default: disabled)",
                      "Spacer", "Plays silence between the songs of each list you play."));
    c.push_back(Number("mDelay", "Text1", "Delay time (seconds):", "Delay"));

    c.push_back(WithHelp(List("mLoading", "Combo12", "Loading mode", "LoadMode", kLoadModes),
                         "How a list reaches a player that is already running."));
    c.push_back(Number("mLoading", "Text5", "When loading more than", "HighLoad", "song(s), use:"));
    c.push_back(OnSameRow(List("mLoading", "Combo14", {}, "HighLoadMode", kLoadModes)));

    // QuickShuffle: the simple shuffle only when it is exactly 1.
    c.push_back(Options("mSystem", "Option3", "Option4", "QuickShuffle",
                        {"Simple shuffle: single pass, random allocation",
                         "Enhanced shuffle: reduces chance that the same artists are played "
                         "back-to-back"},
                        {1, 0}, 1));
    c.push_back(Check("mSystem", "Check2", "Automatically minimize on Play/Jukarra", "AutoMinimize",
                      "Moves Jukarra out of the way once a list starts playing."));

    c.push_back(Check("mPlaylist", "Check1", "Remember last playlist", "RememberList",
                      "Saves the playlist automatically to a file for immediate access at the "
                      "start of the next session."));
    c.push_back(Check("mPlaylist", "Check9", "Hide non-existent playlist entries", "HideGhosts",
                      "Trims your playlist to only entries that it could open.  This option is "
                      "disabled by default."));
    c.push_back(Check("mPlaylist", "Check12", "Store with relative paths", "RelativePaths",
                      "Allows playlists and their corresponding files to be transfered "
                      "elsewhere."));

    c.push_back(List("mCache", "Combo6", "Cache size", "MaxCache",
                     {"None", "50", "100", "250", "500", "1000", "2500", "Infinity"}));
    c.push_back(WithHelp(List("mCache", "Combo7", "Cached tags expire", "ExpireMode",
                              {"Never", "after 3 days", "after 1 week", "after 3 weeks",
                               "after 45 days", "after 90 days"}),
                         "The cache keeps each song's tags, so that a folder opens quickly "
                         "the next time; a song not seen for this long is read afresh."));

    c.push_back(Check("mShutdown", "Check7", "Never ask to save playlist at shutdown", "NeverAsk",
                      "Enable this option to speed up the program's shutdown process."));
    c.push_back(InGroup(Options("mShutdown", "Option1", "Option2", "NeverAskSave",
                                {"Automatically save list", "Don't do anything at all"}, {1, 0}, 1),
                        "Instead:"));

    c.push_back(InGroup(List("mInterface", "Combo1", "Double click:", "DoubleClickFiles",
                             {"Add file to list", "Play single file", "Play from current position",
                              "Select all files"}),
                        "File selector"));
    c.push_back(
        InGroup(List("mInterface", "Combo3", "Delete key:", "FilesDelKey", kDeleteKeyActions),
                "File selector"));
    c.push_back(InGroup(List("mInterface", "Combo2", "Double click:", "DoubleClickList",
                             {"Queue into player", "Play single file", "Play from current position",
                              "Select all files"}),
                        "Song playlist"));
    c.push_back(
        InGroup(List("mInterface", "Combo4", "Delete key:", "SongsDelKey", kDeleteKeyActions),
                "Song playlist"));

    c.push_back(List("mView", "Combo8", "Show program", "WindowsMode",
                     {"Taskbar only - like normal programs", "Both Taskbar and System Tray",
                      "System Tray only"}));
    c.push_back(List("mView", "Combo9", "Properties filename", "FilenameMode",
                     {"Standard - x:\\path\\filename.mp3", "Abbreviated - filename.mp3"}));
    c.push_back(Check("mView", "Check11", "Display gridlines inside listviews.", "ShowGrid"));
    c.push_back(
        Check("mView", "Check13", "Show currently playing song in status bar.", "ShowCurrSong"));

    c.push_back(Check("mOptimize", "Check5", "Enable Auto-Optimize", "AutoOpt"));
    c.push_back(Check("mOptimize", "Check6", "Don't optimize if there's more than", "NoAutoOpt"));
    c.push_back(OnSameRow(Number("mOptimize", "Text4", {}, "AutoOptMax", "entries.")));

    c.push_back(Options("mLayout", "optTree0", "optTree1", "LayoutMode",
                        {"Taller tree", "Wider playlist"}, {0, 1}, 0));

    c.push_back(Check("mAutocomplete", "Check8", "Enable the automatic completion of fields",
                      "Autocomplete"));

    c.push_back(
        List("mAdvanced", "Combo10", "File filter", "FilterMode",
             {"MPEG Layer-3 (*.mp3)", "All MPEG files (*.mp*)", "All valid filenames (*.*)"}));
    c.push_back(List("mAdvanced", "Combo11", "Recycle/delete", "DelMode",
                     {"With warning (default)", "Without warning", "Disabled"}));

    // This build's additions, each on the page of what it changes.
    c.push_back(InGroup(
        Check("mAdvanced", "chkReadID3v2", "Read ID3v2 tags at the start of files", "ReadID3v2",
              "Fills a song's empty fields from the tag that most other players "
              "write."),
        "Reading songs"));
    c.push_back(
        InGroup(Check("mAdvanced", "chkExactTimes",
                      "Exact playing times and bitrates (VBR headers, long songs)", "ExactTimes"),
                "Reading songs"));
    SetupControl codepage{.page = "mAdvanced",
                          .name = "cboTagCodepage",
                          .kind = Kind::TextList,
                          .caption = "Tag code page:",
                          .key = "TagCodepage",
                          .items = OfferedCodepages(),
                          .group = "Reading songs",
                          .help =
                              "A new code page empties the song cache, so that songs are "
                              "read again in it."};
    c.push_back(std::move(codepage));
    c.push_back(InGroup(Check("mAdvanced", "chkDiscIdentity",
                              "Recognise catalogued discs when they are inserted", "DiscIdentity"),
                        "Virtual drives"));
    c.push_back(InGroup(Check("mAdvanced", "chkSafeCatalogue",
                              "Save the virtual drives after each change", "SafeCatalogue"),
                        "Virtual drives"));
    c.push_back(InGroup(Check("mAdvanced", "chkSearchAsYouType", "Search the catalogue as you type",
                              "SearchAsYouType"),
                        "Virtual drives"));
    c.push_back(InGroup(Check("mAdvanced", "chkHTMLEscape",
                              "Escape &, <, > and quotes in published HTML pages", "HTMLEscape"),
                        "Publishing"));
    return c;
}

std::vector<SetupDependency> BuildDependencies() {
    return {
        {"Check6", {"Check5"}},
        {"Text4", {"Check5", "Check6"}},
        {"Text1", {"Check4"}},
        {"Option1", {"Check7"}},
    };
}

// The keys of the pages in the order "Okay" always stored them; the player path stands where
// the program stored it. This build's own keys follow, in the order of their controls.
constexpr std::array<std::string_view, 34> kStoredOrder = {
    "DoubleClickFiles", "DoubleClickList", "FilesDelKey",
    "SongsDelKey",      kPlayerKey,        "MaxCache",
    "ExpireMode",       "WindowsMode",     "FilenameMode",
    "DelMode",          "FilterMode",      "LoadMode",
    "HighLoadMode",     "Spacer",          "IntroSkip",
    "IntroLength",      "AutoOptMax",      "HighLoad",
    "RememberList",     "IntroPlay",       "Delay",
    "AutoOpt",          "NoAutoOpt",       "NeverAsk",
    "Autocomplete",     "HideGhosts",      "AutoLoadPlayer",
    "ShowGrid",         "RelativePaths",   "ShowCurrSong",
    "NeverAskSave",     "LayoutMode",      "QuickShuffle",
    "AutoMinimize",
};

}  // namespace

const std::vector<SetupPage>& SetupPages() {
    static const std::vector<SetupPage> pages = BuildPages();
    return pages;
}

const std::vector<SetupControl>& SetupControls() {
    static const std::vector<SetupControl> controls = BuildControls();
    return controls;
}

const std::vector<SetupDependency>& SetupDependencies() {
    static const std::vector<SetupDependency> dependencies = BuildDependencies();
    return dependencies;
}

const SetupPage* FindSetupPage(std::string_view key) {
    for (const SetupPage& page : SetupPages()) {
        if (page.key == key) {
            return &page;
        }
    }
    return nullptr;
}

const SetupControl* FindSetupControl(std::string_view name) {
    for (const SetupControl& control : SetupControls()) {
        if (control.name == name || (!control.secondName.empty() && control.secondName == name)) {
            return &control;
        }
    }
    return nullptr;
}

std::vector<const SetupControl*> ControlsOfPage(std::string_view pageKey) {
    std::vector<const SetupControl*> controls;
    for (const SetupControl& control : SetupControls()) {
        if (control.page == pageKey) {
            controls.push_back(&control);
        }
    }
    return controls;
}

std::vector<std::string_view> SetupStoreOrder() {
    std::vector<std::string_view> order(kStoredOrder.begin(), kStoredOrder.end());
    for (const SetupControl& control : SetupControls()) {
        if (std::find(order.begin(), order.end(), control.key) == order.end()) {
            order.push_back(control.key);
        }
    }
    return order;
}

}  // namespace jk
