#include "app/SettingsStore.h"

#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "app/Session.h"
#include "app/SettingsTable.h"
#include "support/TempFolder.h"
#include "util/Utf8.h"

namespace jk {
namespace {

const SettingField& Field(std::string_view name) {
    const SettingLookup lookup = FindSetting(name);
    EXPECT_NE(lookup.field, nullptr) << name;
    return *lookup.field;
}

std::string Value(const Settings& settings, std::string_view name) {
    return SettingText(settings, Field(name));
}

Settings Defaults() {
    Settings settings;
    LoadDefaults(settings);
    return settings;
}

// Settings after loading `text` over the defaults; `loaded` tells LoadINI's result.
Settings Loaded(const std::string& text, bool* loaded = nullptr) {
    Settings settings = Defaults();
    const bool result = LoadINI(settings, ProfileFile::Parse(text));
    if (loaded != nullptr) {
        *loaded = result;
    }
    return settings;
}

const std::string kRun = "[INIexists]\r\nCheck=1\r\n";

TEST(SettingsTable, HoldsEachKeyOnceInTheFileOrderOfSections) {
    const std::vector<std::string> order = {
        "INIexists", "Rename",    "HTML",           "ColumnOrder", "View",   "Records", "Advanced",
        "Listview1", "Listview2", "WindowPosition", "LastPath",    "Player", "Options"};
    std::vector<std::string> seen;
    std::set<std::string> names;
    for (const SettingField& field : SettingsTable()) {
        if (seen.empty() || seen.back() != field.section) {
            seen.emplace_back(field.section);
        }
        EXPECT_TRUE(names.insert(ToLower(SettingName(field))).second) << SettingName(field);
    }
    EXPECT_EQ(seen, order);
    // 353 of the Windows program, the extensions, and widths for the files and playlist panes' (and
    // the clipboard viewer's) columns 10 to 12.
    EXPECT_EQ(SettingsTable().size(), 366u);
    EXPECT_EQ(SettingName(SettingsTable().front()), "INIexists.Check");
    EXPECT_EQ(SettingName(SettingsTable().back()), "Options.SearchAsYouType");
}

TEST(SettingsTable, KindsMatchTheirMembers) {
    for (const SettingField& field : SettingsTable()) {
        const bool isText =
            field.kind == SettingKind::Text || field.kind == SettingKind::NumberText;
        Settings settings;
        SetSettingFromText(settings, field, "12.5xyz");
        const std::string text = SettingText(settings, field);
        switch (field.kind) {
            case SettingKind::Int16:
            case SettingKind::Int32:
                EXPECT_EQ(text, "12") << SettingName(field);
                break;
            case SettingKind::Twips:
                EXPECT_EQ(text, "12.5") << SettingName(field);
                break;
            case SettingKind::NumberText:
                EXPECT_EQ(text, "12.5") << SettingName(field);
                break;
            case SettingKind::Text:
                EXPECT_EQ(text, "12.5xyz") << SettingName(field);
                break;
        }
        EXPECT_EQ(IsNumericKind(field.kind), !isText);
    }
}

TEST(SettingsTable, FindsKeysByQualifiedOrUniqueBareName) {
    EXPECT_EQ(SettingName(*FindSetting("options.introlength").field), "Options.IntroLength");
    EXPECT_EQ(SettingName(*FindSetting("INTROLENGTH").field), "Options.IntroLength");
    EXPECT_EQ(SettingName(*FindSetting("Mediatype").field), "Options.MediaType");
    EXPECT_EQ(SettingName(*FindSetting("Path0").field), "Options.Path0");
    EXPECT_EQ(SettingName(*FindSetting("View.Files").field), "View.Files");
    const SettingLookup ambiguous = FindSetting("Files");
    EXPECT_EQ(ambiguous.field, nullptr);
    EXPECT_EQ(ambiguous.candidates.size(), 2u);
    EXPECT_EQ(FindSetting("NoSuchKey").field, nullptr);
    EXPECT_TRUE(FindSetting("NoSuchKey").candidates.empty());
    EXPECT_EQ(FindSetting("Player.IntroLength").field, nullptr);
}

TEST(SettingsStore, LoadDefaultsGivesTheFirstRunValues) {
    const Settings settings = Defaults();
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"ShowCurrSong", "1"},
        {"ShowGrid", "1"},
        {"AutoLoadPlayer", "1"},
        {"FilenameMode", "1"},
        {"HighLoadMode", "2"},
        {"HighLoad", "200"},
        {"AutoOptMax", "100"},
        {"IntroSkip", "45"},
        {"IntroLength", "7"},
        {"DupeCriteria", "4"},
        {"MaxCache", "7"},
        {"ExpireMode", "2"},
        {"ShowTips", "1"},
        {"View.Folders", "1"},
        {"View.Files", "1"},
        {"View.Playlist", "1"},
        {"HTMLoptions", "11111111100"},
        {"INVhead", "header.txt"},
        {"INVfoot", "footer.txt"},
        {"SearchIn", "111111111"},
        {"Template1", "($artist) $title.mp3"},
        {"Template2", ""},
        {"ColumnOrder.Files", " 0x 1x 2x 3x 4x 5x 6x 7x 8x 9x 10x 11x 12x"},
        {"ColumnOrder.Playlist", " 12x 0x 1x 2x 3x 4x 5x 6x 7x 8x 9x 10x 11x"},
        {"ColumnOrder.Dupe", " 0x 1x 2x 3x 4x 5x 6x 7x 8x 9x 10x 11x"},
        {"PlayerExe1", "winamp.exe"},
        {"PlayerExe2", ""},
        {"HTMLHeadBack", "15132390"},
        {"HTMLLink", "13369344"},
        {"HTMLVisited", "13369548"},
        {"Top", "0"},
        {"Height", "6930"},
        {"Width", "8550"},
        {"SplitLeft", "3240"},
        {"SplitTop", "0"},
        {"RememberList", "0"},
        {"Check", "0"},
        {"ReadID3v2", "1"},
        {"ExactTimes", "1"},
        {"TagCodepage", "windows-1252"},
        {"HTMLEscape", "1"},
        {"MprisPlayer", ""},
        {"DiscIdentity", "1"},
        {"SafeCatalogue", "1"},
        {"SearchAsYouType", "1"},
        {"NeverAsk", "0"},
        {"CacheHits", "0"},
    };
    for (const auto& [name, expected] : cases) {
        EXPECT_EQ(Value(settings, name), expected) << name;
    }
    Settings withPlayer;
    LoadDefaults(withPlayer, "/usr/bin/mpv");
    EXPECT_EQ(CurrentPlayerPath(withPlayer), "/usr/bin/mpv");
}

