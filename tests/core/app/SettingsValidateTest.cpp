#include "app/SettingsValidate.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "app/SettingsStore.h"

namespace jk {
namespace {

const SamplePaths kSamples{"/home/ann/Music", "/home/ann/Downloads"};
constexpr std::string_view kTwelve = " 0x 1x 2x 3x 4x 5x 6x 7x 8x 9x 10x 11x";
constexpr std::string_view kThirteen = " 0x 1x 2x 3x 4x 5x 6x 7x 8x 9x 10x 11x 12x";
constexpr std::string_view kPlaylist = " 12x 0x 1x 2x 3x 4x 5x 6x 7x 8x 9x 10x 11x 13x";

Settings Validated(Settings settings) {
    ValidateINI(settings, kSamples);
    return settings;
}

TEST(ValidateINI, ReplacesShortColumnOrders) {
    struct Case {
        std::string Settings::*member;
        std::string given;
        std::string expected;
    };
    const std::string nine(9, 'x');
    const std::string ten(10, 'x');
    const std::string playlist44(44, 'x');
    const std::string playlist45(45, 'x');
    const std::vector<Case> cases = {
        {&Settings::ColumnOrderText, nine, std::string(kTwelve)},
        {&Settings::ColumnOrderText, ten, ten},
        {&Settings::ColumnOrderSearch, "", std::string(kTwelve)},
        {&Settings::ColumnOrderSearch, ten, ten},
        {&Settings::ColumnOrderFiles, std::string(11, 'x'), std::string(kThirteen)},
        {&Settings::ColumnOrderFiles, std::string(12, 'x'), std::string(12, 'x')},
        {&Settings::ColumnOrderPlaylist, playlist44, std::string(kPlaylist)},
        {&Settings::ColumnOrderPlaylist, playlist45, playlist45},
        {&Settings::ColumnOrderHTML, nine, std::string(kTwelve)},
    };
    for (const Case& c : cases) {
        Settings settings;
        settings.ColumnOrderDupe = ten;
        settings.ColumnOrderText = settings.ColumnOrderSearch = settings.ColumnOrderHTML = ten;
        settings.ColumnOrderFiles = std::string(12, 'x');
        settings.ColumnOrderPlaylist = playlist45;
        settings.*c.member = c.given;
        EXPECT_EQ(Validated(settings).*c.member, c.expected) << c.given;
    }
}

TEST(ValidateINI, AShortDupeOrderMendsTheHtmlOrderAndStaysAsItIs) {
    Settings settings;
    settings.ColumnOrderDupe = "";
    settings.ColumnOrderHTML = " 3x 2x 1x 0x 4x 5x 6x 7x 8x 9x 10x 11x";
    const Settings validated = Validated(settings);
    EXPECT_EQ(validated.ColumnOrderDupe, "");
    EXPECT_EQ(validated.ColumnOrderHTML, kTwelve);
}

TEST(ValidateINI, CountsCharactersNotBytes) {
    Settings settings;
    settings.ColumnOrderText = "\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9";      // 5 characters
    settings.HTMLoptions = "\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9";  // 6 of 12 bytes
    const Settings validated = Validated(settings);
    EXPECT_EQ(validated.ColumnOrderText, kTwelve);
    EXPECT_EQ(validated.HTMLoptions, "111111111111");
}

TEST(ValidateINI, LengthensShortOptionStrings) {
    Settings settings;
    settings.HTMLoptions = "11111111100";
    settings.INVoptions = "010101010101";
    const Settings validated = Validated(settings);
    EXPECT_EQ(validated.HTMLoptions, "111111111111");
    EXPECT_EQ(validated.INVoptions, "010101010101");
}

TEST(ValidateINI, ResetsAllEightColoursOnlyWhenTheFirstThreeAreZero) {
    Settings zero;
    zero.HTMLBackground = 5;
    const Settings reset = Validated(zero);
    EXPECT_EQ(reset.HTMLHeadFore, 0);
    EXPECT_EQ(reset.HTMLHeadBack, 0xD0D0D0);
    EXPECT_EQ(reset.HTMLShade, 0xF0F0F0);
    EXPECT_EQ(reset.HTMLBackground, 0xFFFFFF);
    EXPECT_EQ(reset.HTMLText, 0);
    EXPECT_EQ(reset.HTMLLink, 0xBB0000);
    EXPECT_EQ(reset.HTMLVisited, 0x800080);
    EXPECT_EQ(reset.HTMLActive, 0xFF0000);

    for (std::int32_t Settings::*member :
         {&Settings::HTMLHeadFore, &Settings::HTMLHeadBack, &Settings::HTMLShade}) {
        Settings one;
        one.*member = 1;
        one.HTMLBackground = 5;
        EXPECT_EQ(Validated(one).HTMLBackground, 5);
    }
}

TEST(ValidateINI, FillsEmptySamplesOnly) {
    const Settings filled = Validated(Settings{});
    EXPECT_EQ(filled.HTMLHTMLPath, "http://www.example.com/lists");
    EXPECT_EQ(filled.HTMLBasePath, "http://www.example.com/songs");
    EXPECT_EQ(filled.HTMLRootPath, "/home/ann/Music/mp3");
    EXPECT_EQ(filled.HTMLFiles[1], "/home/ann/Downloads/test.html");
    EXPECT_EQ(filled.HTMLFiles[2], "");
    EXPECT_EQ(filled.HTMLTemplates[1], "list#.html /index.html");
    EXPECT_EQ(filled.HTMLTitles[1], "My MP3 Files");
    EXPECT_EQ(filled.HTMLCaptions[1], "MP3 Listing");
    EXPECT_EQ(filled.HTMLGraphic, "http://www.example.com/images/lilleafs.jpg");
    EXPECT_EQ(filled.HTMLFontName, "Arial");

    Settings own;
    own.HTMLRootPath = "/srv/mp3";
    own.HTMLFontName = " ";
    const Settings kept = Validated(own);
    EXPECT_EQ(kept.HTMLRootPath, "/srv/mp3");
    EXPECT_EQ(kept.HTMLFontName, " ");
}

TEST(ValidateINI, FillsTheTemplateListsAtEveryFourthElement) {
    Settings settings;
    settings.RenImportTemplates[4] = "mine";
    const Settings validated = Validated(settings);
    const std::vector<std::string> imports = {"$track-$artist-$title-$ignore", "mine",
                                              "$artist - $title", "$artist-$track-$title",
                                              "$title"};
    const std::vector<std::string> exports = {"$$track ($uartist) $$title.mp3",
                                              "($uartist) $$title.mp3", "$uartist - $$title.mp3",
                                              "$title - $uartist.mp3", "$title.mp3"};
    for (std::size_t i = 0; i < 20; ++i) {
        EXPECT_EQ(validated.RenImportTemplates[i], i % 4 == 0 ? imports[i / 4] : "") << i;
        EXPECT_EQ(validated.RenExportTemplates[i], i % 4 == 0 ? exports[i / 4] : "") << i;
    }
}

TEST(ValidateINI, OnAFirstRunMendsTheDefaultsWhereTheyDiffer) {
    Settings settings;
    LoadDefaults(settings);
    const Settings validated = Validated(settings);
    // The playlist's default order is shorter than its measure, so it gains a column.
    EXPECT_EQ(validated.ColumnOrderPlaylist, kPlaylist);
    EXPECT_EQ(validated.ColumnOrderFiles, kThirteen);
    EXPECT_EQ(validated.HTMLoptions, "111111111111");
    EXPECT_EQ(validated.HTMLHeadBack, 0xE6E6E6);
}

}  // namespace
}  // namespace jk
