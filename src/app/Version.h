#pragma once

#include <string_view>

namespace jk {

inline constexpr std::string_view kVersionText = "2.62";
inline constexpr std::string_view kBuildDateText = "February 26, 2000";
inline constexpr std::string_view kProductCaption = "Ostrel Jukarra 2.62";

}  // namespace jk
