#pragma once

// The fields a search or a selection tests, the order it tests them in, and the "1"/"0" strings
// (SearchIn, SelectOptions) that keep which of them are checked.

#include <array>
#include <bitset>
#include <cstddef>
#include <string>
#include <string_view>

#include "metadata/SongInfo.h"

namespace jk {

// The Search wizard's fields in the order of its menu and of the SearchIn string.
enum class SearchField : std::uint8_t {
    Title = 0,
    Artist,
    Album,
    Year,
    Genre,
    Bitrate,
    Filename,
    Comment,
    Volume,
    Count
};

inline constexpr std::size_t kSearchFieldCount = static_cast<std::size_t>(SearchField::Count);

using SearchFieldSet = std::bitset<kSearchFieldCount>;

// The order in which a record's fields are tested: Filename, Title, Artist, Album, Comment,
// Genre, Year, Bitrate, Volume.
const std::array<SearchField, kSearchFieldCount>& SearchTestOrder();

struct SearchFieldEntry {
    SearchField Field;
    std::string_view Name;     // the menu item ("SearchTitle")
    std::string_view Caption;  // its text ("Title")
};
// The menu SearchIn's field entries, in menu order.
const std::array<SearchFieldEntry, kSearchFieldCount>& SearchFieldEntries();

// The record's member a field tests (Filename is the whole Path).
std::string_view SearchFieldOf(const SongInfo& song, SearchField field);

// Each "1" checks its field; any other character, or a missing one, leaves it unchecked.
SearchFieldSet ParseFieldFlags(std::string_view flags, std::size_t count = kSearchFieldCount);
// The flags again, "1" or "0" for each of the first `count` fields.
std::string FieldFlagsText(const SearchFieldSet& fields, std::size_t count = kSearchFieldCount);

}  // namespace jk
