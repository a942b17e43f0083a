#include "app/SettingsTable.h"

namespace jk {

namespace {

constexpr std::string_view kINIexists = "INIexists";
constexpr std::string_view kRename = "Rename";
constexpr std::string_view kHTML = "HTML";
constexpr std::string_view kColumnOrder = "ColumnOrder";
constexpr std::string_view kView = "View";
constexpr std::string_view kRecords = "Records";
constexpr std::string_view kAdvanced = "Advanced";
constexpr std::string_view kListview1 = "Listview1";
constexpr std::string_view kListview2 = "Listview2";
constexpr std::string_view kWindowPosition = "WindowPosition";
constexpr std::string_view kLastPath = "LastPath";
constexpr std::string_view kPlayer = "Player";
constexpr std::string_view kOptions = "Options";

constexpr std::string_view kTwelveColumnsDefault = " 0x 1x 2x 3x 4x 5x 6x 7x 8x 9x 10x 11x";

class TableBuilder {
public:
    void I16(std::string_view section, std::string key, std::int16_t Settings::*member,
             double def = 0, std::uint8_t flags = kNoFlags) {
        Add(section, std::move(key), SettingKind::Int16, member, 0, def, {}, flags);
    }
    void I32(std::string_view section, std::string key, std::int32_t Settings::*member,
             double def = 0, std::uint8_t flags = kNoFlags) {
        Add(section, std::move(key), SettingKind::Int32, member, 0, def, {}, flags);
    }
    void Text(std::string_view section, std::string key, std::string Settings::*member,
              std::string_view def = {}) {
        Add(section, std::move(key), SettingKind::Text, member, 0, 0, def, kNoFlags);
    }
    void Twips(std::string_view section, std::string key, double Settings::*member, double def) {
        Add(section, std::move(key), SettingKind::Twips, member, 0, def, {}, kNoFlags);
    }
    // Keys prefix+first .. prefix+last, each bound to the element of its number.
    template <typename List>
    void TextRange(std::string_view section, std::string_view prefix, List Settings::*member,
                   int first, int last) {
        for (int n = first; n <= last; ++n) {
            Add(section, std::string(prefix) + std::to_string(n), SettingKind::Text, member,
                static_cast<std::uint8_t>(n), 0, {}, kNoFlags);
        }
    }
    void Widths(std::string_view prefix, ColumnWidths Settings::*member, std::uint8_t flags) {
        for (int n = 1; n <= 12; ++n) {
            Add(kWindowPosition, std::string(prefix) + std::to_string(n), SettingKind::Twips,
                member, static_cast<std::uint8_t>(n), 0, {}, flags);
        }
    }
    void Element(std::string_view section, std::string key, TextList15 Settings::*member,
                 int index) {
        Add(section, std::move(key), SettingKind::Text, member, static_cast<std::uint8_t>(index), 0,
            {}, kNoFlags);
    }
    SettingField& Last() { return m_fields.back(); }
    SettingField& Find(std::string_view key) {
        for (SettingField& field : m_fields) {
            if (field.key == key) {
                return field;
            }
        }
        return m_fields.back();
    }
    std::vector<SettingField> Take() { return std::move(m_fields); }

private:
    void Add(std::string_view section, std::string key, SettingKind kind, SettingMember member,
             std::uint8_t index, double numberDefault, std::string_view textDefault,
             std::uint8_t flags) {
        m_fields.push_back(SettingField{
            section, std::move(key), {}, kind, member, index, numberDefault, textDefault, flags});
    }