TEST(SettingsStore, OnlyACheckAboveZeroRecordsAPreviousRun) {
    const std::vector<std::pair<std::string, bool>> cases = {
        {"", false},
        {"[Options]\nIntroLength=12\nMaxCache=3\n", false},  // every key but INIexists
        {"[INIexists]\nCheck=0\n", false},
        {"[INIexists]\nCheck=-1\n", false},
        {"[INIexists]\nCheck=yes\n", false},
        {"[INIexists]\nCheck=1\n", true},
        {"[iniexists]\ncheck= 2 \n", true},
        {"[INIexists]\nCheck=0.4\n", true},
    };
    for (const auto& [text, expected] : cases) {
        bool loaded = false;
        const Settings settings = Loaded(text + "[Options]\nIntroLength=12\n", &loaded);
        EXPECT_EQ(loaded, expected) << text;
        EXPECT_EQ(settings.IntroLength, expected ? 12 : 7) << text;
    }
}

TEST(SettingsStore, KeysMissingFromAnExistingFileReadZeroOrEmpty) {
    const Settings settings = Loaded(kRun);
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"MaxCache", "0"},
        {"ShowTips", ""},
        {"AutoLoadPlayer", "0"},
        {"PlayerExe1", ""},
        {"RememberList", "0"},
        {"HTMLHeadBack", "0"},
        {"Height", "0"},
        {"ColumnOrder.Files", ""},
        {"TagCodepage", ""},
        {"ReadID3v2", "0"},
        {"DiscIdentity", "0"},
        {"SafeCatalogue", "0"},
        {"Check", "1"},
        // The guarded keys keep their defaults.
        {"IntroLength", "7"},
        {"SplitTop", "0"},
    };
    for (const auto& [name, expected] : cases) {
        EXPECT_EQ(Value(settings, name), expected) << name;
    }
}

