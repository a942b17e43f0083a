#pragma once

// The ID3v1 genre table in its two orders: by number (what a tag holds) and by the position in
// the sorted list a genre box shows.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace jk {

inline constexpr std::size_t kGenreCount = 148;

// The 148 names by number, 0 to 147.
const std::array<std::string_view, kGenreCount>& GenresByNumber();
// The same names in the order of the sorted list, which ignores hyphens when it sorts.
const std::array<std::string_view, kGenreCount>& GenresSorted();

// The name of a genre number; "Unknown" outside 0..147.
std::string GenreName(std::int32_t number);
// The number of the trimmed name (case counts); 255 when it is none of the 148.
std::int16_t GenreNumber(std::string_view name);
// The position of the name, untrimmed, in the sorted list; 128 ("Sound Clip") when not found.
std::int16_t GenreSortIndex(std::string_view name);
// Appends the 148 names in numeric order; a sorted list control puts them in order itself.
void FillGenreList(std::vector<std::string>& list);

}  // namespace jk
