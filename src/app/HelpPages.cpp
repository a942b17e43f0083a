#include "app/HelpPages.h"

#include <array>
#include <utility>

#include "util/PathHelpers.h"

namespace jk {

namespace {

constexpr std::array<std::pair<std::string_view, std::string_view>, 5> kPages = {{
    {"HelpWeb", "index.html"},
    {"HelpEMail", "contact.html"},
    {"CheckForUpdate", "updates.html"},
    {"OpenTour", "tour.html"},
    {"OpenResources", "resources.html"},
}};

constexpr std::array<std::string_view, 12> kTips = {
    "Click a folder in the tree on the left to list its songs, then press Insert or drag them "
    "to the playlist to add them.",
    "Drag songs and folders from your file manager straight into the playlist. Dropping an "
    "m3u file on the window opens it.",
    "Folder > Recurse folder adds every song below the current folder to the playlist. Press "
    "Abort at any time: the songs found so far stay.",
    "Click a column header to sort by it; click again to reverse the order. Drag a header to "
    "move the column, and right-click the headers to hide or show columns.",
    "Ctrl+Up and Ctrl+Down slide the selected songs in the playlist; Ctrl+Shift+Up and "
    "Ctrl+Shift+Down send them to the top or the bottom.",
    "Jukarra remembers the songs it has read in its cache, so a folder you have seen before "
    "lists in an instant.",
    "The Go menu keeps the last fifteen folders you visited. Alt+Up goes up one level.",
    "Edit > Properties (Alt+Enter) shows everything Jukarra knows about a song, and lets you "
    "change its tag.",
    "Cut, copy and paste work on songs: copy songs in the files pane and paste them into the "
    "playlist, or paste files into another folder with Edit > Paste to...",
    "Edit > Crop keeps only the selected songs of the playlist; Invert selection (Ctrl+I) "
    "turns the selection around first.",
    "Deleted files go to your desktop's trash, so you can restore them. The Setup Browser "
    "decides whether Jukarra asks first.",
    "Turn on Remember last playlist in the Setup Browser, and the playlist is there again "
    "the next time you start Jukarra.",
};

constexpr std::array<std::string_view, 15> kGoKeys = {"1", "2", "3", "4", "5", "6", "7", "8",
                                                      "9", "0", "A", "B", "C", "D", "E"};

}  // namespace

std::string_view HelpPageFile(std::string_view itemName) {
    for (const auto& [item, file] : kPages) {
        if (item == itemName) {
            return file;
        }
    }
    return {};
}

std::vector<std::string> HelpFolderCandidates(std::string_view programFolder) {
    const std::string folder(programFolder);
    return {JoinPath(ParentPath(folder), "share/jukarra/help"), JoinPath(folder, "help")};
}

std::span<const std::string_view> TipTexts() {
    return kTips;
}

std::int16_t NextTip(std::int16_t lastTip) {
    const auto count = static_cast<std::int16_t>(kTips.size());
    if (lastTip < 1 || lastTip >= count) {
        return 1;
    }
    return static_cast<std::int16_t>(lastTip + 1);
}

std::int16_t PreviousTip(std::int16_t lastTip) {
    const auto count = static_cast<std::int16_t>(kTips.size());
    if (lastTip <= 1 || lastTip > count) {
        return count;
    }
    return static_cast<std::int16_t>(lastTip - 1);
}

std::string GoMenuCaption(std::size_t entry, std::string_view path) {
    if (entry < 1 || entry > kGoKeys.size()) {
        return {};
    }
    std::string caption = "&" + std::string(kGoKeys[entry - 1]) + " ";
    for (const char c : path) {
        caption += c;
        if (c == '&') {
            caption += '&';
        }
    }
    return caption;
}

}  // namespace jk