TEST(SettingsStore, GuardsApplyOnlySensibleValues) {
    const std::vector<std::tuple<std::string, std::string, std::string>> cases = {
        {"IntroLength", "0", "7"},      {"IntroLength", "-3", "7"}, {"IntroLength", "x", "7"},
        {"IntroLength", "12", "12"},    {"SplitTop", "50", "0"},    {"SplitTop", "100", "0"},
        {"SplitTop", "101", "101"},     {"Top", "-120", "-120"},    {"Width", "0", "0"},
        {"Height", "7200.5", "7200.5"},
    };
    for (const auto& [key, text, expected] : cases) {
        const std::string section =
            key == "Top" || key == "Width" || key == "Height" ? "WindowPosition" : "Options";
        const Settings settings = Loaded(kRun + "[" + section + "]\n" + key + "=" + text + "\n");
        EXPECT_EQ(Value(settings, key), expected) << key << "=" << text;
    }
}

TEST(SettingsStore, ReadsNumbersAsTheirNumericValue) {
    const std::vector<std::tuple<std::string, std::string, std::string>> cases = {
        {"IntroSkip", "2.5", "2"},
        {"IntroSkip", "3.5", "4"},
        {"IntroSkip", "99999", "32767"},
        {"IntroSkip", "-99999", "-32768"},
        {"IntroSkip", "12abc", "12"},
        {"IntroSkip", "&HFF", "255"},
        {"AutoOptMax", "1e12", "2147483647"},
        {"AutoOptMax", "70000", "70000"},
        {"OptimizeMedia", "5", "1"},
        {"OptimizeMedia", "-1", "1"},
        {"OptimizeMedia", "0", "0"},
        {"AlwaysOnTop", "2", "1"},
        {"RememberList", "1.0", "1"},
        {"RememberList", "1abc", "1"},
        {"RememberList", "", "0"},
        {"MediaType", "3", "3"},
    };
    for (const auto& [key, text, expected] : cases) {
        const std::string fileKey = key == "MediaType" ? "Mediatype" : key;
        const Settings settings = Loaded(kRun + "[Options]\n" + fileKey + "=" + text + "\n");
        EXPECT_EQ(Value(settings, key), expected) << key << "=" << text;
    }
    const Settings sorted = Loaded(kRun + "[Listview1]\nSorted=7\n[Listview2]\nSorted=0\n");
    EXPECT_EQ(sorted.Listview1Sorted, 1);
    EXPECT_EQ(sorted.Listview2Sorted, 0);
}

TEST(SettingsStore, CutsLongTextsAndNeverReadsTheClipboardColumns) {
    const Settings settings = Loaded(kRun + "[Options]\nSearch1=" + std::string(300, 's') +
                                     "\n[WindowPosition]\nColumnA1=500\nColumnC1=500\n");
    EXPECT_EQ(settings.SearchHistory[1], std::string(255, 's'));
    EXPECT_EQ(settings.ColumnWidthsA[1], 500);
    EXPECT_EQ(settings.ColumnWidthsC[1], 0);
}

TEST(SettingsStore, NumberedKeysFillTheirElements) {
    const Settings settings =
        Loaded(kRun +
               "[Options]\nPath1=/one\nPath9=/nine\nPath0=/ten\nPathA=/a\n"
               "PathE=/e\nSearchPath15=/p\n[Player]\nPlayerExe8=x\nLast1=y\n"
               "[Rename]\nRenImportTemplates0=t0\nRenExportTemplates19=t19\n");
    EXPECT_EQ(settings.GoPaths[1], "/one");
    EXPECT_EQ(settings.GoPaths[9], "/nine");
    EXPECT_EQ(settings.GoPaths[10], "/ten");
    EXPECT_EQ(settings.GoPaths[11], "/a");
    EXPECT_EQ(settings.GoPaths[15], "/e");
    EXPECT_EQ(settings.SearchPaths[15], "/p");
    EXPECT_EQ(settings.PlayerExes[8], "x");
    EXPECT_EQ(settings.PlayerHistory[1], "y");
    EXPECT_EQ(settings.RenImportTemplates[0], "t0");
    EXPECT_EQ(settings.RenExportTemplates[19], "t19");
}

