#include "playback/PlayerKind.h"

#include <array>

#include "util/PathHelpers.h"
#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {

namespace {

struct KindWord {
    std::string_view word;
    std::int16_t kind;
};

// In the order they are sought: the first word found decides.
constexpr std::array<KindWord, 6> kKindWords = {{
    {"winamp", kPlayerWinamp},
    {"winplay", kPlayerWinPlay3},
    {"nad", kPlayerNad},
    {"sonique", kPlayerSonique},
    {"kjofol", kPlayerKJofol},
    {"mpv", kPlayerMpv},
}};

constexpr std::array<std::string_view, 10> kMprisPlayers = {
    "audacious", "vlc",   "rhythmbox", "strawberry", "clementine",
    "quodlibet", "elisa", "lollypop",  "celluloid",  "deadbeef",
};

constexpr std::array<std::string_view, 8> kKindNames = {
    "none", "WinPlay3", "Winamp", "NAD", "Sonique", "K-Jofol", "mpv", "MPRIS player",
};

bool FileNameHolds(std::string_view playerPath, std::string_view word) {
    return PlayerFileName(playerPath).find(word) != std::string::npos;
}

}  // namespace

bool IsKnownPlayerKind(std::int16_t kind) {
    return kind >= kPlayerWinPlay3 && kind <= kPlayerMpris;
}

bool IsWindowPlayerKind(std::int16_t kind) {
    return kind >= kPlayerWinPlay3 && kind <= kPlayerKJofol;
}

std::string PlayerFileName(std::string_view playerPath) {
    std::string_view path = Trim(playerPath);
    while (path.size() > 1 && path.back() == kSep) {
        path.remove_suffix(1);
    }
    return ToLower(BareName(path));
}

std::int16_t PlayerKindFor(std::string_view playerPath, std::string_view mprisPlayer,
                           std::int16_t current) {
    if (!Trim(mprisPlayer).empty()) {
        return kPlayerMpris;
    }
    const std::string name = PlayerFileName(playerPath);
    for (const KindWord& entry : kKindWords) {
        if (name.find(entry.word) != std::string::npos) {
            return entry.kind;
        }
    }
    for (const std::string_view player : kMprisPlayers) {
        if (name.find(player) != std::string::npos) {
            return kPlayerMpris;
        }
    }
    return current;
}

std::string MprisNameFor(std::string_view playerPath, std::string_view mprisPlayer) {
    if (const std::string_view named = Trim(mprisPlayer); !named.empty()) {
        return std::string(named);
    }
    const std::string name = PlayerFileName(playerPath);
    for (const std::string_view player : kMprisPlayers) {
        if (name.find(player) != std::string::npos) {
            return std::string(player);
        }
    }
    return {};
}

bool IsWinampPath(std::string_view playerPath) {
    return FileNameHolds(playerPath, "winamp");
}

bool IsWinPlayPath(std::string_view playerPath) {
    return FileNameHolds(playerPath, "winplay");
}

bool IsMpvPath(std::string_view playerPath) {
    return FileNameHolds(playerPath, "mpv");
}

std::string_view PlayerKindName(std::int16_t kind) {
    return IsKnownPlayerKind(kind) ? kKindNames[static_cast<std::size_t>(kind)] : kKindNames[0];
}

}  // namespace jk
