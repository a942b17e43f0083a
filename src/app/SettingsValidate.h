#pragma once

// Mending settings that are empty or too short, after loading and after the first run's setup.

#include <string>
#include <string_view>

#include "app/Settings.h"

namespace jk {

// The user's folders that stand in for the sample paths of the settings.
struct SamplePaths {
    std::string musicFolder;     // XDG_MUSIC_DIR or ~/Music
    std::string downloadFolder;  // XDG_DOWNLOAD_DIR or ~/Downloads
};

inline constexpr std::string_view kSampleListsAddress = "http://www.example.com/lists";
inline constexpr std::string_view kSampleSongsAddress = "http://www.example.com/songs";
inline constexpr std::string_view kSampleGraphicAddress =
    "http://www.example.com/images/lilleafs.jpg";

void ValidateINI(Settings& settings, const SamplePaths& samples);

}  // namespace jk
