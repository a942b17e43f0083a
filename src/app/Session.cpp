#include "app/Session.h"

#include <array>

#include "app/SettingsStore.h"
#include "app/Version.h"
#include "playback/PlayerKind.h"
#include "playback/PlaylistTitle.h"
#include "util/Text.h"
#include "util/Utf8.h"

namespace jk {

namespace {

constexpr std::array<std::int32_t, 8> kCacheLimits = {0, 50, 100, 250, 500, 1000, 2500, 1000000};
constexpr std::array<std::string_view, 3> kFileFilters = {"*.mp3", "*.mp*", "*.*"};

}  // namespace

std::string IniPath(const Session& session) {
    return session.AppPath + std::string(kIniFileName);
}

void LoadDefaults(Session& session, std::string_view firstPlayerPath) {
    LoadDefaults(session.Settings, firstPlayerPath);
    session.Playlist.PlaylistSaved = true;
    session.Playlist.CurrentList.clear();
    session.CacheLimit = 1000000;
}

std::optional<std::int32_t> CacheLimitFor(std::int16_t maxCache) {
    if (maxCache < 0 || static_cast<std::size_t>(maxCache) >= kCacheLimits.size()) {
        return std::nullopt;
    }
    return kCacheLimits[static_cast<std::size_t>(maxCache)];
}

void ApplyMaxCache(Session& session) {
    if (const auto limit = CacheLimitFor(session.Settings.MaxCache)) {
        session.CacheLimit = *limit;
    }
}

std::optional<std::string_view> FileFilterFor(std::int16_t filterMode) {
    if (filterMode < 0 || static_cast<std::size_t>(filterMode) >= kFileFilters.size()) {
        return std::nullopt;
    }
    return kFileFilters[static_cast<std::size_t>(filterMode)];
}

void ApplyFilterMode(Session& session) {
    if (const auto filter = FileFilterFor(session.Settings.FilterMode)) {
        session.FileFilter = std::string(*filter);
    }
}

bool RememberListIsOne(const jk::Settings& settings) {
    return Val(settings.RememberList) == 1;
}

bool RememberListIsOn(const jk::Settings& settings) {
    return Val(settings.RememberList) != 0;
}

ListSettings ListSettingsOf(const jk::Settings& settings) {
    return ListSettings{settings.HideGhosts, settings.RelativePaths, CurrentPlayerPath(settings)};
}

std::string PlaylistCaption(const Session& session) {
    return WindowTitle(session.Playlist.CurrentList, session.Playlist.PlaylistSaved,
                       kProductCaption);
}

bool IsWinampOnlyMode(const jk::Settings& settings) {
    return IsWinampPath(CurrentPlayerPath(settings));
}

}  // namespace jk
