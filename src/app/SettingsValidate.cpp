#include "app/SettingsValidate.h"

#include <array>

#include "util/PathHelpers.h"
#include "util/Utf8.h"

namespace jk {

namespace {

constexpr std::string_view kTwelveColumns = " 0x 1x 2x 3x 4x 5x 6x 7x 8x 9x 10x 11x";
constexpr std::string_view kThirteenColumns = " 0x 1x 2x 3x 4x 5x 6x 7x 8x 9x 10x 11x 12x";
constexpr std::string_view kPlaylistColumns = " 12x 0x 1x 2x 3x 4x 5x 6x 7x 8x 9x 10x 11x 13x";
// The playlist's order is measured against this text, which has no leading blank.
constexpr std::string_view kPlaylistMeasure = "0x 1x 2x 3x 4x 5x 6x 7x 8x 9x 10x 11x 12x 13x";
constexpr std::string_view kAllOptions = "111111111111";

constexpr std::array<std::string_view, 5> kImportTemplates = {
    "$track-$artist-$title-$ignore", "$track ($artist) $title", "$artist - $title",
    "$artist-$track-$title", "$title"};
constexpr std::array<std::string_view, 5> kExportTemplates = {
    "$$track ($uartist) $$title.mp3", "($uartist) $$title.mp3", "$uartist - $$title.mp3",
    "$title - $uartist.mp3", "$title.mp3"};

bool Shorter(const std::string& text, std::size_t chars) {
    return CharCount(text) < chars;
}

void ValidateColumnOrders(Settings& s) {
    if (Shorter(s.ColumnOrderText, 10)) {
        s.ColumnOrderText = kTwelveColumns;
    }
    if (Shorter(s.ColumnOrderSearch, 10)) {
        s.ColumnOrderSearch = kTwelveColumns;
    }
    if (Shorter(s.ColumnOrderFiles, 12)) {
        s.ColumnOrderFiles = kThirteenColumns;
    }
    if (Shorter(s.ColumnOrderPlaylist, CharCount(kPlaylistMeasure))) {
        s.ColumnOrderPlaylist = kPlaylistColumns;
    }
    if (Shorter(s.ColumnOrderHTML, 10)) {
        s.ColumnOrderHTML = kTwelveColumns;
    }
    // A short Dupe order mends the HTML order and stays as it is.
    if (Shorter(s.ColumnOrderDupe, 10)) {
        s.ColumnOrderHTML = kTwelveColumns;
    }
}

void ValidateColours(Settings& s) {
    if (s.HTMLHeadFore != 0 || s.HTMLHeadBack != 0 || s.HTMLShade != 0) {
        return;
    }
    s.HTMLHeadFore = 0;
    s.HTMLHeadBack = 0xD0D0D0;
    s.HTMLShade = 0xF0F0F0;
    s.HTMLBackground = 0xFFFFFF;
    s.HTMLText = 0;
    s.HTMLLink = 0xBB0000;
    s.HTMLVisited = 0x800080;
    s.HTMLActive = 0xFF0000;
}

void SetWhenEmpty(std::string& value, std::string_view sample) {
    if (value.empty()) {
        value = sample;
    }
}

void ValidateSamples(Settings& s, const SamplePaths& samples) {
    SetWhenEmpty(s.HTMLHTMLPath, kSampleListsAddress);
    SetWhenEmpty(s.HTMLBasePath, kSampleSongsAddress);
    SetWhenEmpty(s.HTMLRootPath, JoinPath(samples.musicFolder, "mp3"));
    SetWhenEmpty(s.HTMLFiles[1], JoinPath(samples.downloadFolder, "test.html"));
    SetWhenEmpty(s.HTMLTemplates[1], "list#.html /index.html");
    SetWhenEmpty(s.HTMLTitles[1], "My MP3 Files");
    SetWhenEmpty(s.HTMLCaptions[1], "MP3 Listing");
    SetWhenEmpty(s.HTMLGraphic, kSampleGraphicAddress);
    SetWhenEmpty(s.HTMLFontName, "Arial");
}

void ValidateTemplates(TemplateList& list, const std::array<std::string_view, 5>& defaults) {
    for (std::size_t i = 0; i < defaults.size(); ++i) {
        SetWhenEmpty(list[i * 4], defaults[i]);
    }
}

}  // namespace

void ValidateINI(Settings& settings, const SamplePaths& samples) {
    ValidateColumnOrders(settings);
    if (Shorter(settings.HTMLoptions, 12)) {
        settings.HTMLoptions = kAllOptions;
    }
    if (Shorter(settings.INVoptions, 12)) {
        settings.INVoptions = kAllOptions;
    }
    ValidateColours(settings);
    ValidateSamples(settings, samples);
    ValidateTemplates(settings.RenImportTemplates, kImportTemplates);
    ValidateTemplates(settings.RenExportTemplates, kExportTemplates);
}

}  // namespace jk
