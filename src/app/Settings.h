#pragma once

// Every preference of jukarra2.ini as a typed member, section by section in the file's order.
// A member carries its key's name; where two sections share a key name the member carries the
// section's name ahead of it (ViewFiles, ColumnOrderFiles), and numbered keys form arrays named
// in the plural (HTMLTemplate1..4 are HTMLTemplates[1..4]). Arrays keep the first useful element
// at index 1, except the rename templates, which are numbered from 0.
//
// The table in SettingsTable.h binds each member to its section, key, kind and default; nothing
// else names the keys.

#include <array>
#include <cstdint>
#include <string>

namespace jk {

using TextList4 = std::array<std::string, 5>;      // keys 1..4
using TextList10 = std::array<std::string, 11>;    // 1..10, of which keys 1..8 are stored
using TextList15 = std::array<std::string, 16>;    // keys 1..15
using TemplateList = std::array<std::string, 20>;  // keys 0..19
// Keys 1..12, in twips, one for each column; the Windows program stored only 1..9, and a
// settings file without the others reads 0, the default width.
using ColumnWidths = std::array<double, 13>;

struct Settings {
    // [INIexists]
    std::int16_t Check = 0;

    // [Rename]
    std::int16_t RenUseFilename = 0;
    std::int16_t RenUseTagMode = 0;
    std::int16_t RenAutoCaps = 0;
    std::int16_t RenAutoComment = 0;
    std::string RenComment;
    std::int16_t RenOverride = 0;
    std::int16_t RenAutoThe = 0;
    TemplateList RenImportTemplates;
    TemplateList RenExportTemplates;

    // [HTML]
    std::string HTMLFontName;
    std::int16_t HTMLhyperlinks = 0;
    std::int16_t HTMLrelative = 0;
    std::string HTMLHTMLPath;
    std::string HTMLRootPath;
    std::string HTMLBasePath;
    std::string HTMLSpanTemplate;
    std::int32_t HTMLMax = 0;
    std::int16_t HTMLNoMore = 0;
    std::int16_t HTMLDivide = 0;
    std::int16_t HTMLSpanMode = 0;
    std::int16_t HTMLLinkMode = 0;
    std::int32_t HTMLHeadFore = 0;  // colours: 24-bit blue-green-red numbers
    std::int32_t HTMLHeadBack = 0;
    std::int32_t HTMLShade = 0;
    std::int32_t HTMLBackground = 0;
    std::int32_t HTMLText = 0;
    std::int32_t HTMLLink = 0;
    std::int32_t HTMLVisited = 0;
    std::int32_t HTMLActive = 0;
    std::string HTMLGraphic;
    std::int16_t HTMLUseGraphic = 0;

    // [ColumnOrder]
    std::string ColumnOrderDupe;
    std::string ColumnOrderText;
    std::string ColumnOrderHTML;
    std::string ColumnOrderFiles;
    std::string ColumnOrderPlaylist;
    std::string ColumnOrderSearch;

    // [View]
    std::int16_t ViewFolders = 0;
    std::int16_t ViewFiles = 0;
    std::int16_t ViewPlaylist = 0;

    // [Records]
    std::int32_t CacheHits = 0;
    std::int32_t TotalCacheHits = 0;

    // [Advanced]
    std::int16_t DelMode = 0;
    std::int16_t FilterMode = 0;

    // [Listview1], [Listview2]
    std::int16_t Listview1Sorted = 0;
    std::int16_t Listview1Sortkey = 0;
    std::int32_t Listview1Sortorder = 0;
    std::int16_t Listview2Sorted = 0;
    std::int16_t Listview2Sortkey = 0;
    std::int32_t Listview2Sortorder = 0;

    // [WindowPosition], in twips (1/1440 inch)
    double Top = 0;
    double Left = 0;
    double Height = 0;
    double Width = 0;
    std::int16_t State = 0;        // 2 when the window was maximized
    ColumnWidths ColumnWidthsA{};  // the files pane
    ColumnWidths ColumnWidthsB{};  // the playlist pane
    ColumnWidths ColumnWidthsC{};  // the clipboard viewer: written, never read back

    // [LastPath]
    std::string LastPath;

    // [Player]
    TextList10 PlayerExes;     // PlayerExe1..8; element 1 is the player in use
    TextList10 PlayerHistory;  // Last1..8

