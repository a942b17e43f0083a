#pragma once

// Bookmarks: named folders, real or virtual, kept in bookmark.dat as two lines each (the name,
// then the location), in the order of the list. The first ten make the Bookmarks menu.

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "util/FileIo.h"

namespace jk {

inline constexpr std::string_view kBookmarkFileName = "bookmark.dat";
inline constexpr std::string_view kSavingBookmarksStatus = "Saving bookmarks...";
inline constexpr std::size_t kBookmarkMenuEntries = 10;

struct Bookmark {
    std::string Name;
    std::string Location;

    friend bool operator==(const Bookmark&, const Bookmark&) = default;
};

using BookmarkList = std::vector<Bookmark>;

// Pairs of lines, each trimmed; a last line without its partner is dropped.
BookmarkList ParseBookmarks(std::string_view bytes);
// LoadBookmarks: a missing file is an empty list.
BookmarkList LoadBookmarks(const std::string& path);
std::string BookmarksBytes(const BookmarkList& bookmarks);
// SaveBookmarks: the file replaced whole.
IoResult SaveBookmarks(const std::string& path, const BookmarkList& bookmarks);

// UpdateBookmarks: the captions of the menu entries, "&1 NAME" .. "&9 NAME", "&0 NAME" for the
// tenth; fewer when the list is shorter. `more` tells whether MoreBMarks is needed.
std::vector<std::string> BookmarkMenuCaptions(const BookmarkList& bookmarks, bool& more);

// The editor's slide commands on the selected rows (flags beside the list), keeping the
// selection: one place up or down, or to the top or bottom in their order.
enum class Slide { Up, Down, Top, Bottom };
void SlideBookmarks(BookmarkList& bookmarks, std::vector<bool>& selected, Slide slide);
// A click on a column head: by name (0) or location (1), ascending, ignoring case.
void SortBookmarks(BookmarkList& bookmarks, int column);

// Mark_Click's destination: a real location that has gone opens its nearest existing parent;
// a virtual one is given as it stands.
std::string BookmarkDestination(std::string_view location);

}  // namespace jk