    std::vector<SettingField> m_fields;
};

void AddRenameAndHtml(TableBuilder& t) {
    using S = Settings;
    t.I16(kINIexists, "Check", &S::Check);

    t.I16(kRename, "RenUseFilename", &S::RenUseFilename);
    t.I16(kRename, "RenUseTagMode", &S::RenUseTagMode);
    t.I16(kRename, "RenAutoCaps", &S::RenAutoCaps);
    t.I16(kRename, "RenAutoComment", &S::RenAutoComment);
    t.Text(kRename, "RenComment", &S::RenComment);
    t.I16(kRename, "RenOverride", &S::RenOverride);
    t.I16(kRename, "RenAutoThe", &S::RenAutoThe);
    t.TextRange(kRename, "RenImportTemplates", &S::RenImportTemplates, 0, 19);
    t.TextRange(kRename, "RenExportTemplates", &S::RenExportTemplates, 0, 19);

    t.Text(kHTML, "HTMLFontName", &S::HTMLFontName);
    t.I16(kHTML, "HTMLhyperlinks", &S::HTMLhyperlinks);
    t.I16(kHTML, "HTMLrelative", &S::HTMLrelative);
    t.Text(kHTML, "HTMLHTMLPath", &S::HTMLHTMLPath);
    t.Text(kHTML, "HTMLRootPath", &S::HTMLRootPath);
    t.Text(kHTML, "HTMLBasePath", &S::HTMLBasePath);
    t.Text(kHTML, "HTMLSpanTemplate", &S::HTMLSpanTemplate);
    t.I32(kHTML, "HTMLMax", &S::HTMLMax, 0, kReadTwice);
    t.I16(kHTML, "HTMLNoMore", &S::HTMLNoMore, 0, kReadTwice);
    t.I16(kHTML, "HTMLDivide", &S::HTMLDivide, 0, kReadTwice);
    t.I16(kHTML, "HTMLSpanMode", &S::HTMLSpanMode);
    t.I16(kHTML, "HTMLLinkMode", &S::HTMLLinkMode);
    t.I32(kHTML, "HTMLHeadFore", &S::HTMLHeadFore, 0);
    t.I32(kHTML, "HTMLHeadBack", &S::HTMLHeadBack, 0xE6E6E6);
    t.I32(kHTML, "HTMLShade", &S::HTMLShade, 0xF8F8F8);
    t.I32(kHTML, "HTMLBackground", &S::HTMLBackground, 0xFFFFFF);
    t.I32(kHTML, "HTMLText", &S::HTMLText, 0);
    t.I32(kHTML, "HTMLLink", &S::HTMLLink, 0xCC0000);
    t.I32(kHTML, "HTMLVisited", &S::HTMLVisited, 0xCC00CC);
    t.I32(kHTML, "HTMLActive", &S::HTMLActive, 0xFF0000);
    t.Text(kHTML, "HTMLGraphic", &S::HTMLGraphic);
    t.I16(kHTML, "HTMLUseGraphic", &S::HTMLUseGraphic);
}

void AddWindowSections(TableBuilder& t) {
    using S = Settings;
    t.Text(kColumnOrder, "Dupe", &S::ColumnOrderDupe, kTwelveColumnsDefault);
    t.Text(kColumnOrder, "Text", &S::ColumnOrderText, kTwelveColumnsDefault);
    t.Text(kColumnOrder, "HTML", &S::ColumnOrderHTML, kTwelveColumnsDefault);
    t.Text(kColumnOrder, "Files", &S::ColumnOrderFiles,
           " 0x 1x 2x 3x 4x 5x 6x 7x 8x 9x 10x 11x 12x");
    t.Text(kColumnOrder, "Playlist", &S::ColumnOrderPlaylist,
           " 12x 0x 1x 2x 3x 4x 5x 6x 7x 8x 9x 10x 11x");
    t.Text(kColumnOrder, "Search", &S::ColumnOrderSearch, kTwelveColumnsDefault);

    t.I16(kView, "Folders", &S::ViewFolders, 1);
    t.I16(kView, "Files", &S::ViewFiles, 1);
    t.I16(kView, "Playlist", &S::ViewPlaylist, 1);

    t.I32(kRecords, "CacheHits", &S::CacheHits);
    t.I32(kRecords, "TotalCacheHits", &S::TotalCacheHits);

    t.I16(kAdvanced, "DelMode", &S::DelMode);
    t.I16(kAdvanced, "FilterMode", &S::FilterMode);

    t.I16(kListview1, "Sorted", &S::Listview1Sorted, 0, kTrueWhenNonZero);
    t.I16(kListview1, "Sortkey", &S::Listview1Sortkey);
    t.I32(kListview1, "Sortorder", &S::Listview1Sortorder);
    t.I16(kListview2, "Sorted", &S::Listview2Sorted, 0, kTrueWhenNonZero);
    t.I16(kListview2, "Sortkey", &S::Listview2Sortkey);
    t.I32(kListview2, "Sortorder", &S::Listview2Sortorder);

    t.Twips(kWindowPosition, "Top", &S::Top, 0);
    t.Twips(kWindowPosition, "Left", &S::Left, 0);
    t.Twips(kWindowPosition, "Height", &S::Height, 6930);
    t.Twips(kWindowPosition, "Width", &S::Width, 8550);
    t.I16(kWindowPosition, "State", &S::State);
    t.Widths("ColumnA", &S::ColumnWidthsA, kNoFlags);
    t.Widths("ColumnB", &S::ColumnWidthsB, kNoFlags);
    t.Widths("ColumnC", &S::ColumnWidthsC, kWriteOnly);

    t.Text(kLastPath, "LastPath", &S::LastPath);

    t.TextRange(kPlayer, "PlayerExe", &S::PlayerExes, 1, 8);
    t.Find("PlayerExe1").textDefault = "winamp.exe";
    t.TextRange(kPlayer, "Last", &S::PlayerHistory, 1, 8);
}

void AddOptions(TableBuilder& t) {
    using S = Settings;
    constexpr std::string_view o = kOptions;
    t.I16(o, "DontRename", &S::DontRename);
    t.I16(o, "LayoutMode", &S::LayoutMode);
    t.I16(o, "HTMLShowTrack", &S::HTMLShowTrack);
    t.I16(o, "TextShowTrack", &S::TextShowTrack);
    t.I16(o, "ShowCurrSong", &S::ShowCurrSong, 1);
    t.I16(o, "TextHideSummary", &S::TextHideSummary);
    t.I16(o, "TextDoubleSpace", &S::TextDoubleSpace);
    t.I16(o, "TextHidePath", &S::TextHidePath);
    t.I16(o, "RelativePaths", &S::RelativePaths);
    t.I16(o, "Autocomplete", &S::Autocomplete);
    t.I16(o, "VirtualNoCache", &S::VirtualNoCache);
    t.I16(o, "VirtualEject", &S::VirtualEject);
    t.Text(o, "LastDestination", &S::LastDestination);
    t.Text(o, "LastImport", &S::LastImport);
    t.I16(o, "TextHeadersOnly", &S::TextHeadersOnly);
    t.I16(o, "DupeCriteria", &S::DupeCriteria, 4, kReadTwice);
    t.I16(o, "DupeShowCriteria", &S::DupeShowCriteria);
    t.I16(o, "DupeFolder", &S::DupeFolder);
    t.I16(o, "DupePlaylist", &S::DupePlaylist);
    t.I16(o, "DupeVirtual", &S::DupeVirtual);
    t.I16(o, "DupeClear", &S::DupeClear);
    t.I16(o, "DupeOnTop", &S::DupeOnTop);
    t.I16(o, "TextHideFiles", &S::TextHideFiles);
    t.I16(o, "HTMLHideFiles", &S::HTMLHideFiles);
    t.I16(o, "ShowGrid", &S::ShowGrid, 1);
    t.I16(o, "HTMLFullname", &S::HTMLFullname);
    t.I16(o, "TextFullname", &S::TextFullname);
    t.TextRange(o, "HTMLTemplate", &S::HTMLTemplates, 1, 4);
    t.I16(o, "HTMLAlign", &S::HTMLAlign);
    t.I16(o, "LoadMode", &S::LoadMode, 0);
    t.I16(o, "HighLoadMode", &S::HighLoadMode, 2);
    t.I16(o, "HighLoad", &S::HighLoad, 200);
    t.TextRange(o, "SearchLast", &S::SearchLasts, 1, 4);
    t.TextRange(o, "VRexport", &S::VRexports, 1, 4);
    t.I16(o, "SearchIncrement", &S::SearchIncrement);
    t.I16(o, "SearchLastTime", &S::SearchLastTime);
    t.I16(o, "SearchLastMode", &S::SearchLastMode, 1);
    t.I16(o, "SearchTimeMode", &S::SearchTimeMode);
    t.I32(o, "SearchSize", &S::SearchSize);
    t.I16(o, "SearchSizeMode", &S::SearchSizeMode);
    t.I16(o, "AutoLoadPlayer", &S::AutoLoadPlayer, 1);
    t.I16(o, "HideGhosts", &S::HideGhosts);
    t.I16(o, "SearchOnTop", &S::SearchOnTop);
    t.I16(o, "TextDivide", &S::TextDivide);
    t.TextRange(o, "VRrename", &S::VRrenames, 1, 4);
    t.TextRange(o, "VRupdate", &S::VRupdates, 1, 4);
    t.TextRange(o, "VRnewvolume", &S::VRnewvolumes, 1, 4);
    t.TextRange(o, "VRnewdrive", &S::VRnewdrives, 1, 4);
    t.I16(o, "HTMLHead", &S::HTMLHead);
    t.I16(o, "HTMLFoot", &S::HTMLFoot);
    t.I16(o, "TextHead", &S::TextHead);
    t.I16(o, "TextFoot", &S::TextFoot);
    t.TextRange(o, "InvFile", &S::InvFiles, 1, 4);
    t.TextRange(o, "HTMLFile", &S::HTMLFiles, 1, 4);
    t.TextRange(o, "HTMLTitle", &S::HTMLTitles, 1, 4);
    t.TextRange(o, "HTMLCaption", &S::HTMLCaptions, 1, 4);
    t.TextRange(o, "HTMLGraphic", &S::HTMLGraphics, 1, 4);
    t.I16(o, "DividerMode", &S::DividerMode, 1);
    t.I16(o, "DividerType", &S::DividerType, 1);
    t.I16(o, "ClearSearch", &S::ClearSearch, 1);
    t.I16(o, "NeverAsk", &S::NeverAsk, 0);
    t.I16(o, "NeverAskSave", &S::NeverAskSave, 0);
    t.I16(o, "IntroPlay", &S::IntroPlay, 0);
    t.I16(o, "IntroSkip", &S::IntroSkip, 45);
    t.I16(o, "IntroLength", &S::IntroLength, 7, kOnlyAboveZero);
    t.I16(o, "SplitTop", &S::SplitTop, 0, kOnlyAbove100);
    t.I16(o, "NoAutoOpt", &S::NoAutoOpt, 0);
    t.I16(o, "AutoOpt", &S::AutoOpt, 1);
    t.I32(o, "AutoOptMax", &S::AutoOptMax, 100);
    t.I16(o, "DupeIgnoreCase", &S::DupeIgnoreCase, 1);
    t.I16(o, "TimeMode", &S::TimeMode);
    t.I16(o, "SplitLeft", &S::SplitLeft, 3240);
    t.I16(o, "FactorDelay", &S::FactorDelay);
    t.I16(o, "Delay", &S::Delay);
    t.I16(o, "Spacer", &S::Spacer);
    t.Text(o, "MediaListDestination", &S::MediaListDestination);
    t.I16(o, "OptimizeMedia", &S::OptimizeMedia, 0, kTrueWhenNonZero);
    t.I16(o, "MediaType", &S::MediaType);
    t.Last().readKey = "Mediatype";
    t.I16(o, "CassLength", &S::CassLength);
    t.I16(o, "CassLeadTime", &S::CassLeadTime);
    t.TextRange(o, "Jump", &S::Jumps, 1, 4);
    t.I16(o, "DupeAction", &S::DupeAction);
    // Path1..Path9 are the Go list's entries 1 to 9, Path0 its tenth, PathA..PathE the rest.
    t.Element(o, "Path0", &S::GoPaths, 10);
    for (int n = 1; n <= 9; ++n) {
        t.Element(o, "Path" + std::to_string(n), &S::GoPaths, n);
    }
    for (int n = 0; n < 5; ++n) {
        t.Element(o, std::string("Path") + static_cast<char>('A' + n), &S::GoPaths, 11 + n);
    }
    t.I16(o, "LastTip", &S::LastTip);
    t.Text(o, "ShowTips", &S::ShowTips, "1");
    t.I16(o, "LastTimeDiff", &S::LastTimeDiff);
    t.Text(o, "ReplaceSpace", &S::ReplaceSpace);
    t.I16(o, "FilesDelKey", &S::FilesDelKey);
    t.I16(o, "SongsDelKey", &S::SongsDelKey);
    t.I16(o, "ExpireMode", &S::ExpireMode, 2);
    t.Text(o, "HTMLfile", &S::HTMLfile);
    t.Text(o, "HTMLoptions", &S::HTMLoptions, "11111111100");
    t.Text(o, "INVfile", &S::INVfile);
    t.Text(o, "INVhead", &S::INVhead, "header.txt");
    t.Text(o, "INVfoot", &S::INVfoot, "footer.txt");
    t.Text(o, "INVoptions", &S::INVoptions, "11111111100");
    t.TextRange(o, "Select", &S::Selects, 1, 4);
    t.Text(o, "SelectOptions", &S::SelectOptions);
    t.Text(o, "SearchIn", &S::SearchIn, "111111111");
    t.I16(o, "DefaultToCurrent", &S::DefaultToCurrent, 1);
    t.TextRange(o, "Template", &S::Templates, 1, 4);
    t.Find("Template1").textDefault = "($artist) $title.mp3";
    t.I16(o, "Underscore", &S::Underscore);
    t.I16(o, "SaveSearch", &S::SaveSearch, 1);
    t.I16(o, "CaseMatch", &S::CaseMatch, 0);
    t.I16(o, "SearchMode", &S::SearchMode, 0);
    t.I16(o, "WindowsMode", &S::WindowsMode, 0);
    t.I16(o, "FilenameMode", &S::FilenameMode, 1);
    t.I16(o, "RenameFormat", &S::RenameFormat);
    t.I16(o, "TitleOverride", &S::TitleOverride);
    t.I16(o, "ArtistOverride", &S::ArtistOverride);
    t.I16(o, "SmartTag", &S::SmartTag);
    t.I16(o, "SilentTag", &S::SilentTag);
    t.I16(o, "SelectMode", &S::SelectMode);
    t.I16(o, "SaveSelect", &S::SaveSelect);
    t.I16(o, "SelectCase", &S::SelectCase);
    t.I16(o, "DoubleClickFiles", &S::DoubleClickFiles, 1);
    t.I16(o, "DoubleClickList", &S::DoubleClickList, 1);
    t.I16(o, "MaxCache", &S::MaxCache, 7);
    t.I16(o, "QuickShuffle", &S::QuickShuffle, 1);
    t.Text(o, "RememberList", &S::RememberList);
    t.Last().kind = SettingKind::NumberText;
    t.I16(o, "AutoMinimize", &S::AutoMinimize, 0);
    t.I16(o, "AlwaysOnTop", &S::AlwaysOnTop, 0, kTrueWhenNonZero);
    t.TextRange(o, "SearchPath", &S::SearchPaths, 1, 15);
    t.TextRange(o, "Search", &S::SearchHistory, 1, 15);
    t.I16(o, "ReadID3v2", &S::ReadID3v2, 1);
    t.I16(o, "ExactTimes", &S::ExactTimes, 1);
    t.Text(o, "TagCodepage", &S::TagCodepage, "windows-1252");
    t.I16(o, "HTMLEscape", &S::HTMLEscape, 1);
    t.Text(o, "MprisPlayer", &S::MprisPlayer);
    t.I16(o, "DiscIdentity", &S::DiscIdentity, 1);
    t.I16(o, "SafeCatalogue", &S::SafeCatalogue, 1);
    t.I16(o, "SearchAsYouType", &S::SearchAsYouType, 1);
}

std::vector<SettingField> BuildTable() {
    TableBuilder builder;
    AddRenameAndHtml(builder);
    AddWindowSections(builder);
    AddOptions(builder);
    return builder.Take();
}

}  // namespace

const std::vector<SettingField>& SettingsTable() {
    static const std::vector<SettingField> table = BuildTable();
    return table;
}

}  // namespace jk