TEST(SettingsStore, WritesEveryKeyWithTheSavingRules) {
    Settings settings = Defaults();
    settings.State = 1;  // only a maximized window (2) is remembered as such
    settings.ColumnWidthsA = {0, 0, 1, 1.5, 300, -4, 0, 0, 0, 0};
    settings.ColumnWidthsC[9] = 720;
    settings.MediaType = 2;
    settings.Check = 0;
    ProfileFile file = ProfileFile::Parse("");
    WriteINI(settings, file);
    const std::string text = file.Text();

    EXPECT_EQ(file.GetINI("WindowPosition", "State"), "0");
    EXPECT_EQ(file.GetINI("WindowPosition", "ColumnA1"), "1");
    EXPECT_EQ(file.GetINI("WindowPosition", "ColumnA2"), "1");
    EXPECT_EQ(file.GetINI("WindowPosition", "ColumnA3"), "1.5");
    EXPECT_EQ(file.GetINI("WindowPosition", "ColumnA4"), "300");
    EXPECT_EQ(file.GetINI("WindowPosition", "ColumnA5"), "1");
    EXPECT_EQ(file.GetINI("WindowPosition", "ColumnC9"), "720");
    EXPECT_NE(text.find("\r\nMediaType=2\r\n"), std::string::npos);
    // Check comes last, in its own section.
    EXPECT_TRUE(text.ends_with("[INIexists]\r\nCheck=1\r\n"));
    EXPECT_EQ(text.find("\n\n"), std::string::npos);  // CR LF throughout

    settings.State = 2;
    WriteINI(settings, file);
    EXPECT_EQ(file.GetINI("WindowPosition", "State"), "2");
}

TEST(SettingsStore, WrittenSettingsReadBackAsTheyWere) {
    Settings written = Defaults();
    written.IntroLength = 30;
    written.SplitTop = 2500;
    written.Height = 7200.5;
    written.RememberList = "1";
    written.GoPaths[10] = "/music/ten";
    written.SearchHistory[3] = "Björk";
    written.HTMLHeadBack = 0x123456;
    written.CacheHits = 2000000000;
    for (int i = 1; i <= 12; ++i) {
        written.ColumnWidthsA[i] = 100 * i;  // widths of 1 or less are saved as 1
        written.ColumnWidthsB[i] = 50.5 * i;
    }
    ProfileFile file = ProfileFile::Parse("");
    WriteINI(written, file);

    Settings read;
    ASSERT_TRUE(LoadINI(read, ProfileFile::Parse(file.Text())));
    for (const SettingField& field : SettingsTable()) {
        if (field.Has(kWriteOnly) || SettingName(field) == "INIexists.Check") {
            continue;
        }
        std::string expected = SettingText(written, field);
        // The file form drops blanks around a value.
        while (!expected.empty() && expected.front() == ' ') {
            expected.erase(0, 1);
        }
        EXPECT_EQ(SettingText(read, field), expected) << SettingName(field);
    }
}

TEST(SettingsStore, WriteKeepsForeignKeysAndReportsFailure) {
    const test::TempFolder folder;
    folder.Write("jukarra2.ini", "; kept\r\n[Future]\r\nKnob=11\r\n[Options]\r\nLater=1\r\n");
    ASSERT_TRUE(WriteINI(Defaults(), folder.File("jukarra2.ini")));
    const ProfileFile file = ProfileFile::Load(folder.File("jukarra2.ini"));
    EXPECT_EQ(file.GetINI("Future", "Knob"), "11");
    EXPECT_EQ(file.GetINI("Options", "Later"), "1");
    EXPECT_EQ(file.GetINI("Options", "IntroLength"), "7");
    EXPECT_TRUE(folder.Read("jukarra2.ini").starts_with("; kept\r\n"));

    std::string error;
    EXPECT_FALSE(WriteINI(Defaults(), folder.File("missing/jukarra2.ini"), &error));
    EXPECT_FALSE(error.empty());
}

TEST(SettingsStore, RememberListIsHeldAsTextAndComparedAsANumber) {
    const std::vector<std::tuple<std::string, bool, bool>> cases = {
        {"1", true, true},   {"1.0", true, true}, {"2", false, true},
        {"0", false, false}, {"-1", false, true}, {"", false, false},
    };
    for (const auto& [text, isOne, isOn] : cases) {
        const Settings settings = Loaded(kRun + "[Options]\nRememberList=" + text + "\n");
        EXPECT_EQ(RememberListIsOne(settings), isOne) << text;
        EXPECT_EQ(RememberListIsOn(settings), isOn) << text;
    }
}

}  // namespace
}  // namespace jk