    // [Options]
    std::int16_t DontRename = 0;
    std::int16_t LayoutMode = 0;
    std::int16_t HTMLShowTrack = 0;
    std::int16_t TextShowTrack = 0;
    std::int16_t ShowCurrSong = 0;
    std::int16_t TextHideSummary = 0;
    std::int16_t TextDoubleSpace = 0;
    std::int16_t TextHidePath = 0;
    std::int16_t RelativePaths = 0;
    std::int16_t Autocomplete = 0;
    std::int16_t VirtualNoCache = 0;
    std::int16_t VirtualEject = 0;
    std::string LastDestination;
    std::string LastImport;
    std::int16_t TextHeadersOnly = 0;
    std::int16_t DupeCriteria = 0;
    std::int16_t DupeShowCriteria = 0;
    std::int16_t DupeFolder = 0;
    std::int16_t DupePlaylist = 0;
    std::int16_t DupeVirtual = 0;
    std::int16_t DupeClear = 0;
    std::int16_t DupeOnTop = 0;
    std::int16_t TextHideFiles = 0;
    std::int16_t HTMLHideFiles = 0;
    std::int16_t ShowGrid = 0;
    std::int16_t HTMLFullname = 0;
    std::int16_t TextFullname = 0;
    TextList4 HTMLTemplates;
    std::int16_t HTMLAlign = 0;
    std::int16_t LoadMode = 0;
    std::int16_t HighLoadMode = 0;
    std::int16_t HighLoad = 0;
    TextList4 SearchLasts;
    TextList4 VRexports;
    std::int16_t SearchIncrement = 0;
    std::int16_t SearchLastTime = 0;
    std::int16_t SearchLastMode = 0;
    std::int16_t SearchTimeMode = 0;
    std::int32_t SearchSize = 0;
    std::int16_t SearchSizeMode = 0;
    std::int16_t AutoLoadPlayer = 0;
    std::int16_t HideGhosts = 0;
    std::int16_t SearchOnTop = 0;
    std::int16_t TextDivide = 0;
    TextList4 VRrenames;
    TextList4 VRupdates;
    TextList4 VRnewvolumes;
    TextList4 VRnewdrives;
    std::int16_t HTMLHead = 0;
    std::int16_t HTMLFoot = 0;
    std::int16_t TextHead = 0;
    std::int16_t TextFoot = 0;
    TextList4 InvFiles;
    TextList4 HTMLFiles;
    TextList4 HTMLTitles;
    TextList4 HTMLCaptions;
    TextList4 HTMLGraphics;
    std::int16_t DividerMode = 0;
    std::int16_t DividerType = 0;
    std::int16_t ClearSearch = 0;
    std::int16_t NeverAsk = 0;
    std::int16_t NeverAskSave = 0;
    std::int16_t IntroPlay = 0;
    std::int16_t IntroSkip = 0;
    std::int16_t IntroLength = 0;
    std::int16_t SplitTop = 0;  // at 100 or below the window keeps its own layout
    std::int16_t NoAutoOpt = 0;
    std::int16_t AutoOpt = 0;
    std::int32_t AutoOptMax = 0;
    std::int16_t DupeIgnoreCase = 0;
    std::int16_t TimeMode = 0;
    std::int16_t SplitLeft = 0;
    std::int16_t FactorDelay = 0;
    std::int16_t Delay = 0;
    std::int16_t Spacer = 0;
    std::string MediaListDestination;
    std::int16_t OptimizeMedia = 0;
    std::int16_t MediaType = 0;
    std::int16_t CassLength = 0;
    std::int16_t CassLeadTime = 0;
    TextList4 Jumps;
    std::int16_t DupeAction = 0;
    TextList15 GoPaths;  // the Go list, newest first: Path1..Path9, Path0, PathA..PathE
    std::int16_t LastTip = 0;
    std::string ShowTips;
    std::int16_t LastTimeDiff = 0;
    std::string ReplaceSpace;
    std::int16_t FilesDelKey = 0;
    std::int16_t SongsDelKey = 0;
    std::int16_t ExpireMode = 0;
    std::string HTMLfile;
    std::string HTMLoptions;
    std::string INVfile;
    std::string INVhead;
    std::string INVfoot;
    std::string INVoptions;
    TextList4 Selects;
    std::string SelectOptions;
    std::string SearchIn;
    std::int16_t DefaultToCurrent = 0;
    TextList4 Templates;
    std::int16_t Underscore = 0;
    std::int16_t SaveSearch = 0;
    std::int16_t CaseMatch = 0;
    std::int16_t SearchMode = 0;
    std::int16_t WindowsMode = 0;
    std::int16_t FilenameMode = 0;
    std::int16_t RenameFormat = 0;
    std::int16_t TitleOverride = 0;
    std::int16_t ArtistOverride = 0;
    std::int16_t SmartTag = 0;
    std::int16_t SilentTag = 0;
    std::int16_t SelectMode = 0;
    std::int16_t SaveSelect = 0;
    std::int16_t SelectCase = 0;
    std::int16_t DoubleClickFiles = 0;
    std::int16_t DoubleClickList = 0;
    std::int16_t MaxCache = 0;
    std::int16_t QuickShuffle = 0;
    std::string RememberList;  // read as a number, held as its text
    std::int16_t AutoMinimize = 0;
    std::int16_t AlwaysOnTop = 0;
    TextList15 SearchPaths;    // SearchPath1..15
    TextList15 SearchHistory;  // Search1..15
    // Extensions of this build.
    std::int16_t ReadID3v2 = 0;
    std::int16_t ExactTimes = 0;
    std::string TagCodepage;
    std::int16_t HTMLEscape = 0;
    // The MPRIS player to steer, by the last part of its bus name ("vlc", "mpv"); "" to go by
    // the player's path.
    std::string MprisPlayer;
    std::int16_t DiscIdentity = 0;
    std::int16_t SafeCatalogue = 0;
    std::int16_t SearchAsYouType = 0;
};

// The player in use: the first entry of the player list.
inline const std::string& CurrentPlayerPath(const Settings& settings) {
    return settings.PlayerExes[1];
}

}  // namespace jk
