#pragma once

// The texts the start-up and shutdown show the user, and the version check's arithmetic.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "util/UserMessage.h"

namespace jk {

UserMessage WelcomeMessage();
UserMessage IniSaveFailedMessage();
// The message for a tool that needs at least one song on the playlist.
UserMessage ErrorBox();

inline constexpr std::string_view kVersionCheckTitle = "Check, please?";
inline constexpr std::string_view kProductPageAddress = "http://www.example.com/jukarra/";

// Whole days from the build date, February 26, 2000, to the given date (negative before it).
std::int64_t DaysSinceBuild(int year, unsigned month, unsigned day);
// The offer to look for a newer version, when the build is more than 45 days old on the given
// date; nothing otherwise.
std::optional<std::string> VersionCheckText(int year, unsigned month, unsigned day);

}  // namespace jk
