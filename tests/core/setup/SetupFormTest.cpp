#include "setup/SetupForm.h"

#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "app/SettingsStore.h"
#include "app/SettingsTable.h"
#include "setup/SetupPages.h"

namespace jk {
namespace {

Settings Defaults() {
    Settings settings;
    LoadDefaults(settings);
    return settings;
}

TEST(SetupPages, TheTreeHoldsTheFourteenPagesInOrder) {
    std::vector<std::string> texts;
    for (const SetupPage& page : SetupPages()) {
        texts.emplace_back(page.text);
    }
    EXPECT_EQ(texts,
              (std::vector<std::string>{"Player", "IntroPlay", "Delay", "Song loading", "System",
                                        "Playlist", "Data cache", "Shutdown", "Interface", "View",
                                        "Auto Optimize", "Layout", "Autocomplete", "Advanced"}));
    const SetupPage* cache = FindSetupPage("mCache");
    ASSERT_NE(cache, nullptr);
    EXPECT_EQ(cache->frame, "frCache");
    EXPECT_EQ(cache->caption, "Cache properties");
    EXPECT_EQ(FindSetupPage("mOptimize")->caption, "Automatic Optimize");
}

TEST(SetupPages, EveryControlStandsOnAPageAndSetsAKeyOfTheSettings) {
    std::set<std::string_view> names;
    for (const SetupControl& control : SetupControls()) {
        EXPECT_NE(FindSetupPage(control.page), nullptr) << control.name;
        EXPECT_NE(FindSetting(control.key).field, nullptr) << control.key;
        EXPECT_TRUE(names.insert(control.name).second) << control.name;
        if (control.kind == SetupControlKind::Options) {
            EXPECT_EQ(control.items.size(), 2u) << control.name;
            EXPECT_TRUE(names.insert(control.secondName).second) << control.secondName;
        }
    }
    for (const SetupDependency& dependency : SetupDependencies()) {
        EXPECT_NE(FindSetupControl(dependency.control), nullptr) << dependency.control;
    }
}

TEST(SetupPages, OkayStoresTheKeysInTheProgramsOrderAndEachOnce) {
    const std::vector<std::string_view> order = SetupStoreOrder();
    const std::vector<std::string_view> first(order.begin(), order.begin() + 6);
    EXPECT_EQ(first,
              (std::vector<std::string_view>{"DoubleClickFiles", "DoubleClickList", "FilesDelKey",
                                             "SongsDelKey", "PlayerExe1", "MaxCache"}));
    EXPECT_EQ(order[30], "NeverAskSave");
    EXPECT_EQ(order[31], "LayoutMode");
    EXPECT_EQ(order[32], "QuickShuffle");
    EXPECT_EQ(order[33], "AutoMinimize");
    EXPECT_EQ(std::set<std::string_view>(order.begin(), order.end()).size(), order.size());
    for (const SetupControl& control : SetupControls()) {
        EXPECT_NE(std::find(order.begin(), order.end(), control.key), order.end()) << control.key;
    }
}

TEST(SetupPages, ListsHoldTheirItemsWhoseIndexIsTheValue) {
    EXPECT_EQ(FindSetupControl("Combo6")->items[7], "Infinity");
    EXPECT_EQ(FindSetupControl("Combo7")->items[2], "after 1 week");
    EXPECT_EQ(FindSetupControl("Combo2")->items[0], "Queue into player");
    EXPECT_EQ(FindSetupControl("Combo4")->items[2], "Deselect all files");
    EXPECT_EQ(FindSetupControl("Combo9")->items[0], "Standard - x:\\path\\filename.mp3");
    EXPECT_EQ(FindSetupControl("Combo11")->items[2], "Disabled");
    EXPECT_EQ(FindSetupControl("Combo14")->items, FindSetupControl("Combo12")->items);
    EXPECT_EQ(FindSetupControl("Option4"), FindSetupControl("Option3"));
}

TEST(SetupForm, OpensWithTheSettingsAndStoresThemBackUnchanged) {
    Settings settings = Defaults();
    settings.MaxCache = 3;
    settings.QuickShuffle = 0;
    settings.LayoutMode = 1;
    settings.RememberList = "1";
    settings.TagCodepage = "KOI8-R";
    settings.AutoOptMax = 100000;
    const SetupForm form = InitializeSetupForm(settings);
    EXPECT_EQ(form.At("Combo6").choice, 3);
    EXPECT_EQ(form.At("Option3").choice, 1);  // the enhanced shuffle
    EXPECT_EQ(form.At("optTree0").choice, 1);
    EXPECT_TRUE(form.At("Check1").checked);
    EXPECT_EQ(form.At("Text4").text, "100000");
    EXPECT_EQ(form.At("Combo5").text, "winamp.exe");

    Settings stored = settings;
    StorePlayerChoice(form, stored);
    StoreSetupForm(form, stored);
    for (const SettingField& field : SettingsTable()) {
        if (field.key.starts_with("Last")) {
            continue;  // the player list gained its entry
        }
        EXPECT_EQ(SettingText(stored, field), SettingText(settings, field)) << field.key;
    }
    EXPECT_EQ(stored.PlayerHistory[1], "winamp.exe");
}

TEST(SetupForm, ControlsChangeTheirKeysByKind) {
    Settings settings = Defaults();
    SetupForm form = InitializeSetupForm(settings);
    form["Check10"].checked = false;        // AutoLoadPlayer
    form["Text2"].text = " 30 ";            // IntroSkip, trimmed and read as a number
    form["Text3"].text = "99999";           // IntroLength, brought inside 16 bits
    form["Combo8"].choice = 2;              // WindowsMode
    form["Option3"].choice = 0;             // QuickShuffle: the simple shuffle
    form["Option1"].choice = 0;             // NeverAskSave
    form["cboTagCodepage"].choice = 1;      // TagCodepage
    form["Check1"].checked = true;          // RememberList, held as text
    form["txtMprisPlayer"].text = " vlc ";  // MprisPlayer, trimmed
    form["chkSafeCatalogue"].checked = false;
    StoreSetupForm(form, settings);
    EXPECT_EQ(settings.AutoLoadPlayer, 0);
    EXPECT_EQ(settings.IntroSkip, 30);
    EXPECT_EQ(settings.IntroLength, 32767);
    EXPECT_EQ(settings.WindowsMode, 2);
    EXPECT_EQ(settings.QuickShuffle, 1);
    EXPECT_EQ(settings.NeverAskSave, 1);
    EXPECT_EQ(settings.TagCodepage, "windows-1250");
    EXPECT_EQ(settings.RememberList, "1");
    EXPECT_EQ(settings.MprisPlayer, "vlc");
    EXPECT_EQ(settings.SafeCatalogue, 0);
    EXPECT_EQ(settings.DiscIdentity, 1);
}

TEST(SetupForm, AValueOutsideAListShowsNoChoiceAndIsKept) {
    Settings settings = Defaults();
    settings.MaxCache = 9;
    settings.TagCodepage = "";
    settings.LayoutMode = 5;
    const SetupForm form = InitializeSetupForm(settings);
    EXPECT_EQ(form.At("Combo6").choice, -1);
    EXPECT_EQ(form.At("cboTagCodepage").choice, -1);
    EXPECT_EQ(form.At("optTree0").choice, 0);  // neither layout: the first is checked
    StoreSetupForm(form, settings);
    EXPECT_EQ(settings.MaxCache, 9);
    EXPECT_EQ(settings.TagCodepage, "");
    EXPECT_EQ(settings.LayoutMode, 0);
}

TEST(SetupForm, TheShutdownOptionsFollowNeverAskSaveAndTheShuffleQuickShuffle) {
    struct Case {
        std::int16_t value;
        int option;  // the button checked: 0 the first, 1 the second
    };
    for (const Case c : {Case{1, 0}, Case{0, 1}, Case{-1, 1}, Case{2, 1}}) {
        Settings settings = Defaults();
        settings.NeverAskSave = c.value;
        settings.QuickShuffle = c.value;
        const SetupForm form = InitializeSetupForm(settings);
        EXPECT_EQ(form.At("Option1").choice, c.option) << c.value;
        EXPECT_EQ(form.At("Option3").choice, c.option) << c.value;
    }
}

TEST(SetupForm, DependentControlsFollowTheirCheckBoxes) {
    SetupForm form = InitializeSetupForm(Defaults());
    struct Case {
        bool check5, check6, check4, check7;
        bool check6On, text4On, text1On, optionsOn;
    };
    const Case cases[] = {
        {true, true, true, true, true, true, true, true},
        {false, true, false, false, false, false, false, false},
        {true, false, true, false, true, false, true, false},
        {false, false, false, true, false, false, false, true},
    };
    for (const Case& c : cases) {
        form["Check5"].checked = c.check5;
        form["Check6"].checked = c.check6;
        form["Check4"].checked = c.check4;
        form["Check7"].checked = c.check7;
        EXPECT_EQ(ControlEnabled(form, "Check6"), c.check6On);
        EXPECT_EQ(ControlEnabled(form, "Text4"), c.text4On);
        EXPECT_EQ(ControlEnabled(form, "Text1"), c.text1On);
        EXPECT_EQ(ControlEnabled(form, "Option1"), c.optionsOn);
        EXPECT_EQ(ControlEnabled(form, "Option2"), c.optionsOn);
        EXPECT_TRUE(ControlEnabled(form, "Check5"));
        EXPECT_TRUE(ControlEnabled(form, "Combo5"));
    }
}

TextList10 History(std::initializer_list<const char*> entries) {
    TextList10 history;
    std::size_t i = 1;
    for (const char* entry : entries) {
        history[i++] = entry;
    }
    return history;
}

TEST(PlayerHistory, ANewPlayerGoesFirstAndTheEighthIsDropped) {
    TextList10 history = History({"a", "b", "c", "d", "e", "f", "g", "h"});
    ShiftPlayerHistory(history, "new");
    EXPECT_EQ(history, History({"new", "a", "b", "c", "d", "e", "f", "g"}));
}

TEST(PlayerHistory, AKnownPlayerMovesUpWithoutARepeat) {
    TextList10 history = History({"a", "b", "c", "d"});
    ShiftPlayerHistory(history, "c");
    EXPECT_EQ(history, History({"c", "a", "b", "d"}));
    ShiftPlayerHistory(history, "c");
    EXPECT_EQ(history, History({"c", "a", "b", "d"}));
    // Paths differ in case on Linux: another file, another entry.
    ShiftPlayerHistory(history, "C");
    EXPECT_EQ(history, History({"C", "c", "a", "b", "d"}));
    ShiftPlayerHistory(history, "");
    EXPECT_EQ(history, History({"C", "c", "a", "b", "d"}));
}

TEST(PlayerHistory, OkayPutsTheTrimmedPlayerFirstAndMakesItThePlayer) {
    Settings settings = Defaults();
    settings.PlayerHistory = History({"/usr/bin/mpv", "/usr/bin/vlc"});
    const SetupForm opened = InitializeSetupForm(settings);
    EXPECT_EQ(opened.players, (std::vector<std::string>{"/usr/bin/mpv", "/usr/bin/vlc"}));
    SetupForm form = opened;
    form["Combo5"].text = "  /usr/bin/vlc ";
    StorePlayerChoice(form, settings);
    EXPECT_EQ(settings.PlayerExes[1], "/usr/bin/vlc");
    EXPECT_EQ(settings.PlayerHistory, History({"/usr/bin/vlc", "/usr/bin/mpv"}));
    EXPECT_EQ(PlayerListItems(settings),
              (std::vector<std::string>{"/usr/bin/vlc", "/usr/bin/mpv"}));
}

}  // namespace
}  // namespace jk
